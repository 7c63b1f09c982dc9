// Copying types. An explicit stack takes nested types apart, each once.

#include "quill/terms/termmanager/term_copy_callback.h"
#include "quill/terms/termmanager/term_manager.h"

namespace quill {

const DataType* TermManager::TermCopyCallback::find_type(const DataType* d) const {
  const auto found = types.find(d);
  return found != types.end() ? found->second : nullptr;
}

// The width of a bit-vector type, or null for any other type. Null also for a compound that
// is_bv_type accepts because of its head but whose parameter has no width.
const size_t* TermManager::TermCopyCallback::find_width(const DataType* d) const {
  if (!source->is_bv_type(d, nullptr)) return nullptr;
  return source->bv_widths.find_key(d->get_component(1));
}

// The same for the format of a floating-point type.
const IEEEFloat::format* TermManager::TermCopyCallback::find_format(const DataType* d) const {
  if (!source->is_fp_type(d, nullptr, nullptr)) return nullptr;
  return source->fp_formats.find_key(d->get_component(1));
}

// The copy of a type that is copied already or whose copy needs no copy of a component; null for
// others.
const DataType* TermManager::TermCopyCallback::copy_plain_type(const DataType* d) {
  if (const DataType* known = find_type(d)) return known;
  const DataType* copy = nullptr;
  if (const size_t* width = find_width(d)) {
    copy = destination->get_bv_type(*width);
  } else if (const IEEEFloat::format* format = find_format(d)) {
    copy = destination->get_fp_type(format->e, format->m);
  } else if (d->is_simple()) {
    copy = destination->get_simple_type(d->get_name(), /*only_existing=*/false);
  } else {
    return nullptr;
  }
  types[d] = copy;
  return copy;
}

// The copy of a compound type whose components are copied.
const DataType* TermManager::TermCopyCallback::make_nested_type(const DataType* d) {
  const DataType* index = nullptr;
  const DataType* element = nullptr;
  if (source->is_array_type(d, &index, &element)) {
    return destination->get_array_type(find_type(index), find_type(element));
  }
  std::vector<const DataType*> components;
  components.reserve(d->num_components());
  for (size_t i = 0; i < d->num_components(); ++i) {
    components.push_back(find_type(d->get_component(i)));
  }
  // Not get_function_type, which may refuse Bool arguments that the source allowed.
  return destination->universe->make_type(components);
}

const DataType* TermManager::TermCopyCallback::copy_type(const DataType* d) {
  if (source == destination) return d;
  if (const DataType* copy = copy_plain_type(d)) return copy;

  struct Frame {
    const DataType* type;
    bool is_array;  // copies the element type, then the index type, and not the head
    size_t copied;  // how many components the loop has looked at
  };
  std::vector<Frame> open;
  const auto enter = [&](const DataType* type) {
    open.push_back({type, source->is_array_type(type, nullptr, nullptr), 0});
  };
  enter(d);
  while (!open.empty()) {
    Frame& frame = open.back();
    const size_t count = frame.is_array ? 2 : frame.type->num_components();
    const DataType* nested = nullptr;  // a component to copy first
    while (nested == nullptr && frame.copied < count) {
      const size_t i = frame.is_array ? count - frame.copied : frame.copied;
      const DataType* component = frame.type->get_component(i);
      if (copy_plain_type(component) == nullptr) nested = component;
      ++frame.copied;
    }
    if (nested != nullptr) {
      enter(nested);
      continue;
    }
    const DataType* copy = make_nested_type(frame.type);
    types[frame.type] = copy;
    open.pop_back();
  }
  return find_type(d);
}

}  // namespace quill
