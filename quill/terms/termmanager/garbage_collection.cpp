// Collection: marks what can be reached from the caller's roots and from the members of the
// manager, then sweeps everything else out of the tables and the stores.
//
// Only marking, which changes nothing, allocates memory that it cannot do without, so a collection
// happens as a whole or not at all. The sweep frees what refers before what is referred to: table
// entries, terms, symbols, types. If it leaves a table nearly empty, it replaces the table by a
// small one, or leaves it as it is if there is no memory.
//
// Cost: linear in the kept terms with their arguments, the symbols, the types and the table
// entries. Of each freed term only the header is read.

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

// Keeps a type and all its components. Types may be nested deeply and shared, so each is visited
// once, without recursion.
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

// A symbol that is already in the set has its type kept, too.
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

// Replaces the values of numerals together with the cache of their terms, because the keys of the
// cache point to the values. The values move by swap, after all memory has been allocated.
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

  // What the members of the manager point to.
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

  // What the caller needs. The marks stay from root to root, so that shared terms are visited once.
  for (const Term_* t : terms) visitor.visit(t, /*clear_marks=*/false);
  for (const Symbol* symbol : symbols) gc_keep_sym(symbol, kept_symbols, kept_types);
  for (const DataType* type : types) gc_insert_tps(type, kept_types);

  // Nothing can fail from here on.
  const size_t terms_before = bank->size();
  const size_t symbols_before = signature->size();
  const size_t types_before = universe->size();
  const TermBank::MemoryUse memory_before = bank->memory_use();

  // Parameter types and named types: otherwise a request for a width, a format or a name would get
  // a freed type, and a later type at the same address would be taken for the parameter.
  bv_widths.sweep(kept_types);
  fp_formats.sweep(kept_types);
  gc_clear_tbl_val(simple_types, kept_types);

  // A table keyed by symbols would give its entry to a later symbol at the address of a freed one.
  // A table that leads to symbols would give the freed symbol itself.
  gc_clear_tbl_key(tags, kept_symbols);
  equality_symbols.sweep(kept_symbols);
  term_ite_symbols.sweep(kept_symbols);

  // The keys of the number cache point to the values in the other table, so the cache is swept
  // first, while all its keys are there. An entry stays if its term does, because a symbol may be
  // kept without its term. A kept term keeps its symbol, and with it the key.
  erase_entries(number_cache, [&](const auto& entry) {
    const uint64_t id = entry.second->id;
    return id >= seen.size() || !seen[id];
  });
  erase_entries(number_values, [&](const auto& entry) {
    return kept_symbols.find(entry.first) == kept_symbols.end();
  });
  give_back_room(number_values, number_cache);

  // These name symbols, types and terms that may be freed.
  latest_uses.fill({});
  recent_numerals.clear();
  marks = {};
  Families::for_each(*this,
                     [&](const OperatorFamily&, auto& family) { family.sweep(kept_symbols); });

  // Terms before symbols before types, so that no term ever points to a freed symbol, and no symbol
  // to a freed type.
  bank->remove_unseen(seen);
  signature->gc(kept_symbols);
  // Every symbol that is left has its type kept, with all components.
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
