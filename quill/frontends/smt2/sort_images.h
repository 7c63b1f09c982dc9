// The image of a sort under a map of some of its parts. Sorts are shared graphs: each distinct one
// is looked at once, and nothing recurses. Private to the front end.

#ifndef QUILL_FRONTENDS_SMT2_SORT_IMAGES_H
#define QUILL_FRONTENDS_SMT2_SORT_IMAGES_H

#include <cstddef>
#include <vector>

#include "quill/terms/data_type.h"
#include "quill/utils/hash_map.h"

namespace quill::smt2 {

using SortImages = hsh::HashMap<const DataType*, const DataType*>;

// The image of `root`. A sort that is in the map has its image there; any other simple sort is its
// own image, and that of a compound sort is make(sort, images of its components). The images found
// are entered in the map.
template <class Make>
const DataType* image_of_sort(const DataType* root, SortImages& images, Make make) {
  std::vector<const DataType*> pending = {root};
  std::vector<const DataType*> components;
  while (!pending.empty()) {
    const DataType* type = pending.back();
    if (images.find(type) != images.end()) {
      pending.pop_back();
      continue;
    }
    const size_t pending_before = pending.size();
    components.clear();
    for (size_t i = 0; i < type->num_components(); ++i) {
      const DataType* component = type->get_component(i);
      const auto image = images.find(component);
      if (image == images.end()) {
        pending.push_back(component);
      } else {
        components.push_back(image->second);
      }
    }
    if (pending.size() != pending_before) continue;
    images[type] = type->is_simple() ? type : make(type, components);
    pending.pop_back();
  }
  return images[root];
}

}  // namespace quill::smt2

#endif
