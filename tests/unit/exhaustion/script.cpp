#include "tests/unit/exhaustion/script.h"

#include <array>
#include <span>
#include <utility>

#include "quill/derived/derived.h"
#include "quill/derived/derived_bv.h"
#include "quill/derived/derived_fp.h"
#include "quill/printers/outterm.h"
#include "quill/terms/termmanager/term_visitor.h"
#include "tests/support/operators.h"

namespace quill::testing {

State::State(size_t calls) : definitions(m), buffer(1 << 20), stream(&buffer) {
  outcomes.reserve(calls);
  terms.reserve(calls);
  more_terms.reserve(calls);
  symbols.reserve(calls);
  types.reserve(calls);
}

std::string State::take_text() {
  std::string text = buffer.text();
  buffer.rewind();
  return text;
}

std::string description(const State& s, const Outcome& outcome) {
  if (outcome.type != nullptr) return outcome.type->to_str();
  const Term_* t = outcome.term;
  const Symbol* symbol = t != nullptr ? t->symbol : outcome.symbol;
  if (symbol == nullptr) {
    std::string text = outcome.answer ? "yes" : "no";
    if (outcome.refusal != nullptr) {
      try {
        std::rethrow_exception(outcome.refusal);
      } catch (const Exception& e) {
        text = e.what();
      }
    }
    for (const size_t number : outcome.numbers) text += ' ' + std::to_string(number);
    return text + ' ' + outcome.text;
  }
  std::string text = symbol->name;
  text += " : " + symbol->type->to_str();
  const TermManager& owner = outcome.is_copy ? s.other : s.m;
  text += ", tag " + std::to_string(owner.get_tag(symbol));
  QNumber value;
  if (owner.is_number(symbol, &value)) text += ", value " + value.to_str();
  return t == nullptr ? text : text + ", id " + std::to_string(t->id) + ", " + t->to_shallow_str();
}

namespace {

using M = TermManager;
using S = State;
using Derived1 = const Term_* (*)(M&, const Term_*);
using Derived2 = const Term_* (*)(M&, const Term_*, const Term_*);
constexpr std::pair<const char*, Derived1> derived_bv_unary[] = {
    {"redor", make_bv_redor}, {"redand", make_bv_redand}, {"nego", make_bv_nego}};
constexpr std::pair<const char*, Derived2> derived_bv_binary[] = {
    {"nand", make_bv_nand},   {"nor", make_bv_nor},     {"xnor", make_bv_xnor},
    {"uge", make_bv_uge},     {"ugt", make_bv_ugt},     {"sge", make_bv_sge},
    {"sgt", make_bv_sgt},     {"smod", make_bv_smod},   {"uaddo", make_bv_uaddo},
    {"saddo", make_bv_saddo}, {"usubo", make_bv_usubo}, {"ssubo", make_bv_ssubo},
    {"umulo", make_bv_umulo}, {"smulo", make_bv_smulo}, {"sdivo", make_bv_sdivo}};
constexpr std::pair<const char*, Derived2> derived_int_binary[] = {
    {"geq", make_geq}, {"lt", make_lt}, {"gt", make_gt}, {"minus", make_minus}};

// The refusal of a request. Running out of memory is none.
template <class Action>
Outcome refusal(Action action) {
  Outcome outcome;
  try {
    action();
  } catch (const Exception&) {
    outcome.refusal = std::current_exception();
  }
  return outcome;
}

// Counts what it is shown.
struct Counter {
  size_t before = 0;
  size_t after = 0;
  int visit(const Term_*, bool preorder) {
    ++(preorder ? before : after);
    return 2;
  }
};

class Writer {
 public:
  std::vector<Call> write() {
    base_types();
    base_symbols();
    for (int round = 0; round < 2; ++round) {
      core();
      arithmetic();
      const bool first = round == 0;
      for (const size_t width : first ? std::vector<size_t>{1, 8, 200} : std::vector<size_t>{8}) {
        bit_vectors(width);
      }
      for (const size_t e : first ? std::vector<size_t>{3, 15} : std::vector<size_t>{8}) {
        floating_point(e, /*m=*/e == 3 ? 4 : e == 8 ? 23 : 112);
      }
      for (const size_t element : {integers, reals, sort, last_bv, last_fp}) arrays(element);
      types_and_names();
      refusals();
      print();
      transform();
      collect();
      core();  // with what is left
    }
    return std::move(calls);
  }

 private:
  using Run = std::function<Outcome(S&)>;

