#include "quill/frontends/smt2/script_transformations.h"

#include <algorithm>
#include <cassert>
#include <string>
#include <utility>
#include <vector>

#include "quill/frontends/smt2/late_declarations.h"
#include "quill/utils/guarded_table.h"
#include "quill/utils/name_hash.h"

namespace quill::smt2 {

namespace {

// Calls the functions with every pointer to a term, a symbol or a type in a command. Copying relies
// on the order of the calls to read the originals and write the copies.
template <class CommandType, class OnTerm, class OnSymbol, class OnType>
void for_each_pointer(CommandType& command, const OnTerm& on_term, const OnSymbol& on_symbol,
                      const OnType& on_type) {
  if (command.symbol != nullptr) on_symbol(command.symbol);
  if (command.sort != nullptr) on_type(command.sort);
  for (auto& term : command.terms) {
    on_term(term.value.term);
    on_type(term.value.sort);
  }
  for (auto& named : command.named_terms) {
    on_term(named.term);
    if (named.sort != nullptr) on_type(named.sort);
  }
}

// The terms, symbols and types that some commands mention, each as often as it is mentioned.
struct Mentioned {
  std::vector<const Term_*> terms;
  std::vector<const Symbol*> symbols;
  std::vector<const DataType*> types;

  void add(const Command& command) {
    for_each_pointer(
        command, [this](const Term_* t) { terms.push_back(t); },
        [this](const Symbol* s) { symbols.push_back(s); },
        [this](const DataType* t) { types.push_back(t); });
  }
};

// Copies commands in batches, between which names may change their meanings.
class ScriptCopier {
 public:
  ScriptCopier(const TermManager& from_, TermManager& to_) : from(from_), to(to_) {}

  void add(const Command& command) {
    if (command.symbol != nullptr) {
      const Symbol*& meaning = meanings[command.symbol->name];
      if (meaning != nullptr && meaning != command.symbol) {
        flush();
        const Symbol* image = to.get_signature()->get_symbol(command.symbol->name);
        if (image != nullptr) to.free_symbol(image);
      }
      meaning = command.symbol;
    }
    batch.push_back(command);
  }

  // Copies the commands that were added since the last call.
  void flush() {
    Mentioned originals;
    for (const Command& command : batch) originals.add(command);
    Mentioned copies;
    to.copy_types(from, originals.types, copies.types);
    to.copy_symbols(from, originals.symbols, copies.symbols);
    to.copy_terms(from, originals.terms, copies.terms, /*use_manager_marks=*/true);
    size_t term = 0;
    size_t symbol = 0;
    size_t type = 0;
    for (Command& command : batch) {
      for_each_pointer(
          command, [&](const Term_*& t) { t = copies.terms[term++]; },
          [&](const Symbol*& s) { s = copies.symbols[symbol++]; },
          [&](const DataType*& t) { t = copies.types[type++]; });
      done.push_back(std::move(command));
    }
    batch.clear();
  }

  std::vector<Command> done;

 private:
  const TermManager& from;
  TermManager& to;
  std::vector<Command> batch;
  hsh::GuardedMap<std::string, const Symbol*, NameHash> meanings;  // the latest one of each name
};

}  // namespace

void substitute(TermManager& manager, Script& script, TermManager::TermMap& images) {
  std::vector<const Term_*> values;
  for (const auto& [key, value] : images) values.push_back(value);
  std::vector<Command> commands = script.commands;
  std::vector<bool> marks;
  bool check = true;  // checks the pairs only once
  for (Command& command : commands) {
    for_each_pointer(
        command,
        [&](const Term_*& t) {
          t = manager.substitute(t, images, marks, check);
          check = false;
        },
        [](const Symbol*) {}, [](const DataType*) {});
  }
  script.commands = with_declarations(manager, commands, values);
}

Script copy(const TermManager& source, const Script& script, TermManager& destination) {
  ScriptCopier copier(source, destination);
  for (const Command& command : script.commands) copier.add(command);
  copier.flush();
  return {script.logic, std::move(copier.done)};
}

void collect(TermManager& manager, const Script& script) {
  Mentioned kept;
  for (const Command& command : script.commands) kept.add(command);
  manager.gc(kept.terms, kept.symbols, kept.types);
}

size_t collect_to_assertions(TermManager& manager, const Script& script) {
  std::vector<const Term_*> assertions;
  // The number of assertions when each level was opened; input can open millions of levels at once.
  struct Levels {
    size_t assertions;
    uint64_t count;
  };
  std::vector<Levels> open;
  for (const Command& command : script.commands) {
    switch (command.kind) {
      case CommandKind::Assert:
        assertions.push_back(command.terms[0].value.term);
        break;
      case CommandKind::Push:
        if (command.count != 0) open.push_back({assertions.size(), command.count});
        break;
      case CommandKind::Pop:
        for (uint64_t left = command.count; left != 0;) {
          assert(!open.empty() && "the reader lets no pop go below the first level");
          Levels& top = open.back();
          const uint64_t closed = std::min(left, top.count);
          assertions.resize(top.assertions);
          left -= closed;
          top.count -= closed;
          if (top.count == 0) open.pop_back();
        }
        break;
      case CommandKind::Reset:
      case CommandKind::ResetAssertions:
        assertions.clear();
        open.clear();
        break;
      default:
        break;
    }
  }
  manager.gc(assertions, {}, {});
  return assertions.size();
}

}  // namespace quill::smt2
