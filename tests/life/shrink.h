// Makes a failing trace short: leaves out chunks, halved down to single operations, as long as what
// remains still fails, makes operands small where that keeps it failing, and does so again until
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
