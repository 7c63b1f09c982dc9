#include "quill/terms/term_bank.h"

#include <algorithm>
#include <new>

namespace quill {

// Hashes addresses: reading the ids of the arguments would touch a cache line for each. The values
// decide only where the index looks first.
uint32_t TermBank::hash_of(const Symbol* symbol, const Term_* const* args) {
  uint64_t h = reinterpret_cast<uintptr_t>(symbol) * 0x9e3779b97f4a7c15;
  for (uint64_t i = 0; i < symbol->arity; i++) {
    h = ((h ^ (h >> 32)) + reinterpret_cast<uintptr_t>(args[i])) * 0xd1b54a32d192ed03;
  }
  return InternIndex::fold(h);
}

const Term_* TermBank::find(uint32_t hash, const Symbol* symbol, const Term_* const* args) const {
  const uint64_t arity = symbol->arity;
  const Term_* found = nullptr;
  index.find(hash, [&](uint32_t handle) {
    const Term_* term = nodes.node(handle);
    if (term->symbol != symbol) return false;
    for (uint64_t i = 0; i < arity; i++) {
      if (term->args[i] != args[i]) return false;
    }
    found = term;
    return true;
  });
  return found;
}

const Term_* TermBank::make_term(const Symbol* symbol, const Term_* const* args) {
  const uint32_t hash = hash_of(symbol, args);
  if (const Term_* found = find(hash, symbol, args)) return found;

  index.reserve_one();
  ids.reserve_one();
  record.reserve_one();
  const uint32_t handle = nodes.allocate(symbol->arity);
  Term_* term = new (nodes.address(handle)) Term_(ids.take(), symbol);
  std::copy(args, args + symbol->arity, term->args);
  index.insert(hash, handle);
  record.add(term);
  return term;
}

void TermBank::remove_unseen(const std::vector<bool>& seen) noexcept {
#ifndef NDEBUG
  for (const Term_* term : *this) {
    if (term->id >= seen.size() || !seen[term->id]) record.remove(term);
  }
#endif
  const size_t freed = nodes.sweep(seen);
  if (freed == 0) return;
  // The index leads to freed nodes now. Made anew from those that are left, it costs nothing for
  // the others, and may be smaller.
  index.clear(index.size() - freed);
  ids.free_all();
  for (uint32_t handle = nodes.first_live(0); handle != NodeSlabs::none;
       handle = nodes.first_live(nodes.next(handle))) {
    const Term_* term = nodes.node(handle);
    index.insert(hash_of(term->symbol, term->args), handle);
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
    if (find(hash_of(term->symbol, term->args), term->symbol, term->args) != term) return false;
    if (term->id >= met.size() || met[term->id]) return false;
    met[term->id] = true;
    held++;
  }
  return held == index.size() && held == ids.size() && (held == 0 || met.back());
}

}  // namespace quill
