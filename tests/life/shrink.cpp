#include "tests/life/shrink.h"

#include <algorithm>

namespace quill::life {

namespace {

using Fails = std::function<bool(const Trace&)>;

constexpr size_t small_operands = 4;

// The trace without `count` operations from `first` on.
Trace without(const Trace& trace, size_t first, size_t count) {
  Trace rest(trace.begin(), trace.begin() + static_cast<ptrdiff_t>(first));
  const size_t next = std::min(trace.size(), first + count);
  rest.insert(rest.end(), trace.begin() + static_cast<ptrdiff_t>(next), trace.end());
  return rest;
}

// Whether anything was left out. Starts at the end, where a removal affects the fewest operations.
bool drop_chunks(Trace& trace, size_t size, const Fails& fails) {
  bool dropped = false;
  for (size_t end = trace.size(); end > 0;) {
    const size_t first = end > size ? end - size : 0;
    Trace rest = without(trace, first, end - first);
    if (fails(rest)) {
      trace = std::move(rest);
      dropped = true;
    }
    end = first;
  }
  return dropped;
}

// Whether an operand was made smaller. Small operands choose the same when other operations are
// removed.
bool lower_operands(Trace& trace, const Fails& fails) {
  bool lowered = false;
  for (Operation& operation : trace) {
    for (size_t& operand : operation.operands) {
      const size_t before = operand;
      for (operand = 0; operand < std::min(before, small_operands) && !fails(trace);) operand++;
      if (operand == small_operands) operand = before;
      lowered = lowered || operand != before;
    }
  }
  return lowered;
}

}  // namespace

Trace shrink(Trace trace, const Fails& fails) {
  bool changed = true;
  while (changed) {
    changed = false;
    for (size_t size = std::max<size_t>(1, trace.size() / 2); size > 0; size /= 2) {
      changed = drop_chunks(trace, size, fails) || changed;
    }
    changed = lower_operands(trace, fails) || changed;
  }
  return trace;
}

}  // namespace quill::life
