// Every operator through one door: what a symbol is, the symbol of an operator, and its terms.
//
// The rows of operator_family.h decide. Where the operators of one kind of key differ, the two
// functions over tags below say how; the table of makers has an entry for each row.

#include <algorithm>
#include <array>
#include <cassert>
#include <cstddef>
#include <iterator>
#include <utility>
#include <vector>

#include "quill/terms/termmanager/families.h"
#include "quill/terms/termmanager/misuse_checks.h"
#include "quill/terms/termmanager/operator.h"
#include "quill/terms/termmanager/operator_family.h"
#include "quill/terms/termmanager/result_widths.h"
#include "quill/terms/termmanager/term_manager.h"

namespace quill {

namespace {

// The builders of the standard signature, by tag, as type errors name them.
constexpr const char* standard_operations[] = {
    "",          "",           "",           "make_and", "make_or",    "make_not",     "make_iff",
    "make_plus", "make_times", "make_floor", "make_leq", "make_equal", "make_term_ite"};
static_assert(std::size(standard_operations) == SymbolTag::INT_MODULAR_CONGRUENCE,
              "one entry for each tag below the families");

void check_num_arguments(const char* operation, uint64_t expected, size_t given) {
  if (given == expected) return;
  throw TermManager::error("wrong arity for ")
      << operation << ". expected " << expected << ", got " << given;
}

}  // namespace

//----------------------------------------------------------------------------------------------
// From the symbol

// The symbol of the standard signature with this tag, over this type where one has several; null if
// there is none.
const Symbol* TermManager::Families::standard_symbol(const TermManager& m, SymbolTag::tag tag,
                                                     const DataType* type) {
  const auto over = [&](const Symbol* over_int, const Symbol* over_real) {
    return type == m.int_type ? over_int : type == m.rat_type ? over_real : nullptr;
  };
  switch (tag) {
    case SymbolTag::TRUE_TAG:
      return m.true_symbol;
    case SymbolTag::FALSE_TAG:
      return m.false_symbol;
    case SymbolTag::AND:
      return m.and_symbol;
    case SymbolTag::OR:
      return m.or_symbol;
    case SymbolTag::NOT:
      return m.not_symbol;
    case SymbolTag::IFF:
      return m.iff_symbol;
    case SymbolTag::FLOOR:
      return m.floor_symbol;
    case SymbolTag::PLUS:
      return over(m.int_plus_symbol, m.rat_plus_symbol);
    case SymbolTag::TIMES:
      return over(m.int_times_symbol, m.rat_times_symbol);
    case SymbolTag::LEQ:
      return over(m.int_leq_symbol, m.rat_leq_symbol);
    case SymbolTag::EQUAL:
      return m.equality_symbols.pairs().find(type);
    case SymbolTag::TERM_ITE:
      return m.term_ite_symbols.pairs().find(type);
    default:
      return nullptr;
  }
}

namespace {

// Whether the operator has a symbol for each of several types.
constexpr bool has_type(SymbolTag::tag tag) {
  return tag == SymbolTag::PLUS || tag == SymbolTag::TIMES || tag == SymbolTag::LEQ ||
         tag == SymbolTag::EQUAL || tag == SymbolTag::TERM_ITE;
}

}  // namespace

// Whether a symbol with this tag is the operator, and not one that somebody has registered with
// the same tag. Writes what the tag alone does not say.
bool TermManager::Families::is_operator(const TermManager& m, const Symbol* s, SymbolTag::tag tag,
                                        Operator& op) {
  if (!has_family(tag)) {
    const DataType* type = nullptr;
    if (has_type(tag)) {
      if (s->arity < 2) return false;
      type = s->type->get_component(tag == SymbolTag::TERM_ITE ? 2 : 1);
    }
    op.types[0] = type;
    return standard_symbol(m, tag, type) == s;
  }
  const size_t slot = family_slots[tag];
  switch (operator_family(tag).key) {
    case FamilyKey::Width: {
      const size_t* width = m.width_families[slot].find_key(s);
      if (width != nullptr) op.numbers[0] = *width;
      return width != nullptr;
    }
    case FamilyKey::Index1: {
      const BVIndex1* key = m.index1_families[slot].find_key(s);
      if (key != nullptr) op.numbers = {key->a, key->b};
      return key != nullptr;
    }
    case FamilyKey::Index2: {
      const BVIndex2* key = m.index2_families[slot].find_key(s);
      // The third number of a concatenation is the sum of the other two.
      if (key != nullptr) op.numbers = {key->a, key->b, tag == SymbolTag::BV_CONCAT ? 0 : key->c};
      return key != nullptr;
    }
    case FamilyKey::Format: {
      const IEEEFloat::format* key = m.format_families[slot].find_key(s);
      if (key != nullptr) op.numbers = {key->e, key->m};
      return key != nullptr;
    }
    case FamilyKey::Cast: {
      const FPFormatCast* key = m.cast_families[slot].find_key(s);
      if (key != nullptr) op.numbers = conversion_numbers(tag, *key);
      return key != nullptr;
    }
    case FamilyKey::Array: {
      if (s->arity == 0) return false;
      const DataType* array =
          tag == SymbolTag::ARRAY_CONST ? s->get_output_type() : s->type->get_component(1);
      return m.is_array_type(array, &op.types[0], &op.types[1]) &&
             m.array_families[slot].find({op.types[0], op.types[1]}) == s;
    }
    case FamilyKey::Modulus: {
      const QNumber* modulus = m.modular_congruences.find_key(s);
      if (modulus != nullptr) op.modulus = *modulus;
      return modulus != nullptr;
    }
  }
  return false;
}

Operator TermManager::operator_of(const Symbol* s) const {
  require_own(*this, s);
  Operator op;
  const auto tagged = tags.find(s);
  if (tagged != tags.end() && Families::is_operator(*this, s, tagged->second, op)) {
    op.tag = tagged->second;
    return op;
  }
  op = {};
  op.symbol = s;
  if (s->arity != 0) {
    op.kind = Operator::Kind::Function;
  } else if (number_values.find(s) != number_values.end()) {
    op.kind = Operator::Kind::Numeral;
  } else if (std::find(std::begin(rounding_symbols), std::end(rounding_symbols), s) !=
             std::end(rounding_symbols)) {
    op.kind = Operator::Kind::RoundingMode;
  } else {
    op.kind = is_variable(s) ? Operator::Kind::Variable : Operator::Kind::Constant;
  }
  return op;
}

//----------------------------------------------------------------------------------------------
// To the symbol

// What the maker of a conversion takes: the numbers of its key without those that are unused or
// follow from others.
std::array<uint64_t, 4> TermManager::Families::conversion_numbers(SymbolTag::tag tag,
                                                                  const FPFormatCast& key) {
  switch (tag) {
    case SymbolTag::FP_CAST:
      return {key.a, key.b, key.c, key.d};
    case SymbolTag::FP_FROM_SBV:
    case SymbolTag::FP_FROM_UBV:
      return {key.b, key.c, key.d};
    case SymbolTag::FP_TO_BV:
      return {key.a, key.b, key.d};
    case SymbolTag::FP_AS_IEEEBV:
      return {key.a, key.b};
    default:
      assert(tag == SymbolTag::FP_FROM_IEEEBV);
      return {key.c, key.d};
  }
}

// The maker of a family's symbols.
template <SymbolTag::tag Tag>
const Symbol* TermManager::Families::symbol_of_row(TermManager& m, const Operator& op) {
  constexpr FamilyKey key = operator_family(Tag).key;
  const auto& n = op.numbers;
  if constexpr (Tag == SymbolTag::INT_TO_BV) {
    return m.make_int_to_bv_symbol(n[0]);
  } else if constexpr (key == FamilyKey::Width) {
    return width_symbol<Tag>(m, n[0]);
  } else if constexpr (key == FamilyKey::Index1) {
    return index1_symbol<Tag>(m, n[0], n[1]);
  } else if constexpr (key == FamilyKey::Format) {
    return format_symbol<Tag>(m, n[0], n[1]);
  } else if constexpr (key == FamilyKey::Modulus) {
    return m.make_int_modular_congruence_symbol(op.modulus);
  } else if constexpr (Tag == SymbolTag::BV_CONCAT) {
    return m.make_bv_concat_symbol(n[0], n[1]);
  } else if constexpr (Tag == SymbolTag::BV_EXTRACT) {
    return m.make_bv_extract_symbol(n[0], n[1], n[2]);
  } else if constexpr (Tag == SymbolTag::ARRAY_READ) {
    return m.make_array_read_symbol(op.types[0], op.types[1]);
  } else if constexpr (Tag == SymbolTag::ARRAY_WRITE) {
    return m.make_array_write_symbol(op.types[0], op.types[1]);
  } else if constexpr (Tag == SymbolTag::ARRAY_CONST) {
    return m.make_array_const_symbol(op.types[0], op.types[1]);
  } else if constexpr (Tag == SymbolTag::FP_CAST) {
    return m.make_fp_cast_symbol(n[0], n[1], n[2], n[3]);
  } else if constexpr (Tag == SymbolTag::FP_FROM_SBV) {
    return m.make_fp_from_sbv_symbol(n[0], n[1], n[2]);
  } else if constexpr (Tag == SymbolTag::FP_FROM_UBV) {
    return m.make_fp_from_ubv_symbol(n[0], n[1], n[2]);
  } else if constexpr (Tag == SymbolTag::FP_TO_BV) {
    return m.make_fp_to_bv_symbol(n[0], n[1], n[2]);
  } else if constexpr (Tag == SymbolTag::FP_AS_IEEEBV) {
    return m.make_fp_as_ieeebv_symbol(n[0], n[1]);
  } else {
    static_assert(Tag == SymbolTag::FP_FROM_IEEEBV, "every row has a maker");
    return m.make_fp_from_ieeebv_symbol(n[0], n[1]);
  }
}

const Symbol* TermManager::symbol_of(const Operator& op) {
  if (op.kind != Operator::Kind::Operator) {
    require_own(*this, op.symbol);
    return op.symbol;
  }
  if (has_family(op.tag)) return Families::symbol_of_family(*this, op);
  if (has_type(op.tag)) require_own(*this, op.types[0]);
  if (op.tag == SymbolTag::EQUAL) return make_equality_symbol(op.types[0]);
  if (op.tag == SymbolTag::TERM_ITE) return make_term_ite_symbol(op.types[0]);
  const Symbol* s = Families::standard_symbol(*this, op.tag, op.types[0]);
  if (s != nullptr) return s;
  if (!has_type(op.tag)) throw error("no operator has the tag ") << static_cast<int>(op.tag);
  throw error("the operator with the tag ")
      << static_cast<int>(op.tag) << " has no operands of type " << op.types[0]->to_str();
}

const Symbol* TermManager::Families::symbol_of_family(TermManager& m, const Operator& op) {
  constexpr auto makers = []<size_t... rows>(std::index_sequence<rows...>) {
    return std::array{&symbol_of_row<operator_families[rows].tag>...};
  }
  (std::make_index_sequence<num_operator_families>());
  static_assert(makers.size() == num_operator_families, "every row has a maker");
  return makers[family_positions[op.tag]](m, op);
}

//----------------------------------------------------------------------------------------------
// To the term

// The checks of a family's builder before it makes the symbol.
void TermManager::Families::check_operands(const TermManager& m, const Operator& op,
                                           const OperatorFamily& family,
                                           const std::vector<const Term_*>& args) {
  const char* complaint = family.complaint;
  const Term_* operand = args[family.rounding ? 1 : 0];
  switch (family.tag) {
    case SymbolTag::INT_TO_BV:
    case SymbolTag::INT_MODULAR_CONGRUENCE:
    case SymbolTag::ARRAY_CONST:
      return;
    case SymbolTag::ARRAY_READ:
    case SymbolTag::ARRAY_WRITE:
      require_own(m, operand);
      if (!m.is_array_type(operand->type(), nullptr, nullptr)) reject_operand(operand, complaint);
      return;
    case SymbolTag::BV_CONCAT:
      require_bv(m, args[0], complaint);
      require_bv(m, args[1], complaint);
      return;
    case SymbolTag::BV_EXTRACT:
      check_range(op.numbers[0], op.numbers[1]);
      require_bv(m, operand, complaint);
      check_range_within(op.numbers[0], op.numbers[1], op.numbers[2]);
      return;
    case SymbolTag::FP_FROM_SBV:
    case SymbolTag::FP_FROM_UBV:
      require_bv(m, operand, complaint);
      return;
    case SymbolTag::FP_FROM_IEEEBV:
      if (require_bv(m, operand, complaint) != ieee_width(op.numbers[0], op.numbers[1])) {
        reject_operand(operand, complaint);
      }
      return;
    default:
      if (family.key == FamilyKey::Format || family.key == FamilyKey::Cast) {
        require_fp(m, operand, complaint);
      } else {
        require_bv(m, operand, complaint);
      }
  }
}

// As the builders do: a request that is refused leaves no symbol that it has made.
const Term_* TermManager::Families::make_type_keyed(TermManager& m, const Operator& op,
                                                    const std::vector<const Term_*>& args) {
  const DataType* type = op.types[0];
  require_own(m, type);
  const char* operation = standard_operations[op.tag];
  const Symbol* present = standard_symbol(m, op.tag, type);
  if (op.tag == SymbolTag::EQUAL) {
    check_num_arguments(operation, 2, args.size());
    require_own(m, args);
    if (present != nullptr) return m.apply(present, {args[0], args[1]}, operation);
    return m.apply_first(m.equality_symbols, &TermManager::make_equality_symbol, type,
                         {args[0], args[1]}, operation);
  }
  check_num_arguments(operation, 3, args.size());
  require_own(m, args);
  if (present != nullptr) return m.apply(present, {args[0], args[1], args[2]}, operation);
  return m.apply_first(m.term_ite_symbols, &TermManager::make_term_ite_symbol, type,
                       {args[0], args[1], args[2]}, operation);
}

const Term_* TermManager::make_operator(const Operator& op, const std::vector<const Term_*>& args) {
  switch (op.kind) {
    case Operator::Kind::Operator:
      break;
    case Operator::Kind::Function:
      return make_uninterpreted_function(op.symbol, args);
    default:
      require_own(*this, op.symbol);
      return apply_to(op.symbol, args, "make_constant");
  }
  if (has_family(op.tag)) {
    const OperatorFamily& family = operator_family(op.tag);
    check_num_arguments(family.operation, family.arity, args.size());
    Families::check_operands(*this, op, family, args);
    return apply_to(symbol_of(op), args, family.operation);
  }
  if (op.tag == SymbolTag::EQUAL || op.tag == SymbolTag::TERM_ITE) {
    return Families::make_type_keyed(*this, op, args);
  }
  const Symbol* s = symbol_of(op);
  if (s == true_symbol || s == false_symbol) {
    check_num_arguments(s == true_symbol ? "make_true" : "make_false", 0, args.size());
    return s == true_symbol ? true_term : false_term;
  }
  const char* operation = standard_operations[op.tag];
  check_num_arguments(operation, s->arity, args.size());
  return apply_to(s, args, operation);
}

}  // namespace quill
