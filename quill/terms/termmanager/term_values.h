// A map from the terms of a manager to values of any type, for walks and tables of the caller.
//
//   TermValues<Bits> bits(m);
//   for (const Term_* t : postorder(root)) bits[t] = gate(t, bits);
//
// Representation: the pairs in the order in which their terms were entered, and for each id the
// position of its pair (see id_pages.h), so that a look-up reads two words whatever the term. Terms
// may be made while the map is in use. Iteration is in the order of entry. There is no removal;
// clear() takes out all pairs.
//
// A collection that frees terms of the map makes it stale: another term may get the id. Debug
// builds abort when a map is used after a collection of its manager, until clear() is called.

#ifndef QUILL_TERMS_TERMMANAGER_TERM_VALUES_H
#define QUILL_TERMS_TERMMANAGER_TERM_VALUES_H

#include <cassert>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

#include "quill/terms/id_pages.h"
#include "quill/terms/term.h"
#include "quill/terms/termmanager/term_manager.h"

namespace quill {

template <class Value>
class TermValues {
 public:
  struct Entry {
    const Term_* term;
    Value value;
  };

  // The manager must outlive the uses of the map.
  explicit TermValues(const TermManager& manager_)
      : manager(&manager_), generation(manager_.gc_generation()) {}

  // The value of a term, or null. Valid until the next entry.
  const Value* find(const Term_* t) const {
    check_generation();
    const uint32_t place = places.get(t->id);
    return place != 0 ? &entries[place - 1].value : nullptr;
  }
  Value* find(const Term_* t) { return const_cast<Value*>(std::as_const(*this).find(t)); }

  bool contains(const Term_* t) const { return find(t) != nullptr; }

  // Enters a term with a value; false if the term has one, which stays. All or nothing.
  bool insert(const Term_* t, Value value) {
    check_generation();
    uint32_t& place = places[t->id];
    if (place != 0) return false;
    entries.push_back({t, std::move(value)});
    place = static_cast<uint32_t>(entries.size());
    return true;
  }

  // The value of a term; a term without one gets Value(). Valid until the next entry.
  Value& operator[](const Term_* t) {
    check_generation();
    uint32_t& place = places[t->id];
    if (place == 0) {
      entries.push_back({t, Value()});
      place = static_cast<uint32_t>(entries.size());
    }
    return entries[place - 1].value;
  }

  size_t size() const { return entries.size(); }
  bool empty() const { return entries.empty(); }
  auto begin() const { return entries.begin(); }
  auto end() const { return entries.end(); }

  // Takes out all pairs. The map may be used again after a collection.
  void clear() {
    places.clear();
    entries.clear();
    generation = manager->gc_generation();
  }

 private:
  void check_generation() const {
    assert(generation == manager->gc_generation() &&
           "a map of terms is used after a collection of its manager; clear it first");
  }

  const TermManager* manager;
  uint64_t generation;
  IdPages<uint32_t> places;  // in entries, plus one; 0: none
  std::vector<Entry> entries;
};

}  // namespace quill

#endif
