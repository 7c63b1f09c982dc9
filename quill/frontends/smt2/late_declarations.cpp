#include "quill/frontends/smt2/late_declarations.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <utility>

#include "quill/smtlib/name_escape.h"
#include "quill/utils/exception.h"
#include "quill/utils/guarded_table.h"
#include "quill/utils/hash_map.h"
#include "quill/utils/hash_set.h"
#include "quill/utils/name_hash.h"

namespace quill::smt2 {

namespace {

using Terms = std::vector<const Term_*>;

// Calls the function once for each term that is one of the roots or below one, from left to right.
template <class OnTerm>
void for_each_below(const Terms& roots, const OnTerm& on_term) {
  hsh::HashSet<const Term_*> seen;
  Terms pending(roots.rbegin(), roots.rend());
  while (!pending.empty()) {
    const Term_* term = pending.back();
    pending.pop_back();
    if (!seen.insert(term)) continue;
    on_term(term);
    for (uint64_t i = term->symbol->arity; i-- > 0;) pending.push_back(term->args[i]);
  }
}

// What each name means as the commands go by: a symbol, a sort by its head, or a term by :named or
// by a definition that is kept.
class NamesInForce {
 public:
  struct Owner {
    const void* what = nullptr;
    bool inserted = false;  // whether its declaration was inserted
  };

  // The owner of an unused name: none.
  Owner owner_of(const std::string& name) const {
    const auto found = owners.find(name);
    return found == owners.end() ? Owner() : found->second;
  }

  void add(const std::string& name, Owner owner) {
    owners[name] = owner;
    (global ? permanent : trail).push_back(name);
  }

  void follow(const Command& command) {
    switch (command.kind) {
      case CommandKind::Push:
        if (command.count != 0) levels.push_back({trail.size(), command.count});
        break;
      case CommandKind::Pop:
        pop(command.count);
        break;
      case CommandKind::Reset:
        remove(trail, 0);
        remove(permanent, 0);
        levels.clear();
        global = false;
        break;
      case CommandKind::ResetAssertions:
        levels.clear();
        if (global) {
          permanent.insert(permanent.end(), trail.begin(), trail.end());
          trail.clear();
        } else {
          remove(trail, 0);
        }
        break;
      case CommandKind::SetOption:
        if (command.text == ":global-declarations true") global = true;
        if (command.text == ":global-declarations false") global = false;
        break;
      default:
        break;
    }
  }

 private:
  struct Level {
    size_t first;    // index into the trail
    uint64_t count;  // input can open millions of levels at once
  };

  void pop(uint64_t count) {
    while (count != 0 && !levels.empty()) {
      Level& level = levels.back();
      const uint64_t closed = std::min(count, level.count);
      remove(trail, level.first);
      count -= closed;
      level.count -= closed;
      if (level.count == 0) levels.pop_back();
    }
  }

  void remove(std::vector<std::string>& names, size_t first) {
    for (; names.size() > first; names.pop_back()) owners.erase(owners.find(names.back()));
  }

  hsh::GuardedMap<std::string, Owner, NameHash> owners;
  std::vector<std::string> trail;
  std::vector<std::string> permanent;
  std::vector<Level> levels;
  bool global = false;
};

// Keeps names of sorts apart from names of symbols.
constexpr std::string_view sort_prefix = "sort ";
constexpr std::string_view symbol_prefix = "symbol ";

std::string sort_key(const DataType* head) { return std::string(sort_prefix) + head->get_name(); }
std::string symbol_key(const std::string& name) { return std::string(symbol_prefix) + name; }

class Inserter {
 public:
  Inserter(const TermManager& manager, const std::vector<Command>& commands_,
           const Terms& mentioned)
      : commands(commands_) {
    for (const Command& command : commands) {
      if (command.symbol != nullptr) declarations[command.symbol] = &command;
      if (command.sort != nullptr) sort_declarations[command.sort] = &command;
    }
    for_each_below(mentioned, [&](const Term_* t) {
      const Symbol* symbol = t->symbol;
      // Whoever made a variable is responsible for it.
      if (!manager.is_interpreted(symbol) && !manager.is_variable(symbol)) watched.insert(symbol);
    });
  }

  std::vector<Command> run() {
    for (size_t i = 0; i < commands.size(); ++i) {
      const Command& command = commands[i];
      declare_for(command);
      if (command.kind == CommandKind::CheckSat || command.kind == CommandKind::CheckSatAssuming) {
        for (size_t j = i + 1; j < commands.size() && asks_about_answer(commands[j].kind); ++j) {
          declare_for(commands[j]);
        }
      }
      if (take(command)) done.push_back(command);
    }
    return std::move(done);
  }

