#include "quill/frontends/smt2/script_reader.h"

#include <charconv>
#include <iterator>
#include <string_view>
#include <utility>

#include "quill/smtlib/commands.h"
#include "quill/smtlib/lexical.h"
#include "quill/utils/scope_guard.h"

namespace quill::smt2 {

ScriptReader::ScriptReader(std::istream& input, TermManager& manager_,
                           const ReadOptions& read_options)
    : manager(manager_),
      lexer(input),
      default_logic(read_options.default_logic.empty() ? Logic()
                                                       : Logic(read_options.default_logic)),
      logic(default_logic),
      scopes(manager_),
      sorts(manager_),
      sort_reader(lexer, manager_, scopes, sorts, logic),
      builder(manager_, scopes, sorts, logic, read_options),
      term_reader(lexer, scopes, sort_reader, builder) {}

Script ScriptReader::read() {
  ScopeGuard forget([this] { forget_declarations(); });
  try {
    read_commands();
  } catch (const ParseError&) {
    throw;
  } catch (const InputError&) {
    throw;
  } catch (const Exception& refusal) {  // thrown by the manager
    throw ParseError(lexer.token.position, refusal.what());
  }
  forget.dismiss();
  return std::move(script);
}

void ScriptReader::forget_declarations() {
  builder.undefined_functions.reset();
  scopes.reset();
}

void ScriptReader::read_commands() {
  for (;;) {
    lexer.next();
    if (lexer.token.kind == TokenKind::End) return;
    add(read_command());
    if (script.commands.back().kind == CommandKind::Exit) return;
  }
}

// Appends the command. Inserts declarations of the new functions for undefined values at the place
// for declarations, which is on level 0.
void ScriptReader::add(Command command) {
  for (UndefinedFunctions::Made& function : builder.undefined_functions.take_new()) {
    Command declaration;
    declaration.kind = CommandKind::DeclareFun;
    declaration.symbol = function.symbol;
    declaration.undefined_name = std::move(function.name);
    const auto place = script.commands.begin() + static_cast<ptrdiff_t>(declarations_place);
    script.commands.insert(place, std::move(declaration));
    ++declarations_place;
  }
  const bool moves_place = moves_declarations_place(command.kind);
  script.commands.push_back(std::move(command));
  if (!moves_place) return;
  declarations_place = script.commands.size();
  declared_for_good = scopes.declarations_are_global();
}

// Whether declarations cannot be inserted before a command that is appended now. A logic is set
// before anything is declared, and so are options while nothing but settings and messages has come.
bool ScriptReader::moves_declarations_place(CommandKind kind) const {
  switch (kind) {
    case CommandKind::Reset:
    case CommandKind::SetLogic:
      return true;
    case CommandKind::ResetAssertions:
      return !declarations_outlive_reset();
    case CommandKind::Echo:
    case CommandKind::GetInfo:
    case CommandKind::GetOption:
    case CommandKind::SetInfo:
    case CommandKind::SetOption:
      return declarations_place == script.commands.size();
    default:
      return false;
  }
}

Command ScriptReader::read_command() {
  const Token& token = lexer.token;
  if (token.kind == TokenKind::Close) throw ParseError(token.position, "a ')' too many");
  lexer.expect(TokenKind::Open, "a command is");
  term_reader.opened = token.position;
  lexer.next();
  const CommandRow& row = find_row();
  command_name = row.name;
  Command command;
  command.kind = row.kind;
  lexer.next();
  read_arguments(command, row.shape);
  command.has_bool_arrays = sorts.take_bool_arrays();
  command.has_abs_of_reals = builder.has_abs_of_reals;
  for (ScriptTerm& term : command.terms) term.value.sort = sorts.held(term.value.sort);
  expect_end_of_command();
  take_names(command);
  return command;
}

void ScriptReader::take_names(Command& command) {
  command.named_terms = std::exchange(term_reader.named_terms, {});
  for (NamedTerm& named : command.named_terms) named.sort = sorts.held(named.sort);
}

// Readers take the last name given in an assertion for a label of the formula, if it names the
// whole formula.
void ScriptReader::unmark_inner_names(const Term_* whole) {
  std::vector<NamedTerm>& names = term_reader.named_terms;
  size_t first = names.size();
  while (first > term_reader.first_name_of_whole && names[first - 1].term == whole) --first;
  for (size_t i = 0; i < first; ++i) names[i].is_label = false;
}

const CommandRow& ScriptReader::find_row() const {
  const Token& token = lexer.token;
  lexer.expect(TokenKind::Symbol, "the name of a command is");
  const CommandRow* row = token.quoted ? nullptr : find_command(token.text);
  if (row != nullptr) {
    if (row->shape == CommandShape::Unsupported) {
      throw ParseError(token.position, "unsupported: the command " + token.description());
    }
    return *row;
  }
  if (!token.quoted && is_foreign_command(token.text)) {
    throw ParseError(token.position, "unsupported: the command " + token.description() +
                                         ", which is not of the standard");
  }
  throw ParseError(token.position, "unknown command " + token.description());
}

// ----- pieces of commands -----------------------------------------------------------------------

void ScriptReader::require_more() const {
  if (lexer.token.kind != TokenKind::End) return;
  lexer.reject_end_of_input("inside '" + command_name + "'");
}

void ScriptReader::expect_open(const char* what) {
  require_more();
  if (lexer.token.kind != TokenKind::Open) lexer.reject_token(std::string(what) + " are");
  lexer.next();
}

void ScriptReader::expect_end_of_command() {
  const Token& token = lexer.token;
  if (token.kind == TokenKind::Close) return;
  require_more();
  throw ParseError(lexer.end_of_previous(), "a ')' is expected here to close '" + command_name +
                                                "', not " + token.description());
}

// The current token must be a symbol and not a reserved word.
void ScriptReader::require_new_symbol() const {
  const Token& token = lexer.token;
  require_more();
  if (token.kind != TokenKind::Symbol || token.is_reserved_word()) {
    lexer.reject_token("a symbol is");
  }
}

uint64_t ScriptReader::read_count(const char* what) {
  const Token& token = lexer.token;
  if (token.kind != TokenKind::Numeral) {
    lexer.reject_token(std::string(what) + " is");
  }
  uint64_t count = 0;
  const char* end = token.text.data() + token.text.size();
  if (std::from_chars(token.text.data(), end, count).ec != std::errc()) {
    throw ParseError(token.position, std::string(what) + " is too large: " + token.description());
  }
  lexer.next();
  return count;
}

// Reads an s-expression as text, with single spaces between its parts.
std::string ScriptReader::read_s_expression() {
  std::string text;
  uint64_t depth = 0;
  do {
    const Token& token = lexer.token;
    require_more();
    if (token.kind == TokenKind::Close) {
      --depth;
    } else if (!text.empty() && text.back() != '(') {
      text += ' ';
    }
    if (token.kind == TokenKind::Open) ++depth;
    text += token.spelling();
    lexer.next();
  } while (depth != 0);
  return text;
}

}  // namespace quill::smt2
