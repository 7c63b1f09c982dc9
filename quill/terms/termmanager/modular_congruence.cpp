// Congruence of integers modulo a constant: one symbol for each modulus.

#include "quill/terms/termmanager/families.h"
#include "quill/terms/termmanager/misuse_checks.h"
#include "quill/terms/termmanager/term_manager.h"

namespace quill {

const Symbol* TermManager::make_int_modular_congruence_symbol(const QNumber& modulus) {
  constexpr SymbolTag::tag tag = SymbolTag::INT_MODULAR_CONGRUENCE;
  if (!modulus.is_canonical()) return make_int_modular_congruence_symbol(modulus.canonical());
  if (const Symbol* present = modular_congruences.find(modulus)) return present;
  if (!modulus.is_integer() || modulus.is_negative() || modulus.is_zero()) {
    throw Exception("invalid modulus in make_int_modular_congruence_symbol: ") << modulus;
  }

  Families::set_scratch_types(*this, 2, int_type, bool_type);
  name_buffer = '`';
  name_buffer += operator_family(tag).base;
  name_buffer += modulus.to_str();
  name_buffer += '`';
  return Families::add_symbol(*this, tag, modulus, modular_congruences.by_object,
                              modular_congruences.by_key);
}

const Term_* TermManager::make_int_modular_congruence(const QNumber& modulus, const Term_* a,
                                                      const Term_* b) {
  const Symbol* s = make_int_modular_congruence_symbol(modulus);
  return apply(s, {a, b}, operator_family(SymbolTag::INT_MODULAR_CONGRUENCE).operation);
}

bool TermManager::is_int_modular_congruence(const Symbol* s, QNumber* modulus) const {
  require_own(*this, s);
  const QNumber* found = modular_congruences.find_key(s);
  if (found == nullptr) return false;
  if (modulus != nullptr) *modulus = *found;
  return true;
}

}  // namespace quill
