// A set of terms of one manager, for walks: a bit for each id (see id_pages.h).
//
// Terms may be made while the set is in use. A collection may free terms of the set and give their
// ids to others; the set does not notice.

#ifndef QUILL_TERMS_TERM_ID_SET_H
#define QUILL_TERMS_TERM_ID_SET_H

#include <cstddef>
#include <cstdint>

#include "quill/terms/id_pages.h"
#include "quill/terms/term.h"

namespace quill {

class TermIdSet {
 public:
  // Adds a term; false if it was there. Throws std::bad_alloc, and has then changed nothing.
  bool insert(const Term_* t) {
    uint64_t& word = words[t->id / 64];
    const uint64_t bit = uint64_t{1} << t->id % 64;
    if ((word & bit) != 0) return false;
    word |= bit;
    ++count;
    return true;
  }

  bool contains(const Term_* t) const {
    return (words.get(t->id / 64) & uint64_t{1} << t->id % 64) != 0;
  }

  size_t size() const { return count; }

  void clear() {
    words.clear();
    count = 0;
  }

 private:
  IdPages<uint64_t> words;
  size_t count = 0;
};

}  // namespace quill

#endif
