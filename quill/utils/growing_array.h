// An array that grows at its end, for plain data of which there may be very much.
//
// Each growth takes room for four times as many elements. Room costs addresses alone until it is
// used, while every growth copies what is there into memory that the system has to hand out first,
// which costs more than anything that is then done with the elements.
//
// Not for elements that need constructors or destructors. push_back throws std::bad_alloc without a
// change.

#ifndef QUILL_UTILS_GROWING_ARRAY_H
#define QUILL_UTILS_GROWING_ARRAY_H

#include <algorithm>
#include <cassert>
#include <cstddef>
#include <new>
#include <type_traits>
#include <utility>

#include "quill/utils/huge_pages.h"

namespace quill {

template <class T>
class GrowingArray {
  static_assert(std::is_trivially_copyable_v<T> && std::is_trivially_destructible_v<T>);

 public:
  GrowingArray() = default;
  GrowingArray(const GrowingArray&) = delete;
  GrowingArray& operator=(const GrowingArray&) = delete;
  ~GrowingArray() { release(); }

  void push_back(const T& element) {
    if (count == room) {
      grow_and_push_back(element);
    } else {
      new (elements + count++) T(element);
    }
  }
  void pop_back() {
    assert(count != 0);
    count--;
  }
  // Keeps the room.
  void clear() { count = 0; }

  size_t size() const { return count; }
  bool empty() const { return count == 0; }
  T& operator[](size_t i) {
    assert(i < count);
    return elements[i];
  }
  const T& operator[](size_t i) const {
    assert(i < count);
    return elements[i];
  }
  T& back() { return (*this)[count - 1]; }
  const T* begin() const { return elements; }
  const T* end() const { return elements + count; }

  void swap(GrowingArray& other) noexcept {
    std::swap(elements, other.elements);
    std::swap(count, other.count);
    std::swap(room, other.room);
  }

 private:
  static constexpr size_t fewest = 8;
  static constexpr size_t factor = 4;

  // The element may be one of the array.
  [[gnu::noinline]] void grow_and_push_back(const T& element) {
    const size_t larger = std::max(fewest, factor * room);
    T* const moved = huge_pages::Allocator<T>().allocate(larger);
    new (moved + count) T(element);
    std::copy(elements, elements + count, moved);
    release();
    elements = moved;
    room = larger;
    count++;
  }

  void release() {
    if (elements != nullptr) huge_pages::Allocator<T>().deallocate(elements, room);
  }

  T* elements = nullptr;
  size_t count = 0;
  size_t room = 0;
};

}  // namespace quill

#endif
