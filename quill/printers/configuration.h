// What can be chosen about printed text.

#ifndef QUILL_PRINTERS_CONFIGURATION_H
#define QUILL_PRINTERS_CONFIGURATION_H

#include <string>

namespace quill {

struct Configuration {
  struct Printer {
    // The logic in which the text is to be read: names of its theories are not written for symbols
    // of other meanings. Empty: every theory is in use.
    std::string logic;
  };
};

}  // namespace quill

#endif
