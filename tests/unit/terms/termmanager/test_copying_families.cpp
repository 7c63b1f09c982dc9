// Copying the symbols of all operator families, and random terms over them there and back.

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <random>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "quill/terms/termmanager/operator_family.h"
#include "quill/terms/termmanager/term_manager.h"
#include "tests/support/operators.h"

namespace quill {
namespace {

using testing::Indices;
using testing::Operator;
using testing::operator_families;
using testing::Parameters;
using testing::Terms;
using Symbols = std::vector<const Symbol*>;
using Maker = std::function<const Symbol*(TermManager&)>;

// A symbol of a family: its name between the backquotes, and how any manager makes it.
struct Member {
  std::string name;
  Maker make;
};
struct Family {
  int tag;
  std::vector<Member> members;
};

constexpr std::array<size_t, 5> widths = {0, 1, 8, 64, 1000};
struct Pair {
  size_t a;
  size_t b;
};
constexpr std::array<Pair, 4> formats = {{{2, 2}, {5, 10}, {8, 23}, {15, 112}}};
constexpr std::array<Pair, 5> indices = {{{0, 8}, {3, 8}, {8, 8}, {1, 1}, {100, 64}}};

using Numbers = std::vector<size_t>;

std::string joined(const Numbers& numbers) {
  std::string text;
  for (const size_t n : numbers) text += (text.empty() ? "" : "_") + std::to_string(n);
  return text;
}

// The member whose maker takes these numbers, which are in its name unless others are.
Member member_of(const Operator& op, const Numbers& taken, const Numbers& in_name = {}) {
  Parameters given;
  std::copy(taken.begin(), taken.end(), given.numbers.begin());
  return {op.stem + joined(in_name.empty() ? taken : in_name),
          [&op, given](TermManager& m) { return op.make_symbol(m, given); }};
}

using TypePair = std::array<const DataType*, 2>;
struct ArrayIndices {
  const char* in_name;
  TypePair (*types)(TermManager&);
};
const ArrayIndices array_indices[] = {
    {"int_rat",
     [](TermManager& m) {
       return TypePair{m.get_int_type(), m.get_rat_type()};
     }},
    {"(BitVec 8)_(FP |5:10|)",
     [](TermManager& m) {
       return TypePair{m.get_bv_type(8), m.get_fp_type(5, 10)};
     }},
    {"U_(Array V U)",
     [](TermManager& m) {
       const DataType* u = m.get_simple_type("U", false);
       return TypePair{u, m.get_array_type(m.get_simple_type("V", false), u)};
     }},
    {"(Array Int Int)_(Array Int Int)",
     [](TermManager& m) {
       const DataType* inner = m.get_array_type(m.get_int_type(), m.get_int_type());
       return TypePair{inner, inner};
     }},
};

std::vector<Member> members_of(const Operator& op) {
  std::vector<Member> all;
  switch (op.indices) {
    case Indices::None:
    case Indices::Type:
      break;
    case Indices::Modulus:
      for (const char* modulus : {"1", "7", "1000000007", "100000000000000000000"}) {
        const Parameters given = {{}, {}, QNumber::from_string(modulus)};
        all.push_back({std::string(op.stem) + modulus,
                       [&op, given](TermManager& m) { return op.make_symbol(m, given); }});
      }
      break;
    case Indices::Width:
      for (const size_t w : widths) all.push_back(member_of(op, {w}));
      break;
    case Indices::TwoWidths:
    case Indices::Amount:
      for (const auto& [x, y] : indices) all.push_back(member_of(op, {x, y}));
      break;
    case Indices::Part:
      for (const Numbers& part : {Numbers{7, 0, 8}, {3, 3, 8}, {63, 1, 64}, {0, 0, 1}}) {
        all.push_back(member_of(op, part));
      }
      break;
    case Indices::Array:
      for (const ArrayIndices& of : array_indices) {
        all.push_back({std::string(op.stem) + of.in_name, [&](TermManager& m) {
                         return op.make_symbol(m, {{}, of.types(m), {}});
                       }});
      }
      break;
    case Indices::Format:
      for (const auto& [e, m] : formats) all.push_back(member_of(op, {e, m}));
      break;
    case Indices::FormatAndItsBits:
      for (const auto& [e, m] : formats) all.push_back(member_of(op, {e, m}, {e, m, e + m + 1}));
      break;
    case Indices::BitsAndFormat:
      for (const auto& [e, m] : formats) all.push_back(member_of(op, {e, m}, {e + m + 1, e, m}));
      break;
    case Indices::TwoFormats:
      for (const auto& from : formats) {
        for (const auto& to : formats) all.push_back(member_of(op, {from.a, from.b, to.a, to.b}));
      }
      break;
    case Indices::WidthAndFormat:
      for (const Numbers& numbers : {Numbers{8, 5, 10}, {1, 2, 2}, {5, 8, 10}}) {
        all.push_back(member_of(op, numbers));
      }
      break;
    case Indices::FormatAndWidth:
      for (const Numbers& numbers : {Numbers{5, 10, 8}, {8, 23, 1}, {8, 10, 5}}) {
        all.push_back(member_of(op, numbers));
      }
      break;
  }
  return all;
}

std::vector<Family> all_families() {
  std::vector<Family> all;
  for (const Operator& op : operator_families()) all.push_back({op.tag, members_of(op)});
  return all;
}

TEST(CopyingFamilies, TheTableHasEveryFamilyOnce) {
  const std::vector<Family> families = all_families();
  EXPECT_EQ(families.size(), 59U);
  EXPECT_EQ(families.size(), num_operator_families);
  for (size_t i = 0; i < families.size(); ++i) {
    EXPECT_EQ(families[i].tag, static_cast<int>(i) + SymbolTag::INT_MODULAR_CONGRUENCE);
    EXPECT_GE(families[i].members.size(), 3U);
  }
}

// The copy is the symbol that the destination's own maker gives: with the same name, type and tag,
// found by its parameters, recognised, and without an object more.
TEST(CopyingFamilies, ASymbolIsCopiedAsItsMakerMakesIt) {
  for (const Family& family : all_families()) {
    for (const Member& member : family.members) {
      SCOPED_TRACE(member.name);
      TermManager a;
      TermManager b;
      TermManager c;
      TermManager by_maker;
      const Symbol* s = member.make(a);
      ASSERT_EQ(s->name, "`" + member.name + "`");
      ASSERT_EQ(a.get_tag(s), family.tag);
      const Symbol* expected = member.make(by_maker);

      Symbols copies;
      b.copy_symbols(a, {s}, copies);
      ASSERT_EQ(copies.size(), 1U);
      // A copy of the copy shows that the copy is recognised.
      c.copy_symbols(b, {copies[0]}, copies);
      TermManager* const owners[] = {&b, &c};
      for (size_t i = 0; i < 2; ++i) {
        TermManager& m = *owners[i];
        const Symbol* copy = copies[i];
        EXPECT_STREQ(copy->name, expected->name);
        EXPECT_EQ(copy->arity, expected->arity);
        EXPECT_EQ(copy->type->to_str(), expected->type->to_str());
        EXPECT_EQ(m.get_tag(copy), family.tag);
        EXPECT_EQ(m.get_universe()->size(), by_maker.get_universe()->size());
        EXPECT_EQ(m.get_signature()->size(), by_maker.get_signature()->size());
        EXPECT_EQ(m.get_signature()->get_symbol(copy->name), copy);
        EXPECT_EQ(member.make(m), copy);
        EXPECT_EQ(m.get_signature()->size(), by_maker.get_signature()->size());
      }
      a.copy_symbols(b, {copies[0]}, copies);
      EXPECT_EQ(copies.back(), s);
    }
  }
}

TEST(CopyingFamilies, TheBuildersUseTheCopiedSymbols) {
  TermManager a;
  TermManager b;
  const DataType* bytes = a.get_bv_type(8);
  const Term_* x = a.make_constant(a.make_symbol("x", bytes));
  const Term_* v = a.make_constant(a.make_symbol("v", a.get_array_type(bytes, bytes)));
  const Term_* i = a.make_constant(a.make_symbol("i", a.get_int_type()));
  Terms out;
  b.copy_terms(a,
               {x, v, i, a.make_bv_add(x, x), a.make_array_write(v, x, x),
                a.make_int_modular_congruence(7, i, i), a.make_bv_extract(3, 1, x)},
               out, false);
  EXPECT_EQ(b.make_bv_add(out[0], out[0]), out[3]);
  EXPECT_EQ(b.make_array_write(out[1], out[0], out[0]), out[4]);
  EXPECT_EQ(b.make_int_modular_congruence(7, out[2], out[2]), out[5]);
  EXPECT_EQ(b.make_bv_extract(3, 1, out[0]), out[6]);
}

//------------------------------------------------------------------------------------------------
// Random terms

// Builds terms over every kind of symbol that a manager has.
class RandomTerms {
 public:
  RandomTerms(TermManager& manager, uint32_t seed) : m(manager), random(seed) {
    m.set_reject_bool_arguments(false);
    for (const Family& family : all_families()) {
      for (const Member& member : family.members) symbols.push_back(member.make(m));
    }
    for (const char* name : {"`not`", "`and`", "`or`", "`iff`", "`+_rat`", "`*_rat`", "`<=_rat`",
                             "`=_rat`", "`+_int`", "`*_int`", "`<=_int`", "`=_int`", "`floor`"}) {
      symbols.push_back(m.get_signature()->get_symbol(name));
    }
    const DataType* u = m.get_simple_type("a type", false);
    const std::vector<const DataType*> types = {u,
                                                m.get_bv_type(8),
                                                m.get_fp_type(5, 10),
                                                m.get_array_type(u, m.get_int_type()),
                                                m.get_compound_type({u, u}),
                                                m.get_fprounding_type()};
    for (const DataType* type : types) {
      symbols.push_back(m.make_equality_symbol(type));
      symbols.push_back(m.make_term_ite_symbol(type));
      symbols.push_back(m.make_symbol("p of " + type->to_str(),
                                      m.get_function_type({type, m.get_bool_type()}, u)));
    }
    symbols.push_back(m.make_term_ite_symbol(m.get_int_type()));
    symbols.push_back(m.make_term_ite_symbol(m.get_rat_type()));
    add(m.make_true());
    add(m.make_false());
    for (const Term_* t : {m.make_fprounding_even(), m.make_fprounding_zero(),
                           m.make_fprounding_plus_inf(), m.make_fprounding_minus_inf()}) {
      add(t);
    }
  }

