#include "quill/printers/standard_encoding.h"

#include "quill/derived/derived.h"
#include "quill/smtlib/operator_texts.h"
#include "quill/terms/termmanager/misuse_checks.h"
#include "quill/utils/bv_number.h"

namespace quill {

namespace {

// Lists root and the distinct terms below it that are not in `reached` yet, operands before
// operators. Does not go below the terms for which `is_leaf` holds.
template <class Reached, class IsLeaf>
std::vector<const Term_*> post_order(const Term_* root, Reached& reached, const IsLeaf& is_leaf) {
  struct Frame {
    const Term_* term;
    uint64_t next;  // the argument to go to next
  };
  const auto open_frame = [&](const Term_* t) {
    return Frame{t, is_leaf(t) ? t->symbol->arity : 0};
  };
  std::vector<const Term_*> order;
  if (!reached.insert(root)) return order;
  std::vector<Frame> open{open_frame(root)};
  while (!open.empty()) {
    Frame& frame = open.back();
    if (frame.next == frame.term->symbol->arity) {
      order.push_back(frame.term);
      open.pop_back();
      continue;
    }
    const Term_* arg = frame.term->args[frame.next++];
    if (reached.insert(arg)) open.push_back(open_frame(arg));
  }
  return order;
}

bool is_encoded_width(size_t width) {
  return width != 0 && width <= StandardEncoding::max_encoded_width;
}

// Whether the only operand of a term has the type that its symbol takes.
bool has_operand_of_its_type(const Term_* t) {
  return t->args[0]->type() == t->symbol->type->get_component(1);
}

}  // namespace

bool StandardEncoding::is_rewritten(const TermManager& manager, const Symbol* s) {
  size_t width = 0;
  switch (manager.get_tag(s)) {
    case SymbolTag::INT_FROM_SBV:
      return manager.is_int_from_sbv(s, &width) && is_encoded_width(width);
    case SymbolTag::INT_TO_BV:
      return manager.is_int_to_bv(s, &width) && is_encoded_width(width);
    case SymbolTag::FP_AS_IEEEBV:
      return manager.is_fp_as_ieeebv(s, nullptr, nullptr);
    default:
      return false;
  }
}

bool StandardEncoding::is_rewritten(const TermManager& manager, const Term_* t) {
  return is_rewritten(manager, t->symbol) && has_operand_of_its_type(t);
}

bool StandardEncoding::takes_bits(const TermManager& manager, const Term_* t) {
  return manager.is_fp_as_ieeebv(t->symbol, nullptr, nullptr) && is_rewritten(manager, t);
}

StandardEncoding::Need StandardEncoding::need_of(const TermManager& manager, const Term_* root) {
  require_own(manager, root);
  Need need;
  hsh::HashSet<const Term_*> reached;
  hsh::HashSet<const Term_*> values;
  need.terms = post_order(root, reached, [](const Term_*) { return false; });
  for (const Term_* t : need.terms) {
    if (!is_rewritten(manager, t)) continue;
    need.any = true;
    if (takes_bits(manager, t) && values.insert(t->args[0])) {
      need.bit_values.push_back(t->args[0]);
    }
  }
  return need;
}

// Terms are copied as they are, whether or not they would pass the checks of a manager.
StandardEncoding::StandardEncoding(const TermManager& source_, const BitDefinitions& bits_)
    : source(source_), bits(bits_) {
  target.set_typecheck_enabled(false);
  target.set_reject_bool_arguments(false);
}

const Term_* StandardEncoding::encode(const Term_* root) {
  require_own(source, root);
  // Enters each term once; the copies are made below.
  struct NewCopies {
    TermManager::TermMap& copies;
    bool insert(const Term_* t) { return copies.insert({t, nullptr}); }
  } reached{copies};
  const std::vector<const Term_*> order =
      post_order(root, reached, [&](const Term_* t) { return takes_bits(source, t); });

  Symbols new_symbols;
  for (const Term_* t : order) {
    if (!is_rewritten(source, t) && symbols.insert({t->symbol, nullptr})) {
      new_symbols.push_back(t->symbol);
    }
  }
  copy_new_symbols(new_symbols);

  std::vector<const Term_*> args;
  for (const Term_* t : order) {
    const Term_* copy = nullptr;
    if (is_rewritten(source, t)) {
      copy = rewrite(t);
    } else {
      args.clear();
      for (const Term_* argument : t->arguments()) args.push_back(copy_of(argument));
      copy = target.do_make_term(symbols.find(t->symbol)->second, args);
    }
    copies[t] = copy;
    originals.push_back(t);
  }
  return copy_of(root);
}

// Copies all types at once, because they share components.
void StandardEncoding::copy_new_symbols(const Symbols& new_symbols) {
  std::vector<const DataType*> new_types;
  for (const Symbol* s : new_symbols) new_types.push_back(s->type);
  std::vector<const DataType*> copied_types;
  target.copy_types(source, new_types, copied_types);
  for (size_t i = 0; i < new_types.size(); ++i) types[new_types[i]] = copied_types[i];

  Symbols operators;
  Symbols operators_by_family;
  for (const Symbol* s : new_symbols) {
    if (!source.is_interpreted(s)) {
      symbols[s] = make_nameless(s->name, types.find(s->type)->second);
    } else if (const Symbol* same = find_same(s)) {
      symbols[s] = same;
    } else if (QNumber value; source.is_number(s, &value)) {
      symbols[s] = copy_numeral(s, value);
    } else if (is_operator_by_family(source, s)) {
      operators_by_family.push_back(s);
    } else {
      operators.push_back(s);
    }
  }
  copy_operators(operators_by_family);
  copy_operators(operators);
}

// Copies theory symbols, none of which shares name and kind with a symbol in the target. If one
// cannot be copied, registers all of them by hand. This happens to no symbol whose text depends on
// its family: such symbols are copied apart from the others.
void StandardEncoding::copy_operators(const Symbols& operators) {
  for (const Symbol* s : operators) free_name(s->name);
  Symbols copied;
  try {
    target.copy_symbols(source, operators, copied);
  } catch (const TermManager::error&) {
    copied.assign(operators.size(), nullptr);
  }
  for (size_t i = 0; i < operators.size(); ++i) {
    const Symbol* s = operators[i];
    const bool is_copied = copied[i] != nullptr && is_same(copied[i], s);
    symbols[s] = is_copied ? copied[i] : copy_by_hand(s);
  }
}

const Symbol* StandardEncoding::copy_by_hand(const Symbol* s) {
  if (const Symbol* same = find_same(s)) return same;
  free_name(s->name);
  std::string name = s->name;
  name = name.substr(1, name.size() - 2);  // without the backquotes
  const Symbol* copy =
      target.add_interpreted_symbol(name.c_str(), types.find(s->type)->second, source.get_tag(s));
  target.free_symbol(copy);
  return copy;
}

// An Int symbol whose name spells a fraction is a numeral for its manager, and is written by its
// name.
const Symbol* StandardEncoding::copy_numeral(const Symbol* s, const QNumber& value) {
  const DataType* type = types.find(s->type)->second;
  if (type == target.get_int_type() && !value.is_integer()) return make_nameless(s->name, type);
  free_name(s->name);
  Symbols copied;
  target.copy_symbols(source, {s}, copied);
  return copied[0];
}

// Makes a user symbol, which gives up its name at once.
const Symbol* StandardEncoding::make_nameless(const std::string& name, const DataType* type) {
  free_name(name.c_str());
  const Symbol* s = target.make_symbol(name, type);
  target.free_symbol(s);
  return s;
}

// The target's symbol with the name and the text of an interpreted symbol, or null.
const Symbol* StandardEncoding::find_same(const Symbol* s) const {
  const Symbol* present = target.get_signature()->get_symbol(s->name);
  return present != nullptr && is_same(present, s) ? present : nullptr;
}

bool StandardEncoding::is_same(const Symbol* copy, const Symbol* s) const {
  return copy->type == types.find(s->type)->second && target.get_tag(copy) == source.get_tag(s) &&
         operator_tag(target, copy) == operator_tag(source, s) &&
         target.is_number(copy, nullptr) == source.is_number(s, nullptr);
}

void StandardEncoding::free_name(const char* name) {
  if (const Symbol* present = target.get_signature()->get_symbol(name)) target.free_symbol(present);
}

const Term_* StandardEncoding::rewrite(const Term_* t) {
  size_t width = 0;
  const Term_* operand = t->args[0];
  if (source.is_int_from_sbv(t->symbol, &width)) return signed_value(copy_of(operand), width);
  if (source.is_int_to_bv(t->symbol, &width)) {
    const bool is_value = (source.is_int_from_ubv(operand->symbol, nullptr) ||
                           source.is_int_from_sbv(operand->symbol, nullptr)) &&
                          has_operand_of_its_type(operand);
    return is_value ? resized(operand, width) : low_bits(copy_of(operand), width);
  }
  return bits_constant(*bits.find(operand));
}

const Term_* StandardEncoding::bits_constant(const BitDefinitions::Definition& definition) {
  const auto found = constants.find(definition.name);
  if (found != constants.end()) return found->second;
  const DataType* type = target.get_bv_type(definition.format.e + definition.format.m + 1);
  const Symbol* symbol = make_nameless(definition.name, type);
  return constants[definition.name] = target.make_constant(symbol);
}

const Term_* StandardEncoding::signed_value(const Term_* b, size_t width) {
  QNumber modulus;
  BVNumber::pow2(width, &modulus);
  const Term_* value = target.make_int_from_ubv(b);
  const Term_* sign = target.make_bv_extract(width - 1, width - 1, b);
  const Term_* is_negative = target.make_equal(sign, target.make_bv_number(1, 1));
  const Term_* all = target.make_number(modulus);
  const Term_* none = target.make_number(0);
  const Term_* excess = target.make_term_ite(is_negative, all, none);
  return make_minus(target, value, excess);
}

// The bit-vector of this width that is congruent to the value of another bit-vector.
const Term_* StandardEncoding::resized(const Term_* value, size_t width) {
  const Term_* b = copy_of(value->args[0]);
  size_t former = 0;
  const bool is_signed = source.is_int_from_sbv(value->symbol, &former);
  if (!is_signed) source.is_int_from_ubv(value->symbol, &former);
  if (width < former) return target.make_bv_extract(width - 1, 0, b);
  if (width == former) return b;
  return is_signed ? target.make_bv_sign_extend(width - former, b)
                   : target.make_bv_zero_extend(width - former, b);
}

const Term_* StandardEncoding::low_bits(const Term_* number, size_t width) {
  const Term_* const one = target.make_number(1);
  const Term_* const bit_one = target.make_bv_number(1, 1);
  const Term_* const bit_zero = target.make_bv_number(0, 1);
  std::vector<const Term_*> low_first;
  for (size_t i = 0; i < width; ++i) {
    const Term_* is_odd = target.make_equal(make_mod(target, number, 2), one);
    low_first.push_back(target.make_term_ite(is_odd, bit_one, bit_zero));
    if (i + 1 != width) number = make_div(target, number, 2);
  }
  const Term_* result = low_first.back();
  for (size_t i = width - 1; i-- > 0;) result = target.make_bv_concat(result, low_first[i]);
  return result;
}

const Term_* StandardEncoding::add_defining_condition(const Term_* others, const Term_* value) {
  require_own(source, value);
  const BitDefinitions::Definition& definition = *bits.find(value);
  const IEEEFloat::format format = definition.format;
  const Term_* const copy = encode(value);
  const Term_* const constant = bits_constant(definition);
  const Term_* const nan = bits_constant(*bits.find_nan(format));
  const Term_* const read_back = target.make_fp_from_ieeebv(format.e, format.m, constant);
  const Term_* const holds = target.make_equal(read_back, copy);
  const Term_* const is_number = target.make_not(target.make_fp_isnan(copy));
  const Term_* const has_bits_of_nan = target.make_equal(constant, nan);
  const Term_* const same_for_nan = target.make_or(is_number, has_bits_of_nan);
  const Term_* const first = others == nullptr ? holds : target.make_and(others, holds);
  return target.make_and(first, same_for_nan);
}

}  // namespace quill
