// Interpreted symbols, and the classification of symbols.
//
// The first character of a name tells the name spaces apart: a backquote marks symbols of the
// theories, an apostrophe variables. Numerals have neither; they are the symbols with a recorded
// value.

#include "quill/terms/termmanager/misuse_checks.h"
#include "quill/terms/termmanager/term_manager.h"
#include "quill/terms/termmanager/transaction.h"

namespace quill {

const Symbol* TermManager::add_interpreted_symbol(const char* name, const DataType* type,
                                                  SymbolTag::tag tag) {
  require_own(*this, type);
  name_buffer = '`';
  name_buffer += name;
  name_buffer += '`';
  Transaction making(*this);
  const Symbol* s = signature->add_symbol(name_buffer.c_str(), type);
  tags[s] = tag;
  making.commit();
  note_given(s);
  return s;
}

// Gives a symbol its previous tag back, or takes its tag away if it had none.
void TermManager::restore_tag(const Symbol* s, std::optional<SymbolTag::tag> tag) noexcept {
  const auto tagged = tags.find(s);
  if (tagged == tags.end()) return;
  if (tag.has_value()) {
    tagged->second = *tag;
  } else {
    tags.erase(tagged);
  }
}

bool TermManager::is_interpreted(const Symbol* s) const {
  require_own(*this, s);
  if (s->name[0] == '`') return true;
  return s->arity == 0 && number_values.find(s) != number_values.end();
}

bool TermManager::is_uninterpreted_function(const Symbol* s) const {
  require_own(*this, s);
  return s->arity != 0 && !is_interpreted(s);
}

bool TermManager::is_variable(const Symbol* s) const {
  require_own(*this, s);
  return s->arity == 0 && s->name[0] == '\'';
}

bool TermManager::is_constant(const Symbol* s) const {
  require_own(*this, s);
  return s->arity == 0 && !is_interpreted(s) && !is_variable(s);
}

SymbolTag::tag TermManager::get_tag(const Symbol* s) const {
  require_own(*this, s);
  const auto found = tags.find(s);
  return found != tags.end() ? found->second : SymbolTag::NONE;
}

}  // namespace quill
