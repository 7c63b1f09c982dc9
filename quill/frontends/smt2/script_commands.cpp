// How a script reader handles commands that neither declare nor define names.

#include <string>
#include <vector>

#include "quill/frontends/smt2/script_reader.h"
#include "quill/frontends/smt2/sort_text.h"

namespace quill::smt2 {

ScriptTerm ScriptReader::read_script_term() {
  ScriptTerm term;
  term.value = term_reader.read();
  if (!term_reader.is_annotated()) term.spelled_name = term_reader.spelled_name;
  return term;
}

std::vector<ScriptTerm> ScriptReader::read_script_terms(const char* what) {
  std::vector<ScriptTerm> terms;
  term_reader.opened = lexer.token.position;
  expect_open(what);
  while (lexer.token.kind != TokenKind::Close) {
    terms.push_back(read_script_term());
    terms_seen = true;
  }
  lexer.next();
  return terms;
}

void ScriptReader::read_arguments(Command& command, CommandShape shape) {
  switch (shape) {
    case CommandShape::Nothing:
      if (command.kind == CommandKind::Reset) reset();
      if (command.kind == CommandKind::ResetAssertions) reset_assertions();
      return;
    case CommandShape::Term:
      return read_assert(command);
    case CommandShape::Terms:
      return command.kind == CommandKind::GetValue ? read_get_value(command)
                                                   : read_check_sat_assuming(command);
    case CommandShape::Levels:
      return read_levels(command);
    case CommandShape::String:
      return read_echo(command);
    case CommandShape::Keyword:
      return read_keyword(command);
    case CommandShape::KeywordAndValue:
      return read_keyword_and_value(command);
    case CommandShape::LogicName:
      return read_set_logic(command);
    case CommandShape::ConstDeclaration:
      return read_declare_const(command);
    case CommandShape::FunDeclaration:
      return read_declare_fun(command);
    case CommandShape::SortDeclaration:
      return read_declare_sort(command);
    case CommandShape::ConstDefinition:
      return read_define_const(command);
    case CommandShape::FunDefinition:
      return read_define_fun(command);
    case CommandShape::SortDefinition:
      return read_define_sort(command);
    case CommandShape::Unsupported:
      return;
  }
}

void ScriptReader::read_assert(Command& command) {
  content_seen = true;
  const Position position = lexer.token.position;
  command.terms.push_back({term_reader.read(), term_reader.spelled_name});
  unmark_inner_names(command.terms.back().value.term);
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
  lexer.expect(TokenKind::String, "a string is");
  command.text = token.spelling();
  lexer.next();
}

void ScriptReader::read_keyword(Command& command) {
  const Token& token = lexer.token;
  lexer.expect(TokenKind::Keyword, "a keyword is");
  command.text = token.spelling();
  lexer.next();
}

void ScriptReader::read_keyword_and_value(Command& command) {
  read_keyword(command);
  if (lexer.token.kind != TokenKind::Close) command.text += " " + read_s_expression();
  if (command.kind != CommandKind::SetOption) return;
  if (command.text == ":global-declarations true") scopes.set_global_declarations(true);
  if (command.text == ":global-declarations false") scopes.set_global_declarations(false);
}

void ScriptReader::read_set_logic(Command& command) {
  const Token& token = lexer.token;
  lexer.expect(TokenKind::Symbol, "the name of a logic is");
  if (logic_is_set) throw ParseError(token.position, "the logic is already " + logic.name());
  if (content_seen) {
    throw ParseError(token.position, "'set-logic' behind declarations or assertions");
  }
  // Declarations that terms and scopes need come after the logic and before terms and scopes.
  if (terms_seen) throw ParseError(token.position, "'set-logic' behind a command with terms");
  if (scopes.depth() != 0) throw ParseError(token.position, "'set-logic' inside of a 'push'");
  command.text = token.text;
  logic = Logic(token.text);
  logic_is_set = true;
  script.logic = token.text;
  lexer.next();
}

void ScriptReader::read_levels(Command& command) {
  const Position position = lexer.token.position;
  // SMT-LIB 2.6 requires the number; scripts omit it.
  command.count = lexer.token.kind == TokenKind::Close ? 1 : read_count("the number of levels");
  if (command.kind == CommandKind::Push) {
    if (command.count > ~uint64_t{0} - scopes.depth()) {
      throw ParseError(position, "the number of levels is too large");
    }
    scopes.push(command.count);
  } else {
    if (command.count > scopes.depth()) {
      throw ParseError(position, "'pop' of " + std::to_string(command.count) + " levels, but " +
                                     std::to_string(scopes.depth()) + " are open");
    }
    scopes.pop(command.count);
  }
}

void ScriptReader::reset() {
  forget_declarations();
  logic = default_logic;
  logic_is_set = false;
  content_seen = false;
  terms_seen = false;
}

void ScriptReader::reset_assertions() {
  const bool begins_stretch = !declarations_outlive_reset();
  if (begins_stretch) builder.undefined_functions.reset();
  scopes.reset_assertions();
  if (begins_stretch) scopes.begin_stretch();
}

}  // namespace quill::smt2
