#include "frontends/smt2/zero_divisions.h"

#include <string>
#include <utility>

namespace quill::smt2 {

const Symbol* ZeroDivisions::get(Division op) {
  Function& function = functions[static_cast<size_t>(op)];
  if (function.symbol != nullptr) return function.symbol;
  const DataType* type = zero_division_type(manager, op);
  const std::string name = scopes.free_symbol_name(zero_division_name(op), type);
  function.owned = manager.get_signature()->get_symbol(name.c_str()) == nullptr;
  function.symbol = manager.make_symbol(name, type);
  scopes.use_name(name);
  new_functions.push_back(function.symbol);
  return function.symbol;
}

std::vector<const Symbol*> ZeroDivisions::take_new() { return std::exchange(new_functions, {}); }

void ZeroDivisions::reset() {
  for (Function& function : functions) {
    if (function.symbol == nullptr) continue;
    scopes.give_up_name(function.symbol->name);
    if (function.owned) manager.free_symbol(function.symbol);
    function = Function();
  }
  new_functions.clear();
}

}  // namespace quill::smt2
