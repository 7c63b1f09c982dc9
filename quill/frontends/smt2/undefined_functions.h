// The functions that stand for values that the standard leaves undefined, such as those of division
// by zero: one function for each operator, or for each of its sorts, in a whole script.
//
// They are made when they are first needed. They get the names that derived.h and derived_fp.h
// define, or a variant of the name if the script uses the name for something else, even in a scope
// that has ended, because the declaration comes before that scope. The reader of a script declares
// them in the script, so that the written script is complete.

#ifndef QUILL_FRONTENDS_SMT2_UNDEFINED_FUNCTIONS_H
#define QUILL_FRONTENDS_SMT2_UNDEFINED_FUNCTIONS_H

#include <string>
#include <vector>

#include "quill/frontends/smt2/scopes.h"
#include "quill/terms/termmanager/term_manager.h"
#include "quill/utils/guarded_table.h"
#include "quill/utils/name_hash.h"

namespace quill::smt2 {

class UndefinedFunctions {
 public:
  UndefinedFunctions(TermManager& manager_, Scopes& scopes_) : manager(manager_), scopes(scopes_) {}
  UndefinedFunctions(const UndefinedFunctions&) = delete;
  UndefinedFunctions& operator=(const UndefinedFunctions&) = delete;

  // The function of this name; all requests for a name must pass the same type.
  const Symbol* get(const std::string& name, const DataType* type);

  struct Made {
    std::string name;  // as requested
    const Symbol* symbol;
  };

  // The functions made since the last call, in order.
  std::vector<Made> take_new();

  // Makes an existing function the answer to requests for the name.
  void adopt(const std::string& name, const Symbol* symbol);

  // Forgets all functions: later requests get new ones.
  void reset();

 private:
  struct Function {
    const Symbol* symbol = nullptr;
    bool owned = false;  // whether to free its name
  };

  TermManager& manager;
  Scopes& scopes;
  hsh::GuardedMap<std::string, Function, NameHash> functions;  // by the requested name
  std::vector<Made> new_functions;
};

}  // namespace quill::smt2

#endif
