// What a manager must hold, as texts. The model uses no part of the library.
//
// A type is its printed form, a symbol its name, a term its name followed by the texts of its
// arguments, all between parentheses. The model assigns ids as the manager must assign them: the
// lowest free id first, in the order in which a walk finishes terms, the last argument before the
// others.

#ifndef TESTS_LIFE_MODEL_H
#define TESTS_LIFE_MODEL_H

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "tests/life/pattern.h"

namespace quill::life {

// The text of a term.
std::string compose(const std::string& symbol, const Texts& arguments);

// Whether the operation of this name makes numerals.
bool is_numeral(const std::string& operation);

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
  using Images = std::map<std::string, std::string>;  // of terms
  // Asks for a term of a symbol that is there.
  using Request = std::function<std::string(const Head& head, const Texts& arguments)>;

  // Holds what every manager holds from the start.
  Model();

  // A request for the symbol of this head, which is made if it is not there.
  void declare(const Head& head);

  // Puts the term of a symbol that is there into the bank.
  std::string add(const Head& head, const Texts& arguments);

  // Both.
  std::string make(const Head& head, const Texts& arguments);

  // A symbol on trial is one that its first request has made: if that request is refused, the
  // symbol is removed, with its type, unless another request was given it or a term was built with
  // it.
  void begin_trial(const Head& head);
  void end_trial(bool kept);

  // A fresh variable, or the empty text when its name is taken.
  std::string make_fresh(const std::string& type);

  // Rebuilds a term from the images of its arguments, which it adds to the images given.
  std::string substitute(const std::string& text, Images& images, const Request& request);
  std::string substitute(const std::string& text, const Pairs& pairs);

  // The copy of a term of the source, the same way.
  std::string copy(const Model& source, const std::string& text, Images& copies,
                   const Request& request);
  // The copy, or the empty text when it can't be made because a symbol of the same name has another
  // type here. What is made before stays.
  std::string copy(const Model& source, const std::string& text, const Pairs& replaced);

  // Frees what can't be reached from the terms, symbols and types named. The terms freed are
  // appended to `freed`.
  void collect(const Texts& term_roots, const Texts& symbol_roots, const Texts& type_roots,
               Terms& freed);

  // The terms that are not too long to be an operand, by type.
  const std::map<std::string, Texts>& operands() const { return by_type; }

  // All terms at or below one.
  void reach(const std::string& text, std::set<std::string>& reached) const;

  // Whether the types of the arguments are those that the head's symbol takes.
  bool may_head(const Head& head, const Texts& arguments) const;

  Terms terms;
  std::map<std::string, std::string> symbols;  // the type of each
  std::set<std::string> types;
  Texts made;  // the terms made since this was last cleared
  unsigned next_fresh = 1;

 private:
  void keep_symbol(const std::string& name, const std::string& type);
  void keep_type(const std::string& type);
  void list_operand(const std::string& text, const ModelTerm& term);

  struct Trial {
    std::string symbol;
    std::string type;
    bool has_new_type;
    bool is_needed;
  };
  void note_given(const std::string& symbol);

  std::map<std::string, Texts> by_type;
  std::vector<bool> used_ids;
  std::vector<Trial> trials;  // from the outermost one to the innermost
};

}  // namespace quill::life

#endif
