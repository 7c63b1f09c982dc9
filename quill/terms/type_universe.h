// Makes each type of one term manager once, owns the types, and keeps the subtype relation.
//
// Representation: the types in order of creation, and an index over them by name (simple types) or
// by component list (compound types). A request is hashed to find its type, so nothing is built for
// a type that exists. remove_type() moves the last type into the place of the one that it frees.
//
// The universe checks nothing: the manager decides which shapes make sense. The universe frees the
// types that it is told to free; the caller guarantees that nothing refers to them.

#ifndef QUILL_TERMS_TYPE_UNIVERSE_H
#define QUILL_TERMS_TYPE_UNIVERSE_H

#include <cstddef>
#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

#include "quill/terms/data_type.h"
#include "quill/terms/ownership_record.h"
#include "quill/utils/hash_set.h"
#include "quill/utils/intern_index.h"

namespace quill {

class TypeUniverse {
 public:
  TypeUniverse();
  ~TypeUniverse();
  TypeUniverse(const TypeUniverse&) = delete;
  TypeUniverse& operator=(const TypeUniverse&) = delete;

  // The simple type with this name, made on the first request.
  const DataType* make_type(const std::string& name);

  // The compound type of exactly these components in this order, made on the first request.
  const DataType* make_type(const std::vector<const DataType*>& components);
  const DataType* make_type(std::initializer_list<const DataType*> components) {
    return make_type(std::vector<const DataType*>(components));
  }

  // The head of every function type: (application type, arguments ..., result). It cannot be made
  // from a name.
  const DataType* get_application_type() const { return application_type; }

  // Whether a equals b or was declared a subtype of b. Not transitive.
  bool is_subtype(const DataType* a, const DataType* b) const {
    return a == b || is_declared_subtype(a, b);
  }
  void set_subtype(const DataType* sub, const DataType* super);

  // The pairs (sub, super) that were declared, in this order.
  const std::vector<std::pair<const DataType*, const DataType*>>& declared_subtypes() const {
    return subtypes;
  }

  // Frees one type and forgets the subtype pairs that mention it. Must not be called for the
  // application type, nor for a type that another type or a symbol still uses.
  void remove_type(const DataType* type);

  // Frees every type that is not in keep, except the application type. The caller ensures that keep
  // holds all components of its types. Needs no memory.
  void gc(const hsh::HashSet<const DataType*>& keep) noexcept;

  // The types held.
  size_t size() const { return types.size(); }
  const DataType* type(size_t i) const { return types[i]; }

  // The types held and freed, in debug builds.
  const OwnershipRecord& ownership() const { return record; }

  // Whether requests find every type held. Linear; for debugging.
  bool is_consistent() const;

  // Frees every type made since size() was `former_size`, provided that none was freed in between.
  // Undoes a request that failed half-way.
  void rollback(size_t former_size) noexcept;

  // Frees the type at this position, which nothing uses; later types move down by one. Linear in
  // their number. Must not be called for the application type.
  void remove_at(size_t position) noexcept;

 private:
  bool is_declared_subtype(const DataType* a, const DataType* b) const;
  uint32_t hash_of(const DataType* type) const { return hash_of(index.key(), type); }
  static uint32_t hash_of(uint64_t key, const DataType* type);
  static DataType* allocate(const std::string* name, size_t count);
  static void release(DataType* type);
  void remove(DataType* type) noexcept;
  const DataType* add(uint32_t hash, DataType* type);

  std::vector<DataType*> types;
  InternIndex index;
  OwnershipRecord record;
  std::vector<std::pair<const DataType*, const DataType*>>
      subtypes;  // (sub, super); one pair in practice
  const DataType* application_type;
};

}  // namespace quill

#endif
