#include "tests/life/foresight.h"

#include <cstdint>
#include <map>

#include "quill/utils/scope_guard.h"

namespace quill::life {

namespace {

constexpr size_t deepest = 3;

struct RequestRefused {};
struct SomebodyThrew {};

// The first request of these makes a symbol that is removed if the request is refused.
bool is_on_trial(const std::string& operation) {
  return operation == "equal" || operation == "ite" || operation == "ite_mixed";
}

// Builders that put their term into the bank themselves, and those that have theirs.
bool asks_nobody(const std::string& operation) {
  return is_numeral(operation) || operation == "true" || operation == "false";
}

// Numbers that follow from another one.
size_t derived(size_t choice, size_t i) {
  uint64_t x = (choice + 1) * uint64_t{0x9e3779b97f4a7c15} + i * uint64_t{0xbf58476d1ce4e5b9};
  x ^= x >> 29;
  x *= uint64_t{0x94d049bb133111eb};
  return static_cast<size_t>(x >> 33);
}

const std::map<Task::Kind, std::string> task_names = {{Task::Build, "builds"},
                                                      {Task::Fresh, "makes a fresh variable"},
                                                      {Task::Substitute, "substitutes"},
                                                      {Task::Copy, "copies"},
                                                      {Task::Walk, "walks"}};

const std::map<Event::Place, std::string> place_names = {{Event::BeforeBuilding, "before building"},
                                                         {Event::Delegate, "delegate"},
                                                         {Event::AfterBuilding, "after building"},
                                                         {Event::PreVisit, "pre-visit"},
                                                         {Event::PostVisit, "post-visit"}};

const std::map<Reaction::Then, std::string> then_names = {
    {Reaction::GoOn, "goes on"},        {Reaction::GoOnWithCopy, "goes on with a copy"},
    {Reaction::Plain, "builds itself"}, {Reaction::Answer, "answers"},
    {Reaction::LeaveOut, "leaves out"}, {Reaction::Stop, "stops"},
    {Reaction::Throw, "throws"}};

// What one may do in a place, after a task or without one; each as often as it is to be chosen.
const std::map<Event::Place, std::vector<Reaction::Then>> choices_of_then = {
    {Event::BeforeBuilding,
     {Reaction::GoOn, Reaction::GoOn, Reaction::GoOnWithCopy, Reaction::Plain, Reaction::Answer,
      Reaction::Throw}},
    {Event::Delegate,
     {Reaction::GoOn, Reaction::GoOn, Reaction::GoOn, Reaction::Plain, Reaction::Answer,
      Reaction::Throw}},
    {Event::AfterBuilding, {Reaction::GoOn, Reaction::GoOn, Reaction::Answer, Reaction::Throw}},
    {Event::PreVisit,
     {Reaction::GoOn, Reaction::GoOn, Reaction::LeaveOut, Reaction::Stop, Reaction::Throw}},
    {Event::PostVisit, {Reaction::GoOn, Reaction::GoOn, Reaction::Stop, Reaction::Throw}}};

}  // namespace

Outcome Foresight::run(const Task& task) {
  Outcome outcome;
  try {
    switch (task.kind) {
      case Task::Build:
        outcome.results.push_back(build(task));
        break;
      case Task::Fresh: {
        const std::string name = models[task.manager].make_fresh(task.type);
        if (name.empty()) throw RequestRefused();
        outcome.results.push_back(name);
        break;
      }
      case Task::Substitute: {
        Model::Images images;
        for (const auto& [from, to] : task.pairs) images[from] = to;
        const auto note_images = [&] {
          if (task.form != 2) outcome.images = images;
        };
        // Also for the callbacks.
        const ScopedValue<bool> checking(checks[task.manager], task.form == 0);
        try {
          outcome.results.push_back(models[task.manager].substitute(
              task.roots[0], images, [&](const Head& head, const Texts& arguments) {
                return request(task.manager, head, arguments);
              }));
        } catch (...) {
          note_images();
          throw;
        }
        note_images();
        break;
      }
      case Task::Copy:
        copy(task, outcome.results);
        break;
      case Task::Walk: {
        std::set<std::string> done;
        walk(task, task.roots[0], done);
        break;
      }
    }
  } catch (const RequestRefused&) {
    outcome.end = Outcome::Refused;
  } catch (const SomebodyThrew&) {
    outcome.end = Outcome::Thrown;
  }
  return outcome;
}

std::string Foresight::build(const Task& task) {
  Model& model = models[task.manager];
  const Head& head = task.head;
  if (!task.by_builder) {
    if (model.symbols.count(head.symbol) == 0) model.declare(head);
    return request(task.manager, head, task.arguments);
  }
  if (asks_nobody(head.operation)) return model.make(head, task.arguments);
  if (!is_on_trial(head.operation) || model.symbols.count(head.symbol) != 0) {
    model.declare(head);
    return request(task.manager, head, task.arguments);
  }
  model.begin_trial(head);
  try {
    const std::string text = request(task.manager, head, task.arguments);
    model.end_trial(/*kept=*/true);
    return text;
  } catch (...) {
    model.end_trial(/*kept=*/false);
    throw;
  }
}

// A term that roots share is copied for each of them.
void Foresight::copy(const Task& task, Texts& results) {
  Model& destination = models[task.manager];
  for (const std::string& root : task.roots) {
    Model::Images copies;
    for (const auto& [from, to] : task.pairs) copies[from] = to;
    results.push_back(destination.copy(models[1 - task.manager], root, copies,
                                       [&](const Head& head, const Texts& arguments) {
                                         return request(task.manager, head, arguments);
                                       }));
  }
}

// False when the walk is to stop.
bool Foresight::walk(const Task& task, const std::string& text, std::set<std::string>& done) {
  if (done.count(text) != 0) return true;
  const ModelTerm term = models[task.manager].terms.at(text);
  const Reaction before = react({Event::PreVisit, task.manager, text, {}}, term.head);
  if (before.then == Reaction::Stop) return false;
  if (before.then != Reaction::LeaveOut) {
    for (size_t i = term.arguments.size(); i-- > 0;) {
      if (!walk(task, term.arguments[i], done)) return false;
    }
  }
  const Reaction after = react({Event::PostVisit, task.manager, text, {}}, term.head);
  if (task.form != 0) done.insert(text);
  return after.then != Reaction::Stop;
}

std::string Foresight::request(size_t manager, const Head& head, const Texts& arguments) {
  Model& model = models[manager];
  Event event = {Event::BeforeBuilding, manager, head.symbol, arguments};
  if (called[manager].overridden_make_term) {
    const Reaction reaction = react(event, head);
    if (reaction.then == Reaction::Answer) return reaction.answer;
    if (reaction.then == Reaction::Plain) return model.add(head, arguments);
  }
  if (checks[manager] && !model.may_head(head, arguments)) throw RequestRefused();
  std::string text;
  if (called[manager].delegate) {
    event.place = Event::Delegate;
    const Reaction reaction = react(event, head);
    if (reaction.then == Reaction::Answer) text = reaction.answer;
  }
  if (text.empty()) text = model.add(head, arguments);  // by the delegate or by the manager
  if (called[manager].overridden_make_term) {
    event.place = Event::AfterBuilding;
    const Reaction reaction = react(event, head);
    if (reaction.then == Reaction::Answer) return reaction.answer;
  }
  return text;
}

Reaction Foresight::react(const Event& event, const Head& head) {
  const size_t position = steps.size();
  steps.push_back({event, {}});
  if (planned == plan.size() || depth == deepest) return {};
  const size_t choice = plan[planned++];
  if (choice == 0) return {};
  const Reaction reaction = choose_reaction(event, head, choice);
  steps[position].reaction = reaction;
  if (reaction.then == Reaction::Throw) throw SomebodyThrew();
  return reaction;
}

Reaction Foresight::choose_reaction(const Event& event, const Head& head, size_t choice) {
  Reaction reaction;
  const std::vector<Reaction::Then>& choices = choices_of_then.at(event.place);
  reaction.then = choices[derived(choice, 0) % choices.size()];
  if (derived(choice, 1) % 4 != 0) {
    const bool elsewhere = derived(choice, 2) % 6 == 0;
    reaction.task = choose_task(elsewhere ? 1 - event.manager : event.manager, choice);
  }
  if (reaction.task) {
    ++depth;
    reaction.foreseen = run(*reaction.task);
    --depth;
    // An exception that is thrown inside may propagate.
    if (reaction.foreseen.end == Outcome::Thrown && derived(choice, 3) % 2 == 0) {
      reaction.then = Reaction::Throw;
    }
  }
  const Model& model = models[event.manager];
  if (reaction.then == Reaction::Answer) {
    const auto answer = choose_of_type(model, derived(choice, 4), result_of(head.type));
    if (answer) {
      reaction.answer = *answer;
    } else {
      reaction.then = Reaction::GoOn;
    }
  }
  // Nobody has checked the arguments yet.
  if (reaction.then == Reaction::Plain && !model.may_head(head, event.arguments)) {
    reaction.then = Reaction::GoOn;
  }
  return reaction;
}

std::optional<Task> Foresight::choose_task(size_t manager, size_t choice) {
  const Operands operand = [choice](size_t i) { return derived(choice, 10 + i); };
  const size_t kind = derived(choice, 5) % 10;
  if (kind < 4) {
    const Operator& op = all_operators()[derived(choice, 6) % all_operators().size()];
    return choose_build(models, manager, op, operand);
  }
  if (kind == 4) return choose_fresh(manager, operand);
  if (kind < 7) return choose_substitution(models, manager, operand);
  if (kind < 9) return choose_copy(models, 1 - manager, operand);
  return choose_walk(models, manager, operand);
}

Texts kinds_of_reactions() {
  Texts kinds;
  for (const auto& [place, choices] : choices_of_then) {
    for (const Reaction::Then then : choices) {
      kinds.push_back(place_names.at(place) + " " + then_names.at(then));
    }
    for (const auto& [kind, name] : task_names) kinds.push_back(place_names.at(place) + " " + name);
  }
  return kinds;
}

Texts kinds_of(const Step& step) {
  const std::string place = place_names.at(step.event.place);
  const Reaction& reaction = step.reaction;
  Texts kinds = {place + " " + then_names.at(reaction.then)};
  if (reaction.task) kinds.push_back(place + " " + task_names.at(reaction.task->kind));
  return kinds;
}

}  // namespace quill::life