  size_t add(std::string text, Run run, Effect effect = Effect::One) {
    calls.push_back({std::move(text), std::move(run), effect});
    return calls.size() - 1;
  }
  // A term made from several.
  size_t derive(std::string text, Run run) {
    const size_t made = add(std::move(text), std::move(run), Effect::Several);
    round_terms.push_back(made);
    return made;
  }
  size_t build(std::string text, Run run) {
    const size_t made = add(std::move(text), std::move(run));
    round_terms.push_back(made);
    return made;
  }
  size_t constant(const std::string& name, size_t type) {
    const size_t s =
        add("make_symbol " + name, [=](S& x) { return x.m.make_symbol(name, x.type(type)); });
    return build("make_constant " + name, [=](S& x) { return x.m.make_constant(x.symbol(s)); });
  }

  void base_types() {
    integers = add("Int", [](S& x) { return x.m.get_int_type(); });
    reals = add("Real", [](S& x) { return x.m.get_rat_type(); });
    bools = add("Bool", [](S& x) { return x.m.get_bool_type(); });
    sort = add("get_simple_type", [](S& x) { return x.m.get_simple_type("S", false); });
    const std::string long_name = "a sort of a name that is too long to be kept in place";
    add("get_simple_type, long", [=](S& x) { return x.m.get_simple_type(long_name, false); });
    function = add("get_function_type", [=, sort = sort](S& x) {
      return x.m.get_function_type({x.type(sort), x.m.get_int_type()}, x.m.get_rat_type());
    });
    add("get_compound_type", [=, sort = sort](S& x) {
      return x.m.get_compound_type({x.type(sort), x.type(sort), x.m.get_int_type()});
    });
    for (const size_t made : {sort, function}) kept.push_back(made);
  }

  void base_symbols() {
    for (const char* name : {"i", "j", "k"}) ints.push_back(constant(name, integers));
    for (const char* name : {"r", "s"}) rats.push_back(constant(name, reals));
    for (const char* name : {"p", "q"}) {
      propositions.push_back(constant(name, bools));
    }
    users.push_back(constant("u", sort));
    users.push_back(constant("a constant of a name that is too long to be kept in place", sort));
    f = add("make_symbol f",
            [=, function = function](S& x) { return x.m.make_symbol("f", x.type(function)); });
    for (const auto* list : {&ints, &rats, &propositions, &users}) {
      kept.insert(kept.end(), list->begin(), list->end());
    }
    kept.push_back(f);
    add("add_interpreted_symbol", [=, function = function](S& x) {
      return x.m.add_interpreted_symbol("operator", x.type(function), SymbolTag::BV_COMP);
    });
  }

  void core() {
    const size_t p = propositions[0];
    const size_t q = propositions[1];
    const size_t negated = build("not", [=](S& x) { return x.m.make_not(x.term(p)); });
    const size_t both =
        build("and", [=](S& x) { return x.m.make_and(x.term(q), x.term(negated)); });
    const size_t either = build("or", [=](S& x) { return x.m.make_or(x.term(both), x.term(p)); });
    const size_t same = build("iff", [=](S& x) { return x.m.make_iff(x.term(either), x.term(q)); });
    derive("implies", [=](S& x) { return make_implies(x.m, x.term(same), x.term(both)); });
    derive("xor", [=](S& x) { return make_xor(x.m, x.term(same), x.term(p)); });
    derive("ite of Bool",
           [=](S& x) { return make_ite(x.m, x.term(p), x.term(both), x.term(same)); });
    derive("and of many", [=](S& x) {
      x.terms.assign({x.term(p), x.term(both), x.term(same), x.term(either)});
      return make_and(x.m, TermSpan(x.terms));
    });
    derive("distinct", [=, ints = ints](S& x) {
      x.terms.assign({x.term(ints[0]), x.term(ints[1]), x.term(ints[2])});
      return make_distinct(x.m, TermSpan(x.terms));
    });
    application = build("f(u, i)", [=, f = f, ints = ints, users = users](S& x) {
      return x.m.make_uninterpreted_function(x.symbol(f), {x.term(users[0]), x.term(ints[0])});
    });
    build("make_term f", [=, f = f, ints = ints, users = users](S& x) {
      return x.m.make_term(x.symbol(f), {x.term(users[1]), x.term(ints[1])});
    });
    build("make_bin", [=, f = f, ints = ints, users = users](S& x) {
      return x.m.make_bin(x.symbol(f), x.term(users[1]), x.term(ints[2]),
                          "a rather long operation");
    });
    condition = same;
    for (const auto* list : {&ints, &rats, &users}) equality((*list)[0], (*list)[1]);
    equality(ints[0], rats[0]);
  }

