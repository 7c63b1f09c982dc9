// The commands of SMT-LIB 2.6, one row each, for the code that reads and the code that writes them,
// and the names of commands that only other readers have.

#ifndef QUILL_SMTLIB_COMMANDS_H
#define QUILL_SMTLIB_COMMANDS_H

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <string_view>

namespace quill {

enum class CommandKind : uint8_t {
  Assert,
  CheckSat,
  CheckSatAssuming,
  DeclareConst,
  DeclareFun,
  DeclareSort,
  DefineConst,
  DefineFun,
  DefineSort,
  Echo,
  Exit,
  GetAssertions,
  GetAssignment,
  GetInfo,
  GetModel,
  GetOption,
  GetProof,
  GetUnsatAssumptions,
  GetUnsatCore,
  GetValue,
  Pop,
  Push,
  Reset,
  ResetAssertions,
  SetInfo,
  SetLogic,
  SetOption,

  // Former spellings. <termios.h> of some systems defines ECHO as a macro.
  ASSERT = Assert,
  CHECK_SAT = CheckSat,
  CHECK_SAT_ASSUMING = CheckSatAssuming,
  DECLARE_CONST = DeclareConst,
  DECLARE_FUN = DeclareFun,
  DECLARE_SORT = DeclareSort,
  DEFINE_CONST = DefineConst,
  DEFINE_FUN = DefineFun,
  DEFINE_SORT = DefineSort,
#ifndef ECHO
  ECHO = Echo,
#endif
  EXIT = Exit,
  GET_ASSERTIONS = GetAssertions,
  GET_ASSIGNMENT = GetAssignment,
  GET_INFO = GetInfo,
  GET_MODEL = GetModel,
  GET_OPTION = GetOption,
  GET_PROOF = GetProof,
  GET_UNSAT_ASSUMPTIONS = GetUnsatAssumptions,
  GET_UNSAT_CORE = GetUnsatCore,
  GET_VALUE = GetValue,
  POP = Pop,
  PUSH = Push,
  RESET = Reset,
  RESET_ASSERTIONS = ResetAssertions,
  SET_INFO = SetInfo,
  SET_LOGIC = SetLogic,
  SET_OPTION = SetOption,
};

// What a command has between its name and its closing parenthesis.
enum class CommandShape : uint8_t {
  Nothing,
  Term,
  Terms,            // in parentheses
  Levels,           // a number; scripts may omit it when it is 1
  String,           // "text"
  Keyword,          // :key
  KeywordAndValue,  // :key, then an s-expression or nothing
  LogicName,
  ConstDeclaration,  // name sort
  FunDeclaration,    // name (sort ...) sort
  SortDeclaration,   // name arity
  ConstDefinition,   // name sort term
  FunDefinition,     // name ((name sort) ...) sort term
  SortDefinition,    // name (name ...) sort
  Unsupported,
};

struct CommandRow {
  std::string_view name;
  CommandKind kind;  // of an unsupported command: the kind most like it
  CommandShape shape;
  bool leaves_answer;  // whether the answer of the check-sat before it stays valid
};

// clang-format off
inline constexpr CommandRow standard_commands[] = {
    {"assert",                CommandKind::Assert,              CommandShape::Term,             false},
    {"check-sat",             CommandKind::CheckSat,            CommandShape::Nothing,          false},
    {"check-sat-assuming",    CommandKind::CheckSatAssuming,    CommandShape::Terms,            false},
    {"declare-const",         CommandKind::DeclareConst,        CommandShape::ConstDeclaration, false},
    {"declare-datatype",      CommandKind::DeclareSort,         CommandShape::Unsupported,      false},
    {"declare-datatypes",     CommandKind::DeclareSort,         CommandShape::Unsupported,      false},
    {"declare-fun",           CommandKind::DeclareFun,          CommandShape::FunDeclaration,   false},
    {"declare-sort",          CommandKind::DeclareSort,         CommandShape::SortDeclaration,  false},
    {"define-const",          CommandKind::DefineConst,         CommandShape::ConstDefinition,  true},
    {"define-fun",            CommandKind::DefineFun,           CommandShape::FunDefinition,    true},
    {"define-fun-rec",        CommandKind::DefineFun,           CommandShape::Unsupported,      true},
    {"define-funs-rec",       CommandKind::DefineFun,           CommandShape::Unsupported,      true},
    {"define-sort",           CommandKind::DefineSort,          CommandShape::SortDefinition,   true},
    {"echo",                  CommandKind::Echo,                CommandShape::String,           true},
    {"exit",                  CommandKind::Exit,                CommandShape::Nothing,          false},
    {"get-assertions",        CommandKind::GetAssertions,       CommandShape::Nothing,          true},
    {"get-assignment",        CommandKind::GetAssignment,       CommandShape::Nothing,          true},
    {"get-info",              CommandKind::GetInfo,             CommandShape::Keyword,          true},
    {"get-model",             CommandKind::GetModel,            CommandShape::Nothing,          true},
    {"get-option",            CommandKind::GetOption,           CommandShape::Keyword,          true},
    {"get-proof",             CommandKind::GetProof,            CommandShape::Nothing,          true},
    {"get-unsat-assumptions", CommandKind::GetUnsatAssumptions, CommandShape::Nothing,          true},
    {"get-unsat-core",        CommandKind::GetUnsatCore,        CommandShape::Nothing,          true},
    {"get-value",             CommandKind::GetValue,            CommandShape::Terms,            true},
    {"pop",                   CommandKind::Pop,                 CommandShape::Levels,           false},
    {"push",                  CommandKind::Push,                CommandShape::Levels,           false},
    {"reset",                 CommandKind::Reset,               CommandShape::Nothing,          false},
    {"reset-assertions",      CommandKind::ResetAssertions,     CommandShape::Nothing,          false},
    {"set-info",              CommandKind::SetInfo,             CommandShape::KeywordAndValue,  true},
    {"set-logic",             CommandKind::SetLogic,            CommandShape::LogicName,        false},
    {"set-option",            CommandKind::SetOption,           CommandShape::KeywordAndValue,  true},
};
// clang-format on

// The row of a name, or null if there is none.
const CommandRow* find_command(std::string_view name);

// The supported row of a kind.
constexpr const CommandRow& command_row(CommandKind kind) {
  const CommandRow* row = standard_commands;
  while (row->kind != kind || row->shape == CommandShape::Unsupported) ++row;
  return *row;
}

constexpr bool commands_complete() {
  size_t num_kinds = 0;
  for (size_t i = 0; i < std::size(standard_commands); ++i) {
    if (i != 0 && standard_commands[i - 1].name >= standard_commands[i].name) return false;
    if (standard_commands[i].shape == CommandShape::Unsupported) continue;
    if (standard_commands[i].kind != static_cast<CommandKind>(num_kinds)) return false;
    ++num_kinds;
  }
  return num_kinds == static_cast<size_t>(CommandKind::SetOption) + 1;
}
static_assert(commands_complete(),
              "the rows ascend by name, and so do the kinds: one row for each");

// Whether the name is that of a command that some readers have and the standard does not.
bool is_foreign_command(std::string_view name);

// Whether the name is that of any command.
bool is_command_name(std::string_view name);

}  // namespace quill

#endif
