#include "quill/terms/term.h"

#include <vector>

#include "quill/utils/hash_map.h"

namespace quill {

namespace {

struct Occurrence {
  bool repeated = false;
  bool printed = false;
};
using OccurrenceMap = hsh::HashMap<const Term_*, Occurrence>;

// Finds the non-constant subterms that occur more than once. Looks into each of them once.
void find_repeated(const Term_* root, OccurrenceMap& occurrences) {
  std::vector<const Term_*> work{root};
  while (!work.empty()) {
    const Term_* term = work.back();
    work.pop_back();
    for (const Term_* argument : term->arguments()) {
      if (argument->symbol->arity == 0) continue;
      if (occurrences.insert({argument, {}})) {
        work.push_back(argument);
      } else {
        occurrences[argument].repeated = true;
      }
    }
  }
}

void append_reference(std::string& out, const Term_* term) {
  out += '#';
  out += std::to_string(term->id);
}

}  // namespace

std::string Term_::to_str() const {
  std::string out;
  OccurrenceMap occurrences;
  find_repeated(this, occurrences);

  struct Frame {
    const Term_* term;
    uint64_t next;  // the argument to print next
  };
  std::vector<Frame> open;  // the applications around the current position
  const auto print = [&](const Term_* term) {
    if (term->symbol->arity == 0) {
      out += term->symbol->name;
      return;
    }
    const auto found = occurrences.find(term);
    if (found != occurrences.end() && found->second.repeated) {
      append_reference(out, term);
      if (found->second.printed) return;
      found->second.printed = true;
      out += '=';
    }
    out += '(';
    out += term->symbol->name;
    open.push_back({term, 0});
  };

  print(this);
  while (!open.empty()) {
    Frame& frame = open.back();
    if (frame.next == frame.term->symbol->arity) {
      out += ')';
      open.pop_back();
      continue;
    }
    out += ' ';
    print(frame.term->args[frame.next++]);
  }
  return out;
}

}  // namespace quill
