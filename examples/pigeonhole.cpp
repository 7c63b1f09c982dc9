// Builds the claim that four pigeons fit into three holes, no two of them into the same one, and
// prints it as a script that any SMT-LIB solver reads: pigeonhole | z3 -in
//
// Shows how a formula is built step by step, and that the manager shares terms that are built
// twice: there is one term for each "pigeon p sits in hole h", however often it is asked for.

#include <cstddef>
#include <iostream>
#include <string>
#include <vector>

#include "quill/quill.h"

namespace {

constexpr std::size_t pigeons = 4;
constexpr std::size_t holes = 3;

}  // namespace

int main() {
  quill::TermManager manager;
  std::cout << "(set-logic QF_UF)\n";

  // sits[p][h]: pigeon p sits in hole h.
  std::vector<std::vector<const quill::Term_*>> sits(pigeons);
  for (std::size_t p = 0; p < pigeons; ++p) {
    for (std::size_t h = 0; h < holes; ++h) {
      const std::string name = "p" + std::to_string(p) + "_in_h" + std::to_string(h);
      sits[p].push_back(manager.make_constant(manager.make_symbol(name, manager.get_bool_type())));
      std::cout << "(declare-const " << name << " Bool)\n";
    }
  }

  const auto claim = [&manager](const quill::Term_* formula) {
    std::cout << "(assert " << quill::outterm(&manager, formula) << ")\n";
  };
  for (const auto& holes_of_pigeon : sits) claim(quill::make_or(manager, holes_of_pigeon));
  for (std::size_t h = 0; h < holes; ++h) {
    for (std::size_t p = 0; p < pigeons; ++p) {
      for (std::size_t q = p + 1; q < pigeons; ++q) {
        claim(manager.make_not(manager.make_and(sits[p][h], sits[q][h])));
      }
    }
  }
  std::cout << "(check-sat)\n";
}
