// Runs an action that may crash or hang in a separate process.

#ifndef TESTS_LIFE_TRIAL_H
#define TESTS_LIFE_TRIAL_H

#include <functional>
#include <string>

namespace quill::life {

// What `action` returns, or a text that says which signal ended it or how it exited. With `quiet`,
// what it writes to the standard streams is dropped.
std::string try_apart(const std::function<std::string()>& action, bool quiet);

}  // namespace quill::life

#endif
