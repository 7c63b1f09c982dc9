// The text of the exception that a request throws.

#ifndef TESTS_SUPPORT_ERROR_OF_H
#define TESTS_SUPPORT_ERROR_OF_H

#include <functional>
#include <string>
#include <typeinfo>

namespace quill::testing {

// "another class" if the class of the exception is not this one but another of the library, also
// one derived from it; "no error" if nothing is thrown.
std::string error_of(const std::function<void()>& request, const std::type_info& expected_class);

template <class Error>
std::string error_of(const std::function<void()>& request) {
  return error_of(request, typeid(Error));
}

}  // namespace quill::testing

#endif
