// What streams show of terms, symbols and types.

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "quill/terms/termmanager/term_manager.h"
#include "tests/support/manager_test.h"

namespace quill {
namespace {

class StreamOutput : public testing::ManagerTest {
 protected:
  template <class T>
  static std::string text(const T& value) {
    std::ostringstream out;
    out << value;
    return out.str();
  }
};

TEST_F(StreamOutput, ShowsTextAndNotAddresses) {
  const Term_* x = bv("x", 8);
  const Term_* sum = m.make_bv_add(x, m.make_bv_not(x));
  EXPECT_EQ(text(x), "x");
  EXPECT_EQ(text(sum), sum->to_shallow_str());
  EXPECT_EQ(text(sum), "(`bvadd_8` x #" + std::to_string(sum->args[1]->id) + ")");
  EXPECT_EQ(text(sum->symbol), "`bvadd_8`");
  EXPECT_EQ(text(sum->type()), "(BitVec 8)");
  EXPECT_EQ(text(sum->symbol->type), "(-> (BitVec 8) (BitVec 8) (BitVec 8))");
}

TEST_F(StreamOutput, NullIsNull) {
  const Term_* no_term = nullptr;
  const Symbol* no_symbol = nullptr;
  const DataType* no_type = nullptr;
  EXPECT_EQ(text(no_term), "null");
  EXPECT_EQ(text(no_symbol), "null");
  EXPECT_EQ(text(no_type), "null");
}

TEST_F(StreamOutput, LongTextIsCutOff) {
  const std::string name(200, 'a');
  EXPECT_EQ(text(constant(name, m.get_int_type())), name);
  EXPECT_EQ(text(constant(name + 'b', m.get_int_type())), name + "...");
  const Term_* longer = constant(name + "bc", m.get_int_type());
  EXPECT_EQ(text(longer->symbol), name + "...");
  EXPECT_EQ(text(m.make_plus(longer, longer)), "(`+_int` " + name.substr(9) + "...");
  const DataType* type = m.get_simple_type(name + "s", false);
  EXPECT_EQ(text(type), name + "...");
}

// The last character that fits is left out if only a part of it would.
TEST_F(StreamOutput, CharactersAreNotCut) {
  const std::string name = std::string(199, 'a') + "\xc3\xa9";
  EXPECT_EQ(text(constant(name, m.get_int_type())), std::string(199, 'a') + "...");
  const std::string fits = std::string(198, 'a') + "\xc3\xa9";
  EXPECT_EQ(text(constant(fits, m.get_int_type())), fits);
}

TEST_F(StreamOutput, DeepTypesAreShown) {
  const DataType* type = m.get_int_type();
  for (int i = 0; i < 100'000; ++i) type = m.get_array_type(m.get_int_type(), type);
  EXPECT_EQ(text(type).size(), 203U);
}

}  // namespace
}  // namespace quill
