// What a manager must hold, as texts: no part of the library is used.
//
// A type is its printed form, a symbol its name, a term its name followed by the texts of its
// arguments, all between parentheses. Ids are given as the manager must give them, the lowest free
// one first, in the order in which a walk finishes terms: the last argument before the others.

#ifndef TESTS_LIFE_MODEL_H
#define TESTS_LIFE_MODEL_H

#include <cstddef>
#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "tests/life/pattern.h"

namespace quill::life {

// A symbol, and the request that yields it.
struct Head {
  std::string symbol;
  std::string type;       // of the symbol
  std::string operation;  // the name of the operator that was asked for
  Bindings bindings;      // its parameters
};

struct ModelTerm {
  Head head;
  Texts arguments;
  uint64_t id;

  std::string type() const { return result_of(head.type); }
};

class Model {
 public:
  using Terms = std::map<std::string, ModelTerm>;  // by text
  using Pairs = std::vector<std::pair<std::string, std::string>>;

  // Holds what every manager holds from the start.
  Model();

  // The term of this head and these arguments; the head's symbol, if it is there, has this type.
  std::string make(const Head& head, const Texts& arguments);

  // Each first text of the pairs replaced by the second one; the last of the pairs counts.
  std::string substitute(const std::string& text, const Pairs& pairs);

  // The copy of a term of the source, or the empty text when it can't be made because a symbol of
  // the same name has another type here. What is made before stays.
  std::string copy(const Model& source, const std::string& text, const Pairs& replaced);

  // Frees what can't be reached from the terms, symbols and types named. The terms freed are
  // appended to `freed`.
  void collect(const Texts& term_roots, const Texts& symbol_roots, const Texts& type_roots,
               Terms& freed);

  // The terms that are not too long to be an operand, by type.
  const std::map<std::string, Texts>& operands() const { return by_type; }

  // A type that was asked for, with all that it is made of.
  void note_type(const std::string& type) { keep_type(type); }

  // All terms at or below one.
  void reach(const std::string& text, std::set<std::string>& reached) const;

  // Whether the types of the arguments are those that the head's symbol takes.
  bool may_head(const Head& head, const Texts& arguments) const;

  Terms terms;
  std::map<std::string, std::string> symbols;  // the type of each
  std::set<std::string> types;
  Texts made;  // the terms made since this was last cleared

 private:
  void keep_symbol(const std::string& name, const std::string& type);
  void keep_type(const std::string& type);
  void list_operand(const std::string& text, const ModelTerm& term);

  std::map<std::string, Texts> by_type;
  std::vector<bool> used_ids;
};

}  // namespace quill::life

#endif
