// The result of a task, computed on the models: each call that a manager will make to a delegate,
// to an overridden make_term or to the callback of a walk, the reaction to it, and the outcome.
//
// A plan is a list of numbers. Each call, in the order of the calls, takes the next number, which
// chooses the reaction. The number 0, or the end of the plan, lets the caller go on. Reactions
// include tasks, which make further calls.

#ifndef TESTS_LIFE_FORESIGHT_H
#define TESTS_LIFE_FORESIGHT_H

#include <array>
#include <cstddef>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "tests/life/choices.h"
#include "tests/life/task.h"

namespace quill::life {

using Plan = std::vector<size_t>;

// Who is called by the requests that a manager gets.
struct Called {
  bool overridden_make_term = false;
  bool delegate = false;
};

class Foresight {
 public:
  // The models are brought to the state after the tasks.
  Foresight(Models& of_managers, std::array<Called, 2> by_managers, Plan plan_of_reactions)
      : models(of_managers), called(by_managers), plan(std::move(plan_of_reactions)) {}

  Outcome run(const Task& task);

  // In the order in which the calls begin.
  const std::vector<Step>& get_steps() const { return steps; }

 private:
  std::string build(const Task& task);
  void copy(const Task& task, Texts& results);
  bool walk(const Task& task, const std::string& text, std::set<std::string>& done);
  std::string request(size_t manager, const Head& head, const Texts& arguments);

  Reaction react(const Event& event, const Head& head);
  Reaction choose_reaction(const Event& event, const Head& head, size_t choice);
  std::optional<Task> choose_task(size_t manager, size_t choice);

  Models& models;
  const std::array<Called, 2> called;
  const Plan plan;
  std::array<bool, 2> checks = {true, true};  // whether a manager checks the types of arguments
  size_t planned = 0;                         // how many numbers of the plan are used up
  size_t depth = 0;                           // of reactions
  std::vector<Step> steps;
};

// The kinds of reactions, as they are counted.
Texts kinds_of_reactions();
Texts kinds_of(const Step& step);

}  // namespace quill::life

#endif
