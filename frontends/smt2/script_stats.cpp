#include "frontends/smt2/script_stats.h"

#include <algorithm>
#include <iomanip>
#include <sstream>
#include <vector>

#include "quill/utils/hash_map.h"
#include "quill/utils/hash_set.h"

namespace quill::smt2 {

namespace {

struct Shape {
  uint64_t depth = 0;
  uint64_t tree_size = 0;
};

uint64_t saturating_sum(uint64_t a, uint64_t b) {
  return a > ScriptStats::saturated - b ? ScriptStats::saturated : a + b;
}

class Survey {
 public:
  explicit Survey(const TermManager& term_manager) : manager(term_manager) {}

  void add_root(const Term_* root);
  ScriptStats stats;

 private:
  bool measure(const Term_* term);
  void count_symbol(const Symbol* symbol);

  const TermManager& manager;
  hsh::HashMap<const Term_*, Shape> shapes;
  hsh::HashSet<const Symbol*> symbols;
  hsh::HashSet<const DataType*> types;
  std::vector<const Term_*> pending;
};

void Survey::add_root(const Term_* root) {
  pending.push_back(root);
  while (!pending.empty()) {
    // A term stays pending until everything below it is measured.
    if (measure(pending.back())) pending.pop_back();
  }
  const Shape& shape = shapes[root];
  stats.tree_size = saturating_sum(stats.tree_size, shape.tree_size);
  stats.depth = std::max(stats.depth, shape.depth);
}

// False, with the missing arguments made pending, when one of them is not measured yet.
bool Survey::measure(const Term_* term) {
  if (shapes.find(term) != shapes.end()) return true;
  Shape shape{1, 1};
  const size_t pending_before = pending.size();
  for (uint64_t i = 0; i < term->symbol->arity; ++i) {
    const auto below = shapes.find(term->args[i]);
    if (below == shapes.end()) {
      pending.push_back(term->args[i]);
    } else {
      shape.depth = std::max(shape.depth, below->second.depth + 1);
      shape.tree_size = saturating_sum(shape.tree_size, below->second.tree_size);
    }
  }
  if (pending.size() != pending_before) return false;
  shapes.insert({term, shape});
  ++stats.graph_size;
  count_symbol(term->symbol);
  return true;
}

void Survey::count_symbol(const Symbol* symbol) {
  if (!symbols.insert(symbol)) return;
  ++(manager.is_interpreted(symbol) ? stats.interpreted_symbols : stats.uninterpreted_symbols);
  if (types.insert(symbol->get_output_type())) ++stats.types;
  for (uint64_t i = 1; i <= symbol->arity; ++i) {
    if (types.insert(symbol->type->get_component(i))) ++stats.types;
  }
}

}  // namespace

ScriptStats compute_stats(const TermManager& manager, const Script& script) {
  Survey survey(manager);
  survey.stats.commands = script.commands.size();
  for (const Command& command : script.commands) {
    if (command.kind == CommandKind::ASSERT) ++survey.stats.assertions;
    for (const ScriptTerm& term : command.terms) survey.add_root(term.value.term);
  }
  return survey.stats;
}

std::ostream& operator<<(std::ostream& out, const ScriptStats& stats) {
  const char* bound = stats.tree_size == ScriptStats::saturated ? ">= " : "";
  const double ratio = stats.graph_size == 0 ? 1.0
                                             : static_cast<double>(stats.tree_size) /
                                                   static_cast<double>(stats.graph_size);
  std::ostringstream sharing;  // so that the format flags of the stream stay as they are
  sharing << std::fixed << std::setprecision(2) << ratio;
  return out << "commands: " << stats.commands << '\n'
             << "assertions: " << stats.assertions << '\n'
             << "terms: " << stats.graph_size << '\n'
             << "symbols: " << stats.interpreted_symbols + stats.uninterpreted_symbols << " ("
             << stats.interpreted_symbols << " interpreted, " << stats.uninterpreted_symbols
             << " uninterpreted)\n"
             << "types: " << stats.types << '\n'
             << "depth: " << stats.depth << '\n'
             << "size as a graph: " << stats.graph_size << '\n'
             << "size as a tree: " << bound << stats.tree_size << '\n'
             << "sharing: " << bound << sharing.str() << '\n';
}

}  // namespace quill::smt2
