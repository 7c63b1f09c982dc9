#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "quill/frontends/smt2/script_transformations.h"
#include "quill/frontends/smt2/smt2.h"
#include "tests/unit/frontends/smt2/read_and_print.h"

namespace quill::smt2 {
namespace {

std::string written(TermManager& manager, const Script& script) {
  std::ostringstream output;
  write(output, manager, script);
  return output.str();
}

const Term_* constant(TermManager& manager, const char* name) {
  return manager.make_constant(manager.get_signature()->get_symbol(name));
}

const char* const scopes_text =
    "(declare-const x Int)\n"
    "(declare-const p Bool)\n"
    "(assert (! (<= x 3) :named small))\n"
    "(push 2)\n"
    "(declare-const y Int)\n"
    "(assert (<= y x))\n"
    "(check-sat)\n"
    "(pop 2)\n"
    "(declare-const y Bool)\n"
    "(assert (or y p))\n"
    "(get-value (x))\n";

TEST(ScriptTransformations, SubstitutionReachesAllTerms) {
  TermManager manager;
  Script script = read_text(scopes_text, manager);
  TermManager::TermMap images;
  images[constant(manager, "x")] = manager.make_number(QNumber(5));
  substitute(manager, script, images);
  EXPECT_EQ(written(manager, script),
            "(declare-const x Int)\n"
            "(declare-const p Bool)\n"
            "(assert (! (<= 5 3) :named small))\n"
            "(push 2)\n"
            "(declare-const y Int)\n"
            "(assert (<= y 5))\n"
            "(check-sat)\n"
            "(pop 2)\n"
            "(declare-const y Bool)\n"
            "(assert (or y p))\n"
            "(get-value (5))\n");
}

TEST(ScriptTransformations, SubstitutionRefusesAnotherType) {
  TermManager manager;
  Script script = read_text(scopes_text, manager);
  TermManager::TermMap images;
  images[constant(manager, "x")] = manager.make_true();
  EXPECT_THROW(substitute(manager, script, images), TermManager::error);
  EXPECT_EQ(written(manager, script), scopes_text);
}

TEST(ScriptTransformations, ACopyIsWrittenLikeTheOriginal) {
  TermManager manager;
  const Script script = read_text(scopes_text, manager);
  TermManager other;
  const Script copied = copy(manager, script, other);
  EXPECT_EQ(written(other, copied), scopes_text);
  // The later meaning of y is the one that is declared at the end.
  EXPECT_EQ(constant(other, "y")->symbol->type, other.get_bool_type());
  EXPECT_EQ(other.check_consistency(), "");
}

TEST(ScriptTransformations, ACopyOutlivesItsSource) {
  TermManager other;
  Script copied;
  {
    TermManager manager;
    copied = copy(manager, read_text(scopes_text, manager), other);
  }
  EXPECT_EQ(written(other, copied), scopes_text);
}

TEST(ScriptTransformations, CollectionKeepsWhatCommandsMention) {
  TermManager manager;
  const Script script = read_text(scopes_text, manager);
  const size_t needed = manager.get_bank()->size();
  manager.make_and(constant(manager, "p"), constant(manager, "p"));
  manager.make_number(QNumber(77));
  collect(manager, script);
  EXPECT_EQ(manager.get_last_collection().terms, 2u);
  EXPECT_EQ(manager.get_bank()->size(), needed);
  EXPECT_EQ(written(manager, script), scopes_text);
}

TEST(ScriptTransformations, CollectionToAssertionsKeepsThoseInForce) {
  TermManager manager;
  const Script script = read_text(scopes_text, manager);
  const Term_* y_was_int = script.commands[5].terms[0].value.term;
  const size_t before = manager.get_bank()->size();
  ASSERT_EQ(y_was_int->to_str(), "(`<=_int` y x)");
  EXPECT_EQ(collect_to_assertions(manager, script), 2u);
  // The inner assertion and its y.
  EXPECT_EQ(manager.get_bank()->size(), before - 2);
  EXPECT_EQ(manager.check_consistency(), "");
}

TEST(ScriptTransformations, CollectionToAssertionsKnowsLevels) {
  const auto kept = [](const std::string& text) {
    TermManager manager;
    const Script script = read_text("(declare-const p Bool)" + text, manager);
    return collect_to_assertions(manager, script);
  };
  EXPECT_EQ(kept(""), 0u);
  EXPECT_EQ(kept("(assert p)(push 1)(assert p)(push 1)(assert p)(pop 1)"), 2u);
  EXPECT_EQ(kept("(assert p)(push 1)(assert p)(push 1)(assert p)(pop 2)"), 1u);
  EXPECT_EQ(kept("(assert p)(push 3)(assert p)(pop 1)(assert p)"), 2u);
  EXPECT_EQ(kept("(assert p)(push 0)(assert p)(pop 0)"), 2u);
  EXPECT_EQ(kept("(assert p)(push 1000000000)(assert p)(pop 1000000000)"), 1u);
  EXPECT_EQ(kept("(assert p)(push 1)(assert p)(reset-assertions)(assert true)"), 1u);
  EXPECT_EQ(kept("(assert p)(reset)(assert true)(assert true)"), 2u);
}

// The benchmarks that the environment variable QUILL_CORPUS names.
class OnBenchmarks : public testing::Test {
 protected:
  void SetUp() override {
    const char* folder = std::getenv("QUILL_CORPUS");
    if (folder == nullptr) GTEST_SKIP() << "QUILL_CORPUS is unset";
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
      const std::filesystem::path& path = entry.path();
      if (path.extension() == ".smt2" && path.parent_path().filename() != "bad") {
        files.push_back(path);
      }
    }
    ASSERT_GE(files.size(), 50u);
  }

