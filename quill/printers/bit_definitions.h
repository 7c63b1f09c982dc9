// Constants that represent the bits of floating-point values, in text that has no function for them
// (see standard_encoding.h).
//
// A definition names the constant that holds the bits of one value. Which bits a NaN has is open,
// but all NaNs of a format have the same: for each format one more constant holds them. The names,
// quill!ieee_bits_1 and quill!ieee_nan_1 and so on, are given only once.
//
// Definitions belong to scopes, like the commands of a script: pop() forgets the definitions that
// were made since the push() that it undoes.

#ifndef QUILL_PRINTERS_BIT_DEFINITIONS_H
#define QUILL_PRINTERS_BIT_DEFINITIONS_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "quill/terms/term.h"
#include "quill/terms/termmanager/term_manager.h"
#include "quill/utils/guarded_table.h"
#include "quill/utils/hash_map.h"
#include "quill/utils/ieee_float.h"
#include "quill/utils/name_hash.h"

namespace quill {

class BitDefinitions {
 public:
  struct Definition {
    std::string name;
    IEEEFloat::format format;
    const Term_* value;  // null: the constant holds the bits of NaN
  };

  // Definitions avoid the names of the manager's symbols. The manager must outlive the definitions.
  explicit BitDefinitions(const TermManager& manager_) : manager(manager_) {}

  // Definitions avoid this name, too.
  void reserve(const std::string& name) { reserved.insert(name); }

  // The definition of the bits of a floating-point value, and that of the bits of NaN; null if
  // there is none. The pointers are valid until the next change.
  const Definition* find(const Term_* value) const;
  const Definition* find_nan(IEEEFloat::format format) const;

  // Makes the definition of a value that has none; if NaN in its format has none either, makes that
  // one first. Returns the former number of definitions. All or nothing.
  size_t define(const Term_* value);

  // Removes the latest definitions of the current scope and frees their names for later
  // definitions. Used when a text could not be written.
  struct Mark {
    size_t count;
    uint64_t next_bits;
    uint64_t next_nan;
  };
  Mark mark() const { return {definitions.size(), next_bits, next_nan}; }
  void take_back_to(const Mark& before) noexcept;

  // The definitions of all scopes, in the order in which they were made.
  const std::vector<Definition>& all() const { return definitions; }

  void push(uint64_t levels) { depth += levels; }
  void pop(uint64_t levels);
  // Leaves all scopes and forgets all definitions.
  void clear();

 private:
  void add(const char* base, uint64_t& next, IEEEFloat::format format, const Term_* value);
  void forget_last() noexcept;

  const TermManager& manager;
  hsh::GuardedSet<std::string, NameHash> reserved;
  std::vector<Definition> definitions;
  std::vector<uint64_t> depths;  // of the scopes of the definitions, ascending
  uint64_t depth = 0;
  hsh::HashMap<const Term_*, size_t> by_value;  // positions in definitions
  // The position of the latest definition of NaN for each format. It may have been forgotten since.
  hsh::GuardedMap<IEEEFloat::format, size_t> nans;
  uint64_t next_bits = 1;  // numbers of the next names
  uint64_t next_nan = 1;
};

}  // namespace quill

#endif
