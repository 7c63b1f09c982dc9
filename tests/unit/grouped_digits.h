// A locale that puts a separator between all digits of a number and writes the decimal point as a
// comma: 2.0.0,5 for 200.5.

#ifndef QUILL_TESTS_UNIT_GROUPED_DIGITS_H
#define QUILL_TESTS_UNIT_GROUPED_DIGITS_H

#include <locale>
#include <string>

namespace quill::testing {

struct GroupedDigits : std::numpunct<char> {
  char do_decimal_point() const override { return ','; }
  char do_thousands_sep() const override { return '.'; }
  std::string do_grouping() const override { return "\1"; }
  std::string do_truename() const override { return "yes"; }
  std::string do_falsename() const override { return "no"; }
};

inline std::locale locale_with_grouped_digits() {
  return std::locale(std::locale::classic(), new GroupedDigits);
}

}  // namespace quill::testing

#endif