  void equality(size_t a, size_t b) {
    build("equal", [=](S& x) { return x.m.make_equal(x.term(a), x.term(b)); });
    const size_t chosen = build("ite", [=, condition = condition](S& x) {
      return x.m.make_term_ite(x.term(condition), x.term(a), x.term(b));
    });
    add("equality symbol", [=](S& x) { return x.m.make_equality_symbol(x.term(a)->type()); });
    add("ite symbol", [=](S& x) { return x.m.make_term_ite_symbol(x.term(a)->type()); });
    add("is ite", [=](S& x) { return x.m.is_term_ite(x.term(chosen)->symbol, nullptr); });
  }

  void arithmetic() {
    const size_t i = ints[0];
    const size_t j = ints[1];
    const size_t r = rats[0];
    std::vector<size_t> sums;
    for (const auto& operands : {std::pair{i, j}, {i, r}, {r, r}}) {
      const size_t a = operands.first;
      const size_t b = operands.second;
      sums.push_back(build("plus", [=](S& x) { return x.m.make_plus(x.term(a), x.term(b)); }));
      build("times", [=](S& x) { return x.m.make_times(x.term(a), x.term(b)); });
      build("leq", [=](S& x) { return x.m.make_leq(x.term(a), x.term(b)); });
    }
    build("floor", [=](S& x) { return x.m.make_floor(x.term(sums[1])); });
    for (const char* text :
         {"0", "7", "-3", "1/3", "-22/7", "9223372036854775807", "-9223372036854775808",
          "123456789012345678901234567890", "-1/123456789012345678901234567890",
          "123456789012345678901234567890123456789012345678901234567890/7", "2.5"}) {
      const size_t number = build(std::string("make_number ") + text, [=](S& x) {
        return x.m.make_number(QNumber::from_string(text));
      });
      add("is_number", [=](S& x) {
        QNumber value;
        x.m.is_number(x.term(number)->symbol, &value);
        return value.to_str();
      });
    }
    build("make_number to be normalised", [](S& x) { return x.m.make_number(QNumber(10, 4)); });
    for (const char* text : {"1", "7", "123456789012345678901234567890"}) {
      build(std::string("congruence ") + text, [=](S& x) {
        return x.m.make_int_modular_congruence(QNumber::from_string(text), x.term(i), x.term(j));
      });
      const size_t made = add("congruence symbol", [=](S& x) {
        return x.m.make_int_modular_congruence_symbol(QNumber::from_string(text));
      });
      add("is congruence", [=](S& x) {
        QNumber modulus;
        x.m.is_int_modular_congruence(x.symbol(made), &modulus);
        return modulus.to_str();
      });
    }
    for (const auto& [name, derived] : derived_int_binary) {
      derive(name, [=, d = derived](S& x) { return d(x.m, x.term(i), x.term(j)); });
    }
    derive("negation", [=](S& x) { return make_minus(x.m, x.term(i)); });
    derive("is_int", [=](S& x) { return make_is_int(x.m, x.term(r)); });
    derive("abs", [=](S& x) { return make_abs(x.m, x.term(i)); });
    for (const int c : {3, -3, 0}) {
      derive("divide", [=](S& x) { return make_divide(x.m, x.term(r), c); });
      derive("div", [=](S& x) { return make_div(x.m, x.term(i), c); });
      derive("mod", [=](S& x) { return make_mod(x.m, x.term(i), c); });
    }
    derive("divisible", [=](S& x) { return make_divisible(x.m, x.term(i), 5); });
  }

