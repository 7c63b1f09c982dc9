// A script as data: its commands in order, with their terms.
//
// The terms, symbols and types belong to the TermManager that the script was read into and are
// valid as long as it lives and does not collect them. Definitions are expanded: no term mentions a
// defined name. Those in which :named gives a name to a term are kept besides, so that the name has
// the scope that it had. Nothing here depends on addresses.
//
// Functions that stand for division by zero are declared like any other: a declaration that the
// script does not have comes after the logic and before what opens a scope or has terms.

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

// A term that a command lists, with its sort in the manager's types.
struct ScriptTerm {
  Value value;
  // Not empty when the script gives the term, apart from names for the whole of it in an assertion,
  // by a name that an earlier term was given by :named or by a definition that is kept: the
  // stored_name there.
  std::string spelled_name;
};

struct Command {
  CommandKind kind = CommandKind::Assert;

  // SetLogic: the logic. DeclareSort and the definitions: the name, without bars. SetInfo,
  // SetOption, GetInfo, GetOption: everything after the command's name. Echo: the string with
  // its quotes.
  std::string text;

  uint64_t count = 0;              // Push, Pop: levels; DeclareSort: arity
  const Symbol* symbol = nullptr;  // DeclareConst, DeclareFun
  // DeclareFun: not empty for a function that stands for values which the standard leaves open.
  // Then it is the name that the function was to have; its own differs where the script uses that.
  std::string undefined_name;
  const DataType* sort = nullptr;  // DeclareSort: the sort, or its head if it has an arity

  // Assert: one; CheckSatAssuming, GetValue: as listed; DefineConst, DefineFun: the body with
  // the sort of the definition, if the definition is kept.
  std::vector<ScriptTerm> terms;

  // DefineConst, DefineFun: the defined name in the manager's spelling, if the definition is
  // kept: if it has no parameters and its body gives names to terms.
  std::string stored_name;

  // Whether it mentions arrays with Bool indices or elements. They are held as arrays with
  // bit-vectors of one bit in the place of Bool.
  bool has_bool_arrays = false;

  // Whether the script has used abs over Real up to here, which strict readers refuse in logics
  // without integers.
  bool has_abs_of_reals = false;

  // The names that :named gives in this command, in order. Their terms need not be part of the
  // terms above: they may be part of the body of a definition with parameters, or be bound by let
  // to a variable that is not used.
  std::vector<NamedTerm> named_terms;
};

struct Script {
  std::string logic;  // the last one set; empty when none was
  std::vector<Command> commands;
};

// Whether a command leaves the answer of a check-sat before it as it is.
bool asks_about_answer(CommandKind kind);

}  // namespace quill::smt2

#endif
