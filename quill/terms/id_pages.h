// An array by number that grows by pages: what walks note for the ids of terms.
//
// Representation: pages of 4 KiB, which are made and cleared when a number of their range is first
// written. A walk over a few terms of a large manager thus pays for a few pages, however large the
// ids are; the directory takes a pointer for each page below the largest.

#ifndef QUILL_TERMS_ID_PAGES_H
#define QUILL_TERMS_ID_PAGES_H

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <type_traits>
#include <utility>
#include <vector>

namespace quill {

template <class T>
class IdPages {
  static_assert(std::is_trivially_copyable_v<T> && std::has_single_bit(sizeof(T)));

 public:
  // The value of a number; T{} if it was never written.
  T get(uint64_t i) const {
    const size_t page = i / page_size;
    return page < pages.size() && pages[page] != nullptr ? (*pages[page])[i % page_size] : T{};
  }

  // The place of a number's value. Valid until the pages are destroyed. Throws std::bad_alloc, and
  // has then changed nothing.
  T& operator[](uint64_t i) {
    const size_t page = i / page_size;
    if (page >= pages.size() || pages[page] == nullptr) add_page(page);
    return (*pages[page])[i % page_size];
  }

  void clear() { pages.clear(); }

 private:
  static constexpr size_t page_size = 4096 / sizeof(T);
  using Page = std::array<T, page_size>;

  [[gnu::noinline]] void add_page(size_t page) {
    std::unique_ptr<Page> fresh = std::make_unique<Page>();
    if (page >= pages.size()) pages.resize(page + 1);
    pages[page] = std::move(fresh);
  }

  std::vector<std::unique_ptr<Page>> pages;  // null: nothing was written
};

}  // namespace quill

#endif
