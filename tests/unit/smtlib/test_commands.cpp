#include <gtest/gtest.h>

#include <cstddef>
#include <iterator>
#include <string>

#include "quill/smtlib/commands.h"

namespace quill {
namespace {

struct Expected {
  const char* name;
  CommandKind kind;
  bool leaves_answer;
};

// By number of the kind.
const Expected commands[] = {
    {"assert", CommandKind::Assert, false},
    {"check-sat", CommandKind::CheckSat, false},
    {"check-sat-assuming", CommandKind::CheckSatAssuming, false},
    {"declare-const", CommandKind::DeclareConst, false},
    {"declare-fun", CommandKind::DeclareFun, false},
    {"declare-sort", CommandKind::DeclareSort, false},
    {"define-const", CommandKind::DefineConst, true},
    {"define-fun", CommandKind::DefineFun, true},
    {"define-sort", CommandKind::DefineSort, true},
    {"echo", CommandKind::Echo, true},
    {"exit", CommandKind::Exit, false},
    {"get-assertions", CommandKind::GetAssertions, true},
    {"get-assignment", CommandKind::GetAssignment, true},
    {"get-info", CommandKind::GetInfo, true},
    {"get-model", CommandKind::GetModel, true},
    {"get-option", CommandKind::GetOption, true},
    {"get-proof", CommandKind::GetProof, true},
    {"get-unsat-assumptions", CommandKind::GetUnsatAssumptions, true},
    {"get-unsat-core", CommandKind::GetUnsatCore, true},
    {"get-value", CommandKind::GetValue, true},
    {"pop", CommandKind::Pop, false},
    {"push", CommandKind::Push, false},
    {"reset", CommandKind::Reset, false},
    {"reset-assertions", CommandKind::ResetAssertions, false},
    {"set-info", CommandKind::SetInfo, true},
    {"set-logic", CommandKind::SetLogic, false},
    {"set-option", CommandKind::SetOption, true},
};

TEST(Commands, AreFoundByNameAndByKind) {
  for (size_t i = 0; i < std::size(commands); ++i) {
    const Expected& expected = commands[i];
    EXPECT_EQ(static_cast<size_t>(expected.kind), i) << expected.name;
    const CommandRow* row = find_command(expected.name);
    ASSERT_NE(row, nullptr) << expected.name;
    EXPECT_EQ(row, &command_row(expected.kind));
    EXPECT_EQ(row->name, expected.name);
    EXPECT_EQ(row->kind, expected.kind) << expected.name;
    EXPECT_EQ(row->leaves_answer, expected.leaves_answer) << expected.name;
    EXPECT_NE(row->shape, CommandShape::Unsupported) << expected.name;
    EXPECT_TRUE(is_command_name(expected.name));
    EXPECT_FALSE(is_foreign_command(expected.name));
  }
}

TEST(Commands, OfTheStandardMayBeUnsupported) {
  for (const char* name :
       {"declare-datatype", "declare-datatypes", "define-fun-rec", "define-funs-rec"}) {
    const CommandRow* row = find_command(name);
    ASSERT_NE(row, nullptr) << name;
    EXPECT_EQ(row->shape, CommandShape::Unsupported) << name;
    EXPECT_NE(command_row(row->kind).name, name);
    EXPECT_TRUE(is_command_name(name));
  }
}

TEST(Commands, OfOtherReadersHaveNoRow) {
  for (const char* name : {"apply", "assert-soft", "check-sat-using", "declare-sort-parameter",
                           "minimize", "poly/factor", "synth-fun"}) {
    EXPECT_EQ(find_command(name), nullptr) << name;
    EXPECT_TRUE(is_foreign_command(name)) << name;
    EXPECT_TRUE(is_command_name(name)) << name;
  }
}

TEST(Commands, AreNotOtherWords) {
  for (const char* name : {"", "asser", "assert ", "Assert", "assertx", "zzz", "let", "!"}) {
    EXPECT_EQ(find_command(name), nullptr) << name;
    EXPECT_FALSE(is_foreign_command(name)) << name;
    EXPECT_FALSE(is_command_name(name)) << name;
  }
}

// Programs that were written before the enumerators had their present names.
TEST(Commands, HaveTheirFormerSpellings) {
  EXPECT_EQ(CommandKind::ASSERT, CommandKind::Assert);
  EXPECT_EQ(CommandKind::CHECK_SAT, CommandKind::CheckSat);
  EXPECT_EQ(CommandKind::CHECK_SAT_ASSUMING, CommandKind::CheckSatAssuming);
  EXPECT_EQ(CommandKind::DECLARE_CONST, CommandKind::DeclareConst);
  EXPECT_EQ(CommandKind::DECLARE_FUN, CommandKind::DeclareFun);
  EXPECT_EQ(CommandKind::DECLARE_SORT, CommandKind::DeclareSort);
  EXPECT_EQ(CommandKind::DEFINE_CONST, CommandKind::DefineConst);
  EXPECT_EQ(CommandKind::DEFINE_FUN, CommandKind::DefineFun);
  EXPECT_EQ(CommandKind::DEFINE_SORT, CommandKind::DefineSort);
  EXPECT_EQ(CommandKind::ECHO, CommandKind::Echo);
  EXPECT_EQ(CommandKind::EXIT, CommandKind::Exit);
  EXPECT_EQ(CommandKind::GET_ASSERTIONS, CommandKind::GetAssertions);
  EXPECT_EQ(CommandKind::GET_ASSIGNMENT, CommandKind::GetAssignment);
  EXPECT_EQ(CommandKind::GET_INFO, CommandKind::GetInfo);
  EXPECT_EQ(CommandKind::GET_MODEL, CommandKind::GetModel);
  EXPECT_EQ(CommandKind::GET_OPTION, CommandKind::GetOption);
  EXPECT_EQ(CommandKind::GET_PROOF, CommandKind::GetProof);
  EXPECT_EQ(CommandKind::GET_UNSAT_ASSUMPTIONS, CommandKind::GetUnsatAssumptions);
  EXPECT_EQ(CommandKind::GET_UNSAT_CORE, CommandKind::GetUnsatCore);
  EXPECT_EQ(CommandKind::GET_VALUE, CommandKind::GetValue);
  EXPECT_EQ(CommandKind::POP, CommandKind::Pop);
  EXPECT_EQ(CommandKind::PUSH, CommandKind::Push);
  EXPECT_EQ(CommandKind::RESET, CommandKind::Reset);
  EXPECT_EQ(CommandKind::RESET_ASSERTIONS, CommandKind::ResetAssertions);
  EXPECT_EQ(CommandKind::SET_INFO, CommandKind::SetInfo);
  EXPECT_EQ(CommandKind::SET_LOGIC, CommandKind::SetLogic);
  EXPECT_EQ(CommandKind::SET_OPTION, CommandKind::SetOption);
}

}  // namespace
}  // namespace quill
