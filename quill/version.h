// The version of the library. The build reads it from here.

#ifndef QUILL_VERSION_H
#define QUILL_VERSION_H

#define QUILL_VERSION_MAJOR 0
#define QUILL_VERSION_MINOR 1
#define QUILL_VERSION_PATCH 0

namespace quill {

// The version of the library that the program is linked with, such as "0.1.0". The macros are those
// of the headers that it was compiled with.
const char* version();

}  // namespace quill

#endif
