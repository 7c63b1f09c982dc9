#include "quill/frontends/smt2/theory_sorts.h"

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace quill::smt2 {

namespace {

// The name is unique: no sort of a script has a NUL byte in its name.
constexpr std::string_view marker_name("\0Bool", 5);

}  // namespace

const DataType* TheorySorts::bit_vector(uint64_t width, Position position) {
  if (width == 0) throw ParseError(position, "a bit-vector needs a width of at least 1");
  return manager.get_bv_type(width);
}

const DataType* TheorySorts::floating_point(uint64_t e, uint64_t s, Position position) {
  const auto text = [&] {
    return "(_ FloatingPoint " + std::to_string(e) + " " + std::to_string(s) + ")";
  };
  if (e < 2 || s < 2) {
    throw ParseError(position, text() + " is no sort: it needs two bits of exponent and two of " +
                                   "significand at least");
  }
  if (s == 2) {
    throw ParseError(position, "unsupported: the sort " + text() + ", whose significand has " +
                                   "fewer than three bits");
  }
  if (e > ~uint64_t{0} - s) {
    throw ParseError(position, "the widths of " + text() + " are too large");
  }
  return manager.get_fp_type(e, s - 1);
}

const DataType* TheorySorts::mark(const DataType* component) {
  if (component != manager.get_bool_type()) return component;
  if (marker == nullptr) marker = manager.get_simple_type(std::string(marker_name), false);
  bool_arrays_made = true;
  return marker;
}

const DataType* TheorySorts::array(const DataType* index, const DataType* element) {
  const DataType* marked_index = mark(index);
  return manager.get_array_type(marked_index, mark(element));
}

bool TheorySorts::is_array(const DataType* sort, const DataType** index,
                           const DataType** element) const {
  if (!manager.is_array_type(sort, index, element)) return false;
  if (is_bool_marker(*index)) *index = manager.get_bool_type();
  if (is_bool_marker(*element)) *element = manager.get_bool_type();
  return true;
}

const DataType* TheorySorts::held(const DataType* sort) {
  if (marker == nullptr || sort->is_simple()) return sort;
  if (const auto known = held_types.find(sort); known != held_types.end()) return known->second;
  held_types[marker] = manager.get_bv_type(1);
  return image_of_sort(sort, held_types,
                       [&](const DataType*, const std::vector<const DataType*>& components) {
                         return manager.get_compound_type(components);
                       });
}

bool TheorySorts::take_bool_arrays() { return std::exchange(bool_arrays_made, false); }

bool TheorySorts::is_bool_marker(const DataType* type) {
  return type->is_simple() && type->get_name() == marker_name;
}

}  // namespace quill::smt2
