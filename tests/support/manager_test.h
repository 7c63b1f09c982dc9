// A manager to test, and what most tests ask of one.

#ifndef TESTS_SUPPORT_MANAGER_TEST_H
#define TESTS_SUPPORT_MANAGER_TEST_H

#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <functional>
#include <string>

#include "quill/terms/termmanager/term_manager.h"
#include "quill/utils/exception.h"
#include "tests/support/error_of.h"

namespace quill::testing {

// The constant of a user's symbol.
const Term_* constant(TermManager& m, const std::string& name, const DataType* type);

// The value of a numeral, or "no numeral".
std::string value_of(const TermManager& m, const Term_* t);

// The numbers of types, symbols and terms.
using Sizes = std::array<size_t, 3>;
Sizes sizes(const TermManager& m);

template <class Manager>
class ManagerTestOf : public ::testing::Test {
 protected:
  const Term_* constant(const std::string& name, const DataType* type) {
    return testing::constant(m, name, type);
  }
  const Term_* bv(const std::string& name, size_t width) {
    return constant(name, m.get_bv_type(width));
  }
  const Term_* fp(const std::string& name, size_t exponent, size_t significand) {
    return constant(name, m.get_fp_type(exponent, significand));
  }

  // The symbol of this name, or null.
  const Symbol* find(const char* name) const { return m.get_signature()->get_symbol(name); }

  std::string value_of(const Term_* t) const { return testing::value_of(m, t); }
  Sizes sizes() const { return testing::sizes(m); }

  // The text of the request's exception, whose class must be TermManager::error itself.
  static std::string error_of(const std::function<void()>& request) {
    return testing::error_of<TermManager::error>(request);
  }
  // The same of an exception of the base class itself.
  static std::string base_exception_of(const std::function<void()>& request) {
    return testing::error_of<Exception>(request);
  }

  Manager m;
};

using ManagerTest = ManagerTestOf<TermManager>;

}  // namespace quill::testing

#endif
