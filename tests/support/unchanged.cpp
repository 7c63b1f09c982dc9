#include "tests/support/unchanged.h"

#include <set>
#include <sstream>
#include <typeinfo>

#include "quill/terms/termmanager/term_manager.h"
#include "quill/utils/exception.h"

namespace quill::testing {

std::vector<std::string> changed_lines(const std::string& before, const std::string& after) {
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

StateBefore::StateBefore(const TermManager& m) : manager(m), description(m.describe_state()) {}

std::string StateBefore::changes() const {
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

std::string refusal(const TermManager& m, const std::function<void()>& request) {
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
