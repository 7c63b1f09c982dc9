// The functions that stand for division by zero, one for each operator, in the whole of a script.
//
// They are made when they are first needed, by the names of make_zero_division_symbol, or by a
// variant where the script uses that name otherwise. Whoever reads a script declares them in it, so
// that what is written back is complete.

#ifndef FRONTENDS_SMT2_ZERO_DIVISIONS_H
#define FRONTENDS_SMT2_ZERO_DIVISIONS_H

#include <vector>

#include "frontends/smt2/scopes.h"
#include "quill/terms/derived.h"
#include "quill/terms/termmanager/term_manager.h"

namespace quill::smt2 {

class ZeroDivisions {
 public:
  ZeroDivisions(TermManager& term_manager, Scopes& all_scopes)
      : manager(term_manager), scopes(all_scopes) {}
  ZeroDivisions(const ZeroDivisions&) = delete;
  ZeroDivisions& operator=(const ZeroDivisions&) = delete;

  const Symbol* get(Division op);

  // The functions made since the last call, in order.
  std::vector<const Symbol*> take_new();

  // Gives up all functions: later divisions by zero get new ones.
  void reset();

 private:
  struct Function {
    const Symbol* symbol = nullptr;
    bool owned = false;  // whether its name is to be freed
  };

  TermManager& manager;
  Scopes& scopes;
  Function functions[3];
  std::vector<const Symbol*> new_functions;
};

}  // namespace quill::smt2

#endif
