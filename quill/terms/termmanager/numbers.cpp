// Numerals.
//
// A numeral is an ordinary constant symbol whose name spells the value and whose value stands in
// number_values:
//
//   arithmetic           7, -3, 1/3     Int, or Real when there is a /
//   bit-vector           5_8            the value and the width
//   floating point       0_8_23         the bit pattern and the format
//
// Arithmetic numerals are found by value in number_cache, the others by name in the signature.

#include <string>

#include "quill/terms/termmanager/ownership.h"
#include "quill/terms/termmanager/result_widths.h"
#include "quill/terms/termmanager/term_manager.h"
#include "quill/utils/scope_guard.h"

namespace quill {

// Makes the term of a numeral, all or nothing. `present` is the symbol that already has the
// numeral's name, which is in name_buffer, or null.
const Term_* TermManager::make_numeral(const Symbol* present, const DataType* type,
                                       const QNumber& value, bool enter_in_cache) {
  const size_t before = signature->size();
  const Symbol* s = present != nullptr ? present : signature->add_symbol(name_buffer.c_str(), type);
  ScopeGuard undo_symbol([&] { signature->rollback(before); });

  const bool value_is_new = number_values.find(s) == number_values.end();
  if (value_is_new) number_values.insert({s, value});
  ScopeGuard undo_value([&] {
    if (value_is_new) number_values.erase(number_values.find(s));
  });

  const Term_** cached = nullptr;
  bool cached_is_new = false;
  const QNumber* key = nullptr;
  if (enter_in_cache) {
    key = &number_values.find(s)->second;
    cached_is_new = number_cache.insert({key, nullptr});
    if (cached_is_new) cached = &number_cache.find(key)->second;
  }
  ScopeGuard undo_cached([&] {
    if (cached_is_new) number_cache.erase(number_cache.find(key));
  });

  const Term_* t = bank->make_term(s, nullptr);
  if (cached != nullptr) *cached = t;
  undo_cached.dismiss();
  undo_value.dismiss();
  undo_symbol.dismiss();
  return t;
}

void TermManager::reject_numeral(const std::string& name, const Symbol* present) const {
  throw error("a symbol for ") << name << " already exists, but it has the wrong type: "
                               << present->type->to_str();
}

const Term_* TermManager::make_number(const QNumber& value) {
  const auto found = number_cache.find(&value);
  if (found != number_cache.end()) return found->second;
  if (!value.is_integer()) {
    QNumber normalized(value);
    normalized.normalize();
    if (!(normalized == value)) return make_number(normalized);
  }

  name_buffer = value.to_str();
  const Symbol* present = signature->get_symbol(name_buffer.c_str());
  if (present != nullptr && !is_real_or_int(present->type)) {
    reject_numeral(name_buffer, present);
  }
  const bool is_integer = name_buffer.find('/') == std::string::npos;
  return make_numeral(present, is_integer ? int_type : rat_type, value, /*enter_in_cache=*/true);
}

// Refuses what is not an unsigned number of so many bits.
void TermManager::require_bits(const QNumber& value, uint64_t bits, const char* kind) const {
  if (!value.is_integer()) {
    throw error("can't make a ") << kind << " number from a fractional number: " << value.to_str();
  }
  if (value.is_negative()) {
    throw error("can't make a ") << kind << " number from a negative number: " << value.to_str();
  }
  bool fits;
  if (value.is_zero()) {
    fits = true;  // in no bits at all
  } else if (value.is_big()) {
    fits = mpz_sizeinbase(value.big_num(), 2) <= bits;
  } else {
    fits = bits > 63 || (value.num >> bits) == 0;
  }
  // A range error, and as such no error of the manager's own class.
  if (!fits) throw Exception("the number ") << value << " doesn't fit in " << bits << " bits";
}

const Term_* TermManager::make_bv_number(const QNumber& value, size_t width) {
  if (!value.is_integer()) {
    QNumber normalized(value);
    normalized.normalize();
    if (!(normalized == value)) return make_bv_number(normalized, width);
  }
  if (typecheck_enabled) require_bits(value, width, "bv");

  name_buffer = value.to_str();
  name_buffer += '_';
  name_buffer += std::to_string(width);
  const Symbol* present = signature->get_symbol(name_buffer.c_str());
  if (present != nullptr) {
    // Compared part by part, so that a refused request makes no type.
    const bool fits = is_bv_type(present->type, nullptr) &&
                      present->type->get_component(1)->is_simple() &&
                      present->type->get_component(1)->get_name() == std::to_string(width);
    if (!fits) {
      reject_numeral(name_buffer, present);
    }
    return make_numeral(present, present->type, value, /*enter_in_cache=*/false);
  }
  const std::string name = name_buffer;  // get_bv_type composes a name of its own
  const DataType* type = get_bv_type(width);
  name_buffer = name;
  return make_numeral(nullptr, type, value, /*enter_in_cache=*/false);
}

const Term_* TermManager::make_fp_bits_number(const QNumber& bits, size_t e, size_t m) {
  if (!bits.is_integer()) {
    QNumber normalized(bits);
    normalized.normalize();
    if (!(normalized == bits)) return make_fp_bits_number(normalized, e, m);
  }
  if (typecheck_enabled) {
    require_bits(bits, ieee_width(e, m), "FP");
    IEEEFloat::from_bits(bits, {e, m});  // may refuse more
  }

  std::string name = bits.to_str();
  name += '_';
  name += std::to_string(e);
  name += '_';
  name += std::to_string(m);
  const Symbol* present = signature->get_symbol(name.c_str());
  if (present != nullptr) {
    // Compared part by part, so that a refused request makes no type.
    const std::string format = std::to_string(e) + ':' + std::to_string(m);
    const bool fits = is_fp_type(present->type, nullptr, nullptr) &&
                      present->type->get_component(1)->is_simple() &&
                      present->type->get_component(1)->get_name() == format;
    if (!fits) reject_numeral(name, present);
  }
  const DataType* type = present != nullptr ? present->type : get_fp_type(e, m);
  name_buffer = name;
  return make_numeral(present, type, bits, /*enter_in_cache=*/false);
}

const Term_* TermManager::make_fp_rat_number(const QNumber& value, size_t e, size_t m,
                                             const Term_* rounding) {
  require_own(*this, rounding);
  for (int mode = 0; mode < 4; mode++) {
    if (rounding->symbol != rounding_symbols[mode]) continue;
    const IEEEFloat rounded =
        IEEEFloat::from_number(value, {e, m}, static_cast<IEEEFloat::rounding_mode>(mode));
    return make_fp_bits_number(rounded.get_bits(), e, m);
  }
  throw error("unsupported rounding mode: ") << rounding->to_shallow_str();
}

const Term_* TermManager::make_fp_plus_inf(size_t e, size_t m) {
  IEEEFloat infinity({e, m}, IEEEFloat::ROUND_EVEN);
  infinity.self_inf(/*negative=*/false);
  return make_fp_bits_number(infinity.get_bits(), e, m);
}

const Term_* TermManager::make_fp_minus_inf(size_t e, size_t m) {
  IEEEFloat infinity({e, m}, IEEEFloat::ROUND_EVEN);
  infinity.self_inf(/*negative=*/false);
  infinity.self_inf(/*negative=*/true);
  return make_fp_bits_number(infinity.get_bits(), e, m);
}

const Term_* TermManager::make_fp_nan(size_t e, size_t m) {
  IEEEFloat nan({e, m}, IEEEFloat::ROUND_EVEN);
  nan.self_nan();
  return make_fp_bits_number(nan.get_bits(), e, m);
}

bool TermManager::is_number(const Symbol* s, QNumber* value) const {
  require_own(*this, s);
  const auto found = number_values.find(s);
  if (found == number_values.end()) return false;
  if (value != nullptr) *value = found->second;
  return true;
}

}  // namespace quill
