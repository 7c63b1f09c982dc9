// How a script reader handles commands that declare and define names.

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "quill/frontends/smt2/script_reader.h"
#include "quill/frontends/smt2/sort_text.h"
#include "quill/smtlib/name_escape.h"

namespace quill::smt2 {

Name& ScriptReader::read_new_name(std::string& text, Position& position) {
  require_new_symbol();
  const Token& token = lexer.token;
  Name& name = scopes.name(token.text);
  if (term_reader.is_reserved(name)) {
    throw ParseError(token.position, token.description() + " is an operator of " +
                                         describe(name.theory->theory) + " and cannot be declared");
  }
  if (name.global != nullptr) {
    throw ParseError(token.position, token.description() + " is already declared");
  }
  text = token.text;
  position = token.position;
  content_seen = true;
  lexer.next();
  return name;
}

SortName& ScriptReader::read_new_sort_name(std::string& text) {
  require_new_symbol();
  const Token& token = lexer.token;
  SortName& name = scopes.sort_name(token.text);
  if (sort_reader.is_reserved(token.text)) {
    throw ParseError(token.position,
                     "the sort " + token.description() + " belongs to a theory of the logic");
  }
  if (name.global != nullptr) {
    throw ParseError(token.position, "the sort " + token.description() + " is already declared");
  }
  text = token.text;
  content_seen = true;
  lexer.next();
  return name;
}

// ----- declarations -----------------------------------------------------------------------------

void ScriptReader::declare(Command& command, Name& name, const std::string& text, Position position,
                           const std::vector<const DataType*>& argument_sorts,
                           const DataType* result) {
  const DataType* sort = result;
  const DataType* type = sorts.held(result);
  if (!argument_sorts.empty()) {
    std::vector<const DataType*> held;
    for (const DataType* argument : argument_sorts) held.push_back(sorts.held(argument));
    sort = manager.get_function_type(argument_sorts, result);
    type = manager.get_function_type(held, type);
  }
  std::string stored = term_reader.stored_name(text);
  const Symbol* present = manager.get_signature()->get_symbol(stored.c_str());
  if (scopes.is_used(stored)) {
    stored = scopes.free_symbol_name(stored, type);
    present = manager.get_signature()->get_symbol(stored.c_str());
  } else if (present != nullptr && present->type != type) {
    throw ParseError(position, "the manager has a symbol " + shown(text) + " of another sort");
  }
  auto binding = std::make_unique<Binding>();
  binding->kind = Binding::Kind::Function;
  binding->symbol = manager.make_symbol(stored, type);
  binding->sort = sort;
  binding->owned = present == nullptr;
  binding->stored_name = stored;
  command.symbol = binding->symbol;
  scopes.bind(name, std::move(binding));
}

void ScriptReader::read_declare_const(Command& command) {
  Position position;
  Name& name = read_new_name(command.text, position);
  const DataType* sort = sort_reader.read();
  declare(command, name, command.text, position, {}, sort);
}

void ScriptReader::read_declare_fun(Command& command) {
  Position position;
  Name& name = read_new_name(command.text, position);
  std::vector<const DataType*> argument_sorts;
  expect_open("the argument sorts");
  while (lexer.token.kind != TokenKind::Close) argument_sorts.push_back(sort_reader.read());
  lexer.next();
  const DataType* result = sort_reader.read();
  declare(command, name, command.text, position, argument_sorts, result);
}

void ScriptReader::read_declare_sort(Command& command) {
  SortName& name = read_new_sort_name(command.text);
  // SMT-LIB 2.6 requires the arity; scripts omit it.
  if (lexer.token.kind != TokenKind::Close) command.count = read_count("the arity of the sort");
  auto binding = std::make_unique<SortBinding>();
  const std::string stored = scopes.free_sort_name(
      name_from_smtlib(command.text, NameKind::Sort, default_escape_prefix, logic));
  binding->type = manager.get_simple_type(stored, false);
  command.sort = binding->type;
  binding->arity = command.count;
  scopes.bind(name, std::move(binding));
}

// ----- definitions ------------------------------------------------------------------------------

void ScriptReader::read_define_sort(Command& command) {
  SortName& name = read_new_sort_name(command.text);
  std::vector<SortName*> parameters;
  expect_open("the parameters");
  while (lexer.token.kind != TokenKind::Close) {
    require_new_symbol();
    SortName& parameter = scopes.sort_name(lexer.token.text);
    if (parameter.parameter != nullptr) {
      throw ParseError(lexer.token.position,
                       "the parameter " + lexer.token.description() + " appears twice");
    }
    parameter.parameter = sort_reader.placeholder(parameters.size());
    parameters.push_back(&parameter);
    lexer.next();
  }
  lexer.next();
  auto binding = std::make_unique<SortBinding>();
  binding->type = sort_reader.read();
  binding->arity = parameters.size();
  binding->defined = true;
  for (SortName* parameter : parameters) parameter->parameter = nullptr;
  scopes.bind(name, std::move(binding));
}

// Reads the parameter list of a function. The parameters stay bound until the caller unbinds them.
Macro ScriptReader::read_parameters() {
  Macro macro;
  const Token& token = lexer.token;
  const size_t first_local = scopes.num_locals();
  expect_open("the parameters");
  while (token.kind != TokenKind::Close) {
    expect_open("a parameter and its sort");
    require_new_symbol();
    Name& name = scopes.name(token.text);
    if (name.local > first_local) {
      throw ParseError(token.position, "the parameter " + token.description() + " appears twice");
    }
    const std::string stored = term_reader.stored_name(token.text);
    lexer.next();
    const DataType* sort = sort_reader.read();
    if (token.kind != TokenKind::Close) {
      throw ParseError(lexer.end_of_previous(),
                       "a ')' is expected behind a parameter, not " + token.description());
    }
    lexer.next();
    // Gives the name back at once, so that it cannot lead to the placeholder.
    const Symbol* symbol = manager.make_unique_symbol(stored, sorts.held(sort));
    const Term_* placeholder = manager.make_constant(symbol);
    manager.free_symbol(symbol);
    macro.placeholders.push_back(placeholder);
    macro.sorts.push_back(sort);
    scopes.bind_local(name, {placeholder, sort});
  }
  lexer.next();
  return macro;
}

// Reads a body, which must have the sort.
Value ScriptReader::read_body(const DataType* sort) {
  const Position position = lexer.token.position;
  const Value body = term_reader.read();
  if (!builder.fits(body.sort, sort)) {
    throw ParseError(position, "the body has sort " + sort_text(manager, body.sort) + ", but " +
                                   sort_text(manager, sort) + " is declared");
  }
  return {body.term, sort};
}

// The name was free when the command began, but its body may have given the name to a term.
void ScriptReader::require_unbound(const Name& name, const std::string& text, Position position) {
  if (name.global == nullptr) return;
  throw ParseError(position, "the body of " + shown(text) + " gives a term this name");
}

// Keeps a definition whose body gives names to terms.
void ScriptReader::keep_definition(Command& command, const Value& body, Binding& binding) {
  if (term_reader.named_terms.empty()) return;
  const std::string stored = term_reader.stored_name(command.text);
  binding.stored_name = scopes.free_symbol_name(stored, nullptr);
  command.stored_name = binding.stored_name;
  command.terms.push_back({body, term_reader.spelled_name});
}

void ScriptReader::read_define_const(Command& command) {
  Position position;
  Name& name = read_new_name(command.text, position);
  const DataType* sort = sort_reader.read();
  auto binding = std::make_unique<Binding>();
  binding->value = read_body(sort);
  require_unbound(name, command.text, position);
  keep_definition(command, binding->value, *binding);
  scopes.bind(name, std::move(binding));
}

void ScriptReader::read_define_fun(Command& command) {
  Position position;
  Name& name = read_new_name(command.text, position);
  const size_t first_local = scopes.num_locals();
  Macro macro = read_parameters();
  const DataType* sort = sort_reader.read();
  term_reader.forbidden_in_named = macro.placeholders;
  const Expansion before = builder.budget.spent();
  macro.body = read_body(sort);
  const Expansion& after = builder.budget.spent();
  macro.expansion = {after.pairs - before.pairs, after.bits - before.bits};
  term_reader.forbidden_in_named.clear();
  scopes.unbind_locals(first_local);
  require_unbound(name, command.text, position);
  auto binding = std::make_unique<Binding>();
  if (macro.placeholders.empty()) {
    binding->value = macro.body;
    keep_definition(command, macro.body, *binding);
  } else {
    macro.name = command.text;
    binding->kind = Binding::Kind::Macro;
    binding->macro = std::move(macro);
  }
  scopes.bind(name, std::move(binding));
}

}  // namespace quill::smt2
