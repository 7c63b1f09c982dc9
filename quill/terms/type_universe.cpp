#include "quill/terms/type_universe.h"

#include <algorithm>
#include <cstdint>
#include <memory>
#include <new>

#include "quill/utils/name_hash.h"
#include "quill/utils/scope_guard.h"
#include "quill/utils/table_room.h"

namespace quill {

namespace {

uint32_t hash_name(uint64_t key, const std::string& name) {
  return InternIndex::fold(NameHash()(key, name));
}

// The addresses of components decide only where the index looks first; no order depends on them.
uint32_t hash_components(uint64_t key, const DataType* const* components, size_t count) {
  KeyedWordHash h(key);
  for (size_t i = 0; i < count; ++i) h.add(reinterpret_cast<uintptr_t>(components[i]));
  return InternIndex::fold(h.result());
}

}  // namespace

TypeUniverse::TypeUniverse() : application_type(nullptr) {
  DataType* type = allocate(&DataType::application_name(), 0);
  ScopeGuard undo([&] { release(type); });
  record.reserve_one();
  types.push_back(type);
  undo.dismiss();
  record.add(type);
  application_type = type;  // not entered in the index, so that no name leads to it
}

TypeUniverse::~TypeUniverse() {
  for (DataType* type : types) release(type);
}

DataType* TypeUniverse::allocate(const std::string* name, size_t count) {
  void* memory = ::operator new(sizeof(DataType) + count * sizeof(const DataType*));
  return new (memory) DataType(name, count);
}

void TypeUniverse::release(DataType* type) {
  if (type->name != &DataType::application_name()) delete type->name;
  type->~DataType();
  ::operator delete(type);
}

// Frees a type that was held.
void TypeUniverse::remove(DataType* type) noexcept {
  record.remove(type);
  release(type);
}

uint32_t TypeUniverse::hash_of(uint64_t key, const DataType* type) {
  return type->is_simple() ? hash_name(key, *type->name)
                           : hash_components(key, type->components, type->count);
}

// Takes ownership of the type once nothing can fail any more, and frees it otherwise.
const DataType* TypeUniverse::add(uint32_t hash, DataType* type) {
  ScopeGuard undo([&] { release(type); });
  index.reserve_one();
  record.reserve_one();
  types.push_back(type);
  undo.dismiss();
  record.add(type);
  index.insert(hash, static_cast<uint32_t>(types.size() - 1),
               [this](uint64_t key, uint32_t handle) { return hash_of(key, types[handle]); });
  return type;
}

const DataType* TypeUniverse::make_type(const std::string& name) {
  const uint32_t hash = hash_name(index.key(), name);
  const uint32_t found = index.find(hash, [&](uint32_t handle) {
    const DataType* type = types[handle];
    return type->is_simple() && *type->name == name;
  });
  if (found != InternIndex::none) return types[found];
  auto copy = std::make_unique<const std::string>(name);
  DataType* type = allocate(copy.get(), 0);
  copy.release();
  return add(hash, type);
}

const DataType* TypeUniverse::make_type(const std::vector<const DataType*>& components) {
  const size_t count = components.size();
  const uint32_t hash = hash_components(index.key(), components.data(), count);
  const uint32_t found = index.find(hash, [&](uint32_t handle) {
    const DataType* type = types[handle];
    return !type->is_simple() && type->count == count &&
           std::equal(components.begin(), components.end(), type->components);
  });
  if (found != InternIndex::none) return types[found];
  DataType* type = allocate(nullptr, count);
  std::copy(components.begin(), components.end(), type->components);
  return add(hash, type);
}

bool TypeUniverse::is_declared_subtype(const DataType* a, const DataType* b) const {
  for (const auto& [sub, super] : subtypes) {
    if (sub == a && super == b) return true;
  }
  return false;
}

void TypeUniverse::set_subtype(const DataType* sub, const DataType* super) {
  if (!is_subtype(sub, super)) subtypes.emplace_back(sub, super);
}

void TypeUniverse::remove_type(const DataType* type) {
  assert(type != application_type && "the application type is never freed");
  const uint32_t hash = hash_of(type);
  const uint32_t handle = index.find(hash, [&](uint32_t h) { return types[h] == type; });
  assert(handle != InternIndex::none &&
         "the type is not one of this universe, or was freed before");
  if (handle == InternIndex::none) return;
  std::erase_if(subtypes,
                [&](const auto& pair) { return pair.first == type || pair.second == type; });
  index.erase(hash, handle);
  const uint32_t last = static_cast<uint32_t>(types.size() - 1);
  DataType* victim = types[handle];
  if (handle != last) {
    index.rename(hash_of(types[last]), last, handle);
    types[handle] = types[last];
  }
  types.pop_back();
  remove(victim);
}

void TypeUniverse::gc(const hsh::HashSet<const DataType*>& keep) noexcept {
  const auto kept = [&](const DataType* type) {
    return type == application_type || keep.find(type) != keep.end();
  };
  std::erase_if(subtypes,
                [&](const auto& pair) { return !kept(pair.first) || !kept(pair.second); });
  size_t used = 0;
  for (DataType* type : types) {
    if (kept(type)) {
      types[used++] = type;
    } else {
      remove(type);
    }
  }
  types.resize(used);
  give_back_room(types);
  // The index still leads to the former positions and to freed types.
  index.clear(used - 1);
  for (size_t i = 0; i < used; ++i) {
    if (types[i] != application_type) index.insert(hash_of(types[i]), static_cast<uint32_t>(i));
  }
}

bool TypeUniverse::is_consistent() const {
  for (size_t i = 0; i < types.size(); ++i) {
    const bool found = index.find(hash_of(types[i]), [&](uint32_t handle) {
      return handle == i;
    }) != InternIndex::none;
    if (found == (types[i] == application_type)) return false;
  }
  return index.size() == types.size() - 1;
}

void TypeUniverse::rollback(size_t former_size) noexcept {
  while (types.size() > former_size) {
    DataType* type = types.back();
    index.erase(hash_of(type), static_cast<uint32_t>(types.size() - 1));
    types.pop_back();
    remove(type);
  }
}

void TypeUniverse::remove_at(size_t position) noexcept {
  DataType* victim = types[position];
  index.erase(hash_of(victim), static_cast<uint32_t>(position));
  for (size_t i = position + 1; i < types.size(); ++i) {
    index.rename(hash_of(types[i]), static_cast<uint32_t>(i), static_cast<uint32_t>(i - 1));
    types[i - 1] = types[i];
  }
  types.pop_back();
  remove(victim);
}

}  // namespace quill
