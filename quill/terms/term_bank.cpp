#include "quill/terms/term_bank.h"

#include <cassert>
#include <new>

namespace quill {

// The functions of one request are inlined into make_term, once for each usual arity, so that their
// loops disappear: a solver makes terms more often than anything else.

// Hashes addresses: reading the ids of the arguments would touch a cache line for each. The values
// decide only where the index looks first.
[[gnu::always_inline]] inline uint32_t TermBank::hash_of(uint64_t key, const Symbol* symbol,
                                                         const Term_* const* args, uint64_t arity) {
  return InternIndex::fold(hash_addresses(key, symbol, args, arity));
}

uint32_t TermBank::hash_of(uint64_t key, const Term_* term) {
  return hash_of(key, term->symbol, term->args, term->symbol->arity);
}

[[gnu::always_inline]] inline const Term_* TermBank::find(uint32_t hash, const Symbol* symbol,
                                                          const Term_* const* args,
                                                          uint64_t arity) const {
  const Term_* found = nullptr;
  index.find(hash, [&](uint32_t handle) {
    const Term_* term = nodes.node(handle);
    if (term->symbol != symbol) return false;
    for (uint64_t i = 0; i < arity; ++i) {
      if (term->args[i] != args[i]) return false;
    }
    found = term;
    return true;
  });
  return found;
}

[[gnu::always_inline]] inline const Term_* TermBank::find_or_add(const Symbol* symbol,
                                                                 const Term_* const* args,
                                                                 uint64_t arity) {
  const uint32_t hash = hash_of(index.key(), symbol, args, arity);
  if (const Term_* found = find(hash, symbol, args, arity)) return found;

  index.reserve_one();
  ids.reserve_one();
  record.reserve_one();
  const uint32_t handle = nodes.allocate(arity);
  Term_* term = new (nodes.address(handle)) Term_(ids.take(), symbol);
  for (uint64_t i = 0; i < arity; ++i) {
    assert(args[i] != nullptr && "an argument is null");
    term->args[i] = args[i];
  }
  index.insert(hash, handle,
               [this](uint64_t key, uint32_t any) { return hash_of(key, nodes.node(any)); });
  record.add(term);
  return term;
}

const Term_* TermBank::make_term(const Symbol* symbol, const Term_* const* args) {
  switch (symbol->arity) {
    case 1:
      return find_or_add(symbol, args, 1);
    case 2:
      return find_or_add(symbol, args, 2);
    case 3:
      return find_or_add(symbol, args, 3);
    default:
      return find_or_add(symbol, args, symbol->arity);
  }
}

void TermBank::remove_unseen(const std::vector<bool>& seen) noexcept {
#ifndef NDEBUG
  for (const Term_* term : *this) {
    if (term->id >= seen.size() || !seen[term->id]) record.remove(term);
  }
#endif
  const size_t freed = nodes.sweep(seen);
  if (freed == 0) return;
  // The index now leads to freed nodes. Rebuilding it from the terms that are left takes no work
  // for the others and may make it smaller.
  index.clear(index.size() - freed);
  ids.free_all();
  for (uint32_t handle = nodes.first_live(0); handle != NodeSlabs::none;
       handle = nodes.first_live(nodes.next(handle))) {
    const Term_* term = nodes.node(handle);
    index.insert(hash_of(index.key(), term), handle);
    ids.claim(term->id);
  }
}

TermBank::MemoryUse TermBank::memory_use() const {
  return {nodes.num_slabs(), nodes.num_bytes(), index.capacity(), index.num_bytes()};
}

bool TermBank::is_consistent() const {
  std::vector<bool> met(id_bound());
  size_t held = 0;
  for (const Term_* term : *this) {
    const uint32_t hash = hash_of(index.key(), term);
    if (find(hash, term->symbol, term->args, term->symbol->arity) != term) return false;
    if (term->id >= met.size() || met[term->id]) return false;
    met[term->id] = true;
    ++held;
  }
  return held == index.size() && held == ids.size() && (held == 0 || met.back());
}

}  // namespace quill
