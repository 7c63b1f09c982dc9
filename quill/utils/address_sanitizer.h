// Marks memory that must not be used for now, so that the address sanitizer reports any use of it.
// Builds without the sanitizer do nothing here.

#ifndef QUILL_UTILS_ADDRESS_SANITIZER_H
#define QUILL_UTILS_ADDRESS_SANITIZER_H

#include <cstddef>

// g++ announces the sanitizer by a macro, clang++ by a feature test.
#if defined(__SANITIZE_ADDRESS__)
#define QUILL_HAS_ADDRESS_SANITIZER
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define QUILL_HAS_ADDRESS_SANITIZER
#endif
#endif

#ifdef QUILL_HAS_ADDRESS_SANITIZER
#include <sanitizer/asan_interface.h>
#endif

namespace quill {

#ifdef QUILL_HAS_ADDRESS_SANITIZER
constexpr bool has_address_sanitizer = true;
inline void poison(void* memory, size_t bytes) { ASAN_POISON_MEMORY_REGION(memory, bytes); }
inline void unpoison(void* memory, size_t bytes) { ASAN_UNPOISON_MEMORY_REGION(memory, bytes); }
inline bool is_any_poisoned(void* memory, size_t bytes) {
  return __asan_region_is_poisoned(memory, bytes) != nullptr;
}
#else
constexpr bool has_address_sanitizer = false;
inline void poison(void*, size_t) {}
inline void unpoison(void*, size_t) {}
inline bool is_any_poisoned(void*, size_t) { return false; }
#endif

}  // namespace quill

#endif
