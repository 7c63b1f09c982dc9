// How a term reader handles atoms and names: determines their meanings.

#include "quill/frontends/smt2/indices.h"
#include "quill/frontends/smt2/sort_text.h"
#include "quill/frontends/smt2/term_reader.h"
#include "quill/smtlib/commands.h"
#include "quill/smtlib/lexical.h"
#include "quill/smtlib/name_escape.h"
#include "quill/smtlib/theory_names.h"

namespace quill::smt2 {

// Reads an identifier: a symbol, or "_" (the current token is that word, or the parenthesis before
// it), a symbol and indices, up to its closing parenthesis. Leaves the indices in the vector.
TermReader::Meaning TermReader::read_identifier() {
  const Token& token = lexer.token;
  if (token.kind == TokenKind::Open) {
    lexer.next();
    if (!token.is_word("_")) {
      lexer.reject_token("'_' is");
    }
  }
  const bool indexed = token.is_word("_");
  if (indexed) lexer.next();
  if (token.kind != TokenKind::Symbol || token.is_reserved_word()) {
    lexer.reject_token("a symbol is");
  }
  if (indexed && is_bit_vector_number(token)) return read_bit_vector_number();
  const Position position = token.position;
  const Meaning meaning = meaning_of(token, scopes.name(token.text), indexed);
  lexer.next();
  if (!indexed) return meaning;
  const size_t first = indices.size();
  while (token.kind == TokenKind::Numeral || token.kind == TokenKind::Symbol ||
         token.kind == TokenKind::Hexadecimal) {
    indices.push_back(token.spelling());
    lexer.next();
  }
  if (indices.size() == first) {
    lexer.reject_token("an index is");
  }
  if (meaning.op != nullptr && !meaning.op->is_constant() &&
      (token.kind != TokenKind::Close || indices.size() - first > meaning.op->num_indices)) {
    reject_arguments_inside(*meaning.op, position, first);
  }
  expect_close("identifier");
  lexer.next();
  return meaning;
}

// ----- operators with indices in the wrong place ------------------------------------------------

namespace {

constexpr size_t longest_hint = 60;  // in bytes

// " a b" for the text from here to the next parenthesis, with "..." for text that is too long.
std::string rest_of_list(Lexer& lexer) {
  std::string text;
  while (lexer.token.kind != TokenKind::Close && lexer.token.kind != TokenKind::End) {
    if (lexer.token.kind == TokenKind::Open || text.size() > longest_hint) return text + " ...";
    text += " " + lexer.token.spelling();
    lexer.next();
  }
  return text;
}

std::string on_one_line(std::string text) {
  for (char& c : text) {
    if (static_cast<unsigned char>(c) < 32 || c == 127) c = '?';
  }
  return text.size() > 2 * longest_hint ? text.substr(0, 2 * longest_hint) + "..." : text;
}

}  // namespace

// Rejects (_ extract 3 0 x). What looks like an index has been read already, unless there are too
// few indices.
void TermReader::reject_arguments_inside(const Operator& op, Position position, size_t first) {
  if (indices.size() - first < op.num_indices) {
    if (lexer.token.kind == TokenKind::Open) {
      lexer.reject_token("an index is");
    }
    expect_close("identifier");
  }
  std::string text = "((_ " + std::string(op.name);
  for (size_t i = first; i < indices.size(); ++i) {
    if (i - first == op.num_indices) text += ")";
    text += " " + indices[i];
    if (text.size() > 2 * longest_hint) break;
  }
  if (indices.size() - first == op.num_indices) text += ")";
  text += rest_of_list(lexer) + ")";
  throw ParseError(position,
                   shown(op.name) + " has its arguments behind the indices: " + on_one_line(text));
}

// Skips the name at the head of an application. If the name needs indices, they must not follow the
// name directly: (extract 3 0 x).
void TermReader::expect_indices(const Token& token, const Meaning& head) {
  const Position position = token.position;
  lexer.next();
  if (head.op == nullptr || head.op->num_indices == 0 || token.kind != TokenKind::Numeral) return;
  std::string text = "((_ " + std::string(head.op->name);
  for (size_t i = 0; i < head.op->num_indices && token.kind == TokenKind::Numeral; ++i) {
    text += " " + token.spelling();
    lexer.next();
  }
  text += ")" + rest_of_list(lexer) + ")";
  throw ParseError(position, shown(head.op->name) + " is written " + on_one_line(text));
}

// ----- names that are not symbols -------------------------------------------------------------

// A parenthesis and the name of a command do not begin a term: something before was not closed.
void TermReader::expect_no_command(const Token& token, const Name& name) const {
  if (name.theory != nullptr || name.local != 0 || name.global != nullptr) return;
  if (use_signature || token.quoted) return;
  if (!is_command_name(token.text)) return;
  const Position& open = frames.empty() ? opened : frames.back().position;
  throw ParseError(token.position, "a term is expected, not the command " + token.description() +
                                       ": the parenthesis opened on line " +
                                       std::to_string(open.line) + " is not closed");
}

// Whether the token after "_" is the name of a literal such as (_ bv5 8).
bool TermReader::is_bit_vector_number(const Token& token) const {
  const std::string_view text = token.text;
  return builder.logic.has(Theory::Bits) && text.size() > 2 && text.compare(0, 2, "bv") == 0 &&
         text.find_first_not_of("0123456789", 2) == std::string_view::npos;
}

// Reads the name of a bit-vector literal, its width and its closing parenthesis.
TermReader::Meaning TermReader::read_bit_vector_number() {
  const Token& token = lexer.token;
  const Position position = token.position;
  const std::string name(token.text);
  lexer.next();
  if (token.kind == TokenKind::Close) {
    lexer.reject_token("an index is");
  }
  const uint64_t width = index_value(token.spelling(), "", name, token.position);
  lexer.next();
  expect_close("identifier");
  lexer.next();
  Meaning meaning;
  meaning.value = builder.bit_vector_number(name.substr(2), width, position);
  return meaning;
}

// Reads the sort and the closing parenthesis of (as name sort).
const DataType* TermReader::read_ascribed_sort() {
  const DataType* sort = sort_reader.read();
  expect_close("'as'");
  lexer.next();
  return sort;
}

// ----- atoms and names --------------------------------------------------------------------------

Value TermReader::read_atom() {
  const Token& token = lexer.token;
  Value value;
  switch (token.kind) {
    case TokenKind::Numeral:
    case TokenKind::Decimal:
      value = builder.number(token);
      break;
    case TokenKind::Symbol: {
      const Name& name = scopes.name(token.text);
      if (is_word(token, name)) {
        lexer.reject_token("a term is");
      }
      const Meaning meaning = meaning_of(token, name, /*indexed=*/false);
      value = as_constant(meaning, token.text, token.position, indices.size());
      break;
    }
    case TokenKind::Binary:
    case TokenKind::Hexadecimal:
      value = builder.bits(token);
      break;
    case TokenKind::String:
      throw ParseError(token.position, "unsupported: a string as a term");
    case TokenKind::End:
      lexer.reject_end_of_input("where a term is expected");
    default:
      lexer.reject_token("a term is");
  }
  lexer.next();
  return value;
}

// A name on its own must have no parameters.
Value TermReader::as_constant(const Meaning& meaning, std::string_view name, Position position,
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

TermReader::Meaning TermReader::meaning_of(const Token& token, const Name& name, bool indexed) {
  Meaning meaning;
  if (indexed) {
    if (!has_operator(name)) reject_unknown(token);
    if (name.theory_operator != nullptr && name.theory_operator->num_indices == 0) {
      throw ParseError(token.position, token.description() + " takes no indices");
    }
  } else if (name.local != 0) {
    meaning.value = scopes.local_value(name);
    return meaning;
  } else if (name.global != nullptr) {
    const Binding& binding = *name.global;
    switch (binding.kind) {
      case Binding::Kind::Term:
        meaning.value = binding.value;
        break;
      case Binding::Kind::Macro:
        meaning.macro = &binding.macro;
        break;
      case Binding::Kind::Function:
        if (binding.symbol->arity == 0) {
          meaning.value = {manager.make_constant(binding.symbol), binding.sort};
        } else {
          meaning.function = binding.symbol;
          meaning.signature = binding.sort;
        }
        break;
    }
    return meaning;
  }
  if (has_operator(name)) {
    meaning.op = name.theory_operator;
    if (meaning.op == nullptr) {
      throw ParseError(token.position, "unsupported: the operator " + token.description() + " of " +
                                           describe(name.theory->theory));
    }
    return meaning;
  }
  if (use_signature) {
    const std::string stored = stored_name(token.text);
    const Symbol* symbol = manager.get_signature()->get_symbol(stored.c_str());
    if (symbol != nullptr && symbol->arity == 0) {
      meaning.value = {manager.make_constant(symbol), symbol->type};
      return meaning;
    }
    if (symbol != nullptr) {
      meaning.function = symbol;
      meaning.signature = symbol->type;
      return meaning;
    }
  }
  reject_unknown(token);
}

namespace {

// A name that other readers have for an operator of the standard.
struct Spelling {
  std::string_view elsewhere;
  std::string_view standard;
};
constexpr Spelling spellings[] = {
    {"->", "=>"}, {"<->", "="}, {"==", "="}, {"if", "ite"}, {"iff", "="}, {"implies", "=>"},
};

std::string_view standard_spelling(std::string_view name) {
  for (const Spelling& spelling : spellings) {
    if (spelling.elsewhere == name) return spelling.standard;
  }
  return "";
}

}  // namespace

// The meaning that a name once had in the script for which the term is read; empty if none.
std::string TermReader::lost_meaning(std::string_view name) const {
  if (script == nullptr) return "";
  std::string meaning;
  for (const Command& command : script->commands) {
    switch (command.kind) {
      case CommandKind::DeclareConst:
      case CommandKind::DeclareFun:
        if (command.text == name) meaning = " is declared in a scope that has ended";
        break;
      case CommandKind::DefineConst:
      case CommandKind::DefineFun:
        if (command.text == name) meaning = " is defined: what it stands for is in its place";
        break;
      default:
        break;
    }
    for (const NamedTerm& named : command.named_terms) {
      if (named.name == name) meaning = " is the name of a term and not a symbol";
    }
  }
  return meaning;
}

void TermReader::reject_unknown(const Token& token) const {
  const std::string_view text = token.text;
  if (const std::string lost = lost_meaning(text); !lost.empty()) {
    throw ParseError(token.position, token.description() + lost);
  }
  std::string why = "unknown symbol " + token.description();
  const Name& name = scopes.name(text);
  if (name.theory_operator != nullptr ||
      (name.theory != nullptr && name.theory->theory != Theory::NoTheory)) {
    why += " (the logic " + builder.logic.name() + " does not have it)";
  } else if (text.size() > 1 && text[0] == '-' && text[1] >= '0' && text[1] <= '9') {
    why += " (negative numbers are written (- " + shown(text.substr(1)) + "))";
  } else if (const std::string_view standard = standard_spelling(text); !standard.empty()) {
    why += " (the standard has " + shown(standard) + ")";
  }
  throw ParseError(token.position, why);
}

void TermReader::check_ascribed_sort(const Value& value, const DataType* sort,
                                     Position position) const {
  if (sort == nullptr || value.sort == sort) return;
  throw ParseError(position, "'as' names the sort " + sort_text(manager, sort) +
                                 ", but the term has sort " + sort_text(manager, value.sort));
}

}  // namespace quill::smt2
