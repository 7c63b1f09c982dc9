#include "quill/frontends/smt2/scopes.h"

#include <cassert>
#include <utility>

#include "quill/utils/scope_guard.h"

namespace quill::smt2 {

void Scopes::bind_local(Name& name, const Value& value) {
  locals.push_back({&name, name.local, value});
  name.local = static_cast<uint32_t>(locals.size());
}

void Scopes::unbind_locals(size_t first) {
  while (locals.size() > first) {
    locals.back().name->local = locals.back().outer;
    locals.pop_back();
  }
}

// Everything recorded is bound, even if memory runs out: unbind() relies on it.
void Scopes::bind(Name& name, std::unique_ptr<Binding> binding) {
  assert(name.global == nullptr);
  const std::string& stored = binding->stored_name;
  if (!stored.empty()) use_name(stored);
  ScopeGuard undo([&] {
    if (!stored.empty()) give_up_name(stored);
  });
  record({&name, nullptr});
  undo.dismiss();
  name.global = std::move(binding);
}

void Scopes::bind(SortName& name, std::unique_ptr<SortBinding> binding) {
  assert(name.global == nullptr);
  const bool is_declared = !binding->defined;
  if (is_declared) used_sort_names[binding->type->get_name()] = true;
  ScopeGuard undo([&] {
    if (is_declared) used_sort_names[binding->type->get_name()] = false;
  });
  record({nullptr, &name});
  undo.dismiss();
  name.global = std::move(binding);
}

bool Scopes::is_used(const std::string& stored) const {
  const NameUse* use = used_names.find(stored);
  return use != nullptr && use->is_used;
}

template <class IsFree>
std::string Scopes::first_free_name(const std::string& stored, const DataType* type,
                                    const IsFree& is_free) const {
  std::string name = stored;
  for (uint64_t k = 0;; ++k) {
    if (is_free(name)) {
      if (type == nullptr) return name;
      const Symbol* present = manager.get_signature()->get_symbol(name.c_str());
      if (present == nullptr || present->type == type) return name;
    }
    name = stored + "_" + std::to_string(k);
  }
}

std::string Scopes::free_symbol_name(const std::string& stored, const DataType* type) const {
  return first_free_name(stored, type, [&](const std::string& name) { return !is_used(name); });
}

std::string Scopes::free_symbol_name_of_stretch(const std::string& stored,
                                                const DataType* type) const {
  return first_free_name(stored, type, [&](const std::string& name) {
    const NameUse* use = used_names.find(name);
    return use == nullptr || (!use->is_used && use->stretch != stretch);
  });
}

std::string Scopes::free_sort_name(const std::string& stored) const {
  std::string name = stored;
  for (uint64_t k = 0; is_in_use(used_sort_names, name); ++k) {
    name = stored + "_" + std::to_string(k);
  }
  return name;
}

void Scopes::record(Bound bound) { (global_declarations ? permanent : trail).push_back(bound); }

void Scopes::unbind(const Bound& bound) {
  if (bound.sort != nullptr) {
    const SortBinding& binding = *bound.sort->global;
    if (!binding.defined) used_sort_names[binding.type->get_name()] = false;
    bound.sort->global.reset();
    return;
  }
  const Binding& binding = *bound.name->global;
  if (!binding.stored_name.empty()) give_up_name(binding.stored_name);
  if (binding.owned) manager.free_symbol(binding.symbol);
  bound.name->global.reset();
}

void Scopes::unbind_trail(size_t first) {
  while (trail.size() > first) {
    unbind(trail.back());
    trail.pop_back();
  }
}

void Scopes::push(uint64_t count) {
  if (count == 0) return;
  levels.push_back({trail.size(), count});
  open_levels += count;
}

void Scopes::pop(uint64_t count) {
  assert(count <= open_levels);
  open_levels -= count;
  while (count != 0) {
    Level& level = levels.back();
    const size_t first = level.first;
    if (level.count > count) {
      level.count -= count;
      count = 0;
    } else {
      count -= level.count;
      levels.pop_back();
    }
    unbind_trail(first);
  }
}

void Scopes::reset_assertions() {
  levels.clear();
  open_levels = 0;
  if (global_declarations) {
    permanent.insert(permanent.end(), trail.begin(), trail.end());
    trail.clear();
  } else {
    unbind_trail(0);
  }
}

void Scopes::reset() {
  levels.clear();
  open_levels = 0;
  unbind_trail(0);
  for (const Bound& bound : permanent) unbind(bound);
  permanent.clear();
  global_declarations = false;
  begin_stretch();
}

}  // namespace quill::smt2
