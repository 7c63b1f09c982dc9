#include "frontends/smt2/sort_reader.h"

#include <string_view>

#include "frontends/smt2/reserved_words.h"
#include "quill/printers/smtlib2_names.h"
#include "quill/printers/smtlib2_syntax.h"
#include "quill/utils/hash_map.h"

namespace quill::smt2 {

namespace {

using Maker = const DataType* (TermManager::*)() const;

struct SupportedSort {
  std::string_view name;
  Maker make;
};

constexpr SupportedSort supported_sorts[] = {
    {"Bool", &TermManager::get_bool_type},
    {"Int", &TermManager::get_int_type},
    {"Real", &TermManager::get_rat_type},
};

constexpr bool complete() {
  for (const SupportedSort& sort : supported_sorts) {
    if (!has_theory(theory_sorts, sort.name)) return false;
  }
  return true;
}
static_assert(complete(), "a theory has each sort");

// Null when the logic does not have the sort, or nothing here can make it.
Maker find_maker(const std::string& name, const Logic& logic) {
  for (const SupportedSort& sort : supported_sorts) {
    if (name == sort.name) return logic.has(find_theory_sort(name)->theory) ? sort.make : nullptr;
  }
  return nullptr;
}

}  // namespace

bool SortReader::is_reserved(const std::string& name) const { return is_theory_sort(name, logic); }

const DataType* SortReader::placeholder(size_t number) {
  // No sort of a script has a NUL byte in its name.
  return manager.get_simple_type(std::string(1, '\0') + std::to_string(number), false);
}

const DataType* SortReader::read() {
  heads.clear();
  args.clear();
  for (;;) {
    if (lexer.token.kind == TokenKind::OPEN) {
      heads.push_back(open());
      continue;
    }
    if (lexer.token.kind == TokenKind::CLOSE && !heads.empty()) {
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

// A sort's name without arguments.
const DataType* SortReader::read_name() {
  const Token& token = lexer.token;
  if (token.kind == TokenKind::END) {
    throw ParseError(lexer.end_of_previous(), "the input ends where a sort is expected");
  }
  if (token.kind != TokenKind::SYMBOL || is_reserved_word(token)) {
    throw ParseError(token.position, "a sort is expected, not " + token.description());
  }
  const SortName& name = scopes.sort_name(token.text);
  const DataType* sort = nullptr;
  if (name.parameter != nullptr) {
    sort = name.parameter;
  } else if (name.global != nullptr) {
    expect_arity(token.position, token.text, name.global->arity, 0);
    sort = name.global->type;
  } else {
    const Maker make = find_maker(token.text, logic);
    if (make == nullptr) reject_name(token);
    sort = (manager.*make)();
  }
  lexer.next();
  return sort;
}

// The opening parenthesis of an application and the name behind it.
SortReader::Head SortReader::open() {
  lexer.next();
  const Token& token = lexer.token;
  if (token.is_word("_")) {
    lexer.next();
    if (token.kind != TokenKind::SYMBOL) {
      throw ParseError(token.position, "a name is expected behind '_', not " + token.description());
    }
    reject_name(token);
  }
  if (token.kind == TokenKind::END) {
    throw ParseError(lexer.end_of_previous(), "the input ends inside a sort");
  }
  if (token.kind != TokenKind::SYMBOL || is_reserved_word(token)) {
    throw ParseError(token.position, "the name of a sort is expected, not " + token.description());
  }
  const SortName& name = scopes.sort_name(token.text);
  if (name.parameter != nullptr) expect_arity(token.position, token.text, 0, 1);
  if (name.global == nullptr) {
    if (find_maker(token.text, logic) == nullptr) reject_name(token);
    throw ParseError(token.position, "the sort " + shown(token.text) + " takes no arguments");
  }
  Head head{token.position, token.text, name.global.get(), args.size()};
  lexer.next();
  return head;
}

void SortReader::reject_name(const Token& token) const {
  const TheoryName* row = find_theory_sort(token.text);
  if (row != nullptr && logic.has(row->theory)) {
    throw ParseError(token.position, "unsupported: the sort " + token.description() + " of " +
                                         describe(row->theory));
  }
  std::string text = "unknown sort " + token.description();
  if (row != nullptr && row->theory != Theory::NONE) {
    text += " (the logic " + logic.name() + " does not have it)";
  }
  throw ParseError(token.position, text);
}

void SortReader::expect_arity(Position position, const std::string& name, uint64_t arity,
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
  expect_arity(head.position, head.name, head.binding->arity, given);
  const DataType* const* first = args.data() + head.first_arg;
  if (head.binding->defined) {
    try {
      return expand(*head.binding, first);
    } catch (const TermManager::error&) {
      // The one component that the manager refuses and a sort can be.
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

// Replaces the placeholders in the body of a definition. Types are shared graphs, so each distinct
// one is rebuilt once.
const DataType* SortReader::expand(const SortBinding& definition, const DataType* const* actual) {
  hsh::HashMap<const DataType*, const DataType*> images;
  for (size_t i = 0; i < definition.arity; ++i) images[placeholder(i)] = actual[i];
  std::vector<const DataType*> pending = {definition.type};
  std::vector<const DataType*> components;
  while (!pending.empty()) {
    const DataType* type = pending.back();
    if (images.find(type) != images.end()) {
      pending.pop_back();
      continue;
    }
    const size_t pending_before = pending.size();
    components.clear();
    for (size_t i = 0; i < type->num_components(); ++i) {
      const DataType* component = type->get_component(i);
      const auto image = images.find(component);
      if (image == images.end()) {
        pending.push_back(component);
      } else {
        components.push_back(image->second);
      }
    }
    if (pending.size() != pending_before) continue;
    images[type] = type->is_simple() ? type : manager.get_compound_type(components);
    pending.pop_back();
  }
  return images[definition.type];
}

}  // namespace quill::smt2
