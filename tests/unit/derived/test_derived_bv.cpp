#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <string>

#include "quill/derived/derived_bv.h"
#include "quill/terms/termmanager/term_manager.h"
#include "tests/support/manager_test.h"

namespace quill {
namespace {

// --- Terms ---

class DerivedBV : public testing::ManagerTest {
 protected:
  const Term_* const a = bv("a", 8);
  const Term_* const b = bv("b", 8);
  const Term_* const zero = m.make_bv_number(QNumber(), 8);
};

TEST_F(DerivedBV, NegatedConnectives) {
  EXPECT_EQ(make_bv_nand(m, a, b), m.make_bv_not(m.make_bv_and(a, b)));
  EXPECT_EQ(make_bv_nor(m, a, b), m.make_bv_not(m.make_bv_or(a, b)));
  EXPECT_EQ(make_bv_xnor(m, a, b), m.make_bv_not(m.make_bv_xor(a, b)));
}

TEST_F(DerivedBV, ListsAreFoldedFromTheLeft) {
  const Term_* c = bv("c", 8);
  EXPECT_EQ(make_bv_and(m, {a, b, c}), m.make_bv_and(m.make_bv_and(a, b), c));
  EXPECT_EQ(make_bv_or(m, {a, b, c}), m.make_bv_or(m.make_bv_or(a, b), c));
  EXPECT_EQ(make_bv_xor(m, {a, b, c}), m.make_bv_xor(m.make_bv_xor(a, b), c));
  EXPECT_EQ(make_bv_add(m, {a, b, c}), m.make_bv_add(m.make_bv_add(a, b), c));
  EXPECT_EQ(make_bv_mul(m, {a, b, c}), m.make_bv_mul(m.make_bv_mul(a, b), c));
  EXPECT_EQ(make_bv_concat(m, {a, b, c}), m.make_bv_concat(m.make_bv_concat(a, b), c));
  EXPECT_EQ(make_bv_add(m, {a}), a);
  EXPECT_EQ(make_bv_add(m, m.make_bv_add(a, b)->arguments()), m.make_bv_add(a, b));
}

TEST_F(DerivedBV, ListsNeedATermAndBitVectors) {
  const Term_* i = constant("i", m.get_int_type());
  const std::string before = m.describe_state();
  EXPECT_EQ(error_of([&] { make_bv_and(m, TermSpan()); }), "make_bv_and needs at least one term");
  EXPECT_EQ(error_of([&] { make_bv_or(m, TermSpan()); }), "make_bv_or needs at least one term");
  EXPECT_EQ(error_of([&] { make_bv_xor(m, TermSpan()); }), "make_bv_xor needs at least one term");
  EXPECT_EQ(error_of([&] { make_bv_add(m, TermSpan()); }), "make_bv_add needs at least one term");
  EXPECT_EQ(error_of([&] { make_bv_mul(m, TermSpan()); }), "make_bv_mul needs at least one term");
  EXPECT_EQ(error_of([&] { make_bv_concat(m, TermSpan()); }),
            "make_bv_concat needs at least one term");
  EXPECT_EQ(error_of([&] { make_bv_add(m, {i}); }), "type error. term i is not a bit-vector");
  EXPECT_EQ(m.describe_state(), before);
}

TEST_F(DerivedBV, ComparisonsExchangeTheirOperands) {
  EXPECT_EQ(make_bv_uge(m, a, b), m.make_bv_ule(b, a));
  EXPECT_EQ(make_bv_ugt(m, a, b), m.make_bv_ult(b, a));
  EXPECT_EQ(make_bv_sge(m, a, b), m.make_bv_sle(b, a));
  EXPECT_EQ(make_bv_sgt(m, a, b), m.make_bv_slt(b, a));
}

TEST_F(DerivedBV, SmodIsBuiltFromSrem) {
  const Term_* r = m.make_bv_srem(a, b);
  const Term_* keeps_r = m.make_or(m.make_equal(r, zero), m.make_bv_sle(zero, m.make_bv_xor(r, b)));
  EXPECT_EQ(make_bv_smod(m, a, b), m.make_term_ite(keeps_r, r, m.make_bv_add(r, b)));
}

TEST_F(DerivedBV, Reductions) {
  EXPECT_EQ(make_bv_redor(m, a), m.make_bv_not(m.make_bv_comp(a, zero)));
  EXPECT_EQ(make_bv_redand(m, a), m.make_bv_comp(a, m.make_bv_not(zero)));
}

TEST_F(DerivedBV, RepeatOnceIsTheVector) { EXPECT_EQ(make_bv_repeat(m, 1, a), a); }

TEST_F(DerivedBV, RepeatDoubles) {
  const Term_* two = m.make_bv_concat(a, a);
  const Term_* three = m.make_bv_concat(a, two);
  EXPECT_EQ(make_bv_repeat(m, 2, a), two);
  EXPECT_EQ(make_bv_repeat(m, 3, a), three);
  EXPECT_EQ(make_bv_repeat(m, 7, a), m.make_bv_concat(a, m.make_bv_concat(three, three)));
}

TEST_F(DerivedBV, RepeatIsLogarithmic) {
  const size_t before = m.get_bank()->size();
  const Term_* t = make_bv_repeat(m, (size_t{1} << 60) + 1, a);
  EXPECT_EQ(m.get_bank()->size() - before, 61u);
  size_t width = 0;
  EXPECT_TRUE(m.is_bv_type(t->type(), &width));
  EXPECT_EQ(width, (size_t{8} << 60) + 8);
}

TEST_F(DerivedBV, RepeatRefusesWhatIsNoWidth) {
  EXPECT_EQ(error_of([&] { make_bv_repeat(m, 0, a); }), "a bit-vector cannot be repeated no times");
  EXPECT_EQ(error_of([&] { make_bv_repeat(m, size_t{1} << 61, a); }),
            "a bit-vector of 2305843009213693952 times 8 bits is too wide");
  EXPECT_EQ(error_of([&] { make_bv_repeat(m, 2, m.make_true()); }),
            "type error. term `true` is not a bit-vector");
}

TEST_F(DerivedBV, WideProductsDoNotWrapTheirWidth) {
  const size_t width = size_t{1} << 63;
  const Term_* wide = bv("wide", width);
  const char* text = "a bit-vector of 2 times 9223372036854775808 bits is too wide";
  EXPECT_EQ(error_of([&] { make_bv_umulo(m, wide, wide); }), text);
  EXPECT_EQ(error_of([&] { make_bv_smulo(m, wide, wide); }), text);
  const Term_* widest = bv("widest", width - 1);
  EXPECT_EQ(error_of([&] { make_bv_umulo(m, widest, widest); }), "no error");
}

TEST_F(DerivedBV, OverflowOfVectorsTooWideToSpellIsBuilt) {
  const Term_* wide = bv("wide", ~size_t{0});
  EXPECT_EQ(error_of([&] { make_bv_sdivo(m, wide, wide); }), "no error");
  EXPECT_EQ(error_of([&] { make_bv_redand(m, wide); }), "no error");
}

TEST_F(DerivedBV, OperandsOfOtherWidthsAreRefused) {
  const Term_* c = bv("c", 9);
  for (const auto make : {make_bv_nand, make_bv_nor, make_bv_xnor, make_bv_uge, make_bv_ugt,
                          make_bv_sge, make_bv_sgt, make_bv_smod, make_bv_uaddo, make_bv_saddo,
                          make_bv_usubo, make_bv_ssubo, make_bv_umulo, make_bv_smulo}) {
    EXPECT_NE(error_of([&] { make(m, a, c); }), "no error");
  }
}

// --- Meanings ---
//
// All values of widths 1 to 4 against machine integers.

uint64_t low_bits(uint64_t value, size_t width) { return value & ((uint64_t{1} << width) - 1); }

int64_t as_signed(uint64_t value, size_t width) {
  const int64_t number = static_cast<int64_t>(value);
  return (value >> (width - 1)) != 0 ? number - (int64_t{1} << width) : number;
}

class Evaluation {
 public:
  Evaluation(const TermManager& manager, const Term_* first, uint64_t first_value,
             const Term_* second, uint64_t second_value)
      : m(manager), a(first), b(second), a_value(first_value), b_value(second_value) {}

