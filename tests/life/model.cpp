#include "tests/life/model.h"

#include <algorithm>

namespace quill::life {

namespace {

constexpr size_t longest_operand = 160;

const Texts standard_types = {"->", "Bool", "Real", "Int", "Array", "BitVec", "FPRounding", "FP"};

const std::map<std::string, std::string> standard_symbols = {
    {"`true`", "Bool"},
    {"`false`", "Bool"},
    {"`not`", "(-> Bool Bool)"},
    {"`and`", "(-> Bool Bool Bool)"},
    {"`or`", "(-> Bool Bool Bool)"},
    {"`iff`", "(-> Bool Bool Bool)"},
    {"`+_rat`", "(-> Real Real Real)"},
    {"`*_rat`", "(-> Real Real Real)"},
    {"`<=_rat`", "(-> Real Real Bool)"},
    {"`=_rat`", "(-> Real Real Bool)"},
    {"`+_int`", "(-> Int Int Int)"},
    {"`*_int`", "(-> Int Int Int)"},
    {"`<=_int`", "(-> Int Int Bool)"},
    {"`=_int`", "(-> Int Int Bool)"},
    {"`floor`", "(-> Real Int)"},
    {"`fprounding_even`", "FPRounding"},
    {"`fprounding_zero`", "FPRounding"},
    {"`fprounding_plus_inf`", "FPRounding"},
    {"`fprounding_minus_inf`", "FPRounding"},
};

const Texts standard_terms = {"`true`", "`false`"};

}  // namespace

std::string compose(const std::string& symbol, const Texts& arguments) {
  if (arguments.empty()) return symbol;
  std::string text = "(" + symbol;
  for (const std::string& argument : arguments) text += " " + argument;
  return text + ")";
}

bool is_numeral(const std::string& operation) { return operation.rfind("number", 0) == 0; }

Model::Model() {
  for (const std::string& type : standard_types) keep_type(type);
  for (const auto& [name, type] : standard_symbols) keep_symbol(name, type);
  for (const std::string& name : standard_terms) make({name, "Bool", name, {}}, {});
  made.clear();
}

void Model::keep_type(const std::string& type) {
  if (!types.insert(type).second) return;
  for (const std::string& component : components_of(type)) keep_type(component);
}

void Model::keep_symbol(const std::string& name, const std::string& type) {
  if (symbols.insert({name, type}).second) keep_type(type);
}

void Model::list_operand(const std::string& text, const ModelTerm& term) {
  if (text.size() <= longest_operand) by_type[term.type()].push_back(text);
}

void Model::declare(const Head& head) {
  note_given(head.symbol);
  keep_symbol(head.symbol, head.type);
}

std::string Model::add(const Head& head, const Texts& arguments) {
  note_given(head.symbol);
  const std::string text = compose(head.symbol, arguments);
  if (terms.count(text) != 0) return text;
  uint64_t id = 0;
  while (id < used_ids.size() && used_ids[id]) id++;
  if (id == used_ids.size()) used_ids.push_back(false);
  used_ids[id] = true;
  const ModelTerm term{head, arguments, id};
  terms.insert({text, term});
  list_operand(text, term);
  made.push_back(text);
  return text;
}

std::string Model::make(const Head& head, const Texts& arguments) {
  declare(head);
  return add(head, arguments);
}

void Model::note_given(const std::string& symbol) {
  for (Trial& trial : trials) trial.is_needed = trial.is_needed || trial.symbol == symbol;
}

void Model::begin_trial(const Head& head) {
  const bool has_new_type = types.count(head.type) == 0;
  keep_symbol(head.symbol, head.type);
  trials.push_back({head.symbol, head.type, has_new_type, false});
}

void Model::end_trial(bool kept) {
  const Trial trial = trials.back();
  trials.pop_back();
  if (kept || trial.is_needed) return;
  symbols.erase(trial.symbol);
  if (!trial.has_new_type) return;
  for (const auto& [name, type] : symbols) {
    if (type == trial.type) return;
  }
  types.erase(trial.type);
}

std::string Model::make_fresh(const std::string& type) {
  keep_type(type);
  const std::string name = "'" + std::to_string(next_fresh++);
  return symbols.count(name) != 0 ? "" : make({name, type, "fresh", {}}, {});
}

std::string Model::substitute(const std::string& text, Images& images, const Request& request) {
  const auto known = images.find(text);
  if (known != images.end()) return known->second;
  const ModelTerm term = terms.at(text);
  Texts arguments = term.arguments;
  for (size_t i = arguments.size(); i-- > 0;) {
    arguments[i] = substitute(arguments[i], images, request);
  }
  const std::string image = request(term.head, arguments);
  images[text] = image;
  return image;
}

std::string Model::substitute(const std::string& text, const Pairs& pairs) {
  Images images;
  for (const auto& [from, to] : pairs) images[from] = to;
  return substitute(text, images, [&](const Head& head, const Texts& arguments) {
    return make(head, arguments);
  });
}

bool Model::may_head(const Head& head, const Texts& arguments) const {
  const Texts expected = components_of(head.type);
  if (arity_of(head.type) != arguments.size()) return false;
  for (size_t i = 0; i < arguments.size(); ++i) {
    if (!is_subtype(terms.at(arguments[i]).type(), expected[i + 1])) return false;
  }
  return true;
}

std::string Model::copy(const Model& source, const std::string& text, Images& copies,
                        const Request& request) {
  const auto known = copies.find(text);
  if (known != copies.end()) return known->second;
  const ModelTerm original = source.terms.at(text);
  Texts arguments = original.arguments;
  for (size_t i = arguments.size(); i-- > 0;) {
    arguments[i] = copy(source, arguments[i], copies, request);
  }
  Head head = original.head;
  const bool has_symbol = symbols.count(head.symbol) != 0;
  declare(head);
  head.type = symbols.at(head.symbol);
  // The symbol of a numeral is made as that of a term, whatever is then made of it. One that is
  // there may have lost its term.
  if (is_numeral(head.operation) && !has_symbol) add(head, {});
  const std::string result = request(head, arguments);
  copies[text] = result;
  return result;
}

std::string Model::copy(const Model& source, const std::string& text, const Pairs& replaced) {
  struct Refused {};
  Images copies;
  for (const auto& [from, to] : replaced) copies[from] = to;
  try {
    return copy(source, text, copies, [&](const Head& head, const Texts& arguments) {
      if (!may_head(head, arguments)) throw Refused();
      return make(head, arguments);
    });
  } catch (const Refused&) {
    return "";
  }
}

void Model::reach(const std::string& text, std::set<std::string>& reached) const {
  if (!reached.insert(text).second) return;
  for (const std::string& argument : terms.at(text).arguments) reach(argument, reached);
}

void Model::collect(const Texts& term_roots, const Texts& symbol_roots, const Texts& type_roots,
                    Terms& freed) {
  std::set<std::string> reached;
  for (const std::string& text : standard_terms) reach(text, reached);
  for (const std::string& text : term_roots) reach(text, reached);

  const std::map<std::string, std::string> symbols_before = std::move(symbols);
  symbols.clear();
  types.clear();
  for (const std::string& type : standard_types) keep_type(type);
  for (const auto& [name, type] : standard_symbols) keep_symbol(name, type);
  for (const std::string& text : reached) {
    const Head& head = terms.at(text).head;
    keep_symbol(head.symbol, head.type);
  }
  for (const std::string& name : symbol_roots) keep_symbol(name, symbols_before.at(name));
  for (const std::string& type : type_roots) keep_type(type);

  Terms kept;
  for (const auto& [text, term] : terms) (reached.count(text) != 0 ? kept : freed)[text] = term;
  terms = std::move(kept);
  by_type.clear();
  std::fill(used_ids.begin(), used_ids.end(), false);
  for (const auto& [text, term] : terms) {
    used_ids[term.id] = true;
    list_operand(text, term);
  }
}

}  // namespace quill::life
