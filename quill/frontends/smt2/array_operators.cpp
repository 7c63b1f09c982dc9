#include "quill/frontends/smt2/array_operators.h"

#include "quill/frontends/smt2/sort_text.h"

namespace quill::smt2 {

namespace {

struct Components {
  const DataType* index = nullptr;
  const DataType* element = nullptr;
};

// The components of the first argument, which must be an array.
Components expect_array(const TermBuilder& b, const Application& a) {
  Components components;
  const DataType* given = a.args[0].sort;
  if (!b.sorts.is_array(given, &components.index, &components.element)) {
    b.reject_argument(a, 0, "an array");
  }
  return components;
}

}  // namespace

Value build_select(TermBuilder& b, const Application& a) {
  const Components components = expect_array(b, a);
  b.expect(a, 1, components.index);
  const Term_* index = b.to_held(a.args[1].term, components.index);
  const Term_* element = b.manager.make_array_read(a.args[0].term, index);
  return {b.from_held(element, components.element), components.element};
}

Value build_store(TermBuilder& b, const Application& a) {
  const Components components = expect_array(b, a);
  b.expect(a, 1, components.index);
  b.expect(a, 2, components.element);
  const Term_* index = b.to_held(a.args[1].term, components.index);
  const Term_* element = b.to_held(a.args[2].term, components.element);
  return {b.manager.make_array_write(a.args[0].term, index, element), a.args[0].sort};
}

Value build_const_array(TermBuilder& b, const Application& a) {
  if (a.sort == nullptr) b.reject(a, "is written ((as const sort) value)");
  Components components;
  if (!b.sorts.is_array(a.sort, &components.index, &components.element)) {
    b.reject(a, "names the sort " + sort_text(b.manager, a.sort) + ", which has no arrays");
  }
  b.expect(a, 0, components.element);
  const Term_* element = b.to_held(a.args[0].term, components.element);
  return {b.manager.make_array_const(b.sorts.held(a.sort), element), a.sort};
}

}  // namespace quill::smt2
