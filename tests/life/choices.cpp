#include "tests/life/choices.h"

#include <set>
#include <utility>
#include <vector>

namespace quill::life {

namespace {

const Texts fresh_types = {"Bool", "Int", "Real", "(BitVec 8)", "(FP |3:4|)", "S0"};

// An operand of a type that fits the pattern, or none. Binds the letters of the pattern.
std::optional<std::string> choose(const Model& model, const std::string& pattern, size_t number,
                                  Bindings& bindings) {
  std::vector<const Texts*> groups;
  std::vector<Bindings> bound;
  size_t count = 0;
  for (const auto& [type, texts] : model.operands()) {
    Bindings trial = bindings;
    if (!match(pattern, type, trial)) continue;
    groups.push_back(&texts);
    bound.push_back(trial);
    count += texts.size();
  }
  if (count == 0) return std::nullopt;
  size_t index = number % count;
  size_t group = 0;
  while (index >= groups[group]->size()) index -= groups[group++]->size();
  bindings = bound[group];
  return (*groups[group])[index];
}

// Any operand, or one of a type or a subtype of it.
std::optional<std::string> choose_any(const Model& model, size_t number, const char* type = "") {
  Texts texts;
  for (const auto& [present, group] : model.operands()) {
    if (*type == '\0' || is_subtype(present, type)) {
      texts.insert(texts.end(), group.begin(), group.end());
    }
  }
  if (texts.empty()) return std::nullopt;
  return texts[number % texts.size()];
}

// A term at or below the root.
std::string choose_below(const Model& model, const std::string& root, size_t number) {
  std::set<std::string> below;
  model.reach(root, below);
  const Texts candidates(below.begin(), below.end());
  return candidates[number % candidates.size()];
}

}  // namespace

Task build_task(const Models& models, size_t manager, const Head& head, const Texts& arguments) {
  const Operator* op = find_operator(head.operation);
  bool by_builder = op != nullptr;
  if (by_builder) {
    Bindings bindings = head.bindings;
    const Texts patterns = op->operand_types();
    for (size_t i = 0; i < patterns.size(); ++i) {
      const std::string type = models[manager].terms.at(arguments[i]).type();
      by_builder = by_builder && match(patterns[i], type, bindings);
    }
  }
  Task task;
  task.kind = Task::Build;
  task.manager = manager;
  task.head = head;
  task.arguments = arguments;
  task.by_builder = by_builder;
  return task;
}

std::optional<Task> choose_build(const Models& models, size_t manager, const Operator& op,
                                 const Operands& operand) {
  Bindings bindings;
  const auto choose_parameters = [&] {
    for (size_t i = 0; i < op.parameters.size(); ++i) {
      const auto& [letter, low, bound] = op.parameters[i];
      if (bindings.count(letter) != 0 || !is_bound(bound, bindings)) continue;
      const long first = value_of(low, bindings);
      const auto choices = static_cast<size_t>(value_of(bound, bindings) - first);
      bindings[letter] = std::to_string(static_cast<size_t>(first) + operand(i) % choices);
    }
  };
  choose_parameters();
  Texts arguments;
  for (const std::string& pattern : op.operand_types()) {
    const size_t number = operand(op.parameters.size() + arguments.size());
    const auto argument = choose(models[manager], pattern, number, bindings);
    if (!argument) return std::nullopt;
    arguments.push_back(*argument);
  }
  choose_parameters();  // those that depend on the operands
  const Head head = {fill(op.symbol, bindings), fill(op.type, bindings), op.name, bindings};
  return build_task(models, manager, head, arguments);
}

std::optional<Task> choose_fresh(size_t manager, const Operands& operand) {
  Task task;
  task.kind = Task::Fresh;
  task.manager = manager;
  task.type = fresh_types[operand(0) % fresh_types.size()];
  return task;
}

std::optional<Task> choose_substitution(const Models& models, size_t manager,
                                        const Operands& operand) {
  const Model& model = models[manager];
  const std::string root = *choose_any(model, operand(0));
  Task task;
  task.kind = Task::Substitute;
  task.manager = manager;
  task.roots = {root};
  task.form = operand(1) % 3;
  for (size_t i = 0; i <= operand(1) % 2; ++i) {
    const std::string key = choose_below(model, root, operand(2 + 2 * i));
    const std::string type = model.terms.at(key).type();
    const auto image = choose_any(model, operand(3 + 2 * i), type.c_str());
    if (!image) return std::nullopt;
    task.pairs.push_back({key, *image});
  }
  return task;
}

std::optional<Task> choose_copy(const Models& models, size_t from, const Operands& operand) {
  const Model& source = models[from];
  Task task;
  task.kind = Task::Copy;
  task.manager = 1 - from;
  task.form = operand(0) % 4;
  const size_t count = task.form < 2 ? 1 : 1 + operand(0) % 3;
  for (size_t i = 0; i < count; ++i) task.roots.push_back(*choose_any(source, operand(1 + i)));
  if (task.form == 1) {
    const std::string key = choose_below(source, task.roots[0], operand(2));
    const std::string type = source.terms.at(key).type();
    const auto image = choose_any(models[task.manager], operand(3), type.c_str());
    if (!image) return std::nullopt;
    task.pairs.push_back({key, *image});
  }
  return task;
}

std::optional<Task> choose_walk(const Models& models, size_t manager, const Operands& operand) {
  Task task;
  task.kind = Task::Walk;
  task.manager = manager;
  task.roots = {*choose_any(models[manager], operand(0))};
  task.form = operand(1) % 3;
  return task;
}

std::optional<std::string> choose_of_type(const Model& model, size_t number,
                                          const std::string& type) {
  const auto group = model.operands().find(type);
  if (group == model.operands().end()) return std::nullopt;
  return group->second[number % group->second.size()];
}

}  // namespace quill::life
