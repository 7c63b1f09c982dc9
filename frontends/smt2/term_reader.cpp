#include "frontends/smt2/term_reader.h"

#include <string_view>
#include <utility>

#include "frontends/smt2/reserved_words.h"
#include "frontends/smt2/sort_text.h"
#include "frontends/smt2/term_search.h"
#include "quill/printers/name_escape.h"

namespace quill::smt2 {

namespace {

bool is_quantifier(const Token& token) {
  return token.is_word("forall") || token.is_word("exists") || token.is_word("lambda");
}

std::string arguments(size_t count) {
  return std::to_string(count) + (count == 1 ? " argument" : " arguments");
}

}  // namespace

TermReader::TermReader(Lexer& token_source, Scopes& all_scopes, SortReader& sorts,
                       TermBuilder& terms)
    : lexer(token_source),
      scopes(all_scopes),
      sort_reader(sorts),
      builder(terms),
      manager(terms.manager) {
  for (const Operator& op : operators()) scopes.name(op.name).theory_operator = &op;
}

bool TermReader::at_named_term() const {
  if (lexer.token.kind != TokenKind::SYMBOL) return false;
  const Name& name = scopes.name(lexer.token.text);
  return name.local == 0 && name.global != nullptr && name.global->from_annotation;
}

Value TermReader::read() {
  // A failed read may have left something behind.
  frames.clear();
  values.clear();
  indices.clear();
  variables.clear();
  do {
    if (lexer.token.kind == TokenKind::OPEN) {
      open();
    } else if (lexer.token.kind == TokenKind::CLOSE && !frames.empty() &&
               frames.back().kind <= FrameKind::MACRO) {
      close_application();
    } else {
      finish(read_atom());
    }
  } while (!frames.empty());
  return values.back();
}

// ----- opening ----------------------------------------------------------------------------------

// Everything that begins with a parenthesis. Leaves a frame that waits for its next term, or, for
// (_ ...) and (as ...) on their own, a finished value.
void TermReader::open() {
  const Position position = lexer.token.position;
  lexer.next();
  const Token& token = lexer.token;
  switch (token.kind) {
    case TokenKind::OPEN:
      open_compound_head(position);
      return;
    case TokenKind::SYMBOL:
      break;
    case TokenKind::CLOSE:
      throw ParseError(position, "() is not a term");
    case TokenKind::END:
      throw ParseError(lexer.end_of_previous(), "the input ends inside a term");
    default:
      throw ParseError(token.position, token.description() + " cannot be applied to arguments");
  }
  if (token.is_word("let")) {
    open_let(position);
  } else if (token.is_word("!")) {
    lexer.next();
    frames.push_back({FrameKind::ANNOTATION, position, values.size(), 0, {}, nullptr});
  } else if (token.is_word("_") || token.is_word("as")) {
    const bool ascribed = token.is_word("as");
    if (ascribed) lexer.next();
    const std::string name = token.text;
    const size_t first_index = indices.size();
    const Meaning meaning = read_identifier();
    const DataType* sort = ascribed ? read_ascribed_sort() : nullptr;
    const Value value = as_constant(meaning, name, position, first_index);
    check_ascribed_sort(value, sort, position);
    finish(value);
  } else if (is_quantifier(token)) {
    throw ParseError(token.position, "unsupported: quantifiers (" + token.text + ")");
  } else if (is_reserved_word(token)) {
    throw ParseError(token.position, "unsupported: the construct " + token.description());
  } else {
    const Meaning head = meaning_of(token, /*indexed=*/false);
    const std::string name = token.text;
    const bool constant_operator = head.op != nullptr && head.op->is_constant();
    if (head.value.term != nullptr || constant_operator) {
      throw ParseError(position, shown(name) + " is not a function and takes no arguments");
    }
    lexer.next();
    open_application(position, head, indices.size(), nullptr);
  }
}

void TermReader::open_application(Position position, const Meaning& head, size_t first_index,
                                  const DataType* sort) {
  const FrameKind kind = head.op != nullptr         ? FrameKind::OPERATOR
                         : head.function != nullptr ? FrameKind::FUNCTION
                                                    : FrameKind::MACRO;
  frames.push_back({kind, position, values.size(), first_index, head, sort});
}

// A head of more than one token: ((_ name index ...) ...) or ((as name sort) ...). The current
// token is its parenthesis.
void TermReader::open_compound_head(Position position) {
  lexer.next();
  const Token& token = lexer.token;
  const bool ascribed = token.is_word("as");
  if (!ascribed && !token.is_word("_")) {
    throw ParseError(token.position,
                     "a symbol, (_ ...) or (as ...) is expected at the head of an application");
  }
  if (ascribed) lexer.next();
  const size_t first_index = indices.size();
  const Position head_position = token.position;
  const Meaning head = read_identifier();
  const DataType* sort = ascribed ? read_ascribed_sort() : nullptr;
  if (head.value.term != nullptr) {
    throw ParseError(head_position, "a constant is applied to arguments");
  }
  open_application(position, head, first_index, sort);
}

// An identifier: a symbol, or "_" (the current token is that word, or the parenthesis before it),
// a symbol and indices, up to its closing parenthesis. The indices are left in the vector.
TermReader::Meaning TermReader::read_identifier() {
  const Token& token = lexer.token;
  if (token.kind == TokenKind::OPEN) {
    lexer.next();
    if (!token.is_word("_")) {
      throw ParseError(token.position, "'_' is expected, not " + token.description());
    }
  }
  const bool indexed = token.is_word("_");
  if (indexed) lexer.next();
  if (token.kind != TokenKind::SYMBOL || is_reserved_word(token)) {
    throw ParseError(token.position, "a symbol is expected, not " + token.description());
  }
  const Meaning meaning = meaning_of(token, indexed);
  lexer.next();
  if (!indexed) return meaning;
  const size_t first = indices.size();
  while (token.kind == TokenKind::NUMERAL || token.kind == TokenKind::SYMBOL ||
         token.kind == TokenKind::HEXADECIMAL) {
    indices.push_back(token.spelling());
    lexer.next();
  }
  if (indices.size() == first) {
    throw ParseError(token.position, "an index is expected, not " + token.description());
  }
  expect_close("identifier");
  lexer.next();
  return meaning;
}

// The sort and the closing parenthesis of (as name sort).
const DataType* TermReader::read_ascribed_sort() {
  const DataType* sort = sort_reader.read();
  expect_close("'as'");
  lexer.next();
  return sort;
}

// ----- let --------------------------------------------------------------------------------------

void TermReader::open_let(Position position) {
  lexer.next();
  if (lexer.token.kind != TokenKind::OPEN) {
    throw ParseError(lexer.token.position,
                     "the bindings of 'let' are expected, not " + lexer.token.description());
  }
  lexer.next();
  frames.push_back({FrameKind::BINDINGS, position, values.size(), variables.size(), {}, nullptr});
  open_binding();
}

// The parenthesis and the variable of a binding; its term is next.
void TermReader::open_binding() {
  const Token& token = lexer.token;
  if (token.kind == TokenKind::END) {
    throw ParseError(lexer.end_of_previous(), "the input ends inside a term");
  }
  if (token.kind == TokenKind::CLOSE) {
    throw ParseError(token.position, "'let' without a binding");
  }
  if (token.kind != TokenKind::OPEN) {
    throw ParseError(token.position, "a binding of 'let' is expected, not " + token.description());
  }
  lexer.next();
  if (token.kind != TokenKind::SYMBOL || is_reserved_word(token)) {
    throw ParseError(token.position, "a variable is expected, not " + token.description());
  }
  variables.push_back(&scopes.name(token.text));
  lexer.next();
}

// All bindings have been read: their variables become known at once.
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
  frame.kind = FrameKind::BODY;
  frame.first_extra = first_local;
}