  const Term_* next() {
    const Term_* t = below(10) == 0 ? numeral() : application();
    add(t);
    return t;
  }

 private:
  size_t below(size_t bound) { return std::uniform_int_distribution<size_t>(0, bound - 1)(random); }

  void add(const Term_* t) { pool[t->type()->to_str()].push_back(t); }

  const Term_* numeral() {
    const auto n = static_cast<int64_t>(below(200));
    switch (below(6)) {
      case 0:
        return m.make_number(n - 100);
      case 1:
        return m.make_number(QNumber(n - 100, static_cast<int64_t>(1 + below(9))));
      case 2:
        return m.make_bv_number(n, 8);
      case 3:
        return m.make_bv_number(n, 1000);
      case 4:
        return m.make_fp_bits_number(n, 5, 10);
      default:
        return m.make_number(QNumber::from_string("1" + std::string(below(40), '0')));
    }
  }

  const Term_* application() {
    const Symbol* s = symbols[below(symbols.size())];
    Terms args;
    for (uint64_t i = 0; i < s->arity; ++i) {
      const DataType* type = s->type->get_component(i + 1);
      std::vector<const Term_*>& fitting = pool[type->to_str()];
      if (fitting.empty() || below(20) == 0) {
        fitting.push_back(below(2) == 0 ? m.make_fresh_variable(type)
                                        : m.make_constant(m.make_unique_symbol("c", type)));
      }
      // Recent ones more often, so that terms get deep.
      const size_t recent = std::min<size_t>(fitting.size(), below(2) == 0 ? 3 : fitting.size());
      args.push_back(fitting[fitting.size() - 1 - below(recent)]);
    }
    return m.make_term(s, args);
  }

