#include "quill/smtlib/syntax.h"

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <new>
#include <ostream>
#include <string>
#include <vector>

#include "quill/smtlib/commands.h"
#include "quill/smtlib/lexical.h"
#include "quill/smtlib/theory_names.h"
#include "quill/terms/termmanager/misuse_checks.h"
#include "quill/utils/bv_number.h"
#include "quill/utils/exception.h"
#include "quill/utils/gmp_integer.h"
#include "quill/utils/hash_map.h"
#include "quill/utils/ieee_float.h"
#include "quill/utils/qnumber_arithmetic.h"

namespace quill {

bool is_simple_symbol(std::string_view name) {
  if (name.empty() || is_decimal_digit(name[0])) return false;
  for (const char c : name) {
    if (!is_symbol_character(static_cast<unsigned char>(c))) return false;
  }
  const bool has_sign = name[0] == '-' || name[0] == '+';
  if (has_sign && name.size() > 1 && is_decimal_digit(name[1])) return false;
  return find_construct_word(name) == nullptr && find_command(name) == nullptr;
}

bool is_theory_symbol(std::string_view name, const Logic& logic) {
  const TheoryName* row = find_theory_symbol(name);
  return row != nullptr && logic.has(row->theory);
}

bool is_theory_sort(std::string_view name, const Logic& logic) {
  const TheoryName* row = find_theory_sort(name);
  return row != nullptr && logic.has(row->theory);
}

bool needs_qualified_head(std::string_view name) {
  const ConstructWord* word = find_construct_word(name);
  return word != nullptr && word->taken_between_bars;
}

void print_quoted(std::ostream& out, std::string_view name) {
  if (is_simple_symbol(name)) {
    out << name;
  } else {
    out << '|' << name << '|';
  }
}

void print_symbol(std::ostream& out, std::string_view manager_name, std::string_view escape_prefix,
                  const Logic& logic) {
  print_quoted(out, name_to_smtlib(manager_name, NameKind::Symbol, escape_prefix, logic));
}

namespace {

// The number of names in the text of a type, saturating at 64 bits. Types are shared graphs,
// whereas sorts are trees.
uint64_t count_names(const DataType* root) {
  hsh::HashMap<const DataType*, uint64_t> counts;
  struct Frame {
    const DataType* type;
    size_t next;  // the component to go to next
    uint64_t names;
  };
  std::vector<Frame> open{{root, 0, 0}};
  for (;;) {
    Frame& frame = open.back();
    uint64_t added = 1;
    if (frame.next == frame.type->num_components()) {
      added = frame.names;
      counts[frame.type] = added;
      open.pop_back();
      if (open.empty()) return added;
    } else if (const DataType* component = frame.type->get_component(frame.next);
               !component->is_simple()) {
      const auto found = counts.find(component);
      if (found == counts.end()) {
        open.push_back({component, 0, 0});
        continue;
      }
      added = found->second;
    }
    Frame& above = open.back();
    above.names = above.names > UINT64_MAX - added ? UINT64_MAX : above.names + added;
    ++above.next;
  }
}

// Whether nothing in the type is nested more than twice; its text is then no larger than its graph.
bool is_flat(const DataType* type) {
  for (size_t i = 0; i < type->num_components(); ++i) {
    const DataType* component = type->get_component(i);
    for (size_t j = 0; j < component->num_components(); ++j) {
      if (!component->get_component(j)->is_simple()) return false;
    }
  }
  return true;
}

}  // namespace

std::string significand_text(size_t m) {
  return m == SIZE_MAX ? "18446744073709551616" : std::to_string(m + 1);
}

void print_type(std::ostream& out, const TermManager& manager, const DataType* type,
                std::string_view escape_prefix, const Logic& logic) {
  require_own(manager, type);
  if (!is_flat(type) && count_names(type) > max_names_in_sort) {
    throw Exception("a sort of more than ") << max_names_in_sort << " names is too large to write";
  }
  struct Frame {
    const DataType* type;
    size_t next;  // the component to print next
  };
  std::vector<Frame> open;  // the compounds around the current position
  const auto print = [&](const DataType* t) {
    size_t width = 0;
    size_t e = 0;
    size_t m = 0;
    if (t == manager.get_bool_type() || t == manager.get_int_type() ||
        t == manager.get_rat_type()) {
      out << t->get_name();
    } else if (t == manager.get_fprounding_type()) {
      out << "RoundingMode";
    } else if (t->is_simple()) {
      print_quoted(out, name_to_smtlib(t->get_name(), NameKind::Sort, escape_prefix, logic));
    } else if (manager.is_bv_type(t, &width)) {
      out << "(_ BitVec " << std::to_string(width) << ')';
    } else if (manager.is_fp_type(t, &e, &m)) {
      out << "(_ FloatingPoint " << std::to_string(e) << ' ' << significand_text(m) << ')';
    } else {
      out << '(';
      open.push_back({t, 0});
    }
  };

  print(type);
  while (!open.empty()) {
    Frame& frame = open.back();
    if (frame.next == frame.type->num_components()) {
      out << ')';
      open.pop_back();
      continue;
    }
    if (frame.next != 0) out << ' ';
    const DataType* component = frame.type->get_component(frame.next);
    // The head of an array type is a name of the standard, not a name of the user.
    if (frame.next++ == 0 && manager.is_array_type(frame.type, nullptr, nullptr)) {
      out << "Array";
    } else {
      print(component);
    }
  }
}

namespace {

// The number of binary digits of a number, 0 for the number 0. Returns false for a negative number
// and for a fraction, which have no bits.
bool count_bits(const QNumber& value, size_t& bits) {
  if (!value.is_integer() || value.is_negative()) return false;
  bits = numbers::bit_length(value);
  return true;
}

}  // namespace

bool print_bv_value(std::ostream& out, const QNumber& value, size_t width) {
  size_t significant = 0;
  if (!count_bits(value, significant) || significant > width) return false;
  out << "(_ bv" << value.to_str() << ' ' << std::to_string(width) << ')';
  return true;
}

bool print_fp_bits(std::ostream& out, const QNumber& bits, size_t e, size_t m) {
  size_t significant = 0;
  if (e == 0 || m == 0 || !count_bits(bits, significant)) return false;
  // The digits are composed in memory, one byte each, so the width is bounded.
  constexpr size_t max_width = size_t{1} << 32;
  if (e > max_width || m > max_width - e) throw std::bad_alloc();
  const size_t width = 1 + e + m;
  if (significant > width) return false;
  const std::string text = numbers::to_digits(bits, 2, width);
  const std::string_view digits(text);
  out << "(fp #b" << digits.substr(0, 1) << " #b" << digits.substr(1, e) << " #b"
      << digits.substr(1 + e) << ')';
  return true;
}

void print_number(std::ostream& out, const QNumber& value, bool as_real) {
  std::string text = value.to_str();
  const bool negative = text[0] == '-';
  if (negative) text.erase(0, 1);
  if (negative) out << "(- ";
  const size_t bar = text.find('/');
  if (bar != std::string::npos) {
    out << "(/ " << std::string_view(text).substr(0, bar) << ".0 "
        << std::string_view(text).substr(bar + 1) << ".0)";
  } else {
    out << text << (as_real ? ".0" : "");
  }
  if (negative) out << ')';
}

bool print_fp_special(std::ostream& out, const QNumber& bits, size_t e, size_t m) {
  if (e == 0 || m == 0) return false;
  const auto print = [&](const char* name) {
    out << "(_ " << name << ' ' << std::to_string(e) << ' ' << significand_text(m) << ')';
    return true;
  };
  size_t significant = 0;
  if (!count_bits(bits, significant)) return false;
  if (significant == 0) return print("+zero");
  // In an infinity or a NaN all exponent bits are one; in a negative zero only the sign is.
  if (significant < e + m || significant > e + m + 1) return false;
  QNumber sign;
  BVNumber::pow2(e + m, &sign);
  if (bits == sign) return print("-zero");
  IEEEFloat value({e, m}, IEEEFloat::ROUND_EVEN);
  value.self_inf(/*negative=*/false);
  if (bits == value.get_bits()) return print("+oo");
  value.self_inf(/*negative=*/true);
  if (bits == value.get_bits()) return print("-oo");
  value.self_nan();
  return bits == value.get_bits() && print("NaN");
}

namespace {

// Computes the number of digits after the decimal point; false if the digits do not end.
bool has_last_digit(mpz_srcptr denominator, mp_bitcnt_t& digits) {
  GmpInteger rest;
  GmpInteger five;
  const mp_bitcnt_t twos = mpz_scan1(denominator, 0);
  mpz_tdiv_q_2exp(rest, denominator, twos);
  mpz_set_ui(five, 5);
  digits = std::max(twos, mpz_remove(rest, rest, five));
  return mpz_cmp_ui(static_cast<mpz_srcptr>(rest), 1) == 0;
}

// A fraction that is not negative, written as in 0.5.
std::string decimal_text(mpz_srcptr numerator, mpz_srcptr denominator, mp_bitcnt_t digits) {
  GmpInteger scaled;
  mpz_ui_pow_ui(scaled, 10, digits);
  mpz_mul(scaled, scaled, numerator);
  mpz_divexact(scaled, scaled, denominator);
  std::string text = QNumber(scaled).to_str();
  if (text.size() <= digits) text.insert(0, digits + 1 - text.size(), '0');
  text.insert(text.size() - digits, ".");
  return text;
}

}  // namespace

void print_real_value(std::ostream& out, const QNumber& value) {
  const QNumber number = value.canonical();
  if (number.is_negative()) {
    const std::string text = number.to_str();
    const size_t bar = text.find('/');
    out << "(/ (- " << std::string_view(text).substr(1, bar - 1) << ") "
        << (bar == std::string::npos ? "1" : std::string_view(text).substr(bar + 1)) << ')';
    return;
  }
  if (number.is_integer()) {
    out << number.to_str() << ".0";
    return;
  }
  GmpInteger n;
  GmpInteger d;
  numbers::get_numerator(n, number);
  numbers::get_denominator(d, number);
  mp_bitcnt_t digits = 0;
  if (has_last_digit(d, digits)) {
    out << decimal_text(n, d, digits);
  } else {
    out << "(/ " << QNumber(n).to_str() << ' ' << QNumber(d).to_str() << ')';
  }
}

}  // namespace quill
