// Random well-typed scripts over all theories and free sorts and functions, made through the
// interface of the library, with any names that a term manager can hold. They use only operators
// that all readers know.
//
// A script depends on its seed alone, on every machine: of <random> only the generator is used.
// Logics are drawn independently of the terms, so that most of them do not cover what the script
// uses.

#ifndef TESTS_RANDOM_RANDOM_SCRIPT_H
#define TESTS_RANDOM_RANDOM_SCRIPT_H

#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include "quill/derived/derived.h"
#include "quill/frontends/smt2/script.h"
#include "quill/smtlib/name_escape.h"
#include "quill/smtlib/theory_names.h"
#include "quill/terms/termmanager/term_manager.h"
#include "tests/random/random_theory_terms.h"

namespace quill::smt2 {

class RandomScript {
 public:
  RandomScript(TermManager& term_manager, uint32_t seed)
      : manager(term_manager),
        random(seed),
        theories(
            term_manager, [this](uint32_t n) { return below(n); },
            [this](const DataType* type) { return make_of(type, 0); }, /*for_all_readers=*/true) {
    manager.set_reject_bool_arguments(false);
    make();
  }

  Script script;
  std::vector<std::string> names;  // of symbols, sorts and terms, as the manager spells them

 private:
  uint32_t below(uint32_t n) { return static_cast<uint32_t>(random()) % n; }
  bool one_in(uint32_t n) { return below(n) == 0; }
  template <class T>
  const T& pick(const std::vector<T>& from) {
    return from[below(static_cast<uint32_t>(from.size()))];
  }

  void make() {
    static const std::vector<std::string> logics = {
        "",         "ALL",       "QF_UF",    "QF_IDL",   "QF_RDL",    "QF_LIA",   "QF_LRA",
        "QF_LIRA",  "QF_NIA",    "QF_NRA",   "QF_NIRA",  "QF_UFIDL",  "QF_UFRDL", "QF_UFLIA",
        "QF_UFLRA", "QF_UFLIRA", "QF_UFNIA", "QF_UFNRA", "QF_UFNIRA", "QF_AX",    "QF_BV",
        "QF_ABV",   "QF_AUFBV",  "QF_FP",    "QF_BVFP",  "QF_FPLRA",  "QF_AUFLIA"};
    const std::string& name = pick(logics);
    if (!name.empty()) {
      logic = Logic(name);
      script.logic = name;
      add(CommandKind::SetLogic).text = name;
    }
    const uint32_t numbers = below(4);
    with_ints = (numbers & 1) != 0;
    with_reals = (numbers & 2) != 0;
    with_functions = !one_in(3);
    with_products = one_in(3);
    with_theories = one_in(2);
    declare_sorts();
    types.push_back(manager.get_bool_type());
    if (with_ints) types.push_back(manager.get_int_type());
    if (with_reals) types.push_back(manager.get_rat_type());
    if (with_theories) {
      for (const DataType* type : theories.types()) {
        if (one_in(2)) types.push_back(type);
      }
    }
    for (uint32_t i = 3 + below(5); i != 0; --i) declare();
    uint64_t depth = 0;
    for (uint32_t i = 2 + below(4); i != 0; --i) {
      if (one_in(5)) {
        ++depth;
        add(CommandKind::Push).count = 1;
        scopes.push_back({functions.size(), pool.size()});
        declare();
      }
      assert_term();
      if (depth != 0 && one_in(3)) {
        --depth;
        add(CommandKind::Pop).count = 1;
        functions.resize(scopes.back().first);
        pool.resize(scopes.back().second);
        scopes.pop_back();
      }
    }
  }

  Command& add(CommandKind kind) {
    script.commands.emplace_back();
    script.commands.back().kind = kind;
    return script.commands.back();
  }

  // ----- names
  // ------------------------------------------------------------------------------------

