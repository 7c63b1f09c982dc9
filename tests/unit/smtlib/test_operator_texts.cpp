// Symbols that a user registered with a tag: any tag is possible with any type, and only a symbol
// that could be an operator of the tag is written as one.

#include <gtest/gtest.h>

#include <cstddef>
#include <set>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "quill/printers/outterm.h"
#include "quill/printers/smtlib2_term_printer.h"
#include "quill/smtlib/operator_texts.h"
#include "tests/support/manager_test.h"
#include "tests/support/operators.h"

namespace quill {
namespace {

using Types = std::vector<const DataType*>;
using Terms = std::vector<const Term_*>;

class SmtLib2Operators : public testing::ManagerTest {
 protected:
  SmtLib2Operators() { m.set_reject_bool_arguments(false); }

  std::string text(const Term_* t, Configuration::Dialect dialect, bool share = true) {
    Configuration::Printer choices;
    choices.dialect = dialect;
    choices.logic = "QF_NIA";  // with absolute values
    std::ostringstream out;
    SmtLib2TermPrinter(&m, &choices, "", "", share, nullptr).print_term(out, t);
    return out.str();
  }
  std::string text(const Term_* t) {
    std::ostringstream out;
    out << outterm(&m, t);
    return out.str();
  }
  // A symbol of one's own for each call.
  const Symbol* by_hand(SymbolTag::tag tag, const DataType* type) {
    const Symbol* s = m.add_interpreted_symbol("by hand", type, tag);
    m.free_symbol(s);
    return s;
  }
  // The application of a symbol to the first of our constants of the types that it takes.
  const Term_* apply(const Symbol* s) {
    Terms args;
    for (uint64_t i = 1; i <= s->arity; ++i) args.push_back(first_of(s->type->get_component(i)));
    return m.do_make_term(s, args);
  }
  const Term_* first_of(const DataType* type) {
    const Term_*& t = constants[type];
    if (t == nullptr) t = constant("c" + std::to_string(constants.count), type);
    return t;
  }
  // Writes the term in every way, by itself and below operators of its type that look at their
  // operands.
  void write_everywhere(const Term_* t);
  // What makers of such indices take, over the types of this test.
  std::vector<testing::Parameters> indices_for(testing::Indices indices) const;
  // The symbols of all operators, over these types.
  std::vector<const Symbol*> operators();

