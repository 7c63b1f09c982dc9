#include "quill/frontends/smt2/sort_reader.h"

#include <string_view>
#include <vector>

#include "quill/frontends/smt2/indices.h"
#include "quill/frontends/smt2/sort_images.h"
#include "quill/smtlib/lexical.h"
#include "quill/smtlib/syntax.h"
#include "quill/smtlib/theory_names.h"

namespace quill::smt2 {

namespace {

// The syntactic form of a use of a sort.
enum class Form { Name, BitVector, FloatingPoint, Array };

struct SupportedSort {
  std::string_view name;
  Form form;
  const DataType* (*make)(TermManager&);  // for a NAME
};

// clang-format off
constexpr SupportedSort supported_sorts[] = {
    {"Array",         Form::Array,          nullptr},
    {"BitVec",        Form::BitVector,     nullptr},
    {"Bool",          Form::Name,           [](TermManager& m) { return m.get_bool_type(); }},
    {"Float128",      Form::Name,           [](TermManager& m) { return m.get_fp_type(15, 112); }},
    {"Float16",       Form::Name,           [](TermManager& m) { return m.get_fp_type(5, 10); }},
    {"Float32",       Form::Name,           [](TermManager& m) { return m.get_fp_type(8, 23); }},
    {"Float64",       Form::Name,           [](TermManager& m) { return m.get_fp_type(11, 52); }},
    {"FloatingPoint", Form::FloatingPoint, nullptr},
    {"Int",           Form::Name,           [](TermManager& m) { return m.get_int_type(); }},
    {"Real",          Form::Name,           [](TermManager& m) { return m.get_rat_type(); }},
    {"RoundingMode",  Form::Name,           [](TermManager& m) { return m.get_fprounding_type(); }},
};
// clang-format on

constexpr bool complete() {
  for (const SupportedSort& sort : supported_sorts) {
    if (!has_theory(theory_sorts, sort.name)) return false;
  }
  return true;
}
static_assert(complete(), "a theory has each sort");

// Null if the logic does not have the sort or the reader cannot make it.
const SupportedSort* find_supported(std::string_view name, const Logic& logic) {
  for (const SupportedSort& sort : supported_sorts) {
    if (name == sort.name) return logic.has(find_theory_sort(name)->theory) ? &sort : nullptr;
  }
  return nullptr;
}

constexpr uint64_t array_arity = 2;

// The longest hint in a message, in bytes.
constexpr size_t longest_hint = 40;

}  // namespace

bool SortReader::is_reserved(std::string_view name) const { return is_theory_sort(name, logic); }

const DataType* SortReader::placeholder(size_t number) {
  // The name is unique: no sort of a script has a NUL byte in its name.
  return manager.get_simple_type(std::string(1, '\0') + std::to_string(number), false);
}

const DataType* SortReader::read() {
  heads.clear();
  args.clear();
  for (;;) {
    if (lexer.token.kind == TokenKind::Open) {
      lexer.next();
      if (!lexer.token.is_word("_")) {
        heads.push_back(open());
        continue;
      }
      args.push_back(read_indexed());
    } else if (lexer.token.kind == TokenKind::Close && !heads.empty()) {
      const DataType* sort = apply(heads.back());
      args.resize(heads.back().first_arg);
      args.push_back(sort);
      heads.pop_back();
      lexer.next();
    } else {
      args.push_back(read_name());
    }
    if (heads.empty()) return args.back();
  }
}

// Reads a sort that is a name without arguments.
const DataType* SortReader::read_name() {
  const Token& token = lexer.token;
  lexer.require_more("where a sort is expected");
  if (token.kind != TokenKind::Symbol || token.is_reserved_word()) {
    lexer.reject_token("a sort is");
  }
  const SortName& name = scopes.sort_name(token.text);
  const DataType* sort = nullptr;
  if (name.parameter != nullptr) {
    sort = name.parameter;
  } else if (name.global != nullptr) {
    expect_arity(token.position, token.text, name.global->arity, 0);
    sort = name.global->type;
  } else {
    const SupportedSort* row = find_supported(token.text, logic);
    if (row == nullptr) reject_name(token);
    switch (row->form) {
      case Form::Name:
        sort = row->make(manager);
        break;
      case Form::Array:
        expect_arity(token.position, token.text, array_arity, 0);
        break;
      case Form::BitVector:
        throw ParseError(token.position, "the sort 'BitVec' is written (_ BitVec width)");
      case Form::FloatingPoint:
        throw ParseError(token.position,
                         "the sort 'FloatingPoint' is written (_ FloatingPoint e s)");
    }
  }
  lexer.next();
  return sort;
}

// Reads (_ name index ...) after its parenthesis. On return the current token is the one after the
// closing parenthesis.
const DataType* SortReader::read_indexed() {
  const Token& token = lexer.token;
  lexer.next();
  lexer.require_more("inside a sort");
  if (token.kind != TokenKind::Symbol) {
    throw ParseError(token.position, "a name is expected behind '_', not " + token.description());
  }
  const SupportedSort* row = find_supported(token.text, logic);
  if (row == nullptr) reject_name(token);
  const Position position = token.position;
  const std::string name = token.spelling();
  const size_t wanted = row->form == Form::BitVector ? 1 : row->form == Form::FloatingPoint ? 2 : 0;
  if (wanted == 0) throw ParseError(position, "the sort " + shown(name) + " takes no indices");
  lexer.next();
  std::vector<uint64_t> numbers;
  for (; token.kind != TokenKind::Close; lexer.next()) {
    lexer.require_more("inside a sort");
    numbers.push_back(index_value(token.spelling(), "the sort ", name, token.position));
  }
  if (numbers.size() != wanted) {
    throw ParseError(position, "the sort " + shown(name) + " takes " + std::to_string(wanted) +
                                   (wanted == 1 ? " index, not " : " indices, not ") +
                                   std::to_string(numbers.size()));
  }
  const DataType* sort = wanted == 1 ? sorts.bit_vector(numbers[0], position)
                                     : sorts.floating_point(numbers[0], numbers[1], position);
  lexer.next();
  return sort;
}

// Reads the name at the head of an application.
SortReader::Head SortReader::open() {
  const Token& token = lexer.token;
  lexer.require_more("inside a sort");
  if (token.kind != TokenKind::Symbol || token.is_reserved_word()) {
    lexer.reject_token("the name of a sort is");
  }
  const SortName& name = scopes.sort_name(token.text);
  if (name.parameter != nullptr) expect_arity(token.position, token.text, 0, 1);
  if (name.global == nullptr) {
    const SupportedSort* row = find_supported(token.text, logic);
    if (row == nullptr) reject_name(token);
    if (row->form == Form::BitVector || row->form == Form::FloatingPoint) {
      reject_without_indices(row->form == Form::BitVector);
    }
    if (row->form != Form::Array) {
      throw ParseError(token.position, "the sort " + shown(token.text) + " takes no arguments");
    }
  }
  Head head{token.position, std::string(token.text), name.global.get(), args.size()};
  lexer.next();
  return head;
}

// Rejects (BitVec 8) and (FloatingPoint 8 24). The current token is the name.
void SortReader::reject_without_indices(bool is_bit_vector) {
  const Position position = lexer.token.position;
  const std::string name(lexer.token.text);
  std::string indices;
  lexer.next();
  const size_t wanted = is_bit_vector ? 1 : 2;
  size_t given = 0;
  for (; given < wanted && lexer.token.kind == TokenKind::Numeral; ++given) {
    indices += " " + lexer.token.spelling();
    lexer.next();
  }
  if (given != wanted || indices.size() > longest_hint) indices = is_bit_vector ? " width" : " e s";
  throw ParseError(position, "the sort " + shown(name) + " is written (_ " + name + indices + ")");
}

void SortReader::reject_name(const Token& token) const {
  const TheoryName* row = find_theory_sort(token.text);
  if (row != nullptr && logic.has(row->theory)) {
    throw ParseError(token.position, "unsupported: the sort " + token.description() + " of " +
                                         describe(row->theory));
  }
  if (token.is_word("->")) throw ParseError(token.position, "unsupported: sorts of functions (->)");
  std::string text = "unknown sort " + token.description();
  if (row != nullptr && row->theory != Theory::NoTheory) {
    text += " (the logic " + logic.name() + " does not have it)";
  }
  throw ParseError(token.position, text);
}

void SortReader::expect_arity(Position position, std::string_view name, uint64_t arity,
                              uint64_t given) {
  if (arity == given) return;
  if (arity == 0) throw ParseError(position, "the sort " + shown(name) + " takes no arguments");
  throw ParseError(position, "the sort " + shown(name) + " takes " + std::to_string(arity) +
                                 (arity == 1 ? " argument, not " : " arguments, not ") +
                                 std::to_string(given));
}

const DataType* SortReader::apply(const Head& head) {
  const size_t given = args.size() - head.first_arg;
  if (given == 0)
    throw ParseError(head.position, "the sort " + shown(head.name) + " between parentheses");
  const uint64_t arity = head.binding != nullptr ? head.binding->arity : array_arity;
  expect_arity(head.position, head.name, arity, given);
  const DataType* const* first = args.data() + head.first_arg;
  if (head.binding == nullptr) return sorts.array(first[0], first[1]);
  if (head.binding->defined) {
    try {
      return expand(*head.binding, first);
    } catch (const TermManager::error&) {
      // The only component that a sort can have and the manager refuses.
      throw ParseError(
          head.position,
          "unsupported: Bool as an argument of a sort in the definition of " + shown(head.name));
    }
  }
  std::vector<const DataType*> components = {head.binding->type};
  components.insert(components.end(), first, first + given);
  return compound(components, head.position, head.name);
}

const DataType* SortReader::compound(const std::vector<const DataType*>& components,
                                     Position position, const std::string& name) {
  for (const DataType* component : components) {
    if (component == manager.get_bool_type()) {
      throw ParseError(position, "unsupported: Bool as an argument of the sort " + shown(name));
    }
  }
  return manager.get_compound_type(components);
}

// Replaces the placeholders in the body of a definition.
const DataType* SortReader::expand(const SortBinding& definition, const DataType* const* actual) {
  SortImages images;
  for (size_t i = 0; i < definition.arity; ++i) images[placeholder(i)] = actual[i];
  return image_of_sort(definition.type, images,
                       [&](const DataType* type, const std::vector<const DataType*>& components) {
                         return manager.is_array_type(type, nullptr, nullptr)
                                    ? sorts.array(components[1], components[2])
                                    : manager.get_compound_type(components);
                       });
}

}  // namespace quill::smt2
