#include "tests/support/grouped_digits.h"

#include <string>

namespace quill::testing {

namespace {

struct GroupedDigits : std::numpunct<char> {
  char do_decimal_point() const override { return ','; }
  char do_thousands_sep() const override { return '.'; }
  std::string do_grouping() const override { return "\1"; }
  std::string do_truename() const override { return "yes"; }
  std::string do_falsename() const override { return "no"; }
};

}  // namespace

std::locale locale_with_grouped_digits() {
  return std::locale(std::locale::classic(), new GroupedDigits);
}

}  // namespace quill::testing