// ----- closing ----------------------------------------------------------------------------------

// A term is complete, the current token is the one behind it. Goes on with what surrounds it, as
// far as that needs no further term.
void TermReader::finish(Value value) {
  values.push_back(value);
  while (!frames.empty()) {
    Frame& frame = frames.back();
    switch (frame.kind) {
      case FrameKind::OPERATOR:
      case FrameKind::FUNCTION:
      case FrameKind::MACRO:
        return;
      case FrameKind::BINDINGS:
        expect_close("binding");
        lexer.next();
        if (lexer.token.kind == TokenKind::CLOSE) {
          close_bindings(frame);
          lexer.next();
        } else {
          open_binding();
        }
        return;
      case FrameKind::BODY:
        expect_close("'let'");
        scopes.unbind_locals(frame.first_extra);
        break;
      case FrameKind::ANNOTATION:
        finish_annotation(frame.position);
        break;
    }
    frames.pop_back();
    lexer.next();
  }
}

// The attributes behind an annotated term, up to the closing parenthesis.
void TermReader::finish_annotation(Position position) {
  const Token& token = lexer.token;
  if (token.kind == TokenKind::CLOSE) throw ParseError(position, "'!' without an attribute");
  while (token.kind == TokenKind::KEYWORD) {
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
  if (token.kind != TokenKind::SYMBOL || is_reserved_word(token)) {
    throw ParseError(token.position,
                     "a symbol is expected behind :named, not " + token.description());
  }
  Name& name = scopes.name(token.text);
  if (is_reserved(name)) {
    throw ParseError(token.position, token.description() + " is an operator of " +
                                         describe(name.theory_operator->theory) +
                                         " and cannot name a term");
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
  binding->kind = Binding::Kind::TERM;
  binding->from_annotation = true;
  binding->value = value;
  scopes.bind(name, std::move(binding));
  named_terms.push_back({token.text, value.term});
}

// An attribute has a value unless the next attribute or the end follows.
void TermReader::skip_attribute_value() {
  uint64_t depth = 0;
  for (;;) {
    switch (lexer.token.kind) {
      case TokenKind::END:
        throw ParseError(lexer.end_of_previous(), "the input ends inside a term");
      case TokenKind::OPEN:
        ++depth;
        break;
      case TokenKind::CLOSE:
        if (depth == 0) return;
        --depth;
        break;
      case TokenKind::KEYWORD:
        if (depth == 0) return;
        break;
      default:
        break;
    }
    lexer.next();
    if (depth == 0) return;
  }
}

void TermReader::close_application() {
  const Frame frame = frames.back();
  const size_t num_args = values.size() - frame.first_value;
  Value result;
  if (frame.kind == FrameKind::OPERATOR) {
    const Application application{*frame.head.op, frame.position,
                                  std::span(indices).subspan(frame.first_extra),
                                  std::span(values).subspan(frame.first_value)};
    result = apply_operator(builder, application);
    indices.resize(frame.first_extra);
  } else if (frame.kind == FrameKind::FUNCTION) {
    result = apply_function(frame, num_args);
  } else {
    result = apply_macro(frame, num_args);
  }
  check_ascribed_sort(result, frame.sort, frame.position);
  values.resize(frame.first_value);
  frames.pop_back();
  lexer.next();
  finish(result);
}

Value TermReader::apply_function(const Frame& frame, size_t num_args) {
  const Symbol* function = frame.head.function;
  const auto name = [&] { return shown(name_to_smtlib(function->name, NameKind::Symbol)); };
  if (num_args != function->arity) {
    throw ParseError(frame.position, name() + " takes " + arguments(function->arity) + ", not " +
                                         std::to_string(num_args));
  }
  std::vector<const Term_*> terms;
  terms.reserve(num_args);
  for (size_t i = 0; i < num_args; ++i) {
    const Value& argument = values[frame.first_value + i];
    const DataType* asked = function->type->get_component(i + 1);
    if (!builder.fits(argument.sort, asked)) {
      throw ParseError(frame.position, "argument " + std::to_string(i + 1) + " of " + name() +
                                           " has sort " + sort_text(manager, argument.sort) +
                                           ", but " + sort_text(manager, asked) + " is expected");
    }
    terms.push_back(argument.term);
  }
  return {manager.make_uninterpreted_function(function, terms), function->get_output_type()};
}

Value TermReader::apply_macro(const Frame& frame, size_t num_args) {
  const Macro& macro = *frame.head.macro;
  if (num_args != macro.sorts.size()) {
    throw ParseError(frame.position, shown(macro.name) + " takes " + arguments(macro.sorts.size()) +
                                         ", not " + std::to_string(num_args));
  }
  std::vector<const Term_*> terms;
  terms.reserve(num_args);
  for (size_t i = 0; i < num_args; ++i) {
    const Value& argument = values[frame.first_value + i];
    if (!builder.fits(argument.sort, macro.sorts[i])) {
      throw ParseError(frame.position, "argument " + std::to_string(i + 1) + " of " +
                                           shown(macro.name) + " has sort " +
                                           sort_text(manager, argument.sort) + ", but " +
                                           sort_text(manager, macro.sorts[i]) + " is expected");
    }
    terms.push_back(argument.term);
  }
  return {manager.substitute(macro.body.term, macro.placeholders, terms), macro.body.sort};
}

// ----- atoms and names --------------------------------------------------------------------------

Value TermReader::read_atom() {
  const Token& token = lexer.token;
  Value value;
  switch (token.kind) {
    case TokenKind::NUMERAL:
    case TokenKind::DECIMAL:
      value = builder.number(token);
      break;
    case TokenKind::SYMBOL: {
      if (is_reserved_word(token)) {
        throw ParseError(token.position, "a term is expected, not " + token.description());
      }
      const Meaning meaning = meaning_of(token, /*indexed=*/false);
      value = as_constant(meaning, token.text, token.position, indices.size());
      break;
    }
    case TokenKind::BINARY:
    case TokenKind::HEXADECIMAL:
      throw ParseError(token.position,
                       "unsupported: the bit-vector literal " + token.description());
    case TokenKind::STRING:
      throw ParseError(token.position, "unsupported: a string as a term");
    case TokenKind::END:
      throw ParseError(lexer.end_of_previous(), "the input ends where a term is expected");
    default:
      throw ParseError(token.position, "a term is expected, not " + token.description());
  }
  lexer.next();
  return value;
}

// What stands alone must have no parameters.
Value TermReader::as_constant(const Meaning& meaning, const std::string& name, Position position,
                              size_t first_index) {
  if (meaning.value.term != nullptr) return meaning.value;
  if (meaning.op != nullptr && meaning.op->is_constant()) {
    const Application application{
        *meaning.op, position, std::span(indices).subspan(first_index), {}};
    const Value value = apply_operator(builder, application);
    indices.resize(first_index);
    return value;
  }
  throw ParseError(position, shown(name) + " is a function and needs arguments");
}

TermReader::Meaning TermReader::meaning_of(const Token& token, bool indexed) {
  const Name& name = scopes.name(token.text);
  Meaning meaning;
  if (indexed) {
    if (!is_reserved(name)) reject_unknown(token);
    if (name.theory_operator->num_indices == 0) {
      throw ParseError(token.position, token.description() + " takes no indices");
    }
  } else if (name.local != 0) {
    meaning.value = scopes.local_value(name);
    return meaning;
  } else if (name.global != nullptr) {
    const Binding& binding = *name.global;
    switch (binding.kind) {
      case Binding::Kind::TERM:
        meaning.value = binding.value;
        break;
      case Binding::Kind::MACRO:
        meaning.macro = &binding.macro;
        break;
      case Binding::Kind::FUNCTION:
        if (binding.symbol->arity == 0) {
          meaning.value = {manager.make_constant(binding.symbol), binding.symbol->type};
        } else {
          meaning.function = binding.symbol;
        }
        break;
    }
    return meaning;
  }
  if (is_reserved(name)) {
    meaning.op = name.theory_operator;
    if (meaning.op->build == nullptr) {
      throw ParseError(token.position, "unsupported: the operator " + token.description() + " of " +
                                           describe(meaning.op->theory));
    }
    return meaning;
  }
  if (use_signature) {
    const std::string stored = name_from_smtlib(token.text, NameKind::Symbol);
    const Symbol* symbol = manager.get_signature()->get_symbol(stored.c_str());
    if (symbol != nullptr && symbol->arity == 0) {
      meaning.value = {manager.make_constant(symbol), symbol->type};
      return meaning;
    }
    if (symbol != nullptr) {
      meaning.function = symbol;
      return meaning;
    }
  }
  reject_unknown(token);
}

void TermReader::reject_unknown(const Token& token) const {
  const std::string& text = token.text;
  if (text.size() > 2 && text.compare(0, 2, "bv") == 0 && text[2] >= '0' && text[2] <= '9' &&
      builder.logic.has(Theory::BIT_VECTORS)) {
    throw ParseError(token.position, "unknown symbol " + token.description() +
                                         " (bit-vector literals are not supported)");
  }
  std::string why = "unknown symbol " + token.description();
  const Name& name = scopes.name(text);
  if (name.theory_operator != nullptr && !is_reserved(name)) {
    why += " (the logic " + builder.logic.name() + " does not have it)";
  } else if (text.size() > 1 && text[0] == '-' && text[1] >= '0' && text[1] <= '9') {
    why += " (negative numbers are written (- " + shown(text.substr(1)) + "))";
  }
  throw ParseError(token.position, why);
}

void TermReader::check_ascribed_sort(const Value& value, const DataType* sort,
                                     Position position) const {
  if (sort == nullptr || value.sort == sort) return;
  throw ParseError(position, "'as' names the sort " + sort_text(manager, sort) +
                                 ", but the term has sort " + sort_text(manager, value.sort));
}

void TermReader::expect_close(const char* construct) {
  if (lexer.token.kind == TokenKind::CLOSE) return;
  if (lexer.token.kind == TokenKind::END) {
    throw ParseError(lexer.end_of_previous(), "the input ends inside a term");
  }
  throw ParseError(lexer.end_of_previous(),
                   std::string("a ')' is missing: the ") + construct + " is not closed");
}

}  // namespace quill::smt2
