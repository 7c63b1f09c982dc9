// What operations of the manager may cost, in counted events: no time is measured.

#include <gtest/gtest.h>

#include <cstddef>
#include <map>
#include <random>
#include <string>
#include <vector>

#include "quill/terms/termmanager/term_manager.h"
#include "quill/terms/termmanager/term_visitor.h"
#include "tests/support/failing_memory.h"
#include "tests/support/manager_test.h"

namespace quill {
namespace {

using testing::AllocationCount;
using Terms = std::vector<const Term_*>;

class OperationCost : public testing::ManagerTest {
 protected:
  const Term_* bits(const std::string& name, size_t width = 32) {
    return constant(name, m.get_bv_type(width));
  }

  // A graph of `count` terms with much sharing; the last one reaches all.
  const Term_* shared_graph(size_t count) {
    std::mt19937 random(1);
    Terms terms = {bits("x"), bits("y")};
    for (size_t i = 0; i < count; ++i) {
      terms.push_back(m.make_bv_add(terms.back(), terms[random() % terms.size()]));
    }
    return terms.back();
  }
};

// How often each term is visited.
struct VisitCount {
  std::map<const Term_*, int> before;
  std::map<const Term_*, int> after;
  int visit(const Term_* t, bool preorder) {
    (preorder ? before : after)[t]++;
    return 2;
  }
};

// Counts the requests of a manager and lets it answer them.
class RequestCount : public TermFactory {
 public:
  explicit RequestCount(TermManager& manager) : m(manager) {
    m.set_delegate(this);
    m.set_delegate_enabled(true);
  }
  ~RequestCount() override {
    m.set_delegate_enabled(false);
    m.set_delegate(nullptr);
  }
  RequestCount(const RequestCount&) = delete;
  RequestCount& operator=(const RequestCount&) = delete;

  const Term_* make_term(const Symbol*, const Terms&) override {
    ++requests;
    return nullptr;
  }

  size_t requests = 0;

