// Runs a trace on two managers, each with its model, and compares them after every operation.
//
// Manager 0 is a plain one, manager 1 is of a class that overrides make_term; both get a delegate
// for operations that come with a plan. The models first foresee every callback; then the managers
// are asked for the same, and each call must come as foreseen.

#ifndef TESTS_LIFE_LIFE_H
#define TESTS_LIFE_LIFE_H

#include <array>
#include <map>
#include <memory>
#include <set>
#include <stdexcept>
#include <string>
#include <unordered_map>
#include <vector>

#include "quill/terms/termmanager/term_manager.h"
#include "tests/life/choices.h"
#include "tests/life/foresight.h"
#include "tests/life/model.h"
#include "tests/life/operators.h"
#include "tests/life/task.h"
#include "tests/life/trace.h"

namespace quill::life {

bool is_operation(const std::string& name);
Texts operation_names();

// Thrown when a manager does something else than its model.
class Disagreement : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

class Life {
 public:
  Life();
  ~Life();

  // An operation that has no operand to choose from does nothing. Throws Disagreement.
  void perform(const Operation& operation);

  // How often each kind of operation did something, and each kind of reaction was seen, by name.
  const std::map<std::string, size_t>& performed() const { return counts; }

  // How many calls the managers got, and made.
  size_t num_calls() const { return calls; }

 private:
  class OverridingManager;
  class AskedDelegate;
  class WalkCallback;

  struct Side {
    std::unique_ptr<AskedDelegate> delegate;
    std::unique_ptr<TermManager> manager;
    std::map<std::string, const Term_*> held;             // the term of each text
    std::unordered_map<const Term_*, std::string> texts;  // and back
    Model::Terms buried;                                  // what was collected, by text
    std::vector<bool> marks;                              // lent to substitutions
  };

  void do_task(const Task& task);
  bool do_task(const std::optional<Task>& task);
  void collect(size_t number, const Operation& operation);
  bool make_again(size_t number, const Operation& operation);
  bool can_make_again(size_t number, const std::string& text, std::set<std::string>& seen);
  void make_buried(size_t number, const std::string& text, const Plan& plan_of_root);

  Outcome carry_out(const Task& task);
  const Term_* build(const Task& task);
  std::string substitute(const Task& task, Model::Images& images);
  void copy(const Task& task, Texts& results);
  void walk(const Task& task);
  const Reaction& react(const Event& event);

  const Term_* find(size_t number, const std::string& text);
  std::vector<const Term_*> find(size_t number, const Texts& texts);
  std::string text_of(size_t number, const Term_* t) const;
  Texts texts_of(size_t number, const std::vector<const Term_*>& terms) const;

  void bind(size_t number, const std::string& text, const Term_* t);
  void bind_made_terms(size_t number);
  void check_sizes(size_t number) const;
  void check_all(size_t number) const;

  Models models;
  std::array<Side, 2> sides;
  // For the next operation: whose delegates are asked, as bits, and then the plan of the reactions.
  Plan within;
  // What was foreseen of the task under way, and how much of it has happened.
  std::vector<Step> steps;
  size_t next_step = 0;
  std::map<std::string, size_t> counts;
  size_t calls = 0;
};

// The whole of a trace. Returns what went wrong at which operation, or the empty text.
struct Summary {
  std::map<std::string, size_t> performed;
  size_t calls = 0;
};
std::string live(const Trace& trace, Summary* summary = nullptr);

}  // namespace quill::life

#endif
