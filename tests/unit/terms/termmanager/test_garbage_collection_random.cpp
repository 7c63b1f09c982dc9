// Random building, substitution and collection with random roots, against a model that holds terms
// as texts.
//
// For each term the model knows its text, the texts of its arguments, its id and how to build it
// again. It computes what a collection leaves by reachability over texts, and which id comes next;
// the manager must agree on terms, ids, addresses, symbols and types.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <iterator>
#include <map>
#include <random>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "quill/terms/termmanager/term_manager.h"

namespace quill {
namespace {

using Terms = std::vector<const Term_*>;
using Texts = std::vector<std::string>;

constexpr size_t longest_text = 300;

class Life {
 public:
  explicit Life(unsigned seed) : random(seed) {
    standard("`true`", m.make_true());
    standard("`false`", m.make_false());
  }

  void round() {
    const size_t steps = 5 + below(15);
    for (size_t i = 0; i < steps; ++i) build();
    if (chance(3)) substitute();
    if (chance(2)) rebuild();
    if (chance(3)) collect();
    if (chance(20)) collect_all();
  }

  size_t collections = 0;
  size_t collected = 0;
  size_t rebuilt = 0;
  size_t substituted = 0;

 private:
  struct Known {
    const Term_* term;
    Texts arguments;
  };
  // How to build a term out of its arguments.
  struct Recipe {
    Texts arguments;
    std::function<const Term_*(const Terms&)> make;
  };

  size_t below(size_t n) { return random() % n; }
  bool chance(unsigned n) { return random() % n == 0; }

  void standard(const std::string& text, const Term_* t) {
    live[text] = {t, {}};
    text_of[t] = text;
  }

  // A live term for which suits(term) holds, or null.
  template <class Suits>
  const Term_* pick(Suits suits) {
    std::vector<const Term_*> found;
    for (const auto& [text, known] : live) {
      if (text.size() < longest_text && suits(known.term)) found.push_back(known.term);
    }
    return found.empty() ? nullptr : found[below(found.size())];
  }
  const Term_* pick_of(const DataType* type) {
    return pick([&](const Term_* t) { return t->type() == type; });
  }
  const Term_* pick_bv() {
    return pick([&](const Term_* t) { return m.is_bv_type(type_of(t), nullptr); });
  }
  const Term_* pick_fp() {
    return pick([&](const Term_* t) { return m.is_fp_type(type_of(t), nullptr, nullptr); });
  }
  const Term_* pick_array() {
    return pick([&](const Term_* t) { return m.is_array_type(type_of(t), nullptr, nullptr); });
  }
  static const DataType* type_of(const Term_* t) { return t->type(); }
  size_t width_of(const Term_* t) const {
    size_t width = 0;
    m.is_bv_type(type_of(t), &width);
    return width;
  }
  static std::string digits(size_t n) { return std::to_string(n); }
  static std::string quoted(const std::string& name) { return '`' + name + '`'; }

  uint64_t lowest_free_id() const {
    std::set<uint64_t> used;
    for (const auto& [text, known] : live) used.insert(known.term->id);
    uint64_t id = 0;
    while (used.count(id) != 0) id++;
    return id;
  }

  static std::string compose(const std::string& head, const Texts& arguments) {
    if (arguments.empty()) return head;
    std::string text = head;
    for (const std::string& argument : arguments) text += " " + argument;
    return "(" + text + ")";
  }

  // Builds a term whose symbol must have the name given, and compares it with the model.
  void make(const std::string& head, const Terms& arguments,
            const std::function<const Term_*(const Terms&)>& maker) {
    Texts texts;
    for (const Term_* argument : arguments) texts.push_back(text_of.at(argument));
    const std::string text = compose(head, texts);
    const auto present = live.find(text);
    const uint64_t id = present != live.end() ? present->second.term->id : lowest_free_id();
    const Term_* t = maker(arguments);
    ASSERT_EQ(t->symbol->name, head);
    ASSERT_EQ(t->id, id) << text;
    ASSERT_EQ(Terms(t->args, t->args + t->symbol->arity), arguments);
    if (present != live.end()) {
      ASSERT_EQ(t, present->second.term) << text;
      return;
    }
    live[text] = {t, texts};
    text_of[t] = text;
    recipes[text] = {texts, maker};
  }

