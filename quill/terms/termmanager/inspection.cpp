// What numerals and types say, for callers that know what they have.

#include <string>

#include "quill/terms/termmanager/misuse_checks.h"
#include "quill/terms/termmanager/term_manager.h"
#include "quill/utils/qnumber_arithmetic.h"

namespace quill {

namespace {

[[noreturn, gnu::cold]] void reject(const Term_* t, const char* kind) {
  throw TermManager::error("term ") << t->to_shallow_str() << " is not " << kind;
}

[[noreturn, gnu::cold]] void reject(const DataType* type, const char* kind) {
  throw TermManager::error("type ") << type->to_str() << " is not " << kind;
}

}  // namespace

QNumber TermManager::bv_value(const Term_* t) const {
  require_own(*this, t);
  QNumber value;
  if (!is_bv_type(t->type(), nullptr) || !is_number(t->symbol, &value)) {
    reject(t, "a bit-vector numeral");
  }
  return value;
}

QNumber TermManager::int_value(const Term_* t) const {
  require_own(*this, t);
  QNumber value;
  if (t->type() != int_type || !is_number(t->symbol, &value)) reject(t, "an integer numeral");
  return value;
}

QNumber TermManager::real_value(const Term_* t) const {
  require_own(*this, t);
  QNumber value;
  if (!is_real_or_int(t->type()) || !is_number(t->symbol, &value)) {
    reject(t, "an arithmetic numeral");
  }
  return value;
}

IEEEFloat TermManager::fp_value(const Term_* t) const {
  require_own(*this, t);
  IEEEFloat::format format;
  QNumber bits;
  if (!is_fp_type(t->type(), &format.e, &format.m) || !is_number(t->symbol, &bits)) {
    reject(t, "a floating-point numeral");
  }
  return IEEEFloat::from_bits(bits, format);
}

size_t TermManager::bv_width(const DataType* type) const {
  require_own(*this, type);
  size_t width = 0;
  if (!is_bv_type(type, &width)) reject(type, "a bit-vector type");
  return width;
}

size_t TermManager::bv_width(const Term_* t) const {
  require_own(*this, t);
  return bv_width(t->type());
}

IEEEFloat::format TermManager::fp_format(const DataType* type) const {
  require_own(*this, type);
  IEEEFloat::format format;
  if (!is_fp_type(type, &format.e, &format.m)) reject(type, "a floating-point type");
  return format;
}

IEEEFloat::format TermManager::fp_format(const Term_* t) const {
  require_own(*this, t);
  return fp_format(t->type());
}

TermManager::ArraySorts TermManager::array_sorts(const DataType* type) const {
  require_own(*this, type);
  ArraySorts sorts;
  if (!is_array_type(type, &sorts.index, &sorts.element)) reject(type, "an array type");
  return sorts;
}

TermManager::ArraySorts TermManager::array_sorts(const Term_* t) const {
  require_own(*this, t);
  return array_sorts(t->type());
}

TermManager::FunctionSorts TermManager::function_sorts(const DataType* type) const {
  require_own(*this, type);
  FunctionSorts sorts;
  if (!is_function_type(type, &sorts.arguments, &sorts.result)) reject(type, "a function type");
  return sorts;
}

TermManager::FunctionSorts TermManager::function_sorts(const Symbol* s) const {
  require_own(*this, s);
  return function_sorts(s->type);
}

}  // namespace quill