  void bit_vectors(size_t w) {
    const std::string width = std::to_string(w);
    const size_t type = add("get_bv_type " + width, [=](S& x) { return x.m.get_bv_type(w); });
    last_bv = type;
    add("get_type_from_width", [=](S& x) { return x.m.get_type_from_width(w); });
    add("is_bv_type", [=](S& x) {
      size_t found = 0;
      const bool is = x.m.is_bv_type(x.type(type), &found);
      return Outcome(is, found);
    });
    add("is_finite_domain_type", [=](S& x) {
      QNumber size;
      x.m.is_finite_domain_type(x.type(type), &size);
      return size.to_str();
    });
    const size_t a = constant("a" + width, type);
    const size_t b = constant("b" + width, type);
    equality(a, b);
    for (const char* value : {"0", "1"}) {
      build("make_bv_number",
            [=](S& x) { return x.m.make_bv_number(QNumber::from_string(value), w); });
    }
    if (w > 70) {
      build("make_bv_number, big", [=](S& x) {
        return x.m.make_bv_number(QNumber::from_string("123456789012345678901"), w);
      });
    }
    size_t foreign = b;
    for (const Operator& op : operator_families()) {
      if (op.indices == Indices::Width) {
        const size_t operand = op.tag == SymbolTag::INT_TO_BV ? ints[0] : a;
        foreign = apply(op, {{w}, {}, {}}, {operand, b}, foreign);
        if (op.tag == SymbolTag::INT_FROM_SBV) signed_values.push_back(foreign);
        if (op.tag == SymbolTag::INT_TO_BV && w == 8) to_print.push_back(foreign);
      } else if (op.indices == Indices::Amount) {
        for (const size_t amount : {size_t{0}, size_t{3}}) {
          apply(op, {{amount, w}, {}, {}}, {a}, foreign);
        }
      }
    }
    const size_t joined =
        build("concat", [=](S& x) { return x.m.make_bv_concat(x.term(a), x.term(b)); });
    add("concat symbol", [=](S& x) { return x.m.make_bv_concat_symbol(w, w); });
    add("is concat", [=](S& x) {
      size_t w1 = 0;
      size_t w2 = 0;
      const bool is = x.m.is_bv_concat(x.term(joined)->symbol, &w1, &w2);
      return Outcome(is, w1, w2);
    });
    const size_t part =
        build("extract", [=](S& x) { return x.m.make_bv_extract(w, w / 2, x.term(joined)); });
    add("extract symbol", [=](S& x) { return x.m.make_bv_extract_symbol(w, w / 2, 2 * w); });
    add("is extract", [=](S& x) {
      size_t msb = 0;
      size_t lsb = 0;
      size_t of = 0;
      const bool is = x.m.is_bv_extract(x.term(part)->symbol, &msb, &lsb, &of);
      return Outcome(is, msb, lsb, of);
    });
    for (const auto& [name, derived] : derived_bv_unary) {
      derive(name, [=, d = derived](S& x) { return d(x.m, x.term(a)); });
    }
    for (const auto& [name, derived] : derived_bv_binary) {
      derive(name, [=, d = derived](S& x) { return d(x.m, x.term(a), x.term(b)); });
    }
    derive("repeat", [=](S& x) { return make_bv_repeat(x.m, 5, x.term(a)); });
  }

  // Builds with as many of the operands as the operator takes, makes the symbol, and recognises it
  // and not that of the foreign term.
  size_t apply(const Operator& op, const Parameters& given, const std::array<size_t, 3>& operands,
               size_t foreign) {
    const std::string name = op.operation;
    const size_t t = build(name, [&op, given, operands](S& x) {
      const Term_* const terms[] = {x.term(operands[0]), x.term(operands[1]), x.term(operands[2])};
      return op.build(x.m, given, std::span(terms).first(op.arity));
    });
    add(name + " symbol", [&op, given](S& x) { return op.make_symbol(x.m, given); });
    add("is " + name, [&op, t, foreign](S& x) {
      std::array<size_t, 4> found{};
      const bool own = op.recognise.read(x.m, x.term(t)->symbol, &found);
      const bool other = op.recognise.read(x.m, x.term(foreign)->symbol, nullptr);
      return Outcome(own && !other, found[0], found[1], found[2], found[3]);
    });
    return t;
  }

