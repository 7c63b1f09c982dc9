// Reads an SMT-LIB script, simplifies its assertions with a delegate, and writes
//
//   simplify FILE                 the simplified script; names given to terms are left out
//   simplify --difference FILE    a script that is satisfiable only if an assertion and its
//                                 simplified form differ: simplify --difference FILE | z3 -in
//
// The simplification itself is the empty substitution: it rebuilds a term bottom-up through
// make_term, and so through the delegate.

#include <cstddef>
#include <fstream>
#include <iostream>
#include <set>
#include <string>
#include <string_view>
#include <utility>

#include "quill/frontends/smt2/smt2.h"
#include "quill/quill.h"
#include "simplifying_factory.h"

namespace {

using quill::smt2::Command;
using quill::smt2::CommandKind;
using quill::smt2::Script;

// Simplifies the terms of all commands in place.
void simplify(quill::TermManager& manager, Script& script) {
  SimplifyingFactory factory(manager);
  manager.set_delegate(&factory);
  manager.set_delegate_enabled(true);
  for (Command& command : script.commands) {
    command.named_terms.clear();
    for (auto& term : command.terms) {
      term.value.term = manager.substitute(term.value.term, {}, {});
      term.spelled_name.clear();
    }
  }
  manager.set_delegate_enabled(false);
  manager.set_delegate(nullptr);
}

// The declarations of both scripts, and the assertion that some pair of their assertions differs.
Script difference(quill::TermManager& manager, const Script& plain, const Script& simplified) {
  Script script;
  std::set<std::pair<const quill::Symbol*, const quill::DataType*>> declared;
  const quill::Term_* same = manager.make_true();
  for (std::size_t i = 0; i < plain.commands.size(); ++i) {
    const Command& command = plain.commands[i];
    if (command.kind == CommandKind::Assert) {
      same = manager.make_and(same, manager.make_iff(command.terms[0].value.term,
                                                     simplified.commands[i].terms[0].value.term));
    } else if (command.kind == CommandKind::DeclareConst ||
               command.kind == CommandKind::DeclareFun ||
               command.kind == CommandKind::DeclareSort) {
      if (declared.insert({command.symbol, command.sort}).second)
        script.commands.push_back(command);
    }
  }
  Command claim;
  claim.kind = CommandKind::Assert;
  claim.terms.push_back({{manager.make_not(same), manager.get_bool_type()}, ""});
  script.commands.push_back(claim);
  Command question;
  question.kind = CommandKind::CheckSat;
  script.commands.push_back(question);
  return script;
}

}  // namespace

int main(int argc, char** argv) {
  const bool as_difference = argc == 3 && std::string_view(argv[1]) == "--difference";
  if (argc != 2 && !as_difference) {
    std::cerr << "usage: simplify [--difference] FILE\n";
    return 2;
  }
  try {
    std::ifstream input(argv[argc - 1], std::ios::binary);
    quill::TermManager manager;
    const Script plain = quill::smt2::read(input, manager);
    Script simplified = plain;
    simplify(manager, simplified);
    const Script result = as_difference ? difference(manager, plain, simplified) : simplified;
    quill::smt2::write(std::cout, manager, result);
  } catch (const std::exception& e) {
    std::cerr << argv[argc - 1] << ": error: " << e.what() << '\n';
    return 1;
  }
}
