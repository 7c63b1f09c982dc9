// What can be chosen about printed text.

#ifndef QUILL_PRINTERS_CONFIGURATION_H
#define QUILL_PRINTERS_CONFIGURATION_H

#include <cstdint>

namespace quill {

struct Configuration {
  struct Printer {
    // How often a subterm must occur to be bound by let; at least 2.
    uint32_t min_occurrences = 2;
  };
};

}  // namespace quill

#endif
