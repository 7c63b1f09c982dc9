// Random terms of all theories: what the printer writes for them reads back as the same terms.

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <map>
#include <random>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "quill/frontends/smt2/smt2.h"
#include "quill/printers/smtlib2_term_printer.h"
#include "tests/random/random_theory_terms.h"

namespace quill::smt2 {
namespace {

// Makes one application after the other, each of operands that were made before.
class RandomTerms {
 public:
  RandomTerms(TermManager& m, uint32_t seed)
      : random(seed),
        terms(
            m, [this](uint32_t n) { return below(n); },
            [this](const DataType* type) { return recent(type); }, /*for_all_readers=*/false) {
    std::vector<const DataType*> types = terms.types();
    types.push_back(m.get_bool_type());
    types.push_back(m.get_int_type());
    for (size_t i = 0; i < types.size(); ++i) {
      for (const char* name : {"x", "y"}) {
        add(m.make_constant(m.make_symbol(name + std::to_string(i), types[i])));
      }
    }
  }

  const Term_* make() { return add(terms.make()); }

 private:
  uint32_t below(uint32_t n) { return static_cast<uint32_t>(random()) % n; }
  const Term_* add(const Term_* t) {
    pools[t->type()].push_back(t);
    return t;
  }
  const Term_* recent(const DataType* type) {
    const std::vector<const Term_*>& pool = pools[type];
    const size_t choice = pool.size() < 12 ? pool.size() : 12;
    return pool[pool.size() - 1 - below(static_cast<uint32_t>(choice))];
  }

  std::mt19937 random;
  RandomTheoryTerms terms;
  std::map<const DataType*, std::vector<const Term_*>> pools;
};

std::string text_of(TermManager& m, const Term_* t, Configuration::Dialect dialect) {
  Configuration::Printer choices;
  choices.dialect = dialect;
  std::ostringstream out;
  SmtLib2TermPrinter(&m, &choices, "", "", true, nullptr).print_term(out, t);
  return out.str();
}

TEST(TheoriesRoundTrip, ExtendedTextReadsAsTheSameTerm) {
  std::set<SymbolTag::tag> tags;
  for (uint32_t seed = 0; seed < 40; ++seed) {
    TermManager manager;
    RandomTerms terms(manager, seed);
    for (int n = 0; n < 100; ++n) {
      const Term_* t = terms.make();
      tags.insert(manager.get_tag(t->symbol));
      const std::string text = text_of(manager, t, Configuration::Dialect::Extensions);
      ASSERT_EQ(read_term(text, manager), t) << "seed " << seed << ": " << text;
    }
  }
  for (int tag = SymbolTag::BV_CONCAT; tag <= SymbolTag::INT_TO_BV; ++tag) {
    EXPECT_EQ(tags.count(static_cast<SymbolTag::tag>(tag)), 1U) << tag;
  }
}

TEST(TheoriesRoundTrip, StandardTextIsAFixedPoint) {
  for (uint32_t seed = 0; seed < 20; ++seed) {
    TermManager manager;
    RandomTerms terms(manager, seed);
    for (int n = 0; n < 100; ++n) {
      const Term_* t = terms.make();
      const std::string text = text_of(manager, t, Configuration::Dialect::Standard);
      if (text.find("quill!ieee_bits_") != std::string::npos) continue;
      const Term_* again = read_term(text, manager);
      ASSERT_EQ(text_of(manager, again, Configuration::Dialect::Standard), text) << "seed " << seed;
      ASSERT_EQ(text_of(manager, again, Configuration::Dialect::Extensions), text)
          << "seed " << seed;
    }
  }
}

}  // namespace
}  // namespace quill::smt2
