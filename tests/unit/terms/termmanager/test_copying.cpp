// Copying terms between managers: what is rebuilt, in which order, with which requests, and what a
// failure leaves.

#include <gtest/gtest.h>

#include <functional>
#include <new>
#include <stdexcept>
#include <string>
#include <vector>

#include "quill/terms/termmanager/term_manager.h"
#include "tests/support/failing_memory.h"
#include "tests/support/manager_test.h"

namespace quill {
namespace {

using testing::constant;
using testing::sizes;
using Terms = std::vector<const Term_*>;
using Symbols = std::vector<const Symbol*>;
using TermMap = TermManager::TermMap;

// A manager that writes down which terms are asked of it, and can be told to fail.
class Recording : public TermManager {
 public:
  const Term_* make_term(const Symbol* s, const Terms& args) override {
    requests += std::string(requests.empty() ? "" : " ") + s->name;
    if (requests_until_failure == 0) throw std::runtime_error("make_term");
    --requests_until_failure;
    return TermManager::make_term(s, args);
  }

  std::string requests;  // the symbols, in the order of the requests
  int requests_until_failure = 1000000;
};

// The class and the text of what the request throws.
std::string failure_of(const std::function<void()>& request) {
  try {
    request();
  } catch (const TermManager::error& e) {
    return std::string("error: ") + e.what();
  } catch (const Exception& e) {
    return std::string("Exception: ") + e.what();
  }
  return "none";
}

class Copying : public ::testing::Test {
 protected:
  const Term_* f(const Term_* s, const Term_* t) {
    return a.make_uninterpreted_function(binary, {s, t});
  }
  const Term_* g(const Term_* t) { return a.make_uninterpreted_function(unary, {t}); }

