// How symbols are written in SMT-LIB 2.6: at the head of an application, and as constants.
//
// A text is made when it is first asked for, and kept: a printed term has far fewer symbols than
// applications. Texts of symbols that are freed must not be asked for again.

#ifndef QUILL_PRINTERS_SYMBOL_TEXTS_H
#define QUILL_PRINTERS_SYMBOL_TEXTS_H

#include <array>
#include <iosfwd>
#include <string>

#include "quill/smtlib/logic.h"
#include "quill/smtlib/operator_texts.h"
#include "quill/terms/termmanager/term_manager.h"
#include "quill/utils/hash_map.h"
#include "quill/utils/text_stream.h"

namespace quill {

class SymbolTexts {
 public:
  // `renamed` is the prefix of symbols that SMT-LIB can't name. All three must outlive the texts.
  SymbolTexts(const TermManager& owner, const std::string& renamed, const Logic& names);

  // The text of a symbol; that of an integer where a Real is expected has a point.
  const std::string& of(const Symbol* s, bool as_real = false);

  // The same for the value of a constant array. Some readers ask for a value there, not for a term,
  // and take neither a negation nor a quotient of decimals nor the parts of a float for one: a
  // rational is written as 0.5, (/ 1 3) or (/ (- 1) 2), and infinities, zeros and the NaN of the
  // manager by their names.
  const std::string& of_value(const Symbol* s, bool as_real);

 private:
  using Texts = hsh::HashMap<const Symbol*, std::string>;

  void write_constant(const Symbol* s, bool as_real);
  bool write_numeral(const Symbol* s, bool as_real);
  bool write_value(const Symbol* s, bool as_real);
  void write_theory_head(const SmtLib2Operator& op, const Symbol* s);
  void write_head(const Symbol* function);

  const TermManager& manager;
  const std::string& rename_prefix;
  const Logic& logic;
  // What was asked for last, and often is again at once.
  struct Latest {
    const Symbol* symbol = nullptr;
    const std::string* text = nullptr;
  };

  std::array<Texts, 2> texts;   // the second one where Real is expected
  std::array<Texts, 2> values;  // the same in constant arrays
  std::array<Latest, 2> latest;
  TextStream text;  // of the symbol at hand
};

}  // namespace quill

#endif
