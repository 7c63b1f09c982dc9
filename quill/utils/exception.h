// The base of every error that the library throws.
//
// An Exception is a message under construction: further pieces may be streamed into it while it is
// being thrown, and the expression keeps its own class, so that a handler of a derived class still
// catches it:
//
//   throw TermManager::error("unrelated types: ") << a->to_str() << " and " << b->to_str();
//
// Copies are independent. what() returns a text that stays valid until the exception is changed or
// destroyed. Where the message can't have its memory, std::bad_alloc is thrown instead: no message
// is cut off.

#ifndef QUILL_UTILS_EXCEPTION_H
#define QUILL_UTILS_EXCEPTION_H

#include <concepts>
#include <exception>
#include <sstream>
#include <string>
#include <type_traits>

namespace quill {

class Exception : public std::exception {
 public:
  Exception();
  explicit Exception(const std::string& message);
  Exception(const Exception& other);
  Exception& operator=(const Exception& other);
  ~Exception() override;

  const char* what() const noexcept override;

  // Called once for every exception that is made from a message, and not for copies. Does nothing:
  // it is a place for a debugger's breakpoint, before the stack unwinds.
  static void dump_msg_and_raise_assertion(const std::string& message = {});

  template <class T>
  void append(const T& piece) {
    stream << piece;
    text_is_current = false;
  }

 private:
  std::ostringstream stream;
  mutable std::string text;  // what the stream holds, once what() has asked for it
  mutable bool text_is_current = false;
};

// Appends to the message and hands the very same exception on, with its own type and value
// category.
template <class Error, class T>
requires std::derived_from<std::remove_cvref_t<Error>, Exception> Error && operator<<(
    Error&& error, const T& piece) {
  error.append(piece);
  return static_cast<Error&&>(error);
}

}  // namespace quill

#endif
