// How a term reader handles names given to terms: by let, and by :named in annotations.

#include <memory>
#include <utility>

#include "quill/frontends/smt2/term_reader.h"
#include "quill/frontends/smt2/term_search.h"
#include "quill/smtlib/lexical.h"

namespace quill::smt2 {

// ----- let --------------------------------------------------------------------------------------

void TermReader::open_let(Position position) {
  lexer.next();
  lexer.expect(TokenKind::Open, "the bindings of 'let' are");
  lexer.next();
  frames.push_back({FrameKind::Bindings, position, values.size(), variables.size(), {}, nullptr});
  open_binding();
}

// Reads the parenthesis and the variable of a binding; the binding's term is next.
void TermReader::open_binding() {
  const Token& token = lexer.token;
  lexer.require_more("inside a term");
  if (token.kind == TokenKind::Close) {
    throw ParseError(token.position, "'let' without a binding");
  }
  lexer.expect(TokenKind::Open, "a binding of 'let' is");
  lexer.next();
  Name* name = token.kind == TokenKind::Symbol ? &scopes.name(token.text) : nullptr;
  if (name == nullptr || is_word(token, *name)) {
    lexer.reject_token("a variable is");
  }
  variables.push_back(name);
  lexer.next();
}

// Called after all bindings have been read; makes all their variables visible at once.
void TermReader::close_bindings(Frame& frame) {
  const size_t first_local = scopes.num_locals();
  const size_t count = values.size() - frame.first_value;
  for (size_t i = 0; i < count; ++i) {
    Name& variable = *variables[frame.first_extra + i];
    if (variable.local > first_local) {
      throw ParseError(frame.position, "'let' binds the same variable twice");
    }
    scopes.bind_local(variable, values[frame.first_value + i]);
  }
  values.resize(frame.first_value);
  variables.resize(frame.first_extra);
  frame.kind = FrameKind::Body;
  frame.first_extra = first_local;
}

// ----- annotations ------------------------------------------------------------------------------

// Reads the attributes after an annotated term, up to the closing parenthesis.
void TermReader::finish_annotation(Position position) {
  const Token& token = lexer.token;
  if (token.kind == TokenKind::Close) throw ParseError(position, "'!' without an attribute");
  while (token.kind == TokenKind::Keyword) {
    const bool named = token.text == "named";
    lexer.next();
    if (named) {
      name_term(values.back());
      lexer.next();
    } else {
      skip_attribute_value();
    }
  }
  expect_close("'!'");
}

void TermReader::name_term(const Value& value) {
  const Token& token = lexer.token;
  if (token.kind != TokenKind::Symbol || token.is_reserved_word()) {
    throw ParseError(token.position,
                     "a symbol is expected behind :named, not " + token.description());
  }
  Name& name = scopes.name(token.text);
  if (is_reserved(name)) {
    throw ParseError(token.position, token.description() + " is an operator of " +
                                         describe(name.theory->theory) + " and cannot name a term");
  }
  if (name.global != nullptr) {
    throw ParseError(token.position, "the name " + token.description() + " is already in use");
  }
  if (!forbidden_in_named.empty()) {
    ReachableTerms reachable;
    reachable.add_root(value.term);
    for (const Term_* forbidden : forbidden_in_named) {
      if (!reachable.contains(forbidden)) continue;
      throw ParseError(token.position, "the term named " + token.description() +
                                           " mentions parameters of the definition around it");
    }
  }
  auto binding = std::make_unique<Binding>();
  binding->kind = Binding::Kind::Term;
  binding->stored_name = scopes.free_symbol_name(stored_name(token.text), nullptr);
  binding->value = value;
  named_terms.push_back({std::string(token.text), binding->stored_name, value.term, value.sort});
  scopes.bind(name, std::move(binding));
}

// An attribute has a value unless another attribute or the end follows.
void TermReader::skip_attribute_value() {
  uint64_t depth = 0;
  for (;;) {
    switch (lexer.token.kind) {
      case TokenKind::End:
        lexer.reject_end_of_input("inside a term");
      case TokenKind::Open:
        ++depth;
        break;
      case TokenKind::Close:
        if (depth == 0) return;
        --depth;
        break;
      case TokenKind::Keyword:
        if (depth == 0) return;
        break;
      default:
        break;
    }
    lexer.next();
    if (depth == 0) return;
  }
}

}  // namespace quill::smt2
