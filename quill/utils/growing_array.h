// An array that grows at its end, for plain data in large amounts.
//
// Each growth makes room for four times as many elements. Unused room costs only addresses, whereas
// every growth copies all elements into memory that the system must first hand out, which costs
// more than anything that is later done with the elements.
//
// Elements must not need constructors or destructors. push_back and extend throw std::bad_alloc and
// then leave the array unchanged.

#ifndef QUILL_UTILS_GROWING_ARRAY_H
#define QUILL_UTILS_GROWING_ARRAY_H

#include <algorithm>
#include <cassert>
#include <cstddef>
#include <cstdint>
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
  // Adds elements with unspecified contents and returns the address of the first of them.
  T* extend(size_t num_elements) {
    if (num_elements > room - count) grow(num_elements);
    count += num_elements;
    return elements + count - num_elements;
  }
  void pop_back() {
    assert(count != 0);
    --count;
  }
  // Drops all elements after the first num_elements and keeps the room.
  void truncate(size_t num_elements) {
    assert(num_elements <= count);
    count = num_elements;
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
  T* begin() { return elements; }
  T* end() { return elements + count; }
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

  [[gnu::noinline]] void grow(size_t num_elements) {
    const size_t larger = larger_room(num_elements);
    move_to(huge_pages::WalkAllocator<T>().allocate(larger), larger);
  }

  // `element` may refer to an element of this array.
  [[gnu::noinline]] void grow_and_push_back(const T& element) {
    const size_t larger = larger_room(1);
    T* const block = huge_pages::WalkAllocator<T>().allocate(larger);
    new (block + count) T(element);
    move_to(block, larger);
    ++count;
  }

  size_t larger_room(size_t num_elements) const {
    if (num_elements > SIZE_MAX / factor - count) throw std::bad_alloc();
    return std::max({fewest, factor * room, count + num_elements});
  }

  void move_to(T* block, size_t size) {
    std::copy(elements, elements + count, block);
    release();
    elements = block;
    room = size;
  }

  void release() {
    if (elements != nullptr) huge_pages::WalkAllocator<T>().deallocate(elements, room);
  }

  T* elements = nullptr;
  size_t count = 0;
  size_t room = 0;
};

}  // namespace quill

#endif
