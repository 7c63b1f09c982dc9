// Tests of the tester: the code that finds and shrinks mistakes must work while there are none.

#include <gtest/gtest.h>
#include <signal.h>
#include <unistd.h>

#include <sstream>
#include <stdexcept>
#include <string>

#include "tests/life/life.h"
#include "tests/life/model.h"
#include "tests/life/operators.h"
#include "tests/life/pattern.h"
#include "tests/life/shrink.h"
#include "tests/life/trace.h"
#include "tests/life/trial.h"

namespace quill::life {
namespace {

TEST(Pattern, BindsTypesAndNumbersAndFillsSums) {
  Bindings bindings;
  EXPECT_TRUE(match("(FP |{e}:{m}|)", "(FP |3:4|)", bindings));
  EXPECT_EQ(fill("fpasbv_{e}_{m}_{e+m+1}", bindings), "fpasbv_3_4_8");
  EXPECT_TRUE(match("(Array {i} {t})", "(Array Int (Array S0 Real))", bindings));
  EXPECT_EQ(fill("read_{~i}_{~t}", bindings), "read_int_(Array S0 Real)");
}

TEST(Pattern, ABoundLetterMustBeMetAgain) {
  Bindings bindings = {{'w', "8"}};
  EXPECT_TRUE(match("(BitVec {w})", "(BitVec 8)", bindings));
  EXPECT_FALSE(match("(BitVec {w})", "(BitVec 4)", bindings));
}

TEST(Pattern, ALetterIsNeverBool) {
  Bindings bindings;
  EXPECT_FALSE(match("{t}", "Bool", bindings));
  EXPECT_TRUE(match("Bool", "Bool", bindings));
}

TEST(Pattern, TakesTypesApart) {
  EXPECT_EQ(components_of("(-> (BitVec 8) Int Bool)"), (Texts{"->", "(BitVec 8)", "Int", "Bool"}));
  EXPECT_EQ(components_of("(FP |3:4|)"), (Texts{"FP", "|3:4|"}));
  EXPECT_EQ(components_of("Int"), Texts{});
  EXPECT_EQ(result_of("(-> (BitVec 8) Int Bool)"), "Bool");
  EXPECT_EQ(result_of("(Array Int Real)"), "(Array Int Real)");
}

const Head f = {"f", "(-> Int Int Int)", "", {}};

TEST(Model, GivesTheLowestFreeIdToTheLastArgumentFirst) {
  Model model;  // true and false have the ids 0 and 1
  const std::string x = model.make({"x", "Int", "", {}}, {});
  const std::string y = model.make({"y", "Int", "", {}}, {});
  const std::string z = model.make({"z", "Int", "", {}}, {});
  const std::string fxy = model.make(f, {x, y});
  const std::string root = model.make(f, {model.make(f, {x, x}), fxy});
  EXPECT_EQ(model.substitute(root, {{x, z}}), "(f (f z z) (f z y))");
  EXPECT_EQ(model.terms.at("(f z y)").id, 8U);
  EXPECT_EQ(model.terms.at("(f z z)").id, 9U);
  EXPECT_EQ(model.terms.at("(f (f z z) (f z y))").id, 10U);
}

TEST(Model, ACollectionKeepsWhatIsReachable) {
  Model model;
  const std::string x = model.make({"x", "Int", "", {}}, {});
  const std::string y = model.make({"y", "S0", "", {}}, {});
  const std::string root = model.make(f, {x, x});
  Model::Terms freed;
  model.collect({root}, {}, {"(BitVec 8)"}, freed);
  EXPECT_EQ(freed.size(), 1U);
  EXPECT_EQ(freed.count(y), 1U);
  EXPECT_EQ(model.terms.size(), 4U);
  EXPECT_EQ(model.symbols.count("y"), 0U);
  EXPECT_EQ(model.types.count("S0"), 0U);
  EXPECT_EQ(model.types.count("8"), 1U);
  EXPECT_EQ(model.types.count("(-> Int Int Int)"), 1U);
}

TEST(Model, ACopyIsRefusedWhereANameHasAnotherType) {
  Model source;
  const std::string x = source.make({"x", "Int", "", {}}, {});
  const std::string y = source.make({"y", "Int", "", {}}, {});
  const std::string root = source.make(f, {x, y});
  Model destination;
  destination.make({"x", "S0", "", {}}, {});
  EXPECT_EQ(destination.copy(source, x, {}), "x");
  EXPECT_EQ(destination.copy(source, root, {}), "");
  EXPECT_EQ(destination.terms.count("y"), 1U);
  EXPECT_EQ(destination.symbols.count("f"), 1U);
}

TEST(Trace, IsReadAsItWasWritten) {
  const Trace trace = random_trace(7, 20);
  std::istringstream in("# a comment\n\n" + to_str(trace));
  const Trace read = read_trace(in);
  EXPECT_EQ(read.size(), trace.size());
  EXPECT_EQ(to_str(read), to_str(trace));
}

TEST(Trace, RefusesWhatIsNoOperation) {
  for (const char* line : {"0 bvadds 1 2", "2 bvadd 1 2", "0 bvadd 1 x", "bvadd"}) {
    std::istringstream in(line);
    EXPECT_THROW(read_trace(in), std::runtime_error) << line;
  }
}

TEST(Trace, EverySubsequenceCanBeLived) {
  const Trace trace = random_trace(8, 10);
  for (size_t step = 2; step <= 5; ++step) {
    Trace rest;
    for (size_t i = 0; i < trace.size(); i += step) rest.push_back(trace[i]);
    EXPECT_EQ(live(rest), "");
  }
}

TEST(Shrink, LeavesWhatIsNeededToFail) {
  Trace trace;
  for (size_t i = 0; i < 300; ++i) trace.push_back({i % 2, "plus", {i, 7}});
  const Trace shortest = shrink(trace, [](const Trace& candidate) {
    bool first = false;
    bool second = false;
    for (const Operation& operation : candidate) {
      first = first || operation.operands[0] == 41;
      second = second || (first && operation.operands[0] == 250);
    }
    return second;
  });
  EXPECT_EQ(to_str(shortest), "1 plus 41 0\n0 plus 250 0\n");
}

TEST(TryApart, ReportsCrashesAndExits) {
  EXPECT_EQ(try_apart([] { return std::string("said"); }, /*quiet=*/false), "said");
  EXPECT_EQ(try_apart(
                [] {
                  raise(SIGKILL);
                  return std::string();
                },
                /*quiet=*/true),
            "ended by signal 9");
  EXPECT_EQ(try_apart([]() -> std::string { _exit(3); },
                      /*quiet=*/true),
            "exit status 3");
}

}  // namespace
}  // namespace quill::life
