#include "quill/terms/data_type.h"

#include <vector>

#include "quill/utils/hash_map.h"
#include "quill/utils/immortal.h"

namespace quill {

namespace {

// ASCII only, whatever the locale.
bool is_plain(const std::string& name) {
  if (name.empty() || name == "rat" || name == "int") return false;
  for (const char c : name) {
    const bool plain = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
    if (!plain) return false;
  }
  return true;
}

void append_name(std::string& out, const std::string& name) {
  if (is_plain(name)) {
    out += name;
    return;
  }
  out += '|';
  for (const char c : name) {
    if (c == '\0') {
      out += "\\0";
      continue;
    }
    if (c == '|' || c == '\\') out += '\\';
    out += c;
  }
  out += '|';
}

// Whether a repeated occurrence is worth a label: compounds of a few simple types, such as (BitVec
// 8) and (Array Int Int), are not.
bool is_worth_a_label(const DataType* type) {
  if (type->is_simple()) return false;
  if (type->num_components() > 3) return true;
  for (size_t i = 0; i < type->num_components(); ++i) {
    if (!type->get_component(i)->is_simple()) return true;
  }
  return false;
}

struct Occurrence {
  bool repeated = false;
  size_t label = 0;  // 0: none given yet
};
using OccurrenceMap = hsh::HashMap<const DataType*, Occurrence>;

// Finds the compounds worth a label that occur more than once below the root. Looks into each once.
void find_repeated(const DataType* root, OccurrenceMap& occurrences) {
  std::vector<const DataType*> work{root};
  while (!work.empty()) {
    const DataType* type = work.back();
    work.pop_back();
    for (size_t i = 0; i < type->num_components(); ++i) {
      const DataType* component = type->get_component(i);
      if (!is_worth_a_label(component)) continue;
      if (occurrences.insert({component, {}})) {
        work.push_back(component);
      } else {
        occurrences[component].repeated = true;
      }
    }
  }
}

}  // namespace

const std::string& DataType::application_name() {
  static const Immortal<std::string> arrow("->");
  return *arrow;
}

const std::string& DataType::get_name() const {
  static const Immortal<std::string> none;
  return name != nullptr ? *name : *none;
}

std::string DataType::to_str() const {
  std::string out;
  OccurrenceMap occurrences;
  find_repeated(this, occurrences);
  size_t labels = 0;

  struct Frame {
    const DataType* type;
    size_t next;  // the component to print next
  };
  std::vector<Frame> open;  // the compounds around the current position
  const auto print = [&](const DataType* type) {
    if (type->is_simple()) {
      if (type->name == &application_name()) {
        out += *type->name;  // unquoted: no simple type made from a name prints like this
      } else {
        append_name(out, *type->name);
      }
      return;
    }
    const auto found = occurrences.find(type);
    if (found != occurrences.end() && found->second.repeated) {
      const bool first = found->second.label == 0;
      if (first) found->second.label = ++labels;
      out += '#';
      out += std::to_string(found->second.label);
      out += first ? '=' : '#';
      if (!first) return;
    }
    out += '(';
    open.push_back({type, 0});
  };

  print(this);
  while (!open.empty()) {
    Frame& frame = open.back();
    if (frame.next == frame.type->num_components()) {
      out += ')';
      open.pop_back();
      continue;
    }
    if (frame.next != 0) out += ' ';
    print(frame.type->get_component(frame.next++));
  }
  return out;
}

}  // namespace quill
