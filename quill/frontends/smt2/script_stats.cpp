#include "quill/frontends/smt2/script_stats.h"

#include <algorithm>
#include <array>
#include <iomanip>
#include <vector>

#include "quill/utils/hash_set.h"
#include "quill/utils/text_stream.h"

namespace quill::smt2 {

namespace {

uint64_t saturating_sum(uint64_t a, uint64_t b) {
  return a > ScriptStats::saturated - b ? ScriptStats::saturated : a + b;
}

// Data about terms is kept in vectors by id. Ids are dense, so no term costs a look-up.
class Survey {
 public:
  explicit Survey(const TermManager& manager_)
      : manager(manager_),
        depths(manager.get_bank()->id_bound(), 0),
        tree_sizes(manager.get_bank()->id_bound()) {}

  void add_root(const Term_* root);
  ScriptStats stats;

 private:
  bool measure(const Term_* term);
  void count_symbol(const Symbol* symbol);

  const TermManager& manager;
  std::vector<uint32_t>
      depths;  // 0: not measured; at most the number of terms, which is below 2^32
  std::vector<uint64_t> tree_sizes;  // of the measured terms
  hsh::HashSet<const Symbol*> symbols;
  hsh::HashSet<const DataType*> types;
  // Of the symbols already counted, the last one in each place. Most terms have one of a few
  // symbols, which are found here. The place depends on the address; nothing but speed depends on
  // the place.
  std::array<const Symbol*, 256> recent_symbols{};
  std::vector<const Term_*> pending;
};

void Survey::add_root(const Term_* root) {
  pending.push_back(root);
  while (!pending.empty()) {
    // A term stays pending until everything below it is measured.
    if (measure(pending.back())) pending.pop_back();
  }
  stats.tree_size = saturating_sum(stats.tree_size, tree_sizes[root->id]);
  stats.depth = std::max<uint64_t>(stats.depth, depths[root->id]);
}

// Returns false, and makes the missing arguments pending, if one of them is not measured yet.
bool Survey::measure(const Term_* term) {
  if (depths[term->id] != 0) return true;
  uint32_t depth = 1;
  uint64_t tree_size = 1;
  const size_t pending_before = pending.size();
  for (const Term_* argument : term->arguments()) {
    const uint64_t below = argument->id;
    if (depths[below] == 0) {
      pending.push_back(argument);
    } else {
      depth = std::max(depth, depths[below] + 1);
      tree_size = saturating_sum(tree_size, tree_sizes[below]);
    }
  }
  if (pending.size() != pending_before) return false;
  depths[term->id] = depth;
  tree_sizes[term->id] = tree_size;
  ++stats.graph_size;
  count_symbol(term->symbol);
  return true;
}

void Survey::count_symbol(const Symbol* symbol) {
  const Symbol*& recent =
      recent_symbols[reinterpret_cast<uintptr_t>(symbol) / sizeof(Symbol) % recent_symbols.size()];
  if (recent == symbol) return;
  recent = symbol;
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
    if (command.kind == CommandKind::Assert) ++survey.stats.assertions;
    // Definitions count where they are used, whether they are kept or not.
    if (!command.stored_name.empty()) continue;
    for (const ScriptTerm& term : command.terms) survey.add_root(term.value.term);
  }
  return survey.stats;
}

// Composes the text separately, because the stream has the caller's locale and flags.
std::ostream& operator<<(std::ostream& out, const ScriptStats& stats) {
  const char* bound = stats.tree_size == ScriptStats::saturated ? ">= " : "";
  const double ratio = stats.graph_size == 0 ? 1.0
                                             : static_cast<double>(stats.tree_size) /
                                                   static_cast<double>(stats.graph_size);
  TextStream text;
  text << "commands: " << stats.commands << '\n'
       << "assertions: " << stats.assertions << '\n'
       << "terms: " << stats.graph_size << '\n'
       << "symbols: " << stats.interpreted_symbols + stats.uninterpreted_symbols << " ("
       << stats.interpreted_symbols << " interpreted, " << stats.uninterpreted_symbols
       << " uninterpreted)\n"
       << "types: " << stats.types << '\n'
       << "depth: " << stats.depth << '\n'
       << "size as a graph: " << stats.graph_size << '\n'
       << "size as a tree: " << bound << stats.tree_size << '\n'
       << "sharing: " << bound << std::fixed << std::setprecision(2) << ratio << '\n';
  return out << text.str();
}

}  // namespace quill::smt2
