#include "quill/smtlib/operator_texts.h"

#include <array>
#include <iterator>
#include <optional>

namespace quill {

namespace {

bool is_small(char letter) { return letter >= 'a' && letter <= 'z'; }

// Whether the letter denotes the type.
bool stands_for(const TermManager& manager, char letter, const DataType* type) {
  size_t width = 0;
  switch (letter) {
    case 'B':
      return type == manager.get_bool_type();
    case 'I':
      return type == manager.get_int_type();
    case 'R':
      return type == manager.get_rat_type();
    case 'n':
      return type == manager.get_int_type() || type == manager.get_rat_type();
    case 'M':
      return type == manager.get_fprounding_type();
    case 'V':
    case 'v':
      return manager.is_bv_type(type, nullptr);
    case '1':
      return manager.is_bv_type(type, &width) && width == 1;
    case 'F':
    case 'f':
      return manager.is_fp_type(type, nullptr, nullptr);
    case 'a':
      return manager.is_array_type(type, nullptr, nullptr);
    case 't':
      return type != manager.get_bool_type();
    default:
      return true;
  }
}

bool has_types(const TermManager& manager, const Symbol* s, std::string_view types) {
  if (types.size() != s->arity + 1) return false;
  std::array<const DataType*, 26> same{};  // by small letter
  const auto type_of = [&](char letter) -> const DataType*& {
    return same[static_cast<size_t>(letter - 'a')];
  };
  for (size_t i = 0; i < types.size(); ++i) {
    const char letter = types[i];
    const DataType* type = i == s->arity ? s->get_output_type() : s->type->get_component(i + 1);
    if (is_small(letter) && type_of(letter) != nullptr) {
      if (type_of(letter) != type) return false;
      continue;
    }
    if (!stands_for(manager, letter, type)) return false;
    if (is_small(letter)) type_of(letter) = type;
  }
  const DataType* index = nullptr;
  const DataType* element = nullptr;
  if (type_of('a') == nullptr) return true;
  manager.is_array_type(type_of('a'), &index, &element);
  return (type_of('x') == nullptr || type_of('x') == index) && type_of('e') == element;
}

// Whether the symbol is in the family of its tag, for operators that have indices or whose result
// has a width of its own; nullopt for all others, whose types tell everything.
std::optional<bool> is_in_family(const TermManager& manager, const Symbol* s, SymbolTag::tag tag) {
  switch (tag) {
    case SymbolTag::INT_MODULAR_CONGRUENCE:
      return manager.is_int_modular_congruence(s, nullptr);
    case SymbolTag::BV_CONCAT:
      return manager.is_bv_concat(s, nullptr, nullptr);
    case SymbolTag::BV_EXTRACT:
      return manager.is_bv_extract(s, nullptr, nullptr, nullptr);
    case SymbolTag::BV_ROTATE_LEFT:
      return manager.is_bv_rotate_left(s, nullptr, nullptr);
    case SymbolTag::BV_ROTATE_RIGHT:
      return manager.is_bv_rotate_right(s, nullptr, nullptr);
    case SymbolTag::BV_ZERO_EXTEND:
      return manager.is_bv_zero_extend(s, nullptr, nullptr);
    case SymbolTag::BV_SIGN_EXTEND:
      return manager.is_bv_sign_extend(s, nullptr, nullptr);
    case SymbolTag::FP_AS_IEEEBV:
      return manager.is_fp_as_ieeebv(s, nullptr, nullptr);
    case SymbolTag::FP_FROM_IEEEBV:
      return manager.is_fp_from_ieeebv(s, nullptr, nullptr);
    default:
      return std::nullopt;
  }
}

// A tag may be a number that no operator has.
bool is_written_as(const TermManager& manager, const Symbol* s, SymbolTag::tag tag) {
  const auto row = static_cast<size_t>(tag);
  return tag != SymbolTag::NONE && row < std::size(smtlib2_operators) &&
         has_types(manager, s, smtlib2_operators[row].types) &&
         is_in_family(manager, s, tag).value_or(true);
}

}  // namespace

const RoundingModeText* find_rounding_mode(const TermManager& manager, const Symbol* s) {
  for (const RoundingModeText& mode : rounding_mode_texts) {
    if ((manager.*mode.is_mode)(s)) return &mode;
  }
  return nullptr;
}

SymbolTag::tag operator_tag(const TermManager& manager, const Symbol* s) {
  const SymbolTag::tag tag = manager.get_tag(s);
  return is_written_as(manager, s, tag) ? tag : SymbolTag::NONE;
}

bool is_operator(const TermManager& manager, const Symbol* s, SymbolTag::tag tag) {
  return manager.get_tag(s) == tag && is_written_as(manager, s, tag);
}

bool is_operator_by_family(const TermManager& manager, const Symbol* s) {
  return is_in_family(manager, s, operator_tag(manager, s)).value_or(false);
}

}  // namespace quill