  TermManager& m;
  std::mt19937 random;
  Symbols symbols;
  std::map<std::string, Terms> pool;  // by the text of the type
};

// Compares two graphs node by node, without the printer.
void expect_same_graph(const TermManager& a, const Term_* s, const TermManager& b, const Term_* t) {
  std::map<uint64_t, const Term_*> partners;
  std::vector<std::pair<const Term_*, const Term_*>> work = {{s, t}};
  while (!work.empty()) {
    const auto [left, right] = work.back();
    work.pop_back();
    const auto [partner, is_new] = partners.insert({left->id, right});
    ASSERT_EQ(partner->second, right) << "one term has two copies";
    if (!is_new) continue;
    ASSERT_STREQ(left->symbol->name, right->symbol->name);
    ASSERT_EQ(left->symbol->arity, right->symbol->arity);
    ASSERT_EQ(left->symbol->type->to_str(), right->symbol->type->to_str());
    ASSERT_EQ(a.get_tag(left->symbol), b.get_tag(right->symbol));
    ASSERT_EQ(a.is_interpreted(left->symbol), b.is_interpreted(right->symbol));
    QNumber of_left;
    QNumber of_right;
    ASSERT_EQ(a.is_number(left->symbol, &of_left), b.is_number(right->symbol, &of_right));
    ASSERT_EQ(of_left, of_right);
    for (uint64_t i = 0; i < left->symbol->arity; ++i) {
      work.emplace_back(left->args[i], right->args[i]);
    }
  }
}

// The text of a term with its shared subterms numbered from 0 instead of by their ids, which
// depend on the manager.
std::string printed(const Term_* t) {
  const std::string text = t->to_str();
  std::map<std::string, std::string> numbers;
  std::string out;
  for (size_t i = 0; i < text.size();) {
    out += text[i];
    if (text[i++] != '#') continue;
    const size_t end = std::min(text.find_first_not_of("0123456789", i), text.size());
    const auto number = numbers.insert({text.substr(i, end - i), std::to_string(numbers.size())});
    out += number.first->second;
    i = end;
  }
  return out;
}

TEST(CopyingFamilies, RandomTermsAreTheSameThereAndBack) {
  for (uint32_t seed = 1; seed <= 5; ++seed) {
    SCOPED_TRACE(seed);
    TermManager a;
    RandomTerms build(a, seed);
    Terms roots;
    std::set<int> tags;
    for (int i = 0; i < 3000; ++i) {
      roots.push_back(build.next());
      tags.insert(a.get_tag(roots.back()->symbol));
    }
    EXPECT_GE(tags.size(), 65U);

    TermManager b;
    TermManager c;
    Terms copies;
    for (size_t i = 0; i < roots.size(); i += 2) copies.push_back(b.copy_term(a, roots[i]));
    Terms all;
    c.copy_terms(a, roots, all, /*use_manager_marks=*/seed % 2 == 0);
    ASSERT_EQ(all.size(), roots.size());
    const size_t terms = a.get_bank()->size();
    const size_t symbols = a.get_signature()->size();
    for (size_t i = 0; i < roots.size(); ++i) {
      if (i % 2 == 0) {
        ASSERT_EQ(a.copy_term(b, copies[i / 2]), roots[i]);
        ASSERT_EQ(c.copy_term(b, copies[i / 2]), all[i]);
      }
      ASSERT_EQ(a.copy_term(c, all[i]), roots[i]);
      if (i % 100 != 0) continue;
      ASSERT_NO_FATAL_FAILURE(expect_same_graph(a, roots[i], b, copies[i / 2]));
      ASSERT_NO_FATAL_FAILURE(expect_same_graph(a, roots[i], c, all[i]));
      ASSERT_EQ(printed(roots[i]), printed(copies[i / 2]));
      ASSERT_EQ(printed(roots[i]), printed(all[i]));
    }
    EXPECT_EQ(a.get_bank()->size(), terms);
    EXPECT_EQ(a.get_signature()->size(), symbols);
    for (const TermManager* m : {&a, &b, &c}) EXPECT_EQ(m->check_consistency(), "");
  }
}

}  // namespace
}  // namespace quill
