// Powers of two, by a machine shift where the result fits and by GMP elsewhere.

#include "quill/utils/bv_number.h"

#include <gmp.h>

#include <new>
#include <utility>

namespace quill {

namespace {

// GMP ends the process when it cannot allocate, so it is never asked for more than 512 MiB.
constexpr uint64_t max_exponent = uint64_t{1} << 32;

}  // namespace

void BVNumber::pow2(uint64_t n, QNumber* out) {
  if (n < 62) {
    *out = QNumber(int64_t{1} << n);
    return;
  }
  if (n > max_exponent) throw std::bad_alloc();
  const ScratchInteger::Use power(QNumber::gmp_tmp);
  mpz_set_ui(power, 1);
  mpz_mul_2exp(power, power, n);
  if (mpz_fits_slong_p(power) != 0) {
    *out = QNumber(power);
    return;
  }
  GmpInteger one;
  mpz_set_ui(one, 1);
  QNumber result(power, one);
  result.normalize();
  *out = std::move(result);
}

}  // namespace quill
