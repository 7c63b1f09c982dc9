#include "quill/printers/outterm.h"

#include <ostream>

#include "quill/printers/smtlib2_term_printer.h"
#include "quill/utils/text_stream.h"

namespace quill {

std::ostream& operator<<(std::ostream& os, const outterm& x) {
  SmtLib2TermPrinter printer(x.manager, nullptr, "", "", /*share_by_let=*/true, nullptr);
  printer.print_atom(os, x.term, /*with_annotations=*/true);
  return os;
}

std::string to_smtlib(const TermManager& m, const Term_* t) {
  TextStream text;
  text << outterm(&m, t);
  return text.str();
}

std::ostream& operator<<(std::ostream& os, const outshallowterm& x) {
  return os << outterm(x.manager, x.term);
}

std::ostream& operator<<(std::ostream& os, const outtermlist& x) {
  os << "[ ";
  for (const Term_* t : *x.terms) os << outterm(x.manager, t) << ' ';
  return os << ']';
}

}  // namespace quill
