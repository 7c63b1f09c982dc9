// What all operator families share: the makers that take the tables of a family,
// the types and the names of symbols, and the refusal of an operand.

#include <string>

#include "quill/terms/termmanager/family_builders.h"
#include "quill/terms/termmanager/misuse_checks.h"
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

//----------------------------------------------------------------------------------------------
// Symbols of any family, by its tables

const Symbol* TermManager::make_bv_symbol(const char* name, SymbolTag::tag tag, size_t width,
                                          size_t arity,
                                          hsh::HashMap<const Symbol*, size_t>& by_symbol,
                                          hsh::HashMap<size_t, const Symbol*>& by_width,
                                          const DataType* result_type) {
  require_own_or_null(*this, result_type);
  return make_bv_family_symbol(name, tag, width, {width}, arity, by_symbol, by_width, result_type);
}

const Symbol* TermManager::make_bv_symbol(const char* name, SymbolTag::tag tag, size_t first,
                                          size_t width, size_t arity,
                                          hsh::HashMap<const Symbol*, BVIndex1>& by_symbol,
                                          hsh::HashMap<BVIndex1, const Symbol*>& by_key,
                                          const DataType* result_type) {
  require_own_or_null(*this, result_type);
  return make_bv_family_symbol(name, tag, BVIndex1{first, width}, {first, width}, arity, by_symbol,
                               by_key, result_type);
}

const Symbol* TermManager::make_fp_symbol(const char* name, SymbolTag::tag tag, int kind,
                                          hsh::HashMap<IEEEFloat::format, const Symbol*>& by_format,
                                          hsh::HashMap<const Symbol*, IEEEFloat::format>& by_symbol,
                                          size_t e, size_t m) {
  const bool bool_result = (kind & 1) != 0;
  const bool rounding = (kind & 2) != 0;
  return make_format_symbol(name, /*separated=*/true, tag, rounding, /*operands=*/2, bool_result,
                            by_format, by_symbol, e, m);
}

const Symbol* TermManager::make_fp_is_symbol(
    const char* name, SymbolTag::tag tag, hsh::HashMap<IEEEFloat::format, const Symbol*>& by_format,
    hsh::HashMap<const Symbol*, IEEEFloat::format>& by_symbol, size_t e, size_t m) {
  return make_format_symbol(name, /*separated=*/true, tag, /*rounding=*/false, /*operands=*/1,
                            /*bool_result=*/true, by_format, by_symbol, e, m);
}

}  // namespace quill
