// The functions that stand for the values which the standard leaves open, such as those of division
// by zero: one for each operator, or for each of its sorts, in the whole of a script.
//
// They are made when they are first needed, by the names that derived.h and derived_fp.h give them,
// or by a variant where the script uses that name otherwise, be it in a scope that has ended: the
// declaration comes before that scope. Whoever reads a script declares them in it, so that what is
// written back is complete.

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
  UndefinedFunctions(TermManager& term_manager, Scopes& all_scopes)
      : manager(term_manager), scopes(all_scopes) {}
  UndefinedFunctions(const UndefinedFunctions&) = delete;
  UndefinedFunctions& operator=(const UndefinedFunctions&) = delete;

  // The function of this name; requests for one name give one type.
  const Symbol* get(const std::string& name, const DataType* type);

  struct Made {
    std::string name;  // that was asked for
    const Symbol* symbol;
  };

  // The functions made since the last call, in order.
  std::vector<Made> take_new();

  // Lets a function that there is already stand for requests for the name.
  void adopt(const std::string& name, const Symbol* symbol);

  // Gives up all functions: later requests get new ones.
  void reset();

 private:
  struct Function {
    const Symbol* symbol = nullptr;
    bool owned = false;  // whether its name is to be freed
  };

  TermManager& manager;
  Scopes& scopes;
  hsh::GuardedMap<std::string, Function, NameHash> functions;  // by the name that was asked for
  std::vector<Made> new_functions;
};

}  // namespace quill::smt2

#endif
