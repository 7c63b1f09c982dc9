// The parameters that tell the symbols of an operator family apart, as keys of hash tables.
//
// Widths and amounts are in bits. The hashes must not change, because they decide the order in
// which tables are walked. In them, shifts discard what leaves the 64-bit word, and sums wrap.

#ifndef QUILL_TERMS_TERMMANAGER_FAMILY_KEYS_H
#define QUILL_TERMS_TERMMANAGER_FAMILY_KEYS_H

#include <cstdint>

#include "quill/terms/data_type.h"
#include "quill/utils/hash.h"
#include "quill/utils/ieee_float.h"
#include "quill/utils/keyed_hash.h"

namespace quill {

// TermManager exports these under its own name, as TermManager::BVIndex1 and so on.
struct FamilyKeys {
  // Rotations and extensions: amount and width.
  struct BVIndex1 {
    uint64_t a = 0;
    uint64_t b = 0;
    bool operator==(const BVIndex1&) const = default;
  };

  // Concatenation and extraction.
  struct BVIndex2 {
    uint64_t a = 0;
    uint64_t b = 0;
    uint64_t c = 0;
    bool operator==(const BVIndex2&) const = default;
  };

  // Arrays: index and element type.
  struct ArrIndex {
    const DataType* i = nullptr;
    const DataType* e = nullptr;
    bool operator==(const ArrIndex&) const = default;
  };

  // Floating-point conversions: two pairs of widths.
  struct FPFormatCast {
    uint64_t a = 0;
    uint64_t b = 0;
    uint64_t c = 0;
    uint64_t d = 0;
    bool operator==(const FPFormatCast&) const = default;
  };
};

template <>
struct Hasher<FamilyKeys::BVIndex1> {
  uint64_t operator()(const FamilyKeys::BVIndex1& key) const { return (key.a << 32) + key.b; }
};

template <>
struct Hasher<FamilyKeys::BVIndex2> {
  uint64_t operator()(const FamilyKeys::BVIndex2& key) const {
    return (key.a << 40) + (key.b << 20) + key.c;
  }
};

template <>
struct Hasher<FamilyKeys::ArrIndex> {
  uint64_t operator()(const FamilyKeys::ArrIndex& key) const {
    return reinterpret_cast<uintptr_t>(key.i) ^ reinterpret_cast<uintptr_t>(key.e);
  }
};

template <>
struct Hasher<FamilyKeys::FPFormatCast> {
  uint64_t operator()(const FamilyKeys::FPFormatCast& key) const {
    return ((key.c << 32) | key.d) + ((key.a << 32) | key.b);
  }
};

template <>
struct KeyedHasher<FamilyKeys::BVIndex1> {
  uint64_t operator()(uint64_t hash_key, const FamilyKeys::BVIndex1& key) const {
    return KeyedWordHash(hash_key).add(key.a).add(key.b).result();
  }
};

template <>
struct KeyedHasher<FamilyKeys::BVIndex2> {
  uint64_t operator()(uint64_t hash_key, const FamilyKeys::BVIndex2& key) const {
    return KeyedWordHash(hash_key).add(key.a).add(key.b).add(key.c).result();
  }
};

template <>
struct KeyedHasher<FamilyKeys::ArrIndex> {
  uint64_t operator()(uint64_t hash_key, const FamilyKeys::ArrIndex& key) const {
    return KeyedWordHash(hash_key)
        .add(reinterpret_cast<uintptr_t>(key.i))
        .add(reinterpret_cast<uintptr_t>(key.e))
        .result();
  }
};

template <>
struct KeyedHasher<FamilyKeys::FPFormatCast> {
  uint64_t operator()(uint64_t hash_key, const FamilyKeys::FPFormatCast& key) const {
    return KeyedWordHash(hash_key).add(key.a).add(key.b).add(key.c).add(key.d).result();
  }
};

}  // namespace quill

#endif
