#include "tests/life/life.h"

#include <algorithm>
#include <cctype>
#include <exception>
#include <iterator>
#include <optional>
#include <utility>

#include "quill/terms/termmanager/term_visitor.h"
#include "quill/utils/exception.h"

namespace quill::life {

namespace {

using Pointers = std::vector<const Term_*>;

const std::set<std::string> other_operations = {"fresh", "substitute", "copy",  "walk",
                                                "again", "collect",    "within"};

// What a callback throws.
struct Thrown {};

void expect(bool condition, const std::string& complaint) {
  if (!condition) throw Disagreement(complaint);
}

// The type as the model writes it.
std::string type_text(const DataType* type, const TermManager& m) {
  if (type == m.get_universe()->get_application_type()) return "->";
  if (type->is_simple()) {
    const std::string& name = type->get_name();
    for (const char c : name) {
      if (std::isalnum(static_cast<unsigned char>(c)) == 0) return "|" + name + "|";
    }
    return name;
  }
  std::string text = "(";
  for (size_t i = 0; i < type->num_components(); ++i) {
    if (i != 0) text += ' ';
    text += type_text(type->get_component(i), m);
  }
  return text + ")";
}

}  // namespace

bool is_operation(const std::string& name) {
  return other_operations.count(name) != 0 || find_operator(name) != nullptr;
}

Texts operation_names() {
  Texts names(other_operations.begin(), other_operations.end());
  for (const Operator& op : all_operators()) names.push_back(op.name);
  return names;
}

//------------------------------------------------------------------------------------------------
// Who is called

class Life::OverridingManager : public TermManager {
 public:
  OverridingManager(Life& owner, size_t own_number) : life(owner), number(own_number) {}

  const Term_* make_term(const Symbol* s, const Pointers& args) override {
    Event event = {Event::BeforeBuilding, number, s->name, life.texts_of(number, args)};
    const Reaction& before = life.react(event);
    if (before.then == Reaction::Throw) throw Thrown();
    if (before.then == Reaction::Answer) return life.find(number, before.answer);
    if (before.then == Reaction::Plain) return do_make_term(s, args);
    const Term_* t = nullptr;
    if (before.then == Reaction::GoOnWithCopy) {
      const Pointers own_args = args;
      t = TermManager::make_term(s, own_args);
    } else {
      t = TermManager::make_term(s, args);
    }
    event.place = Event::AfterBuilding;
    const Reaction& after = life.react(event);
    if (after.then == Reaction::Throw) throw Thrown();
    return after.then == Reaction::Answer ? life.find(number, after.answer) : t;
  }

 private:
  Life& life;
  const size_t number;
};

class Life::AskedDelegate : public TermFactory {
 public:
  AskedDelegate(Life& owner, size_t number_of_manager) : life(owner), number(number_of_manager) {}

  const Term_* make_term(const Symbol* s, const Pointers& args) override {
    const Reaction& reaction =
        life.react({Event::Delegate, number, s->name, life.texts_of(number, args)});
    if (reaction.then == Reaction::Throw) throw Thrown();
    if (reaction.then == Reaction::Answer) return life.find(number, reaction.answer);
    if (reaction.then == Reaction::Plain) return life.sides[number].manager->do_make_term(s, args);
    return nullptr;
  }

 private:
  Life& life;
  const size_t number;
};

class Life::WalkCallback {
 public:
  WalkCallback(Life& owner, size_t number_of_manager) : life(owner), number(number_of_manager) {}

  int visit(const Term_* t, bool preorder) {
    const Event::Place place = preorder ? Event::PreVisit : Event::PostVisit;
    const Reaction& reaction = life.react({place, number, life.text_of(number, t), {}});
    if (reaction.then == Reaction::Throw) throw Thrown();
    if (reaction.then == Reaction::Stop) return 0;
    return reaction.then == Reaction::LeaveOut ? 1 : 2;
  }

