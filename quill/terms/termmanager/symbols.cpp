// User symbols: declaration, fresh names, the terms of constants and applications, and the release
// of names.

#include <string>

#include "quill/terms/termmanager/misuse_checks.h"
#include "quill/terms/termmanager/term_manager.h"
#include "quill/terms/termmanager/transaction.h"

namespace quill {

// Throws for a name that a user symbol can't have.
void TermManager::check_user_name(const std::string& name) const {
  if (name.empty()) throw error("Empty name for symbol");
  if (name[0] == '`') throw error("Symbols can't start with the \"`\" character");
  // The signature would cut the name off at the NUL, and two names could become one.
  if (name.find('\0') != std::string::npos) throw error("Symbols can't contain the NUL character");
}

const Symbol* TermManager::make_symbol(const std::string& name, const DataType* type) {
  require_own(*this, type);
  check_user_name(name);
  return signature->add_symbol(name.c_str(), type);
}

const Symbol* TermManager::make_unique_symbol(const std::string& name, const DataType* type) {
  require_own(*this, type);
  check_user_name(name);
  if (signature->get_symbol(name.c_str()) == nullptr) return make_symbol(name, type);
  const int32_t k = signature->lowest_free_suffix(name);
  name_buffer = name;
  name_buffer += '_';
  name_buffer += std::to_string(k);
  return make_symbol(name_buffer, type);
}

const Term_* TermManager::make_fresh_variable(const DataType* type) {
  require_own(*this, type);
  name_buffer = '\'';
  name_buffer += std::to_string(fresh_counter++);
  if (signature->get_symbol(name_buffer.c_str()) != nullptr) {
    throw error("impossible to create variable ")
        << name_buffer << ", because there's already a symbol with the same name";
  }
  if (is_function_type(type, nullptr, nullptr))
    throw error("Higher-order variables are not supported");
  Transaction making(*this);
  const Symbol* s = signature->add_symbol(name_buffer.c_str(), type);
  const Term_* variable = bank->make_term(s, nullptr);
  making.commit();
  return variable;
}

const Term_* TermManager::make_constant(const Symbol* s) {
  require_own(*this, s);
  return apply(s, {}, "make_constant");
}

const Term_* TermManager::make_uninterpreted_function(const Symbol* s,
                                                      const std::vector<const Term_*>& args) {
  return apply_to(s, args, "make_uninterpreted_function");
}

void TermManager::free_symbol(const Symbol* s) {
  require_own(*this, s);
  require_no_successor(*this, s);
  recent_numerals.clear();  // which are found by name
  signature->remove_symbol(s->name);
}

const Term_* TermManager::debug_get_term(unsigned long id) const {
  for (const Term_* t : *bank) {
    if (t->id == id) return t;
  }
  return nullptr;
}

}  // namespace quill
