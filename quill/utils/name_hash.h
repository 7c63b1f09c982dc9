// A hash for names, for tables with very many of them.
//
// The string hash of the containers (hsh::hash<std::string>) multiplies by five, so that the
// million names x0 … x999999 share some forty thousand values. This one reads eight bytes at a time
// and mixes every bit into every other (multiply and fold to 128 bits), and accepts a
// std::string_view, so that a look-up needs no std::string. Depends on the bytes alone.

#ifndef QUILL_UTILS_NAME_HASH_H
#define QUILL_UTILS_NAME_HASH_H

#include <cstdint>
#include <cstring>
#include <string_view>

namespace quill {

struct NameHash {
  uint64_t operator()(std::string_view name) const {
    const char* p = name.data();
    size_t n = name.size();
    uint64_t h = mix(n ^ k0, k1);
    for (; n >= 8; p += 8, n -= 8) h = mix(h ^ word(p, 8), k1);
    if (n != 0) h = mix(h ^ word(p, n), k0);
    return mix(h, k0);
  }

 private:
  static constexpr uint64_t k0 = 0x9e3779b97f4a7c15, k1 = 0xd1b54a32d192ed03;

  // The first n bytes, 1 to 8, with zeros above. Of two loads that overlap where n is no power of
  // two, because copying a number of bytes that varies costs as much as all the rest.
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

  static uint64_t mix(uint64_t a, uint64_t b) {
    __extension__ using uint128 = unsigned __int128;
    const uint128 product = static_cast<uint128>(a ^ k0) * (b | 1);
    return static_cast<uint64_t>(product) ^ static_cast<uint64_t>(product >> 64);
  }
};

}  // namespace quill

#endif
