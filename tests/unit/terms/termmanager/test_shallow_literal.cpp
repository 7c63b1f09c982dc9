#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "quill/terms/termmanager/term_manager.h"
#include "tests/support/failing_memory.h"
#include "tests/support/manager_test.h"

namespace quill {
namespace {

class ShallowLiteral : public testing::ManagerTest {
 protected:
  const Term_* apply(const Symbol* s, const Term_* t, int times) {
    for (int n = 0; n < times; ++n) t = m.make_uninterpreted_function(s, {t});
    return t;
  }

  const DataType* const int_type = m.get_int_type();
  // true and false have the ids 0 and 1.
  const Term_* const p = constant("p", m.get_bool_type());  // 2
  const Term_* const q = constant("q", m.get_bool_type());  // 3
  const Term_* const i = constant("i", int_type);           // 4
  const Symbol* const f = m.make_symbol("f", m.get_function_type({int_type}, int_type));
};

TEST_F(ShallowLiteral, ConstantsAreNames) {
  EXPECT_EQ(m.to_shallow_str_literal(p), "p");
  EXPECT_EQ(m.to_shallow_str_literal(m.make_true()), "`true`");
  EXPECT_EQ(m.to_shallow_str_literal(m.make_number(-7)), "-7");
}

TEST_F(ShallowLiteral, ApplicationsAreExpanded) {
  const Term_* sum = m.make_plus(m.make_times(i, i), m.make_number(3));
  EXPECT_EQ(m.to_shallow_str_literal(m.make_leq(sum, i)), "(`<=_int` (`+_int` (`*_int` i i) 3) i)");
}

TEST_F(ShallowLiteral, NotIsExpanded) {
  EXPECT_EQ(m.to_shallow_str_literal(m.make_not(m.make_leq(i, i))), "(`not` (`<=_int` i i))");
}

TEST_F(ShallowLiteral, SharedTermsAreWrittenEachTime) {
  const Term_* sum = m.make_plus(i, i);
  EXPECT_EQ(m.to_shallow_str_literal(m.make_times(sum, sum)),
            "(`*_int` (`+_int` i i) (`+_int` i i))");
}

TEST_F(ShallowLiteral, LargeConnectivesAreNotExpanded) {
  const Term_* atom = m.make_leq(i, i);  // 5
  EXPECT_EQ(m.to_shallow_str_literal(m.make_and(p, atom)), "(`and` p #5)");
  EXPECT_EQ(m.to_shallow_str_literal(m.make_or(atom, q)), "(`or` #5 q)");
  EXPECT_EQ(m.to_shallow_str_literal(m.make_iff(atom, atom)), "(`iff` #5 #5)");
}

TEST_F(ShallowLiteral, LargeConnectivesBelowAreNotExpanded) {
  const Term_* atom = m.make_leq(i, i);  // 5
  EXPECT_EQ(m.to_shallow_str_literal(m.make_not(m.make_and(atom, p))), "(`not` (`and` #5 p))");
}

TEST_F(ShallowLiteral, IfThenElseIsItsNameAndItsId) {
  const Term_* ite = m.make_term_ite(p, i, m.make_number(0));  // 0 is 5, the ite 6
  EXPECT_EQ(m.to_shallow_str_literal(ite), "(`ite_int`<6> _ _ _)");
  EXPECT_EQ(m.to_shallow_str_literal(m.make_plus(ite, i)), "(`+_int` (`ite_int`<6> _ _ _) i)");
}

TEST_F(ShallowLiteral, AllArgumentsAreWritten) {
  const Symbol* g =
      m.make_symbol("g", m.get_function_type(std::vector<const DataType*>(10, int_type), int_type));
  EXPECT_EQ(
      m.to_shallow_str_literal(m.make_uninterpreted_function(g, std::vector<const Term_*>(10, i))),
      "(g i i i i i i i i i i)");
}

TEST_F(ShallowLiteral, NestingIsExpandedToDepthTen) {
  // The applications are 5, 6, ...; the one at depth 10 is the last to be looked at.
  EXPECT_EQ(m.to_shallow_str_literal(apply(f, i, 11)),
            "(f (f (f (f (f (f (f (f (f (f (f i)))))))))))");
  EXPECT_EQ(m.to_shallow_str_literal(apply(f, i, 12)),
            "(f (f (f (f (f (f (f (f (f (f (f #5)))))))))))");
  EXPECT_EQ(m.to_shallow_str_literal(apply(f, i, 13)),
            "(f (f (f (f (f (f (f (f (f (f (f #6)))))))))))");
}

TEST_F(ShallowLiteral, IfThenElseAtDepthTenIsCutLikeAnyOther) {
  const Term_* ite = m.make_term_ite(p, i, m.make_plus(i, i));  // the sum is 5, the ite 6
  EXPECT_EQ(m.to_shallow_str_literal(apply(f, ite, 9)),
            "(f (f (f (f (f (f (f (f (f (`ite_int`<6> _ _ _))))))))))");
  EXPECT_EQ(m.to_shallow_str_literal(apply(f, ite, 10)),
            "(f (f (f (f (f (f (f (f (f (f (`ite_int` p i #5)))))))))))");
}

TEST_F(ShallowLiteral, HugeTermsStayShort) {
  EXPECT_EQ(m.to_shallow_str_literal(apply(f, i, 1000000)),
            "(f (f (f (f (f (f (f (f (f (f (f #999993)))))))))))");
}

TEST_F(ShallowLiteral, LongTextsAreCutAfter16KiB) {
  const Term_* t = i;
  for (int n = 0; n < 100; ++n) t = m.make_plus(t, t);
  const std::string text = m.to_shallow_str_literal(t);  // would have 28661 bytes
  EXPECT_EQ(text.size(), 16387U);
  EXPECT_EQ(text.substr(0, 24), "(`+_int` (`+_int` (`+_in");
  EXPECT_EQ(text.substr(16384), "...");
}

TEST_F(ShallowLiteral, TextsOf16KiBAreWhole) {
  const auto text_of_size = [this](size_t size) {
    const std::string name(size - 4, 'x');  // and "(f ", ")"
    return m.to_shallow_str_literal(
        m.make_uninterpreted_function(f, {constant(name.c_str(), int_type)}));
  };
  EXPECT_EQ(text_of_size(16384), "(f " + std::string(16380, 'x') + ")");
  EXPECT_EQ(text_of_size(16385), "(f " + std::string(16381, 'x') + "...");
  EXPECT_EQ(text_of_size(16386), "(f " + std::string(16381, 'x') + "...");
  EXPECT_EQ(text_of_size(100000), "(f " + std::string(16381, 'x') + "...");
}

TEST_F(ShallowLiteral, ConstantsAreCutAsWell) {
  EXPECT_EQ(m.to_shallow_str_literal(constant(std::string(16384, 'x').c_str(), int_type)),
            std::string(16384, 'x'));
  EXPECT_EQ(m.to_shallow_str_literal(constant(std::string(16385, 'x').c_str(), int_type)),
            std::string(16384, 'x') + "...");
}

// Their whole texts would have from 6^10 pieces on.
TEST_F(ShallowLiteral, WideSharedTermsTakeNoMoreThanTheirTexts) {
  const Symbol* g =
      m.make_symbol("g", m.get_function_type(std::vector<const DataType*>(6, int_type), int_type));
  const Term_* t = i;
  for (int n = 0; n < 14; ++n) {
    t = m.make_uninterpreted_function(g, std::vector<const Term_*>(6, t));
  }
  const testing::AllocationCount count;
  const std::string text = m.to_shallow_str_literal(t);
  EXPECT_LT(count.bytes(), 64U << 10);
  EXPECT_EQ(text.size(), 16387U);
  EXPECT_EQ(text.substr(0, 32), "(g (g (g (g (g (g (g (g (g (g (g");
  EXPECT_EQ(text.substr(16384), "...");
}

TEST_F(ShallowLiteral, TermsOfAMillionArgumentsTakeNoMoreThanTheirTexts) {
  const Symbol* g = m.make_symbol(
      "g", m.get_function_type(std::vector<const DataType*>(1000000, int_type), int_type));
  const Term_* t = m.make_uninterpreted_function(g, std::vector<const Term_*>(1000000, i));
  const testing::AllocationCount count;
  EXPECT_EQ(m.to_shallow_str_literal(t).size(), 16387U);
  EXPECT_LT(count.bytes(), 64U << 10);
}

TEST_F(ShallowLiteral, LongNamesBelowConnectivesAndAtDepthTenAreCut) {
  const Term_* named = constant(std::string(1000000, 'x').c_str(), m.get_bool_type());
  m.set_reject_bool_arguments(false);
  const Symbol* g = m.make_symbol("g", m.get_function_type({m.get_bool_type()}, m.get_bool_type()));
  const Term_* all = m.make_and(named, named);
  const Term_* deep = apply(g, named, 11);
  const testing::AllocationCount count;
  EXPECT_EQ(m.to_shallow_str_literal(all), "(`and` " + std::string(16377, 'x') + "...");
  EXPECT_EQ(m.to_shallow_str_literal(deep).substr(0, 36), "(g (g (g (g (g (g (g (g (g (g (g xxx");
  EXPECT_LT(count.bytes(), 256U << 10);
}

TEST_F(ShallowLiteral, NothingIsMade) {
  const Term_* t = apply(f, i, 12);
  const size_t terms = m.get_bank()->size();
  const size_t symbols = m.get_signature()->size();
  m.to_shallow_str_literal(t);
  EXPECT_EQ(m.get_bank()->size(), terms);
  EXPECT_EQ(m.get_signature()->size(), symbols);
}

}  // namespace
}  // namespace quill
