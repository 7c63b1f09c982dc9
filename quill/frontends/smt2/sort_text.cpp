#include "quill/frontends/smt2/sort_text.h"

#include <vector>

#include "quill/frontends/smt2/theory_sorts.h"
#include "quill/smtlib/name_escape.h"

namespace quill::smt2 {

namespace {

constexpr size_t enough = 60;

}  // namespace

std::string sort_text(const TermManager& manager, const DataType* sort) {
  std::string text;
  std::vector<const DataType*> pending = {sort};  // null means a closing parenthesis
  while (!pending.empty() && text.size() < enough) {
    const DataType* next = pending.back();
    pending.pop_back();
    if (next == nullptr) {
      text += ')';
      continue;
    }
    if (!text.empty() && text.back() != '(') text += ' ';
    size_t width = 0;
    size_t e = 0;
    size_t m = 0;
    if (manager.is_bv_type(next, &width)) {
      text += "(_ BitVec " + std::to_string(width) + ")";
    } else if (manager.is_fp_type(next, &e, &m)) {
      text += "(_ FloatingPoint " + std::to_string(e) + " " + std::to_string(m + 1) + ")";
    } else if (!next->is_simple()) {
      const bool is_array = manager.is_array_type(next, nullptr, nullptr);
      text += is_array ? "(Array" : "(";
      pending.push_back(nullptr);
      for (size_t i = next->num_components(); i-- > (is_array ? 1 : 0);) {
        pending.push_back(next->get_component(i));
      }
    } else if (next == manager.get_fprounding_type()) {
      text += "RoundingMode";
    } else if (next == manager.get_bool_type() || TheorySorts::is_bool_marker(next)) {
      text += "Bool";
    } else if (next == manager.get_int_type()) {
      text += "Int";
    } else if (next == manager.get_rat_type()) {
      text += "Real";
    } else {
      text += name_to_smtlib(next->get_name(), NameKind::Sort);
    }
  }
  if (!pending.empty() || text.size() > 2 * enough) {
    text.resize(std::min(text.size(), enough));
    text += "...";
  }
  for (char& c : text) {
    if (static_cast<unsigned char>(c) < 32 || c == 127) c = '?';
  }
  return text;
}

}  // namespace quill::smt2
