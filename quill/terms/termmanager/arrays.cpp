// Arrays. Each family has one map, from the pair of types to the symbol. Its symbols are recognised
// by their tag and type, because the tag alone proves nothing: add_interpreted_symbol can give any
// tag to a symbol of any type.

#include <string>

#include "quill/terms/termmanager/families.h"
#include "quill/terms/termmanager/misuse_checks.h"
#include "quill/terms/termmanager/operator_family.h"
#include "quill/terms/termmanager/term_manager.h"
#include "quill/terms/termmanager/transaction.h"

namespace quill {

const Symbol* TermManager::Families::make_array_symbol(
    TermManager& m, SymbolTag::tag tag, const ArrIndex& key,
    std::initializer_list<const DataType*> components) {
  m.scratch_types.clear();
  m.scratch_types.push_back(m.universe->get_application_type());
  m.scratch_types.insert(m.scratch_types.end(), components);
  m.name_buffer = '`';
  m.name_buffer += operator_family(tag).base;
  m.name_buffer += name_of_type(m, key.i);
  m.name_buffer += '_';
  m.name_buffer += name_of_type(m, key.e);
  m.name_buffer += '`';
  Transaction making(m);
  const Symbol* s = making.add_symbol(tag);
  m.array_families[family_slot(tag)].insert(key, s);
  making.commit();
  return s;
}

const Symbol* TermManager::make_array_read_symbol(const DataType* idx, const DataType* elem) {
  require_own(*this, idx);
  require_own(*this, elem);
  constexpr SymbolTag::tag tag = SymbolTag::ARRAY_READ;
  const ArraySymbols& symbols = array_families[family_slot(tag)];
  if (const Symbol* present = symbols.find({idx, elem})) return present;
  Transaction making(*this);
  const DataType* array = get_array_type(idx, elem);
  const Symbol* s = Families::make_array_symbol(*this, tag, {idx, elem}, {array, idx, elem});
  making.commit();
  return s;
}

const Symbol* TermManager::make_array_write_symbol(const DataType* idx, const DataType* elem) {
  require_own(*this, idx);
  require_own(*this, elem);
  constexpr SymbolTag::tag tag = SymbolTag::ARRAY_WRITE;
  const ArraySymbols& symbols = array_families[family_slot(tag)];
  if (const Symbol* present = symbols.find({idx, elem})) return present;
  Transaction making(*this);
  const DataType* array = get_array_type(idx, elem);
  const Symbol* s = Families::make_array_symbol(*this, tag, {idx, elem}, {array, idx, elem, array});
  making.commit();
  return s;
}

const Symbol* TermManager::make_array_const_symbol(const DataType* idx, const DataType* elem) {
  require_own(*this, idx);
  require_own(*this, elem);
  constexpr SymbolTag::tag tag = SymbolTag::ARRAY_CONST;
  const ArraySymbols& symbols = array_families[family_slot(tag)];
  if (const Symbol* present = symbols.find({idx, elem})) return present;
  Transaction making(*this);
  const DataType* array = get_array_type(idx, elem);
  const Symbol* s = Families::make_array_symbol(*this, tag, {idx, elem}, {elem, array});
  making.commit();
  return s;
}

const Term_* TermManager::make_array_read(const Term_* a, const Term_* i) {
  require_own(*this, {a, i});
  constexpr OperatorFamily family = operator_family(SymbolTag::ARRAY_READ);
  const DataType* idx = nullptr;
  const DataType* elem = nullptr;
  if (!is_array_type(a->type(), &idx, &elem)) Families::reject_operand(a, family.complaint);
  return apply(make_array_read_symbol(idx, elem), {a, i}, family.operation);
}

const Term_* TermManager::make_array_write(const Term_* a, const Term_* i, const Term_* v) {
  require_own(*this, {a, i, v});
  constexpr OperatorFamily family = operator_family(SymbolTag::ARRAY_WRITE);
  const DataType* idx = nullptr;
  const DataType* elem = nullptr;
  if (!is_array_type(a->type(), &idx, &elem)) Families::reject_operand(a, family.complaint);
  return apply(make_array_write_symbol(idx, elem), {a, i, v}, family.operation);
}

const Term_* TermManager::make_array_const(const DataType* arrtype, const Term_* v) {
  require_own(*this, v);
  constexpr OperatorFamily family = operator_family(SymbolTag::ARRAY_CONST);
  const DataType* idx = nullptr;
  const DataType* elem = nullptr;
  if (!is_array_type(arrtype, &idx, &elem)) {
    throw error("type error. type ") << arrtype->to_str() << family.complaint;
  }
  return apply(make_array_const_symbol(idx, elem), {v}, family.operation);
}

namespace {

// Writes the types of the array to the outputs that are not null. Returns true, so that recognisers
// can end with a call of it.
bool put_types(const DataType* array, const DataType** idx, const DataType** elem) {
  if (idx != nullptr) *idx = array->get_component(1);
  if (elem != nullptr) *elem = array->get_component(2);
  return true;
}

}  // namespace

bool TermManager::is_array_read(const Symbol* s, const DataType** idx,
                                const DataType** elem) const {
  if (get_tag(s) != SymbolTag::ARRAY_READ || s->arity != 2) return false;
  const DataType* array = s->type->get_component(1);
  return is_array_type(array, nullptr, nullptr) &&
         s->type->get_component(2) == array->get_component(1) &&
         s->get_output_type() == array->get_component(2) && put_types(array, idx, elem);
}

bool TermManager::is_array_write(const Symbol* s, const DataType** idx,
                                 const DataType** elem) const {
  if (get_tag(s) != SymbolTag::ARRAY_WRITE || s->arity != 3) return false;
  const DataType* array = s->type->get_component(1);
  return is_array_type(array, nullptr, nullptr) &&
         s->type->get_component(2) == array->get_component(1) &&
         s->type->get_component(3) == array->get_component(2) && s->get_output_type() == array &&
         put_types(array, idx, elem);
}

bool TermManager::is_array_const(const Symbol* s, const DataType** idx,
                                 const DataType** elem) const {
  if (get_tag(s) != SymbolTag::ARRAY_CONST || s->arity != 1) return false;
  const DataType* array = s->get_output_type();
  return is_array_type(array, nullptr, nullptr) &&
         s->type->get_component(1) == array->get_component(2) && put_types(array, idx, elem);
}

}  // namespace quill
