// One level of a term as text: arguments that are constants by name, others as #ID; three dots
// after eight arguments. The text is written piece by piece, so that a caller that wants only its
// beginning need not compose the rest.

#ifndef QUILL_TERMS_SHALLOW_TEXT_H
#define QUILL_TERMS_SHALLOW_TEXT_H

#include <cstdint>
#include <string>
#include <string_view>

#include "quill/terms/term.h"

namespace quill {

constexpr uint64_t max_shallow_arguments = 8;

// Calls `write` with each piece, a std::string_view.
template <class Action>
void write_shallow_text(const Term_& t, Action write) {
  const Symbol& head = *t.symbol;
  if (head.arity == 0) {
    write(head.name);
    return;
  }
  write("(");
  write(head.name);
  for (uint64_t i = 0; i < head.arity; ++i) {
    write(" ");
    if (i == max_shallow_arguments) {
      write("...");
      break;
    }
    const Term_& argument = *t.args[i];
    if (argument.symbol->arity == 0) {
      write(argument.symbol->name);
    } else {
      write("#");
      write(std::to_string(argument.id));
    }
  }
  write(")");
}

}  // namespace quill

#endif
