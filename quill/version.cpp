#include "quill/version.h"

#define QUILL_TEXT_OF_VALUE(value) #value
#define QUILL_TEXT_OF(macro) QUILL_TEXT_OF_VALUE(macro)

namespace quill {

const char* version() {
  return QUILL_TEXT_OF(QUILL_VERSION_MAJOR) "." QUILL_TEXT_OF(
      QUILL_VERSION_MINOR) "." QUILL_TEXT_OF(QUILL_VERSION_PATCH);
}

}  // namespace quill