  static Script read_file(const std::filesystem::path& path, TermManager& manager) {
    std::ifstream input(path, std::ios::binary);
    return read(input, manager);
  }

  std::vector<std::filesystem::path> files;
};

TEST_F(OnBenchmarks, SubstitutionByFreshNamesAndBackGivesTheSameTerms) {
  size_t files_changed = 0;
  for (const auto& file : files) {
    TermManager manager;
    Script script = read_file(file, manager);
    const Script original = script;
    TermManager::TermMap there;
    TermManager::TermMap back;
    for (const Command& command : script.commands) {
      if (command.symbol == nullptr || command.symbol->arity != 0) continue;
      const Term_* declared = manager.make_constant(command.symbol);
      const Term_* fresh = manager.make_fresh_variable(command.symbol->type);
      there[declared] = fresh;
      back[fresh] = declared;
    }
    substitute(manager, script, there);
    bool changed = false;
    for (size_t i = 0; i < script.commands.size(); ++i) {
      for (size_t k = 0; k < script.commands[i].terms.size(); ++k) {
        changed |=
            script.commands[i].terms[k].value.term != original.commands[i].terms[k].value.term;
      }
    }
    files_changed += changed;
    substitute(manager, script, back);
    for (size_t i = 0; i < script.commands.size(); ++i) {
      for (size_t k = 0; k < script.commands[i].terms.size(); ++k) {
        EXPECT_EQ(script.commands[i].terms[k].value.term, original.commands[i].terms[k].value.term)
            << file;
      }
    }
  }
  // A few benchmarks have no constants, or make no use of them.
  EXPECT_GE(10 * files_changed, 9 * files.size());
}

TEST_F(OnBenchmarks, ACopyIsWrittenWithTheSameBytes) {
  for (const auto& file : files) {
    TermManager manager;
    const Script script = read_file(file, manager);
    TermManager other;
    const Script copied = copy(manager, script, other);
    EXPECT_EQ(written(other, copied), written(manager, script)) << file;
    TermManager third;
    EXPECT_EQ(written(third, copy(other, copied, third)), written(manager, script)) << file;
  }
}

TEST_F(OnBenchmarks, ACollectionThatKeepsTheScriptChangesNoByte) {
  for (const auto& file : files) {
    TermManager manager;
    const Script script = read_file(file, manager);
    const std::string before = written(manager, script);
    collect(manager, script);
    EXPECT_EQ(written(manager, script), before) << file;
    EXPECT_EQ(manager.check_consistency(), "") << file;
  }
}

TEST_F(OnBenchmarks, WhatACollectionFreedCanBeReadAgain) {
  for (const auto& file : files) {
    TermManager manager;
    const std::string before = [&] {
      const Script script = read_file(file, manager);
      return written(manager, script);
    }();
    manager.gc({}, {}, {});
    EXPECT_EQ(manager.check_consistency(), "") << file;
    const Script again = read_file(file, manager);
    EXPECT_EQ(written(manager, again), before) << file;
  }
}

}  // namespace
}  // namespace quill::smt2
