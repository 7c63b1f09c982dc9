// Reads the commands of a script. Users include smt2.h.

#ifndef QUILL_FRONTENDS_SMT2_SCRIPT_READER_H
#define QUILL_FRONTENDS_SMT2_SCRIPT_READER_H

#include <cstdint>
#include <istream>
#include <string>
#include <string_view>
#include <vector>

#include "quill/frontends/smt2/lexer.h"
#include "quill/frontends/smt2/read_options.h"
#include "quill/frontends/smt2/scopes.h"
#include "quill/frontends/smt2/script.h"
#include "quill/frontends/smt2/sort_reader.h"
#include "quill/frontends/smt2/term_builder.h"
#include "quill/frontends/smt2/term_reader.h"
#include "quill/frontends/smt2/theory_sorts.h"
#include "quill/smtlib/logic.h"
#include "quill/terms/termmanager/term_manager.h"

namespace quill::smt2 {

class ScriptReader {
 public:
  ScriptReader(std::istream& input, TermManager& manager_, const ReadOptions& read_options);
  ScriptReader(const ScriptReader&) = delete;
  ScriptReader& operator=(const ScriptReader&) = delete;

  // Throws ParseError, and then gives back the names that the script has declared.
  Script read();

 private:
  const CommandRow& find_row() const;
  void read_commands();
  Command read_command();
  void add(Command command);
  bool moves_declarations_place(CommandKind kind) const;
  // Whether the functions for undefined values stay declared after (reset-assertions).
  bool declarations_outlive_reset() const {
    return declared_for_good || scopes.declarations_are_global();
  }
  void forget_declarations();

  // Reads what follows the name of a command, and does what the command demands of the reader. On
  // entry the current token is the one after the name, on return the closing parenthesis.
  void read_arguments(Command& command, CommandShape shape);
  void read_assert(Command& command);
  void read_check_sat_assuming(Command& command);
  void read_declare_const(Command& command);
  void read_declare_fun(Command& command);
  void read_declare_sort(Command& command);
  void read_define_const(Command& command);
  void read_define_fun(Command& command);
  void read_define_sort(Command& command);
  void read_echo(Command& command);
  void read_get_value(Command& command);
  void read_keyword(Command& command);
  void read_levels(Command& command);
  void reset();
  void reset_assertions();
  void read_keyword_and_value(Command& command);
  void read_set_logic(Command& command);

  void take_names(Command& command);
  void unmark_inner_names(const Term_* whole);
  ScriptTerm read_script_term();
  std::vector<ScriptTerm> read_script_terms(const char* what);
  Name& read_new_name(std::string& text, Position& position);
  SortName& read_new_sort_name(std::string& text);
  void require_new_symbol() const;
  void declare(Command& command, Name& name, const std::string& text, Position position,
               const std::vector<const DataType*>& argument_sorts, const DataType* result);
  Macro read_parameters();
  Value read_body(const DataType* sort);
  static void require_unbound(const Name& name, const std::string& text, Position position);
  void keep_definition(Command& command, const Value& body, Binding& binding);
  uint64_t read_count(const char* what);
  std::string read_s_expression();

  void require_more() const;
  void expect_open(const char* what);
  void expect_end_of_command();

  TermManager& manager;
  Lexer lexer;
  const Logic default_logic;
  Logic logic;  // the one in force
  Scopes scopes;
  TheorySorts sorts;
  SortReader sort_reader;
  TermBuilder builder;
  TermReader term_reader;
  Script script;
  size_t declarations_place = 0;   // command before which to declare, on level 0
  bool declared_for_good = false;  // whether declarations there outlive (reset-assertions)
  std::string command_name;        // of the command being read
  bool logic_is_set = false;
  bool content_seen = false;  // whether a declaration, definition or assertion came so far
  bool terms_seen = false;    // the same for another command with terms
};

}  // namespace quill::smt2

#endif
