#include "frontends/smt2/script_reader.h"

#include <algorithm>
#include <charconv>
#include <iterator>
#include <memory>
#include <string_view>
#include <utility>

#include "frontends/smt2/reserved_words.h"
#include "frontends/smt2/sort_text.h"
#include "frontends/smt2/term_search.h"
#include "quill/printers/name_escape.h"

namespace quill::smt2 {

// clang-format off
constexpr ScriptReader::CommandRow ScriptReader::rows[] = {
    {"assert",                CommandKind::ASSERT,                &ScriptReader::read_assert},
    {"check-sat",             CommandKind::CHECK_SAT,             &ScriptReader::read_nothing},
    {"check-sat-assuming",    CommandKind::CHECK_SAT_ASSUMING,    &ScriptReader::read_check_sat_assuming},
    {"declare-const",         CommandKind::DECLARE_CONST,         &ScriptReader::read_declare_const},
    {"declare-datatype",      CommandKind::DECLARE_SORT,          nullptr},
    {"declare-datatypes",     CommandKind::DECLARE_SORT,          nullptr},
    {"declare-fun",           CommandKind::DECLARE_FUN,           &ScriptReader::read_declare_fun},
    {"declare-sort",          CommandKind::DECLARE_SORT,          &ScriptReader::read_declare_sort},
    {"define-const",          CommandKind::DEFINE_CONST,          &ScriptReader::read_define_const},
    {"define-fun",            CommandKind::DEFINE_FUN,            &ScriptReader::read_define_fun},
    {"define-fun-rec",        CommandKind::DEFINE_FUN,            nullptr},
    {"define-funs-rec",       CommandKind::DEFINE_FUN,            nullptr},
    {"define-sort",           CommandKind::DEFINE_SORT,           &ScriptReader::read_define_sort},
    {"echo",                  CommandKind::ECHO,                  &ScriptReader::read_echo},
    {"exit",                  CommandKind::EXIT,                  &ScriptReader::read_nothing},
    {"get-assertions",        CommandKind::GET_ASSERTIONS,        &ScriptReader::read_nothing},
    {"get-assignment",        CommandKind::GET_ASSIGNMENT,        &ScriptReader::read_nothing},
    {"get-info",              CommandKind::GET_INFO,              &ScriptReader::read_keyword},
    {"get-model",             CommandKind::GET_MODEL,             &ScriptReader::read_nothing},
    {"get-option",            CommandKind::GET_OPTION,            &ScriptReader::read_keyword},
    {"get-proof",             CommandKind::GET_PROOF,             &ScriptReader::read_nothing},
    {"get-unsat-assumptions", CommandKind::GET_UNSAT_ASSUMPTIONS, &ScriptReader::read_nothing},
    {"get-unsat-core",        CommandKind::GET_UNSAT_CORE,        &ScriptReader::read_nothing},
    {"get-value",             CommandKind::GET_VALUE,             &ScriptReader::read_get_value},
    {"pop",                   CommandKind::POP,                   &ScriptReader::read_pop},
    {"push",                  CommandKind::PUSH,                  &ScriptReader::read_push},
    {"reset",                 CommandKind::RESET,                 &ScriptReader::read_reset},
    {"reset-assertions",      CommandKind::RESET_ASSERTIONS,      &ScriptReader::read_reset_assertions},
    {"set-info",              CommandKind::SET_INFO,              &ScriptReader::read_set_info},
    {"set-logic",             CommandKind::SET_LOGIC,             &ScriptReader::read_set_logic},
    {"set-option",            CommandKind::SET_OPTION,            &ScriptReader::read_set_option},
};
// clang-format on

ScriptReader::ScriptReader(std::istream& input, TermManager& term_manager,
                           const ReadOptions& read_options)
    : manager(term_manager),
      lexer(input),
      default_logic(read_options.default_logic.empty() ? Logic()
                                                       : Logic(read_options.default_logic)),
      logic(default_logic),
      scopes(term_manager),
      sort_reader(lexer, term_manager, scopes, logic),
      builder(term_manager, logic),
      term_reader(lexer, scopes, sort_reader, builder) {}

Script ScriptReader::read() {
  try {
    read_commands();
  } catch (const ParseError&) {
    scopes.reset();
    throw;
  } catch (const InputError&) {
    scopes.reset();
    throw;
  } catch (const Exception& refusal) {  // of the manager
    scopes.reset();
    throw ParseError(lexer.token.position, refusal.what());
  } catch (...) {
    scopes.reset();
    throw;
  }
  return std::move(script);
}

void ScriptReader::read_commands() {
  for (;;) {
    lexer.next();
    if (lexer.token.kind == TokenKind::END) return;
    script.commands.push_back(read_command());
    if (script.commands.back().kind == CommandKind::EXIT) return;
  }
}

Command ScriptReader::read_command() {
  const Token& token = lexer.token;
  if (token.kind == TokenKind::CLOSE) throw ParseError(token.position, "a ')' too many");
  if (token.kind != TokenKind::OPEN) {
    throw ParseError(token.position, "a command is expected, not " + token.description());
  }
  lexer.next();
  const CommandRow& row = find_row(token);
  command_name = row.name;
  Command command;
  command.kind = row.kind;
  lexer.next();
  (this->*row.read)(command);
  expect_end_of_command();
  const size_t first_own = unplaced_names.size();
  unplaced_names.insert(unplaced_names.end(), term_reader.named_terms.begin(),
                        term_reader.named_terms.end());
  term_reader.named_terms.clear();
  place_names(command, first_own);
  return command;
}

// Moves names to the command whose terms they are part of. Only an assertion takes names from
// elsewhere, because only there they change nothing but what can be asked about it.
void ScriptReader::place_names(Command& command, size_t first_own) {
  const size_t first = command.kind == CommandKind::ASSERT ? 0 : first_own;
  if (command.terms.empty() || first == unplaced_names.size()) return;
  ReachableTerms reachable;
  for (const ScriptTerm& term : command.terms) reachable.add_root(term.value.term);
  const auto begin = unplaced_names.begin() + static_cast<std::ptrdiff_t>(first);
  const auto rest = std::stable_partition(begin, unplaced_names.end(), [&](const NamedTerm& named) {
    return !reachable.contains(named.term);
  });
  command.named_terms.assign(std::make_move_iterator(rest),
                             std::make_move_iterator(unplaced_names.end()));
  unplaced_names.erase(rest, unplaced_names.end());
}

// Behind the end of a scope: names that it ended are not to be placed any more.
void ScriptReader::forget_unbound_names() {
  std::erase_if(unplaced_names,
                [&](const NamedTerm& named) { return scopes.name(named.name).global == nullptr; });
}

const ScriptReader::CommandRow& ScriptReader::find_row(const Token& token) {
  static_assert(
      [] {
        for (size_t i = 1; i < std::size(rows); ++i) {
          if (std::string_view(rows[i - 1].name) >= rows[i].name) return false;
        }
        return true;
      }(),
      "the rows ascend by name");
  if (token.kind != TokenKind::SYMBOL) {
    throw ParseError(token.position,
                     "the name of a command is expected, not " + token.description());
  }
  for (const CommandRow& row : rows) {
    if (!token.is_word(row.name)) continue;
    if (row.read == nullptr) {
      throw ParseError(token.position, "unsupported: the command " + token.description());
    }
    return row;
  }
  throw ParseError(token.position, "unknown command " + token.description());
}

// ----- pieces of commands -----------------------------------------------------------------------

void ScriptReader::expect_open(const char* what) {
  const Token& token = lexer.token;
  if (token.kind == TokenKind::END) {
    throw ParseError(lexer.end_of_previous(), "the input ends inside '" + command_name + "'");
  }
  if (token.kind != TokenKind::OPEN) {
    throw ParseError(token.position,
                     std::string(what) + " are expected, not " + token.description());
  }
  lexer.next();
}

void ScriptReader::expect_end_of_command() {
  const Token& token = lexer.token;
  if (token.kind == TokenKind::CLOSE) return;
  if (token.kind == TokenKind::END) {
    throw ParseError(lexer.end_of_previous(), "the input ends inside '" + command_name + "'");
  }
  throw ParseError(lexer.end_of_previous(), "a ')' is expected here to close '" + command_name +
                                                "', not " + token.description());
}

// The current token must be a symbol.
void ScriptReader::require_new_symbol() const {
  const Token& token = lexer.token;
  if (token.kind == TokenKind::END) {
    throw ParseError(lexer.end_of_previous(), "the input ends inside '" + command_name + "'");
  }
  if (token.kind != TokenKind::SYMBOL || is_reserved_word(token)) {
    throw ParseError(token.position, "a symbol is expected, not " + token.description());
  }
}

Name& ScriptReader::read_new_name(std::string& text, Position& position) {
  require_new_symbol();
  const Token& token = lexer.token;
  Name& name = scopes.name(token.text);
  if (term_reader.is_reserved(name)) {
    throw ParseError(token.position, token.description() + " is an operator of " +
                                         describe(name.theory_operator->theory) +
                                         " and cannot be declared");
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

uint64_t ScriptReader::read_count(const char* what) {
  const Token& token = lexer.token;
  if (token.kind != TokenKind::NUMERAL) {
    throw ParseError(token.position,
                     std::string(what) + " is expected, not " + token.description());
  }
  uint64_t count = 0;
  const char* end = token.text.data() + token.text.size();
  if (std::from_chars(token.text.data(), end, count).ec != std::errc()) {
    throw ParseError(token.position, std::string(what) + " is too large: " + token.description());
  }
  lexer.next();
  return count;
}

// An s-expression as text, with single spaces between its parts.
std::string ScriptReader::read_s_expression() {
  std::string text;
  uint64_t depth = 0;
  do {
    const Token& token = lexer.token;
    if (token.kind == TokenKind::END) {
      throw ParseError(lexer.end_of_previous(), "the input ends inside '" + command_name + "'");
    }
    if (token.kind == TokenKind::CLOSE) {
      --depth;
    } else if (!text.empty() && text.back() != '(') {
      text += ' ';
    }
    if (token.kind == TokenKind::OPEN) ++depth;
    text += token.spelling();
    lexer.next();
  } while (depth != 0);
  return text;
}

bool ScriptReader::is_unplaced(const std::string& name) const {
  return std::any_of(unplaced_names.begin(), unplaced_names.end(),
                     [&](const NamedTerm& named) { return named.name == name; });
}

ScriptTerm ScriptReader::read_script_term() {
  ScriptTerm term;
  if (term_reader.at_named_term() && !is_unplaced(lexer.token.text)) {
    term.spelled_name = lexer.token.text;
  }
  term.value = term_reader.read();
  return term;
}

std::vector<ScriptTerm> ScriptReader::read_script_terms(const char* what) {
  std::vector<ScriptTerm> terms;
  expect_open(what);
  while (lexer.token.kind != TokenKind::CLOSE) terms.push_back(read_script_term());
  lexer.next();
  return terms;
}

// ----- declarations -----------------------------------------------------------------------------

void ScriptReader::declare(Command& command, Name& name, const std::string& text, Position position,
                           const std::vector<const DataType*>& argument_sorts,
                           const DataType* result) {
  const DataType* type =
      argument_sorts.empty() ? result : manager.get_function_type(argument_sorts, result);
  const std::string stored = name_from_smtlib(text, NameKind::Symbol);
  const Symbol* present = manager.get_signature()->get_symbol(stored.c_str());
  if (present != nullptr && present->type != type) {
    throw ParseError(position, "the manager has a symbol " + shown(text) + " of another sort");
  }
  auto binding = std::make_unique<Binding>();
  binding->kind = Binding::Kind::FUNCTION;
  binding->symbol = manager.make_symbol(stored, type);
  binding->owned = present == nullptr;
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
  while (lexer.token.kind != TokenKind::CLOSE) argument_sorts.push_back(sort_reader.read());
  lexer.next();
  const DataType* result = sort_reader.read();
  declare(command, name, command.text, position, argument_sorts, result);
}

void ScriptReader::read_declare_sort(Command& command) {
  SortName& name = read_new_sort_name(command.text);
  // SMT-LIB 2.6 asks for the arity; scripts leave it out.
  if (lexer.token.kind != TokenKind::CLOSE) command.count = read_count("the arity of the sort");
  auto binding = std::make_unique<SortBinding>();
  binding->type = manager.get_simple_type(name_from_smtlib(command.text, NameKind::Sort), false);
  binding->arity = command.count;
  scopes.bind(name, std::move(binding));
}

// ----- definitions ------------------------------------------------------------------------------

void ScriptReader::read_define_sort(Command& command) {
  SortName& name = read_new_sort_name(command.text);
  std::vector<SortName*> parameters;
  expect_open("the parameters");
  while (lexer.token.kind != TokenKind::CLOSE) {
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

// The parameter list of a function. The parameters stay bound until the caller unbinds them.
Macro ScriptReader::read_parameters() {
  Macro macro;
  const Token& token = lexer.token;
  const size_t first_local = scopes.num_locals();
  expect_open("the parameters");
  while (token.kind != TokenKind::CLOSE) {
    expect_open("a parameter and its sort");
    require_new_symbol();
    Name& name = scopes.name(token.text);
    if (name.local > first_local) {
      throw ParseError(token.position, "the parameter " + token.description() + " appears twice");
    }
    const std::string stored = name_from_smtlib(token.text, NameKind::Symbol);
    lexer.next();
    const DataType* sort = sort_reader.read();
    if (token.kind != TokenKind::CLOSE) {
      throw ParseError(lexer.end_of_previous(),
                       "a ')' is expected behind a parameter, not " + token.description());
    }
    lexer.next();
    // The name goes back at once, so that nothing can reach the placeholder by it.
    const Symbol* symbol = manager.make_unique_symbol(stored, sort);
    const Term_* placeholder = manager.make_constant(symbol);
    manager.free_symbol(symbol);
    macro.placeholders.push_back(placeholder);
    macro.sorts.push_back(sort);
    scopes.bind_local(name, {placeholder, sort});
  }
  lexer.next();
  return macro;
}

// A body that must have the sort.
Value ScriptReader::read_body(const DataType* sort) {
  const Position position = lexer.token.position;
  const Value body = term_reader.read();
  if (!builder.fits(body.sort, sort)) {
    throw ParseError(position, "the body has sort " + sort_text(manager, body.sort) + ", but " +
                                   sort_text(manager, sort) + " is declared");
  }
  return {body.term, sort};
}

void ScriptReader::read_define_const(Command& command) {
  Position position;
  Name& name = read_new_name(command.text, position);
  const DataType* sort = sort_reader.read();
  auto binding = std::make_unique<Binding>();
  binding->value = read_body(sort);
  scopes.bind(name, std::move(binding));
}

void ScriptReader::read_define_fun(Command& command) {
  Position position;
  Name& name = read_new_name(command.text, position);
  const size_t first_local = scopes.num_locals();
  Macro macro = read_parameters();
  const DataType* sort = sort_reader.read();
  term_reader.forbidden_in_named = macro.placeholders;
  macro.body = read_body(sort);
  term_reader.forbidden_in_named.clear();
  scopes.unbind_locals(first_local);
  if (name.global != nullptr) {
    throw ParseError(position, "the body of " + shown(command.text) + " gives a term this name");
  }
  auto binding = std::make_unique<Binding>();
  if (macro.placeholders.empty()) {
    binding->value = macro.body;
  } else {
    macro.name = command.text;
    binding->kind = Binding::Kind::MACRO;
    binding->macro = std::move(macro);
  }
  scopes.bind(name, std::move(binding));
}

// ----- the other commands -----------------------------------------------------------------------

void ScriptReader::read_nothing(Command&) {}

void ScriptReader::read_assert(Command& command) {
  content_seen = true;
  const Position position = lexer.token.position;
  command.terms.push_back(read_script_term());
  const DataType* sort = command.terms.back().value.sort;
  if (sort != builder.bool_type) {
    throw ParseError(position,
                     "the asserted term has sort " + sort_text(manager, sort) + ", not Bool");
  }
}

void ScriptReader::read_check_sat_assuming(Command& command) {
  const Position position = lexer.token.position;
  command.terms = read_script_terms("the assumptions");
  for (const ScriptTerm& term : command.terms) {
    if (term.value.sort != builder.bool_type) {
      throw ParseError(
          position, "an assumption has sort " + sort_text(manager, term.value.sort) + ", not Bool");
    }
  }
}

void ScriptReader::read_get_value(Command& command) {
  const Position position = lexer.token.position;
  command.terms = read_script_terms("the terms");
  if (command.terms.empty()) throw ParseError(position, "'get-value' without a term");
}

void ScriptReader::read_echo(Command& command) {
  const Token& token = lexer.token;
  if (token.kind != TokenKind::STRING) {
    throw ParseError(token.position, "a string is expected, not " + token.description());
  }
  command.text = token.spelling();
  lexer.next();
}

void ScriptReader::read_keyword(Command& command) {
  const Token& token = lexer.token;
  if (token.kind != TokenKind::KEYWORD) {
    throw ParseError(token.position, "a keyword is expected, not " + token.description());
  }
  command.text = token.spelling();
  lexer.next();
}

void ScriptReader::read_set_info(Command& command) {
  read_keyword(command);
  if (lexer.token.kind == TokenKind::CLOSE) return;
  command.text += " " + read_s_expression();
}

void ScriptReader::read_set_option(Command& command) {
  read_set_info(command);
  if (command.text == ":global-declarations true") scopes.set_global_declarations(true);
  if (command.text == ":global-declarations false") scopes.set_global_declarations(false);
}

void ScriptReader::read_set_logic(Command& command) {
  const Token& token = lexer.token;
  if (token.kind != TokenKind::SYMBOL) {
    throw ParseError(token.position, "the name of a logic is expected, not " + token.description());
  }
  if (logic_is_set) throw ParseError(token.position, "the logic is already " + logic.name());
  if (content_seen) {
    throw ParseError(token.position, "'set-logic' behind declarations or assertions");
  }
  command.text = token.text;
  logic = Logic(token.text);
  logic_is_set = true;
  script.logic = token.text;
  lexer.next();
}

void ScriptReader::read_push(Command& command) {
  const Position position = lexer.token.position;
  // SMT-LIB 2.6 asks for the number; scripts leave it out.
  command.count = lexer.token.kind == TokenKind::CLOSE ? 1 : read_count("the number of levels");
  if (command.count > ~uint64_t{0} - scopes.depth()) {
    throw ParseError(position, "the number of levels is too large");
  }
  scopes.push(command.count);
}

void ScriptReader::read_pop(Command& command) {
  const Position position = lexer.token.position;
  command.count = lexer.token.kind == TokenKind::CLOSE ? 1 : read_count("the number of levels");
  if (command.count > scopes.depth()) {
    throw ParseError(position, "'pop' of " + std::to_string(command.count) + " levels, but " +
                                   std::to_string(scopes.depth()) + " are open");
  }
  scopes.pop(command.count);
  forget_unbound_names();
}

void ScriptReader::read_reset(Command&) {
  scopes.reset();
  forget_unbound_names();
  logic = default_logic;
  logic_is_set = false;
  content_seen = false;
}

void ScriptReader::read_reset_assertions(Command&) {
  scopes.reset_assertions();
  forget_unbound_names();
}

}  // namespace quill::smt2