  const DataType* const bool_type = m.get_bool_type();
  const DataType* const int_type = m.get_int_type();
  const DataType* const real_type = m.get_rat_type();
  const DataType* const bits = m.get_bv_type(8);
  const DataType* const bit = m.get_bv_type(1);
  const DataType* const single = m.get_fp_type(8, 23);
  const DataType* const mode = m.get_fprounding_type();
  const DataType* const array = m.get_array_type(int_type, real_type);
  const DataType* const sort = m.get_simple_type("S", /*only_existing=*/false);
  const Types types = {bool_type, int_type, real_type, bits, bit, single, mode, array, sort};
  hsh::HashMap<const DataType*, const Term_*> constants;
};

void SmtLib2Operators::write_everywhere(const Term_* t) {
  Terms terms = {t};
  const DataType* type = t->type();
  if (type == bool_type) {
    terms.push_back(m.make_not(t));
    terms.push_back(m.make_term_ite(t, first_of(int_type), first_of(int_type)));
  } else {
    terms.push_back(m.make_equal(t, t));
  }
  if (type == int_type || type == real_type) {
    const Term_* minus = m.make_times(m.make_number(-1), t);
    terms.push_back(minus);
    terms.push_back(m.make_plus(first_of(type), t));
    terms.push_back(m.make_plus(first_of(type), minus));
    terms.push_back(m.make_floor(t));
    terms.push_back(m.make_floor(m.make_times(m.make_number(QNumber(1, 2)), t)));
    terms.push_back(m.make_term_ite(m.make_leq(m.make_number(0), t), t, minus));
    terms.push_back(m.make_leq(t, t));
  }
  if (type == int_type) {
    terms.push_back(m.make_int_modular_congruence(7, first_of(type), t));
    terms.push_back(m.make_int_to_bv(4, t));
  }
  if (type == bits) {
    terms.push_back(m.make_int_from_sbv(t));
    terms.push_back(m.make_int_to_bv(9, m.make_int_from_ubv(t)));
    terms.push_back(m.make_bv_concat(t, t));
  }
  if (type == single) terms.push_back(m.make_fp_as_ieeebv(t));
  for (const Term_* each : terms) {
    for (const auto dialect :
         {Configuration::Dialect::Standard, Configuration::Dialect::Extensions}) {
      EXPECT_NE(text(each, dialect), "");
      EXPECT_NE(text(each, dialect, /*share=*/false), "");
    }
  }
}

std::vector<testing::Parameters> SmtLib2Operators::indices_for(testing::Indices indices) const {
  using testing::Indices;
  switch (indices) {
    case Indices::None:
    case Indices::Type:
      break;
    case Indices::Modulus:
      return {{{}, {}, 7}};
    case Indices::Width:
      return {{{1}, {}, {}}, {{8}, {}, {}}};
    case Indices::TwoWidths:
      return {{{1, 8}, {}, {}}};
    case Indices::Part:
      return {{{6, 2, 8}, {}, {}}};
    case Indices::Amount:
      return {{{3, 8}, {}, {}}};
    case Indices::Array:
      return {{{}, {int_type, real_type}, {}}};
    case Indices::Format:
    case Indices::FormatAndItsBits:
    case Indices::BitsAndFormat:
      return {{{8, 23}, {}, {}}};
    case Indices::TwoFormats:
      return {{{8, 23, 8, 23}, {}, {}}};
    case Indices::WidthAndFormat:
      return {{{1, 8, 23}, {}, {}}, {{8, 8, 23}, {}, {}}};
    case Indices::FormatAndWidth:
      return {{{8, 23, 1}, {}, {}}, {{8, 23, 8}, {}, {}}};
  }
  return {};
}

std::vector<const Symbol*> SmtLib2Operators::operators() {
  std::vector<const Symbol*> all = {m.make_true()->symbol, m.make_false()->symbol};
  const auto add = [&](const Symbol* s) { all.push_back(s); };
  const Term_* p = first_of(bool_type);
  for (const Term_* t : {m.make_and(p, p), m.make_or(p, p), m.make_iff(p, p), m.make_not(p),
                         m.make_floor(first_of(real_type))}) {
    add(t->symbol);
  }
  for (const DataType* type : {int_type, real_type}) {
    const Term_* t = first_of(type);
    for (const Term_* each : {m.make_plus(t, t), m.make_times(t, t), m.make_leq(t, t)}) {
      add(each->symbol);
    }
  }
  for (const DataType* type : types) {
    if (type == bool_type) continue;
    add(m.make_equality_symbol(type));
    add(m.make_term_ite_symbol(type));
  }
  for (const testing::Operator& op : testing::operator_families()) {
    for (const testing::Parameters& given : indices_for(op.indices)) add(op.make_symbol(m, given));
  }
  return all;
}

constexpr size_t num_tags = SymbolTag::INT_TO_BV + 1;

// Also beyond the last tag, as far as the enumeration goes.
TEST_F(SmtLib2Operators, EveryTagWithEveryArityIsWritten) {
  m.set_typecheck_enabled(false);
  for (size_t tag = 0; tag < 128; ++tag) {
    if (tag == num_tags) tag = 127;
    for (const DataType* operand : {bool_type, int_type, bits, single, array}) {
      for (const DataType* result : {bool_type, int_type, real_type, bits, single, array}) {
        for (size_t arity = 0; arity <= 4; ++arity) {
          const DataType* type =
              arity == 0 ? result : m.get_function_type(Types(arity, operand), result);
          const Term_* t = apply(by_hand(static_cast<SymbolTag::tag>(tag), type));
          // Below operators only in some of the cases, because there are many.
          if (arity != 3 && operand != array && operand != bool_type) {
            write_everywhere(t);
          } else {
            EXPECT_NE(text(t), "");
          }
        }
      }
    }
  }
}

// Types with tags of other operators, and with one type in the place of another one.
TEST_F(SmtLib2Operators, OnlyWhatCouldBeTheOperatorIsWrittenAsIt) {
  const std::vector<const Symbol*> genuine = operators();
  // What the type alone does not say of an operator, only its family does.
  const std::set<SymbolTag::tag> told_by_family = {
      SymbolTag::INT_MODULAR_CONGRUENCE, SymbolTag::BV_CONCAT,       SymbolTag::BV_EXTRACT,
      SymbolTag::BV_ROTATE_LEFT,         SymbolTag::BV_ROTATE_RIGHT, SymbolTag::BV_ZERO_EXTEND,
      SymbolTag::BV_SIGN_EXTEND,         SymbolTag::FP_AS_IEEEBV,    SymbolTag::FP_FROM_IEEEBV};
  hsh::HashMap<const DataType*, std::vector<const Symbol*>> by_type;
  for (const Symbol* s : genuine) by_type[s->type].push_back(s);
  const auto find = [&](SymbolTag::tag tag, const DataType* type) -> const Symbol* {
    for (const Symbol* s : by_type[type]) {
      if (m.get_tag(s) == tag) return s;
    }
    return nullptr;
  };

  size_t written_as_operators = 0;
  const auto check = [&](SymbolTag::tag tag, const DataType* type) {
    const Symbol* s = by_hand(tag, type);
    const Term_* t = apply(s);
    const Symbol* same = told_by_family.count(tag) != 0 ? nullptr : find(tag, type);
    const std::string written = text(t);
    if (same != nullptr) {
      EXPECT_EQ(written, text(apply(same))) << tag << ' ' << type->to_str();
      ++written_as_operators;
    } else {
      const char* name = s->arity == 0 ? "|`by hand`|" : "(|`by hand`| ";
      EXPECT_EQ(written.substr(0, std::string(name).size()), name)
          << tag << ' ' << type->to_str() << ' ' << written;
    }
    EXPECT_EQ(operator_tag(m, s), same != nullptr ? tag : SymbolTag::NONE);
  };
  for (const auto& entry : std::vector<std::pair<const DataType*, std::vector<const Symbol*>>>(
           by_type.begin(), by_type.end())) {
    for (size_t tag = 0; tag < num_tags; ++tag) {
      check(static_cast<SymbolTag::tag>(tag), entry.first);
    }
  }
  for (const Symbol* s : genuine) {
    const SymbolTag::tag tag = m.get_tag(s);
    EXPECT_EQ(operator_tag(m, s), tag);
    Types components;
    for (uint64_t i = 1; i <= s->arity; ++i) components.push_back(s->type->get_component(i));
    components.push_back(s->get_output_type());
    const auto check_with = [&](const Types& changed) {
      const Types operands(changed.begin(), changed.end() - 1);
      check(tag, operands.empty() ? changed.back() : m.get_function_type(operands, changed.back()));
    };
    for (const DataType* other : types) {
      for (size_t i = 0; i < components.size(); ++i) {
        Types changed = components;
        changed[i] = other;
        check_with(changed);
      }
      Types longer = components;
      longer.insert(longer.begin(), other);
      check_with(longer);
    }
    if (components.size() > 1) check_with(Types(components.begin() + 1, components.end()));
  }
  EXPECT_GT(written_as_operators, 100U);
}

TEST_F(SmtLib2Operators, ConstantsAreNoOperatorsWithOperands) {
  const Term_* i = first_of(int_type);
  const Term_* times = apply(by_hand(SymbolTag::TIMES, int_type));
  EXPECT_EQ(text(m.make_plus(i, times)), "(+ c1 |`by hand`|)");
  EXPECT_EQ(text(m.make_floor(apply(by_hand(SymbolTag::TIMES, real_type)))),
            "(to_int |`by hand`|)");
}

TEST_F(SmtLib2Operators, AProductOfOneFactorIsNoNegation) {
  const Symbol* product = by_hand(SymbolTag::TIMES, m.get_function_type({int_type}, int_type));
  const Term_* t = m.make_uninterpreted_function(product, {m.make_number(-1)});
  EXPECT_EQ(text(m.make_plus(first_of(int_type), t)), "(+ c1 (|`by hand`| (- 1)))");
}

TEST_F(SmtLib2Operators, AConstantOfTheTypeOfTruthValuesMayBeTrue) {
  EXPECT_EQ(text(apply(by_hand(SymbolTag::TRUE, bool_type))), "true");
  EXPECT_EQ(text(apply(by_hand(SymbolTag::TRUE, int_type))), "|`by hand`|");
}

TEST_F(SmtLib2Operators, AnOperatorThatGotAnotherTagIsWrittenByName) {
  const Term_* sum = m.make_bv_add(first_of(bits), first_of(bits));
  m.add_interpreted_symbol("bvadd_8", sum->symbol->type, SymbolTag::AND);
  EXPECT_EQ(text(sum), "(|`bvadd_8`| c1 c1)");
  m.add_interpreted_symbol("bvadd_8", sum->symbol->type, SymbolTag::BV_MUL);
  EXPECT_EQ(text(sum), "(bvmul c1 c1)");
}

}  // namespace
}  // namespace quill
