// Misuse in debug builds: terms given to a printer must belong to its manager and not be freed.

#include <gtest/gtest.h>

#include <functional>
#include <ostream>
#include <sstream>
#include <string>
#include <vector>

#include "quill/printers/bit_definitions.h"
#include "quill/printers/let_plan.h"
#include "quill/printers/outterm.h"
#include "quill/printers/smtlib2_term_printer.h"
#include "quill/printers/standard_encoding.h"
#include "quill/smtlib/syntax.h"

namespace quill {
namespace {

#ifndef NDEBUG

struct Call {
  const char* name;
  std::function<void(TermManager&, const Term_*)> call;

  // So that a failed test names its call in a line.
  friend void PrintTo(const Call& row, std::ostream* out) { *out << row.name; }
};

const std::vector<Call> calls = {
    {"outterm", [](TermManager& m, const Term_* t) { std::ostringstream() << outterm(&m, t); }},
    {"outshallowterm",
     [](TermManager& m, const Term_* t) { std::ostringstream() << outshallowterm(&m, t); }},
    {"outtermlist",
     [](TermManager& m, const Term_* t) {
       const std::vector<const Term_*> terms = {m.make_true(), t};
       std::ostringstream() << outtermlist(&m, &terms);
     }},
    {"print_term",
     [](TermManager& m, const Term_* t) {
       std::ostringstream out;
       SmtLib2TermPrinter printer(&m, nullptr, "", "", /*share_by_let=*/false, nullptr);
       printer.print_term(out, t);
     }},
    {"print_definitions",
     [](TermManager& m, const Term_* t) {
       std::ostringstream out;
       SmtLib2TermPrinter printer(&m, nullptr, "", "", /*share_by_let=*/true, nullptr);
       BitDefinitions definitions(m);
       printer.set_definitions(&definitions);
       printer.print_definitions(out, t);
     }},
    {"LetPlan",
     [](TermManager& m, const Term_* t) {
       WrittenForms forms(m);
       const LetPlan plan(m, t, forms);
     }},
    {"need_of", [](TermManager& m, const Term_* t) { StandardEncoding::need_of(m, t); }},
    {"encode",
     [](TermManager& m, const Term_* t) {
       const BitDefinitions definitions(m);
       StandardEncoding(m, definitions).encode(t);
     }},
};

class PrintersDeathTest : public ::testing::TestWithParam<Call> {};

TEST_P(PrintersDeathTest, ATermOfAnotherManager) {
  TermManager m;
  TermManager other;
  const Term_* t = other.make_not(other.make_true());
  EXPECT_DEATH(GetParam().call(m, t), "quill: misuse: a term of another manager");
}

TEST_P(PrintersDeathTest, AFreedTerm) {
  TermManager m;
  const Term_* t = m.make_not(m.make_true());
  m.gc({}, {}, {});
  EXPECT_DEATH(GetParam().call(m, t), "quill: misuse: a term that was freed");
}

INSTANTIATE_TEST_SUITE_P(Calls, PrintersDeathTest, ::testing::ValuesIn(calls),
                         [](const auto& param) { return std::string(param.param.name); });

// Where the annotated terms are looked at: when a printer is made and when it prints, whether or
// not the text has anything to do with them.
class AnnotationsDeathTest : public ::testing::Test {
 protected:
  std::string print(const Term_* t) {
    std::ostringstream out;
    SmtLib2TermPrinter(&m, nullptr, "", "", /*share_by_let=*/true, &annotations).print_term(out, t);
    return out.str();
  }

  TermManager m;
  SmtLib2TermPrinter::Annotations annotations;
};

TEST_F(AnnotationsDeathTest, ATermOfAnotherManager) {
  TermManager other;
  annotations[other.make_not(other.make_true())] = {{"named", "n"}};
  EXPECT_DEATH(print(m.make_true()), "quill: misuse: a term of another manager");
  EXPECT_DEATH(SmtLib2TermPrinter(&m, nullptr, "", "", /*share_by_let=*/true, &annotations),
               "quill: misuse: a term of another manager");
}

TEST_F(AnnotationsDeathTest, AFreedTerm) {
  annotations[m.make_not(m.make_true())] = {{"named", "n"}};
  EXPECT_EQ(print(m.make_true()), "true");
  m.gc({}, {}, {});
  EXPECT_DEATH(print(m.make_true()), "quill: misuse: a term that was freed");
}

TEST_F(AnnotationsDeathTest, ATermAddedLater) {
  SmtLib2TermPrinter printer(&m, nullptr, "", "", /*share_by_let=*/true, &annotations);
  TermManager other;
  annotations[other.make_not(other.make_true())];
  std::ostringstream out;
  EXPECT_DEATH(printer.print_term(out, m.make_true()), "quill: misuse: a term of another manager");
}

TEST_F(AnnotationsDeathTest, ATermFreedLater) {
  annotations[m.make_not(m.make_true())] = {{"named", "n"}};
  SmtLib2TermPrinter printer(&m, nullptr, "", "", /*share_by_let=*/true, &annotations);
  BitDefinitions definitions(m);
  printer.set_definitions(&definitions);
  m.gc({}, {}, {});
  std::ostringstream out;
  EXPECT_DEATH(printer.print_definitions(out, m.make_true()),
               "quill: misuse: a term that was freed");
}

TEST(PrintTypeDeathTest, ATypeOfAnotherManager) {
  TermManager m;
  TermManager other;
  std::ostringstream out;
  EXPECT_DEATH(print_type(out, m, other.get_int_type()), "quill: misuse: a type of another");
}

TEST(PrintTypeDeathTest, AnExpectedTypeOfAnotherManager) {
  TermManager m;
  TermManager other;
  std::ostringstream out;
  SmtLib2TermPrinter printer(&m, nullptr, "", "", /*share_by_let=*/true, nullptr);
  EXPECT_DEATH(printer.print_term(out, m.make_true(), other.get_bool_type()),
               "quill: misuse: a type of another manager");
}

TEST(PrintTypeDeathTest, ATypeThatWasFreed) {
  TermManager m;
  const DataType* type = m.get_simple_type("S", /*only_existing=*/false);
  m.free_type(type);
  std::ostringstream out;
  EXPECT_DEATH(print_type(out, m, type), "quill: misuse: a type that was freed");
}

#endif

}  // namespace
}  // namespace quill