  std::string candidate(NameKind kind) {
    static const std::vector<std::string> words = {"!",
                                                   "BINARY",
                                                   "DECIMAL",
                                                   "HEXADECIMAL",
                                                   "NUMERAL",
                                                   "STRING",
                                                   "_",
                                                   "as",
                                                   "exists",
                                                   "forall",
                                                   "lambda",
                                                   "let",
                                                   "match",
                                                   "par",
                                                   "assert",
                                                   "check-sat",
                                                   "check-sat-assuming",
                                                   "declare-const",
                                                   "declare-datatype",
                                                   "declare-datatypes",
                                                   "declare-fun",
                                                   "declare-sort",
                                                   "define-const",
                                                   "define-fun",
                                                   "define-fun-rec",
                                                   "define-funs-rec",
                                                   "define-sort",
                                                   "echo",
                                                   "exit",
                                                   "get-assertions",
                                                   "get-assignment",
                                                   "get-info",
                                                   "get-model",
                                                   "get-option",
                                                   "get-proof",
                                                   "get-unsat-assumptions",
                                                   "get-unsat-core",
                                                   "get-value",
                                                   "pop",
                                                   "push",
                                                   "reset",
                                                   "reset-assertions",
                                                   "set-info",
                                                   "set-logic",
                                                   "set-option"};
    static const std::vector<std::string> outside = {"",
                                                     "3",
                                                     "-3",
                                                     "5_8",
                                                     "0_8_23",
                                                     "1/2",
                                                     "`x",
                                                     "'1",
                                                     "`",
                                                     "quill!7",
                                                     "quill!and",
                                                     "quill!x",
                                                     "quill!quill!217",
                                                     "32",
                                                     "8:23",
                                                     "FPRounding",
                                                     "FP",
                                                     "BitVec",
                                                     "Array",
                                                     "a b",
                                                     "@1",
                                                     ".1",
                                                     "quill!div_by_zero",
                                                     "quill!mod_by_zero_0",
                                                     "x",
                                                     "-",
                                                     "+1",
                                                     "?",
                                                     "$0",
                                                     "\xc3\xa4"};
    std::string name;
    switch (below(4)) {
      case 0:
        for (uint32_t i = below(6); i != 0; --i) name += static_cast<char>(1 + below(255));
        return name;
      case 1:
        return pick(words);
      case 2:
        if (kind == NameKind::Sort) return std::string(theory_sorts[below(num_sorts)].name);
        return std::string(theory_symbols[below(num_symbols)].name);
      default:
        return name_from_smtlib(pick(outside), kind, default_escape_prefix, logic);
    }
  }

  // A name that is new here, and that the manager takes for a user's.
  std::string new_name(NameKind kind) {
    for (;;) {
      const std::string name = candidate(kind);
      const bool refused = name.empty() || (kind == NameKind::Symbol && name[0] == '`');
      // Escaped on the way in where nothing else is reserved: a name that is the manager's own.
      const Logic core("QF_UF");
      const std::string there = name_to_smtlib(name, kind, default_escape_prefix, core);
      const bool own =
          name == "Bool" || name_from_smtlib(there, kind, default_escape_prefix, core) != name;
      bool taken = false;
      for (const std::string& other : names) taken = taken || other == name;
      if (refused || own || taken) continue;
      if (kind == NameKind::Symbol &&
          manager.get_signature()->get_symbol(name.c_str()) != nullptr) {
        continue;
      }
      names.push_back(name);
      return name;
    }
  }

  // ----- declarations
  // -----------------------------------------------------------------------------

  void declare_sorts() {
    for (uint32_t i = below(3); i != 0; --i) {
      const std::string name = new_name(NameKind::Sort);
      const DataType* head = manager.get_simple_type(name, /*only_existing=*/false);
      Command& command = add(CommandKind::DeclareSort);
      command.text = name;
      command.sort = head;
      command.count = below(3);
      if (command.count == 0) {
        types.push_back(head);
        continue;
      }
      std::vector<const DataType*> components = {head};
      for (uint64_t k = 0; k < command.count; ++k) components.push_back(component());
      types.push_back(manager.get_compound_type(components));
    }
  }

  const DataType* component() {
    if (!types.empty() && !one_in(3)) return pick(types);
    return one_in(2) ? manager.get_int_type() : manager.get_rat_type();
  }

  void declare() {
    const DataType* result = pick(types);
    std::vector<const DataType*> arguments;
    if (with_functions && one_in(2)) {
      for (uint32_t k = 1 + below(3); k != 0; --k) arguments.push_back(pick(types));
    }
    const DataType* type =
        arguments.empty() ? result : manager.get_function_type(arguments, result);
    const Symbol* symbol = manager.make_symbol(new_name(NameKind::Symbol), type);
    const bool constant = arguments.empty() && one_in(2);
    add(constant ? CommandKind::DeclareConst : CommandKind::DeclareFun).symbol = symbol;
    functions.push_back(symbol);
  }

  // ----- terms
  // ------------------------------------------------------------------------------------

