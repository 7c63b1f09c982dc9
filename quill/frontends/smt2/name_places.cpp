#include "quill/frontends/smt2/name_places.h"

namespace quill::smt2 {

const DataType* sort_of(const NamedTerm& named) {
  return named.sort != nullptr ? named.sort : named.term->type();
}

NamePlace place_of(const TermManager& manager, const Command& command, const NamedTerm& named,
                   const Logic& logic) {
  const DataType* type = named.term->type();
  const DataType* sort = sort_of(named);
  const bool is_definition = !command.stored_name.empty();
  const bool can_be_whole = command.kind == CommandKind::Assert || is_definition;
  if (can_be_whole && named.term == command.terms[0].value.term) {
    if (is_definition && sort == command.terms[0].value.sort) return NamePlace::Whole;
    if (!is_definition) return named.is_label ? NamePlace::Whole : NamePlace::Apart;
  }
  // A term is annotated where it is written with the sort of its type: to_real goes around the
  // annotation. Only if there is just one sort of numbers, numerals have that sort in any place.
  if (sort == type) return NamePlace::Inside;
  const bool has_one_sort = !logic.has(Theory::Ints) || !logic.has(Theory::Reals);
  const bool is_numeral = manager.is_number(named.term->symbol, nullptr);
  return has_one_sort && is_numeral ? NamePlace::Inside : NamePlace::Apart;
}

}  // namespace quill::smt2
