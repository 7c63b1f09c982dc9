#include "tests/support/manager_test.h"

#include "quill/utils/qnumber.h"

namespace quill::testing {

const Term_* constant(TermManager& m, const std::string& name, const DataType* type) {
  return m.make_constant(m.make_symbol(name, type));
}

std::string value_of(const TermManager& m, const Term_* t) {
  QNumber value;
  return m.is_number(t->symbol, &value) ? value.to_str() : "no numeral";
}

Sizes sizes(const TermManager& m) {
  return {m.get_universe()->size(), m.get_signature()->size(), m.get_bank()->size()};
}

}  // namespace quill::testing
