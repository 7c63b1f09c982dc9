#include "quill/terms/signature.h"

#include <algorithm>
#include <cstring>
#include <functional>
#include <limits>
#include <new>

#include "quill/utils/exception.h"
#include "quill/utils/scope_guard.h"
#include "quill/utils/table_room.h"

namespace quill {

namespace {

uint32_t hash_of(uint64_t key, std::string_view name) {
  return InternIndex::fold(NameHash()(key, name));
}

}  // namespace

uint32_t Signature::hash_name(std::string_view name) const { return hash_of(index.key(), name); }

Signature::~Signature() {
  for (Symbol* symbol : symbols) release(symbol);
}

void Signature::release(Symbol* symbol) {
  symbol->~Symbol();
  ::operator delete(symbol);
}

// Frees a symbol that was held.
void Signature::remove(Symbol* symbol) noexcept {
  record.remove(symbol);
  release(symbol);
}

uint32_t Signature::find(uint32_t hash, std::string_view name) const {
  return index.find(hash, [&](uint32_t handle) { return name == symbols[handle]->name; });
}

const Symbol* Signature::add_symbol(const char* name, const DataType* type) {
  const size_t length = std::strlen(name);
  const uint32_t hash = hash_name({name, length});
  const uint32_t found = find(hash, {name, length});
  if (found != InternIndex::none) {
    const Symbol* present = symbols[found];
    if (present->type == type) return present;
    throw Exception("the symbol ")
        << name << " already exists with type " << present->type->to_str()
        << ", it can't be declared with type " << type->to_str();
  }

  const size_t count = type->num_components();
  const bool is_application =
      count >= 2 && type->get_component(0) == universe->get_application_type();
  const uint64_t arity = is_application ? count - 2 : 0;
  const DataType* output_type = is_application ? type->get_component(count - 1) : type;

  index.reserve_one();
  record.reserve_one();
  char* memory = static_cast<char*>(::operator new(sizeof(Symbol) + length + 1));
  char* copy = memory + sizeof(Symbol);
  std::memcpy(copy, name, length + 1);
  Symbol* symbol = new (memory) Symbol(copy, arity, type, output_type);
  ScopeGuard undo([&] { release(symbol); });
  symbols.push_back(symbol);
  undo.dismiss();
  index.insert(
      hash, static_cast<uint32_t>(symbols.size() - 1),
      [this](uint64_t key, uint32_t handle) { return hash_of(key, symbols[handle]->name); });
  record.add(symbol);
  return symbol;
}

const Symbol* Signature::get_symbol(const char* name) const {
  const uint32_t found = find(hash_name(name), name);
  return found != InternIndex::none ? symbols[found] : nullptr;
}

void Signature::remove_symbol(const char* name) {
  const uint32_t hash = hash_name(name);
  const uint32_t found = find(hash, name);
  if (found == InternIndex::none) return;
  free_suffix(name);
  index.erase(hash, found);
}

int32_t Signature::lowest_free_suffix(const std::string& base) {
  auto& [next, freed] = suffixes[base];
  std::string candidate = base + '_';
  const auto is_free = [&](int32_t k) {
    candidate.resize(base.size() + 1);
    candidate += std::to_string(k);
    return find(hash_name(candidate), candidate) == InternIndex::none;
  };
  while (!freed.empty()) {
    if (is_free(freed.front())) return freed.front();
    std::pop_heap(freed.begin(), freed.end(), std::greater<>());
    freed.pop_back();
  }
  while (!is_free(next)) next++;
  return next;
}

// After a name base_k has become free, the search with its base must find it.
void Signature::free_suffix(std::string_view name) {
  const size_t bar = name.rfind('_');
  if (bar == std::string_view::npos || suffixes.count == 0) return;
  const std::string_view digits = name.substr(bar + 1);
  // Only suffixes that lowest_free_suffix composes count: not empty, no leading zero, an int32_t.
  if (digits.empty() || digits.size() > 10 || (digits[0] == '0' && digits.size() > 1)) return;
  int64_t k = 0;
  for (const char c : digits) {
    if (c < '0' || c > '9') return;
    k = 10 * k + (c - '0');
  }
  if (k > std::numeric_limits<int32_t>::max()) return;
  const auto found = suffixes.find(std::string(name.substr(0, bar)));
  if (found == suffixes.end() || k >= found->second.next) return;
  auto& [next, freed] = found->second;
  if (freed.size() >= static_cast<size_t>(next)) {
    // There would be more entries than suffixes, because the same name was freed again and again.
    // Searching afresh costs no more.
    next = 0;
    freed.clear();
    return;
  }
  freed.push_back(static_cast<int32_t>(k));
  std::push_heap(freed.begin(), freed.end(), std::greater<>());
}

// Whether the record at this position still holds its name, which has the given hash.
bool Signature::is_named(uint32_t hash, size_t position) const {
  return index.find(hash, [&](uint32_t handle) { return handle == position; }) != InternIndex::none;
}

// The index leads to positions. For records that the loop has passed these are the new positions,
// all below `used`; for the others they are the old ones, not below `i`. So no position means two
// records. The index needs only hashes and positions for these changes and reads no record.
void Signature::gc(const hsh::HashSet<const Symbol*>& keep) noexcept {
  // Suffixes may become free that the search with their base would not look at again.
  suffixes.erase_if([](const auto&) { return true; });
  size_t used = 0;
  for (size_t i = 0; i < symbols.size(); ++i) {
    Symbol* symbol = symbols[i];
    const uint32_t hash = hash_name(symbol->name);
    const bool named = is_named(hash, i);
    if (keep.find(symbol) == keep.end()) {
      if (named) index.erase(hash, static_cast<uint32_t>(i));
      remove(symbol);
    } else {
      if (named) index.rename(hash, static_cast<uint32_t>(i), static_cast<uint32_t>(used));
      symbols[used++] = symbol;
    }
  }
  symbols.resize(used);
  index.shrink();
  give_back_room(symbols);
  give_back_room(suffixes);
}

bool Signature::is_consistent() const {
  size_t named = 0;
  for (size_t i = 0; i < symbols.size(); ++i) {
    const uint32_t hash = hash_name(symbols[i]->name);
    if (!is_named(hash, i)) continue;
    if (find(hash, symbols[i]->name) != i) return false;
    ++named;
  }
  return named == index.size();
}

void Signature::rollback(size_t former_size) noexcept {
  while (symbols.size() > former_size) {
    Symbol* symbol = symbols.back();
    const uint32_t handle = static_cast<uint32_t>(symbols.size() - 1);
    const uint32_t hash = hash_name(symbol->name);
    if (is_named(hash, handle)) index.erase(hash, handle);
    symbols.pop_back();
    remove(symbol);
  }
}

void Signature::remove_at(size_t position) noexcept {
  Symbol* symbol = symbols[position];
  const uint32_t hash = hash_name(symbol->name);
  if (is_named(hash, position)) index.erase(hash, static_cast<uint32_t>(position));
  for (size_t i = position + 1; i < symbols.size(); ++i) {
    const uint32_t moved = hash_name(symbols[i]->name);
    if (is_named(moved, i)) {
      index.rename(moved, static_cast<uint32_t>(i), static_cast<uint32_t>(i - 1));
    }
    symbols[i - 1] = symbols[i];
  }
  symbols.pop_back();
  remove(symbol);
}

}  // namespace quill
