// Hash functors of the chained tables.
//
// A table uses Hasher<Key> unless told otherwise; hsh::hash<Key> is another name for the same type.
// This file defines the hashes of pointers, unsigned words and strings; any other key type
// specialises Hasher beside its own definition. The general Hasher hashes nothing: a table over a
// key type without a visible hash fails to compile, with a message that says so.
//
// Keys are compared with std::equal_to, unless their type specialises hsh::KeyEquality.
//
// The hashes are cheap and often the identity; the prime bucket counts of the tables spread them.
// They determine the order in which tables are walked and must not change. Pointers hash to their
// address, so a table over pointers is walked in an order that differs from run to run.
//
// A hash functor must not throw: a table that grows hashes keys after it has taken their chains
// apart.

#ifndef QUILL_UTILS_HASH_H
#define QUILL_UTILS_HASH_H

#include <cstdint>
#include <functional>
#include <string>
#include <type_traits>

namespace quill {

// For key types without a hash.
template <class Key>
struct Hasher {};

template <class T>
struct Hasher<T const*> {
  uint64_t operator()(T const* pointer) const noexcept {
    static_assert(sizeof(T) != 0, "a type may have a hash of its own beside its definition");
    return reinterpret_cast<uintptr_t>(pointer);
  }
};

template <>
struct Hasher<unsigned long> {
  uint64_t operator()(unsigned long value) const noexcept { return value; }
};

// Hashes the text up to its first NUL only; the comparison tells apart what differs after it.
template <>
struct Hasher<std::string> {
  uint64_t operator()(const std::string& text) const noexcept {
    uint64_t h = 0;
    for (const char* c = text.c_str(); *c != '\0'; ++c) {
      // Signed on every platform: a character above 127 counts as negative.
      h = 5 * h + static_cast<uint64_t>(int64_t{static_cast<signed char>(*c)});
    }
    return h;
  }
};

namespace hsh {

template <class Key>
using hash = Hasher<Key>;

// The equality that a table over `Key` uses unless told otherwise.
template <class Key>
struct KeyEquality {
  using type = std::equal_to<Key>;
};

template <class Hash, class Key>
concept HashOf = std::is_invocable_r_v<uint64_t, const Hash&, const Key&>;

}  // namespace hsh
}  // namespace quill

#endif
