#include "quill/frontends/smt2/undefined_functions.h"

#include <utility>

namespace quill::smt2 {

const Symbol* UndefinedFunctions::get(const std::string& name, const DataType* type) {
  Function& function = functions[name];
  if (function.symbol != nullptr) return function.symbol;
  const std::string stored = scopes.free_symbol_name_of_stretch(name, type);
  function.owned = manager.get_signature()->get_symbol(stored.c_str()) == nullptr;
  function.symbol = manager.make_symbol(stored, type);
  scopes.use_name(stored);
  new_functions.push_back({name, function.symbol});
  return function.symbol;
}

std::vector<UndefinedFunctions::Made> UndefinedFunctions::take_new() {
  return std::exchange(new_functions, {});
}

void UndefinedFunctions::adopt(const std::string& name, const Symbol* symbol) {
  functions[name] = {symbol, /*owned=*/false};
  scopes.use_name(symbol->name);
}

void UndefinedFunctions::reset() {
  for (auto entry = functions.begin(); entry != functions.end();) {
    const Function function = entry->second;
    entry = functions.erase(entry);
    if (function.symbol == nullptr) continue;  // a request that failed
    scopes.give_up_name(function.symbol->name);
    if (function.owned) manager.free_symbol(function.symbol);
  }
  new_functions.clear();
}

}  // namespace quill::smt2
