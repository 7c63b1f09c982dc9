// Reads terms, without recursion: the terms that are being read are frames of an explicit stack.
//
// The values of finished subterms lie on a stack of their own; each frame knows where its values
// begin. Definitions are expanded where they are used, let and its variables disappear, and
// annotations other than :named are read over.

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
  TermReader(Lexer& token_source, Scopes& all_scopes, SortReader& sorts, TermBuilder& terms);
  TermReader(const TermReader&) = delete;
  TermReader& operator=(const TermReader&) = delete;

  // Reads one term. On entry the current token is its first one, on return the first one after it.
  Value read();

  // Of the term that was read last: whether it is annotated as a whole, and the stored name by
  // which the script gives it apart from that; empty if it gives the term in another way, or by the
  // name of a definition that is not kept.
  bool is_annotated() const { return outer_annotations != 0; }
  std::string spelled_name;

  // Of the named terms, the first that may have been named as the whole term that was read last:
  // those before it were named inside an application which that term is the result of.
  size_t first_name_of_whole = 0;

  // Whether a theory of the logic gives the name a meaning, so that it cannot be declared.
  bool is_reserved(const Name& name) const { return is_of_theory(name) && !name.theory->indexed; }

  // The manager's spelling of a name.
  std::string stored_name(std::string_view name) const;

  // The terms named by :named since the caller last emptied this.
  std::vector<NamedTerm> named_terms;

  // Terms named by :named must not mention these: the placeholders of the definition being read.
  std::vector<const Term_*> forbidden_in_named;

  // Where names that are unknown here are looked up in addition: the signature of the manager.
  bool use_signature = false;

  // The script that the term is for, of which messages about unknown names tell; null for none.
  const Script* script = nullptr;

  // The parenthesis around the term that is read, if it is in a script.
  Position opened;

 private:
  // Whether a token that is this name is a reserved word.
  static bool is_word(const Token& token, const Name& name) {
    return !token.quoted && quill::is_reserved(name.construct);
  }

  bool is_of_theory(const Name& name) const {
    return name.theory != nullptr && builder.logic.has(name.theory->theory);
  }

  // Whether the name, unless it is declared, is an operator, reserved or not.
  bool has_operator(const Name& name) const {
    if (is_of_theory(name)) return true;
    if (name.theory_operator == nullptr) return false;
    return builder.logic.has(name.theory->readers) ||
           (name.theory_operator->spells_constants && builder.logic.has(Theory::FloatingPoint));
  }

  enum class FrameKind { Operator, Function, Macro, Bindings, Body, Annotation };

  // What stands at the head of an application, or a constant: exactly one of value, operator,
  // function and macro is set.
  struct Meaning {
    Value value;
    const Operator* op = nullptr;
    const Symbol* function = nullptr;
    const DataType* signature = nullptr;  // of the function: its type, in sorts
    const Macro* macro = nullptr;
  };

  struct Frame {
    FrameKind kind;
    Position position;
    size_t first_value = 0;          // of this frame, in values
    size_t first_extra = 0;          // in indices, in variables (BINDINGS), in the locals (BODY)
    Meaning head;                    // of an application
    const DataType* sort = nullptr;  // what (as head sort) demands of an application
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
  size_t outer_annotations = 0;  // how many annotations surround the whole term
  std::vector<Value> values;
  std::vector<std::string> indices;     // of the indexed heads that are open
  std::vector<Name*> variables;         // of the lets whose bindings are open
  std::vector<const Term_*> arguments;  // of the application that is being closed
};

}  // namespace quill::smt2

#endif