 private:
  TermManager& m;
};

//----------------------------------------------------------------------------------------------
// Terms that are there

TEST_F(OperationCost, BinaryOperatorsFindTheirTermsWithoutAnAllocation) {
  const Term_* a = bits("a");
  const Term_* b = bits("b");
  const auto make = [&] {
    return Terms{m.make_bv_add(a, b), m.make_bv_ult(a, b), m.make_bv_xor(b, a), m.make_bv_not(a)};
  };
  const Terms first = make();
  const AllocationCount count;
  EXPECT_EQ(m.make_bv_add(a, b), first[0]);
  EXPECT_EQ(m.make_bv_ult(a, b), first[1]);
  EXPECT_EQ(m.make_bv_xor(b, a), first[2]);
  EXPECT_EQ(m.make_bv_not(a), first[3]);
  EXPECT_EQ(count.allocations(), 0U);
}

TEST_F(OperationCost, CoreOperatorsFindTheirTermsWithoutAnAllocation) {
  const Term_* p = constant("p", m.get_bool_type());
  const Term_* i = constant("i", m.get_int_type());
  const Terms first = {m.make_and(p, p), m.make_not(p),      m.make_plus(i, i),
                       m.make_leq(i, i), m.make_equal(i, i), m.make_term_ite(p, i, i)};
  const AllocationCount count;
  EXPECT_EQ(m.make_and(p, p), first[0]);
  EXPECT_EQ(m.make_not(p), first[1]);
  EXPECT_EQ(m.make_plus(i, i), first[2]);
  EXPECT_EQ(m.make_leq(i, i), first[3]);
  EXPECT_EQ(m.make_equal(i, i), first[4]);
  EXPECT_EQ(m.make_term_ite(p, i, i), first[5]);
  EXPECT_EQ(count.allocations(), 0U);
}

TEST_F(OperationCost, ApplicationsAreFoundWithoutAnAllocation) {
  const DataType* integer = m.get_int_type();
  const Symbol* f = m.make_symbol("f", m.get_function_type({integer, integer}, integer));
  const Terms args(2, constant("i", integer));
  const Term_* first = m.make_uninterpreted_function(f, args);
  const AllocationCount count;
  EXPECT_EQ(m.make_uninterpreted_function(f, args), first);
  EXPECT_EQ(count.allocations(), 0U);
}

TEST_F(OperationCost, SmallArithmeticNumeralsAreFoundWithoutAnAllocation) {
  const Term_* first = m.make_number(7);
  const AllocationCount count;
  EXPECT_EQ(m.make_number(7), first);
  EXPECT_EQ(count.allocations(), 0U);
}

// Names that do not fit into a string without an allocation, too.
TEST_F(OperationCost, ParametricOperatorsFindTheirTermsWithoutAnAllocation) {
  const Term_* a = bits("a", 100000);
  const Term_* i = constant("i", m.get_int_type());
  const Term_* f = constant("f", m.get_fp_type(8, 23));
  const Term_* rm = m.make_fprounding_even();
  const Term_* array = constant("array", m.get_array_type(m.get_int_type(), m.get_int_type()));
  const std::vector<const Term_* (*)(TermManager&, const Terms&)> builders = {
      [](TermManager& n, const Terms& t) { return n.make_bv_extract(99999, 88888, t[0]); },
      [](TermManager& n, const Terms& t) { return n.make_bv_zero_extend(77777, t[0]); },
      [](TermManager& n, const Terms& t) { return n.make_bv_sign_extend(77777, t[0]); },
      [](TermManager& n, const Terms& t) { return n.make_bv_rotate_left(55555, t[0]); },
      [](TermManager& n, const Terms& t) { return n.make_bv_concat(t[0], t[0]); },
      [](TermManager& n, const Terms& t) { return n.make_int_to_bv(12345, t[1]); },
      [](TermManager& n, const Terms& t) { return n.make_fp_add(t[3], t[2], t[2]); },
      [](TermManager& n, const Terms& t) { return n.make_fp_cast(11, 52, t[3], t[2]); },
      [](TermManager& n, const Terms& t) { return n.make_fp_from_sbv(11, 52, t[3], t[0]); },
      [](TermManager& n, const Terms& t) { return n.make_array_read(t[4], t[1]); },
      [](TermManager& n, const Terms& t) { return n.make_array_write(t[4], t[1], t[1]); },
      [](TermManager& n, const Terms& t) {
        return n.make_int_modular_congruence(123456789, t[1], t[1]);
      },
  };
  const Terms operands = {a, i, f, rm, array};
  for (size_t k = 0; k < builders.size(); ++k) {
    const Term_* first = builders[k](m, operands);
    const AllocationCount count;
    EXPECT_EQ(builders[k](m, operands), first);
    EXPECT_EQ(count.allocations(), 0U) << "builder " << k;
  }
}

TEST_F(OperationCost, TypesAreFoundWithoutAnAllocation) {
  m.get_bv_type(12345);
  m.get_fp_type(11, 52);
  m.get_array_type(m.get_int_type(), m.get_bv_type(12345));
  const AllocationCount count;
  m.get_array_type(m.get_int_type(), m.get_bv_type(12345));
  m.get_fp_type(11, 52);
  EXPECT_EQ(count.allocations(), 0U);
}

//----------------------------------------------------------------------------------------------
// Walks

TEST_F(OperationCost, AWalkVisitsEachTermOnceBeforeAndOnceAfterItsArguments) {
  const Term_* root = shared_graph(10000);
  VisitCount count;
  TermVisitor<VisitCount> visitor(&count, /*visit_once=*/true);
  visitor.visit(root, true);
  EXPECT_EQ(count.before.size(), 10002U);
  EXPECT_EQ(count.after.size(), 10002U);
  for (const auto& [term, times] : count.before) EXPECT_EQ(times, 1) << term->id;
  for (const auto& [term, times] : count.after) EXPECT_EQ(times, 1) << term->id;
}

// All but the replaced one, those that stay as they are included.
TEST_F(OperationCost, SubstitutionAsksOnceForEachTerm) {
  const Term_* root = shared_graph(10000);
  const Term_* x = bits("x");
  const Term_* z = bits("z");
  const RequestCount count(m);
  m.substitute(root, {x}, {z});
  EXPECT_EQ(count.requests, 10001U);
}

TEST_F(OperationCost, SubstitutionWithTheMapOfAnEarlierCallAsksForNothing) {
  const Term_* root = shared_graph(10000);
  TermManager::TermMap images;
  std::vector<bool> marks;
  m.substitute(root, {bits("x")}, {bits("z")}, images, marks);
  const RequestCount count(m);
  m.substitute(root, images, marks, true);
  EXPECT_EQ(count.requests, 0U);
}

TEST_F(OperationCost, CopyingAsksOnceForEachTerm) {
  const Term_* root = shared_graph(10000);
  TermManager target;
  const RequestCount count(target);
  target.copy_term(m, root);
  EXPECT_EQ(count.requests, 10002U);
}

// Such a walk may not clear a mark for each id below.
TEST_F(OperationCost, CopyingThreeTermsAgainAllocatesLittleHoweverManyTermsThereAre) {
  shared_graph(300000);
  const Term_* three = m.make_bv_not(m.make_bv_neg(bits("last")));
  TermManager target;
  target.copy_term(m, three);
  const AllocationCount count;
  target.copy_term(m, three);
  EXPECT_LT(count.bytes(), 10000U);
}

//----------------------------------------------------------------------------------------------
// Symbols

// The allocations for a thousand symbols after `before` others.
template <class Make>
size_t allocations_for_a_thousand(size_t before, Make make) {
  TermManager m;
  for (size_t i = 0; i < before; ++i) make(m, i);
  const AllocationCount count;
  for (size_t i = before; i < before + 1000; ++i) make(m, i);
  return count.allocations();
}

TEST(SymbolCost, ManyNumberedNamesTakeNoMoreAllocationsEachThanFew) {
  const auto make = [](TermManager& m, size_t i) {
    m.make_symbol("x" + std::to_string(1000000 + i), m.get_int_type());
  };
  EXPECT_LE(allocations_for_a_thousand(30000, make), allocations_for_a_thousand(0, make));
}

TEST(SymbolCost, ManyUniqueNamesOnOneBaseTakeNoMoreAllocationsEachThanFew) {
  const auto make = [](TermManager& m, size_t) { m.make_unique_symbol("base", m.get_int_type()); };
  EXPECT_LE(allocations_for_a_thousand(30000, make), allocations_for_a_thousand(0, make));
}

TEST(SymbolCost, ASymbolTakesAtMostThreeAllocations) {
  const auto make = [](TermManager& m, size_t) { m.make_unique_symbol("base", m.get_int_type()); };
  EXPECT_LE(allocations_for_a_thousand(30000, make), 3000U);
}

}  // namespace
}  // namespace quill
