// What a request changes in the whole state of a manager, for requests that are refused or run out
// of memory, which should change nothing.

#ifndef TESTS_SUPPORT_UNCHANGED_H
#define TESTS_SUPPORT_UNCHANGED_H

#include <functional>
#include <string>
#include <vector>

namespace quill {
class TermManager;
}

namespace quill::testing {

// The lines of the second description that are not in the first, sorted, and then those of the
// first that are gone, with a minus before them.
std::vector<std::string> changed_lines(const std::string& before, const std::string& after);

// The state of a manager, to be compared with what it is later.
class StateBefore {
 public:
  explicit StateBefore(const TermManager& m);

  // What has changed, a line each, and what is inconsistent; the empty text if nothing.
  std::string changes() const;

 private:
  const TermManager& manager;
  const std::string description;
};

// What the request throws: "error: " for the class of the manager's errors or "Exception: " for
// their base, with the message; then all that has changed, which mostly is nothing.
std::string refusal(const TermManager& m, const std::function<void()>& request);

}  // namespace quill::testing

#endif
