// Maps names to symbols, and owns the symbols of one term manager.
//
// Representation: the records in order of creation, and an index over them by name. Names are byte
// strings without a NUL. remove_symbol() takes the name from a symbol; terms may still use the
// symbol, so its record stays, without a name in the index, until a collection or destruction frees
// it.
//
// Costs: one hash look-up per call. The hash spreads numbered names (x0, x1, ...) as well as
// others.

#ifndef QUILL_TERMS_SIGNATURE_H
#define QUILL_TERMS_SIGNATURE_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "quill/terms/ownership_record.h"
#include "quill/terms/symbol.h"
#include "quill/terms/type_universe.h"
#include "quill/utils/guarded_table.h"
#include "quill/utils/hash_set.h"
#include "quill/utils/intern_index.h"
#include "quill/utils/name_hash.h"

namespace quill {

class Signature {
 public:
  // The universe tells function types from others; it must outlive the signature.
  explicit Signature(TypeUniverse* universe_) : universe(universe_) {}
  ~Signature();
  Signature(const Signature&) = delete;
  Signature& operator=(const Signature&) = delete;

  // The symbol of this name and type; makes it if the name is free. Its arity is the number of
  // argument types of a function type (application type, arguments ..., result) and 0 for any other
  // type. Throws Exception, and changes nothing, when a symbol of another type has the name.
  const Symbol* add_symbol(const char* name, const DataType* type);

  // The symbol registered under exactly this name, or null.
  const Symbol* get_symbol(const char* name) const;

  // Takes the name from its symbol, so that it can be used again. Ignores an unknown name.
  void remove_symbol(const char* name);

  // The least k for which no symbol is named base_k. The signature remembers it from call to call,
  // so that asking for many unique names with one base costs the same each time.
  int32_t lowest_free_suffix(const std::string& base);

  // Frees every symbol that is not in keep, named or not. Needs no memory.
  void gc(const hsh::HashSet<const Symbol*>& keep) noexcept;

  // The symbols held, named or not, in the order in which they were made.
  size_t size() const { return symbols.size(); }
  const Symbol* symbol(size_t i) const { return symbols[i]; }

  // The symbols held and freed, in debug builds.
  const OwnershipRecord& ownership() const { return record; }

  // Whether every name leads to a symbol of this name. Linear; for debugging.
  bool is_consistent() const;

  // Frees every symbol made since size() was `former_size`, provided that none was freed in
  // between. Undoes a request that failed half-way.
  void rollback(size_t former_size) noexcept;

  // Frees the symbol at this position; later symbols move down by one. Linear in their number.
  void remove_at(size_t position) noexcept;

 private:
  uint32_t hash_name(std::string_view name) const;
  uint32_t find(uint32_t hash, std::string_view name) const;
  bool is_named(uint32_t hash, size_t position) const;
  void free_suffix(std::string_view name);
  static void release(Symbol* symbol);
  void remove(Symbol* symbol) noexcept;

  TypeUniverse* universe;
  std::vector<Symbol*> symbols;
  InternIndex index;
  OwnershipRecord record;

  // All of base_0 ... base_(next - 1) are taken, except some of those in `freed`, a heap with the
  // least suffix on top.
  struct Suffixes {
    int32_t next = 0;
    std::vector<int32_t> freed;
  };
  hsh::GuardedMap<std::string, Suffixes, NameHash> suffixes;  // by base
};

}  // namespace quill

#endif
