#include "frontends/smt2/script_writer.h"

#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "frontends/smt2/script_logic.h"
#include "quill/printers/name_escape.h"
#include "quill/printers/smtlib2_syntax.h"
#include "quill/printers/smtlib2_term_printer.h"
#include "quill/utils/hash_map.h"

namespace quill::smt2 {

namespace {

using Annotations = hsh::HashMap<const Term_*, std::vector<std::pair<std::string, std::string>>>;

class ScriptWriter {
 public:
  ScriptWriter(std::ostream& stream, TermManager& term_manager, const Script& script)
      : out(stream), manager(term_manager), logics(written_logics(term_manager, script)) {}

  void write(const Command& command);

 private:
  void write_declaration(const Command& command);
  void write_terms(const Command& command);
  void write_type(const DataType* type);
  std::string symbol_text(const std::string& stored_name) const;
  const Logic& logic() const { return logics[stretch]; }

  std::ostream& out;
  TermManager& manager;
  const std::vector<Logic> logics;
  size_t stretch = 0;  // the number of (reset) before here
};

void ScriptWriter::write_type(const DataType* type) {
  print_type(out, manager, type, default_escape_prefix, logic());
}

std::string ScriptWriter::symbol_text(const std::string& stored_name) const {
  std::ostringstream text;
  print_symbol(text, stored_name, default_escape_prefix, logic());
  return text.str();
}

void ScriptWriter::write(const Command& command) {
  switch (command.kind) {
    case CommandKind::ASSERT:
      out << "(assert ";
      write_terms(command);
      break;
    case CommandKind::CHECK_SAT:
      out << "(check-sat";
      break;
    case CommandKind::CHECK_SAT_ASSUMING:
      out << "(check-sat-assuming (";
      write_terms(command);
      out << ')';
      break;
    case CommandKind::DECLARE_CONST:
    case CommandKind::DECLARE_FUN:
      write_declaration(command);
      break;
    case CommandKind::DECLARE_SORT:
      out << "(declare-sort ";
      write_type(command.sort);
      out << ' ' << command.count;
      break;
    case CommandKind::DEFINE_CONST:
    case CommandKind::DEFINE_FUN:
    case CommandKind::DEFINE_SORT:
      return;
    case CommandKind::ECHO:
      out << "(echo " << command.text;
      break;
    case CommandKind::EXIT:
      out << "(exit";
      break;
    case CommandKind::GET_ASSERTIONS:
      out << "(get-assertions";
      break;
    case CommandKind::GET_ASSIGNMENT:
      out << "(get-assignment";
      break;
    case CommandKind::GET_INFO:
      out << "(get-info " << command.text;
      break;
    case CommandKind::GET_MODEL:
      out << "(get-model";
      break;
    case CommandKind::GET_OPTION:
      out << "(get-option " << command.text;
      break;
    case CommandKind::GET_PROOF:
      out << "(get-proof";
      break;
    case CommandKind::GET_UNSAT_ASSUMPTIONS:
      out << "(get-unsat-assumptions";
      break;
    case CommandKind::GET_UNSAT_CORE:
      out << "(get-unsat-core";
      break;
    case CommandKind::GET_VALUE:
      out << "(get-value (";
      write_terms(command);
      out << ')';
      break;
    case CommandKind::POP:
      out << "(pop " << command.count;
      break;
    case CommandKind::PUSH:
      out << "(push " << command.count;
      break;
    case CommandKind::RESET:
      out << "(reset";
      ++stretch;
      break;
    case CommandKind::RESET_ASSERTIONS:
      out << "(reset-assertions";
      break;
    case CommandKind::SET_INFO:
      out << "(set-info " << command.text;
      break;
    case CommandKind::SET_LOGIC:
      out << "(set-logic ";
      print_quoted(out, logic().name());
      break;
    case CommandKind::SET_OPTION:
      out << "(set-option " << command.text;
      break;
  }
  out << ")\n";
}

void ScriptWriter::write_declaration(const Command& command) {
  const Symbol& symbol = *command.symbol;
  const bool is_const = command.kind == CommandKind::DECLARE_CONST;
  out << (is_const ? "(declare-const " : "(declare-fun ");
  out << symbol_text(symbol.name);
  if (!is_const) {
    out << " (";
    for (uint64_t i = 1; i <= symbol.arity; ++i) {
      if (i != 1) out << ' ';
      write_type(symbol.type->get_component(i));
    }
    out << ')';
  }
  out << ' ';
  write_type(symbol.get_output_type());
}

void ScriptWriter::write_terms(const Command& command) {
  Annotations annotations;
  for (const NamedTerm& named : command.named_terms) {
    annotations[named.term].push_back({"named", symbol_text(named.stored_name)});
  }
  Configuration::Printer configuration;
  configuration.logic = logic().name();
  SmtLib2TermPrinter printer(&manager, &configuration, "", "", /*share_by_let=*/true, &annotations);
  bool first = true;
  for (const ScriptTerm& term : command.terms) {
    if (!first) out << ' ';
    first = false;
    if (term.spelled_name.empty()) {
      printer.print_term(out, term.value.term, term.value.sort);
    } else {
      out << symbol_text(term.spelled_name);
    }
  }
}

}  // namespace

void write(std::ostream& out, TermManager& manager, const Script& script) {
  ScriptWriter writer(out, manager, script);
  for (const Command& command : script.commands) writer.write(command);
}

}  // namespace quill::smt2
