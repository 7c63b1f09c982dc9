// Numerals.
//
// A numeral is an ordinary constant whose name spells its value and whose symbol has the value in
// number_values:
//
//   arithmetic           7, -3, 1/3     Int, or Real when there is a /
//   bit-vector           5_8            the value and the width
//   floating point       0_8_23         the bit pattern and the format
//
// Arithmetic numerals are found by value in number_cache, the others by name in the signature;
// recent_numerals remembers some of the latter. Values are looked up and kept in canonical form
// (see QNumber).

#include <string>

#include "quill/terms/termmanager/misuse_checks.h"
#include "quill/terms/termmanager/result_widths.h"
#include "quill/terms/termmanager/term_manager.h"
#include "quill/terms/termmanager/transaction.h"
#include "quill/utils/scope_guard.h"

namespace quill {

// Makes the term of a numeral, all or nothing. `present` is the symbol that already has the
// numeral's name, or null; then the name is in name_buffer. The value is in canonical form.
const Term_* TermManager::make_numeral(const Symbol* present, const DataType* type,
                                       const QNumber& value, bool enter_in_cache) {
  Transaction making(*this);
  const Symbol* s = present != nullptr ? present : signature->add_symbol(name_buffer.c_str(), type);

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
  making.commit();
  return t;
}

void TermManager::reject_numeral(const std::string& name, const Symbol* present) const {
  throw error("a symbol for ") << name << " already exists, but it has the wrong type: "
                               << present->type->to_str();
}

const Term_* TermManager::make_number(const QNumber& value) {
  // A value that is not in canonical form is missed here and looked up again below.
  if (const auto* present = number_cache.get(&value)) return present->second;
  if (!value.is_canonical()) return make_number(value.canonical());

  name_buffer = value.to_str();
  const Symbol* present = signature->get_symbol(name_buffer.c_str());
  if (present != nullptr && !is_real_or_int(present->type)) {
    reject_numeral(name_buffer, present);
  }
  const bool is_integer = name_buffer.find('/') == std::string::npos;
  return make_numeral(present, is_integer ? int_type : rat_type, value, /*enter_in_cache=*/true);
}

namespace {

// Whether a value that is not negative fits in this many bits.
bool fits_in(const QNumber& value, uint64_t bits) {
  if (value.is_zero()) return true;  // fits even in 0 bits
  if (value.is_big()) return mpz_sizeinbase(value.big_num(), 2) <= bits;
  return bits > 63 || (value.num >> bits) == 0;
}

// Whether the value fits, so that a remembered numeral may answer the request: the numeral may have
// been made without checks.
bool is_sound(const QNumber& value, uint64_t bits) {
  return value.num >= 0 && (bits > 63 || (value.num >> bits) == 0);
}

}  // namespace

// Throws unless the value is an unsigned number of this many bits.
void TermManager::require_bits(const QNumber& value, uint64_t bits, const char* kind) const {
  if (!value.is_integer()) {
    throw error("can't make a ") << kind << " number from a fractional number: " << value.to_str();
  }
  if (value.is_negative()) {
    throw error("can't make a ") << kind << " number from a negative number: " << value.to_str();
  }
  // A range error is an Exception, not an error of the manager.
  if (!fits_in(value, bits)) {
    throw Exception("the number ") << value << " doesn't fit in " << bits << " bits";
  }
}

// A numeral with this name and the type that make_type() returns: all or nothing.
template <class MakeType>
const Term_* TermManager::make_named_numeral(const std::string& name, const QNumber& value,
                                             MakeType make_type) {
  Transaction making(*this);
  const Symbol* present = signature->get_symbol(name.c_str());
  const DataType* type = make_type();  // overwrites name_buffer
  if (present != nullptr && present->type != type) reject_numeral(name, present);
  name_buffer = name;
  const Term_* t = make_numeral(present, type, value, /*enter_in_cache=*/false);
  making.commit();
  return t;
}

const Term_* TermManager::make_bv_number(const QNumber& value, size_t width) {
  if (!value.is_canonical()) return make_bv_number(value.canonical(), width);
  const bool is_small = !value.is_big() && value.den == 1;
  const RecentNumerals::Key key{value.num, 0, width, /*is_pattern=*/false};
  if (is_small && (!typecheck_enabled || is_sound(value, width))) {
    if (const Term_* recent = recent_numerals.find(key)) return recent;
  }
  if (typecheck_enabled) require_bits(value, width, "bv");

  std::string name = value.to_str();
  name += '_';
  name += std::to_string(width);
  const Term_* t = make_named_numeral(name, value, [&] { return get_bv_type(width); });
  if (is_small) recent_numerals.insert(key, t);
  return t;
}

const Term_* TermManager::make_fp_bits_number(const QNumber& bits, size_t e, size_t m) {
  if (!bits.is_canonical()) return make_fp_bits_number(bits.canonical(), e, m);
  const bool is_small = !bits.is_big() && bits.den == 1;
  const RecentNumerals::Key key{bits.num, e, m, /*is_pattern=*/true};
  if (is_small &&
      (!typecheck_enabled || (e >= 2 && m >= 2 && is_sound(bits, saturating_ieee_width(e, m))))) {
    if (const Term_* recent = recent_numerals.find(key)) return recent;
  }
  if (typecheck_enabled) {
    require_bits(bits, ieee_width(e, m), "FP");
    IEEEFloat::from_bits(bits, {e, m});  // checks the pattern itself
  }

  std::string name = bits.to_str();
  name += '_';
  name += std::to_string(e);
  name += '_';
  name += std::to_string(m);
  const Term_* t = make_named_numeral(name, bits, [&] { return get_fp_type(e, m); });
  if (is_small) recent_numerals.insert(key, t);
  return t;
}

const Term_* TermManager::make_fp_rat_number(const QNumber& value, size_t e, size_t m,
                                             const Term_* rounding) {
  require_own(*this, rounding);
  for (int mode = 0; mode < 4; ++mode) {
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