  // Of Bool and bit-vector terms over the two constants.
  uint64_t operator()(const Term_* t) const {
    if (t == a) return a_value;
    if (t == b) return b_value;
    QNumber number;
    if (m.is_number(t->symbol, &number)) return static_cast<uint64_t>(number.num);
    const uint64_t x = (*this)(t->args[0]);
    const uint64_t y = t->symbol->arity > 1 ? (*this)(t->args[1]) : 0;
    const size_t width = width_of(t->args[0]);
    size_t k = 0;
    size_t low = 0;
    switch (m.get_tag(t->symbol)) {
      case SymbolTag::NOT:
        return x == 0;
      case SymbolTag::AND:
      case SymbolTag::BV_AND:
        return x & y;
      case SymbolTag::OR:
      case SymbolTag::BV_OR:
        return x | y;
      case SymbolTag::EQUAL:
      case SymbolTag::BV_COMP:
        return x == y;
      case SymbolTag::TERM_ITE:
        return x != 0 ? y : (*this)(t->args[2]);
      case SymbolTag::BV_NOT:
        return low_bits(~x, width);
      case SymbolTag::BV_XOR:
        return x ^ y;
      case SymbolTag::BV_NEG:
        return low_bits(~x + 1, width);
      case SymbolTag::BV_ADD:
        return low_bits(x + y, width);
      case SymbolTag::BV_SUB:
        return low_bits(x - y, width);
      case SymbolTag::BV_MUL:
        return low_bits(x * y, width);
      case SymbolTag::BV_ULT:
        return x < y;
      case SymbolTag::BV_ULE:
        return x <= y;
      case SymbolTag::BV_SLT:
        return as_signed(x, width) < as_signed(y, width);
      case SymbolTag::BV_SLE:
        return as_signed(x, width) <= as_signed(y, width);
      case SymbolTag::BV_SREM:
        return y == 0 ? x
                      : low_bits(static_cast<uint64_t>(as_signed(x, width) % as_signed(y, width)),
                                 width);
      case SymbolTag::BV_CONCAT:
        return x << width_of(t->args[1]) | y;
      case SymbolTag::BV_EXTRACT:
        m.is_bv_extract(t->symbol, &k, &low, nullptr);
        return low_bits(x >> low, k - low + 1);
      case SymbolTag::BV_ZERO_EXTEND:
        return x;
      case SymbolTag::BV_SIGN_EXTEND:
        m.is_bv_sign_extend(t->symbol, &k, nullptr);
        return low_bits(static_cast<uint64_t>(as_signed(x, width)), width + k);
      default:
        ADD_FAILURE() << "no meaning for " << t->to_str();
        return 0;
    }
  }

