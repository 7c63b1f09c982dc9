// A journal of random calls: everything that two managers do, one line for each call, with the
// resulting ids, names, texts, failures and collections.
//
// The seed alone determines the lines. They hold everything that a caller can see and nothing else:
// the journals of two runs, compilers or threads are equal if and only if they did the same. Calls
// of all kinds appear: types, symbols, numerals and operators of all theories, refused requests,
// substitution, copies between the two managers, texts, collections, and destruction of managers.

#ifndef TESTS_JOURNAL_JOURNAL_H
#define TESTS_JOURNAL_JOURNAL_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <ostream>
#include <random>
#include <string>
#include <unordered_map>
#include <vector>

#include "quill/terms/termmanager/term_manager.h"
#include "tests/random/random_theory_terms.h"

namespace quill::journal {

class Journal {
 public:
  Journal(uint64_t seed, std::ostream& lines);

  // Goes on for so many calls.
  void perform(size_t calls);

  // FNV-1a over all lines so far.
  uint64_t hash() const { return lines_hash; }

 private:
  // A manager with what its user holds; a collection keeps some of it.
  struct Side {
    explicit Side(Journal& journal);
    TermManager manager;
    std::vector<const Term_*> terms;
    std::vector<const Symbol*> symbols;
    std::vector<const DataType*> types;
    std::unordered_map<const DataType*, std::vector<const Term_*>> by_type;  // only looked up in
    smt2::RandomTheoryTerms theories;
  };

  uint32_t below(uint32_t bound) { return static_cast<uint32_t>(random() % bound); }
  bool one_in(uint32_t n) { return below(n) == 0; }
  template <class T>
  T one_of(const std::vector<T>& from) {
    return from[below(static_cast<uint32_t>(from.size()))];
  }

  void perform_one();
  void take_turn(uint32_t kind);
  void write(const std::string& line);
  void note(const Term_* t);
  void note(const Symbol* s);
  void note(const DataType* type);
  void hold(const Term_* t);

  const Term_* operand(Side& side, const DataType* type);
  const Term_* any_term(Side& side, const DataType* type);
  const DataType* any_type(Side& side);
  QNumber any_number();
  QNumber any_bits(size_t n);
  std::string any_name();

  void make_core_term();
  void make_arithmetic_term();
  void make_numeral();
  void make_symbol();
  void apply_function();
  void make_type();
  void substitute();
  void copy();
  void print();
  void ask();
  void collect();

  std::mt19937_64 random;
  std::ostream& out;
  uint64_t lines_hash = 0xcbf29ce484222325;
  size_t calls_so_far = 0;
  std::string line;  // of the current call
  std::array<std::unique_ptr<Side>, 2> sides;
  Side* side = nullptr;  // whose turn it is
  Side* other = nullptr;
};

}  // namespace quill::journal

#endif