  void assert_term() {
    const Term_* term = make_bool(3 + below(3));
    std::vector<NamedTerm> named;
    while (one_in(3)) {
      const Term_* inner = term;
      while (inner->symbol->arity != 0 && !one_in(3)) {
        inner = inner->args[below(static_cast<uint32_t>(inner->symbol->arity))];
      }
      // A numeral has the sort of its place, so that its name may need a definition of its own.
      if (manager.is_number(inner->symbol, nullptr)) continue;
      const std::string name = new_name(NameKind::Symbol);
      named.push_back({name, name, inner});
    }
    Command& command = add(CommandKind::Assert);
    command.terms.push_back({{term, manager.get_bool_type()}, ""});
    command.named_terms = named;
  }

  const Term_* keep(const Term_* term) {
    pool.push_back(term);
    return term;
  }

  // A term of exactly this type.
  const Term_* make_of(const DataType* type, uint32_t depth) {
    if (!pool.empty() && one_in(3)) {
      for (int tries = 0; tries < 6; ++tries) {
        const Term_* term = pick(pool);
        if (term->type() == type) return term;
      }
    }
    if (type == manager.get_bool_type()) return keep(make_bool(depth));
    if (type == manager.get_int_type()) return keep(make_int(depth));
    if (type == manager.get_rat_type()) return keep(make_real(depth));
    return keep(make_free(type, depth));
  }

  const Term_* make_applied(const DataType* type, uint32_t depth) {
    std::vector<const Symbol*> fitting;
    for (const Symbol* symbol : functions) {
      const bool deep_enough = symbol->arity == 0 || depth != 0;
      if (symbol->get_output_type() == type && deep_enough) fitting.push_back(symbol);
    }
    if (fitting.empty()) return nullptr;
    const Symbol* symbol = pick(fitting);
    std::vector<const Term_*> arguments;
    for (uint64_t i = 1; i <= symbol->arity; ++i) {
      arguments.push_back(make_argument(symbol->type->get_component(i), depth - 1));
    }
    return arguments.empty() ? manager.make_constant(symbol)
                             : manager.make_uninterpreted_function(symbol, arguments);
  }

  // A term that fits: an Int may stand for a Real.
  const Term_* make_argument(const DataType* type, uint32_t depth) {
    const bool as_int = type == manager.get_rat_type() && with_ints && one_in(3);
    return make_of(as_int ? manager.get_int_type() : type, depth);
  }

  const Term_* make_free(const DataType* type, uint32_t depth) {
    if (depth != 0 && one_in(3)) {
      const Term_* condition = make_bool(depth - 1);
      const Term_* left = make_of(type, depth - 1);
      const Term_* right = make_of(type, depth - 1);
      return make_ite(manager, condition, left, right);
    }
    if (const Term_* term = make_applied(type, depth)) return term;
    const Symbol* symbol = manager.make_symbol(new_name(NameKind::Symbol), type);
    Command& command = add(CommandKind::DeclareConst);
    command.symbol = symbol;
    functions.push_back(symbol);
    return manager.make_constant(symbol);
  }

  const Term_* make_bool(uint32_t depth) {
    if (depth == 0 || one_in(6)) {
      if (const Term_* term = make_applied(manager.get_bool_type(), depth)) return term;
      return one_in(2) ? manager.make_true() : manager.make_false();
    }
    const auto operand = [&] { return make_of(manager.get_bool_type(), depth - 1); };
    const uint32_t choice = below(13);
    if (with_theories && one_in(2)) return make_of_theories();
    if (choice < 7) {
      const Term_* a = operand();
      if (choice == 0) return manager.make_not(a);
      const Term_* b = operand();
      if (choice == 1) return manager.make_and(a, b);
      if (choice == 2) return manager.make_or(a, b);
      if (choice == 3) return manager.make_iff(a, b);
      if (choice == 4) return make_implies(manager, a, b);
      if (choice == 5) return make_xor(manager, a, b);
      const Term_* c = operand();
      return make_ite(manager, a, b, c);
    }
    const DataType* type = pick(types);
    if (choice < 10 || (!with_ints && !with_reals)) {
      if (type == manager.get_bool_type()) return operand();
      const Term_* a = make_of(type, depth - 1);
      const Term_* b = make_of(type, depth - 1);
      if (!one_in(3)) return make_equals(manager, a, b);
      const Term_* c = make_of(type, depth - 1);
      return make_distinct(manager, {a, b, c});
    }
    const DataType* number = number_type();
    const Term_* a = make_argument(number, depth - 1);
    if (choice == 12 && with_ints && with_reals) {
      const Term_* x = make_of(manager.get_rat_type(), depth - 1);
      return make_is_int(manager, x);
    }
    if (choice == 12 && with_ints) {
      const Term_* i = make_of(manager.get_int_type(), depth - 1);
      return make_divisible(manager, i, QNumber(1 + below(9)));
    }
    const Term_* b = make_argument(number, depth - 1);
    return choice == 11 ? make_lt(manager, a, b) : manager.make_leq(a, b);
  }

