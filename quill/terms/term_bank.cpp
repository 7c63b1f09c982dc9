#include "quill/terms/term_bank.h"

#include <algorithm>
#include <functional>
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

const Term_* TermBank::make_term(const Symbol* symbol, const Term_* const* args) {
  const uint64_t arity = symbol->arity;
  const uint32_t hash = hash_of(symbol, args);
  const uint32_t found = index.find(hash, [&](uint32_t handle) {
    const Term_* term = nodes.node(handle);
    return term->symbol == symbol && std::equal(term->args, term->args + arity, args);
  });
  if (found != InternIndex::none) return nodes.node(found);

  index.reserve_one();
  const uint32_t handle = nodes.allocate(arity);
  uint64_t id;
  if (free_ids.empty()) {
    id = next_id++;
  } else {
    id = free_ids.back();
    free_ids.pop_back();
  }
  Term_* term = new (nodes.address(handle)) Term_(id, symbol);
  std::copy(args, args + arity, term->args);
  index.insert(hash, handle);
  return term;
}

void TermBank::remove_unseen(const std::vector<bool>& seen) {
  const auto is_seen = [&](const Term_* term) { return term->id < seen.size() && seen[term->id]; };
  size_t victims = 0;
  for (const Term_* term : *this) victims += !is_seen(term);
  if (victims == 0) return;
  free_ids.reserve(free_ids.size() + victims);  // the last step that can fail

  index.clear();
  for (uint32_t handle = nodes.first_live(0); handle != NodeSlabs::none;) {
    const uint32_t after = nodes.next(handle);
    Term_* term = nodes.node(handle);
    if (is_seen(term)) {
      index.insert(hash_of(term->symbol, term->args), handle);
    } else {
      free_ids.push_back(term->id);
      nodes.free(handle);
    }
    handle = nodes.first_live(after);
  }

  std::sort(free_ids.begin(), free_ids.end(), std::greater<>());
  size_t trailing = 0;  // free ids at the upper end need no list
  while (trailing < free_ids.size() && free_ids[trailing] + 1 == next_id) {
    next_id--;
    trailing++;
  }
  free_ids.erase(free_ids.begin(), free_ids.begin() + static_cast<std::ptrdiff_t>(trailing));
}

}  // namespace quill
