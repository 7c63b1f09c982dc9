// Runs an action when a scope is left, unless it was dismissed.
//
// The undo half of "all or nothing": set it up right after a step that must be undone if a later
// one throws, and dismiss it when nothing can fail any more. The action must not throw.

#ifndef QUILL_UTILS_SCOPE_GUARD_H
#define QUILL_UTILS_SCOPE_GUARD_H

#include <utility>

namespace quill {

template <class Action>
class ScopeGuard {
 public:
  explicit ScopeGuard(Action action_) : action(std::move(action_)) {}
  ScopeGuard(const ScopeGuard&) = delete;
  ScopeGuard& operator=(const ScopeGuard&) = delete;
  ~ScopeGuard() {
    if (armed) action();
  }

  void dismiss() { armed = false; }

 private:
  Action action;
  bool armed = true;
};

// Sets a variable for the length of a scope and restores its previous value on every way out.
template <class T>
class ScopedValue {
 public:
  ScopedValue(T& variable_, T value) : variable(variable_), found(std::move(variable_)) {
    variable = std::move(value);
  }
  ScopedValue(const ScopedValue&) = delete;
  ScopedValue& operator=(const ScopedValue&) = delete;
  ~ScopedValue() { variable = std::move(found); }

 private:
  T& variable;
  T found;
};

}  // namespace quill

#endif