  // The last of some applications, or what it is equal to.
  const Term_* make_of_theories() {
    for (uint32_t i = below(6); i != 0; --i) keep(theories.make());
    const Term_* term = keep(theories.make());
    const DataType* type = term->type();
    return type == manager.get_bool_type() ? term : manager.make_equal(make_of(type, 0), term);
  }

  const DataType* number_type() {
    if (with_ints && with_reals) return one_in(2) ? manager.get_int_type() : manager.get_rat_type();
    return with_ints ? manager.get_int_type() : manager.get_rat_type();
  }

  QNumber integer() {
    if (one_in(8)) return QNumber::from_string("-123456789012345678901234567890");
    return QNumber(static_cast<int64_t>(below(21)) - 10);
  }

  QNumber fraction() {
    if (one_in(8)) return QNumber::from_string("98765432109876543210/12345678901234567891");
    QNumber value(static_cast<int64_t>(below(21)) - 10, 1 + below(7));
    value.normalize();
    return value;
  }

  const Term_* constant_or(const DataType* type, const QNumber& value, uint32_t depth) {
    if (!one_in(3)) {
      if (const Term_* term = make_applied(type, depth)) return term;
    }
    return manager.make_number(value);
  }

  const Term_* make_int(uint32_t depth) {
    const DataType* type = manager.get_int_type();
    if (depth == 0 || one_in(6)) return constant_or(type, integer(), depth);
    const uint32_t choice = below(10);
    if (choice == 9 && with_reals) {
      const Term_* x = make_of(manager.get_rat_type(), depth - 1);
      return manager.make_floor(x);
    }
    const Term_* a = make_of(type, depth - 1);
    if (choice == 0) return make_minus(manager, a);
    if (choice == 1) return make_div(manager, a, divisor());
    if (choice == 2) return make_mod(manager, a, divisor());
    if (choice == 3) return make_abs(manager, a);
    if (choice == 4) {
      const Term_* factor = manager.make_number(integer());
      return manager.make_times(factor, a);
    }
    const Term_* b = make_of(type, depth - 1);
    if (choice == 5) return make_minus(manager, a, b);
    if (choice == 6 && with_products) return manager.make_times(a, b);
    if (choice == 7) {
      const Term_* condition = make_bool(depth - 1);
      return manager.make_term_ite(condition, a, b);
    }
    return manager.make_plus(a, b);
  }

  QNumber divisor() {
    const QNumber value = integer();
    return value.is_zero() ? QNumber(3) : value;
  }

  const Term_* make_real(uint32_t depth) {
    const DataType* type = manager.get_rat_type();
    if (depth == 0 || one_in(6)) {
      // Numerals without a fraction have type Int, so they cannot stand for a Real everywhere.
      QNumber value = fraction();
      if (value.is_integer()) value = QNumber(1, 2);
      return constant_or(type, value, depth);
    }
    const Term_* a = make_of(type, depth - 1);
    const uint32_t choice = below(8);
    if (choice == 0) return make_minus(manager, a);
    if (choice == 1) return make_divide(manager, a, divisor());
    if (choice == 2) return make_abs(manager, a);
    if (choice == 3) {
      const Term_* factor = manager.make_number(fraction());
      return manager.make_times(factor, a);
    }
    const Term_* b = make_argument(type, depth - 1);
    if (choice == 4) return make_minus(manager, a, b);
    if (choice == 5 && with_products) return manager.make_times(b, a);
    if (choice == 6) {
      const Term_* condition = make_bool(depth - 1);
      return manager.make_term_ite(condition, b, a);
    }
    return manager.make_plus(b, a);
  }

  static constexpr uint32_t num_symbols = static_cast<uint32_t>(std::size(theory_symbols));
  static constexpr uint32_t num_sorts = static_cast<uint32_t>(std::size(theory_sorts));

  TermManager& manager;
  std::mt19937 random;
  RandomTheoryTerms theories;
  Logic logic;
  bool with_ints = false;
  bool with_reals = false;
  bool with_functions = false;
  bool with_products = false;
  bool with_theories = false;
  std::vector<const DataType*> types;
  std::vector<const Symbol*> functions;  // declared and in scope
  std::vector<const Term_*> pool;        // terms over them
  std::vector<std::pair<size_t, size_t>> scopes;
};

}  // namespace quill::smt2

#endif
