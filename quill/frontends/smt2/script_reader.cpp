#include "quill/frontends/smt2/script_reader.h"

#include <charconv>
#include <iterator>
#include <string_view>
#include <utility>

#include "quill/frontends/smt2/command_names.h"
#include "quill/frontends/smt2/reserved_words.h"
#include "quill/utils/scope_guard.h"

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
      sorts(term_manager),
      sort_reader(lexer, term_manager, scopes, sorts, logic),
      builder(term_manager, scopes, sorts, logic, read_options),
      term_reader(lexer, scopes, sort_reader, builder) {}

Script ScriptReader::read() {
  ScopeGuard forget([this] { forget_declarations(); });
  try {
    read_commands();
  } catch (const ParseError&) {
    throw;
  } catch (const InputError&) {
    throw;
  } catch (const Exception& refusal) {  // of the manager
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
    if (lexer.token.kind == TokenKind::END) return;
    add(read_command());
    if (script.commands.back().kind == CommandKind::EXIT) return;
  }
}

// Appends the command, and puts declarations of the functions that stand for undefined values to
// the place for declarations, which is on level 0.
void ScriptReader::add(Command command) {
  for (UndefinedFunctions::Made& function : builder.undefined_functions.take_new()) {
    Command declaration;
    declaration.kind = CommandKind::DECLARE_FUN;
    declaration.symbol = function.symbol;
    declaration.undefined_name = std::move(function.name);
    const auto place = script.commands.begin() + static_cast<std::ptrdiff_t>(declarations_place);
    script.commands.insert(place, std::move(declaration));
    ++declarations_place;
  }
  const bool moves_place = moves_declarations_place(command.kind);
  script.commands.push_back(std::move(command));
  if (!moves_place) return;
  declarations_place = script.commands.size();
  declared_for_good = scopes.declarations_are_global();
}

// Whether declarations cannot be put before a command that is appended now. A logic is set before
// everything is declared, and so are options as long as nothing but settings and messages has come.
bool ScriptReader::moves_declarations_place(CommandKind kind) const {
  switch (kind) {
    case CommandKind::RESET:
    case CommandKind::SET_LOGIC:
      return true;
    case CommandKind::RESET_ASSERTIONS:
      return !declarations_outlive_reset();
    case CommandKind::ECHO:
    case CommandKind::GET_INFO:
    case CommandKind::GET_OPTION:
    case CommandKind::SET_INFO:
    case CommandKind::SET_OPTION:
      return declarations_place == script.commands.size();
    default:
      return false;
  }
}

Command ScriptReader::read_command() {
  const Token& token = lexer.token;
  if (token.kind == TokenKind::CLOSE) throw ParseError(token.position, "a ')' too many");
  if (token.kind != TokenKind::OPEN) {
    throw ParseError(token.position, "a command is expected, not " + token.description());
  }
  term_reader.opened = token.position;
  lexer.next();
  const CommandRow& row = find_row(token);
  command_name = row.name;
  Command command;
  command.kind = row.kind;
  lexer.next();
  (this->*row.read)(command);
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

// Readers take the last name that was given in an assertion for a label of the formula, if it was
// given to the whole of it.
void ScriptReader::unmark_inner_names(const Term_* whole) {
  std::vector<NamedTerm>& names = term_reader.named_terms;
  size_t first = names.size();
  while (first > term_reader.first_name_of_whole && names[first - 1].term == whole) --first;
  for (size_t i = 0; i < first; ++i) names[i].is_label = false;
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
  if (!token.quoted && is_foreign_command(token.text)) {
    throw ParseError(token.position, "unsupported: the command " + token.description() +
                                         ", which is not of the standard");
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

}  // namespace quill::smt2
