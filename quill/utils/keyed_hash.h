// Hash functions that take a key, for indexes that have to stay fast for any objects.
//
// Anyone who reads these functions can construct any number of objects with the same hash. An index
// that notices this (intern_index.h) moves on to the next key of a fixed sequence, under which the
// hashes of the same objects have nothing to do with each other. The sequence is fixed so that runs
// can be repeated; nobody sees which key an index has reached.
//
// KeyedHasher<T> is the keyed hash of objects of type T: a function of the key and the object. The
// specialisation for a class is beside the class, as its Hasher is.

#ifndef QUILL_UTILS_KEYED_HASH_H
#define QUILL_UTILS_KEYED_HASH_H

#include <cstddef>
#include <cstdint>
#include <type_traits>

namespace quill {

// Element `number` of the sequence of keys. All keys are odd.
constexpr uint64_t hash_key(uint64_t number) {
  if (number == 0) return 0xd1b54a32d192ed03;
  uint64_t z = number * 0x9e3779b97f4a7c15;
  z = (z ^ z >> 30) * 0xbf58476d1ce4e5b9;
  z = (z ^ z >> 27) * 0x94d049bb133111eb;
  return (z ^ z >> 31) | 1;
}

// Multiplies a word by a key and adds both halves of the product without carry, so that every bit
// of the word affects every bit of the result.
inline uint64_t hash_mix(uint64_t word, uint64_t key) {
  __extension__ using uint128 = unsigned __int128;
  const uint128 product = static_cast<uint128>(word ^ 0x9e3779b97f4a7c15) * key;
  return static_cast<uint64_t>(product) ^ static_cast<uint64_t>(product >> 64);
}

// The keyed hash of a sequence of words.
class KeyedWordHash {
 public:
  explicit KeyedWordHash(uint64_t key_) : key(key_), state(key_) {}
  KeyedWordHash& add(uint64_t word) {
    state = hash_mix(state ^ word, key);
    return *this;
  }
  uint64_t result() const { return hash_mix(state, key); }

 private:
  const uint64_t key;
  uint64_t state;
};

// The keyed hash of an object and the `count` objects that belong to it, by their addresses. It
// takes fewer instructions, because nobody can choose addresses freely.
template <class T>
[[gnu::always_inline]] inline uint64_t hash_addresses(uint64_t key, const void* head,
                                                      const T* const* rest, uint64_t count) {
  uint64_t h = reinterpret_cast<uintptr_t>(head) * key;
  for (uint64_t i = 0; i < count; ++i) {
    h = ((h ^ (h >> 32)) + reinterpret_cast<uintptr_t>(rest[i])) * key;
  }
  return h;
}

template <class T>
struct KeyedHasher;

// Hashes numbers by their value and pointers by their address.
template <class T>
requires(std::is_integral_v<T> || std::is_pointer_v<T>) struct KeyedHasher<T> {
  uint64_t operator()(uint64_t key, T value) const {
    return KeyedWordHash(key).add(word(value)).result();
  }

 private:
  static uint64_t word(T value) {
    if constexpr (std::is_pointer_v<T>) {
      return reinterpret_cast<uintptr_t>(value);
    } else {
      return static_cast<uint64_t>(value);
    }
  }
};

}  // namespace quill

#endif
