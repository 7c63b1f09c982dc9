// The trial of a symbol that the first equality or if-then-else of a type makes, for as long as the
// request is in make_term. If the request is refused, the trial removes the symbol and its type, so
// that the request leaves no trace. It keeps them if a request nested in this one was given the
// symbol or a term was built with it. Private to the sources of the term manager.
//
// note_given records such uses when they occur, so nothing is searched. Types and symbols that
// nested requests made after those of this request stay, in their order.

#ifndef QUILL_TERMS_TERMMANAGER_TRIAL_H
#define QUILL_TERMS_TERMMANAGER_TRIAL_H

#include <optional>

#include "quill/terms/termmanager/term_manager.h"

namespace quill {

class TermManager::Trial {
 public:
  Trial(TermManager& manager_, TypeKeyedSymbols& table_, const DataType* type_)
      : outer(manager_.trials),
        manager(manager_),
        table(table_),
        type(type_),
        depth(manager_.requests_under_way),
        types_before(manager_.universe->size()),
        symbols_before(manager_.signature->size()) {
    manager.trials = this;
  }
  Trial(const Trial&) = delete;
  Trial& operator=(const Trial&) = delete;
  ~Trial() {
    manager.trials = outer;
    if (made != nullptr && !is_needed) take_back();
  }

  // The maker of the symbol reports the symbol and the tag that it had before.
  void symbol_made(const Symbol* symbol, std::optional<SymbolTag::tag> tag) {
    if (made != nullptr) return;  // made by a nested request
    made = symbol;
    tag_before = tag;
  }

  // The request on trial is given the symbol, too, but at its own depth, which does not count.
  void note_given(const Symbol* symbol) {
    if (symbol == made && manager.requests_under_way > depth) is_needed = true;
  }

  void keep() { is_needed = true; }

  Trial* const outer;  // that of the enclosing request, or null

 private:
  void take_back() noexcept {
    table.erase(type);
    manager.restore_tag(made, tag_before);
    Signature& names = *manager.signature;
    if (names.size() == symbols_before || names.symbol(symbols_before) != made) return;
    const DataType* own_type = made->type;
    names.remove_at(symbols_before);
    TypeUniverse& types = *manager.universe;
    if (types.size() == types_before || types.type(types_before) != own_type) return;
    // Only symbols and types that were made later can use the type.
    for (size_t i = symbols_before; i < names.size(); ++i) {
      if (names.symbol(i)->type == own_type) return;
    }
    for (size_t i = types_before + 1; i < types.size(); ++i) {
      for (size_t k = 0; k < types.type(i)->num_components(); ++k) {
        if (types.type(i)->get_component(k) == own_type) return;
      }
    }
    types.remove_at(types_before);
  }

  TermManager& manager;
  TypeKeyedSymbols& table;
  const DataType* const type;
  const size_t depth;
  const size_t types_before;
  const size_t symbols_before;
  const Symbol* made = nullptr;
  std::optional<SymbolTag::tag> tag_before;
  bool is_needed = false;
};

}  // namespace quill

#endif