 private:
  size_t width_of(const Term_* t) const {
    size_t width = 1;
    m.is_bv_type(t->type(), &width);
    return width;
  }

  const TermManager& m;
  const Term_* a;
  const Term_* b;
  uint64_t a_value;
  uint64_t b_value;
};

using Builder = std::function<const Term_*(TermManager&, const Term_*, const Term_*)>;
using Meaning = std::function<uint64_t(uint64_t a, uint64_t b, size_t width)>;

void expect_meaning(const Builder& make, const Meaning& meaning) {
  for (size_t width = 1; width <= 4; ++width) {
    TermManager m;
    const Term_* a = m.make_constant(m.make_symbol("a", m.get_bv_type(width)));
    const Term_* b = m.make_constant(m.make_symbol("b", m.get_bv_type(width)));
    const Term_* t = make(m, a, b);
    for (uint64_t x = 0; x < (uint64_t{1} << width); ++x) {
      for (uint64_t y = 0; y < (uint64_t{1} << width); ++y) {
        EXPECT_EQ(Evaluation(m, a, x, b, y)(t), meaning(x, y, width))
            << "of " << x << " and " << y << " in " << width << " bits";
      }
    }
  }
}

// A condition on the values as signed numbers that holds when the result is not in range.
Meaning overflows(std::function<int64_t(int64_t, int64_t)> exact) {
  return [exact](uint64_t a, uint64_t b, size_t width) -> uint64_t {
    const int64_t result = exact(as_signed(a, width), as_signed(b, width));
    const int64_t limit = int64_t{1} << (width - 1);
    return result < -limit || result >= limit;
  };
}

TEST(DerivedBVMeaning, Smod) {
  expect_meaning(make_bv_smod, [](uint64_t a, uint64_t b, size_t width) {
    const int64_t x = as_signed(a, width);
    const int64_t y = as_signed(b, width);
    if (y == 0) return a;
    const int64_t remainder = x % y;
    const bool adjusted = remainder != 0 && (remainder < 0) != (y < 0);
    return low_bits(static_cast<uint64_t>(adjusted ? remainder + y : remainder), width);
  });
}

TEST(DerivedBVMeaning, Repeat) {
  for (size_t n = 1; n <= 9; ++n) {
    expect_meaning(
        [n](TermManager& m, const Term_* a, const Term_*) { return make_bv_repeat(m, n, a); },
        [n](uint64_t a, uint64_t, size_t width) {
          uint64_t result = 0;
          for (size_t i = 0; i < n; ++i) result = result << width | a;
          return result;
        });
  }
}

TEST(DerivedBVMeaning, Reductions) {
  expect_meaning([](TermManager& m, const Term_* a, const Term_*) { return make_bv_redor(m, a); },
                 [](uint64_t a, uint64_t, size_t) -> uint64_t { return a != 0; });
  expect_meaning([](TermManager& m, const Term_* a, const Term_*) { return make_bv_redand(m, a); },
                 [](uint64_t a, uint64_t, size_t width) -> uint64_t {
                   return a == low_bits(~uint64_t{0}, width);
                 });
}

TEST(DerivedBVMeaning, UnsignedOverflow) {
  expect_meaning(make_bv_uaddo, [](uint64_t a, uint64_t b, size_t width) -> uint64_t {
    return a + b >= uint64_t{1} << width;
  });
  expect_meaning(make_bv_usubo, [](uint64_t a, uint64_t b, size_t) -> uint64_t { return a < b; });
  expect_meaning(make_bv_umulo, [](uint64_t a, uint64_t b, size_t width) -> uint64_t {
    return a * b >= uint64_t{1} << width;
  });
}

TEST(DerivedBVMeaning, SignedOverflow) {
  expect_meaning([](TermManager& m, const Term_* a, const Term_*) { return make_bv_nego(m, a); },
                 overflows([](int64_t a, int64_t) { return -a; }));
  expect_meaning(make_bv_saddo, overflows([](int64_t a, int64_t b) { return a + b; }));
  expect_meaning(make_bv_ssubo, overflows([](int64_t a, int64_t b) { return a - b; }));
  expect_meaning(make_bv_smulo, overflows([](int64_t a, int64_t b) { return a * b; }));
  expect_meaning(make_bv_sdivo, overflows([](int64_t a, int64_t b) { return b == 0 ? 0 : a / b; }));
}

}  // namespace
}  // namespace quill