 private:
  Life& life;
  const size_t number;
};

// What was foreseen for the current call.
const Reaction& Life::react(const Event& event) {
  ++calls;
  expect(next_step < steps.size(), "called when nobody should be: " + event.symbol);
  const Step& step = steps[next_step++];
  expect(step.event == event, "called for " + event.symbol + " instead of " + step.event.symbol +
                                  ", or from elsewhere, or with other arguments");
  for (const std::string& kind : kinds_of(step)) counts[kind]++;
  if (step.reaction.task) {
    const Outcome outcome = carry_out(*step.reaction.task);
    expect(outcome == step.reaction.foreseen, "another outcome of what a callback asked for");
    const std::string complaint = sides[event.manager].manager->check_consistency();
    expect(complaint.empty(), "inconsistent within a request: " + complaint);
  }
  return step.reaction;
}

//------------------------------------------------------------------------------------------------
// Operations

Life::Life() {
  for (size_t number = 0; number < sides.size(); ++number) {
    Side& side = sides[number];
    side.delegate = std::make_unique<AskedDelegate>(*this, number);
    if (number == 0) {
      side.manager = std::make_unique<TermManager>();
    } else {
      side.manager = std::make_unique<OverridingManager>(*this, number);
    }
    side.manager->set_delegate(side.delegate.get());
    bind(number, "`true`", side.manager->make_true());
    bind(number, "`false`", side.manager->make_false());
    check_all(number);
  }
}

Life::~Life() = default;

void Life::perform(const Operation& operation) {
  const size_t number = operation.manager;
  const Operands operand = [&](size_t i) { return operation.operand(i); };
  bool done = true;
  if (operation.name == "within") {
    within = operation.operands;
    ++counts[operation.name];
    return;
  }
  if (operation.name == "fresh") {
    done = do_task(choose_fresh(number, operand));
  } else if (operation.name == "substitute") {
    done = do_task(choose_substitution(models, number, operand));
  } else if (operation.name == "copy") {
    done = do_task(choose_copy(models, number, operand));
  } else if (operation.name == "walk") {
    done = do_task(choose_walk(models, number, operand));
  } else if (operation.name == "again") {
    done = make_again(number, operation);
  } else if (operation.name == "collect") {
    collect(number, operation);
  } else {
    done = do_task(choose_build(models, number, *find_operator(operation.name), operand));
  }
  if (done) counts[operation.name]++;
  within.clear();
  check_sizes(0);
  check_sizes(1);
}

bool Life::do_task(const std::optional<Task>& task) {
  if (!task) return false;
  do_task(*task);
  return true;
}

// Runs a task on the models and then with the managers, as `within` says.
void Life::do_task(const Task& task) {
  const size_t bits = within.empty() ? 0 : within[0];
  std::array<Called, 2> called;
  for (size_t number = 0; number < sides.size(); ++number) {
    called[number] = {number == 1, (bits >> number & 1) != 0};
    sides[number].manager->set_delegate_enabled(called[number].delegate);
  }
  const Plan plan(within.begin() + (within.empty() ? 0 : 1), within.end());
  Foresight foresight(models, called, plan);
  const Outcome foreseen = foresight.run(task);
  steps = foresight.get_steps();
  next_step = 0;
  const Outcome outcome = carry_out(task);
  expect(outcome == foreseen, "another outcome");
  expect(next_step == steps.size(), "somebody was not called");
  for (size_t number = 0; number < sides.size(); ++number) {
    sides[number].manager->set_delegate_enabled(false);
    bind_made_terms(number);
  }
}

// Every term that the model has made since the last call must be in the bank, with the same id.
void Life::bind_made_terms(size_t number) {
  Model& model = models[number];
  if (model.made.empty()) return;
  const TermManager& m = *sides[number].manager;
  std::map<uint64_t, const Term_*> by_id;
  for (const Term_* t : *m.get_bank()) by_id[t->id] = t;
  for (const std::string& text : model.made) {
    const ModelTerm& expected = model.terms.at(text);
    const auto found = by_id.find(expected.id);
    expect(found != by_id.end(), "no term has the id of " + text);
    const Term_* t = found->second;
    expect(t->symbol->name == expected.head.symbol,
           std::string("the id of ") + text + " belongs to a term of symbol " + t->symbol->name);
    expect(type_text(t->symbol->type, m) == expected.head.type,
           "the symbol has another type: " + text);
    expect(Pointers(t->args, t->args + t->symbol->arity) == find(number, expected.arguments),
           "other arguments: " + text);
    bind(number, text, t);
  }
  model.made.clear();
}

void Life::bind(size_t number, const std::string& text, const Term_* t) {
  Side& side = sides[number];
  expect(side.held.insert({text, t}).first->second == t, "made twice: " + text);
  side.texts[t] = text;
}

// A term that the model has, also one that was made a moment ago.
const Term_* Life::find(size_t number, const std::string& text) {
  Side& side = sides[number];
  const auto held = side.held.find(text);
  if (held != side.held.end()) return held->second;
  const uint64_t id = models[number].terms.at(text).id;
  for (const Term_* t : *side.manager->get_bank()) {
    if (t->id != id) continue;
    expect(text_of(number, t) == text, "the id of " + text + " belongs to another term");
    bind(number, text, t);
    return t;
  }
  throw Disagreement("no term has the id of " + text);
}

Pointers Life::find(size_t number, const Texts& texts) {
  Pointers terms;
  for (const std::string& text : texts) terms.push_back(find(number, text));
  return terms;
}

std::string Life::text_of(size_t number, const Term_* t) const {
  expect(t != nullptr, "a null term");
  const auto known = sides[number].texts.find(t);
  if (known != sides[number].texts.end()) return known->second;
  return compose(t->symbol->name, texts_of(number, Pointers(t->args, t->args + t->symbol->arity)));
}

Texts Life::texts_of(size_t number, const Pointers& terms) const {
  Texts texts;
  for (const Term_* t : terms) texts.push_back(text_of(number, t));
  return texts;
}

void Life::check_sizes(size_t number) const {
  const TermManager& m = *sides[number].manager;
  expect(m.get_bank()->size() == models[number].terms.size(), "another number of terms");
  expect(m.get_signature()->size() == models[number].symbols.size(), "another number of symbols");
  expect(m.get_universe()->size() == models[number].types.size(), "another number of types");
}

void Life::check_all(size_t number) const {
  check_sizes(number);
  const Side& side = sides[number];
  const TermManager& m = *side.manager;
  const std::string complaint = m.check_consistency();
  expect(complaint.empty(), "inconsistent: " + complaint);

  std::set<const Term_*> bank;
  for (const Term_* t : *m.get_bank()) bank.insert(t);
  uint64_t bound = 0;
  for (const auto& [text, term] : models[number].terms) {
    const Term_* t = side.held.at(text);
    expect(bank.count(t) != 0, "gone: " + text);
    expect(t->id == term.id, "another id: " + text);
    expect(t->symbol->name == term.head.symbol, "another symbol: " + text);
    bound = std::max(bound, term.id + 1);
  }
  expect(m.get_bank()->id_bound() == bound, "another bound of the ids");
  for (const auto& [name, type] : models[number].symbols) {
    const Symbol* symbol = m.get_signature()->get_symbol(name.c_str());
    expect(symbol != nullptr, "no symbol " + name);
    expect(type_text(symbol->type, m) == type, "another type: symbol " + name);
  }
  for (size_t i = 0; i < m.get_universe()->size(); ++i) {
    const std::string type = type_text(m.get_universe()->type(i), m);
    expect(models[number].types.count(type) != 0, "a type too many: " + type);
  }
}

//------------------------------------------------------------------------------------------------
// Tasks

Outcome Life::carry_out(const Task& task) {
  ++calls;
  Outcome outcome;
  try {
    switch (task.kind) {
      case Task::Build:
        outcome.results.push_back(text_of(task.manager, build(task)));
        break;
      case Task::Fresh: {
        TermManager& m = *sides[task.manager].manager;
        const DataType* type = make_type(m, task.type);
        outcome.results.push_back(text_of(task.manager, m.make_fresh_variable(type)));
        break;
      }
      case Task::Substitute:
        outcome.results.push_back(substitute(task, outcome.images));
        break;
      case Task::Copy:
        copy(task, outcome.results);
        break;
      case Task::Walk:
        walk(task);
        break;
    }
  } catch (const TermManager::error&) {
    outcome.end = Outcome::Refused;
  } catch (const Thrown&) {
    outcome.end = Outcome::Thrown;
  }
  return outcome;
}

const Term_* Life::build(const Task& task) {
  const Pointers terms = find(task.manager, task.arguments);
  TermManager& m = *sides[task.manager].manager;
  if (task.by_builder)
    return find_operator(task.head.operation)->build(m, Request(task.head), terms);
  const Symbol* symbol = m.get_signature()->get_symbol(task.head.symbol.c_str());
  if (symbol == nullptr) symbol = m.make_symbol(task.head.symbol, make_type(m, task.head.type));
  return m.make_term(symbol, terms);
}

std::string Life::substitute(const Task& task, Model::Images& images) {
  Side& side = sides[task.manager];
  TermManager& m = *side.manager;
  Pointers from;
  Pointers to;
  TermManager::TermMap map;
  for (const auto& [key, image] : task.pairs) {
    from.push_back(find(task.manager, key));
    to.push_back(find(task.manager, image));
    if (task.form == 0) map[from.back()] = to.back();
  }
  const Term_* t = find(task.manager, task.roots[0]);
  const auto note_images = [&] {
    for (const bool mark : side.marks) expect(!mark, "a mark is left");
    for (const auto& [key, image] : map) {
      images[text_of(task.manager, key)] = text_of(task.manager, image);
    }
  };
  const Term_* result = nullptr;
  try {
    if (task.form == 0) {
      result = m.substitute(t, map, side.marks, /*check=*/true);
    } else if (task.form == 1) {
      result = m.substitute(t, from, to, map, side.marks);
    } else {
      result = m.substitute(t, from, to);
    }
  } catch (const Disagreement&) {
    throw;
  } catch (...) {
    note_images();
    throw;
  }
  note_images();
  return text_of(task.manager, result);
}

void Life::copy(const Task& task, Texts& results) {
  const TermManager& source = *sides[1 - task.manager].manager;
  TermManager& m = *sides[task.manager].manager;
  const Pointers roots = find(1 - task.manager, task.roots);
  if (task.form == 0) {
    results = texts_of(task.manager, {m.copy_term(source, roots[0])});
  } else if (task.form == 1) {
    TermManager::TermMap replaced;
    for (const auto& [key, image] : task.pairs) {
      replaced[find(1 - task.manager, key)] = find(task.manager, image);
    }
    results = texts_of(task.manager, {m.copy_term_with_subst(source, roots[0], replaced)});
  } else {
    Pointers copies;
    try {
      m.copy_terms(source, roots, copies, /*use_manager_marks=*/task.form == 2);
    } catch (const Disagreement&) {
      throw;
    } catch (...) {
      results = texts_of(task.manager, copies);
      throw;
    }
    results = texts_of(task.manager, copies);
  }
}

void Life::walk(const Task& task) {
  WalkCallback callback(*this, task.manager);
  TermVisitor<WalkCallback> visitor(&callback, /*visit_once=*/task.form != 0);
  visitor.visit(find(task.manager, task.roots[0]), /*clear_marks=*/true);
}

//------------------------------------------------------------------------------------------------
// What was collected, made again

// Whether a collected term can be made again. It cannot if a name that it needs, that of a fresh
// variable, belongs to a symbol of another type by now.
bool Life::can_make_again(size_t number, const std::string& text, std::set<std::string>& seen) {
  if (models[number].terms.count(text) != 0 || !seen.insert(text).second) return true;
  const auto found = sides[number].buried.find(text);
  if (found == sides[number].buried.end()) return false;
  const ModelTerm& term = found->second;
  const auto symbol = models[number].symbols.find(term.head.symbol);
  if (symbol != models[number].symbols.end() && symbol->second != term.head.type) return false;
  const Texts expected = components_of(term.head.type);
  const Operator* op = find_operator(term.head.operation);
  Bindings bindings = term.head.bindings;
  bool has_builder = true;
  for (size_t i = 0; i < term.arguments.size(); ++i) {
    if (!can_make_again(number, term.arguments[i], seen)) return false;
    const auto present = models[number].terms.find(term.arguments[i]);
    const ModelTerm& argument = present != models[number].terms.end()
                                    ? present->second
                                    : sides[number].buried.at(term.arguments[i]);
    if (!is_subtype(argument.type(), expected[i + 1])) return false;
    if (op != nullptr && !match(op->operand_types()[i], argument.type(), bindings)) {
      has_builder = false;
    }
  }
  // The symbol of a family has to come from its operator, which takes no Int for a Real.
  return has_builder || symbol != models[number].symbols.end();
}

// With a plan for the term itself, and no plan for the terms below it.
void Life::make_buried(size_t number, const std::string& text, const Plan& plan_of_root) {
  if (models[number].terms.count(text) != 0) return;
  const ModelTerm term = sides[number].buried.at(text);
  for (const std::string& argument : term.arguments) make_buried(number, argument, {});
  within = plan_of_root;
  do_task(build_task(models, number, term.head, term.arguments));
}

bool Life::make_again(size_t number, const Operation& operation) {
  const Model::Terms& buried = sides[number].buried;
  if (buried.empty()) return false;
  auto chosen = buried.begin();
  std::advance(chosen, operation.operand(0) % buried.size());
  std::set<std::string> seen;
  const std::string text = chosen->first;
  if (models[number].terms.count(text) != 0 || !can_make_again(number, text, seen)) return false;
  make_buried(number, text, Plan(within));
  return true;
}

//------------------------------------------------------------------------------------------------
// Collection

// The operands: how many of a hundred terms are roots, how they are mixed, and the same numbers for
// the symbols and types of terms.
void Life::collect(size_t number, const Operation& operation) {
  Side& side = sides[number];
  TermManager& m = *side.manager;
  Texts term_roots;
  Texts symbol_roots;
  Texts type_roots;
  Pointers terms;
  std::vector<const Symbol*> symbols;
  std::vector<const DataType*> types;
  size_t position = operation.operand(1);
  for (const auto& [text, term] : models[number].terms) {
    const Term_* t = side.held.at(text);
    position += 37;
    if (position % 101 < operation.operand(0)) {
      term_roots.push_back(text);
      terms.push_back(t);
    }
    if (position * 3 % 101 < operation.operand(2)) {
      symbol_roots.push_back(term.head.symbol);
      symbols.push_back(t->symbol);
    }
    if (position * 5 % 101 < operation.operand(3)) {
      type_roots.push_back(term.type());
      types.push_back(t->type());
    }
  }

  const size_t terms_before = models[number].terms.size();
  const size_t symbols_before = models[number].symbols.size();
  const size_t types_before = models[number].types.size();
  const uint64_t generation = m.gc_generation();
  m.gc(terms, symbols, types);

  Model::Terms freed;
  models[number].collect(term_roots, symbol_roots, type_roots, freed);
  for (auto& [text, term] : freed) {
    side.texts.erase(side.held.at(text));
    side.held.erase(text);
    side.buried[text] = std::move(term);
  }
  check_all(number);
  const TermManager::CollectionStatistics& statistics = m.get_last_collection();
  expect(statistics.terms == terms_before - models[number].terms.size() &&
             statistics.symbols == symbols_before - models[number].symbols.size() &&
             statistics.types == types_before - models[number].types.size(),
         "other numbers of what was freed");
  expect(m.gc_generation() == generation + 1, "the collection was not counted");
}

std::string live(const Trace& trace, Summary* summary) {
  Life life;
  std::string complaint;
  for (size_t i = 0; i < trace.size() && complaint.empty(); ++i) {
    try {
      life.perform(trace[i]);
    } catch (const std::exception& failure) {
      complaint =
          "operation " + std::to_string(i + 1) + " (" + trace[i].to_str() + "): " + failure.what();
    }
  }
  if (summary != nullptr) *summary = {life.performed(), life.num_calls()};
  return complaint;
}

}  // namespace quill::life
