#include "quill/frontends/smt2/script_writer.h"

#include <algorithm>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "quill/frontends/smt2/name_places.h"
#include "quill/frontends/smt2/script_logic.h"
#include "quill/printers/bit_definitions.h"
#include "quill/printers/smtlib2_term_printer.h"
#include "quill/printers/standard_encoding.h"
#include "quill/smtlib/name_escape.h"
#include "quill/smtlib/syntax.h"
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
    for (const NamedTerm& named : command.named_terms) {
      visitor.visit(named.term, /*clear_marks=*/false);
      if (search.found) return true;
    }
  }
  return false;
}

class ScriptWriter {
 public:
  ScriptWriter(std::ostream& out_, TermManager& manager_, const Script& script,
               Configuration::Dialect dialect_)
      : out(out_),
        manager(manager_),
        commands(script.commands),
        logics(written_logics(manager_, script)),
        dialect(dialect_),
        needs_definitions(dialect == Configuration::Dialect::Standard &&
                          takes_bits(manager_, script)),
        definitions(manager_) {
    if (needs_definitions) reserve_names();
  }

  void write();

 private:
  // The printer for the terms of one command, with the names that the command gives.
  struct CommandPrinter {
    SmtLib2TermPrinter::Annotations annotations;  // inside the terms
    SmtLib2TermPrinter::TermSet annotated;        // what has been annotated so far
    std::optional<SmtLib2TermPrinter> printer;
    std::optional<std::string> text;  // of the terms, if composed before the command is written

    bool is_annotated(const Term_* t) const { return annotated.find(t) != annotated.end(); }
  };

  void reserve_names();
  void prepare_before(size_t position);
  void prepare(const Command& command);
  std::string text_of_terms(const Command& command, CommandPrinter& made) const;
  static bool drop_unused_annotations(const Command& command, CommandPrinter& made);
  void write_bit_definitions(const Command& command, CommandPrinter& made);
  void write_bit_definitions(const Term_* t);
  void write_names_apart(const Command& command, const CommandPrinter& made);
  void write_name_apart(const NamedTerm& named);
  std::string new_definition_name();
  bool has_names_besides_whole(const Command& command) const;
  void note_definition(const Command& command, bool is_written);
  bool is_spelled(const ScriptTerm& term) const;
  void follow_scopes(const Command& command);
  void make_printer(const Command& command, CommandPrinter& result);
  Configuration::Printer configuration() const;
  void write(const Command& command);
  bool is_written(const Command& command) const;
  void write_declaration(const Symbol& symbol, bool with_arguments);
  void write_definition(const Command& command, const char* parameters);
  void write_terms(const Command& command);
  void print_terms(std::ostream& stream, const Command& command, SmtLib2TermPrinter& printer) const;
  void write_type(const DataType* type);
  std::string symbol_text(const std::string& stored_name) const;
  const Logic& logic() const { return logics[stretch]; }

  std::ostream& out;
  TermManager& manager;
  const std::vector<Command>& commands;
  const std::vector<Logic> logics;
  const Configuration::Dialect dialect;
  const bool needs_definitions;
  size_t stretch = 0;  // the number of (reset) commands before this position
  BitDefinitions definitions;
  // For commands still to come whose definitions have been written.
  std::map<const Command*, CommandPrinter> printers;
  // Definitions that the script keeps but that are not written, because no name is left in them. A
  // term that the script gives by the name of such a definition is written in full.
  std::set<std::string> unwritten_definitions;
  // The names that the script ever gives; definitions that the writer adds avoid them.
  std::set<std::string> names_in_use;
  uint64_t next_definition = 1;
};

void ScriptWriter::write() {
  for (size_t position = 0; position < commands.size(); ++position) {
    prepare_before(position);
    write(commands[position]);
    if (needs_definitions) follow_scopes(commands[position]);
    printers.erase(&commands[position]);
  }
}

// Constants must not get names that the script gives at any time.
void ScriptWriter::reserve_names() {
  for (const Command& command : commands) {
    if (command.symbol != nullptr) definitions.reserve(command.symbol->name);
    for (const NamedTerm& named : command.named_terms) definitions.reserve(named.stored_name);
    if (!command.stored_name.empty()) definitions.reserve(command.stored_name);
  }
}

// Names must not be given before a question about all names.
void ScriptWriter::prepare_before(size_t position) {
  prepare(commands[position]);
  const CommandKind kind = commands[position].kind;
  if (kind != CommandKind::CheckSat && kind != CommandKind::CheckSatAssuming) return;
  bool asks_for_names = false;
  while (++position < commands.size() && asks_about_answer(commands[position].kind)) {
    const Command& command = commands[position];
    if (asks_for_names && !command.named_terms.empty()) return;
    prepare(command);
    if (command.kind == CommandKind::GetAssignment) asks_for_names = true;
  }
}

