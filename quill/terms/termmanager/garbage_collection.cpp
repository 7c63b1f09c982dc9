// Collection: marks what can be reached from the caller's roots and what every manager has, then
// sweeps all else out of the tables and the stores.
//
// Memory that must be had is asked for while marking only, when nothing has changed yet, so that a
// collection takes place as a whole or not at all. The sweep goes from what refers to what is
// referred to: tables, terms, symbols, types. Tables of which it leaves little are replaced by
// small ones if there is memory for them, and stay as they are if not.
//
// Cost: a look at each term that is kept, at each entry of the tables and at the header of each
// term that goes.

#include <algorithm>

#include "quill/terms/termmanager/cache_sweep.h"
#include "quill/terms/termmanager/families.h"
#include "quill/terms/termmanager/misuse_checks.h"
#include "quill/terms/termmanager/term_manager.h"
#include "quill/terms/termmanager/term_visitor.h"
#include "quill/utils/heap.h"
#include "quill/utils/table_room.h"

namespace quill {

namespace {

using SymbolSet = hsh::HashSet<const Symbol*>;
using TypeSet = hsh::HashSet<const DataType*>;

// Keeps a type and all that it is made of. Types may be nested deeply and shared: each is gone
// into once, without recursion.
void gc_insert_tps(const DataType* type, TypeSet& kept_types) {
  if (!kept_types.insert(type) || type->is_simple()) return;
  std::vector<const DataType*> work{type};
  while (!work.empty()) {
    const DataType* compound = work.back();
    work.pop_back();
    for (size_t i = 0; i < compound->num_components(); ++i) {
      const DataType* component = compound->get_component(i);
      if (kept_types.insert(component) && !component->is_simple()) work.push_back(component);
    }
  }
}

// The type of a symbol that is in the set has been kept with it.
void gc_keep_sym(const Symbol* symbol, SymbolSet& kept_symbols, TypeSet& kept_types) {
  if (kept_symbols.insert(symbol)) gc_insert_tps(symbol->type, kept_types);
}

struct GcVisitCallback {
  std::vector<bool>* seen;  // by id
  SymbolSet* kept_symbols;
  TypeSet* kept_types;

  void set_seen(const Term_* t) {
    if (t->id >= seen->size()) seen->resize(std::max<size_t>(2 * seen->size(), t->id + 1));
    (*seen)[t->id] = true;
    gc_keep_sym(t->symbol, *kept_symbols, *kept_types);
  }

