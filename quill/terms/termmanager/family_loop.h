// The loop over all operator families. Private to the sources of the term manager.

#ifndef QUILL_TERMS_TERMMANAGER_FAMILY_LOOP_H
#define QUILL_TERMS_TERMMANAGER_FAMILY_LOOP_H

#include "quill/terms/termmanager/operator_family.h"
#include "quill/terms/termmanager/term_manager.h"

namespace quill {

// Calls action(row, symbols) for each row of operator_families, in order. The symbols are a
// SymbolFamily, or the ArraySymbols of an array family; const when the manager is.
template <class Manager, class Action>
void TermManager::for_each_family(Manager& manager, Action action) {
  for (const OperatorFamily& row : operator_families) {
    const size_t slot = family_slot(row.tag);
    switch (row.key) {
      case FamilyKey::Width:
        action(row, manager.width_families[slot]);
        break;
      case FamilyKey::Index1:
        action(row, manager.index1_families[slot]);
        break;
      case FamilyKey::Index2:
        action(row, manager.index2_families[slot]);
        break;
      case FamilyKey::Format:
        action(row, manager.format_families[slot]);
        break;
      case FamilyKey::Cast:
        action(row, manager.cast_families[slot]);
        break;
      case FamilyKey::Array:
        action(row, manager.array_families[slot]);
        break;
      case FamilyKey::Modulus:
        action(row, manager.modular_congruences);
        break;
    }
  }
}

}  // namespace quill

#endif
