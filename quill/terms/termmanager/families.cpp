// What all operator families share: their types, their names, and the terms of their builders.

#include <string>

#include "quill/terms/termmanager/term_manager.h"

namespace quill {

// The function type of so many operands of one type, for add_family_symbol.
void TermManager::set_scratch_types(size_t operands, const DataType* operand,
                                    const DataType* result) {
  scratch_types.clear();
  scratch_types.push_back(universe->get_application_type());
  scratch_types.insert(scratch_types.end(), operands, operand);
  scratch_types.push_back(result);
}

// The base and the numbers, joined by "_" and between backquotes.
void TermManager::compose_family_name(const char* base, bool separated,
                                      std::initializer_list<size_t> numbers) {
  name_buffer = '`';
  name_buffer += base;
  bool first = true;
  for (const size_t number : numbers) {
    if (separated || !first) name_buffer += '_';
    name_buffer += std::to_string(number);
    first = false;
  }
  name_buffer += '`';
}

void TermManager::reject_operand(const Term_* t, const char* complaint) const {
  throw error("type error. term ") << t->to_shallow_str() << complaint;
}

}  // namespace quill
