#include "tests/life/life.h"

#include <algorithm>
#include <cctype>
#include <exception>
#include <iterator>
#include <optional>
#include <utility>

#include "quill/utils/exception.h"

namespace quill::life {

namespace {

using Pointers = std::vector<const Term_*>;

const std::set<std::string> other_operations = {"fresh", "substitute", "copy", "again", "collect"};

const Texts fresh_types = {"Bool", "Int", "Real", "(BitVec 8)", "(FP |3:4|)", "S0"};

void expect(bool condition, const std::string& complaint) {
  if (!condition) throw Disagreement(complaint);
}

// The type as the model writes it.
std::string text_of(const DataType* type, const TermManager& m) {
  if (type == m.get_universe()->get_application_type()) return "->";
  if (type->is_simple()) {
    const std::string& name = type->get_name();
    for (const char c : name) {
      if (std::isalnum(static_cast<unsigned char>(c)) == 0) return "|" + name + "|";
    }
    return name;
  }
  std::string text = "(";
  for (size_t i = 0; i < type->num_components(); i++) {
    if (i != 0) text += ' ';
    text += text_of(type->get_component(i), m);
  }
  return text + ")";
}

// An operand of a type that fits the pattern, or none. Binds the letters of the pattern.
std::optional<std::string> choose(const Model& model, const std::string& pattern, size_t number,
                                  Bindings& bindings) {
  std::vector<const Texts*> groups;
  std::vector<Bindings> bound;
  size_t count = 0;
  for (const auto& [type, texts] : model.operands()) {
    Bindings trial = bindings;
    if (!match(pattern, type, trial)) continue;
    groups.push_back(&texts);
    bound.push_back(trial);
    count += texts.size();
  }
  if (count == 0) return std::nullopt;
  size_t index = number % count;
  size_t group = 0;
  while (index >= groups[group]->size()) index -= groups[group++]->size();
  bindings = bound[group];
  return (*groups[group])[index];
}

// Any operand, or one of a type or a subtype of it.
std::optional<std::string> choose_any(const Model& model, size_t number, const char* type = "") {
  Texts texts;
  for (const auto& [present, group] : model.operands()) {
    if (*type == '\0' || is_subtype(present, type)) {
      texts.insert(texts.end(), group.begin(), group.end());
    }
  }
  if (texts.empty()) return std::nullopt;
  return texts[number % texts.size()];
}

Pointers pointers(const std::map<std::string, const Term_*>& held, const Texts& texts) {
  Pointers terms;
  for (const std::string& text : texts) terms.push_back(held.at(text));
  return terms;
}

}  // namespace

bool is_operation(const std::string& name) {
  return other_operations.count(name) != 0 || find_operator(name) != nullptr;
}

Texts operation_names() {
  Texts names(other_operations.begin(), other_operations.end());
  for (const Operator& op : all_operators()) names.push_back(op.name);
  return names;
}

Life::Life() {
  for (Side& side : sides) {
    side.held["`true`"] = side.manager.make_true();
    side.held["`false`"] = side.manager.make_false();
    check_all(side);
  }
}

void Life::perform(const Operation& operation) {
  Side& side = sides[operation.manager];
  Side& other = sides[1 - operation.manager];
  bool done = true;
  if (operation.name == "fresh") {
    done = make_fresh(side, operation);
  } else if (operation.name == "substitute") {
    done = substitute(side, operation);
  } else if (operation.name == "copy") {
    done = copy(side, other, operation);
  } else if (operation.name == "again") {
    done = make_again(side, operation);
  } else if (operation.name == "collect") {
    collect(side, operation);
  } else {
    done = apply(side, *find_operator(operation.name), operation);
  }
  if (done) counts[operation.name]++;
  check_sizes(side);
  check_sizes(other);
}

// Every term that the model made since last time must be in the bank, with its id and all.
void Life::bind_made_terms(Side& side) {
  if (side.model.made.empty()) return;
  std::map<uint64_t, const Term_*> by_id;
  for (const Term_* t : *side.manager.get_bank()) by_id[t->id] = t;
  for (const std::string& text : side.model.made) {
    const ModelTerm& expected = side.model.terms.at(text);
    const auto found = by_id.find(expected.id);
    expect(found != by_id.end(), "no term has the id of " + text);
    const Term_* t = found->second;
    expect(t->symbol->name == expected.head.symbol,
           std::string("the id of ") + text + " belongs to a term of symbol " + t->symbol->name);
    expect(text_of(t->symbol->type, side.manager) == expected.head.type,
           "the symbol has another type: " + text);
    expect(Pointers(t->args, t->args + t->symbol->arity) == pointers(side.held, expected.arguments),
           "other arguments: " + text);
    expect(side.held.insert({text, t}).second, "made twice: " + text);
  }
  side.model.made.clear();
}

void Life::check_sizes(const Side& side) const {
  const TermManager& m = side.manager;
  expect(m.get_bank()->size() == side.model.terms.size(), "another number of terms");
  expect(m.get_signature()->size() == side.model.symbols.size(), "another number of symbols");
  expect(m.get_universe()->size() == side.model.types.size(), "another number of types");
}

void Life::check_all(const Side& side) const {
  check_sizes(side);
  const TermManager& m = side.manager;
  const std::string complaint = m.check_consistency();
  expect(complaint.empty(), "inconsistent: " + complaint);

  std::set<const Term_*> bank;
  for (const Term_* t : *m.get_bank()) bank.insert(t);
  uint64_t bound = 0;
  for (const auto& [text, term] : side.model.terms) {
    const Term_* t = side.held.at(text);
    expect(bank.count(t) != 0, "gone: " + text);
    expect(t->id == term.id, "another id: " + text);
    expect(t->symbol->name == term.head.symbol, "another symbol: " + text);
    bound = std::max(bound, term.id + 1);
  }
  expect(m.get_bank()->id_bound() == bound, "another bound of the ids");
  for (const auto& [name, type] : side.model.symbols) {
    const Symbol* symbol = m.get_signature()->get_symbol(name.c_str());
    expect(symbol != nullptr, "no symbol " + name);
    expect(text_of(symbol->type, m) == type, "another type: symbol " + name);
  }
  for (size_t i = 0; i < m.get_universe()->size(); i++) {
    const std::string type = text_of(m.get_universe()->type(i), m);
    expect(side.model.types.count(type) != 0, "a type too many: " + type);
  }
}

//------------------------------------------------------------------------------------------------
// Building

// Has the manager make a term, through the operator if that leads to this very symbol.
void Life::build(Side& side, const Head& head, const Texts& arguments) {
  const Pointers terms = pointers(side.held, arguments);
  const Operator* op = find_operator(head.operation);
  bool leads_there = op != nullptr;
  if (leads_there) {
    Bindings bindings = head.bindings;
    const Texts patterns = op->operand_types();
    for (size_t i = 0; i < patterns.size(); i++) {
      leads_there =
          leads_there && match(patterns[i], side.model.terms.at(arguments[i]).type(), bindings);
    }
  }
  TermManager& m = side.manager;
  const Term_* t = nullptr;
  if (leads_there) {
    t = op->build(m, Request(head), terms);
  } else {
    const Symbol* symbol = m.get_signature()->get_symbol(head.symbol.c_str());
    if (symbol == nullptr) symbol = m.make_symbol(head.symbol, make_type(m, head.type));
    t = m.make_term(symbol, terms);
  }
  const std::string text = side.model.make(head, arguments);
  bind_made_terms(side);
  expect(t == side.held.at(text), "another term than " + text);
}

bool Life::apply(Side& side, const Operator& op, const Operation& operation) {
  Bindings bindings;
  const auto choose_parameters = [&] {
    for (size_t i = 0; i < op.parameters.size(); i++) {
      const auto& [letter, low, bound] = op.parameters[i];
      if (bindings.count(letter) != 0 || !is_bound(bound, bindings)) continue;
      const long first = value_of(low, bindings);
      const auto choices = static_cast<size_t>(value_of(bound, bindings) - first);
      bindings[letter] =
          std::to_string(static_cast<size_t>(first) + operation.operand(i) % choices);
    }
  };
  choose_parameters();
  Texts arguments;
  for (const std::string& pattern : op.operand_types()) {
    const size_t number = operation.operand(op.parameters.size() + arguments.size());
    const auto argument = choose(side.model, pattern, number, bindings);
    if (!argument) return false;
    arguments.push_back(*argument);
  }
  choose_parameters();  // those that depend on the operands
  build(side, {fill(op.symbol, bindings), fill(op.type, bindings), op.name, bindings}, arguments);
  return true;
}

bool Life::make_fresh(Side& side, const Operation& operation) {
  const std::string type = fresh_types[operation.operand(0) % fresh_types.size()];
  const std::string name = "'" + std::to_string(side.next_fresh++);
  const DataType* actual_type = make_type(side.manager, type);
  const bool taken = side.model.symbols.count(name) != 0;  // by a copy
  const Term_* t = nullptr;
  try {
    t = side.manager.make_fresh_variable(actual_type);
  } catch (const TermManager::error&) {
  }
  expect((t == nullptr) == taken, "a fresh variable, or none, against expectation: " + name);
  if (taken) {
    // The type stays, though nothing uses it.
    side.model.note_type(type);
    return true;
  }
  side.model.make({name, type, "fresh", {}}, {});
  bind_made_terms(side);
  expect(t == side.held.at(name), "another term than " + name);
  return true;
}

// Whether a collected term can be made again: not if a name that it needs, one of a fresh variable,
// belongs to a symbol of another type by now.
bool Life::can_make_again(Side& side, const std::string& text, std::set<std::string>& seen) {
  if (side.model.terms.count(text) != 0 || !seen.insert(text).second) return true;
  const auto found = side.buried.find(text);
  if (found == side.buried.end()) return false;
  const ModelTerm& term = found->second;
  const auto symbol = side.model.symbols.find(term.head.symbol);
  if (symbol != side.model.symbols.end() && symbol->second != term.head.type) return false;
  const Texts expected = components_of(term.head.type);
  for (size_t i = 0; i < term.arguments.size(); i++) {
    if (!can_make_again(side, term.arguments[i], seen)) return false;
    const auto present = side.model.terms.find(term.arguments[i]);
    const ModelTerm& argument =
        present != side.model.terms.end() ? present->second : side.buried.at(term.arguments[i]);
    if (!is_subtype(argument.type(), expected[i + 1])) return false;
  }
  // The symbol of a family has to come from its operator.
  return term.head.symbol != "`ite_rat`" || symbol != side.model.symbols.end();
}

std::string Life::make_buried(Side& side, const std::string& text) {
  if (side.model.terms.count(text) != 0) return text;
  const ModelTerm term = side.buried.at(text);
  for (const std::string& argument : term.arguments) make_buried(side, argument);
  build(side, term.head, term.arguments);
  return text;
}

bool Life::make_again(Side& side, const Operation& operation) {
  if (side.buried.empty()) return false;
  auto chosen = side.buried.begin();
  std::advance(chosen, operation.operand(0) % side.buried.size());
  std::set<std::string> seen;
  const std::string text = chosen->first;
  if (side.model.terms.count(text) != 0 || !can_make_again(side, text, seen)) return false;
  make_buried(side, text);
  return true;
}

//------------------------------------------------------------------------------------------------
// Substitution, copies and collection

bool Life::substitute(Side& side, const Operation& operation) {
  const auto root = choose_any(side.model, operation.operand(0));
  std::set<std::string> below;
  side.model.reach(*root, below);
  const Texts candidates(below.begin(), below.end());
  Model::Pairs pairs;
  Pointers from;
  Pointers to;
  for (size_t i = 0; i <= operation.operand(1) % 2; i++) {
    const std::string key = candidates[operation.operand(2 + 2 * i) % candidates.size()];
    const std::string type = side.model.terms.at(key).type();
    const auto image = choose_any(side.model, operation.operand(3 + 2 * i), type.c_str());
    if (!image) return false;
    pairs.push_back({key, *image});
    from.push_back(side.held.at(key));
    to.push_back(side.held.at(*image));
  }
  TermManager& m = side.manager;
  const Term_* t = side.held.at(*root);
  const Term_* result = nullptr;
  if (operation.operand(1) % 3 == 0) {
    TermManager::TermMap images;
    for (size_t i = 0; i < from.size(); i++) images[from[i]] = to[i];
    std::vector<bool> marks;
    result = m.substitute(t, images, marks, /*check=*/true);
    expect(images.find(t)->second == result, "the substitution does not hold the result");
    for (const bool mark : marks) expect(!mark, "a mark is left");
  } else {
    result = m.substitute(t, from, to);
  }
  const std::string text = side.model.substitute(*root, pairs);
  bind_made_terms(side);
  expect(result == side.held.at(text), "another result than " + text);
  return true;
}

// Operand 0 chooses the form; the others the terms.
bool Life::copy(Side& from, Side& to, const Operation& operation) {
  const size_t form = operation.operand(0) % 4;
  Texts roots;
  Pointers terms;
  const size_t count = form < 2 ? 1 : 1 + operation.operand(0) % 3;
  for (size_t i = 0; i < count; i++) {
    roots.push_back(*choose_any(from.model, operation.operand(1 + i)));
    terms.push_back(from.held.at(roots.back()));
  }

  Model::Pairs pairs;
  TermManager::TermMap replaced;
  if (form == 1) {
    std::set<std::string> below;
    from.model.reach(roots[0], below);
    const Texts candidates(below.begin(), below.end());
    const std::string key = candidates[operation.operand(2) % candidates.size()];
    const std::string type = from.model.terms.at(key).type();
    const auto image = choose_any(to.model, operation.operand(3), type.c_str());
    if (!image) return false;
    pairs.push_back({key, *image});
    replaced[from.held.at(key)] = to.held.at(*image);
  }

  Pointers copies;
  bool refused = false;
  try {
    if (form == 0) {
      copies.push_back(to.manager.copy_term(from.manager, terms[0]));
    } else if (form == 1) {
      copies.push_back(to.manager.copy_term_with_subst(from.manager, terms[0], replaced));
    } else {
      to.manager.copy_terms(from.manager, terms, copies, /*use_manager_marks=*/form == 2);
    }
  } catch (const TermManager::error&) {
    refused = true;
  }

  Texts expected;
  for (const std::string& root : roots) {
    const std::string text = to.model.copy(from.model, root, pairs);
    if (text.empty()) break;
    expected.push_back(text);
  }
  expect(refused == (expected.size() < roots.size()), "a copy, or none, against expectation");
  bind_made_terms(to);
  expect(copies == pointers(to.held, expected), "another copy than expected");
  return true;
}

// The operands: how many of a hundred terms are roots, how they are mixed, and the same numbers for
// the symbols and types of terms.
void Life::collect(Side& side, const Operation& operation) {
  Texts term_roots;
  Texts symbol_roots;
  Texts type_roots;
  Pointers terms;
  std::vector<const Symbol*> symbols;
  std::vector<const DataType*> types;
  size_t position = operation.operand(1);
  for (const auto& [text, term] : side.model.terms) {
    const Term_* t = side.held.at(text);
    position += 37;
    if (position % 101 < operation.operand(0)) {
      term_roots.push_back(text);
      terms.push_back(t);
    }
    if (position * 3 % 101 < operation.operand(2)) {
      symbol_roots.push_back(term.head.symbol);
      symbols.push_back(t->symbol);
    }
    if (position * 5 % 101 < operation.operand(3)) {
      type_roots.push_back(term.type());
      types.push_back(t->symbol->get_output_type());
    }
  }

  const size_t terms_before = side.model.terms.size();
  const size_t symbols_before = side.model.symbols.size();
  const size_t types_before = side.model.types.size();
  const uint64_t generation = side.manager.gc_generation();
  side.manager.gc(terms, symbols, types);

  Model::Terms freed;
  side.model.collect(term_roots, symbol_roots, type_roots, freed);
  for (auto& [text, term] : freed) {
    side.held.erase(text);
    side.buried[text] = std::move(term);
  }
  check_all(side);
  const TermManager::CollectionStatistics& statistics = side.manager.get_last_collection();
  expect(statistics.terms == terms_before - side.model.terms.size() &&
             statistics.symbols == symbols_before - side.model.symbols.size() &&
             statistics.types == types_before - side.model.types.size(),
         "other numbers of what was freed");
  expect(side.manager.gc_generation() == generation + 1, "the collection was not counted");
}

std::string live(const Trace& trace, std::map<std::string, size_t>* performed) {
  Life life;
  for (size_t i = 0; i < trace.size(); i++) {
    try {
      life.perform(trace[i]);
    } catch (const std::exception& failure) {
      return "operation " + std::to_string(i + 1) + " (" + trace[i].to_str() +
             "): " + failure.what();
    }
  }
  if (performed != nullptr) *performed = life.performed();
  return "";
}

}  // namespace quill::life
