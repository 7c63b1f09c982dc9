// Shortens a failing trace: leaves out chunks, halved down to single operations, as long as the
// rest still fails; makes operands small where the trace still fails; and repeats both until
// nothing changes any more.

#ifndef TESTS_LIFE_SHRINK_H
#define TESTS_LIFE_SHRINK_H

#include <functional>

#include "tests/life/trace.h"

namespace quill::life {

// `fails` must hold for the trace.
Trace shrink(Trace trace, const std::function<bool(const Trace&)>& fails);

}  // namespace quill::life

#endif
