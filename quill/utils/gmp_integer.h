// A GMP integer that initialises and clears itself. It can be passed wherever GMP takes an mpz_t.

#ifndef QUILL_UTILS_GMP_INTEGER_H
#define QUILL_UTILS_GMP_INTEGER_H

#include <gmp.h>

namespace quill {

class GmpInteger {
 public:
  GmpInteger() noexcept { mpz_init(value); }
  ~GmpInteger() { mpz_clear(value); }
  GmpInteger(const GmpInteger&) = delete;
  GmpInteger& operator=(const GmpInteger&) = delete;

  operator mpz_ptr() noexcept { return value; }
  operator mpz_srcptr() const noexcept { return value; }

  // For the GMP functions that are macros, such as mpz_sgn.
  mpz_ptr operator->() noexcept { return value; }
  mpz_srcptr operator->() const noexcept { return value; }

 private:
  mpz_t value;
};

}  // namespace quill

#endif
