// A number has several forms: small or big, normalised or not. Whatever form a request has, it
// finds and makes what the same request makes in any other form.

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "quill/derived/derived.h"
#include "quill/terms/termmanager/term_manager.h"
#include "quill/utils/qnumber.h"
#include "tests/support/unchanged.h"

namespace quill {
namespace {

using testing::refusal;

// The number in the big form, which a target keeps whatever is assigned to it.
QNumber big(const QNumber& value) {
  QNumber number = QNumber::from_string("1000000000000000000000000000000");
  number = value;
  EXPECT_TRUE(number.is_big());
  EXPECT_EQ(number, value);
  return number;
}

// The parts times a factor, unnormalised, in the form that comes of GMP's integers.
QNumber scaled(const char* numerator, const char* denominator, int factor) {
  mpz_t n;
  mpz_t d;
  mpz_init_set_str(n, numerator, 10);
  mpz_init_set_str(d, denominator, 10);
  mpz_mul_si(n, n, factor);
  mpz_mul_si(d, d, factor);
  const QNumber number(n, d);
  mpz_clears(n, d, nullptr);
  return number;
}

std::vector<QNumber> forms(const char* numerator, const char* denominator) {
  const QNumber plain = QNumber::from_string(std::string(numerator) + "/" + denominator);
  std::vector<QNumber> all = {plain,
                              big(plain),
                              scaled(numerator, denominator, 1),
                              scaled(numerator, denominator, 6),
                              scaled(numerator, denominator, -1),
                              scaled(numerator, denominator, -10),
                              big(scaled(numerator, denominator, 15))};
  for (const QNumber& number : all) EXPECT_EQ(number.to_str(), plain.to_str());
  return all;
}

struct Value {
  const char* numerator;
  const char* denominator;
};

// Around the bounds of 32 and 64 bits, and beyond them.
const Value values[] = {{"0", "1"},
                        {"1", "1"},
                        {"7", "1"},
                        {"-7", "1"},
                        {"2147483647", "1"},
                        {"2147483648", "1"},
                        {"-2147483648", "1"},
                        {"-2147483649", "1"},
                        {"9223372036854775807", "1"},
                        {"9223372036854775808", "1"},
                        {"-9223372036854775807", "1"},
                        {"-9223372036854775808", "1"},
                        {"18446744073709551616", "1"},
                        {"1", "3"},
                        {"-22", "7"},
                        {"4294967296", "3"},
                        {"-3", "4294967296"},
                        {"9223372036854775807", "2"},
                        {"1", "9223372036854775807"},
                        {"1", "9223372036854775808"},
                        {"123456789012345678901", "1234567890123456789"}};

// The requests that take a number; the terms or symbols that they return are compared by text.
using Request = std::function<std::string(TermManager&, const QNumber&)>;

struct NamedRequest {
  const char* name;
  Request ask;
};

std::string text_of(const Term_* t) { return std::to_string(t->id) + " " + t->to_str(); }

const Term_* integer_x(TermManager& m) {
  return m.make_constant(m.make_symbol("x", m.get_int_type()));
}

const std::vector<NamedRequest>& requests() {
  static const std::vector<NamedRequest> all = {
      {"make_number", [](TermManager& m, const QNumber& q) { return text_of(m.make_number(q)); }},
      {"make_bv_number",
       [](TermManager& m, const QNumber& q) { return text_of(m.make_bv_number(q, 80)); }},
      {"make_fp_bits_number",
       [](TermManager& m, const QNumber& q) { return text_of(m.make_fp_bits_number(q, 11, 68)); }},
      {"make_fp_rat_number",
       [](TermManager& m, const QNumber& q) {
         return text_of(m.make_fp_rat_number(q, 8, 23, m.make_fprounding_zero()));
       }},
      {"make_int_modular_congruence_symbol",
       [](TermManager& m, const QNumber& q) {
         return std::string(m.make_int_modular_congruence_symbol(q)->name);
       }},
      {"make_int_modular_congruence",
       [](TermManager& m, const QNumber& q) {
         const Term_* x = integer_x(m);
         return text_of(m.make_int_modular_congruence(q, x, x));
       }},
      {"make_divide",
       [](TermManager& m, const QNumber& q) { return text_of(make_divide(m, integer_x(m), q)); }},
      {"make_div",
       [](TermManager& m, const QNumber& q) { return text_of(make_div(m, integer_x(m), q)); }},
      {"make_mod",
       [](TermManager& m, const QNumber& q) { return text_of(make_mod(m, integer_x(m), q)); }},
      {"make_divisible",
       [](TermManager& m, const QNumber& q) {
         return text_of(make_divisible(m, integer_x(m), q));
       }},
  };
  return all;
}

// The answer or the refusal.
std::string ask(const NamedRequest& request, TermManager& m, const QNumber& number) {
  try {
    return request.ask(m, number);
  } catch (const Exception& e) {
    return e.what();
  }
}

TEST(NumberForms, TheFirstRequestMakesTheSameInAnyForm) {
  for (const NamedRequest& request : requests()) {
    for (const Value& value : values) {
      std::string answer;
      std::string state;
      for (const QNumber& number : forms(value.numerator, value.denominator)) {
        TermManager m;
        const std::string found = ask(request, m, number);
        EXPECT_EQ(m.check_consistency(), "");
        if (state.empty()) {
          answer = found;
          state = m.describe_state();
          continue;
        }
        ASSERT_EQ(found, answer) << request.name << " of " << number.to_str();
        ASSERT_EQ(m.describe_state(), state) << request.name << " of " << number.to_str();
      }
    }
  }
}

TEST(NumberForms, LaterRequestsFindWhatIsThereInAnyForm) {
  for (const NamedRequest& request : requests()) {
    for (const Value& value : values) {
      const std::vector<QNumber> all = forms(value.numerator, value.denominator);
      for (const QNumber& first : all) {
        TermManager m;
        const std::string answer = ask(request, m, first);
        const std::string state = m.describe_state();
        for (const QNumber& number : all) {
          ASSERT_EQ(ask(request, m, number), answer) << request.name << " of " << number.to_str();
        }
        ASSERT_EQ(m.describe_state(), state) << request.name << " of " << first.to_str();
      }
    }
  }
}

// The name of the first answer is given back, so that nothing but the value leads to it.
TEST(NumberForms, ANumeralThatLostItsNameIsFoundInAnyForm) {
  for (const Value& value : values) {
    for (const QNumber& first : forms(value.numerator, value.denominator)) {
      TermManager m;
      const Term_* t = m.make_number(first);
      m.free_symbol(t->symbol);
      for (const QNumber& number : forms(value.numerator, value.denominator)) {
        EXPECT_EQ(m.make_number(number), t) << number.to_str();
      }
      EXPECT_EQ(m.get_bank()->size(), 3U);
    }
  }
}

TEST(NumberForms, ACongruenceThatLostItsNameIsFoundInAnyForm) {
  for (const QNumber& first : forms("7", "1")) {
    TermManager m;
    const Symbol* s = m.make_int_modular_congruence_symbol(first);
    m.free_symbol(s);
    for (const QNumber& number : forms("7", "1")) {
      EXPECT_EQ(m.make_int_modular_congruence_symbol(number), s);
    }
    EXPECT_EQ(m.get_signature()->size(), 20U);
    EXPECT_EQ(m.check_consistency(), "");
  }
}

// The tables keep only the value of a big 7, not its form.
TEST(NumberForms, ABigSevenIsKeptAsASmallOne) {
  TermManager m;
  m.make_number(big(7));
  m.make_int_modular_congruence_symbol(big(7));
  m.make_bv_number(big(7), 3);
  const std::string state = m.describe_state();
  EXPECT_NE(state.find("\nnumber_cache 7 -> 2\n"), std::string::npos);
  EXPECT_NE(state.find("\nnumber_values 7#19 -> 7\n"), std::string::npos);
  EXPECT_NE(state.find("\nnumber_values 7_3#21 -> 7\n"), std::string::npos);
  EXPECT_NE(state.find("\nint_mod_congr_ 7 -> `int_mod_congr_7`#20\n"), std::string::npos);
  EXPECT_EQ(state.find("(big)"), std::string::npos);
}

TEST(NumberForms, RefusalsShowTheNormalisedValue) {
  TermManager m;
  const std::string modulus = "Exception: invalid modulus in make_int_modular_congruence_symbol: ";
  const auto refused_modulus = [&](const QNumber& q) {
    return refusal(m, [&] { m.make_int_modular_congruence_symbol(q); });
  };
  EXPECT_EQ(refused_modulus(QNumber(10, 4)), modulus + "5/2");
  EXPECT_EQ(refused_modulus(QNumber(-6, 2)), modulus + "-3");
  EXPECT_EQ(refused_modulus(QNumber(6, -2)), modulus + "-3");
  EXPECT_EQ(refused_modulus(QNumber(0, 5)), modulus + "0");
  EXPECT_EQ(refused_modulus(big(-3)), modulus + "-3");
  EXPECT_EQ(refused_modulus(big(QNumber(10, 4))), modulus + "5/2");
  EXPECT_EQ(refusal(m, [&] { m.make_bv_number(QNumber(10, 4), 8); }),
            "error: can't make a bv number from a fractional number: 5/2");
  EXPECT_EQ(refusal(m, [&] { m.make_bv_number(big(QNumber(-6, 2)), 8); }),
            "error: can't make a bv number from a negative number: -3");
  EXPECT_EQ(refusal(m, [&] { m.make_fp_bits_number(big(QNumber(512, 2)), 3, 4); }),
            "Exception: the number 256 doesn't fit in 8 bits");
}

// A target keeps its form; only what the manager keeps is canonical.
TEST(NumberForms, TheCallersNumberStaysAsItIs) {
  TermManager m;
  const QNumber seven = big(7);
  const QNumber half(3, 6);
  m.make_number(seven);
  m.make_number(half);
  m.make_int_modular_congruence_symbol(seven);
  EXPECT_TRUE(seven.is_big());
  EXPECT_EQ(half.num, 3);
  EXPECT_EQ(half.den, 6);
}

}  // namespace
}  // namespace quill
