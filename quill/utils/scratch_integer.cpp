#include "quill/utils/scratch_integer.h"

#include <type_traits>

namespace quill {

static_assert(std::is_trivially_destructible_v<ScratchInteger>);

struct ScratchInteger::EndOfThread {
  ScratchInteger& scratch;
  ~EndOfThread() {
    scratch.kept_limbs = -1;
    if (scratch.is_ready) scratch.give_back();
  }
};

void ScratchInteger::make_ready() noexcept {
  mpz_init(value);
  is_ready = true;
  // Not again after it has been destroyed.
  if (kept_limbs >= 0) thread_local const EndOfThread end{*this};
}

void ScratchInteger::give_back() noexcept {
  mpz_clear(value);
  is_ready = false;
}

}  // namespace quill
