// A GMP integer for intermediate results, kept from use to use. Each thread has exactly one.
//
//   ScratchInteger::Use divisor(QNumber::gmp_tmp);
//   mpz_gcd(divisor, n, d);
//
// Keeping it saves an allocation for each use. The memory kept is bounded: a use that has made the
// integer larger than max_kept_limbs gives all of the memory back at its end.
//
// Lifetime. Destructors of static and thread-local objects may need a number after everything else
// that is thread-local is gone. The integer is therefore constant-initialised and has no
// destructor: it exists as long as the thread's storage. Its first use creates a thread-local
// object that gives the memory back when the thread ends; from then on each use gives back what it
// took.

#ifndef QUILL_UTILS_SCRATCH_INTEGER_H
#define QUILL_UTILS_SCRATCH_INTEGER_H

#include <gmp.h>

namespace quill {

class ScratchInteger {
 public:
  static constexpr int max_kept_limbs = 1024;

  constexpr ScratchInteger() noexcept = default;
  ScratchInteger(const ScratchInteger&) = delete;
  ScratchInteger& operator=(const ScratchInteger&) = delete;

  // Can be passed wherever GMP takes an mpz_t. The value is unspecified.
  operator mpz_ptr() noexcept {
    if (!is_ready) make_ready();
    return value;
  }
  mpz_ptr operator->() noexcept { return *this; }

  // The integer for the length of a scope. Uses must not be nested.
  class Use {
   public:
    explicit Use(ScratchInteger& integer) noexcept : scratch(integer), value(integer) {}
    ~Use() {
      if (value->_mp_alloc > scratch.kept_limbs) scratch.give_back();
    }
    Use(const Use&) = delete;
    Use& operator=(const Use&) = delete;

    operator mpz_ptr() const noexcept { return value; }
    mpz_ptr operator->() const noexcept { return value; }

   private:
    ScratchInteger& scratch;
    const mpz_ptr value;
  };

 private:
  struct EndOfThread;

  void make_ready() noexcept;
  void give_back() noexcept;

  mpz_t value{};
  bool is_ready = false;            // whether GMP has initialised the value
  int kept_limbs = max_kept_limbs;  // -1, less than any integer has, once the thread ends
};

}  // namespace quill

#endif
