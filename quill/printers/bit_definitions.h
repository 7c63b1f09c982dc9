// Constants that stand for the bits of floating-point values, in text that has no function for them
// (see standard_encoding.h).
//
// A definition names the constant that holds the bits of one value. Which bits a NaN has is open,
// but all have the same: for each format there is one more constant, which holds those. The names,
// quill!ieee_bits_1 and quill!ieee_nan_1 and so on, are given once only.
//
// Definitions belong to scopes, as the commands of a script do: pop() forgets those that were made
// since the push() that it undoes.

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

  // The names of symbols of the manager are not given; it must outlive the definitions.
  explicit BitDefinitions(const TermManager& owner) : manager(owner) {}

  // Nor is this one.
  void reserve(const std::string& name) { reserved.insert(name); }

  // The definition of the bits of a floating-point value, and that of the bits of NaN; null where
  // there is none. They are valid until the next change.
  const Definition* find(const Term_* value) const;
  const Definition* find_nan(IEEEFloat::format format) const;

  // Makes the definition for a value that has none, after that of NaN in its format if there is
  // none either. Returns the former number of definitions. All or nothing.
  size_t define(const Term_* value);

  // Takes the latest definitions of the current scope back, with their names, which are given
  // again: for a text that could not be written.
  struct Mark {
    size_t count;
    uint64_t next_bits;
    uint64_t next_nan;
  };
  Mark mark() const { return {definitions.size(), next_bits, next_nan}; }
  void take_back_to(const Mark& before) noexcept;

  // Of all scopes, in the order in which they were made.
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
  std::vector<uint64_t> depths;  // of their scopes, ascending
  uint64_t depth = 0;
  hsh::HashMap<const Term_*, size_t> by_value;  // positions in definitions
  // Of the latest definition for NaN in each format. It may have been forgotten since.
  hsh::GuardedMap<IEEEFloat::format, size_t> nans;
  uint64_t next_bits = 1;  // numbers of the next names
  uint64_t next_nan = 1;
};

}  // namespace quill

#endif
