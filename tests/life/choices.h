// Chooses what to ask for, with operands from the terms of the models.

#ifndef TESTS_LIFE_CHOICES_H
#define TESTS_LIFE_CHOICES_H

#include <array>
#include <cstddef>
#include <functional>
#include <optional>
#include <string>

#include "tests/life/model.h"
#include "tests/life/operators.h"
#include "tests/life/task.h"

namespace quill::life {

using Models = std::array<Model, 2>;

// The i-th operand of what is chosen: any number, taken modulo what there is to choose from.
using Operands = std::function<size_t(size_t i)>;

// Tasks for a manager, or none where there is nothing to choose from.
std::optional<Task> choose_build(const Models& models, size_t manager, const Operator& op,
                                 const Operands& operand);
std::optional<Task> choose_fresh(size_t manager, const Operands& operand);
std::optional<Task> choose_substitution(const Models& models, size_t manager,
                                        const Operands& operand);
std::optional<Task> choose_copy(const Models& models, size_t from, const Operands& operand);
std::optional<Task> choose_walk(const Models& models, size_t manager, const Operands& operand);

// Building exactly this term: through the builder if that leads to the very symbol.
Task build_task(const Models& models, size_t manager, const Head& head, const Texts& arguments);

// An operand of this type, or none.
std::optional<std::string> choose_of_type(const Model& model, size_t number,
                                          const std::string& type);

}  // namespace quill::life

#endif
