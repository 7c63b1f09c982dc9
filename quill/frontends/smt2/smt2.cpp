#include "quill/frontends/smt2/smt2.h"

#include <sstream>
#include <string>

#include "quill/frontends/smt2/lexer.h"
#include "quill/frontends/smt2/scopes.h"
#include "quill/frontends/smt2/script_reader.h"
#include "quill/frontends/smt2/sort_reader.h"
#include "quill/frontends/smt2/term_builder.h"
#include "quill/frontends/smt2/term_reader.h"
#include "quill/frontends/smt2/theory_sorts.h"
#include "quill/smtlib/logic.h"

namespace quill::smt2 {

namespace {

// Allows functions with Bool arguments, and restores the previous setting at the end of the scope.
class BoolArgumentsAllowed {
 public:
  explicit BoolArgumentsAllowed(TermManager& manager_)
      : manager(manager_), found(manager_.get_reject_bool_arguments()) {
    manager.set_reject_bool_arguments(false);
  }
  BoolArgumentsAllowed(const BoolArgumentsAllowed&) = delete;
  BoolArgumentsAllowed& operator=(const BoolArgumentsAllowed&) = delete;
  ~BoolArgumentsAllowed() { manager.set_reject_bool_arguments(found); }

 private:
  TermManager& manager;
  const bool found;
};

}  // namespace

Script read(std::istream& input, TermManager& manager, const ReadOptions& options) {
  const BoolArgumentsAllowed allowed(manager);
  return ScriptReader(input, manager, options).read();
}

namespace {

// `script` may be null.
const Term_* read_one_term(std::string_view text, TermManager& manager, const Script* script,
                           const ReadOptions& options) {
  std::istringstream input{std::string(text)};
  Lexer lexer(input);
  const Logic logic;
  Scopes scopes(manager);
  TheorySorts sorts(manager);
  SortReader sort_reader(lexer, manager, scopes, sorts, logic);
  TermBuilder builder(manager, scopes, sorts, logic, options);
  TermReader reader(lexer, scopes, sort_reader, builder);
  reader.use_signature = true;
  reader.script = script;
  if (script != nullptr) {
    for (const Command& command : script->commands) {
      for (const NamedTerm& named : command.named_terms) scopes.use_name(named.stored_name);
      if (!command.stored_name.empty()) scopes.use_name(command.stored_name);
      if (command.symbol == nullptr) continue;
      const std::string name = command.symbol->name;
      const bool in_force = manager.get_signature()->get_symbol(name.c_str()) == command.symbol;
      if (!command.undefined_name.empty() && in_force) {
        builder.undefined_functions.adopt(command.undefined_name, command.symbol);
      } else {
        scopes.use_name(name);
      }
    }
  }
  try {
    lexer.next();
    const Value value = reader.read();
    if (lexer.token.kind != TokenKind::End) {
      throw ParseError(lexer.token.position,
                       "one term is expected, but " + lexer.token.description() + " follows it");
    }
    return value.term;
  } catch (const ParseError&) {
    throw;
  } catch (const Exception& refusal) {  // thrown by the manager
    throw ParseError(lexer.token.position, refusal.what());
  }
}

}  // namespace

const Term_* read_term(std::string_view text, TermManager& manager) {
  return read_one_term(text, manager, nullptr, ReadOptions());
}

const Term_* read_term(std::string_view text, TermManager& manager, const Script& script,
                       const ReadOptions& options) {
  const BoolArgumentsAllowed allowed(manager);
  return read_one_term(text, manager, &script, options);
}

}  // namespace quill::smt2
