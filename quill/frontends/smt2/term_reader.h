// Reads terms without recursion: the terms that are being read are frames on an explicit stack.
//
// The values of finished subterms are on a stack of their own; each frame knows where its values
// begin. Definitions are expanded where they are used, let and its variables disappear, and
// annotations other than :named are skipped.

#ifndef QUILL_FRONTENDS_SMT2_TERM_READER_H
#define QUILL_FRONTENDS_SMT2_TERM_READER_H

#include <string>
#include <string_view>
#include <vector>

#include "quill/frontends/smt2/lexer.h"
#include "quill/frontends/smt2/operators.h"
#include "quill/frontends/smt2/scopes.h"
#include "quill/frontends/smt2/script.h"
#include "quill/frontends/smt2/sort_reader.h"
#include "quill/frontends/smt2/term_builder.h"
#include "quill/frontends/smt2/value.h"

namespace quill::smt2 {

class TermReader {
 public:
  TermReader(Lexer& lexer_, Scopes& scopes_, SortReader& sort_reader_, TermBuilder& builder_);
  TermReader(const TermReader&) = delete;
  TermReader& operator=(const TermReader&) = delete;

  // Reads one term. On entry the current token is its first one, on return the first one after it.
  Value read();

  // About the last term read: whether it is annotated as a whole, and, apart from annotations, the
  // stored name by which the script gives it. That name is empty if the script gives the term in
  // another way, or by the name of a definition that is not kept.
  bool is_annotated() const { return outer_annotations != 0; }
  std::string spelled_name;

  // Index of the first named term that may have been named as the whole of the last term read.
  // Those before it were named inside an application whose result is the term.
  size_t first_name_of_whole = 0;

  // Whether a theory of the logic gives the name a meaning, so that it cannot be declared.
  bool is_reserved(const Name& name) const { return is_of_theory(name) && !name.theory->indexed; }

  // The manager's spelling of a name.
  std::string stored_name(std::string_view name) const;

  // The terms named by :named since the caller last emptied this.
  std::vector<NamedTerm> named_terms;

  // The placeholders of the definition being read. Terms named by :named must not mention them.
  std::vector<const Term_*> forbidden_in_named;

  // Whether names that are unknown here are also looked up in the manager's signature.
  bool use_signature = false;

  // The script for which the term is read, used in messages about unknown names; null for none.
  const Script* script = nullptr;

  // The parenthesis around the term that is read, if the term is in a script.
  Position opened;

 private:
  // Whether a token with this name is a reserved word.
  static bool is_word(const Token& token, const Name& name) {
    return !token.quoted && quill::is_reserved(name.construct);
  }

  bool is_of_theory(const Name& name) const {
    return name.theory != nullptr && builder.logic.has(name.theory->theory);
  }

  // Whether the name is an operator, reserved or not, unless the script declares it.
  bool has_operator(const Name& name) const {
    if (is_of_theory(name)) return true;
    if (name.theory_operator == nullptr) return false;
    return builder.logic.has(name.theory->readers) ||
           (name.theory_operator->spells_constants && builder.logic.has(Theory::FloatingPoint));
  }

  enum class FrameKind { Operator, Function, Macro, Bindings, Body, Annotation };

  // What a head of an application or a constant means: exactly one of value, operator, function and
  // macro is set.
  struct Meaning {
    Value value;
    const Operator* op = nullptr;
    const Symbol* function = nullptr;
    const DataType* signature = nullptr;  // the type of the function, in sorts
    const Macro* macro = nullptr;
  };

  struct Frame {
    FrameKind kind;
    Position position;
    size_t first_value = 0;          // index of this frame's first value in values
    size_t first_extra = 0;          // the same in indices, variables (BINDINGS) or locals (BODY)
    Meaning head;                    // of an application
    const DataType* sort = nullptr;  // the sort that (as head sort) requires of an application
  };

  void open();
  void open_application(Position position, const Meaning& head, size_t first_index,
                        const DataType* sort);
  void open_compound_head(Position position);
  void open_let(Position position);
  void open_binding();
  void close_bindings(Frame& frame);
  void finish(Value value);
  void finish_annotation(Position position);
  void close_application();
  Value apply_function(const Frame& frame, size_t num_args);
  Value apply_macro(const Frame& frame, size_t num_args);

  Value read_atom();
  Meaning read_identifier();
  Meaning read_bit_vector_number();
  bool is_bit_vector_number(const Token& token) const;
  Value as_constant(const Meaning& meaning, std::string_view name, Position position,
                    size_t first_index);
  const DataType* read_ascribed_sort();
  void name_term(const Value& value);
  void note_spelling();
  void skip_attribute_value();

  Meaning meaning_of(const Token& token, const Name& name, bool indexed);
  void open_constant(Position position, bool ascribed);
  void check_ascribed_sort(const Value& value, const DataType* sort, Position position) const;
  void expect_close(const char* construct);
  [[noreturn]] void reject_unknown(const Token& token) const;
  std::string lost_meaning(std::string_view name) const;
  void expect_no_command(const Token& token, const Name& name) const;
  void expect_indices(const Token& token, const Meaning& head);
  [[noreturn]] void reject_arguments_inside(const Operator& op, Position position, size_t first);

  Lexer& lexer;
  Scopes& scopes;
  SortReader& sort_reader;
  TermBuilder& builder;
  TermManager& manager;

  std::vector<Frame> frames;
  size_t outer_annotations = 0;  // how many annotations there are around the whole term
  std::vector<Value> values;
  std::vector<std::string> indices;     // of the open indexed heads
  std::vector<Name*> variables;         // of the lets with open bindings
  std::vector<const Term_*> arguments;  // of the application that is being closed
};

}  // namespace quill::smt2

#endif
