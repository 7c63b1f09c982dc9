// Every operator that has a family of symbols: what its symbol and its builder must be for sample
// parameters, and every way in which the builder refuses its arguments. Also a manager to build
// with.

#ifndef TESTS_SUPPORT_OPERATOR_ROWS_H
#define TESTS_SUPPORT_OPERATOR_ROWS_H

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include "quill/terms/termmanager/term_manager.h"
#include "tests/support/operators.h"

namespace quill::testing {

// What a failed builder leaves: its own check comes before the symbol, the typecheck after it.
enum Leaves { nothing_made, symbol_made };

struct Failure {
  Names args;
  const char* message;
  Leaves leaves;
};

struct Row {
  const char* operation;
  const char* name;  // of the symbol, without the backquotes around it
  int tag;
  const char* type;
  uint64_t arity;
  std::function<const Symbol*(TermManager&)> make_symbol;
  std::function<const Term_*(TermManager&, const Terms&)> build;
  Recogniser recognise;
  Names outputs;
  Names args;  // of the builder; the last of them, as many as the arity, are those of the term
  std::vector<Failure> failures;
};

// So that a failed test names its operator in a line.
inline void PrintTo(const Row& row, std::ostream* out) { *out << row.operation; }

// In the order of the tags, from 13 to 71.
const std::vector<Row>& operator_rows();

// A constant of each kind that the table builds with.
class Operands {
 public:
  explicit Operands(TermManager& manager) : m(manager) {
    const DataType* bv8 = m.get_bv_type(8);
    const DataType* single = m.get_fp_type(8, 23);
    add("x8", bv8);
    add("y8", bv8);
    add("x4", m.get_bv_type(4));
    add("x32", m.get_bv_type(32));
    add("i", m.get_int_type());
    add("j", m.get_int_type());
    add("r", m.get_rat_type());
    add("p", m.get_bool_type());
    add("rm", m.get_fprounding_type());
    add("f", single);
    add("g", single);
    add("h", m.get_fp_type(11, 52));
    add("a", m.get_array_type(m.get_int_type(), m.get_rat_type()));
  }

  Terms terms(const Names& names) const {
    Terms result;
    for (const std::string& name : names) result.push_back(constants.at(name));
    return result;
  }

 private:
  void add(const char* name, const DataType* type) {
    constants[name] = m.make_constant(m.make_symbol(name, type));
  }

  TermManager& m;
  std::map<std::string, const Term_*> constants;
};

// A manager with these constants.
class Bench {
 public:
  explicit Bench(std::unique_ptr<TermManager> manager = std::make_unique<TermManager>())
      : owner(std::move(manager)), m(*owner), operands(m) {}

  Terms terms(const Names& names) const { return operands.terms(names); }

 private:
  std::unique_ptr<TermManager> owner;

 public:
  TermManager& m;

 private:
  Operands operands;
};

}  // namespace quill::testing

#endif
