// A type (SMT-LIB 2.6: sort): either simple, made from a name, or compound, made from a list of
// component types.
//
// Representation: one allocation that holds the header and the components. Types are unique within
// their universe (see type_universe.h, which makes and frees them), so two types are equal exactly
// when their addresses are. Types form shared graphs: nothing here recurses over components.

#ifndef QUILL_TERMS_DATA_TYPE_H
#define QUILL_TERMS_DATA_TYPE_H

#include <cassert>
#include <cstddef>
#include <iosfwd>
#include <string>

namespace quill {

class DataType {
 public:
  DataType(const DataType&) = delete;
  DataType& operator=(const DataType&) = delete;

  bool is_simple() const { return name != nullptr; }

  // 0 for a simple type.
  size_t num_components() const { return count; }

  // The i-th component of a compound type. Component 0 is its head: the application type for
  // function types, or the simple type named "Array", "BitVec" or "FP" for the parametric types.
  const DataType* get_component(size_t i) const {
    assert(i < count && "a type has no such component");
    return components[i];
  }

  // The name of a simple type; the empty string for a compound one.
  const std::string& get_name() const;

  // The printed form. It depends only on the structure of the type, and different types of one
  // universe print differently:
  //
  //   simple      its name, if that consists of letters and digits only and is neither "rat" nor
  //               "int" (which stand for Real and Int in names of symbols); any other name between
  //               bars, with \ before a bar or a backslash and \0 for the NUL byte
  //   application the arrow ->
  //   compound    its components between parentheses, separated by one space: (BitVec 8)
  //
  // A compound type that occurs again is printed once, as #1=(...), and as #1# from then on, unless
  // it consists of at most three simple types. The text is therefore linear in the size of the
  // type's graph.
  std::string to_str() const;

 private:
  friend class TypeUniverse;

  DataType(const std::string* name_, size_t count_) : name(name_), count(count_) {}
  ~DataType() = default;

  // The name of the application type. Its address, not its text, tells it from a user's type "->".
  static const std::string& application_name();

  const std::string* name;  // owned, except the application type's; null marks a compound type
  size_t count;
#ifdef __clang__
#pragma clang diagnostic push
#pragma clang diagnostic ignored "-Wc99-extensions"
#endif
  __extension__ const DataType* components[];
#ifdef __clang__
#pragma clang diagnostic pop
#endif
};

// The type as to_str gives it, cut off after 200 bytes; "null" for null.
std::ostream& operator<<(std::ostream& out, const DataType* type);

}  // namespace quill

#endif