  int visit(const Term_* t, bool preorder) {
    if (preorder) set_seen(t);
    return 2;
  }
};

// The values of numerals and the cache of their terms, whose keys point to the values. The values
// are copied last and by exchange, when there is room for all of them.
void give_back_room(hsh::HashMap<const Symbol*, QNumber>& values,
                    hsh::GuardedMap<const QNumber*, const Term_*>& cache) noexcept {
  if (!is_room_to_give_back(values.num_buckets(), values.count) &&
      !is_room_to_give_back(cache.num_buckets(), cache.count)) {
    return;
  }
  try {
    hsh::HashMap<const Symbol*, QNumber> new_values;
    hsh::GuardedMap<const QNumber*, const Term_*> new_cache;
    for (const auto& entry : values) new_values.insert({entry.first, QNumber()});
    for (const auto& entry : cache) new_cache.insert(entry);
    for (auto& [symbol, value] : new_values) std::swap(value, values.find(symbol)->second);
    for (auto& [value, term] : new_cache) value = &new_values.find(term->symbol)->second;
    values.swap(new_values);
    cache.swap(new_cache);
  } catch (const std::bad_alloc&) {
    return;
  }
}

}  // namespace

void TermManager::gc(const std::vector<const Term_*>& terms,
                     const std::vector<const Symbol*>& symbols,
                     const std::vector<const DataType*>& types) {
  require_own(*this, terms);
  require_own(*this, symbols);
  require_own(*this, types);
  std::vector<bool> seen;
  SymbolSet kept_symbols;
  TypeSet kept_types;
  GcVisitCallback callback{&seen, &kept_symbols, &kept_types};
  TermVisitor<GcVisitCallback> visitor(&callback, /*dag_mode=*/true);

  // What the manager's own members point to.
  for (const DataType* type : standard_types()) kept_types.insert(type);
  for (const Symbol* symbol :
       {true_symbol, false_symbol, and_symbol, or_symbol, not_symbol, iff_symbol, rat_equal_symbol,
        rat_leq_symbol, rat_plus_symbol, rat_times_symbol, int_equal_symbol, int_leq_symbol,
        int_plus_symbol, int_times_symbol, floor_symbol}) {
    gc_keep_sym(symbol, kept_symbols, kept_types);
  }
  for (const Symbol* symbol : rounding_symbols) gc_keep_sym(symbol, kept_symbols, kept_types);
  callback.set_seen(true_term);
  callback.set_seen(false_term);

  // What the caller needs. The marks stay from root to root, so that what roots share is walked
  // once.
  for (const Term_* t : terms) visitor.visit(t, /*clear_marks=*/false);
  for (const Symbol* symbol : symbols) gc_keep_sym(symbol, kept_symbols, kept_types);
  for (const DataType* type : types) gc_insert_tps(type, kept_types);

  // Nothing can fail from here on.
  const size_t terms_before = bank->size();
  const size_t symbols_before = signature->size();
  const size_t types_before = universe->size();
  const TermBank::MemoryUse memory_before = bank->memory_use();

  // The parameter types and the named types: a request for a width, a format or a name would get a
  // freed type, and a later type at its address would be taken for the parameter.
  bv_widths.sweep(kept_types);
  fp_formats.sweep(kept_types);
  gc_clear_tbl_val(simple_types, kept_types);

  // Tags, values of numerals and parameters would be found for a later symbol that happens to get
  // the address of a freed one; a table from types, values or parameters would give the freed
  // symbol itself.
  gc_clear_tbl_key(tags, kept_symbols);
  equality_symbols.sweep(kept_symbols);
  term_ite_symbols.sweep(kept_symbols);

  // The cache of numerals leads to terms, and its keys point to the values in the other table. It
  // goes by the terms, because a symbol may be kept without its term; and it goes first, while all
  // of its terms and keys are there. A term that stays keeps its symbol, and thereby its key.
  erase_entries(number_cache, [&](const auto& entry) {
    const uint64_t id = entry.second->id;
    return id >= seen.size() || !seen[id];
  });
  erase_entries(number_values, [&](const auto& entry) {
    return kept_symbols.find(entry.first) == kept_symbols.end();
  });
  give_back_room(number_values, number_cache);

  // The latest uses and numerals name symbols, types and terms that may go.
  latest_uses.fill({});
  recent_numerals.clear();
  marks = {};
  Families::for_each(*this,
                     [&](const OperatorFamily&, auto& family) { family.sweep(kept_symbols); });

  // Terms before symbols: freed terms would point to freed symbols, whose arity tells how many
  // arguments they have.
  bank->remove_unseen(seen);
  // Symbols before types: freed symbols would point to freed types.
  signature->gc(kept_symbols);
  // Types last: only kept types refer to types now, and their components have been kept with them.
  universe->gc(kept_types);

  const TermBank::MemoryUse memory_after = bank->memory_use();
  last_collection = {terms_before - bank->size(),
                     symbols_before - signature->size(),
                     types_before - universe->size(),
                     memory_before.slabs - memory_after.slabs,
                     memory_before.slab_bytes - memory_after.slab_bytes,
                     memory_before.index_bytes - memory_after.index_bytes};
  ++generation;
  heap::release_if_worthwhile(last_collection.slab_bytes +
                              (last_collection.symbols + last_collection.types) *
                                  bytes_of_an_entry);
}

}  // namespace quill