// Writes the commands on which a command relies. If the command has names inside its terms, this
// composes the text of the terms, because only that shows where the names are written.
void ScriptWriter::prepare(const Command& command) {
  if (printers.contains(&command)) return;
  note_definition(command, !command.named_terms.empty());
  const bool has_names = has_names_besides_whole(command);
  if (!has_names && (!needs_definitions || command.terms.empty())) return;
  CommandPrinter& made = printers[&command];
  make_printer(command, made);
  if (needs_definitions) write_bit_definitions(command, made);
  if (!has_names) return;
  SmtLib2TermPrinter::TermSet annotated_in_definitions;
  for (const Term_* t : made.annotated) annotated_in_definitions.insert(t);
  made.text = text_of_terms(command, made);
  if (drop_unused_annotations(command, made)) {
    made.annotated.erase_if([&](const Term_* t) {
      return annotated_in_definitions.find(t) == annotated_in_definitions.end();
    });
    made.text = text_of_terms(command, made);
  }
  write_names_apart(command, made);
}

std::string ScriptWriter::text_of_terms(const Command& command, CommandPrinter& made) const {
  TextStream text;
  print_terms(text, command, *made.printer);
  return text.str();
}

// Drops annotations that were not needed, and returns whether there were any. Annotated terms are
// written with less sharing; without these annotations the text is the same as for a command that
// never had them.
bool ScriptWriter::drop_unused_annotations(const Command& command, CommandPrinter& made) {
  bool dropped = false;
  for (const NamedTerm& named : command.named_terms) {
    if (!made.is_annotated(named.term) && made.annotations.erase_key(named.term)) dropped = true;
  }
  return dropped;
}

// A definition's names stay in the definition, because readers keep it only for them.
void ScriptWriter::write_bit_definitions(const Command& command, CommandPrinter& made) {
  if (!command.stored_name.empty()) {
    for (const ScriptTerm& term : command.terms) write_bit_definitions(term.value.term);
    return;
  }
  for (const ScriptTerm& term : command.terms) {
    if (!is_spelled(term)) made.printer->print_definitions(out, term.value.term);
  }
}

void ScriptWriter::write_bit_definitions(const Term_* t) {
  Configuration::Printer choices = configuration();
  SmtLib2TermPrinter printer(&manager, &choices, "", "", /*share_by_let=*/true, nullptr);
  printer.set_definitions(&definitions);
  printer.print_definitions(out, t);
}

// Writes the names that are not given in the command itself.
void ScriptWriter::write_names_apart(const Command& command, const CommandPrinter& made) {
  bool is_named = false;
  for (const NamedTerm& named : command.named_terms) {
    const NamePlace place = place_of(manager, command, named, logic());
    const bool in_command =
        place == NamePlace::Whole || (place == NamePlace::Inside && made.is_annotated(named.term));
    if (in_command) {
      is_named = true;
    } else {
      write_name_apart(named);
    }
  }
  note_definition(command, is_named);
}

void ScriptWriter::write_name_apart(const NamedTerm& named) {
  if (needs_definitions) write_bit_definitions(named.term);
  Configuration::Printer choices = configuration();
  SmtLib2TermPrinter printer(&manager, &choices, "", "", /*share_by_let=*/true, nullptr);
  printer.set_definitions(&definitions);
  out << "(define-fun " << symbol_text(new_definition_name()) << " () ";
  write_type(sort_of(named));
  out << " (! ";
  printer.print_term(out, named.term, sort_of(named));
  out << " :named " << symbol_text(named.stored_name) << "))\n";
}

// Collects the names of the script when the first definition is added.
std::string ScriptWriter::new_definition_name() {
  if (next_definition == 1) {
    for (const Command& command : commands) {
      if (command.symbol != nullptr) names_in_use.insert(command.symbol->name);
      for (const NamedTerm& named : command.named_terms) names_in_use.insert(named.stored_name);
      names_in_use.insert(command.stored_name);
    }
  }
  for (;;) {
    std::string name = "quill!named_" + std::to_string(next_definition++);
    if (!names_in_use.contains(name)) return name;
  }
}

bool ScriptWriter::has_names_besides_whole(const Command& command) const {
  return std::any_of(command.named_terms.begin(), command.named_terms.end(),
                     [&](const NamedTerm& named) {
                       return place_of(manager, command, named, logic()) != NamePlace::Whole;
                     });
}

void ScriptWriter::note_definition(const Command& command, bool is_written) {
  if (command.stored_name.empty()) return;
  if (is_written) {
    unwritten_definitions.erase(command.stored_name);
  } else {
    unwritten_definitions.insert(command.stored_name);
  }
}

void ScriptWriter::follow_scopes(const Command& command) {
  if (command.kind == CommandKind::Push) definitions.push(command.count);
  if (command.kind == CommandKind::Pop) definitions.pop(command.count);
  if (command.kind == CommandKind::Reset || command.kind == CommandKind::ResetAssertions) {
    definitions.clear();
  }
}

