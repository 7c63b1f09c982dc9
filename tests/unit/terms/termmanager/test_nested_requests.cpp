// Requests that come from within other requests: from a delegate, or from an overridden make_term
// before it calls the manager's own.

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "quill/terms/termmanager/term_manager.h"
#include "tests/support/manager_test.h"

namespace quill {
namespace {

using Callback = std::function<void()>;

// Runs a callback for each request, nested `most` deep, and declines.
class DecliningDelegate : public TermFactory {
 public:
  const Term_* make_term(const Symbol*, const std::vector<const Term_*>&) override {
    if (depth == most) return nullptr;
    ++depth;
    callback();
    --depth;
    ++calls;
    return nullptr;
  }

  Callback callback = [] {};
  int most = 2;
  int depth = 0;
  int calls = 0;
};

// The same before it goes on to the manager's own make_term.
class CallingManager : public TermManager {
 public:
  const Term_* make_term(const Symbol* s, const std::vector<const Term_*>& args) override {
    ++calls;
    if (depth < most) {
      ++depth;
      callback();
      --depth;
    }
    if (refuse) throw error("refused");
    const std::vector<const Term_*> own_args = args;
    const Term_* t = TermManager::make_term(s, hands_on_a_copy ? own_args : args);
    if (refuse_late) throw error("refused late");
    return t;
  }

  Callback callback = [] {};
  int most = 0;
  int depth = 0;
  int calls = 0;
  bool hands_on_a_copy = false;
  bool refuse = false;
  bool refuse_late = false;
};

std::string error_of(const Callback& request) {
  return testing::error_of<TermManager::error>(request);
}

// Requests of every number of arguments, over constants of their own, each with its text.
struct Expected {
  std::string text;
  std::function<const Term_*()> request;
};

struct Constants {
  explicit Constants(TermManager& manager, const std::string& prefix) : m(manager) {
    const auto constant = [&](const char* name, const DataType* type) {
      return m.make_constant(m.make_symbol(prefix + name, type));
    };
    p = constant("p", m.get_bool_type());
    q = constant("q", m.get_bool_type());
    i = constant("i", m.get_int_type());
    k = constant("k", m.get_int_type());
    x = constant("x", m.get_bv_type(8));
    y = constant("y", m.get_bv_type(8));
    f = constant("f", m.get_fp_type(5, 10));
    g = constant("g", m.get_fp_type(5, 10));
    rm = m.make_fprounding_zero();
    array = m.get_array_type(m.get_int_type(), m.get_int_type());
    a = constant("a", array);
    h = m.make_symbol(prefix + "h",
                      m.get_function_type({m.get_int_type(), m.get_int_type()}, m.get_int_type()));
    c = m.make_symbol(prefix + "c", m.get_int_type());
  }

  std::vector<Expected> requests() const {
    TermManager* t = &m;
    const Constants s = *this;
    return {
        {"(`and` Pp Pq)", [=] { return t->make_and(s.p, s.q); }},
        {"(`not` Pp)", [=] { return t->make_not(s.p); }},
        {"(`<=_int` Pi Pk)", [=] { return t->make_leq(s.i, s.k); }},
        {"(`=_(BitVec 8)` Px Py)", [=] { return t->make_equal(s.x, s.y); }},
        {"(`ite_int` Pp Pi Pk)", [=] { return t->make_term_ite(s.p, s.i, s.k); }},
        {"(`ite_(FP |5:10|)` Pp Pf Pg)", [=] { return t->make_term_ite(s.p, s.f, s.g); }},
        {"(`bvadd_8` Px Py)", [=] { return t->make_bv_add(s.x, s.y); }},
        {"(`bvneg_8` Px)", [=] { return t->make_bv_neg(s.x); }},
        {"(`bvconcat_8_8` Px Py)", [=] { return t->make_bv_concat(s.x, s.y); }},
        {"(`bvextract_3_1_8` Px)", [=] { return t->make_bv_extract(3, 1, s.x); }},
        {"(`bvzext_3_8` Px)", [=] { return t->make_bv_zero_extend(3, s.x); }},
        {"(`int2bv_4` Pi)", [=] { return t->make_int_to_bv(4, s.i); }},
        {"(`fpadd_5_10` `fprounding_zero` Pf Pg)", [=] { return t->make_fp_add(s.rm, s.f, s.g); }},
        {"(`fptobv__5_10_8` `fprounding_zero` Pf)", [=] { return t->make_fp_to_bv(8, s.rm, s.f); }},
        {"(`read_int_int` Pa Pi)", [=] { return t->make_array_read(s.a, s.i); }},
        {"(`write_int_int` Pa Pi Pk)", [=] { return t->make_array_write(s.a, s.i, s.k); }},
        {"(`const_int_int` Pk)", [=] { return t->make_array_const(s.array, s.k); }},
        {"(`int_mod_congr_7` Pi Pk)",
         [=] { return t->make_int_modular_congruence(QNumber(7), s.i, s.k); }},
        {"(Ph Pi Pk)",
         [=] {
           return t->make_uninterpreted_function(s.h, {s.i, s.k});
         }},
        {"Pc", [=] { return t->make_constant(s.c); }},
        {"(`or` Pq Pp)", [=] { return t->make_bin(t->make_or(s.p, s.p)->symbol, s.q, s.p, "o"); }},
    };
  }

