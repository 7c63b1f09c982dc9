// Lives a trace: two managers, each beside its model, and what must be the same after every
// operation.

#ifndef TESTS_LIFE_LIFE_H
#define TESTS_LIFE_LIFE_H

#include <array>
#include <map>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

#include "quill/terms/termmanager/term_manager.h"
#include "tests/life/model.h"
#include "tests/life/operators.h"
#include "tests/life/trace.h"

namespace quill::life {

bool is_operation(const std::string& name);
Texts operation_names();

// What a manager did that its model does not say.
class Disagreement : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

class Life {
 public:
  Life();

  // What has no operand to choose from does nothing. Throws Disagreement.
  void perform(const Operation& operation);

  // How often each kind of operation did something, by its name.
  const std::map<std::string, size_t>& performed() const { return counts; }

 private:
  struct Side {
    TermManager manager;
    Model model;
    std::map<std::string, const Term_*> held;  // the term of each text
    Model::Terms buried;                       // what was collected, by text
    unsigned next_fresh = 1;
  };

  bool apply(Side& side, const Operator& op, const Operation& operation);
  bool make_fresh(Side& side, const Operation& operation);
  bool substitute(Side& side, const Operation& operation);
  bool copy(Side& from, Side& to, const Operation& operation);
  bool make_again(Side& side, const Operation& operation);
  void collect(Side& side, const Operation& operation);

  bool can_make_again(Side& side, const std::string& text, std::set<std::string>& seen);
  std::string make_buried(Side& side, const std::string& text);
  void build(Side& side, const Head& head, const Texts& arguments);
  void bind_made_terms(Side& side);
  void check_sizes(const Side& side) const;
  void check_all(const Side& side) const;

  std::array<Side, 2> sides;
  std::map<std::string, size_t> counts;
};

// The whole of a trace. Returns what went wrong at which operation, or the empty text.
std::string live(const Trace& trace, std::map<std::string, size_t>* performed = nullptr);

}  // namespace quill::life

#endif
