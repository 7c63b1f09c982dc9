#include <gmp.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <thread>
#include <type_traits>

#include "quill/utils/bv_number.h"
#include "quill/utils/gmp_integer.h"
#include "quill/utils/qnumber.h"
#include "quill/utils/scratch_integer.h"

namespace quill {
namespace {

ptrdiff_t bytes_held = 0;
size_t blocks_asked_for = 0;

// While it lives, counts what GMP allocates. Its functions may free what GMP's own have allocated,
// and the other way round.
class GmpMemory {
 public:
  GmpMemory() {
    bytes_held = 0;
    blocks_asked_for = 0;
    mp_get_memory_functions(&allocate, &reallocate, &release);
    mp_set_memory_functions(
        [](size_t size) {
          bytes_held += static_cast<ptrdiff_t>(size);
          ++blocks_asked_for;
          return std::malloc(size);
        },
        [](void* block, size_t size_before, size_t size) {
          bytes_held += static_cast<ptrdiff_t>(size) - static_cast<ptrdiff_t>(size_before);
          ++blocks_asked_for;
          return std::realloc(block, size);
        },
        [](void* block, size_t size) {
          bytes_held -= static_cast<ptrdiff_t>(size);
          std::free(block);
        });
  }
  ~GmpMemory() { mp_set_memory_functions(allocate, reallocate, release); }
  GmpMemory(const GmpMemory&) = delete;
  GmpMemory& operator=(const GmpMemory&) = delete;

 private:
  void* (*allocate)(size_t);
  void* (*reallocate)(void*, size_t, size_t);
  void (*release)(void*, size_t);
};

constexpr ptrdiff_t most_kept =
    ScratchInteger::max_kept_limbs * static_cast<ptrdiff_t>(sizeof(mp_limb_t));

// 2^100 / 2^70, to be reduced.
void normalize_a_large_number() {
  GmpInteger n;
  GmpInteger d;
  mpz_setbit(n, 100);
  mpz_setbit(d, 70);
  QNumber number(n, d);
  number.normalize();
  EXPECT_EQ(number.to_str(), "1073741824");
}

TEST(ScratchInteger, IsThereBeforeAnythingIsConstructedAndAfterAllIsDestroyed) {
  EXPECT_TRUE(std::is_trivially_destructible_v<decltype(QNumber::gmp_tmp)>);
  static constinit thread_local ScratchInteger constant_initialised;
  EXPECT_NE(&constant_initialised, nullptr);
}

TEST(ScratchInteger, PassesAsAnIntegerOfGmp) {
  mpz_set_si(QNumber::gmp_tmp, -5);
  EXPECT_EQ(mpz_get_si(QNumber::gmp_tmp), -5);
  EXPECT_EQ(mpz_sgn(QNumber::gmp_tmp), -1);
}

TEST(ScratchInteger, IsKeptFromUseToUse) {
  QNumber power;
  BVNumber::pow2(1000, &power);
  const GmpMemory memory;
  {
    const ScratchInteger::Use scratch(QNumber::gmp_tmp);
    mpz_set_ui(scratch, 1);
    mpz_mul_2exp(scratch, scratch, 500);
  }
  EXPECT_EQ(blocks_asked_for, 0U);
}

TEST(ScratchInteger, WhatALargePowerTookGoesBack) {
  const GmpMemory memory;
  {
    QNumber power;
    BVNumber::pow2(uint64_t{1} << 26, &power);
    EXPECT_GT(bytes_held, (1 << 23) - most_kept);
    EXPECT_LT(bytes_held, (1 << 23) + most_kept);
  }
  EXPECT_LE(bytes_held, most_kept);
}

TEST(ScratchInteger, WhatALargeDivisorTookGoesBack) {
  const GmpMemory memory;
  {
    GmpInteger n;
    GmpInteger d;
    mpz_setbit(n, 1 << 22);
    mpz_setbit(d, 1 << 21);
    QNumber number(n, d);
    number.normalize();
  }
  EXPECT_LE(bytes_held, most_kept);
}

TEST(ScratchInteger, WhatAReadDivisorTookGoesBack) {
  const std::string digits(200000, '6');
  const GmpMemory memory;
  EXPECT_TRUE(QNumber::from_string(digits + "/" + digits) == QNumber(1));
  EXPECT_LE(bytes_held, most_kept);
}

TEST(ScratchInteger, AThreadGivesItsOwnBack) {
  const GmpMemory memory;
  std::thread([] {
    normalize_a_large_number();
    EXPECT_GT(bytes_held, 0);
  }).join();
  EXPECT_EQ(bytes_held, 0);
}

TEST(ScratchInteger, MayBeUsedWhenAThreadHasGivenItsOwnBack) {
  static bool normalised_late;
  normalised_late = false;
  const GmpMemory memory;
  std::thread([] {
    struct Late {
      ~Late() {
        EXPECT_EQ(bytes_held, 0);
        normalize_a_large_number();
        EXPECT_EQ(bytes_held, 0);
        normalize_a_large_number();
        EXPECT_EQ(bytes_held, 0);
        normalised_late = true;
      }
    };
    // Constructed before the first use of the scratch, and hence destroyed after its end.
    thread_local const Late late;
    EXPECT_NE(&late, nullptr);
    normalize_a_large_number();
  }).join();
  EXPECT_TRUE(normalised_late);
}

}  // namespace
}  // namespace quill
