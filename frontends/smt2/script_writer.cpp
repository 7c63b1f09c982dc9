#include "frontends/smt2/script_writer.h"

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "frontends/smt2/script_logic.h"
#include "quill/printers/bit_definitions.h"
#include "quill/printers/name_escape.h"
#include "quill/printers/smtlib2_syntax.h"
#include "quill/printers/smtlib2_term_printer.h"
#include "quill/printers/standard_encoding.h"
#include "quill/terms/termmanager/term_visitor.h"
#include "quill/utils/text_stream.h"

namespace quill::smt2 {

namespace {

// Whether some term of the script takes the bits of a floating-point value.
bool takes_bits(const TermManager& manager, const Script& script) {
  struct Search {
    int visit(const Term_* t, bool /*preorder*/) {
      if (StandardEncoding::takes_bits(manager, t)) found = true;
      return found ? 0 : 2;
    }
    const TermManager& manager;
    bool found = false;
  } search{manager};
  TermVisitor<Search> visitor(&search, /*visit_once=*/true);
  for (const Command& command : script.commands) {
    for (const ScriptTerm& term : command.terms) {
      visitor.visit(term.value.term, /*clear_marks=*/false);
      if (search.found) return true;
    }
  }
  return false;
}

class ScriptWriter {
 public:
  ScriptWriter(std::ostream& stream, TermManager& term_manager, const Script& script,
               Configuration::Dialect chosen_dialect)
      : out(stream),
        manager(term_manager),
        commands(script.commands),
        logics(written_logics(term_manager, script)),
        dialect(chosen_dialect),
        needs_definitions(dialect == Configuration::Dialect::Standard &&
                          takes_bits(term_manager, script)),
        definitions(term_manager) {
    if (needs_definitions) reserve_names();
  }

  void write();

 private:
  // What writes the terms of one command, with the names that it gives.
  struct CommandPrinter {
    SmtLib2TermPrinter::Annotations annotations;
    std::optional<SmtLib2TermPrinter> printer;
  };

  void reserve_names();
  void write_definitions_before(size_t position);
  void write_definitions(size_t position);
  void follow_scopes(const Command& command);
  void make_printer(const Command& command, CommandPrinter& result);
  void write(const Command& command);
  void write_declaration(const Command& command);
  void write_terms(const Command& command);
  void write_type(const DataType* type);
  std::string symbol_text(const std::string& stored_name) const;
  const Logic& logic() const { return logics[stretch]; }

  std::ostream& out;
  TermManager& manager;
  const std::vector<Command>& commands;
  const std::vector<Logic> logics;
  const Configuration::Dialect dialect;
  const bool needs_definitions;
  size_t stretch = 0;  // the number of (reset) before here
  BitDefinitions definitions;
  // Of commands for which definitions are written already, and which follow.
  std::map<const Command*, CommandPrinter> printers;
};

void ScriptWriter::write() {
  for (size_t position = 0; position < commands.size(); ++position) {
    if (needs_definitions) write_definitions_before(position);
    write(commands[position]);
    if (needs_definitions) follow_scopes(commands[position]);
    printers.erase(&commands[position]);
  }
}

// Names that the script gives at any time are not given to constants.
void ScriptWriter::reserve_names() {
  for (const Command& command : commands) {
    if (command.symbol != nullptr) definitions.reserve(command.symbol->name);
    for (const NamedTerm& named : command.named_terms) definitions.reserve(named.stored_name);
  }
}

void ScriptWriter::write_definitions_before(size_t position) {
  write_definitions(position);
  const CommandKind kind = commands[position].kind;
  if (kind != CommandKind::CHECK_SAT && kind != CommandKind::CHECK_SAT_ASSUMING) return;
  while (++position < commands.size() && asks_about_answer(commands[position].kind)) {
    write_definitions(position);
  }
}

void ScriptWriter::write_definitions(size_t position) {
  const Command& command = commands[position];
  if (command.terms.empty() || printers.contains(&command)) return;
  CommandPrinter& made = printers[&command];
  make_printer(command, made);
  for (const ScriptTerm& term : command.terms) {
    if (term.spelled_name.empty()) made.printer->print_definitions(out, term.value.term);
  }
}

void ScriptWriter::follow_scopes(const Command& command) {
  if (command.kind == CommandKind::PUSH) definitions.push(command.count);
  if (command.kind == CommandKind::POP) definitions.pop(command.count);
  if (command.kind == CommandKind::RESET || command.kind == CommandKind::RESET_ASSERTIONS) {
    definitions.clear();
  }
}

void ScriptWriter::make_printer(const Command& command, CommandPrinter& result) {
  for (const NamedTerm& named : command.named_terms) {
    result.annotations[named.term].push_back({"named", symbol_text(named.stored_name)});
  }
  Configuration::Printer configuration;
  configuration.dialect = dialect;
  configuration.logic = logic().name();
  result.printer.emplace(&manager, &configuration, "", "", /*share_by_let=*/true,
                         &result.annotations);
  result.printer->set_definitions(&definitions);
}

void ScriptWriter::write_type(const DataType* type) {
  print_type(out, manager, type, default_escape_prefix, logic());
}

std::string ScriptWriter::symbol_text(const std::string& stored_name) const {
  TextStream text;
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
      out << ' ' << std::to_string(command.count);
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
      out << "(pop " << std::to_string(command.count);
      break;
    case CommandKind::PUSH:
      out << "(push " << std::to_string(command.count);
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
  CommandPrinter made_now;
  const auto made_before = printers.find(&command);
  if (made_before == printers.end()) make_printer(command, made_now);
  SmtLib2TermPrinter& printer =
      made_before == printers.end() ? *made_now.printer : *made_before->second.printer;
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

void write(std::ostream& out, TermManager& manager, const Script& script,
           Configuration::Dialect dialect) {
  ScriptWriter writer(out, manager, script, dialect);
  writer.write();
}

}  // namespace quill::smt2
