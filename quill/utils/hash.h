// Hash functors of the chained tables.
//
// A table takes hsh::hash<Key> unless told otherwise. The keys whose hash is fixed here are
// pointers, unsigned words and strings; any other key type brings a specialisation of quill::Hasher
// beside its own definition, which hsh::hash picks up. Hasher has no general definition, so a table
// over a key type whose hash is not visible fails to compile.
//
// The hashes are cheap and often the identity; the prime bucket counts of the tables spread them.
// They decide the order in which tables are walked and must not change. Pointers hash to their
// address: a table over them is walked in an order that differs from run to run.
//
// A hash functor throws nothing: a table that grows hashes keys while their chains are taken apart.

#ifndef QUILL_UTILS_HASH_H
#define QUILL_UTILS_HASH_H

#include <cstdint>
#include <string>

namespace quill {

template <class T>
struct Hasher;

namespace hsh {

template <class Key>
struct hash : Hasher<Key> {};

template <class T>
struct hash<T const*> {
  std::uint64_t operator()(T const* pointer) const noexcept {
    static_assert(sizeof(T) != 0, "a type may have a hash of its own beside its definition");
    return reinterpret_cast<std::uintptr_t>(pointer);
  }
};

template <>
struct hash<unsigned long> {
  std::uint64_t operator()(unsigned long value) const noexcept { return value; }
};

// Reads the text up to its first NUL only; what stands behind a NUL is left to the comparison.
template <>
struct hash<std::string> {
  std::uint64_t operator()(const std::string& text) const noexcept {
    std::uint64_t h = 0;
    for (const char* c = text.c_str(); *c != '\0'; ++c) {
      // Signed on every platform: a character above 127 counts as negative.
      h = 5 * h + static_cast<std::uint64_t>(std::int64_t{static_cast<signed char>(*c)});
    }
    return h;
  }
};

}  // namespace hsh
}  // namespace quill

#endif