  const DataType* some_type() {
    switch (below(6)) {
      case 0:
        return m.get_int_type();
      case 1:
        return m.get_rat_type();
      case 2:
        return m.get_bv_type(4 * (1 + below(4)));
      case 3:
        return m.get_fp_type(3 + below(2), 4);
      case 4:
        return m.get_simple_type("S" + digits(below(2)), false);
      default:
        return m.get_array_type(m.get_bv_type(4), m.get_simple_type("S0", false));
    }
  }

  // A constant named by its type, so that its type can be told from its name.
  void make_constant() {
    const DataType* type = some_type();
    const std::string type_text = type->to_str();
    const std::string name = "c" + digits(below(3)) + type_text;
    // The type is asked for anew each time: it may have been freed in between.
    TermManager& manager = m;
    const auto type_again = type_maker(type);
    make(name, {}, [&manager, name, type_again](const Terms&) {
      return manager.make_constant(manager.make_symbol(name, type_again()));
    });
  }

  std::function<const DataType*()> type_maker(const DataType* type) {
    TermManager& manager = m;
    size_t a = 0;
    size_t b = 0;
    const DataType* index = nullptr;
    const DataType* element = nullptr;
    if (m.is_bv_type(type, &a)) return [&manager, a] { return manager.get_bv_type(a); };
    if (m.is_fp_type(type, &a, &b)) {
      return [&manager, a, b] { return manager.get_fp_type(a, b); };
    }
    if (m.is_array_type(type, &index, &element)) {
      return [&manager, index_again = type_maker(index), element_again = type_maker(element)] {
        const DataType* i = index_again();
        const DataType* e = element_again();
        return manager.get_array_type(i, e);
      };
    }
    if (type == m.get_int_type() || type == m.get_rat_type()) return [type] { return type; };
    return [&manager, name = type->get_name()] { return manager.get_simple_type(name, false); };
  }

