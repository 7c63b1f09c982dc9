// The current meaning of each name in a script.
//
// Symbols and sorts have a table each. A name is stored once, in an entry that holds its meanings,
// innermost first: local meanings (variables of let, parameters), the global meaning (declared,
// defined or given by :named), and the operator of a theory, which counts only if the logic has the
// theory. Entries never move, so callers can keep pointers to them.
//
// push and pop delimit global meanings. When its scope ends, a symbol declared here gives its name
// back to the manager (TermManager::free_symbol); a symbol that the manager already had stays.

#ifndef QUILL_FRONTENDS_SMT2_SCOPES_H
#define QUILL_FRONTENDS_SMT2_SCOPES_H

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "quill/frontends/smt2/name_table.h"
#include "quill/frontends/smt2/value.h"
#include "quill/smtlib/lexical.h"
#include "quill/smtlib/theory_names.h"
#include "quill/terms/termmanager/term_manager.h"

namespace quill::smt2 {

struct Operator;

// The global meaning of a symbol.
struct Binding {
  enum class Kind { Function, Term, Macro };
  Kind kind = Kind::Term;
  const Symbol* symbol = nullptr;  // Function: the declared one, or a constant if its arity is 0
  const DataType* sort = nullptr;  // Function: the sort of a constant, or a function type of sorts
  bool owned = false;              // whether to free that symbol's name when the scope ends
  std::string stored_name;  // in the manager's spelling; empty for definitions that are not kept
  Value value;              // Term
  Macro macro;              // Macro
};

struct Name {
  Construct construct = Construct::NoConstruct;  // that the name begins without bars
  const TheoryName* theory = nullptr;            // whose name it is
  const Operator* theory_operator = nullptr;     // also null for an unsupported operator
  std::unique_ptr<Binding> global;
  uint32_t local = 0;  // 1 + the index of the innermost local meaning; 0: none
};

struct SortBinding {
  const DataType* type =
      nullptr;  // declared: the sort, or its head if it has an arity; defined: the body
  uint64_t arity = 0;
  bool defined = false;
};

struct SortName {
  std::unique_ptr<SortBinding> global;
  const DataType* parameter = nullptr;  // inside a define-sort
};

class Scopes {
 public:
  explicit Scopes(TermManager& manager_) : manager(manager_) {}
  Scopes(const Scopes&) = delete;
  Scopes& operator=(const Scopes&) = delete;

  // The entry of a name, made on the first request.
  Name& name(std::string_view text) { return names[text]; }
  SortName& sort_name(std::string_view text) { return sort_names[text]; }

  // ----- local meanings, innermost last ---------------------------------------------------------

  size_t num_locals() const { return locals.size(); }
  void bind_local(Name& name, const Value& value);
  const Value& local_value(const Name& name) const { return locals[name.local - 1].value; }
  // Ends every local meaning from number `first` on.
  void unbind_locals(size_t first);

  // ----- global meanings ------------------------------------------------------------------------

  // The entry must have no global meaning.
  void bind(Name& name, std::unique_ptr<Binding> binding);
  void bind(SortName& name, std::unique_ptr<SortBinding> binding);

  // ----- names in the manager's spelling --------------------------------------------------------
  //
  // The manager's spelling of distinct names in a script may be the same (see name_escape.h). If
  // such names are in use at the same time, a number after one of them keeps them apart.

  bool is_used(const std::string& stored) const;
  void use_name(const std::string& stored) { used_names[stored] = {true, stretch}; }
  void give_up_name(const std::string& stored) { used_names[stored].is_used = false; }

  // The first of stored, stored_0, stored_1 and so on that is not in use and that the manager has
  // not given to a symbol of another type. With a null type, the first that is not in use.
  std::string free_symbol_name(const std::string& stored, const DataType* type) const;
  // The same for a symbol that is declared at the start of the stretch: the name must not have been
  // in use since then either, in a scope that has ended.
  std::string free_symbol_name_of_stretch(const std::string& stored, const DataType* type) const;
  // Begins a stretch, at whose start such symbols are declared.
  void begin_stretch() { ++stretch; }
  // The first of stored, stored_0 and so on that is not in use, for a declared sort.
  std::string free_sort_name(const std::string& stored) const;

  // ----- push and pop ---------------------------------------------------------------------------

  // If enabled, global meanings that are bound from now on outlive pop.
  void set_global_declarations(bool enabled) { global_declarations = enabled; }
  bool declarations_are_global() const { return global_declarations; }

  uint64_t depth() const { return open_levels; }
  void push(uint64_t count);
  // The count must be at most depth().
  void pop(uint64_t count);
  // Ends all scopes and all global meanings that do not outlive pop.
  void reset_assertions();
  // Ends all scopes and all global meanings.
  void reset();

 private:
  struct Local {
    Name* name;
    uint32_t outer;
    Value value;
  };

  struct Bound {  // exactly one of the two is set
    Name* name = nullptr;
    SortName* sort = nullptr;
  };

  struct Level {
    size_t first;    // the length of the trail when the level was opened
    uint64_t count;  // how many levels were opened at once: an input may open very many
  };

  static bool is_in_use(const NameTable<bool>& names_in_use, std::string_view name) {
    const bool* use = names_in_use.find(name);
    return use != nullptr && *use;
  }
  template <class IsFree>
  std::string first_free_name(const std::string& stored, const DataType* type,
                              const IsFree& is_free) const;
  void record(Bound bound);
  void unbind(const Bound& bound);
  void unbind_trail(size_t first);

  TermManager& manager;
  NameTable<Name> names;
  NameTable<SortName> sort_names;
  struct NameUse {
    bool is_used = false;  // whether it still is
    uint64_t stretch = 0;  // in which the name was last used
  };
  NameTable<NameUse> used_names;
  NameTable<bool> used_sort_names;
  std::vector<Local> locals;
  std::vector<Bound> trail;   // what ends with a scope, in the order of binding
  std::vector<Level> levels;  // one entry for each push command
  uint64_t open_levels = 0;   // the sum of their counts
  uint64_t stretch = 1;
  std::vector<Bound> permanent;  // what outlives pop
  bool global_declarations = false;
};

}  // namespace quill::smt2

#endif
