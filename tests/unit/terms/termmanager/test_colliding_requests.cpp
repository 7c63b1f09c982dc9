// Requests that were made to collide in the tables of a manager, 20,000 of each kind, compared with
// as many ordinary ones: they may visit at most five times as many entries.

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <ostream>
#include <string>
#include <vector>

#include "quill/terms/termmanager/term_manager.h"
#include "quill/utils/entry_count.h"
#include "quill/utils/intern_index.h"
#include "quill/utils/name_hash.h"
#include "quill/utils/qnumber.h"
#include "tests/support/colliding_names.h"

namespace quill {
namespace {

constexpr size_t requests = 20000;
constexpr size_t buckets = 42073;  // of a table with 20,000 elements

// Request number i, of the kind that collides or of the ordinary one.
using Request = std::function<const void*(TermManager& m, size_t i)>;

struct Kind {
  const char* name;
  Request colliding;
  Request ordinary;
};

void PrintTo(const Kind& kind, std::ostream* out) { *out << kind.name; }

const std::string& colliding_name(size_t i) {
  static const std::vector<std::string> names = testing::colliding_names(requests);
  return names[i];
}

std::string ordinary_name(size_t i) { return "an_ordinary_name_" + std::to_string(i); }

// The string hash of the tables gives one value to all of these: 5 * 'a' + 'a' is 5 * 'b' + '\\'.
std::string name_for_tables(size_t i) {
  std::string name;
  for (size_t bit = 0; bit < 15; ++bit) name += (i >> bit & 1) != 0 ? "b\\" : "aa";
  return name;
}

// A number whose numeral of 32 bits has a name that wants one of few places in an index.
uint64_t colliding_bv_value(size_t i) {
  static const std::vector<uint64_t> values = [] {
    std::vector<uint64_t> found;
    for (uint64_t value = 0; found.size() < requests; ++value) {
      const std::string name = std::to_string(value) + "_32";
      if (InternIndex::fold(NameHash()(name)) % 65536 < 1024) found.push_back(value);
    }
    return found;
  }();
  return values[i];
}

// A fraction with the numerator 2^70 + 1: of the denominator the hash reads only the length.
QNumber big_fraction(size_t denominator) {
  return QNumber::from_string("1180591620717411303425/" + std::to_string(denominator));
}

const DataType* type_number(TermManager& m, size_t i) {
  return m.get_simple_type("T" + std::to_string(i), /*only_existing=*/false);
}

const std::vector<Kind> kinds = {
    {"names",
     [](TermManager& m, size_t i) { return m.make_symbol(colliding_name(i), m.get_int_type()); },
     [](TermManager& m, size_t i) { return m.make_symbol(ordinary_name(i), m.get_int_type()); }},
    {"names_of_sorts_in_the_index",
     [](TermManager& m, size_t i) { return m.get_simple_type(colliding_name(i), false); },
     [](TermManager& m, size_t i) { return m.get_simple_type(ordinary_name(i), false); }},
    {"names_of_sorts_in_the_table",
     [](TermManager& m, size_t i) { return m.get_simple_type(name_for_tables(i), false); },
     [](TermManager& m, size_t i) { return m.get_simple_type(ordinary_name(i), false); }},
    {"numerals", [](TermManager& m, size_t i) { return m.make_number(i * buckets); },
     [](TermManager& m, size_t i) { return m.make_number(i); }},
    {"fractions", [](TermManager& m, size_t i) { return m.make_number(big_fraction(3 * i + 1)); },
     [](TermManager& m, size_t i) { return m.make_number(QNumber(i + 1, 2 * i + 3)); }},
    {"bit_vector_numerals",
     [](TermManager& m, size_t i) { return m.make_bv_number(colliding_bv_value(i), 32); },
     [](TermManager& m, size_t i) { return m.make_bv_number(i, 32); }},
    {"widths", [](TermManager& m, size_t i) { return m.get_bv_type(i * buckets); },
     [](TermManager& m, size_t i) { return m.get_bv_type(i); }},
    {"operators_of_a_width",
     [](TermManager& m, size_t i) { return m.make_bv_add_symbol(i * buckets); },
     [](TermManager& m, size_t i) { return m.make_bv_add_symbol(i); }},
    {"formats", [](TermManager& m, size_t i) { return m.get_fp_type(5, (i + 1) * buckets); },
     [](TermManager& m, size_t i) { return m.get_fp_type(5, i + 2); }},
    {"operators_of_a_format",
     [](TermManager& m, size_t i) { return m.make_fp_add_symbol(5, (i + 1) * buckets); },
     [](TermManager& m, size_t i) { return m.make_fp_add_symbol(5, i + 2); }},
    {"rotations",
     [](TermManager& m, size_t i) { return m.make_bv_rotate_left_symbol(i * buckets, 8); },
     [](TermManager& m, size_t i) { return m.make_bv_rotate_left_symbol(i, 8); }},
    {"extensions",
     [](TermManager& m, size_t i) { return m.make_bv_sign_extend_symbol(i * buckets, buckets); },
     [](TermManager& m, size_t i) { return m.make_bv_sign_extend_symbol(i, 8); }},
    {"extractions",
     [](TermManager& m, size_t i) {
       return m.make_bv_extract_symbol((size_t{1} << 39) - i, i << 20, size_t{1} << 40);
     },
     [](TermManager& m, size_t i) { return m.make_bv_extract_symbol(i, 0, size_t{1} << 20); }},
    {"concatenations",
     [](TermManager& m, size_t i) { return m.make_bv_concat_symbol(i * buckets, buckets); },
     [](TermManager& m, size_t i) { return m.make_bv_concat_symbol(i, 8); }},
    {"casts",
     [](TermManager& m, size_t i) { return m.make_fp_cast_symbol(8, 2 + i, 8, 40000 - i); },
     [](TermManager& m, size_t i) { return m.make_fp_cast_symbol(8, 23, 8, 2 + i); }},
    {"moduli",
     [](TermManager& m, size_t i) {
       return m.make_int_modular_congruence_symbol((i + 1) * buckets);
     },
     [](TermManager& m, size_t i) { return m.make_int_modular_congruence_symbol(i + 1); }},
    // Both types of a pair cancel out in its hash when they are one.
    {"arrays",
     [](TermManager& m, size_t i) {
       const DataType* type = type_number(m, i);
       return m.make_array_read_symbol(type, type);
     },
     [](TermManager& m, size_t i) {
       const DataType* type = type_number(m, i);
       return m.make_array_read_symbol(type, m.get_int_type());
     }},
};

class CollidingRequests : public ::testing::TestWithParam<Kind> {};
INSTANTIATE_TEST_SUITE_P(Kinds, CollidingRequests, ::testing::ValuesIn(kinds),
                         [](const auto& kind) { return kind.param.name; });

// Each is made twice, half of what they gave is collected, and they are made again.
uint64_t entries_for(const Request& request) {
  TermManager m;
  request(m, 0);  // what the helpers above make up is made up once
  const uint64_t before = entries_looked_at();
  std::vector<const void*> given;
  for (size_t i = 0; i < requests; ++i) given.push_back(request(m, i));
  for (size_t i = 0; i < requests; ++i) EXPECT_EQ(request(m, i), given[i]);
  m.gc({}, {}, {});
  for (size_t i = 0; i < requests; i += 2) request(m, i);
  const uint64_t entries = entries_looked_at() - before;
  EXPECT_EQ(m.check_consistency(), "");
  return entries;
}

TEST_P(CollidingRequests, CostLittleMoreThanOthers) {
  const uint64_t ordinary = entries_for(GetParam().ordinary);
  EXPECT_LE(entries_for(GetParam().colliding), 5 * ordinary);
}

}  // namespace
}  // namespace quill