 private:
  // Declares what the terms of a command mention, and what the terms that it names mention; those
  // need not be parts of the command's terms.
  void declare_for(const Command& command) {
    if ((command.terms.empty() && command.named_terms.empty()) || !lacks_some()) return;
    Terms roots;
    for (const ScriptTerm& term : command.terms) {
      if (term.spelled_name.empty()) roots.push_back(term.value.term);
    }
    for (const NamedTerm& named : command.named_terms) roots.push_back(named.term);
    for_each_below(roots, [&](const Term_* t) {
      if (watched.find(t->symbol) != watched.end() && !is_in_force(t->symbol)) {
        declare(t->symbol);
      }
    });
  }

  bool lacks_some() const {
    for (const Symbol* symbol : watched) {
      if (!is_in_force(symbol)) return true;
    }
    return false;
  }

  bool is_in_force(const Symbol* symbol) const {
    return names.owner_of(symbol_key(symbol->name)).what == symbol;
  }

  void declare(const Symbol* symbol) {
    std::vector<const DataType*> pending;
    for (uint64_t i = 1; i <= symbol->arity; ++i) pending.push_back(symbol->type->get_component(i));
    pending.push_back(symbol->get_output_type());
    hsh::HashSet<const DataType*> seen;
    while (!pending.empty()) {
      const DataType* type = pending.back();
      pending.pop_back();
      if (!seen.insert(type)) continue;
      const auto declared = sort_declarations.find(type);
      if (declared != sort_declarations.end() && names.owner_of(sort_key(type)).what != type) {
        insert(*declared->second, type, sort_key(type));
      }
      for (size_t i = 0; i < type->num_components(); ++i) pending.push_back(type->get_component(i));
    }
    const auto declared = declarations.find(symbol);
    Command made;
    if (declared != declarations.end()) {
      made = *declared->second;
    } else {
      made.kind = symbol->arity == 0 ? CommandKind::DeclareConst : CommandKind::DeclareFun;
      made.symbol = symbol;
    }
    insert(made, symbol, symbol_key(symbol->name));
  }

  void insert(const Command& declaration, const void* declared, const std::string& key) {
    require_free(key, declared);
    names.add(key, {declared, /*inserted=*/true});
    done.push_back(declaration);
  }

  void require_free(const std::string& key, const void* declared) const {
    const void* owner = names.owner_of(key).what;
    if (owner == nullptr || owner == declared) return;
    const bool is_sort = key.rfind(sort_prefix, 0) == 0;
    const std::string name = key.substr((is_sort ? sort_prefix : symbol_prefix).size());
    throw Exception("'") << name_to_smtlib(name, is_sort ? NameKind::Sort : NameKind::Symbol)
                         << "' would be declared where something else has this name";
  }

  // Records the names that the command introduces. Returns false for a declaration that was
  // inserted before.
  bool take(const Command& command) {
    for (const NamedTerm& named : command.named_terms) {
      take(named.term, symbol_key(named.stored_name));
    }
    if (!command.stored_name.empty()) {
      take(command.terms[0].value.term, symbol_key(command.stored_name));
    }
    bool kept = true;
    if (command.symbol != nullptr) {
      kept = take(command.symbol, symbol_key(command.symbol->name));
    } else if (command.sort != nullptr) {
      kept = take(command.sort, sort_key(command.sort));
    }
    names.follow(command);
    return kept;
  }

  bool take(const void* declared, const std::string& key) {
    const NamesInForce::Owner owner = names.owner_of(key);
    if (owner.what == declared) return !owner.inserted;
    require_free(key, declared);
    names.add(key, {declared, /*inserted=*/false});
    return true;
  }

  const std::vector<Command>& commands;
  hsh::HashMap<const Symbol*, const Command*> declarations;  // the last declaration of each
  hsh::HashMap<const DataType*, const Command*> sort_declarations;
  hsh::HashSet<const Symbol*> watched;
  NamesInForce names;
  std::vector<Command> done;
};

}  // namespace

std::vector<Command> with_declarations(const TermManager& manager,
                                       const std::vector<Command>& commands,
                                       const std::vector<const Term_*>& terms) {
  return Inserter(manager, commands, terms).run();
}

}  // namespace quill::smt2
