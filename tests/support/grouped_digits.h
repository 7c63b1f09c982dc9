// A locale that puts a separator between all digits of a number and writes the decimal point as a
// comma: 2.0.0,5 for 200.5.

#ifndef TESTS_SUPPORT_GROUPED_DIGITS_H
#define TESTS_SUPPORT_GROUPED_DIGITS_H

#include <locale>

namespace quill::testing {

std::locale locale_with_grouped_digits();

}  // namespace quill::testing

#endif
