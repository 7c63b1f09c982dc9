// The short text of a term for messages.
//
// A shared term is written each time, so the full text may be exponentially larger than the term.
// The walk ends as soon as the text reaches its limit, and nothing beyond the limit is kept.

#include <string>
#include <string_view>
#include <utility>

#include "quill/terms/shallow_text.h"
#include "quill/terms/termmanager/misuse_checks.h"
#include "quill/terms/termmanager/term_manager.h"

namespace quill {

namespace {

constexpr unsigned max_depth = 10;
constexpr size_t max_size = size_t{1} << 14;

// A text that keeps only its first max_size bytes.
class Beginning {
 public:
  void write(std::string_view piece) {
    const size_t room = max_size - text.size();
    is_cut = is_cut || piece.size() > room;
    text += piece.substr(0, room);
  }
  bool is_full() const { return is_cut; }
  std::string take() && {
    if (is_cut) text += "...";
    return std::move(text);
  }

 private:
  std::string text;
  bool is_cut = false;
};

}  // namespace

std::string TermManager::to_shallow_str_literal(const Term_* t) const {
  require_own(*this, t);

  struct Printer {
    const TermManager& manager;
    Beginning out;

    void write_shallow(const Term_* term) {
      write_shallow_text(*term, [this](std::string_view piece) { out.write(piece); });
    }

    // Recursion is bounded by max_depth, and each call writes something.
    void print(const Term_* term, unsigned depth) {
      const Symbol* s = term->symbol;
      if (s == manager.and_symbol || s == manager.or_symbol || s == manager.iff_symbol ||
          s->arity == 0 || depth == max_depth) {
        write_shallow(term);
        return;
      }
      out.write("(");
      out.write(s->name);
      if (manager.is_term_ite(s, nullptr)) {
        out.write("<");
        out.write(std::to_string(term->id));
        out.write("> _ _ _");
      } else {
        for (uint64_t i = 0; i < s->arity && !out.is_full(); ++i) {
          out.write(" ");
          print(term->args[i], depth + 1);
        }
      }
      out.write(")");
    }
  };

  Printer printer{*this, {}};
  printer.print(t, 0);
  return std::move(printer.out).take();
}

}  // namespace quill
