// The base of every error that the library throws.
//
// An Exception is a message under construction: a throw expression can stream more pieces into it.
// The expression keeps its own class, so that a handler for a derived class still catches it:
//
//   throw TermManager::error("unrelated types: ") << a->to_str() << " and " << b->to_str();
//
// Pieces are written in the classic locale, whatever the global locale is. When writing a piece
// throws, append() removes the part already written and passes the exception on, so no piece is cut
// off.
//
// Copies are independent. what() returns the text itself, which stays valid until the exception is
// changed or destroyed. Any number of threads may read an exception that nobody changes, such as
// one that they all rethrow.

#ifndef QUILL_UTILS_EXCEPTION_H
#define QUILL_UTILS_EXCEPTION_H

#include <concepts>
#include <cstddef>
#include <exception>
#include <ostream>
#include <streambuf>
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

  // Called once for every exception that is made from a message, but not for copies. Does nothing:
  // it is a place for a debugger's breakpoint, before the stack unwinds. No build optimises the
  // call away.
  static void dump_msg_and_raise_assertion(const std::string& message = {});

  template <class T>
  void append(const T& piece) {
    const size_t size_before = buffer.text.size();
    try {
      stream << piece;
    } catch (...) {
      take_back(size_before);
      throw;
    }
  }

 private:
  // Appends to the text.
  class Buffer : public std::streambuf {
   public:
    std::string text;

   protected:
    std::streamsize xsputn(const char* piece, std::streamsize size) override;
    int_type overflow(int_type c) override;
  };

  void take_back(size_t size) noexcept;

  Buffer buffer;
  std::ostream stream;  // formats pieces into the buffer
};

// Appends to the message and returns the same exception, with its own type and value category.
template <class Error, class T>
requires std::derived_from<std::remove_cvref_t<Error>, Exception> Error && operator<<(
    Error&& error, const T& piece) {
  error.append(piece);
  return static_cast<Error&&>(error);
}

}  // namespace quill

#endif