  void build() {
    TermManager& manager = m;
    switch (below(16)) {
      case 0:
      case 1:
      case 2:
        return make_constant();
      case 3: {
        const int value = static_cast<int>(below(40)) - 10;
        return make(std::to_string(value), {}, [&manager, value](const Terms&) {
          return manager.make_number(QNumber(value));
        });
      }
      case 4: {
        const int value = 1 + 3 * static_cast<int>(below(5));
        return make(std::to_string(value) + "/3", {}, [&manager, value](const Terms&) {
          return manager.make_number(QNumber(value, 3));
        });
      }
      case 5: {
        const size_t value = below(16);
        const size_t width = 4 + below(3);
        return make(digits(value) + '_' + digits(width), {},
                    [&manager, value, width](const Terms&) {
                      return manager.make_bv_number(QNumber(value), width);
                    });
      }
      case 6: {
        const Term_* a = pick_of(m.get_int_type());
        const Term_* b = pick_of(m.get_int_type());
        if (a == nullptr || b == nullptr) return;
        if (chance(2)) {
          return make("`+_int`", {a, b},
                      [&manager](const Terms& t) { return manager.make_plus(t[0], t[1]); });
        }
        return make("`int_mod_congr_5`", {a, b}, [&manager](const Terms& t) {
          return manager.make_int_modular_congruence(QNumber(5), t[0], t[1]);
        });
      }
      case 7: {
        const Term_* a = pick_of(m.get_bool_type());
        const Term_* b = pick_of(m.get_bool_type());
        if (chance(2)) {
          return make("`and`", {a, b},
                      [&manager](const Terms& t) { return manager.make_and(t[0], t[1]); });
        }
        return make("`not`", {a}, [&manager](const Terms& t) { return manager.make_not(t[0]); });
      }
      case 8: {
        const Term_* a = pick([&](const Term_* t) {
          return type_of(t) != m.get_bool_type() && type_of(t) != m.get_int_type() &&
                 type_of(t) != m.get_rat_type();
        });
        if (a == nullptr) return;
        const Term_* b = pick_of(type_of(a));
        if (chance(2)) {
          return make(quoted("=_" + type_of(a)->to_str()), {a, b},
                      [&manager](const Terms& t) { return manager.make_equal(t[0], t[1]); });
        }
        const Term_* c = pick_of(m.get_bool_type());
        return make(quoted("ite_" + type_of(a)->to_str()), {c, a, b},
                    [&manager](const Terms& t) { return manager.make_term_ite(t[0], t[1], t[2]); });
      }
      case 9: {
        const Term_* a = pick_bv();
        if (a == nullptr) return;
        const Term_* b = pick_of(type_of(a));
        return make(quoted("bvadd_" + digits(width_of(a))), {a, b},
                    [&manager](const Terms& t) { return manager.make_bv_add(t[0], t[1]); });
      }
      case 10: {
        const Term_* a = pick_bv();
        if (a == nullptr) return;
        const size_t w = width_of(a);
        if (chance(2)) {
          return make(quoted("ubv2int_" + digits(w)), {a},
                      [&manager](const Terms& t) { return manager.make_int_from_ubv(t[0]); });
        }
        return make(quoted("bvror_1_" + digits(w)), {a},
                    [&manager](const Terms& t) { return manager.make_bv_rotate_right(1, t[0]); });
      }
      case 11: {
        const Term_* a = pick_fp();
        if (a == nullptr) return;
        size_t e = 0;
        size_t s = 0;
        m.is_fp_type(type_of(a), &e, &s);
        const std::string format = digits(e) + '_' + digits(s);
        if (chance(2)) {
          return make(quoted("fpisnan_" + format), {a},
                      [&manager](const Terms& t) { return manager.make_fp_isnan(t[0]); });
        }
        return make(quoted("fpneg_" + format), {a},
                    [&manager](const Terms& t) { return manager.make_fp_neg(t[0]); });
      }
      case 12: {
        const Term_* a = pick_array();
        const Term_* i = pick([&](const Term_* t) { return width_of(t) == 4; });
        if (a == nullptr || i == nullptr) return;
        const DataType* element = nullptr;
        m.is_array_type(type_of(a), nullptr, &element);
        const Term_* v = pick_of(element);
        const std::string types = "_(BitVec 4)_S0";
        if (v == nullptr || chance(2)) {
          return make(quoted("read" + types), {a, i},
                      [&manager](const Terms& t) { return manager.make_array_read(t[0], t[1]); });
        }
        return make(quoted("write" + types), {a, i, v}, [&manager](const Terms& t) {
          return manager.make_array_write(t[0], t[1], t[2]);
        });
      }
      case 13: {
        const Term_* a = pick([&](const Term_* t) { return width_of(t) == 8; });
        if (a == nullptr) return;
        return make("`fpfromieeebv__8_3_4`", {a},
                    [&manager](const Terms& t) { return manager.make_fp_from_ieeebv(3, 4, t[0]); });
      }
      case 14: {
        const Term_* a = pick_bv();
        const Term_* b = pick_bv();
        if (a == nullptr || b == nullptr || width_of(a) + width_of(b) > 24) return;
        const size_t wa = width_of(a);
        const size_t wb = width_of(b);
        return make(quoted("bvconcat_" + digits(wa) + '_' + digits(wb)), {a, b},
                    [&manager](const Terms& t) { return manager.make_bv_concat(t[0], t[1]); });
      }
      default: {
        const Term_* a = pick_of(m.get_int_type());
        if (a == nullptr) return;
        const std::string name = "f" + digits(below(2));
        return make(name, {a}, [&manager, name](const Terms& t) {
          const DataType* type =
              manager.get_function_type({manager.get_int_type()}, manager.get_int_type());
          return manager.make_uninterpreted_function(manager.make_symbol(name, type), t);
        });
      }
    }
  }

