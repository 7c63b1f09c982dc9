#include <gtest/gtest.h>

#include <cstddef>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <vector>

#include "quill/derived/derived.h"
#include "quill/terms/termmanager/term_factory.h"
#include "quill/terms/termmanager/term_manager.h"
#include "tests/support/manager_test.h"

namespace quill {
namespace {

// Notes what it is asked, and answers what it is told to.
class Recorder : public TermFactory {
 public:
  const Term_* make_term(const Symbol* s, const std::vector<const Term_*>& args) override {
    std::string request = s->name;
    for (const Term_* arg : args) {
      request += ' ';
      request += arg->to_str();
    }
    requests.push_back(request);
    return answer;
  }

  std::vector<std::string> requests;
  const Term_* answer = nullptr;
};

using Requests = std::vector<std::string>;

class Delegate : public testing::ManagerTest {
 protected:
  void install(TermFactory* factory) {
    m.set_delegate(factory);
    m.set_delegate_enabled(true);
  }

  const Term_* const p = constant("p", m.get_bool_type());
  const Term_* const q = constant("q", m.get_bool_type());
  const Term_* const i = constant("i", m.get_int_type());
  const Symbol* const and_symbol = m.get_signature()->get_symbol("`and`");
  Recorder recorder;
};

TEST_F(Delegate, IsOffAtFirst) {
  EXPECT_FALSE(m.get_delegate_enabled());
  EXPECT_EQ(m.get_delegate(), nullptr);
}

TEST_F(Delegate, IsAskedOnlyWhenEnabled) {
  m.set_delegate(&recorder);
  m.make_and(p, q);
  EXPECT_EQ(recorder.requests, Requests{});
  m.set_delegate_enabled(true);
  m.make_or(p, q);
  EXPECT_EQ(recorder.requests, Requests{"`or` p q"});
}

TEST_F(Delegate, EnabledWithoutDelegateChangesNothing) {
  m.set_delegate_enabled(true);
  EXPECT_EQ(m.make_and(p, q)->to_str(), "(`and` p q)");
}

TEST_F(Delegate, ItsTermIsTheResult) {
  install(&recorder);
  recorder.answer = q;
  const auto before = sizes();
  EXPECT_EQ(m.make_and(p, p), q);
  EXPECT_EQ(sizes(), before);
}

TEST_F(Delegate, NullLetsTheManagerBuildThePlainTerm) {
  install(&recorder);
  EXPECT_EQ(m.make_and(p, q)->to_str(), "(`and` p q)");
  EXPECT_EQ(recorder.requests, Requests{"`and` p q"});
}

TEST_F(Delegate, IsAskedAgainForTheSameTerm) {
  install(&recorder);
  m.make_and(p, q);
  m.make_and(p, q);
  EXPECT_EQ(recorder.requests, (Requests{"`and` p q", "`and` p q"}));
}

TEST_F(Delegate, RequestsAreCheckedBeforeItIsAsked) {
  install(&recorder);
  recorder.answer = q;
  EXPECT_THROW(m.make_and(p, i), TermManager::error);
  EXPECT_THROW(m.make_term(and_symbol, {p}), TermManager::error);
  EXPECT_EQ(recorder.requests, Requests{});
}

TEST_F(Delegate, WithoutChecksIllTypedRequestsReachIt) {
  install(&recorder);
  m.set_typecheck_enabled(false);
  m.make_and(p, i);
  EXPECT_EQ(recorder.requests, Requests{"`and` p i"});
}

TEST_F(Delegate, IsAskedForConstantsAndApplications) {
  install(&recorder);
  const Symbol* f = m.make_symbol("f", m.get_function_type({m.get_int_type()}, m.get_int_type()));
  m.make_constant(m.make_symbol("c", m.get_int_type()));
  m.make_uninterpreted_function(f, {i});
  EXPECT_EQ(recorder.requests, (Requests{"c", "f i"}));
}

TEST_F(Delegate, IsNotAskedForNumeralsAndFreshVariables) {
  install(&recorder);
  recorder.answer = p;
  EXPECT_STREQ(m.make_number(3)->symbol->name, "3");
  EXPECT_STREQ(m.make_number(QNumber(1, 2))->symbol->name, "1/2");
  EXPECT_STREQ(m.make_bv_number(3, 4)->symbol->name, "3_4");
  EXPECT_STREQ(m.make_fresh_variable(m.get_int_type())->symbol->name, "'1");
  EXPECT_EQ(recorder.requests, Requests{});
}

TEST_F(Delegate, IsNotAskedByTheLastStep) {
  install(&recorder);
  recorder.answer = q;
  EXPECT_EQ(m.do_make_term(and_symbol, {p, p})->to_str(), "(`and` p p)");
  EXPECT_EQ(recorder.requests, Requests{});
}

TEST_F(Delegate, NameOfTheOperationIsGoneWhenItIsAsked) {
  struct Nested : TermFactory {
    TermManager* manager = nullptr;
    const Term_* wrong = nullptr;
    std::string text;
    const Term_* make_term(const Symbol* s, const std::vector<const Term_*>&) override {
      try {
        manager->typecheck(s, {wrong, wrong});
      } catch (const TermManager::error& e) {
        text = e.what();
      }
      return nullptr;
    }
  } nested;
  nested.manager = &m;
  nested.wrong = i;
  install(&nested);
  m.make_and(p, q);
  EXPECT_EQ(nested.text, "type error. term i has type Int, but Bool was expected. (`and`)");
}

TEST_F(Delegate, MayBuildWithThePlainStep) {
  struct Simplifier : TermFactory {
    TermManager* manager = nullptr;
    const Symbol* conjunction = nullptr;
    const Term_* make_term(const Symbol* s, const std::vector<const Term_*>& args) override {
      if (s == conjunction && args[0] == args[1]) return args[0];
      return manager->do_make_term(s, args);
    }
  } simplifier;
  simplifier.manager = &m;
  simplifier.conjunction = and_symbol;
  install(&simplifier);
  EXPECT_EQ(m.make_and(p, p), p);
  EXPECT_EQ(m.make_and(p, q)->to_str(), "(`and` p q)");
  EXPECT_EQ(make_and(m, {p, p, q, q})->to_str(), "(`and` (`and` p q) q)");
}

TEST_F(Delegate, WhatItThrowsPassesThrough) {
  struct Refuser : TermFactory {
    const Term_* make_term(const Symbol*, const std::vector<const Term_*>&) override {
      throw std::runtime_error("refused");
    }
  } refuser;
  install(&refuser);
  const auto before = sizes();
  EXPECT_THROW(m.make_and(p, q), std::runtime_error);
  EXPECT_EQ(sizes(), before);
  m.set_delegate_enabled(false);
  EXPECT_EQ(m.make_and(p, q)->to_str(), "(`and` p q)");
}

TEST_F(Delegate, AManagerIsAFactory) {
  static_assert(std::is_base_of_v<TermFactory, TermManager>);
  static_assert(std::is_abstract_v<TermFactory>);
  static_assert(std::has_virtual_destructor_v<TermFactory>);
  TermFactory& factory = m;
  EXPECT_EQ(factory.make_term(and_symbol, {p, q}), m.make_and(p, q));
}

// A manager that notes the requests that pass through its own make_term.
class OverridingManager : public TermManager {
 public:
  const Term_* make_term(const Symbol* s, const std::vector<const Term_*>& args) override {
    requests.push_back(s->name);
    return TermManager::make_term(s, args);
  }
  Requests requests;
};

using Overriding = testing::ManagerTestOf<OverridingManager>;

TEST_F(Overriding, ConstructionDoesNotPassThrough) { EXPECT_EQ(m.requests, Requests{}); }

TEST_F(Overriding, ConstantsAndApplicationsPassThrough) {
  const Symbol* f = m.make_symbol("f", m.get_function_type({m.get_int_type()}, m.get_int_type()));
  m.make_uninterpreted_function(f, {constant("i", m.get_int_type())});
  EXPECT_EQ(m.requests, (Requests{"i", "f"}));
}

TEST_F(Overriding, BuildersPassThrough) {
  const Term_* p = constant("p", m.get_bool_type());
  const Term_* i = constant("i", m.get_int_type());
  const Term_* x = constant("x", m.get_rat_type());
  m.requests.clear();
  m.make_and(p, p);
  m.make_or(p, p);
  m.make_iff(p, p);
  m.make_not(p);
  m.make_leq(i, i);
  m.make_plus(i, i);
  m.make_times(x, i);
  m.make_floor(x);
  m.make_equal(i, i);
  m.make_term_ite(p, x, x);
  m.make_bin(m.get_signature()->get_symbol("`or`"), p, p, "test");
  EXPECT_EQ(m.requests, (Requests{"`and`", "`or`", "`iff`", "`not`", "`<=_int`", "`+_int`",
                                  "`*_rat`", "`floor`", "`=_int`", "`ite_rat`", "`or`"}));
}

TEST_F(Overriding, NumeralsAndFreshVariablesDoNotPassThrough) {
  m.make_number(3);
  m.make_bv_number(3, 4);
  m.make_fresh_variable(m.get_int_type());
  m.do_make_term(m.make_true()->symbol, {});
  EXPECT_EQ(m.requests, Requests{});
}

}  // namespace
}  // namespace quill
