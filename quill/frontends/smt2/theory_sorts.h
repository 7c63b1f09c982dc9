// The sorts that theories make from numbers and from other sorts, and arrays of Bool.
//
// The manager has no arrays whose index or element type is Bool: it holds them with one-bit
// bit-vectors in place of Bool, #b1 for true. SMT-LIB still distinguishes (Array Int Bool) from
// (Array Int (_ BitVec 1)). The sorts of values and declarations, called "sorts" in this front end,
// are therefore types of the manager in which a marker, a simple type that no script can name,
// represents Bool inside arrays; held() returns the type that the manager sees. Outside arrays Bool
// is Bool.
//
// Sorts are shared graphs and may be nested deeply; nothing here recurses.

#ifndef QUILL_FRONTENDS_SMT2_THEORY_SORTS_H
#define QUILL_FRONTENDS_SMT2_THEORY_SORTS_H

#include <cstdint>

#include "quill/frontends/smt2/parse_error.h"
#include "quill/frontends/smt2/sort_images.h"
#include "quill/terms/termmanager/term_manager.h"

namespace quill::smt2 {

class TheorySorts {
 public:
  explicit TheorySorts(TermManager& manager_) : manager(manager_) {}
  TheorySorts(const TheorySorts&) = delete;
  TheorySorts& operator=(const TheorySorts&) = delete;

  // (_ BitVec width) and (_ FloatingPoint e s), where s counts the hidden bit. Both throw
  // ParseError if this is not a sort or the manager does not have it.
  const DataType* bit_vector(uint64_t width, Position position);
  const DataType* floating_point(uint64_t e, uint64_t s, Position position);

  // (Array index element); either may be Bool.
  const DataType* array(const DataType* index, const DataType* element);

  // Whether the sort is an array sort; sets the sorts of its indices and elements.
  bool is_array(const DataType* sort, const DataType** index, const DataType** element) const;

  // The manager's type for terms of this sort.
  const DataType* held(const DataType* sort);

  // Whether array() made a sort with Bool since the last call.
  bool take_bool_arrays();

  // Whether the type is the marker, in any manager.
  static bool is_bool_marker(const DataType* type);

 private:
  const DataType* mark(const DataType* component);

  TermManager& manager;
  const DataType* marker = nullptr;  // null until it is needed
  bool bool_arrays_made = false;
  SortImages held_types;
};

}  // namespace quill::smt2

#endif
