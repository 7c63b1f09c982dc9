// Named and parametric types, their recognisers, and freeing a type.
//
//   bit-vectors of width w        (BitVec w)      w is the simple type named by the width
//   floating point of (e, m)      (FP e:m)        e:m is the simple type of this name
//   arrays                        (Array I E)
//   functions                     (-> A1 ... An R)

#include <algorithm>
#include <string>

#include "quill/terms/termmanager/misuse_checks.h"
#include "quill/terms/termmanager/term_manager.h"
#include "quill/terms/termmanager/transaction.h"
#include "quill/utils/bv_number.h"

namespace quill {

namespace {

size_t saturating_sum(size_t a, size_t b, size_t c) {
  const size_t ab = a > SIZE_MAX - b ? SIZE_MAX : a + b;
  return ab > SIZE_MAX - c ? SIZE_MAX : ab + c;
}

}  // namespace

const DataType* TermManager::get_simple_type(const std::string& name, bool only_existing) {
  const auto found = simple_types.find(name);
  if (found != simple_types.end()) return found->second;
  if (only_existing) return nullptr;
  Transaction making(*this);
  const DataType* type = universe->make_type(name);
  simple_types.insert({name, type});
  making.commit();
  return type;
}

const DataType* TermManager::get_type_from_width(size_t w) {
  if (const DataType* present = bv_widths.find(w)) return present;
  Transaction making(*this);
  name_buffer = std::to_string(w);
  const DataType* type = universe->make_type(name_buffer);
  making.enter_width(w, type);
  making.commit();
  return type;
}

size_t TermManager::get_width_from_type(const DataType* t) const {
  require_own(*this, t);
  const size_t* width = bv_widths.find_key(t);
  return width != nullptr ? *width : 0;
}

const DataType* TermManager::get_bv_type(size_t w) {
  // If the type can't be made, a parameter type made for it is removed again.
  Transaction making(*this);
  const DataType* parameter = get_type_from_width(w);
  scratch_types.clear();
  scratch_types.push_back(bv_type_head);
  scratch_types.push_back(parameter);
  const DataType* type = universe->make_type(scratch_types);
  making.commit();
  return type;
}

const DataType* TermManager::get_fp_type(size_t e, size_t m) {
  if (typecheck_enabled && (m < 2 || e < 2)) {
    throw error("too small exponent and/or mantissa width for FP numbers: ")
        << e << ", " << m << " (min is 2, 2)";
  }
  const IEEEFloat::format format{e, m};
  Transaction making(*this);
  const DataType* parameter = fp_formats.find(format);
  if (parameter == nullptr) {
    name_buffer = std::to_string(e);
    name_buffer += ':';
    name_buffer += std::to_string(m);
    parameter = universe->make_type(name_buffer);
    making.enter_format(format, parameter);
  }
  scratch_types.clear();
  scratch_types.push_back(fp_type_head);
  scratch_types.push_back(parameter);
  const DataType* type = universe->make_type(scratch_types);
  making.commit();
  return type;
}

const DataType* TermManager::get_array_type(const DataType* index, const DataType* element) {
  require_own(*this, index);
  require_own(*this, element);
  if (index == bool_type || element == bool_type) {
    throw error("Arrays with Bool as argument are not supported");
  }
  if (is_function_type(index, nullptr, nullptr) || is_function_type(element, nullptr, nullptr)) {
    throw error("Arrays with functions as arguments are not supported");
  }
  scratch_types.clear();
  scratch_types.push_back(array_type_head);
  scratch_types.push_back(index);
  scratch_types.push_back(element);
  return universe->make_type(scratch_types);
}

const DataType* TermManager::get_function_type(const std::vector<const DataType*>& args,
                                               const DataType* result) {
  require_own(*this, args);
  require_own(*this, result);
  scratch_types.clear();
  scratch_types.push_back(universe->get_application_type());
  for (const DataType* arg : args) {
    if (is_function_type(arg, nullptr, nullptr))
      throw error("Higher-order functions not supported");
    if (reject_bool_arguments && arg == bool_type) {
      throw error("Functions with Bool arguments not supported");
    }
    scratch_types.push_back(arg);
  }
  if (is_function_type(result, nullptr, nullptr))
    throw error("Higher-order functions not supported");
  scratch_types.push_back(result);
  return universe->make_type(scratch_types);
}

const DataType* TermManager::get_compound_type(const std::vector<const DataType*>& components) {
  require_own(*this, components);
  for (const DataType* component : components) {
    if (component == bool_type || is_function_type(component, nullptr, nullptr)) {
      throw error("Higher-order compound types not supported");
    }
  }
  return universe->make_type(components);
}

bool TermManager::is_function_type(const DataType* t, std::vector<const DataType*>* args,
                                   const DataType** result) const {
  require_own(*this, t);
  const size_t count = t->num_components();
  if (count < 3 || t->get_component(0) != universe->get_application_type()) return false;
  if (args != nullptr) {
    args->clear();
    for (size_t i = 1; i + 1 < count; ++i) args->push_back(t->get_component(i));
  }
  if (result != nullptr) *result = t->get_component(count - 1);
  return true;
}

bool TermManager::is_bv_type(const DataType* t, size_t* width) const {
  require_own(*this, t);
  if (t->num_components() != 2 || t->get_component(0) != bv_type_head) return false;
  if (width != nullptr) *width = get_width_from_type(t->get_component(1));
  return true;
}

bool TermManager::is_fp_type(const DataType* t, size_t* e, size_t* m) const {
  require_own(*this, t);
  if (t->num_components() != 2 || t->get_component(0) != fp_type_head) return false;
  const IEEEFloat::format* format = fp_formats.find_key(t->get_component(1));
  if (e != nullptr) *e = format != nullptr ? format->e : 0;
  if (m != nullptr) *m = format != nullptr ? format->m : 0;
  return true;
}

bool TermManager::is_array_type(const DataType* t, const DataType** index,
                                const DataType** element) const {
  require_own(*this, t);
  if (t->num_components() != 3 || t->get_component(0) != array_type_head) return false;
  if (index != nullptr) *index = t->get_component(1);
  if (element != nullptr) *element = t->get_component(2);
  return true;
}

bool TermManager::is_subtype(const DataType* a, const DataType* b) const {
  require_own(*this, a);
  require_own(*this, b);
  return universe->is_subtype(a, b);
}

const DataType* TermManager::get_supertype(const DataType* a, const DataType* b) const {
  require_own(*this, a);
  require_own(*this, b);
  if (is_subtype(a, b)) return b;
  if (is_subtype(b, a)) return a;
  throw error("unrelated types: ") << a->to_str() << " and " << b->to_str();
}

bool TermManager::is_finite_domain_type(const DataType* t, QNumber* size) const {
  require_own(*this, t);
  size_t width;
  size_t e;
  size_t m;
  if (t == bool_type) {
    if (size != nullptr) *size = QNumber(2);
    return true;
  }
  if (is_bv_type(t, &width)) {
    if (size != nullptr) BVNumber::pow2(width, size);
    return true;
  }
  if (t == fprounding_type) {
    if (size != nullptr) *size = QNumber(4);
    return true;
  }
  if (is_fp_type(t, &e, &m)) {
    // The answer is false so that no caller enumerates the type, NaN patterns and all; those that
    // need the number of patterns read the size.
    if (size != nullptr) BVNumber::pow2(saturating_sum(e, m, 1), size);
    return false;
  }
  return false;
}

void TermManager::free_type(const DataType* t) {
  require_own(*this, t);
  const StandardTypes standard = standard_types();
  require_unused(*this, t, standard);
  if (std::find(standard.begin(), standard.end(), t) != standard.end()) return;

  // Clear every table that leads to the type or from it, because a later type may get its address.
  // Types and symbols that still use it, which is misuse, keep pointing to it.
  if (t->is_simple()) {
    simple_types.erase_key(t->get_name());
    bv_widths.erase_object(t);
    fp_formats.erase_object(t);
  }
  equality_symbols.erase(t);
  term_ite_symbols.erase(t);
  for (ArraySymbols& family : array_families) family.erase_type(t);
  latest_uses.fill({});
  recent_numerals.clear();
  universe->remove_type(t);
}

// The types that the members of the manager point to.
TermManager::StandardTypes TermManager::standard_types() const {
  return {bool_type,    rat_type,        int_type,     array_type_head,
          bv_type_head, fprounding_type, fp_type_head, universe->get_application_type()};
}

}  // namespace quill
