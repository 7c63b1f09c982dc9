// A stream for the library's own texts.
//
// It writes in the classic locale, whatever the global locale is. It throws std::bad_alloc when it
// cannot allocate; by default streams do not report that, nor the text that they then left out.

#ifndef QUILL_UTILS_TEXT_STREAM_H
#define QUILL_UTILS_TEXT_STREAM_H

#include <locale>
#include <sstream>

namespace quill {

class TextStream : public std::ostringstream {
 public:
  TextStream() {
    imbue(std::locale::classic());
    exceptions(std::ios_base::badbit);
  }
};

}  // namespace quill

#endif
