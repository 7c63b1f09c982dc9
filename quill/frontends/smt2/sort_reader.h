// Reads sorts, without recursion, and knows which sorts of the theories are supported.
//
// A sort is a type of the manager, except arrays of Bool (see theory_sorts.h). A declared sort of
// arity 0 is a simple type. A declared sort of higher arity applied to arguments is the compound
// type (head, arguments ...), whose head is the simple type with the sort's name. A defined sort is
// a type over placeholders for its parameters; each use replaces them.

#ifndef QUILL_FRONTENDS_SMT2_SORT_READER_H
#define QUILL_FRONTENDS_SMT2_SORT_READER_H

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "quill/frontends/smt2/lexer.h"
#include "quill/frontends/smt2/scopes.h"
#include "quill/frontends/smt2/theory_sorts.h"
#include "quill/smtlib/logic.h"
#include "quill/terms/termmanager/term_manager.h"

namespace quill::smt2 {

class SortReader {
 public:
  SortReader(Lexer& lexer_, TermManager& manager_, Scopes& scopes_, TheorySorts& sorts_,
             const Logic& logic_)
      : lexer(lexer_), manager(manager_), scopes(scopes_), sorts(sorts_), logic(logic_) {}

  // Reads one sort. On entry the current token is its first one, on return the first one after it.
  const DataType* read();

  // The type that represents the parameter with this number while a define-sort is read.
  const DataType* placeholder(size_t number);

  // Whether a theory of the logic has a sort of this name.
  bool is_reserved(std::string_view name) const;

 private:
  struct Head {
    Position position;
    std::string name;
    const SortBinding* binding;  // null for arrays
    size_t first_arg;
  };

  Head open();
  const DataType* read_name();
  const DataType* read_indexed();
  const DataType* apply(const Head& head);
  const DataType* expand(const SortBinding& definition, const DataType* const* actual);
  const DataType* compound(const std::vector<const DataType*>& components, Position position,
                           const std::string& name);
  [[noreturn]] void reject_name(const Token& token) const;
  [[noreturn]] void reject_without_indices(bool is_bit_vector);
  void expect_arity(Position position, std::string_view name, uint64_t arity, uint64_t given);

  Lexer& lexer;
  TermManager& manager;
  Scopes& scopes;
  TheorySorts& sorts;
  const Logic& logic;
  std::vector<Head> heads;
  std::vector<const DataType*> args;
};

}  // namespace quill::smt2

#endif
