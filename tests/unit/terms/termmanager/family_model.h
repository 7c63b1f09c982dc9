// A model of the builders of operators, equalities and numerals that knows terms by the names of
// their symbols and the ids of their arguments.
//
// It computes the outcome of a call from texts alone: the term's symbol and id, or the refusal's
// class and text, and the numbers of types, symbols and terms afterwards. Users may take the names
// of symbols before the builders ask for them.

#ifndef QUILL_TESTS_UNIT_TERMS_TERMMANAGER_FAMILY_MODEL_H
#define QUILL_TESTS_UNIT_TERMS_TERMMANAGER_FAMILY_MODEL_H

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "quill/terms/termmanager/term_manager.h"
#include "quill/utils/qnumber.h"
#include "tests/support/operators.h"

namespace quill::testing {

// What a builder may be called with; each takes what it needs.
struct Request : Parameters {
  Terms t;
};

// How a builder comes from its arguments to its symbol.
enum class Shape {
  BvSame,    // (bv(w), ...) -> bv(w)
  BvBool,    // (bv(w), bv(w)) -> Bool
  BvBit,     // (bv(w), bv(w)) -> bv(1)
  BvInt,     // (bv(w)) -> Int
  IntToBv,   // (Int) -> bv(n)
  Concat,    // (bv(w1), bv(w2)) -> bv(w1 + w2)
  Extract,   // (bv(w)) -> bv(n0 - n1 + 1)
  Rotate,    // (bv(w)) -> bv(w)
  Extend,    // (bv(w)) -> bv(w + n)
  Read,      // (Array(i, e), i) -> e
  Write,     // (Array(i, e), i, e) -> Array(i, e)
  Const,     // (e) -> Array(i, e)
  FpSame,    // (F, ...) -> F
  FpBool,    // (F, ...) -> Bool
  FpRound,   // (RM, F, ...) -> F
  Cast,      // (RM, F) -> F(n0, n1)
  FromBv,    // (RM, bv(w)) -> F(n0, n1)
  ToBv,      // (RM, F) -> bv(n)
  AsBits,    // (F(e, m)) -> bv(e + m + 1)
  FromBits,  // (bv(n0 + n1 + 1)) -> F(n0, n1)
  Modulus,   // (Int, Int) -> Bool
  Equal,     // (T, T) -> Bool
  Ite,       // (Bool, T, T) -> T
  Number,    // Int or Real
  BvNumber,  // bv(n0)
  FpNumber,  // F(n0, n1)
};

struct ModelOperator {
  const char* operation;
  const char* base;  // of the name, with all that comes before the first number
  Shape shape;
  uint64_t arity;
  const char* complaint;
  std::function<const Term_*(TermManager&, const Request&)> call;
};

const std::vector<ModelOperator>& model_operators();

enum class Kind { Bool, Int, Real, Rounding, Bv, Fp, Array };

struct Type {
  Kind kind;
  size_t a = 0;  // width, or exponent
  size_t b = 0;  // significand
  std::string index;
  std::string element;
};

struct ModelTerm {
  const Term_* real;
  std::string type;
  std::string shallow;  // its text in messages
  bool is_constant;
};

struct Refusal {
  std::string text;
  bool of_manager;       // TermManager::error, or else its base
  bool goes_on = false;  // the text is only the beginning of the message
};

class Model {
 public:
  // Types. Each is entered with those that it is made of.
  const std::string& simple(const std::string& text, Kind kind);
  const std::string& bv(size_t w);
  const std::string& fp(size_t e, size_t m);
  const std::string& array(const std::string& index, const std::string& element);
  // A function type, which has no kind.
  std::string function(const std::vector<std::string>& args, const std::string& result);
  const Type& type(const std::string& text) const { return known.at(text); }

  // The outcome of a call: the name of the term's symbol and the term's id. Throws Refusal, and has
  // then changed nothing, except that the symbol of an operator stays when its operands are refused
  // in the end.
  struct Outcome {
    std::string name;
    std::string type;
    uint64_t id;
  };
  Outcome call(const ModelOperator& op, const Request& request, const std::string& type_argument,
               const std::vector<ModelTerm>& t);

  // The name of the symbol that the call would enter among those of its operator, whether a symbol
  // has the name or not; nothing when it enters none or is refused before.
  std::optional<std::string> name_to_make(const ModelOperator& op, const Request& request,
                                          const std::string& type_argument,
                                          const std::vector<ModelTerm>& t);

  // A symbol that is there from the start.
  void add_standard_symbol(const std::string& name, const std::vector<std::string>& args,
                           const std::string& result);

  // A name given to a user symbol of this type, or taken away from any symbol.
  void take_name(const std::string& name, const std::string& type_text);
  bool is_taken(const std::string& name) const { return names.count(name) != 0; }
  void free_name(const std::string& name) { names.erase(name); }

  // The symbols of operators that have been asked for, by name without backquotes.
  struct Symbol {
    std::vector<std::string> args;
    std::string result;
  };
  const std::map<std::string, Symbol>& operator_symbols() const { return made; }

  bool checks = true;
  std::set<std::string> types;
  uint64_t num_symbols = 0;
  uint64_t num_terms = 0;  // and the next id

 private:
  // What is entered in the signature. The serial number tells symbols apart that had one name.
  struct Named {
    std::string type;
    uint64_t serial;
  };

  const std::string& enter(const std::string& text, const Type& type);
  void add_type(const std::string& text);
  void forget_new_types();
  const Type& require(Kind kind, const ModelTerm& t, const ModelOperator& op) const;
  template <class MakeTypes>
  std::string symbol(const std::string& name, MakeTypes make_types);
  std::string request_symbol(const ModelOperator& op, const Request& request,
                             const std::string& type_argument, const std::vector<ModelTerm>& t);
  const Named& numeral_symbol(const std::string& name, const std::string& type);
  Outcome numeral(const ModelOperator& op, const Request& request);
  void require_bits(const QNumber& value, size_t bits, const char* kind) const;
  uint64_t term(uint64_t serial, const std::vector<uint64_t>& args);

  std::map<std::string, Type> known;
  std::vector<std::string> new_types;  // since the call began
  std::map<std::string, Named> names;
  std::map<std::string, Symbol> made;
  std::map<std::string, Outcome> numbers;  // by value
  std::map<std::pair<uint64_t, std::vector<uint64_t>>, uint64_t> terms;
  bool only_names = false;  // throws NameToMake where a symbol would be made
};

}  // namespace quill::testing

#endif
