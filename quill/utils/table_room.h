// Releases the room of chained tables and vectors that hold far less than they once held.
//
// The containers themselves keep their room: bucket vectors never shrink, and pools keep their
// chunks. Code that has erased most of a large table can replace the table as a whole.
//
// Without memory for the replacement the table stays as it is, so that these functions never fail.
// Iterators and pointers to elements of a replaced table are invalid. Its new walk order follows
// from its elements and from the order in which they were walked before.
//
// Cost: that of a walk over the table, and only if more than seven eighths of its room are unused.

#ifndef QUILL_UTILS_TABLE_ROOM_H
#define QUILL_UTILS_TABLE_ROOM_H

#include <cstddef>
#include <cstdint>
#include <new>
#include <vector>

namespace quill {

// Releasing less room is not worth the trouble.
constexpr uint64_t smallest_room_to_give_back = 2048;

// Whether `room` is far more than `count` elements need.
constexpr bool is_room_to_give_back(uint64_t room, uint64_t count) {
  return room > smallest_room_to_give_back && count < room / 8;
}

// Copies the elements. None of them may lead to another element of the table.
template <class Table>
void give_back_room(Table& table) noexcept {
  if (!is_room_to_give_back(table.num_buckets(), table.count)) return;
  try {
    Table replacement;
    for (const auto& element : table) replacement.insert(element);
    table.swap(replacement);
  } catch (const std::bad_alloc&) {
    return;
  }
}

template <class Element>
void give_back_room(std::vector<Element>& elements) noexcept {
  if (!is_room_to_give_back(elements.capacity(), elements.size())) return;
  try {
    std::vector<Element> replacement(elements);
    elements.swap(replacement);
  } catch (const std::bad_alloc&) {
    return;
  }
}

}  // namespace quill

#endif
