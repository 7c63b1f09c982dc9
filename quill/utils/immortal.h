// A constant that is never destroyed, so that destructors of static objects can use it.
//
//   static const Immortal<std::string> text("->");
//   return *text;
//
// Memory that it owns elsewhere stays reachable through it.

#ifndef QUILL_UTILS_IMMORTAL_H
#define QUILL_UTILS_IMMORTAL_H

#include <cstddef>
#include <new>
#include <utility>

namespace quill {

template <class T>
class Immortal {
 public:
  template <class... Arguments>
  explicit Immortal(Arguments&&... arguments) {
    ::new (static_cast<void*>(storage)) T(std::forward<Arguments>(arguments)...);
  }
  Immortal(const Immortal&) = delete;
  Immortal& operator=(const Immortal&) = delete;

  const T& operator*() const noexcept { return *std::launder(reinterpret_cast<const T*>(storage)); }

 private:
  alignas(T) std::byte storage[sizeof(T)];
};

}  // namespace quill

#endif