  // A text that was built at some time, with what is below it.
  const Term_* build_again(const std::string& text) {
    const auto present = live.find(text);
    if (present != live.end()) return present->second.term;
    const Recipe recipe = recipes.at(text);
    Terms arguments;
    for (const std::string& argument : recipe.arguments) arguments.push_back(build_again(argument));
    const std::string head =
        recipe.arguments.empty() ? text : text.substr(1, head_length(text, recipe.arguments));
    make(head, arguments, recipe.make);
    ++rebuilt;
    return live.at(text).term;
  }
  static size_t head_length(const std::string& text, const Texts& arguments) {
    size_t rest = 1;  // the last parenthesis
    for (const std::string& argument : arguments) rest += 1 + argument.size();
    return text.size() - rest - 1;
  }

  void rebuild() {
    if (recipes.empty()) return;
    const auto it = std::next(recipes.begin(), static_cast<ptrdiff_t>(below(recipes.size())));
    build_again(it->first);
  }

  // The model's own substitution of one text by another; the result's text, and a recipe for each
  // subterm of it.
  std::string substituted_text(const std::string& text, const std::string& from,
                               const std::string& to) {
    if (text == from) return to;
    const auto found = recipes.find(text);
    if (found == recipes.end() || found->second.arguments.empty()) return text;
    const Recipe recipe = found->second;
    Texts arguments;
    for (const std::string& argument : recipe.arguments) {
      arguments.push_back(substituted_text(argument, from, to));
    }
    const std::string result =
        compose(text.substr(1, head_length(text, recipe.arguments)), arguments);
    recipes.insert({result, {arguments, recipe.make}});
    return result;
  }

  void substitute() {
    const Term_* from = pick([](const Term_* t) { return t->symbol->arity == 0; });
    const Term_* to = pick_of(type_of(from));
    const Term_* t = pick([&](const Term_* above) {
      return above->symbol->arity != 0 && text_of.at(above).size() < 100;
    });
    if (t == nullptr) return;
    const std::string expected = substituted_text(text_of.at(t), text_of.at(from), text_of.at(to));
    const Term_* result = m.substitute(t, {from}, {to});
    enter(result, expected);
    EXPECT_EQ(text_of.at(result), expected);
    ++substituted;
  }

  // Enters what a substitution made, whose ids must be the lowest free ones together.
  void enter(const Term_* t, const std::string& expected) {
    std::set<std::string> texts;
    collect_texts(expected, texts);
    std::set<uint64_t> expected_ids;
    std::set<uint64_t> used;
    for (const auto& [text, known] : live) used.insert(known.term->id);
    for (const std::string& text : texts) {
      if (live.count(text) != 0) continue;
      uint64_t id = 0;
      while (used.count(id) != 0) id++;
      used.insert(id);
      expected_ids.insert(id);
    }
    std::set<uint64_t> ids;
    enter_below(t, ids);
    EXPECT_EQ(ids, expected_ids);
  }
  void collect_texts(const std::string& text, std::set<std::string>& texts) {
    if (!texts.insert(text).second) return;
    const auto found = recipes.find(text);
    if (found == recipes.end()) return;
    for (const std::string& argument : found->second.arguments) collect_texts(argument, texts);
  }
  void enter_below(const Term_* t, std::set<uint64_t>& ids) {
    if (text_of.count(t) != 0) return;
    Texts arguments;
    for (uint64_t i = 0; i < t->symbol->arity; ++i) {
      enter_below(t->args[i], ids);
      arguments.push_back(text_of.at(t->args[i]));
    }
    const std::string text = compose(t->symbol->name, arguments);
    ASSERT_EQ(live.count(text), 0U) << text;
    live[text] = {t, arguments};
    text_of[t] = text;
    ids.insert(t->id);
  }

  void reach(const std::string& text, std::set<std::string>& reached) const {
    if (!reached.insert(text).second) return;
    for (const std::string& argument : live.at(text).arguments) reach(argument, reached);
  }