  void floating_point(size_t e, size_t m) {
    const std::string format = std::to_string(e) + "_" + std::to_string(m);
    const size_t type = add("get_fp_type " + format, [=](S& x) { return x.m.get_fp_type(e, m); });
    last_fp = type;
    add("is_fp_type", [=](S& x) {
      size_t first = 0;
      size_t second = 0;
      const bool is = x.m.is_fp_type(x.type(type), &first, &second);
      return Outcome(is, first, second);
    });
    const size_t a = constant("x" + format, type);
    const size_t b = constant("y" + format, type);
    equality(a, b);
    const size_t modes[] = {
        build("even", [](S& x) { return x.m.make_fprounding_even(); }),
        build("zero", [](S& x) { return x.m.make_fprounding_zero(); }),
        build("plus_inf", [](S& x) { return x.m.make_fprounding_plus_inf(); }),
        build("minus_inf", [](S& x) { return x.m.make_fprounding_minus_inf(); })};
    for (const size_t mode : modes) {
      build("make_fp_rat_number",
            [=](S& x) { return x.m.make_fp_rat_number(QNumber(-22, 7), e, m, x.term(mode)); });
    }
    build("make_fp_bits_number", [=](S& x) { return x.m.make_fp_bits_number(5, e, m); });
    build("make_fp_plus_inf", [=](S& x) { return x.m.make_fp_plus_inf(e, m); });
    build("make_fp_minus_inf", [=](S& x) { return x.m.make_fp_minus_inf(e, m); });
    const size_t nan = build("make_fp_nan", [=](S& x) { return x.m.make_fp_nan(e, m); });
    build("make_fp_plus_zero", [=](S& x) { return make_fp_plus_zero(x.m, e, m); });
    build("make_fp_minus_zero", [=](S& x) { return make_fp_minus_zero(x.m, e, m); });
    add("is_number", [=](S& x) {
      QNumber value;
      x.m.is_number(x.term(nan)->symbol, &value);
      return value.to_str();
    });

    size_t foreign = b;
    for (const Operator& op : operator_families()) {
      if (op.indices != Indices::Format && op.indices != Indices::FormatAndItsBits) continue;
      const bool takes_one = op.tag == SymbolTag::FP_SQRT || op.tag == SymbolTag::FP_ROUND_TO_INT;
      foreign = takes_one       ? apply(op, {{e, m}, {}, {}}, {modes[0], a}, foreign)
                : op.arity == 3 ? apply(op, {{e, m}, {}, {}}, {modes[1], a, b}, foreign)
                                : apply(op, {{e, m}, {}, {}}, {a, b}, foreign);
      if (op.tag == SymbolTag::FP_AS_IEEEBV) bits = foreign;
    }
    conversions(e, m, a, modes[2]);
    derive("geq", [=](S& x) { return make_fp_geq(x.m, x.term(a), x.term(b)); });
    derive("gt", [=](S& x) { return make_fp_gt(x.m, x.term(a), x.term(b)); });
    derive("to_ubv",
           [=, mode = modes[3]](S& x) { return make_fp_to_ubv(x.m, 12, x.term(mode), x.term(a)); });
    // A value of no simple shape, whose bits have to be defined for printing.
    derive("bits", [=, mode = modes[0]](S& x) {
      return x.m.make_fp_as_ieeebv(x.m.make_fp_add(x.term(mode), x.term(a), x.term(nan)));
    });
    to_print.push_back(round_terms.back());
  }

  void conversions(size_t e, size_t m, size_t a, size_t mode) {
    const size_t cast = build(
        "cast", [=](S& x) { return x.m.make_fp_cast(e + 1, m + 2, x.term(mode), x.term(a)); });
    add("cast symbol", [=](S& x) { return x.m.make_fp_cast_symbol(e, m, e + 1, m + 2); });
    add("is cast", [=](S& x) {
      std::array<size_t, 4> n{};
      const bool is = x.m.is_fp_cast(x.term(cast)->symbol, &n[0], &n[1], &n[2], &n[3]);
      return Outcome(is, n[0], n[1], n[2], n[3]);
    });
    const size_t to_bv =
        build("to_bv", [=](S& x) { return x.m.make_fp_to_bv(9, x.term(mode), x.term(a)); });
    add("to_bv symbol", [=](S& x) { return x.m.make_fp_to_bv_symbol(e, m, 9); });
    add("is to_bv", [=](S& x) {
      std::array<size_t, 3> n{};
      const bool is = x.m.is_fp_to_bv(x.term(to_bv)->symbol, &n[0], &n[1], &n[2]);
      return Outcome(is, n[0], n[1], n[2]);
    });
    const size_t from_sbv = build(
        "from_sbv", [=](S& x) { return x.m.make_fp_from_sbv(e, m, x.term(mode), x.term(to_bv)); });
    const size_t from_ubv = build(
        "from_ubv", [=](S& x) { return x.m.make_fp_from_ubv(e, m, x.term(mode), x.term(to_bv)); });
    add("from_sbv symbol", [=](S& x) { return x.m.make_fp_from_sbv_symbol(9, e, m); });
    add("from_ubv symbol", [=](S& x) { return x.m.make_fp_from_ubv_symbol(9, e, m); });
    add("is from_bv", [=](S& x) {
      std::array<size_t, 3> n{};
      const bool is_signed = x.m.is_fp_from_sbv(x.term(from_sbv)->symbol, &n[0], &n[1], &n[2]);
      const bool is_unsigned =
          x.m.is_fp_from_ubv(x.term(from_ubv)->symbol, nullptr, nullptr, nullptr);
      return Outcome(is_signed && is_unsigned, n[0], n[1], n[2]);
    });
    apply(operator_of(SymbolTag::FP_FROM_IEEEBV), {{e, m}, {}, {}}, {bits}, cast);
    const size_t sign = derive("sign", [](S& x) { return x.m.make_bv_number(1, 1); });
    const size_t exponent = derive("exponent", [=](S& x) { return x.m.make_bv_number(3, e); });
    const size_t significand =
        derive("significand", [=](S& x) { return x.m.make_bv_not(x.m.make_bv_number(3, m)); });
    derive("from parts", [=](S& x) {
      return make_fp_from_parts(x.m, x.term(sign), x.term(exponent), x.term(significand));
    });
    derive("from numerals", [=](S& x) {
      return make_fp_from_parts(x.m, x.term(sign), x.term(exponent), x.m.make_bv_number(5, m));
    });
  }

