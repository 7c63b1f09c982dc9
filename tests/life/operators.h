// The operators that a random life may ask for, each with the name and type of its symbol as
// patterns. This table is independent of the library's.

#ifndef TESTS_LIFE_OPERATORS_H
#define TESTS_LIFE_OPERATORS_H

#include <functional>
#include <string>
#include <vector>

#include "quill/terms/termmanager/term_manager.h"
#include "tests/life/model.h"
#include "tests/life/pattern.h"

namespace quill::life {

// A number that a request chooses: at least low and below bound, which are sums.
struct Parameter {
  char letter;
  const char* low;
  const char* bound;
};

using Arguments = std::vector<const Term_*>;

// What a builder is called with: numbers and the name by the letters of the row.
class Request {
 public:
  explicit Request(const Head& what) : head(what) {}
  size_t number(char letter) const { return std::stoul(head.bindings.at(letter)); }
  const std::string& name() const { return head.symbol; }
  const std::string& type() const { return head.type; }
  const std::string& bound(char letter) const { return head.bindings.at(letter); }

 private:
  const Head& head;
};

using Build =
    std::function<const Term_*(TermManager& m, const Request& request, const Arguments& t)>;

struct Operator {
  const char* name;
  const char* symbol;
  const char* type;
  Build build;
  std::vector<Parameter> parameters;
  Texts operands = {};  // the types asked for, if not those that the symbol takes

  Texts operand_types() const;
};

const std::vector<Operator>& all_operators();

// The operator of this name, or null.
const Operator* find_operator(const std::string& name);

// The type of this text.
const DataType* make_type(TermManager& m, const std::string& text);

}  // namespace quill::life

#endif
