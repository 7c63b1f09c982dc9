// A hash for names, for tables with very many of them.
//
// The string hash of the containers (hsh::hash<std::string>) multiplies by five, so that the
// million names x0 … x999999 share some forty thousand values. This one reads eight bytes at a time
// and mixes every bit into every other (it multiplies to 128 bits and folds them), and it accepts a
// std::string_view, so that a look-up needs no std::string. It depends only on the bytes and the
// key (keyed_hash.h); without a key it uses the first one.

#ifndef QUILL_UTILS_NAME_HASH_H
#define QUILL_UTILS_NAME_HASH_H

#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

#include "quill/utils/keyed_hash.h"

namespace quill {

struct NameHash {
  uint64_t operator()(std::string_view name) const { return (*this)(hash_key(0), name); }

  uint64_t operator()(uint64_t key, std::string_view name) const {
    const char* p = name.data();
    size_t n = name.size();
    uint64_t h = hash_mix(n, key);
    for (; n >= 8; p += 8, n -= 8) h = hash_mix(h ^ word(p, 8), key);
    if (n != 0) h = hash_mix(h ^ word(p, n), key);
    return hash_mix(h, key);
  }

 private:
  // The first n bytes, 1 to 8, with zeros above. Fewer than eight are read by two loads that may
  // overlap, because copying a variable number of bytes costs as much as all the rest.
  static uint64_t word(const char* p, size_t n) {
    if (n == 8) return load<uint64_t>(p);
    if (n >= 4) return load<uint32_t>(p) | uint64_t{load<uint32_t>(p + n - 4)} << 8 * (n - 4);
    if (n >= 2) return load<uint16_t>(p) | uint64_t{load<uint16_t>(p + n - 2)} << 8 * (n - 2);
    return load<uint8_t>(p);
  }

  template <class Word>
  static Word load(const char* p) {
    Word word;
    std::memcpy(&word, p, sizeof word);
    return word;
  }
};

template <>
struct KeyedHasher<std::string> : NameHash {};

}  // namespace quill

#endif