  void arrays(size_t element) {
    const size_t type = add("get_array_type", [=](S& x) {
      return x.m.get_array_type(x.m.get_int_type(), x.type(element));
    });
    const size_t nested = add("get_array_type, nested",
                              [=](S& x) { return x.m.get_array_type(x.type(type), x.type(type)); });
    const std::string number = std::to_string(calls.size());
    const size_t a = constant("array" + number, type);
    const size_t v = constant("element" + number, element);
    const size_t whole = constant("nested" + number, nested);
    equality(a, a);
    equality(whole, whole);
    const size_t read = build(
        "read", [=, ints = ints](S& x) { return x.m.make_array_read(x.term(a), x.term(ints[0])); });
    const size_t written = build("write", [=, ints = ints](S& x) {
      return x.m.make_array_write(x.term(a), x.term(ints[0]), x.term(v));
    });
    const size_t filled =
        build("const", [=](S& x) { return x.m.make_array_const(x.type(type), x.term(v)); });
    build("read, nested", [=](S& x) { return x.m.make_array_read(x.term(whole), x.term(a)); });
    build("const, nested",
          [=](S& x) { return x.m.make_array_const(x.type(nested), x.term(filled)); });
    add("read symbol",
        [=](S& x) { return x.m.make_array_read_symbol(x.m.get_int_type(), x.type(element)); });
    add("write symbol",
        [=](S& x) { return x.m.make_array_write_symbol(x.m.get_int_type(), x.type(element)); });
    add("const symbol",
        [=](S& x) { return x.m.make_array_const_symbol(x.m.get_int_type(), x.type(element)); });
    add("recognisers", [=](S& x) {
      const bool all = x.m.is_array_read(x.term(read)->symbol, nullptr, nullptr) &&
                       x.m.is_array_write(x.term(written)->symbol, nullptr, nullptr) &&
                       x.m.is_array_const(x.term(filled)->symbol, nullptr, nullptr) &&
                       x.m.is_array_type(x.type(type), nullptr, nullptr);
      return Outcome(all);
    });
  }

  void types_and_names() {
    const std::string long_name = "a name that is too long to be kept in place";
    for (int i = 0; i < 3; ++i) {
      add("make_unique_symbol",
          [=, integers = integers](S& x) { return x.m.make_unique_symbol("i", x.type(integers)); });
      add("make_unique_symbol, long",
          [=, sort = sort](S& x) { return x.m.make_unique_symbol(long_name, x.type(sort)); });
      add(
          "make_fresh_variable",
          [=, sort = sort](S& x) { return x.m.make_fresh_variable(x.type(sort)); }, Effect::Fresh);
    }
    const size_t freed = calls.size() - 3;
    add("free_symbol", [=](S& x) {
      x.m.free_symbol(x.symbol(freed));
      return Outcome();
    });
    add("make_unique_symbol again",
        [=, integers = integers](S& x) { return x.m.make_unique_symbol("i", x.type(integers)); });
    add("get_simple_type and free_type", [](S& x) {
      x.m.free_type(x.m.get_simple_type("a type that nothing uses", false));
      return Outcome();
    });
    add("get_supertype", [=, integers = integers, reals = reals](S& x) {
      return x.m.get_supertype(x.type(integers), x.type(reals));
    });
    add("is_function_type", [=, function = function](S& x) {
      std::vector<const DataType*> args;
      const bool is = x.m.is_function_type(x.type(function), &args, nullptr);
      return Outcome(is, args.size());
    });
    add("classification", [=, f = f, users = users](S& x) {
      const Symbol* s = x.term(users[0])->symbol;
      return Outcome(x.m.is_constant(s) && !x.m.is_variable(s) && !x.m.is_interpreted(s) &&
                     x.m.is_uninterpreted_function(x.symbol(f)));
    });
    add("debug_get_term", [](S& x) { return x.m.debug_get_term(1); });
  }

