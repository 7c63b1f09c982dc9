// What can be chosen about printed text.

#ifndef QUILL_PRINTERS_CONFIGURATION_H
#define QUILL_PRINTERS_CONFIGURATION_H

#include <cstdint>
#include <string>

namespace quill {

struct Configuration {
  struct Printer {
    // How often a subterm must occur to be bound by let; at least 2.
    uint32_t min_occurrences = 2;

    // The logic in which the text is to be read: names of its theories are not written for symbols
    // of other meanings. Empty: every theory is in use.
    std::string logic;
  };
};

}  // namespace quill

#endif
