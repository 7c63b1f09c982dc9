// What the operator families share: the makers that take the tables of a family, the composition of
// types and names, and the refusal of an operand.

#include "quill/terms/termmanager/families.h"

#include <string>

#include "quill/terms/termmanager/misuse_checks.h"
#include "quill/terms/termmanager/term_manager.h"

namespace quill {

void TermManager::Families::set_scratch_types(TermManager& m, size_t operands,
                                              const DataType* operand, const DataType* result) {
  m.scratch_types.clear();
  m.scratch_types.push_back(m.universe->get_application_type());
  m.scratch_types.insert(m.scratch_types.end(), operands, operand);
  m.scratch_types.push_back(result);
}

void TermManager::Families::compose_name(TermManager& m, const char* base, bool separated,
                                         std::initializer_list<size_t> numbers) {
  std::string& name = m.name_buffer;
  name = '`';
  name += base;
  bool first = true;
  for (const size_t number : numbers) {
    if (separated || !first) name += '_';
    name += std::to_string(number);
    first = false;
  }
  name += '`';
}

std::string TermManager::Families::name_of_type(const TermManager& m, const DataType* t) {
  return t == m.rat_type ? "rat" : t == m.int_type ? "int" : t->to_str();
}

void TermManager::Families::reject_operand(const Term_* t, const char* complaint) {
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
  return Families::make_bv_symbol(*this, name, tag, width, {width}, arity, by_symbol, by_width,
                                  result_type);
}

const Symbol* TermManager::make_bv_symbol(const char* name, SymbolTag::tag tag, size_t first,
                                          size_t width, size_t arity,
                                          hsh::HashMap<const Symbol*, BVIndex1>& by_symbol,
                                          hsh::HashMap<BVIndex1, const Symbol*>& by_key,
                                          const DataType* result_type) {
  require_own_or_null(*this, result_type);
  return Families::make_bv_symbol(*this, name, tag, BVIndex1{first, width}, {first, width}, arity,
                                  by_symbol, by_key, result_type);
}

const Symbol* TermManager::make_fp_symbol(const char* name, SymbolTag::tag tag, int kind,
                                          hsh::HashMap<IEEEFloat::format, const Symbol*>& by_format,
                                          hsh::HashMap<const Symbol*, IEEEFloat::format>& by_symbol,
                                          size_t e, size_t m) {
  const bool bool_result = (kind & 1) != 0;
  const bool rounding = (kind & 2) != 0;
  return Families::make_format_symbol(*this, name, /*separated=*/true, tag, rounding,
                                      /*operands=*/2, bool_result, by_format, by_symbol, {e, m});
}

const Symbol* TermManager::make_fp_is_symbol(
    const char* name, SymbolTag::tag tag, hsh::HashMap<IEEEFloat::format, const Symbol*>& by_format,
    hsh::HashMap<const Symbol*, IEEEFloat::format>& by_symbol, size_t e, size_t m) {
  return Families::make_format_symbol(*this, name, /*separated=*/true, tag, /*rounding=*/false,
                                      /*operands=*/1,
                                      /*bool_result=*/true, by_format, by_symbol, {e, m});
}

}  // namespace quill
