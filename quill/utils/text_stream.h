// A stream for texts of the library's own.
//
// What it is given is written as in the classic locale, whatever the global one is. When it can't
// have its memory it throws std::bad_alloc, where streams by default keep quiet about that and
// about what they then left out.

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