  // The types that a type is made of, itself included.
  static void reach_types(const DataType* type, std::set<const DataType*>& reached) {
    reached.insert(type);
    for (size_t i = 0; i < type->num_components(); ++i) {
      reach_types(type->get_component(i), reached);
    }
  }

  void collect() {
    Terms roots;
    std::vector<const Symbol*> symbols;
    std::vector<const DataType*> types;
    const size_t percent = below(100);
    for (const auto& [text, known] : live) {
      if (below(100) < percent / 4) roots.push_back(known.term);
      if (below(100) < 3) symbols.push_back(known.term->symbol);
      if (below(100) < 3) types.push_back(type_of(known.term));
    }
    collect(roots, symbols, types);
  }

  void collect_all() { collect({}, {}, {}); }

  void collect(const Terms& roots, const std::vector<const Symbol*>& symbols,
               const std::vector<const DataType*>& types) {
    std::set<std::string> reached = {"`true`", "`false`"};
    for (const Term_* root : roots) reach(text_of.at(root), reached);
    std::set<std::string> symbol_names;
    std::set<const DataType*> kept_types;
    const auto keep_symbol = [&](const Symbol* s) {
      symbol_names.insert(s->name);
      reach_types(s->type, kept_types);
    };
    for (const std::string& text : reached) keep_symbol(live.at(text).term->symbol);
    for (const Symbol* symbol : symbols) keep_symbol(symbol);
    for (const DataType* type : types) reach_types(type, kept_types);
    {
      const TermManager fresh;
      for (size_t i = 0; i < fresh.get_signature()->size(); ++i) {
        const char* name = fresh.get_signature()->symbol(i)->name;
        keep_symbol(m.get_signature()->get_symbol(name));
      }
    }
    reach_types(m.get_universe()->get_application_type(), kept_types);

    m.gc(roots, symbols, types);
    ASSERT_EQ(m.check_consistency(), "");
    ++collections;
    std::map<std::string, Known> survivors;
    for (const auto& [text, known] : live) {
      if (reached.count(text) != 0) {
        survivors.insert({text, known});
      } else {
        ++collected;
        text_of.erase(known.term);
      }
    }
    live = std::move(survivors);

    std::set<const Term_*> held;
    for (const Term_* t : *m.get_bank()) held.insert(t);
    ASSERT_EQ(held.size(), live.size());
    uint64_t bound = 0;
    for (const auto& [text, known] : live) {
      ASSERT_EQ(held.count(known.term), 1U) << text;
      bound = std::max(bound, known.term->id + 1);
    }
    ASSERT_EQ(m.get_bank()->id_bound(), bound);
    ASSERT_EQ(m.get_signature()->size(), symbol_names.size());
    for (const std::string& name : symbol_names) {
      ASSERT_NE(m.get_signature()->get_symbol(name.c_str()), nullptr) << name;
    }
    // The heads of parametric types stay, though no symbol may use them.
    size_t heads = 0;
    for (const DataType* type : kept_types) {
      const std::string& name = type->get_name();
      heads += name == "Array" || name == "BitVec" || name == "FP";
    }
    ASSERT_EQ(m.get_universe()->size(), kept_types.size() + 3 - heads);
  }

  TermManager m;
  std::mt19937 random;
  std::map<std::string, Known> live;  // by text
  std::map<const Term_*, std::string> text_of;
  std::map<std::string, Recipe> recipes;  // of all texts ever built, by text
};

TEST(GarbageCollectionRandom, WhatSurvivesIsWhatReachabilitySays) {
  Life life(20250101);
  for (int round = 0; round < 2000; ++round) {
    life.round();
    ASSERT_FALSE(::testing::Test::HasFailure()) << "round " << round;
  }
  EXPECT_GT(life.collections, 500U);
  EXPECT_GT(life.collected, 5000U);
  EXPECT_GT(life.rebuilt, 500U);
  EXPECT_GT(life.substituted, 300U);
}

}  // namespace
}  // namespace quill
