// What a request changes in the whole state of a manager, for requests that are refused or run out
// of memory, which should change nothing.

#ifndef QUILL_TESTS_UNIT_TERMS_TERMMANAGER_UNCHANGED_H
#define QUILL_TESTS_UNIT_TERMS_TERMMANAGER_UNCHANGED_H

#include <set>
#include <sstream>
#include <string>
#include <typeinfo>
#include <vector>

#include "quill/terms/termmanager/term_manager.h"
#include "quill/utils/exception.h"

namespace quill::testing {

// The lines of the second description that are not in the first, sorted, and then those of the
// first that are gone, with a minus before them.
inline std::vector<std::string> changed_lines(const std::string& before, const std::string& after) {
  std::multiset<std::string> gone;
  std::istringstream old_lines(before);
  for (std::string line; std::getline(old_lines, line);) gone.insert(line);
  std::multiset<std::string> added;
  std::istringstream new_lines(after);
  for (std::string line; std::getline(new_lines, line);) {
    const auto same = gone.find(line);
    if (same != gone.end()) {
      gone.erase(same);
    } else {
      added.insert(line);
    }
  }
  std::vector<std::string> lines(added.begin(), added.end());
  for (const std::string& line : gone) lines.push_back("-" + line);
  return lines;
}

// The state of a manager, to be compared with what it is later.
class StateBefore {
 public:
  explicit StateBefore(const TermManager& m) : manager(m), description(m.describe_state()) {}

  // What has changed, a line each, and what is inconsistent; the empty text if nothing.
  std::string changes() const {
    std::string text;
    const std::string now = manager.describe_state();
    if (now != description) {
      for (const std::string& line : changed_lines(description, now)) text += "\n" + line;
      if (text.empty()) text = "\nanother order";
    }
    const std::string inconsistency = manager.check_consistency();
    if (!inconsistency.empty()) text += "\ninconsistent: " + inconsistency;
    return text;
  }

 private:
  const TermManager& manager;
  const std::string description;
};

// What the request throws: "error: " for the class of the manager's errors or "Exception: " for
// their base, with the message; then all that has changed, which mostly is nothing.
template <class Request>
std::string refusal(const TermManager& m, Request request) {
  const StateBefore before(m);
  std::string text = "granted";
  try {
    request();
  } catch (const Exception& e) {
    text = typeid(e) == typeid(TermManager::error) ? "error: "
           : typeid(e) == typeid(Exception)        ? "Exception: "
                                                   : "another class: ";
    text += e.what();
  }
  return text + before.changes();
}

}  // namespace quill::testing

#endif
