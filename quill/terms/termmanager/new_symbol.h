// An interpreted function symbol in the making. Private to the sources of the term manager.
//
// Makes the function type from scratch_types and the symbol from name_buffer, which holds the name
// between backquotes, and tags it; takes all of that back again unless the symbol is kept, that is,
// unless its maker got as far as entering it in its tables.

#ifndef QUILL_TERMS_TERMMANAGER_NEW_SYMBOL_H
#define QUILL_TERMS_TERMMANAGER_NEW_SYMBOL_H

#include "quill/terms/termmanager/term_manager.h"

namespace quill {

class TermManager::NewSymbol {
 public:
  NewSymbol(TermManager& owner, SymbolTag::tag tag)
      : manager(owner),
        types_before(owner.universe->size()),
        symbols_before(owner.signature->size()) {
    try {
      const DataType* type = manager.universe->make_type(manager.scratch_types);
      made = manager.signature->add_symbol(manager.name_buffer.c_str(), type);
      manager.tags[made] = tag;
    } catch (...) {
      undo();
      throw;
    }
  }
  NewSymbol(const NewSymbol&) = delete;
  NewSymbol& operator=(const NewSymbol&) = delete;
  ~NewSymbol() {
    if (!kept) undo();
  }

  const Symbol* symbol() const { return made; }

  const Symbol* keep() {
    kept = true;
    return made;
  }

 private:
  void undo() noexcept {
    if (manager.signature->size() != symbols_before) {
      const auto tagged = manager.tags.find(made);
      if (tagged != manager.tags.end()) manager.tags.erase(tagged);
    }
    manager.signature->rollback(symbols_before);
    manager.universe->rollback(types_before);
  }

  TermManager& manager;
  const size_t types_before;
  const size_t symbols_before;
  const Symbol* made = nullptr;
  bool kept = false;
};

}  // namespace quill

#endif