  void refusals() {
    const size_t i = ints[0];
    const size_t p = propositions[0];
    const std::vector<std::function<void(S&)>> requests = {
        [=](S& x) { x.m.make_and(x.term(i), x.term(p)); },
        [=](S& x) { x.m.make_bv_add(x.term(i), x.term(i)); },
        [=](S& x) { x.m.make_equal(x.term(p), x.term(p)); },
        [=](S& x) { x.m.make_array_read(x.term(i), x.term(i)); },
        [=](S& x) { x.m.make_fp_neg(x.term(i)); },
        [](S& x) { x.m.make_bv_number(QNumber(1, 3), 8); },
        [](S& x) { x.m.make_bv_number(QNumber::from_string("123456789012345678901"), 8); },
        [](S& x) { x.m.make_fp_bits_number(-1, 3, 4); },
        [](S& x) { x.m.make_symbol("`", x.m.get_int_type()); },
        [](S& x) { x.m.make_symbol("i", x.m.get_bool_type()); },
        [](S& x) { x.m.get_fp_type(1, 1); },
        [](S& x) { x.m.make_int_modular_congruence_symbol(-3); },
        [=, f = f](S& x) { x.m.make_constant(x.symbol(f)); },
        [](S&) { QNumber::from_string("a text that is no number at all, and rather a long one"); },
        [=, integers = integers, sort = sort](S& x) {
          x.m.get_supertype(x.type(sort), x.type(integers));
        },
    };
    for (const auto& request : requests) {
      add("refused request", [=](S& x) { return refusal([&] { request(x); }); });
    }
  }

  void print() {
    // One term above nearly all of the round: equal to itself, pair by pair.
    size_t all = condition;
    for (const size_t t : std::exchange(round_terms, {})) {
      const size_t last = all;
      all = derive("and of equalities", [=](S& x) {
        const Term_* same = make_equals(x.m, x.term(t), x.term(t));
        return x.m.make_and(x.term(last), same);
      });
    }
    everything = all;
    round_terms.clear();
    to_print.push_back(all);
    to_print.insert(to_print.end(), signed_values.begin(), signed_values.end());
    for (const size_t t : to_print) {
      const auto printed = [&](std::string text, std::function<void(S&)> action) {
        add(std::move(text), [=](S& x) {
          action(x);
          return Outcome();
        });
      };
      printed("outterm", [=](S& x) { x.out() << outterm(&x.m, x.term(t)); });
      printed("outshallowterm", [=](S& x) { x.out() << outshallowterm(&x.m, x.term(t)); });
      printed("outtermlist", [=, ints = ints](S& x) {
        x.terms.assign({x.term(t), x.term(ints[0]), x.term(t)});
        x.out() << outtermlist(&x.m, &x.terms);
      });
      add("to_shallow_str_literal", [=](S& x) { return x.m.to_shallow_str_literal(x.term(t)); });
      add("to_str", [=](S& x) { return x.term(t)->to_str(); });
      printed("definitions", [=](S& x) {
        Configuration::Printer choices{.dialect = Configuration::Dialect::Standard, .logic = ""};
        SmtLib2TermPrinter printer(&x.m, &choices, "", "", /*share=*/true, nullptr);
        printer.set_definitions(&x.definitions);
        printer.print_definitions(x.out(), x.term(t));
      });
      printed("term with definitions", [=](S& x) {
        Configuration::Printer choices{.dialect = Configuration::Dialect::Standard, .logic = ""};
        SmtLib2TermPrinter printer(&x.m, &choices, "", "", /*share=*/true, nullptr);
        printer.set_definitions(&x.definitions);
        printer.print_term(x.out(), x.term(t));
      });
      printed("annotated", [=](S& x) {
        BitDefinitions definitions(x.m);
        Configuration::Printer choices{.dialect = Configuration::Dialect::Standard, .logic = ""};
        SmtLib2TermPrinter printer(&x.m, &choices, "", "", /*share=*/true, &x.annotations);
        printer.set_definitions(&definitions);
        printer.print_definitions(x.out(), x.term(t));
        printer.print_term(x.out(), x.term(t));
      });
      printed("extensions", [=](S& x) {
        Configuration::Printer choices;
        choices.dialect = Configuration::Dialect::Extensions;
        choices.logic = "ALL";
        SmtLib2TermPrinter printer(&x.m, &choices, "$", "renamed", /*share=*/true, nullptr);
        printer.print_term(x.out(), x.term(t));
      });
    }
    add("annotate", [=, condition = condition](S& x) {
      x.annotations[x.term(condition)].push_back(
          {":named", "a name of some length, to be written"});
      return Outcome();
    });
  }

