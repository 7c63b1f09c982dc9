// A script as data: its commands in order, with their terms.
//
// The terms, symbols and types belong to the TermManager that the script was read into, and are
// valid as long as the manager exists and does not collect them. Definitions are expanded: no term
// mentions a defined name. Definitions in which :named gives a name to a term are kept as well, so
// that the name has the scope that it had. Nothing here depends on addresses.
//
// Functions for division by zero are declared like any other: declarations that the script does not
// have come after the logic and before the first command that opens a scope or has terms.

#ifndef QUILL_FRONTENDS_SMT2_SCRIPT_H
#define QUILL_FRONTENDS_SMT2_SCRIPT_H

#include <cstdint>
#include <string>
#include <vector>

#include "quill/frontends/smt2/value.h"
#include "quill/smtlib/commands.h"
#include "quill/terms/symbol.h"

namespace quill::smt2 {

using quill::CommandKind;

// A term that a command lists, with its sort as a type of the manager.
struct ScriptTerm {
  Value value;
  // Not empty if the script gives the term by a name: the stored_name of that name, which :named
  // gave to an earlier term or which a definition that is kept has. Names that an assertion gives
  // to the whole term do not count.
  std::string spelled_name;
};

struct Command {
  CommandKind kind = CommandKind::Assert;

  // SetLogic: the logic. DeclareSort and the definitions: the name, without bars. SetInfo,
  // SetOption, GetInfo, GetOption: everything after the command's name. Echo: the string with its
  // quotes.
  std::string text;

  uint64_t count = 0;              // Push, Pop: levels; DeclareSort: arity
  const Symbol* symbol = nullptr;  // DeclareConst, DeclareFun
  // DeclareFun: not empty for a function that stands for values which the standard leaves
  // undefined. It is then the name that the function was to have; the function's own name differs
  // if the script uses that name.
  std::string undefined_name;
  const DataType* sort = nullptr;  // DeclareSort: the sort, or its head if it has an arity

  // Assert: one term. CheckSatAssuming, GetValue: the terms as listed. DefineConst, DefineFun: the
  // body with the sort of the definition, if the definition is kept.
  std::vector<ScriptTerm> terms;

  // DefineConst, DefineFun: the defined name in the manager's spelling if the definition is kept,
  // which is the case if it has no parameters and its body gives names to terms.
  std::string stored_name;

  // Whether the command mentions arrays with Bool indices or elements. The manager holds them as
  // arrays with bit-vectors of one bit in place of Bool.
  bool has_bool_arrays = false;

  // Whether the script has used abs over Real up to this command. Strict readers refuse that in
  // logics without integers.
  bool has_abs_of_reals = false;

  // The names that :named gives in this command, in order. Their terms need not be part of the
  // terms above: they may be part of the body of a definition with parameters, or be bound by let
  // to a variable that is not used.
  std::vector<NamedTerm> named_terms;
};

struct Script {
  std::string logic;  // the last one set; empty if none was
  std::vector<Command> commands;
};

// Whether a command leaves the answer of the check-sat before it as it is.
bool asks_about_answer(CommandKind kind);

}  // namespace quill::smt2

#endif