void ScriptWriter::make_printer(const Command& command, CommandPrinter& result) {
  for (const NamedTerm& named : command.named_terms) {
    if (place_of(manager, command, named, logic()) != NamePlace::Inside) continue;
    result.annotations[named.term].push_back({"named", symbol_text(named.stored_name)});
  }
  Configuration::Printer choices = configuration();
  choices.abs_of_reals = command.has_abs_of_reals;
  result.printer.emplace(&manager, &choices, "", "", /*share_by_let=*/true, &result.annotations);
  result.printer->set_definitions(&definitions);
  result.printer->set_annotated(&result.annotated);
}

Configuration::Printer ScriptWriter::configuration() const {
  Configuration::Printer choices;
  choices.dialect = dialect;
  choices.logic = logic().name();
  return choices;
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
  if (!is_written(command)) return;
  const CommandRow& row = command_row(command.kind);
  out << '(' << row.name;
  switch (row.shape) {
    case CommandShape::Nothing:
      break;
    case CommandShape::Term:
      out << ' ';
      write_terms(command);
      break;
    case CommandShape::Terms:
      out << " (";
      write_terms(command);
      out << ')';
      break;
    case CommandShape::Levels:
      out << ' ' << std::to_string(command.count);
      break;
    case CommandShape::String:
    case CommandShape::Keyword:
    case CommandShape::KeywordAndValue:
      out << ' ' << command.text;
      break;
    case CommandShape::LogicName:
      out << ' ';
      print_quoted(out, logic().name());
      break;
    case CommandShape::ConstDeclaration:
      write_declaration(*command.symbol, /*with_arguments=*/false);
      break;
    case CommandShape::FunDeclaration:
      write_declaration(*command.symbol, /*with_arguments=*/true);
      break;
    case CommandShape::SortDeclaration:
      out << ' ';
      write_type(command.sort);
      out << ' ' << std::to_string(command.count);
      break;
    case CommandShape::ConstDefinition:
      write_definition(command, "");
      break;
    case CommandShape::FunDefinition:
      write_definition(command, " ()");
      break;
    case CommandShape::SortDefinition:
    case CommandShape::Unsupported:
      break;
  }
  out << ")\n";
  if (command.kind == CommandKind::Reset) ++stretch;
}

// Definitions are expanded and not written, except those that are kept for the names in them.
bool ScriptWriter::is_written(const Command& command) const {
  switch (command.kind) {
    case CommandKind::DefineConst:
    case CommandKind::DefineFun:
      return !command.stored_name.empty() && !unwritten_definitions.contains(command.stored_name);
    case CommandKind::DefineSort:
      return false;
    default:
      return true;
  }
}

void ScriptWriter::write_declaration(const Symbol& symbol, bool with_arguments) {
  out << ' ' << symbol_text(symbol.name) << ' ';
  if (with_arguments) {
    out << '(';
    for (uint64_t i = 1; i <= symbol.arity; ++i) {
      if (i != 1) out << ' ';
      write_type(symbol.type->get_component(i));
    }
    out << ") ";
  }
  write_type(symbol.get_output_type());
}

void ScriptWriter::write_definition(const Command& command, const char* parameters) {
  out << ' ' << symbol_text(command.stored_name) << parameters << ' ';
  write_type(command.terms[0].value.sort);
  out << ' ';
  write_terms(command);
}

void ScriptWriter::write_terms(const Command& command) {
  CommandPrinter made_now;
  const auto made_before = printers.find(&command);
  if (made_before == printers.end()) make_printer(command, made_now);
  CommandPrinter& made = made_before == printers.end() ? made_now : made_before->second;
  std::string names_of_whole;
  for (const NamedTerm& named : command.named_terms) {
    if (place_of(manager, command, named, logic()) != NamePlace::Whole) continue;
    names_of_whole += " :named " + symbol_text(named.stored_name);
  }
  if (!names_of_whole.empty()) out << "(! ";
  if (made.text) {
    out << *made.text;
  } else {
    print_terms(out, command, *made.printer);
  }
  if (!names_of_whole.empty()) out << names_of_whole << ')';
}

void ScriptWriter::print_terms(std::ostream& stream, const Command& command,
                               SmtLib2TermPrinter& printer) const {
  bool first = true;
  for (const ScriptTerm& term : command.terms) {
    if (!first) stream << ' ';
    first = false;
    if (is_spelled(term)) {
      stream << symbol_text(term.spelled_name);
    } else {
      printer.print_term(stream, term.value.term, term.value.sort);
    }
  }
}

bool ScriptWriter::is_spelled(const ScriptTerm& term) const {
  return !term.spelled_name.empty() && !unwritten_definitions.contains(term.spelled_name);
}

}  // namespace

void write(std::ostream& out, TermManager& manager, const Script& script,
           Configuration::Dialect dialect) {
  ScriptWriter writer(out, manager, script, dialect);
  writer.write();
}

}  // namespace quill::smt2
