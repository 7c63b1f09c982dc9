// How much memory a manager keeps when little is left in it.

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>  // defines __GLIBC__ where it is the C library
#include <fstream>
#include <string>
#include <vector>

#ifdef __GLIBC__
#include <malloc.h>
#endif

#include "quill/terms/termmanager/term_manager.h"
#include "quill/utils/address_sanitizer.h"

namespace quill {
namespace {

// Bytes in pieces that the C library has handed out.
size_t bytes_in_use() {
#ifdef __GLIBC__
  const auto use = mallinfo2();
  return use.uordblks + use.hblkhd;
#else
  return 0;
#endif
}

// Bytes of memory that the system has given to the process.
size_t resident_bytes() {
  std::ifstream statm("/proc/self/statm");
  size_t all = 0;
  size_t resident = 0;
  statm >> all >> resident;
  return resident * 4096;
}

bool is_measurable() {
#ifdef __GLIBC__
  return !has_address_sanitizer && resident_bytes() > 0;
#else
  return false;
#endif
}

// Something in each table of a manager.
void fill(TermManager& m) {
  const DataType* bits = m.get_bv_type(64);
  for (size_t i = 0; i < 12000; ++i) {
    const std::string name = "name " + std::to_string(i);
    m.make_number(i);
    m.make_bv_number(i, 64);
    m.make_bv_add_symbol(i + 1);
    m.make_fp_mul_symbol(5, i + 2);
    m.make_bv_extract_symbol(i + 5, i, 100000);
    m.make_int_modular_congruence_symbol(i + 2);
    const DataType* sort = m.get_simple_type(name, /*only_existing=*/false);
    m.make_array_read_symbol(sort, bits);
    m.make_equality_symbol(sort);
    m.make_constant(m.make_symbol(name, bits));
    m.make_unique_symbol("unique " + std::to_string(i % 5000), bits);
  }
}

// In debug builds each store notes all addresses that it ever handed out, to name misuse.
#ifdef NDEBUG
constexpr size_t records = 0;
#else
constexpr size_t records = size_t{8} << 20;
#endif

constexpr size_t little = size_t{2} << 20;

TEST(MemoryAfterCollection, TablesOfWhichNothingIsLeftAreGivenBack) {
  if (!is_measurable()) GTEST_SKIP() << "needs the C library of GNU and no address sanitizer";
  const size_t in_use_before = bytes_in_use();
  const size_t resident_before = resident_bytes();
  TermManager m;
  fill(m);
  EXPECT_GT(bytes_in_use(), in_use_before + 4 * little);
  EXPECT_GT(resident_bytes(), resident_before + 4 * little);
  m.gc({}, {}, {});
  EXPECT_LT(bytes_in_use(), in_use_before + little + records);
  EXPECT_LT(resident_bytes(), resident_before + little + records);
  EXPECT_EQ(m.check_consistency(), "");
}

TEST(MemoryAfterCollection, ADestructorGivesAllBack) {
  if (!is_measurable()) GTEST_SKIP() << "needs the C library of GNU and no address sanitizer";
  const size_t in_use_before = bytes_in_use();
  const size_t resident_before = resident_bytes();
  {
    TermManager m;
    fill(m);
    EXPECT_GT(resident_bytes(), resident_before + 4 * little);
  }
  EXPECT_LT(bytes_in_use(), in_use_before + 65536);
  EXPECT_LT(resident_bytes(), resident_before + little);
}

// What is left is found in tables that were replaced, by value, by name and by type.
TEST(MemoryAfterCollection, WhatIsLeftIsFound) {
  TermManager m;
  fill(m);
  const DataType* sort = m.get_simple_type("name 77", /*only_existing=*/true);
  ASSERT_NE(sort, nullptr);
  const Term_* big = m.make_number(QNumber::from_string("-123456789012345678901234567890/77"));
  const std::vector<const Term_*> terms = {
      m.make_number(11999), big, m.make_bv_number(5, 64),
      m.make_constant(m.make_symbol("name 3", m.get_bv_type(64)))};
  const std::vector<const Symbol*> symbols = {m.make_bv_add_symbol(77),
                                              m.make_fp_mul_symbol(5, 78),
                                              m.make_bv_extract_symbol(82, 77, 100000),
                                              m.make_int_modular_congruence_symbol(79),
                                              m.make_array_read_symbol(sort, m.get_bv_type(64)),
                                              m.make_equality_symbol(sort)};
  m.gc(terms, symbols, {});
  EXPECT_EQ(m.check_consistency(), "");

  const size_t terms_left = m.get_bank()->size();
  const size_t symbols_left = m.get_signature()->size();
  EXPECT_EQ(m.make_number(11999), terms[0]);
  EXPECT_EQ(m.make_number(QNumber::from_string("-123456789012345678901234567890/77")), big);
  EXPECT_EQ(m.make_bv_number(5, 64), terms[2]);
  EXPECT_EQ(m.make_constant(m.make_symbol("name 3", m.get_bv_type(64))), terms[3]);
  EXPECT_EQ(m.make_bv_add_symbol(77), symbols[0]);
  EXPECT_EQ(m.make_fp_mul_symbol(5, 78), symbols[1]);
  EXPECT_EQ(m.make_bv_extract_symbol(82, 77, 100000), symbols[2]);
  EXPECT_EQ(m.make_int_modular_congruence_symbol(79), symbols[3]);
  EXPECT_EQ(m.make_array_read_symbol(sort, m.get_bv_type(64)), symbols[4]);
  EXPECT_EQ(m.make_equality_symbol(sort), symbols[5]);
  EXPECT_EQ(m.get_bank()->size(), terms_left);
  EXPECT_EQ(m.get_signature()->size(), symbols_left);
  QNumber value;
  EXPECT_TRUE(m.is_number(big->symbol, &value));
  EXPECT_EQ(value, QNumber::from_string("-123456789012345678901234567890/77"));
}

}  // namespace
}  // namespace quill
