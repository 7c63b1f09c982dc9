// A symbol: a named constant or function symbol with its type.
//
// Representation: one allocation that holds the record and a copy of the name. The signature (see
// signature.h) makes and frees symbols; they never change. The names of interpreted symbols have a
// backquote at both ends, those of fresh variables an apostrophe at the front.

#ifndef QUILL_TERMS_SYMBOL_H
#define QUILL_TERMS_SYMBOL_H

#include <cstdint>
#include <iosfwd>

#include "quill/terms/data_type.h"

namespace quill {

class Symbol {
 private:
  const DataType*
      output_type;  // cached for typechecking, which asks for nothing else of most symbols

 public:
  Symbol(const Symbol&) = delete;
  Symbol& operator=(const Symbol&) = delete;

  const char* const name;  // zero-terminated

  // The number of arguments of the terms that the symbol heads; 0 for constants.
  const uint64_t arity;

  // The constant's own type; for a function symbol the compound type (application type, arguments
  // ..., result).
  const DataType* const type;

  // The type of the terms that the symbol heads.
  const DataType* get_output_type() const { return output_type; }

 private:
  friend class Signature;

  Symbol(const char* name_, uint64_t arity_, const DataType* type_, const DataType* output_type_)
      : output_type(output_type_), name(name_), arity(arity_), type(type_) {}
  ~Symbol() = default;
};

// The name as it is stored, cut off after 200 bytes; "null" for null.
std::ostream& operator<<(std::ostream& out, const Symbol* s);

}  // namespace quill

#endif
