#include "tests/journal/journal.h"

#include <sstream>
#include <utility>

#include "quill/printers/outterm.h"
#include "quill/printers/smtlib2_term_printer.h"
#include "quill/terms/termmanager/term_visitor.h"
#include "quill/utils/gmp_integer.h"

namespace quill::journal {

namespace {

// Enough that operators find operands of their types, and few enough that what is printed and
// copied stays small.
constexpr size_t max_terms_held = 600;
constexpr size_t max_symbols_held = 100;

// Counts what a walk meets.
struct Counter {
  size_t visits = 0;
  int visit(const Term_*, bool) {
    ++visits;
    return 2;
  }
};

// An order-dependent hash of the terms that iteration shows.
uint64_t hash_of_walk(const TermBank& bank) {
  uint64_t h = 0;
  for (const Term_* t : bank) h = (h ^ t->id) * 0x100000001b3 + t->symbol->arity;
  return h;
}

}  // namespace

// Operands are drawn in statements of their own throughout: the order of draws must not be left to
// the compiler.

Journal::Side::Side(Journal& journal)
    : theories(
          manager, [&journal](uint32_t bound) { return journal.below(bound); },
          [&journal, this](const DataType* type) { return journal.operand(*this, type); },
          /*for_all_readers=*/false) {}

Journal::Journal(uint64_t seed, std::ostream& lines) : random(seed), out(lines) {
  for (auto& one : sides) one = std::make_unique<Side>(*this);
}

void Journal::perform(size_t calls) {
  for (size_t i = 0; i < calls; ++i) perform_one();
}

void Journal::perform_one() {
  const uint32_t turn = below(2);
  if (++calls_so_far % 50000 == 0) sides[turn] = std::make_unique<Side>(*this);
  side = sides[turn].get();
  other = sides[1 - turn].get();
  line = std::to_string(turn);
  const uint32_t kind = below(100);
  try {
    take_turn(kind);
  } catch (const Exception& refusal) {
    line += " ! ";
    line += refusal.what();
  }
  write(line);
  if (side->terms.size() > max_terms_held) {
    line = std::to_string(turn);
    collect();
    write(line);
  }
}

void Journal::take_turn(uint32_t kind) {
  if (kind < 40) {
    line += " theory";
    hold(side->theories.make());
  } else if (kind < 48) {
    make_core_term();
  } else if (kind < 54) {
    make_arithmetic_term();
  } else if (kind < 62) {
    make_numeral();
  } else if (kind < 69) {
    make_symbol();
  } else if (kind < 74) {
    apply_function();
  } else if (kind < 80) {
    make_type();
  } else if (kind < 85) {
    substitute();
  } else if (kind < 90) {
    copy();
  } else if (kind < 94) {
    print();
  } else if (kind < 99 || !one_in(4)) {
    ask();
  } else {
    collect();
  }
}

void Journal::write(const std::string& text) {
  for (const char c : text)
    lines_hash = (lines_hash ^ static_cast<unsigned char>(c)) * 0x100000001b3;
  lines_hash = (lines_hash ^ '\n') * 0x100000001b3;
  out << text << '\n';
}

//---------------------------------------------------------------------------------------------
// What is held, and what is written about it

void Journal::note(const Term_* t) {
  line += " #";
  line += std::to_string(t->id);
  line += ' ';
  line += t->to_shallow_str();
}

void Journal::note(const Symbol* s) {
  line += ' ';
  line += s->name;
  line += '/';
  line += std::to_string(s->arity);
}

void Journal::note(const DataType* type) {
  line += ' ';
  line += type->to_str();
}

void Journal::hold(const Term_* t) {
  note(t);
  side->terms.push_back(t);
  side->by_type[t->type()].push_back(t);
}

// A term to build with: nearly always of the type asked for.
const Term_* Journal::operand(Side& of, const DataType* type) {
  if (one_in(50) && !of.terms.empty()) return one_of(of.terms);
  return any_term(of, type);
}

const Term_* Journal::any_term(Side& of, const DataType* type) {
  const auto found = of.by_type.find(type);
  if (found != of.by_type.end() && one_in(2)) return one_of(found->second);
  TermManager& m = of.manager;
  if (type == m.get_bool_type() && one_in(8)) return m.make_true();
  const std::string name = "c" + std::to_string(below(3)) + "_" + type->to_str();
  return m.make_constant(m.make_symbol(name, type));
}

const DataType* Journal::any_type(Side& of) {
  TermManager& m = of.manager;
  switch (below(8)) {
    case 0:
      return m.get_bool_type();
    case 1:
      return m.get_int_type();
    case 2:
      return m.get_rat_type();
    case 3:
      return m.get_bv_type(1 + below(4));
    case 4:
      return m.get_fp_type(3, 2 + below(3));
    default:
      break;
  }
  if (of.types.empty()) return m.get_simple_type("U", /*only_existing=*/false);
  return one_of(of.types);
}

QNumber Journal::any_bits(size_t n) {
  GmpInteger value;
  for (size_t i = 0; i < n; ++i) {
    mpz_mul_ui(value, value, 2);
    mpz_add_ui(value, value, below(2));
  }
  return QNumber(static_cast<mpz_srcptr>(value));
}

// Small and large integers and fractions, some of them not normalised.
QNumber Journal::any_number() {
  if (one_in(4)) {
    const QNumber magnitude = any_bits(200);
    return one_in(2) ? magnitude : QNumber::from_string("-" + magnitude.to_str());
  }
  const int64_t numerator = static_cast<int64_t>(below(400)) - 200;
  if (one_in(2)) return QNumber(numerator);
  return QNumber(numerator, 1 + below(20));
}

// Some names that are refused, and only a few others, so that requests find names taken.
std::string Journal::any_name() {
  switch (below(40)) {
    case 0:
      return "";
    case 1:
      return "`refused`";
    case 2:
      return std::string("nul\0", 4);
    case 3:
      return "name with | and \\";
    case 4:
      return std::to_string(below(30));
    case 5:
      return std::to_string(below(30)) + "_8";
    default:
      return "x" + std::to_string(below(200));
  }
}

//---------------------------------------------------------------------------------------------
// The calls

void Journal::make_core_term() {
  TermManager& m = side->manager;
  const uint32_t kind = below(6);
  if (kind < 4) {
    const Term_* a = operand(*side, m.get_bool_type());
    const Term_* b = operand(*side, m.get_bool_type());
    line += " core";
    if (kind == 0) return hold(m.make_and(a, b));
    if (kind == 1) return hold(m.make_or(a, b));
    if (kind == 2) return hold(m.make_iff(a, b));
    return hold(m.make_not(a));
  }
  const DataType* type = any_type(*side);
  const Term_* a = operand(*side, type);
  const Term_* b = operand(*side, type);
  if (kind == 4) {
    line += " equal";
    return hold(m.make_equal(a, b));
  }
  const Term_* condition = operand(*side, m.get_bool_type());
  line += " ite";
  hold(m.make_term_ite(condition, a, b));
}

void Journal::make_arithmetic_term() {
  TermManager& m = side->manager;
  const DataType* type = one_in(2) ? m.get_int_type() : m.get_rat_type();
  const uint32_t kind = below(5);
  const Term_* a = operand(*side, type);
  const Term_* b = operand(*side, m.get_int_type());
  line += " arithmetic";
  if (kind == 0) return hold(m.make_plus(a, b));
  if (kind == 1) return hold(m.make_times(a, b));
  if (kind == 2) return hold(m.make_leq(a, b));
  if (kind == 3) return hold(m.make_floor(a));
  const QNumber modulus = any_number();
  hold(m.make_int_modular_congruence(modulus, a, b));
}

void Journal::make_numeral() {
  TermManager& m = side->manager;
  const uint32_t kind = below(5);
  const QNumber number = any_number();
  line += " numeral";
  if (kind < 2) return hold(m.make_number(number));
  if (kind == 2) {
    const QNumber bits = one_in(8) ? number : any_bits(200);
    const size_t width = 190 + below(20);
    return hold(m.make_bv_number(bits, width));
  }
  if (kind == 3) {
    const QNumber bits = any_bits(16);
    const size_t e = 1 + below(6);
    return hold(m.make_fp_bits_number(bits, e, 10));
  }
  const Term_* mode = operand(*side, m.get_fprounding_type());
  if (!one_in(4)) mode = m.make_fprounding_plus_inf();
  hold(m.make_fp_rat_number(number, 8, 23, mode));
}

void Journal::make_symbol() {
  TermManager& m = side->manager;
  const std::string name = any_name();
  const DataType* type = any_type(*side);
  const uint32_t kind = below(6);
  const Symbol* s = nullptr;
  if (kind < 3) {
    line += " symbol";
    s = m.make_symbol(name, type);
  } else if (kind == 3) {
    line += " unique symbol";
    s = m.make_unique_symbol(name, type);
  } else if (kind == 4) {
    line += " fresh variable";
    return hold(m.make_fresh_variable(type));
  } else if (!side->symbols.empty()) {
    s = one_of(side->symbols);
    line += " free symbol";
    note(s);
    const Symbol* owner = m.get_signature()->get_symbol(s->name);
    if (owner != nullptr && owner != s) return;  // it lost its name to another symbol
    return m.free_symbol(s);
  } else {
    return;
  }
  note(s);
  side->symbols.push_back(s);
  if (s->arity == 0) hold(m.make_constant(s));
}

// The symbol may have lost its name, and the arguments may not fit.
void Journal::apply_function() {
  TermManager& m = side->manager;
  line += " apply";
  if (side->symbols.empty()) return;
  const Symbol* s = one_of(side->symbols);
  std::vector<const Term_*> args;
  for (uint64_t i = 0; i < s->arity; ++i) {
    args.push_back(operand(*side, s->type->get_component(i + 1)));
  }
  if (one_in(20)) args.push_back(m.make_false());
  hold(m.make_uninterpreted_function(s, args));
}

void Journal::make_type() {
  TermManager& m = side->manager;
  const uint32_t kind = below(7);
  const DataType* a = any_type(*side);
  const DataType* b = any_type(*side);
  const DataType* type = nullptr;
  line += " type";
  if (kind == 0) {
    type = m.get_simple_type("S" + std::to_string(below(50)), /*only_existing=*/false);
  } else if (kind == 1) {
    type = m.get_array_type(a, b);
  } else if (kind == 2) {
    type = m.get_compound_type({a, b});
  } else if (kind == 3) {
    const size_t e = below(12);
    type = m.get_fp_type(e, 4);
  } else if (kind < 6) {
    m.set_reject_bool_arguments(one_in(2));
    type = m.get_function_type({a, b}, m.get_int_type());
  } else {
    type = m.get_simple_type("short-lived", /*only_existing=*/false);
    note(type);
    return m.free_type(type);
  }
  note(type);
  if (type->to_str().size() < 60) side->types.push_back(type);
}

void Journal::substitute() {
  line += " substitute";
  if (side->terms.empty()) return;
  TermManager& m = side->manager;
  const Term_* t = one_of(side->terms);
  std::vector<const Term_*> from;
  std::vector<const Term_*> to;
  const uint32_t pairs = 1 + below(4);
  for (uint32_t i = 0; i < pairs; ++i) {
    const Term_* replaced = one_of(side->terms);
    from.push_back(replaced);
    to.push_back(operand(*side, replaced->type()));
  }
  if (one_in(2)) return hold(m.substitute(t, from, to));
  TermManager::TermMap subst;
  for (size_t i = 0; i < from.size(); ++i) subst[from[i]] = to[i];
  std::vector<bool> marks;
  hold(m.substitute(t, subst, marks, /*check=*/true));
}

void Journal::copy() {
  TermManager& m = side->manager;
  const uint32_t kind = below(5);
  line += " copy";
  if (kind == 0 && !other->symbols.empty()) {
    std::vector<const Symbol*> copies;
    m.copy_symbols(other->manager, {one_of(other->symbols)}, copies);
    note(copies[0]);
    side->symbols.push_back(copies[0]);
  } else if (kind == 1 && !other->types.empty()) {
    std::vector<const DataType*> copies;
    m.copy_types(other->manager, {one_of(other->types)}, copies);
    note(copies[0]);
    side->types.push_back(copies[0]);
  } else if (kind == 2 && !other->terms.empty()) {
    TermManager::TermMap subst;
    const Term_* t = one_of(other->terms);
    if (t->symbol->arity != 0) {
      const Term_* here = m.copy_term(other->manager, t->args[0]);
      subst[t->args[0]] = any_term(*side, here->type());
    }
    hold(m.copy_term_with_subst(other->manager, t, subst));
  } else if (!other->terms.empty()) {
    std::vector<const Term_*> copies;
    const Term_* first = one_of(other->terms);
    const Term_* second = one_of(other->terms);
    const bool use_manager_marks = one_in(2);
    m.copy_terms(other->manager, {first, second}, copies, use_manager_marks);
    for (const Term_* t : copies) hold(t);
  }
}

void Journal::print() {
  line += " print ";
  if (side->terms.empty()) return;
  TermManager& m = side->manager;
  const Term_* t = one_of(side->terms);
  const Term_* u = one_of(side->terms);
  std::ostringstream text;
  switch (below(4)) {
    case 0: {
      Configuration::Printer choices;
      choices.dialect = Configuration::Dialect::Extensions;
      choices.logic = one_in(2) ? "QF_BV" : "";
      SmtLib2TermPrinter printer(&m, &choices, ".s", "", /*share_by_let=*/true, nullptr);
      printer.print_term(text, t);
      break;
    }
    case 1:
      text << outterm(&m, t);
      break;
    case 2:
      text << t->to_str() << ' ' << u->to_str();
      break;
    default:
      text << m.to_shallow_str_literal(t);
      break;
  }
  line += text.str();
}

// Calls that change nothing.
void Journal::ask() {
  TermManager& m = side->manager;
  line += " ask";
  if (side->terms.empty()) return;
  const Term_* t = one_of(side->terms);
  const Symbol* s = t->symbol;
  note(t);
  line += m.is_interpreted(s) ? " i" : " -";
  line += m.is_variable(s) ? "v" : "-";
  line += m.is_constant(s) ? "c" : "-";
  line += ' ';
  line += std::to_string(static_cast<int>(m.get_tag(s)));
  QNumber value;
  if (m.is_number(s, &value)) line += ' ' + value.to_str();
  if (m.is_finite_domain_type(s->get_output_type(), &value)) line += " of " + value.to_str();
  Counter counter;
  TermVisitor<Counter> visitor(&counter, /*dag_mode=*/true);
  visitor.visit(t, /*clear_marks=*/true);
  line += " visits ";
  line += std::to_string(counter.visits);
  if (one_in(20)) line += " consistent:" + m.check_consistency();
}

void Journal::collect() {
  TermManager& m = side->manager;
  std::vector<const Term_*> terms;
  std::vector<const Symbol*> symbols;
  std::vector<const DataType*> types;
  for (const Term_* t : side->terms) {
    if (one_in(4)) terms.push_back(t);
  }
  for (const Symbol* s : side->symbols) {
    if (symbols.size() < max_symbols_held && !one_in(3)) symbols.push_back(s);
  }
  for (const DataType* type : side->types) {
    if (types.size() < max_symbols_held && !one_in(3)) types.push_back(type);
  }
  side->terms.clear();
  side->by_type.clear();
  m.gc(terms, symbols, types);
  const TermManager::CollectionStatistics& freed = m.get_last_collection();
  line += " collect";
  for (const uint64_t number :
       {uint64_t{freed.terms}, uint64_t{freed.symbols}, uint64_t{freed.types},
        uint64_t{freed.slabs}, m.gc_generation(), uint64_t{m.get_bank()->size()},
        m.get_bank()->id_bound(), uint64_t{m.get_signature()->size()},
        uint64_t{m.get_universe()->size()}, hash_of_walk(*m.get_bank())}) {
    line += ' ';
    line += std::to_string(number);
  }
  for (const Term_* t : terms) {
    side->terms.push_back(t);
    side->by_type[t->type()].push_back(t);
  }
  side->symbols = std::move(symbols);
  side->types = std::move(types);
}

}  // namespace quill::journal
