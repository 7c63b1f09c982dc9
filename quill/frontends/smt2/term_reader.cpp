#include "quill/frontends/smt2/term_reader.h"

#include <string>

#include "quill/frontends/smt2/sort_text.h"
#include "quill/smtlib/lexical.h"
#include "quill/smtlib/name_escape.h"
#include "quill/smtlib/theory_names.h"

namespace quill::smt2 {

namespace {

std::string counted_arguments(size_t count) {
  return std::to_string(count) + (count == 1 ? " argument" : " arguments");
}

}  // namespace

TermReader::TermReader(Lexer& lexer_, Scopes& scopes_, SortReader& sort_reader_,
                       TermBuilder& builder_)
    : lexer(lexer_),
      scopes(scopes_),
      sort_reader(sort_reader_),
      builder(builder_),
      manager(builder_.manager) {
  for (const ConstructWord& row : construct_words) {
    scopes.name(row.text).construct = row.construct;
  }
  for (const TheoryName& row : theory_symbols) scopes.name(row.name).theory = &row;
  for (const Operator& op : operators()) scopes.name(op.name).theory_operator = &op;
}

// Called when the current token is the whole term, apart from annotations.
void TermReader::note_spelling() {
  if (lexer.token.kind != TokenKind::Symbol) return;
  const Name& name = scopes.name(lexer.token.text);
  if (name.local != 0 || name.global == nullptr) return;
  if (name.global->kind == Binding::Kind::Term) spelled_name = name.global->stored_name;
}

std::string TermReader::stored_name(std::string_view name) const {
  return name_from_smtlib(name, NameKind::Symbol, default_escape_prefix, builder.logic);
}

Value TermReader::read() {
  // A read that failed may have left something in these.
  frames.clear();
  values.clear();
  indices.clear();
  variables.clear();
  outer_annotations = 0;
  spelled_name.clear();
  first_name_of_whole = 0;
  do {
    if (lexer.token.kind == TokenKind::Open) {
      open();
    } else if (lexer.token.kind == TokenKind::Close && !frames.empty() &&
               frames.back().kind <= FrameKind::Macro) {
      close_application();
    } else {
      if (frames.size() == outer_annotations) note_spelling();
      if (!named_terms.empty()) first_name_of_whole = 0;
      finish(read_atom());
    }
  } while (!frames.empty());
  return values.back();
}

// ----- opening ----------------------------------------------------------------------------------

// Reads whatever begins with a parenthesis. Leaves a frame that waits for its next term or, for (_
// ...) and (as ...) on their own, a finished value.
void TermReader::open() {
  const Position position = lexer.token.position;
  lexer.next();
  const Token& token = lexer.token;
  switch (token.kind) {
    case TokenKind::Open:
      open_compound_head(position);
      return;
    case TokenKind::Symbol:
      break;
    case TokenKind::Close:
      throw ParseError(position, "() is not a term");
    case TokenKind::End:
      lexer.reject_end_of_input("inside a term");
    default:
      throw ParseError(token.position, token.description() + " cannot be applied to arguments");
  }
  const Name& name = scopes.name(token.text);
  switch (token.quoted ? Construct::NoConstruct : name.construct) {
    case Construct::NoConstruct: {
      expect_no_command(token, name);
      const Meaning head = meaning_of(token, name, /*indexed=*/false);
      const bool constant_operator = head.op != nullptr && head.op->is_constant();
      if (head.value.term != nullptr || constant_operator) {
        throw ParseError(position, shown(token.text) + " is not a function and takes no arguments");
      }
      expect_indices(token, head);
      open_application(position, head, indices.size(), nullptr);
      return;
    }
    case Construct::Let:
      open_let(position);
      return;
    case Construct::Annotation:
      lexer.next();
      if (frames.size() == outer_annotations) ++outer_annotations;
      frames.push_back({FrameKind::Annotation, position, values.size(), 0, {}, nullptr});
      return;
    case Construct::Indexed:
      open_constant(position, /*ascribed=*/false);
      return;
    case Construct::Ascribed:
      open_constant(position, /*ascribed=*/true);
      return;
    case Construct::Quantifier:
    case Construct::Lambda:
      throw ParseError(token.position, "unsupported: quantifiers (" + token.spelling() + ")");
    case Construct::Other:
      throw ParseError(token.position, "unsupported: the construct " + token.description());
  }
}

// Reads (_ name index ...) or (as name sort) as a whole term. The current token is the word.
void TermReader::open_constant(Position position, bool ascribed) {
  if (ascribed) lexer.next();
  const std::string name(lexer.token.text);
  const size_t first_index = indices.size();
  const Meaning meaning = read_identifier();
  const DataType* sort = ascribed ? read_ascribed_sort() : nullptr;
  const Value value = as_constant(meaning, name, position, first_index);
  check_ascribed_sort(value, sort, position);
  finish(value);
}

void TermReader::open_application(Position position, const Meaning& head, size_t first_index,
                                  const DataType* sort) {
  const FrameKind kind = head.op != nullptr         ? FrameKind::Operator
                         : head.function != nullptr ? FrameKind::Function
                                                    : FrameKind::Macro;
  frames.push_back({kind, position, values.size(), first_index, head, sort});
}

// Reads a head of more than one token: ((_ name index ...) ...) or ((as name sort) ...). The
// current token is its parenthesis.
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

// ----- closing ----------------------------------------------------------------------------------

// Called when a term is complete and the current token is the one after it. Continues with the
// enclosing terms until one of them needs another term.
void TermReader::finish(Value value) {
  values.push_back(value);
  while (!frames.empty()) {
    Frame& frame = frames.back();
    switch (frame.kind) {
      case FrameKind::Operator:
      case FrameKind::Function:
      case FrameKind::Macro:
        return;
      case FrameKind::Bindings:
        expect_close("binding");
        lexer.next();
        if (lexer.token.kind == TokenKind::Close) {
          close_bindings(frame);
          lexer.next();
        } else {
          open_binding();
        }
        return;
      case FrameKind::Body:
        expect_close("'let'");
        scopes.unbind_locals(frame.first_extra);
        break;
      case FrameKind::Annotation:
        finish_annotation(frame.position);
        break;
    }
    frames.pop_back();
    lexer.next();
  }
}

void TermReader::close_application() {
  const Frame& frame = frames.back();
  const size_t num_args = values.size() - frame.first_value;
  Value result;
  if (frame.kind == FrameKind::Operator) {
    const Application application{*frame.head.op, frame.position,
                                  std::span(indices).subspan(frame.first_extra),
                                  std::span(values).subspan(frame.first_value), frame.sort};
    result = apply_operator(builder, application);
    indices.resize(frame.first_extra);
  } else if (frame.kind == FrameKind::Function) {
    result = apply_function(frame, num_args);
  } else {
    result = apply_macro(frame, num_args);
  }
  check_ascribed_sort(result, frame.sort, frame.position);
  values.resize(frame.first_value);
  frames.pop_back();
  lexer.next();
  if (!named_terms.empty()) first_name_of_whole = named_terms.size();
  finish(result);
}

Value TermReader::apply_function(const Frame& frame, size_t num_args) {
  const Symbol* function = frame.head.function;
  const auto name = [&] {
    return shown(
        name_to_smtlib(function->name, NameKind::Symbol, default_escape_prefix, builder.logic));
  };
  if (num_args != function->arity) {
    throw ParseError(frame.position, name() + " takes " + counted_arguments(function->arity) +
                                         ", not " + std::to_string(num_args));
  }
  arguments.clear();
  for (size_t i = 0; i < num_args; ++i) {
    const Value& argument = values[frame.first_value + i];
    const DataType* asked = frame.head.signature->get_component(i + 1);
    if (!builder.fits(argument.sort, asked)) {
      throw ParseError(frame.position, "argument " + std::to_string(i + 1) + " of " + name() +
                                           " has sort " + sort_text(manager, argument.sort) +
                                           ", but " + sort_text(manager, asked) + " is expected");
    }
    arguments.push_back(argument.term);
  }
  return {manager.make_uninterpreted_function(function, arguments),
          frame.head.signature->get_component(num_args + 1)};
}

Value TermReader::apply_macro(const Frame& frame, size_t num_args) {
  const Macro& macro = *frame.head.macro;
  if (num_args != macro.sorts.size()) {
    throw ParseError(frame.position, shown(macro.name) + " takes " +
                                         counted_arguments(macro.sorts.size()) + ", not " +
                                         std::to_string(num_args));
  }
  arguments.clear();
  for (size_t i = 0; i < num_args; ++i) {
    const Value& argument = values[frame.first_value + i];
    if (!builder.fits(argument.sort, macro.sorts[i])) {
      throw ParseError(frame.position, "argument " + std::to_string(i + 1) + " of " +
                                           shown(macro.name) + " has sort " +
                                           sort_text(manager, argument.sort) + ", but " +
                                           sort_text(manager, macro.sorts[i]) + " is expected");
    }
    arguments.push_back(argument.term);
  }
  builder.budget.spend(macro.expansion, frame.position);
  return {manager.substitute(macro.body.term, macro.placeholders, arguments), macro.body.sort};
}

void TermReader::expect_close(const char* construct) {
  if (lexer.token.kind == TokenKind::Close) return;
  lexer.require_more("inside a term");
  throw ParseError(lexer.end_of_previous(),
                   std::string("a ')' is missing: the ") + construct + " is not closed");
}

}  // namespace quill::smt2
