// Copying symbols.
//
// The key that tells the symbols of an operator family apart is the same in every manager, and so
// are the name and the type that follow from the operator and the key. Copying therefore enters a
// symbol in the destination's family as the maker of the family would, with the key and the name of
// the source's symbol and a copy of its type. The rows of operator_family.h say which tables hold a
// family; nothing here depends on a particular one, except that arrays have no map from symbols to
// keys.

#include "quill/terms/termmanager/families.h"
#include "quill/terms/termmanager/term_copy_callback.h"
#include "quill/terms/termmanager/term_manager.h"

namespace quill {

const Symbol* TermManager::TermCopyCallback::copy_symbol(const Symbol* s) {
  if (source == destination) return s;
  const auto known = symbols.find(s);
  if (known != symbols.end()) return known->second;
  const Symbol* copy = destination->signature->get_symbol(s->name);
  if (copy != nullptr) {
    destination->note_given(copy);
  } else {
    copy = make_symbol_copy(s);
  }
  symbols[s] = copy;
  return copy;
}

// The copy of a symbol whose name is not taken in the destination.
const Symbol* TermManager::TermCopyCallback::make_symbol_copy(const Symbol* s) {
  const SymbolTag::tag tag = source->get_tag(s);
  const Symbol* copy = nullptr;
  if (tag == SymbolTag::EQUAL && source->equality_symbols.contains(s)) {
    copy = destination->make_equality_symbol(copy_type(s->type->get_component(1)));
  } else if (const DataType* type = nullptr;
             tag == SymbolTag::TERM_ITE && source->is_term_ite(s, &type)) {
    copy = destination->make_term_ite_symbol(copy_type(type));
  } else if (has_family(tag)) {
    copy = make_family_symbol(s, tag);
  } else if (QNumber value; source->is_number(s, &value)) {
    copy = make_number_symbol(s, value);
  }
  if (copy != nullptr) return copy;
  // A user symbol. make_symbol refuses the name of a symbol that add_interpreted_symbol registered,
  // because its meaning can't be carried over.
  const DataType* type = copy_type(s->type);
  return destination->make_symbol(s->name, type);
}

const Symbol* TermManager::TermCopyCallback::make_number_symbol(const Symbol* s,
                                                                const QNumber& value) {
  if (const size_t* width = find_width(s->type)) {
    return destination->make_bv_number(value, *width)->symbol;
  }
  if (const IEEEFloat::format* format = find_format(s->type)) {
    return destination->make_fp_bits_number(value, format->e, format->m)->symbol;
  }
  if (source->is_real_or_int(s->type)) return destination->make_number(value)->symbol;
  // A user symbol that became a numeral and whose type was put together by hand.
  const DataType* type = copy_type(s->type);
  const Symbol* constant = destination->make_symbol(s->name, type);
  return destination->make_numeral(constant, type, value, /*enter_in_cache=*/false)->symbol;
}

// The copy of a symbol with the tag of a family; null if the family does not contain it.
const Symbol* TermManager::TermCopyCallback::make_family_symbol(const Symbol* s,
                                                                SymbolTag::tag tag) {
  const size_t slot = family_slot(tag);
  switch (operator_family(tag).key) {
    case FamilyKey::Width:
      return make_keyed_symbol(s, tag, source->width_families[slot],
                               destination->width_families[slot]);
    case FamilyKey::Index1:
      return make_keyed_symbol(s, tag, source->index1_families[slot],
                               destination->index1_families[slot]);
    case FamilyKey::Index2:
      return make_keyed_symbol(s, tag, source->index2_families[slot],
                               destination->index2_families[slot]);
    case FamilyKey::Format:
      return make_keyed_symbol(s, tag, source->format_families[slot],
                               destination->format_families[slot]);
    case FamilyKey::Cast:
      return make_keyed_symbol(s, tag, source->cast_families[slot],
                               destination->cast_families[slot]);
    case FamilyKey::Array:
      return make_array_symbol(s, tag);
    case FamilyKey::Modulus:
      return make_keyed_symbol(s, tag, source->modular_congruences,
                               destination->modular_congruences);
  }
  return nullptr;
}

template <class Key>
const Symbol* TermManager::TermCopyCallback::make_keyed_symbol(const Symbol* s, SymbolTag::tag tag,
                                                               const SymbolFamily<Key>& from,
                                                               SymbolFamily<Key>& to) {
  const Key* key = from.find_key(s);
  if (key == nullptr) return nullptr;
  if (const Symbol* present = to.find(*key)) return present;  // it may have lost its name
  set_type_and_name(s);
  return Families::add_symbol(*destination, tag, *key, to.by_object, to.by_key);
}

// An array family has no map from its symbols to their keys. The array type is the type of the
// first operand or of the result: whichever leads back to the symbol.
const Symbol* TermManager::TermCopyCallback::make_array_symbol(const Symbol* s,
                                                               SymbolTag::tag tag) {
  if (s->arity == 0) return nullptr;
  const ArraySymbols& from = source->array_families[family_slot(tag)];
  ArraySymbols& to = destination->array_families[family_slot(tag)];
  for (const DataType* array : {s->type->get_component(1), s->get_output_type()}) {
    ArrIndex key;
    if (!source->is_array_type(array, &key.i, &key.e)) continue;
    if (from.find(key) != s) continue;
    key.i = copy_type(key.i);
    key.e = copy_type(key.e);
    if (const Symbol* present = to.find(key)) return present;
    set_type_and_name(s);
    Transaction making(*destination);
    const Symbol* symbol = making.add_symbol(tag);
    to.insert(key, symbol);
    making.commit();
    return symbol;
  }
  return nullptr;
}

// Puts the components of the copied type and the name where the makers of family symbols expect
// them.
void TermManager::TermCopyCallback::set_type_and_name(const Symbol* s) {
  const DataType* type = copy_type(s->type);
  destination->scratch_types.clear();
  for (size_t i = 0; i < type->num_components(); ++i) {
    destination->scratch_types.push_back(type->get_component(i));
  }
  destination->name_buffer = s->name;
}

}  // namespace quill
