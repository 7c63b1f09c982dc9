#include <gtest/gtest.h>

#include <sstream>
#include <streambuf>
#include <string>
#include <vector>

#include "quill/printers/outterm.h"

namespace quill {
namespace {

class Outterm : public ::testing::Test {
 protected:
  const Term_* constant(const char* name, const DataType* type) {
    return m.make_constant(m.make_symbol(name, type));
  }
  template <class Adaptor>
  static std::string text(const Adaptor& adaptor) {
    std::ostringstream out;
    out << adaptor;
    return out.str();
  }

  TermManager m;
  const Term_* const p = constant("p", m.get_bool_type());
  const Term_* const q = constant("q", m.get_bool_type());
};

TEST_F(Outterm, WritesTheTermInSmtLib) {
  EXPECT_EQ(text(outterm(&m, p)), "p");
  EXPECT_EQ(text(outterm(&m, m.make_iff(p, m.make_not(q)))), "(= p (not q))");
}

TEST_F(Outterm, BindsSharedTerms) {
  const Term_* both = m.make_and(p, q);
  EXPECT_EQ(text(outterm(&m, m.make_iff(both, both))), "(let ((@1 (and p q))) (= @1 @1))");
}

TEST_F(Outterm, ShallowAdaptorWritesTheSame) {
  const Term_* both = m.make_and(p, q);
  const Term_* t = m.make_or(m.make_not(both), both);
  EXPECT_EQ(text(outshallowterm(&m, t)), "(let ((@1 (and p q))) (or (not @1) @1))");
  EXPECT_EQ(text(outshallowterm(&m, t)), text(outterm(&m, t)));
}

TEST_F(Outterm, ShallowAdaptorIsAsDeep) {
  const Term_* t = p;
  for (int n = 0; n < 100; n++) t = m.make_not(t);
  std::string expected;
  for (int n = 0; n < 100; n++) expected += "(not ";
  EXPECT_EQ(text(outshallowterm(&m, t)), expected + "p" + std::string(100, ')'));
}

TEST_F(Outterm, EmptyList) {
  const std::vector<const Term_*> none;
  EXPECT_EQ(text(outtermlist(&m, &none)), "[ ]");
}

TEST_F(Outterm, ListsAreInOrderWithABlankBehindEachTerm) {
  const std::vector<const Term_*> one{p};
  const std::vector<const Term_*> terms{q, m.make_and(p, q), q};
  EXPECT_EQ(text(outtermlist(&m, &one)), "[ p ]");
  EXPECT_EQ(text(outtermlist(&m, &terms)), "[ q (and p q) q ]");
}

TEST_F(Outterm, TermsOfAListShareNothing) {
  const Term_* both = m.make_and(p, q);
  const Term_* t = m.make_iff(both, both);
  const std::vector<const Term_*> terms{both, t, t};
  EXPECT_EQ(text(outtermlist(&m, &terms)),
            "[ (and p q) (let ((@1 (and p q))) (= @1 @1)) (let ((@1 (and p q))) (= @1 @1)) ]");
}

TEST_F(Outterm, OutputsCanBeChained) {
  std::ostringstream out;
  out << outterm(&m, p) << ' ' << outshallowterm(&m, q) << '.';
  EXPECT_EQ(out.str(), "p q.");
}

TEST_F(Outterm, FlagsOfTheStreamDoNotReachTheText) {
  std::ostringstream out;
  out << std::hex << std::showbase << outterm(&m, m.make_number(255)) << ' '
      << outterm(&m, m.make_bv_number(255, 32));
  EXPECT_EQ(out.str(), "255 (_ bv255 32)");
}

TEST_F(Outterm, WhatTheStreamThrowsPassesThrough) {
  struct Full : std::streambuf {
  } buffer;  // takes no character
  std::ostream out(&buffer);
  out.exceptions(std::ios::badbit | std::ios::failbit);
  EXPECT_THROW(out << outterm(&m, m.make_and(p, q)), std::ios::failure);
}

}  // namespace
}  // namespace quill
