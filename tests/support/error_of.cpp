#include "tests/support/error_of.h"

#include "quill/utils/exception.h"

namespace quill::testing {

std::string error_of(const std::function<void()>& request, const std::type_info& expected_class) {
  try {
    request();
  } catch (const Exception& e) {
    return typeid(e) == expected_class ? e.what() : "another class";
  }
  return "no error";
}

}  // namespace quill::testing