  TermManager& m;
  const Term_ *p, *q, *i, *k, *x, *y, *f, *g, *rm, *a;
  const DataType* array;
  const Symbol *h, *c;
};

std::string with_prefix(std::string text, char prefix) {
  for (size_t at = 0; at < text.size(); ++at) {
    const bool starts = at == 0 || text[at - 1] == ' ' || text[at - 1] == '(';
    if (text[at] == 'P' && starts) text[at] = prefix;
  }
  return text;
}

TEST(NestedRequests, ADelegateThatDeclinesGetsTheTermThatWasAskedFor) {
  TermManager m;
  const Constants outer(m, "A");
  const std::vector<Expected> nested = Constants(m, "B").requests();
  DecliningDelegate delegate;
  delegate.callback = [&] {
    for (const Expected& e : nested) EXPECT_EQ(e.request()->to_str(), with_prefix(e.text, 'B'));
  };
  m.set_delegate(&delegate);
  m.set_delegate_enabled(true);
  for (const Expected& e : outer.requests()) {
    EXPECT_EQ(e.request()->to_str(), with_prefix(e.text, 'A'));
  }
  EXPECT_GT(delegate.calls, 21 * 21);
  EXPECT_EQ(m.check_consistency(), "");
}

TEST(NestedRequests, AnOverriddenMakeTermHandsOnTheArgumentsThatItWasGiven) {
  CallingManager m;
  const Constants outer(m, "A");
  const std::vector<Expected> nested = Constants(m, "B").requests();
  m.callback = [&] {
    for (const Expected& e : nested) EXPECT_EQ(e.request()->to_str(), with_prefix(e.text, 'B'));
  };
  m.most = 2;
  for (const Expected& e : outer.requests()) {
    EXPECT_EQ(e.request()->to_str(), with_prefix(e.text, 'A'));
  }
  EXPECT_EQ(m.check_consistency(), "");
}

TEST(NestedRequests, ErrorsNameTheBuilderWhoseRequestFailed) {
  CallingManager m;
  const Constants c(m, "A");
  std::string nested_error;
  m.callback = [&] {
    m.make_or(c.p, c.q);
    nested_error = error_of([&] { m.make_bv_add(c.x, c.p); });
    m.make_bin(m.make_and(c.p, c.q)->symbol, c.q, c.q, "nested");
  };
  m.most = 1;
  EXPECT_EQ(error_of([&] { m.make_and(c.p, c.i); }),
            "type error. term Ai has type Int, but Bool was expected. (make_and)");
  EXPECT_EQ(nested_error,
            "type error. term Ap has type Bool, but (BitVec 8) was expected. (make_bv_add)");
  EXPECT_EQ(error_of([&] { m.make_not(c.i); }),
            "type error. term Ai has type Int, but Bool was expected. (make_not)");
  EXPECT_EQ(error_of([&] { m.make_bin(m.make_and(c.p, c.q)->symbol, c.p, c.i, "outer"); }),
            "type error. term Ai has type Int, but Bool was expected. (outer)");
  EXPECT_EQ(error_of([&] {
              m.make_uninterpreted_function(c.h, {c.i, c.p});
            }),
            "type error. term Ap has type Bool, but Int was expected. "
            "(make_uninterpreted_function)");
}

TEST(NestedRequests, ErrorsNameTheBuilderAfterADirectNestedRequest) {
  CallingManager m;
  const Constants c(m, "A");
  const Symbol* disjunction = m.make_or(c.p, c.q)->symbol;
  m.callback = [&] { m.TermManager::make_term(disjunction, {c.q, c.q}); };
  m.most = 1;
  EXPECT_EQ(error_of([&] { m.make_and(c.p, c.i); }),
            "type error. term Ai has type Int, but Bool was expected. (make_and)");
}

TEST(NestedRequests, ErrorsNameTheBuilderWhenAnOverrideHandsOnArgumentsOfItsOwn) {
  CallingManager m;
  const Constants c(m, "A");
  const Symbol* disjunction = m.make_or(c.p, c.q)->symbol;
  m.callback = [&] { m.TermManager::make_term(disjunction, {c.q, c.q}); };
  m.most = 1;
  m.hands_on_a_copy = true;
  EXPECT_EQ(error_of([&] { m.make_and(c.p, c.i); }),
            "type error. term Ai has type Int, but Bool was expected. (make_and)");
}

TEST(NestedRequests, ErrorsOfADirectRequestOfAnOverrideNameItsSymbol) {
  CallingManager m;
  const Constants c(m, "A");
  const Symbol* disjunction = m.make_or(c.p, c.q)->symbol;
  std::string nested_error;
  m.callback = [&] { nested_error = error_of([&] { m.make_term(disjunction, {c.p, c.i}); }); };
  m.most = 1;
  m.make_and(c.p, c.q);
  EXPECT_EQ(nested_error, "type error. term Ai has type Int, but Bool was expected. (`or`)");
}

TEST(NestedRequests, ErrorsOfADirectRequestOfADelegateNameItsSymbol) {
  CallingManager m;
  const Constants c(m, "A");
  const Symbol* conjunction = m.make_and(c.p, c.q)->symbol;
  DecliningDelegate delegate;
  std::string nested_error;
  delegate.callback = [&] {
    nested_error = error_of([&] { m.make_term(conjunction, {c.p, c.i}); });
  };
  delegate.most = 1;
  m.set_delegate(&delegate);
  m.set_delegate_enabled(true);
  m.make_and(c.p, c.q);
  EXPECT_EQ(nested_error, "type error. term Ai has type Int, but Bool was expected. (`and`)");
}

// The vector of the arguments is the one that the delegate was given.
TEST(NestedRequests, ErrorsOfAnotherSymbolOnTheSameArgumentsNameThatSymbol) {
  class Reusing : public TermFactory {
   public:
    explicit Reusing(TermManager& owner) : m(owner) {}
    const Term_* make_term(const Symbol*, const std::vector<const Term_*>& args) override {
      if (text.empty()) text = error_of([&] { m.make_term(other, args); });
      return nullptr;
    }
    TermManager& m;
    const Symbol* other = nullptr;
    std::string text;
  };
  TermManager m;
  const Constants c(m, "A");
  Reusing delegate(m);
  delegate.other = m.make_and(c.p, c.q)->symbol;
  m.set_delegate(&delegate);
  m.set_delegate_enabled(true);
  m.make_plus(c.i, c.i);
  EXPECT_EQ(delegate.text, "type error. term Ai has type Int, but Bool was expected. (`and`)");
}

TEST(NestedRequests, ErrorsOfADirectCheckByAnOverrideNameItsSymbol) {
  CallingManager m;
  const Constants c(m, "A");
  const Symbol* disjunction = m.make_or(c.p, c.q)->symbol;
  std::string nested_error;
  m.callback = [&] { nested_error = error_of([&] { m.typecheck(disjunction, {c.p, c.i}); }); };
  m.most = 1;
  m.make_and(c.p, c.q);
  EXPECT_EQ(nested_error, "type error. term Ai has type Int, but Bool was expected. (`or`)");
}

TEST(NestedRequests, ErrorsNameTheBuilderThatADelegateCallsWhenItIsOff) {
  TermManager m;
  const Constants c(m, "A");
  DecliningDelegate delegate;
  std::string nested_error;
  delegate.callback = [&] {
    m.set_delegate_enabled(false);
    nested_error = error_of([&] { m.make_uninterpreted_function(c.h, {c.i, c.p}); });
  };
  m.set_delegate(&delegate);
  m.set_delegate_enabled(true);
  m.make_and(c.p, c.q);
  EXPECT_EQ(nested_error,
            "type error. term Ap has type Bool, but Int was expected. "
            "(make_uninterpreted_function)");
}

TEST(NestedRequests, AnErrorThatADelegateCatchesDoesNotNameLaterRequests) {
  TermManager m;
  const Constants c(m, "A");
  DecliningDelegate delegate;
  delegate.callback = [&] { error_of([&] { m.make_and(c.p, c.i); }); };
  m.set_delegate(&delegate);
  m.set_delegate_enabled(true);
  const Symbol* negation = m.make_not(c.p)->symbol;
  EXPECT_EQ(error_of([&] { m.make_term(negation, {c.i}); }),
            "type error. term Ai has type Int, but Bool was expected. (`not`)");
}

// The first request with a type makes a symbol, the second one finds it.
TEST(NestedRequests, AnOverrideSeesTheFirstAndTheSecondRequestOfATypeAlike) {
  CallingManager m;
  const Constants c(m, "A");
  for (const auto& request : std::vector<Callback>{[&] { m.make_equal(c.x, c.i); },
                                                   [&] { m.make_term_ite(c.p, c.x, c.i); },
                                                   [&] { m.make_term_ite(c.i, c.x, c.x); }}) {
    m.calls = 0;
    const std::string first = error_of(request);
    EXPECT_EQ(m.calls, 1);
    EXPECT_EQ(error_of(request), first);
    EXPECT_EQ(m.calls, 2);
  }
  m.make_equal(c.x, c.y);
  m.make_term_ite(c.p, c.x, c.y);
  m.calls = 0;
  EXPECT_EQ(error_of([&] { m.make_equal(c.x, c.i); }),
            "type error. term Ai has type Int, but (BitVec 8) was expected. (make_equal)");
  EXPECT_EQ(m.calls, 1);
}

class FirstRequest : public ::testing::Test {
 protected:
  FirstRequest() : c(m, "A") {}

