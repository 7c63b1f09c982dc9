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

std::string compose(const std::string& symbol, const Texts& arguments) {
  if (arguments.empty()) return symbol;
  std::string text = "(" + symbol;
  for (const std::string& argument : arguments) text += " " + argument;
  return text + ")";
}

}  // namespace

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

std::string Model::make(const Head& head, const Texts& arguments) {
  const std::string text = compose(head.symbol, arguments);
  keep_symbol(head.symbol, head.type);
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

std::string Model::substitute(const std::string& text, const Pairs& pairs) {
  for (auto pair = pairs.rbegin(); pair != pairs.rend(); ++pair) {
    if (pair->first == text) return pair->second;
  }
  const ModelTerm term = terms.at(text);
  Texts images = term.arguments;
  for (size_t i = images.size(); i-- > 0;) images[i] = substitute(images[i], pairs);
  return make(term.head, images);
}

bool Model::may_head(const Head& head, const Texts& arguments) const {
  const Texts expected = components_of(head.type);
  if (arity_of(head.type) != arguments.size()) return false;
  for (size_t i = 0; i < arguments.size(); i++) {
    if (!is_subtype(terms.at(arguments[i]).type(), expected[i + 1])) return false;
  }
  return true;
}

std::string Model::copy(const Model& source, const std::string& text, const Pairs& replaced) {
  for (const auto& [from, to] : replaced) {
    if (from == text) return to;
  }
  const ModelTerm& original = source.terms.at(text);
  Texts images = original.arguments;
  for (size_t i = images.size(); i-- > 0;) {
    images[i] = copy(source, images[i], replaced);
    if (images[i].empty()) return "";
  }
  Head head = original.head;
  keep_symbol(head.symbol, head.type);
  head.type = symbols.at(head.symbol);
  if (!may_head(head, images)) return "";
  return make(head, images);
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