  TermManager a;
  Recording b;
  const DataType* const integers = a.get_int_type();
  const Symbol* const binary =
      a.make_symbol("f", a.get_function_type({integers, integers}, integers));
  const Symbol* const unary = a.make_symbol("g", a.get_function_type({integers}, integers));
  const Term_* const x = constant(a, "x", integers);
  const Term_* const y = constant(a, "y", integers);
};

//------------------------------------------------------------------------------------------------
// One term

TEST_F(Copying, ATermOfTheSameManagerIsItsOwnCopy) {
  const Term_* t = a.make_equal(f(x, y), a.make_number(7));
  const auto before = sizes(a);
  EXPECT_EQ(a.copy_term(a, t), t);
  EXPECT_EQ(a.copy_term_with_subst(a, t, {}), t);
  EXPECT_EQ(sizes(a), before);
}

TEST_F(Copying, WhatTheSameManagerNamesNoLongerIsItsOwnCopy) {
  a.free_symbol(x->symbol);
  const Term_* other = constant(a, "x", a.get_rat_type());
  Terms terms;
  a.copy_terms(a, {x, other}, terms, /*use_manager_marks=*/false);
  EXPECT_EQ(terms, (Terms{x, other}));
  Symbols symbols;
  a.copy_symbols(a, {x->symbol, other->symbol}, symbols);
  EXPECT_EQ(symbols, (Symbols{x->symbol, other->symbol}));
  EXPECT_EQ(a.copy_term_with_subst(a, g(x), {}), g(x));
}

TEST_F(Copying, WithinOneManagerASubstitutionRebuilds) {
  TermMap subst;
  subst[x] = y;
  EXPECT_EQ(a.copy_term_with_subst(a, f(g(x), y), subst), f(g(y), y));
  a.free_symbol(unary);
  EXPECT_EQ(a.copy_term_with_subst(a, f(g(x), y), subst), f(g(y), y));
}

TEST_F(Copying, AConstantOfAUserTypeIsMadeByName) {
  const DataType* u = a.get_simple_type("U", false);
  const Term_* c = b.copy_term(a, constant(a, "u", u));
  EXPECT_STREQ(c->symbol->name, "u");
  EXPECT_EQ(c->symbol->type, b.get_simple_type("U", true));
  EXPECT_NE(b.get_simple_type("U", true), nullptr);
  EXPECT_EQ(c, b.make_constant(b.get_signature()->get_symbol("u")));
  EXPECT_TRUE(b.is_constant(c->symbol));
}

TEST_F(Copying, ATakenNameIsTheCopyWhateverItsType) {
  const Symbol* present = b.make_symbol("x", b.get_bool_type());
  const Term_* c = b.copy_term(a, x);
  EXPECT_EQ(c->symbol, present);
  EXPECT_EQ(c->symbol->type, b.get_bool_type());
}

TEST_F(Copying, TheCopyIsWhatTheDestinationWouldHaveBuilt) {
  const Term_* c = b.copy_term(a, a.make_leq(f(x, a.make_number(-3)), g(y)));
  const Symbol* bf = b.make_symbol(
      "f", b.get_function_type({b.get_int_type(), b.get_int_type()}, b.get_int_type()));
  const Symbol* bg = b.make_symbol("g", b.get_function_type({b.get_int_type()}, b.get_int_type()));
  const Term_* bx = constant(b, "x", b.get_int_type());
  const Term_* by = constant(b, "y", b.get_int_type());
  EXPECT_EQ(c, b.make_leq(b.make_uninterpreted_function(bf, {bx, b.make_number(-3)}),
                          b.make_uninterpreted_function(bg, {by})));
}

TEST_F(Copying, ArgumentsAreRebuiltFromTheLastToTheFirstAndEachOnce) {
  b.copy_term(a, f(f(x, y), g(x)));
  EXPECT_EQ(b.requests, "x g y f f");
}

TEST_F(Copying, ConstantsAndNumeralsAreRequestedToo) {
  b.copy_term(a, a.make_plus(a.make_number(7), x));
  EXPECT_EQ(b.requests, "x 7 `+_int`");
  b.requests.clear();
  b.copy_term(a, a.make_true());
  EXPECT_EQ(b.requests, "`true`");
  b.requests.clear();
  b.copy_term(a, a.make_fresh_variable(integers));
  EXPECT_EQ(b.requests, "'1");
}

TEST_F(Copying, TheStandardSymbolsAreThoseOfTheDestination) {
  const Term_* p = constant(a, "p", a.get_bool_type());
  const Term_* r = constant(a, "r", a.get_rat_type());
  const Terms roots = {a.make_true(),
                       a.make_false(),
                       a.make_not(p),
                       a.make_and(p, p),
                       a.make_or(p, p),
                       a.make_iff(p, p),
                       a.make_plus(r, x),
                       a.make_times(r, x),
                       a.make_leq(r, x),
                       a.make_equal(r, x),
                       a.make_plus(x, y),
                       a.make_times(x, y),
                       a.make_leq(x, y),
                       a.make_equal(x, y),
                       a.make_floor(r),
                       a.make_fprounding_even(),
                       a.make_fprounding_zero(),
                       a.make_fprounding_plus_inf(),
                       a.make_fprounding_minus_inf()};
  Terms copies;
  b.copy_terms(a, roots, copies, false);
  const Term_* bp = constant(b, "p", b.get_bool_type());
  const Term_* br = constant(b, "r", b.get_rat_type());
  const Term_* bx = constant(b, "x", b.get_int_type());
  const Term_* by = constant(b, "y", b.get_int_type());
  EXPECT_EQ(copies,
            (Terms{b.make_true(), b.make_false(), b.make_not(bp), b.make_and(bp, bp),
                   b.make_or(bp, bp), b.make_iff(bp, bp), b.make_plus(br, bx), b.make_times(br, bx),
                   b.make_leq(br, bx), b.make_equal(br, bx), b.make_plus(bx, by),
                   b.make_times(bx, by), b.make_leq(bx, by), b.make_equal(bx, by), b.make_floor(br),
                   b.make_fprounding_even(), b.make_fprounding_zero(), b.make_fprounding_plus_inf(),
                   b.make_fprounding_minus_inf()}));
  EXPECT_EQ(sizes(b)[1], sizes(TermManager())[1] + 4) << "p, r, x and y";
}

TEST_F(Copying, EqualitiesAndIfThenElsesOfAnyTypeAreMadeForTheCopiedType) {
  const DataType* type = a.get_array_type(a.get_bv_type(8), a.get_simple_type("U", false));
  const Term_* v = constant(a, "v", type);
  const Term_* p = constant(a, "p", a.get_bool_type());
  const Term_* c = b.copy_term(a, a.make_equal(a.make_term_ite(p, v, v), v));
  const DataType* copied = b.get_array_type(b.get_bv_type(8), b.get_simple_type("U", true));
  EXPECT_EQ(c->symbol, b.make_equality_symbol(copied));
  EXPECT_EQ(c->args[0]->symbol, b.make_term_ite_symbol(copied));
  EXPECT_EQ(b.get_tag(c->symbol), SymbolTag::EQUAL);
  const DataType* branches = nullptr;
  EXPECT_TRUE(b.is_term_ite(c->args[0]->symbol, &branches));
  EXPECT_EQ(branches, copied);
}

TEST_F(Copying, AFunctionMayHaveBoolArguments) {
  a.set_reject_bool_arguments(false);
  const Symbol* h = a.make_symbol("h", a.get_function_type({a.get_bool_type()}, a.get_bool_type()));
  const Term_* c = b.copy_term(a, a.make_uninterpreted_function(h, {a.make_true()}));
  EXPECT_EQ(c->to_str(), "(h `true`)");
  EXPECT_EQ(c->symbol->type->to_str(), "(-> Bool Bool)");
  EXPECT_EQ(c->symbol->arity, 1U);
}

TEST_F(Copying, AConstantMayHaveTheTypeOfAFunctionOfNoArguments) {
  const Symbol* s = a.make_symbol("c", a.get_function_type({}, integers));
  const Term_* c = b.copy_term(a, g(a.make_constant(s)));
  EXPECT_EQ(c->to_str(), "(g c)");
  EXPECT_EQ(c->args[0]->symbol->type->to_str(), "(-> Int)");
}

TEST_F(Copying, AFreshVariableKeepsItsName) {
  const Term_* v = a.make_fresh_variable(integers);
  const Term_* c = b.copy_term(a, g(v));
  EXPECT_EQ(c->to_str(), "(g '1)");
  EXPECT_TRUE(b.is_variable(c->args[0]->symbol));
  EXPECT_EQ(a.copy_term(b, c), g(v));
}

TEST_F(Copying, ADelegateOfTheDestinationIsAsked) {
  class Seven : public TermFactory {
   public:
    const Term_* make_term(const Symbol* s, const Terms&) override {
      return std::string(s->name) == "g" ? seven : nullptr;
    }
    const Term_* seven = nullptr;
  } delegate;
  delegate.seven = b.make_number(7);
  b.set_delegate(&delegate);
  b.set_delegate_enabled(true);
  EXPECT_EQ(b.copy_term(a, f(g(x), y))->to_str(), "(f 7 y)");
}

// The walk of the copy is under way when the delegate asks for one of its own.
TEST_F(Copying, ADelegateMaySubstituteInTheDestination) {
  class Substituting : public TermFactory {
   public:
    const Term_* make_term(const Symbol* s, const Terms& args) override {
      if (std::string(s->name) != "f" || busy) return nullptr;
      busy = true;
      const Term_* t = m->substitute(m->do_make_term(s, args), {from}, {to});
      busy = false;
      return t;
    }
    TermManager* m = nullptr;
    const Term_* from = nullptr;
    const Term_* to = nullptr;
    bool busy = false;
  } delegate;
  delegate.m = &b;
  delegate.from = constant(b, "x", b.get_int_type());
  delegate.to = b.make_number(1);
  b.set_delegate(&delegate);
  b.set_delegate_enabled(true);
  const Term_* t = f(g(f(g(x), y)), f(x, g(g(x))));
  const Term_* one = a.make_number(1);
  const Term_* expected = f(g(f(g(one), y)), f(one, g(g(one))));
  EXPECT_EQ(a.copy_term(b, b.copy_term(a, t)), expected);
  Terms copies;
  b.copy_terms(a, {t, t}, copies, /*use_manager_marks=*/true);
  EXPECT_EQ(a.copy_term(b, copies[1]), expected);
}

//------------------------------------------------------------------------------------------------
// Numerals

TEST_F(Copying, NumeralsAreMadeByValue) {
  const QNumber big = QNumber::from_string("123456789012345678901234567890");
  struct Case {
    const char* name;
    const char* type;
    std::function<const Term_*(TermManager&)> make;
  };
  const std::vector<Case> cases = {
      {"0", "Int", [](TermManager& m) { return m.make_number(0); }},
      {"-3", "Int", [](TermManager& m) { return m.make_number(-3); }},
      {"1/3", "Real", [](TermManager& m) { return m.make_number(QNumber(1, 3)); }},
      {"123456789012345678901234567890", "Int", [&](TermManager& m) { return m.make_number(big); }},
      {"5_8", "(BitVec 8)", [](TermManager& m) { return m.make_bv_number(5, 8); }},
      {"0_0", "(BitVec 0)", [](TermManager& m) { return m.make_bv_number(0, 0); }},
      {"123456789012345678901234567890_128", "(BitVec 128)",
       [&](TermManager& m) { return m.make_bv_number(big, 128); }},
      {"0_8_23", "(FP |8:23|)", [](TermManager& m) { return m.make_fp_bits_number(0, 8, 23); }},
      {"31744_5_10", "(FP |5:10|)", [](TermManager& m) { return m.make_fp_plus_inf(5, 10); }},
      {"64512_5_10", "(FP |5:10|)", [](TermManager& m) { return m.make_fp_minus_inf(5, 10); }},
      {"15360_5_10", "(FP |5:10|)",
       [](TermManager& m) { return m.make_fp_rat_number(1, 5, 10, m.make_fprounding_even()); }},
  };
  for (const Case& numeral : cases) {
    const Term_* t = numeral.make(a);
    const Term_* c = b.copy_term(a, t);
    EXPECT_STREQ(c->symbol->name, numeral.name);
    EXPECT_EQ(c->symbol->type->to_str(), numeral.type);
    QNumber value;
    QNumber expected;
    ASSERT_TRUE(b.is_number(c->symbol, &value)) << numeral.name;
    a.is_number(t->symbol, &expected);
    EXPECT_EQ(value, expected) << numeral.name;
    EXPECT_EQ(c, numeral.make(b)) << numeral.name;
  }
  EXPECT_EQ(b.copy_term(a, a.make_fp_nan(8, 23)), b.make_fp_nan(8, 23));
}

TEST_F(Copying, ABitVectorNumeralKeepsItsWidth) {
  const Term_* c = b.copy_term(a, a.make_bv_number(255, 8));
  size_t width = 0;
  EXPECT_TRUE(b.is_bv_type(c->symbol->type, &width));
  EXPECT_EQ(width, 8U);
  EXPECT_STREQ(c->symbol->name, "255_8");
}

// Nobody asked the source for bit-vectors of width 8.
TEST_F(Copying, ANumeralOfATypePutTogetherByHandKeepsItsType) {
  const DataType* type =
      a.get_compound_type({a.get_simple_type("BitVec", false), a.get_simple_type("8", false)});
  const Symbol* s = a.make_symbol("5_8", type);
  ASSERT_EQ(a.make_bv_number(5, 8)->symbol, s);
  const Term_* c = b.copy_term(a, a.make_constant(s));
  EXPECT_EQ(c, b.make_bv_number(5, 8));
  EXPECT_EQ(c->symbol->type, b.get_bv_type(8));
  QNumber value;
  EXPECT_TRUE(b.is_number(c->symbol, &value));
  EXPECT_EQ(value, QNumber(5));
}

TEST_F(Copying, ANumeralOutOfRangeIsRefusedByTheDestination) {
  a.set_typecheck_enabled(false);
  const Term_* negative = a.make_bv_number(-1, 8);
  const Term_* large = a.make_bv_number(256, 8);
  EXPECT_EQ(failure_of([&] { b.copy_term(a, negative); }),
            "error: can't make a bv number from a negative number: -1");
  EXPECT_EQ(failure_of([&] { b.copy_term(a, large); }),
            "Exception: the number 256 doesn't fit in 8 bits");
  b.set_typecheck_enabled(false);
  EXPECT_STREQ(b.copy_term(a, negative)->symbol->name, "-1_8");
}

//------------------------------------------------------------------------------------------------
// Substitution on the way

TEST_F(Copying, EveryOccurrenceOfAKeyBecomesItsValue) {
  const Term_* c = constant(b, "c", b.get_int_type());
  TermMap subst;
  subst[x] = c;
  EXPECT_EQ(b.copy_term_with_subst(a, f(f(x, y), g(x)), subst)->to_str(), "(f (f c y) (g c))");
  EXPECT_EQ(b.get_signature()->get_symbol("x"), nullptr);
  EXPECT_EQ(subst.begin()->first, x) << "the map is as it was";
  EXPECT_EQ(subst.begin()->second, c);
}

TEST_F(Copying, TheArgumentsOfAKeyAreNotVisited) {
  const Term_* c = constant(b, "c", b.get_int_type());
  b.requests.clear();
  TermMap subst;
  subst[g(x)] = c;
  EXPECT_EQ(b.copy_term_with_subst(a, f(g(x), y), subst)->to_str(), "(f c y)");
  EXPECT_EQ(b.requests, "y f");
  EXPECT_EQ(b.get_signature()->get_symbol("x"), nullptr);
  EXPECT_EQ(b.get_signature()->get_symbol("g"), nullptr);
}

TEST_F(Copying, TheRootMayBeAKey) {
  const Term_* c = b.make_true();
  TermMap subst;
  subst[f(x, y)] = c;
  const auto before = sizes(b);
  EXPECT_EQ(b.copy_term_with_subst(a, f(x, y), subst), c);
  EXPECT_EQ(sizes(b), before);
  EXPECT_EQ(b.requests, "");
}

TEST_F(Copying, AValueOfAnotherTypeIsRefusedWhereItIsUsed) {
  TermMap subst;
  subst[x] = b.make_true();
  EXPECT_EQ(b.copy_term_with_subst(a, x, subst), b.make_true());
  EXPECT_EQ(failure_of([&] { b.copy_term_with_subst(a, g(x), subst); }),
            "error: type error. term `true` has type Bool, but Int was expected. (g)");
}

// Looking for a pair with [] is enough to make one with a null value.
TEST_F(Copying, AKeyWithANullValueIsRefusedWhereverItIs) {
  const Term_* t = f(g(x), f(y, g(g(x))));
  const std::string refusal = "error: Incompatible arguments to substitute";
  for (const Term_* key : {x, y, g(x), g(g(x)), t}) {
    TermMap subst;
    ASSERT_EQ(subst[key], nullptr);
    for (const bool checks : {true, false}) {
      b.set_typecheck_enabled(checks);
      EXPECT_EQ(failure_of([&] { b.copy_term_with_subst(a, t, subst); }), refusal);
      EXPECT_EQ(failure_of([&] { a.copy_term_with_subst(a, t, subst); }), refusal);
      EXPECT_EQ(b.check_consistency(), "");
      EXPECT_EQ(a.check_consistency(), "");
    }
    b.set_typecheck_enabled(true);
    EXPECT_EQ(a.copy_term(b, b.copy_term(a, t)), t);  // with marks that are clear
  }
}

TEST_F(Copying, ANullValueThatIsNotMetIsNotRead) {
  TermMap subst;
  subst[y] = nullptr;
  EXPECT_EQ(b.copy_term_with_subst(a, g(x), subst)->to_str(), "(g x)");
  subst[g(y)] = b.make_number(QNumber(1));
  EXPECT_EQ(b.copy_term_with_subst(a, g(g(y)), subst)->to_str(), "(g 1)");
}

TEST_F(Copying, ATermThatAnOverrideDoesNotMakeIsRefused) {
  class Careless : public TermManager {
   public:
    const Term_* make_term(const Symbol* s, const Terms& args) override {
      return s->name == without_term ? nullptr : TermManager::make_term(s, args);
    }
    std::string without_term;
  };
  for (const char* name : {"x", "g", "f"}) {
    Careless m;
    m.without_term = name;
    EXPECT_EQ(failure_of([&] { m.copy_term(a, f(g(x), y)); }),
              "error: Incompatible arguments to substitute");
    EXPECT_EQ(m.check_consistency(), "");
  }
}

//------------------------------------------------------------------------------------------------
// Several terms

TEST_F(Copying, CopiesAreAppendedInOrder) {
  for (const bool use_manager_marks : {false, true}) {
    TermManager c;
    Terms out = {c.make_true()};
    c.copy_terms(a, {g(x), x, g(x)}, out, use_manager_marks);
    ASSERT_EQ(out.size(), 4U);
    EXPECT_EQ(out[0], c.make_true());
    EXPECT_EQ(out[1]->to_str(), "(g x)");
    EXPECT_EQ(out[2], out[1]->args[0]);
    EXPECT_EQ(out[3], out[1]);
  }
}

TEST_F(Copying, OfNoTermsNothingIsMade) {
  const auto before = sizes(b);
  Terms terms = {b.make_true()};
  b.copy_terms(a, {}, terms, false);
  b.copy_terms(a, {}, terms, true);
  EXPECT_EQ(terms, Terms{b.make_true()});
  Symbols symbols;
  b.copy_symbols(a, {}, symbols);
  EXPECT_TRUE(symbols.empty());
  EXPECT_EQ(sizes(b), before);
  EXPECT_EQ(b.requests, "");
}

TEST_F(Copying, WhatTwoRootsShareIsRebuiltForEach) {
  for (const bool use_manager_marks : {false, true}) {
    b.requests.clear();
    Terms out;
    b.copy_terms(a, {g(x), f(g(x), g(x))}, out, use_manager_marks);
    EXPECT_EQ(b.requests, "x g x g f");
    EXPECT_EQ(out[1]->args[0], out[0]);
  }
}

// The marks reach up to the largest id met, here with the first term; whoever keeps them allocates
// nothing for them the next time.
TEST_F(Copying, TheMarksOfTheManagerAreKeptFromCallToCall) {
  const Term_* t = f(g(x), y);
  const auto allocations = [&](const std::function<void()>& copy) {
    copy();
    for (size_t k = 0;; ++k) {
      const testing::FailingMemory after(k);
      try {
        copy();
        return k;
      } catch (const std::bad_alloc&) {
      }
    }
  };
  TermManager c;
  Terms out;
  out.reserve(1000);
  const Terms roots = {t};
  const size_t with_own_marks = allocations([&] { c.copy_terms(a, roots, out, false); });
  EXPECT_EQ(allocations([&] { c.copy_terms(a, roots, out, true); }), with_own_marks - 1);
  EXPECT_EQ(allocations([&] { c.copy_term(a, t); }), with_own_marks - 1);
}

TEST_F(Copying, TheOutputMayBeTheInput) {
  Terms terms = {x, y};
  b.copy_terms(a, terms, terms, false);
  ASSERT_EQ(terms.size(), 4U);
  EXPECT_STREQ(terms[2]->symbol->name, "x");
  EXPECT_STREQ(terms[3]->symbol->name, "y");
  Terms own_terms = {x, y};
  a.copy_terms(a, own_terms, own_terms, false);
  EXPECT_EQ(own_terms, (Terms{x, y, x, y}));
}

TEST_F(Copying, ASymbolIsCopiedOnceForAllRoots) {
  // The name is taken away between two requests, so that a second copy would be another symbol.
  class Freeing : public TermManager {
   public:
    const Term_* make_term(const Symbol* s, const Terms& args) override {
      const Term_* t = TermManager::make_term(s, args);
      free_symbol(s);
      return t;
    }
  } c;
  Terms out;
  c.copy_terms(a, {x, x}, out, false);
  EXPECT_EQ(out[0], out[1]);
}

//------------------------------------------------------------------------------------------------
// Symbols

TEST_F(Copying, SymbolsAreAppendedInOrderAndWithoutTerms) {
  const size_t before = b.get_bank()->size();
  Symbols out = {b.get_fprounding_even()};
  b.copy_symbols(a, {binary, x->symbol, binary}, out);
  ASSERT_EQ(out.size(), 4U);
  EXPECT_EQ(out[0], b.get_fprounding_even());
  EXPECT_EQ(out[1], b.get_signature()->get_symbol("f"));
  EXPECT_EQ(out[1]->type->to_str(), "(-> Int Int Int)");
  EXPECT_EQ(out[2], b.get_signature()->get_symbol("x"));
  EXPECT_EQ(out[3], out[1]);
  EXPECT_EQ(b.get_bank()->size(), before);
}

TEST_F(Copying, ASymbolRegisteredByHandIsCopiedOnlyByName) {
  const DataType* type = a.get_function_type({integers}, integers);
  for (const SymbolTag::tag tag :
       {SymbolTag::NONE, SymbolTag::AND, SymbolTag::EQUAL, SymbolTag::TERM_ITE, SymbolTag::BV_NOT,
        SymbolTag::ARRAY_READ, SymbolTag::ARRAY_CONST, static_cast<SymbolTag::tag>(127)}) {
    const std::string name = "op" + std::to_string(tag);
    const Symbol* s = a.add_interpreted_symbol(name.c_str(), type, tag);
    Symbols out;
    EXPECT_EQ(failure_of([&] { b.copy_symbols(a, {s}, out); }),
              "error: Symbols can't start with the \"`\" character")
        << tag;
    EXPECT_TRUE(out.empty());
    const Symbol* known = b.add_interpreted_symbol(name.c_str(), b.get_int_type(), SymbolTag::NONE);
    b.copy_symbols(a, {s}, out);
    EXPECT_EQ(out, Symbols{known});
  }
  const Symbol* constant = a.add_interpreted_symbol("c", integers, SymbolTag::ARRAY_WRITE);
  Symbols out;
  EXPECT_EQ(failure_of([&] { b.copy_symbols(a, {constant}, out); }),
            "error: Symbols can't start with the \"`\" character");
}

TEST_F(Copying, AnOperatorThatLostItsNameIsFoundByItsParameters) {
  const Symbol* add = b.make_bv_add_symbol(8);
  const Symbol* read = b.make_array_read_symbol(b.get_int_type(), b.get_int_type());
  const Symbol* equal = b.make_equality_symbol(b.get_bv_type(8));
  for (const Symbol* s : {add, read, equal}) b.free_symbol(s);
  const auto before = sizes(b);
  Symbols out;
  b.copy_symbols(a,
                 {a.make_bv_add_symbol(8), a.make_array_read_symbol(integers, integers),
                  a.make_equality_symbol(a.get_bv_type(8))},
                 out);
  EXPECT_EQ(out, (Symbols{add, read, equal}));
  EXPECT_EQ(sizes(b), before);
}

TEST_F(Copying, AnOperatorMayHaveLostItsNameInTheSource) {
  const Symbol* add = a.make_bv_add_symbol(8);
  const Symbol* read = a.make_array_read_symbol(integers, integers);
  a.free_symbol(add);
  a.free_symbol(read);
  Symbols out;
  b.copy_symbols(a, {add, read}, out);
  EXPECT_EQ(out, (Symbols{b.make_bv_add_symbol(8),
                          b.make_array_read_symbol(b.get_int_type(), b.get_int_type())}));
  EXPECT_EQ(b.get_signature()->get_symbol("`bvadd_8`"), out[0]);
}

//------------------------------------------------------------------------------------------------
// Failures

TEST_F(Copying, ATypeErrorComesFromTheDestination) {
  b.make_symbol("x", b.get_bool_type());
  EXPECT_EQ(failure_of([&] { b.copy_term(a, f(y, x)); }),
            "error: type error. term x has type Bool, but Int was expected. (f)");
  EXPECT_NE(b.get_signature()->get_symbol("y"), nullptr) << "what was made before stays";
}

TEST_F(Copying, ANumberOfArgumentsThatDoesNotFitIsRefusedAlsoWithoutChecks) {
  const std::vector<const DataType*> three(3, b.get_int_type());
  const Symbol* present = b.make_symbol("g", b.get_function_type(three, b.get_int_type()));
  ASSERT_EQ(present->arity, 3U);
  for (const bool checks : {true, false}) {
    b.set_typecheck_enabled(checks);
    EXPECT_EQ(failure_of([&] { b.copy_term(a, g(x)); }),
              "error: wrong arity for symbol g. expected 3, got 1");
  }
}

TEST_F(Copying, WithoutChecksAnIllTypedTermIsCopiedAsItIs) {
  a.set_typecheck_enabled(false);
  const Term_* odd = g(a.make_true());
  EXPECT_EQ(failure_of([&] { b.copy_term(a, odd); }),
            "error: type error. term `true` has type Bool, but Int was expected. (g)");
  b.set_typecheck_enabled(false);
  EXPECT_EQ(b.copy_term(a, odd)->to_str(), "(g `true`)");
}

TEST_F(Copying, CopiesBeforeAFailureHaveBeenAppended) {
  b.make_symbol("y", b.get_bool_type());
  Terms out;
  EXPECT_EQ(failure_of([&] {
              b.copy_terms(a, {g(x), g(y), x}, out, true);
            }),
            "error: type error. term y has type Bool, but Int was expected. (g)");
  ASSERT_EQ(out.size(), 1U);
  EXPECT_EQ(out[0]->to_str(), "(g x)");
}

// Marks that stayed would make the next walk leave out terms that have no copy yet.
TEST_F(Copying, AfterAFailureAtAnyRequestTheMarksAreClear) {
  const Term_* t = f(f(g(x), y), f(g(y), g(x)));
  for (const bool several : {false, true}) {
    for (int k = 0; k < 8; ++k) {
      Recording c;
      const Term_* cx = constant(c, "x", c.get_int_type());
      c.requests_until_failure = k;
      Terms out;
      const auto copy = [&] {
        if (several) {
          c.copy_terms(a, {t}, out, /*use_manager_marks=*/true);
        } else {
          out.push_back(c.copy_term(a, t));
        }
      };
      if (k < 7) {
        EXPECT_THROW(copy(), std::runtime_error) << k;
      } else {
        copy();
      }
      EXPECT_EQ(c.check_consistency(), "");
      c.requests_until_failure = 1000;
      out.clear();
      copy();
      EXPECT_EQ(out[0]->symbol->name, std::string("f"));
      EXPECT_EQ(a.copy_term(c, out[0]), t);
      EXPECT_EQ(a.copy_term(c, c.substitute(out[0], {cx}, {c.make_number(1)})),
                f(f(g(a.make_number(1)), y), f(g(y), g(a.make_number(1)))));
    }
  }
}

// Makes the copy fail at each of its allocations, and then lets it succeed.
TEST_F(Copying, AfterAFailedAllocationTheCopyCanBeRepeated) {
  const DataType* array = a.get_array_type(a.get_bv_type(8), a.get_fp_type(5, 10));
  const Term_* v = constant(a, "a name that is too long to be kept in place", array);
  const Term_* i = a.make_bv_add(constant(a, "i", a.get_bv_type(8)), a.make_bv_number(5, 8));
  const Term_* read = a.make_array_read(a.make_array_write(v, i, a.make_fp_nan(5, 10)), i);
  const Term_* t = a.make_and(a.make_fp_isnan(a.make_fp_add(a.make_fprounding_even(), read, read)),
                              a.make_equal(a.make_term_ite(a.make_true(), v, v), v));
  const Terms roots = {t, g(x)};
  const auto source = sizes(a);
  Terms expected;
  TermManager unharmed;
  unharmed.copy_terms(a, roots, expected, true);
  size_t failures = 0;
  for (size_t k = 0;; ++k) {
    TermManager c;
    Terms out;
    bool failed = false;
    {
      const testing::FailingMemory after(k);
      try {
        c.copy_terms(a, roots, out, true);
      } catch (const std::bad_alloc&) {
        failed = true;
      }
    }
    EXPECT_EQ(sizes(a), source);
    if (!failed) break;
    ++failures;
    EXPECT_EQ(c.check_consistency(), "") << k;
    out.clear();
    c.copy_terms(a, roots, out, true);
    ASSERT_EQ(out.size(), 2U);
    for (size_t n = 0; n < 2; ++n) {
      ASSERT_EQ(out[n]->to_str(), expected[n]->to_str()) << k;
      EXPECT_EQ(out[n]->id, expected[n]->id) << k;
    }
    EXPECT_EQ(sizes(c), sizes(unharmed)) << k;
    EXPECT_EQ(c.make_fp_add_symbol(5, 10), c.get_signature()->get_symbol("`fpadd_5_10`"));
    EXPECT_EQ(c.check_consistency(), "") << k;
    EXPECT_EQ(a.copy_term(c, out[0]), t);
  }
  EXPECT_GT(failures, 50U);
}

// Fresh variables are told apart by their names, which each manager numbers from 1.
TEST(CopyingFreshVariables, OfBothManagersAreOneIfTheirNumbersAre) {
  TermManager a;
  TermManager b;
  const Term_* first = a.make_fresh_variable(a.get_int_type());
  const Term_* second = a.make_fresh_variable(a.get_bv_type(8));
  const Term_* own_first = b.make_fresh_variable(b.get_int_type());
  const Term_* own_second = b.make_fresh_variable(b.get_rat_type());
  EXPECT_EQ(b.copy_term(a, first), own_first);
  EXPECT_EQ(b.copy_term(a, second), own_second);
  EXPECT_THROW(b.copy_term(a, a.make_bv_not(second)), TermManager::error);
  EXPECT_EQ(b.check_consistency(), "");

  // A map keeps them apart.
  const Term_* third = b.make_fresh_variable(b.get_bv_type(8));
  TermManager::TermMap map;
  map[second] = third;
  EXPECT_EQ(b.copy_term_with_subst(a, second, map), third);
  EXPECT_NE(third, own_second);
}

}  // namespace
}  // namespace quill