  CallingManager m;
  Constants c;
};

TEST_F(FirstRequest, WhenRefusedLeavesNoSymbolAndNoType) {
  const std::string before = m.describe_state();
  EXPECT_EQ(error_of([&] { m.make_equal(c.x, c.i); }),
            "type error. term Ai has type Int, but (BitVec 8) was expected. (make_equal)");
  EXPECT_EQ(m.describe_state(), before);
  EXPECT_EQ(error_of([&] { m.make_term_ite(c.p, c.f, c.i); }),
            "type error. term Ai has type Int, but (FP |5:10|) was expected. (make_term_ite)");
  EXPECT_EQ(m.describe_state(), before);
  m.refuse = true;
  EXPECT_EQ(error_of([&] { m.make_equal(c.x, c.y); }), "refused");
  EXPECT_EQ(m.describe_state(), before);
  EXPECT_EQ(m.check_consistency(), "");
}

TEST_F(FirstRequest, WhenRefusedLeavesWhatItCalledBackHasMade) {
  m.most = 1;
  m.refuse = true;
  m.callback = [&] {
    m.make_symbol("late", m.get_function_type({m.get_bv_type(3)}, m.get_int_type()));
  };
  EXPECT_EQ(error_of([&] { m.make_equal(c.x, c.y); }), "refused");
  EXPECT_EQ(m.check_consistency(), "");
  EXPECT_EQ(m.get_signature()->get_symbol("`=_(BitVec 8)`"), nullptr);
  const Symbol* late = m.get_signature()->get_symbol("late");
  ASSERT_NE(late, nullptr);
  EXPECT_EQ(late->type->to_str(), "(-> (BitVec 3) Int)");
  const TypeUniverse& universe = *m.get_universe();
  EXPECT_EQ(universe.type(universe.size() - 1), late->type);
}

TEST_F(FirstRequest, KeepsASymbolThatANestedRequestWasGiven) {
  m.most = 1;
  m.refuse = true;
  const Symbol* given = nullptr;
  m.callback = [&] { given = m.make_equality_symbol(m.get_bv_type(8)); };
  EXPECT_EQ(error_of([&] { m.make_equal(c.x, c.y); }), "refused");
  EXPECT_EQ(m.get_signature()->get_symbol("`=_(BitVec 8)`"), given);
  EXPECT_EQ(m.get_tag(given), SymbolTag::EQUAL);
  EXPECT_EQ(m.check_consistency(), "");
}

TEST_F(FirstRequest, KeepsASymbolThatANestedBuilderWasGiven) {
  m.most = 1;
  m.refuse = true;
  m.callback = [&] { error_of([&] { m.make_term_ite(c.p, c.x, c.y); }); };
  EXPECT_EQ(error_of([&] { m.make_term_ite(c.p, c.x, c.y); }), "refused");
  EXPECT_NE(m.get_signature()->get_symbol("`ite_(BitVec 8)`"), nullptr);
  EXPECT_EQ(m.check_consistency(), "");
}

TEST_F(FirstRequest, KeepsASymbolWithWhichATermWasBuilt) {
  m.refuse_late = true;
  EXPECT_EQ(error_of([&] { m.make_equal(c.x, c.y); }), "refused late");
  EXPECT_NE(m.get_signature()->get_symbol("`=_(BitVec 8)`"), nullptr);
  EXPECT_EQ(m.check_consistency(), "");
  m.refuse_late = false;
  EXPECT_EQ(m.make_equal(c.x, c.y)->to_str(), "(`=_(BitVec 8)` Ax Ay)");
}

// Switched off, the delegate sees nothing of the nested request.
TEST(NestedRequests, AFirstRequestKeepsASymbolThatARequestWithoutDelegateWasGiven) {
  TermManager m;
  const Constants c(m, "A");
  DecliningDelegate delegate;
  delegate.most = 1;
  delegate.callback = [&] {
    m.set_delegate_enabled(false);
    m.make_equal(c.x, c.x);
    m.set_delegate_enabled(true);
    throw TermManager::error("refused");
  };
  m.set_delegate(&delegate);
  m.set_delegate_enabled(true);
  EXPECT_EQ(error_of([&] { m.make_equal(c.x, c.y); }), "refused");
  EXPECT_NE(m.get_signature()->get_symbol("`=_(BitVec 8)`"), nullptr);
  EXPECT_EQ(m.check_consistency(), "");
}

TEST_F(FirstRequest, KeepsASymbolThatACopyWasGiven) {
  TermManager source;
  const Constants other(source, "A");
  const Term_* equality = source.make_equal(other.x, other.y);
  m.most = 1;
  m.refuse = true;
  m.callback = [&] {
    std::vector<const Symbol*> out;
    m.copy_symbols(source, {equality->symbol}, out);
  };
  EXPECT_EQ(error_of([&] { m.make_equal(c.x, c.y); }), "refused");
  EXPECT_NE(m.get_signature()->get_symbol("`=_(BitVec 8)`"), nullptr);
  EXPECT_EQ(m.check_consistency(), "");
}

TEST_F(FirstRequest, GivesASymbolBackThatWasThereBeforeWithItsTag) {
  const DataType* bv = m.get_bv_type(8);
  const DataType* type = m.get_function_type({bv, bv}, m.get_bool_type());
  const Symbol* present = m.add_interpreted_symbol("=_(BitVec 8)", type, SymbolTag::BV_ADD);
  const std::string before = m.describe_state();
  EXPECT_EQ(error_of([&] { m.make_equal(c.x, c.i); }),
            "type error. term Ai has type Int, but (BitVec 8) was expected. (make_equal)");
  EXPECT_EQ(m.describe_state(), before);
  EXPECT_EQ(m.get_tag(present), SymbolTag::BV_ADD);
}

TEST(NestedRequests, ANameClashOfAnEqualityDoesNotNameLaterErrors) {
  TermManager m;
  const Constants c(m, "A");
  m.add_interpreted_symbol("=_(BitVec 8)", m.get_int_type(), SymbolTag::NONE);
  EXPECT_THROW(m.make_equal(c.x, c.y), Exception);
  const Symbol* negation = m.make_not(c.p)->symbol;
  EXPECT_THROW(m.make_equal(c.x, c.y), Exception);
  EXPECT_EQ(error_of([&] { m.make_term(negation, {c.i}); }),
            "type error. term Ai has type Int, but Bool was expected. (`not`)");
}

// A substitution that does not check switches the checks of the manager off: also those of requests
// from within, up to one that switches them on.
TEST(NestedRequests, WithinASubstitutionAreCheckedAsItIs) {
  TermManager m;
  const Term_* p = m.make_constant(m.make_symbol("p", m.get_bool_type()));
  const Term_* q = m.make_constant(m.make_symbol("q", m.get_bool_type()));
  const Term_* i = m.make_constant(m.make_symbol("i", m.get_int_type()));
  const Term_* not_p = m.make_not(p);
  const Term_* not_q = m.make_not(q);
  std::vector<std::string> outcomes;
  const auto note_outcome = [&] { outcomes.push_back(error_of([&] { m.make_not(i); })); };
  enum { OUTER, INNER, ANYWHERE } place = OUTER;
  DecliningDelegate delegate;
  delegate.callback = [&] {
    const auto here = place;
    place = ANYWHERE;
    if (here == OUTER) {
      note_outcome();
      place = INNER;
      TermManager::TermMap map;
      map[p] = q;
      std::vector<bool> marks;
      EXPECT_EQ(m.substitute(not_p, map, marks, /*check=*/true), not_q);
      place = ANYWHERE;
      note_outcome();
    } else if (here == INNER) {
      note_outcome();
    }
  };
  m.set_delegate(&delegate);
  m.set_delegate_enabled(true);
  EXPECT_EQ(m.substitute(not_q, {q}, {p}), not_p);
  m.set_delegate_enabled(false);
  EXPECT_EQ(outcomes,
            (std::vector<std::string>{
                "no error", "type error. term i has type Int, but Bool was expected. (make_not)",
                "no error"}));
  EXPECT_TRUE(m.get_typecheck_enabled());
}

}  // namespace
}  // namespace quill