  void transform() {
    const size_t all = everything;
    add("visit", [=](S& x) {
      Counter counter;
      TermVisitor<Counter> visitor(&counter, /*visit_once=*/true);
      visitor.visit(x.term(all), /*clear_marks=*/true);
      return Outcome(true, counter.before, counter.after);
    });
    const auto replaced = [=, ints = ints, rats = rats, propositions = propositions](S& x) {
      x.terms.assign({x.term(ints[0]), x.term(propositions[0]), x.term(rats[0])});
      x.more_terms.assign({x.term(ints[1]), x.term(propositions[1]), x.term(ints[2])});
    };
    derive("substitute", [=](S& x) {
      replaced(x);
      return x.m.substitute(x.term(all), x.terms, x.more_terms);
    });
    derive("substitute with a cache", [=](S& x) {
      replaced(x);
      M::TermMap cache;
      std::vector<bool> marks;
      return x.m.substitute(x.term(all), x.terms, x.more_terms, cache, marks);
    });
    derive("substitute by a map", [=, ints = ints](S& x) {
      M::TermMap map;
      map[x.term(ints[0])] = x.term(ints[2]);
      std::vector<bool> marks;
      return x.m.substitute(x.term(all), map, marks, /*check=*/true);
    });
    const auto copied = [&](std::string text, Run run) {
      const auto run_and_mark = [run = std::move(run)](S& x) {
        Outcome outcome = run(x);
        outcome.is_copy = true;
        return outcome;
      };
      add(std::move(text), run_and_mark, Effect::Several);
    };
    copied("copy_symbols", [=, f = f, bits = bits](S& x) {
      x.symbols.assign({x.symbol(f), x.term(all)->symbol, x.term(bits)->symbol});
      std::vector<const Symbol*> made;
      x.other.copy_symbols(x.m, x.symbols, made);
      return made.back();
    });
    copied("copy_types", [=, sort = sort, function = function, last_fp = last_fp](S& x) {
      x.types.assign({x.type(function), x.type(last_fp), x.type(sort)});
      std::vector<const DataType*> made;
      x.other.copy_types(x.m, x.types, made);
      return made.front();
    });
    copied("copy_term", [=](S& x) { return x.other.copy_term(x.m, x.term(all)); });
    copied("copy_term_with_subst", [=, propositions = propositions](S& x) {
      M::TermMap map;
      map[x.term(propositions[0])] = x.other.make_true();
      return x.other.copy_term_with_subst(x.m, x.term(all), map);
    });
    for (const bool own_marks : {false, true}) {
      copied("copy_terms", [=, condition = condition, application = application](S& x) {
        x.terms.assign({x.term(condition), x.term(all), x.term(application)});
        std::vector<const Term_*> made;
        x.other.copy_terms(x.m, x.terms, made, own_marks);
        return made.back();
      });
    }
  }

  void collect() {
    // Outlived by what the base of the script made, and by the type and the term of the latest use
    // of a family.
    std::vector<size_t> roots = kept;
    roots.insert(roots.end(), {condition, bits, last_bv});
    add("forget definitions", [](S& x) {
      x.definitions.clear();
      x.annotations.erase(x.annotations.begin());
      return Outcome();
    });
    const size_t made = add(
        "gc",
        [=](S& x) {
          x.terms.clear();
          x.symbols.clear();
          x.types.clear();
          for (const size_t root : roots) {
            const Outcome& outcome = x.outcomes[root];
            if (outcome.type != nullptr) x.types.push_back(outcome.type);
            if (outcome.symbol != nullptr) x.symbols.push_back(outcome.symbol);
            if (outcome.term != nullptr) x.terms.push_back(outcome.term);
          }
          x.m.gc(x.terms, x.symbols, x.types);
          return Outcome(true, x.m.get_last_collection().terms, x.m.get_last_collection().symbols,
                         x.m.get_last_collection().types);
        },
        Effect::Collect);
    calls[made].kept = roots;
    add("gc of the copies", [](S& x) {
      x.other.gc({}, {}, {});
      return Outcome(true, x.other.get_last_collection().terms);
    });
    to_print.clear();
    signed_values.clear();
    round_terms.clear();
  }

  std::vector<Call> calls;

  // Positions of results.
  size_t integers = 0;
  size_t reals = 0;
  size_t bools = 0;
  size_t sort = 0;
  size_t function = 0;
  size_t f = 0;
  size_t condition = 0;
  size_t application = 0;
  size_t last_bv = 0;
  size_t last_fp = 0;
  size_t bits = 0;
  size_t everything = 0;
  std::vector<size_t> ints;
  std::vector<size_t> rats;
  std::vector<size_t> propositions;
  std::vector<size_t> users;
  std::vector<size_t> kept;
  std::vector<size_t> round_terms;
  std::vector<size_t> signed_values;
  std::vector<size_t> to_print;
};

}  // namespace

std::vector<Call> make_script() { return Writer().write(); }

}  // namespace quill::testing
