// The SMT-LIB 2.6 texts of symbols: at the head of an application, and as constants.
//
// A text is made on the first request and kept: a printed term has far fewer symbols than
// applications. Texts of freed symbols must not be requested.

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
  // `renamed` is the prefix for symbols that SMT-LIB cannot name. All three must outlive the texts.
  SymbolTexts(const TermManager& manager_, const std::string& rename_prefix_, const Logic& logic_);

  // The text of a symbol; an integer has a point if as_real is true.
  const std::string& of(const Symbol* s, bool as_real = false);

  // The same for the value of a constant array. Some readers expect a value there, not a term, and
  // accept neither a negation nor a quotient of decimals nor the parts of a float: a rational is
  // written as 0.5, (/ 1 3) or (/ (- 1) 2), and infinities, zeros and the manager's NaN by their
  // names.
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
  // The last request, which often comes again at once.
  struct Latest {
    const Symbol* symbol = nullptr;
    const std::string* text = nullptr;
  };

  std::array<Texts, 2> texts;   // the second one is for places of type Real
  std::array<Texts, 2> values;  // the same in constant arrays
  std::array<Latest, 2> latest;
  TextStream text;  // of the current symbol
};

}  // namespace quill

#endif
