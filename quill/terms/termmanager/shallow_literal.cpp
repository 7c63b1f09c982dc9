// The short text of a term for messages.

#include <string>

#include "quill/terms/termmanager/ownership.h"
#include "quill/terms/termmanager/term_manager.h"

namespace quill {

std::string TermManager::to_shallow_str_literal(const Term_* t) const {
  require_own(*this, t);
  constexpr unsigned max_depth = 10;

  struct Printer {
    const TermManager& manager;
    std::string out;

    // Recursion is bounded by max_depth.
    void print(const Term_* term, unsigned depth) {
      const Symbol* s = term->symbol;
      if (s == manager.and_symbol || s == manager.or_symbol || s == manager.iff_symbol) {
        out += term->to_shallow_str();
        return;
      }
      if (s->arity == 0) {
        out += term->to_str();
        return;
      }
      if (depth == max_depth) {
        out += term->to_shallow_str();
        return;
      }
      out += '(';
      out += s->name;
      if (manager.is_term_ite(s, nullptr)) {
        out += '<';
        out += std::to_string(term->id);
        out += "> _ _ _";
      } else {
        for (uint64_t i = 0; i < s->arity; i++) {
          out += ' ';
          print(term->args[i], depth + 1);
        }
      }
      out += ')';
    }
  };

  Printer printer{*this, {}};
  printer.print(t, 0);
  return printer.out;
}

}  // namespace quill
