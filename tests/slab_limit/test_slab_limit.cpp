// What happens when a bank has as many slabs as its handles can name. In this program the limit is
// 64 slabs instead of half a million.

#include <gtest/gtest.h>

#include <cstdint>
#include <new>
#include <string>
#include <vector>

#include "quill/terms/termmanager/term_manager.h"
#include "tests/support/unchanged.h"

namespace quill {
namespace {

using testing::StateBefore;

// Applications of 1023 arguments have a slab each; of its arity there is no smaller one.
class SlabLimit : public ::testing::Test {
 protected:
  SlabLimit() {
    const std::vector<const DataType*> arguments(1023, m.get_int_type());
    large = m.make_symbol("large", m.get_function_type(arguments, m.get_int_type()));
    matrix = m.make_symbol(
        "matrix", m.get_function_type({m.get_int_type(), m.get_int_type()}, m.get_int_type()));
    for (int i = 0; i < 100; ++i) {
      constants.push_back(
          m.make_constant(m.make_symbol("c" + std::to_string(i), m.get_int_type())));
    }
  }

  const Term_* make_large(size_t i) {
    return m.make_term(large, std::vector<const Term_*>(1023, constants[i]));
  }

  // As many as there may be.
  std::vector<const Term_*> fill() {
    std::vector<const Term_*> made;
    try {
      while (made.size() < constants.size()) made.push_back(make_large(made.size()));
    } catch (const std::bad_alloc&) {
      return made;
    }
    ADD_FAILURE() << "there is no limit";
    return made;
  }

  TermManager m;
  const Symbol* large = nullptr;
  const Symbol* matrix = nullptr;
  std::vector<const Term_*> constants;
};

TEST_F(SlabLimit, RequestsThatNeedASlabAreRefusedAndChangeNothing) {
  const std::vector<const Term_*> made = fill();
  EXPECT_GT(made.size(), 50U);
  EXPECT_EQ(m.get_bank()->memory_use().slabs, 64U);
  for (int repetition = 0; repetition < 3; ++repetition) {
    const StateBefore before(m);
    EXPECT_THROW(make_large(made.size()), std::bad_alloc);
    EXPECT_THROW(m.make_term(matrix, {constants[0], constants[1]}), std::bad_alloc);
    EXPECT_EQ(before.changes(), "");
  }
}

TEST_F(SlabLimit, EverythingElseGoesOn) {
  const std::vector<const Term_*> made = fill();
  for (size_t i = 0; i < made.size(); ++i) EXPECT_EQ(make_large(i), made[i]);
  EXPECT_EQ(m.make_constant(m.make_symbol("c7", m.get_int_type())), constants[7]);
  EXPECT_EQ(m.to_shallow_str_literal(constants[7]), "c7");
  EXPECT_EQ(m.make_symbol("new", m.get_int_type())->arity, 0U);
  EXPECT_EQ(m.get_bv_type(12345)->to_str(), "(BitVec 12345)");
  TermManager other;
  EXPECT_EQ(other.copy_term(m, constants[7])->symbol->name, std::string("c7"));
  EXPECT_EQ(m.check_consistency(), "");
}

TEST_F(SlabLimit, ACollectionMakesRoom) {
  const std::vector<const Term_*> made = fill();
  std::vector<const Term_*> kept = constants;
  kept.push_back(made[3]);
  m.gc(kept, {large}, {});
  EXPECT_EQ(make_large(3), made[3]);
  EXPECT_EQ(fill().size(), made.size());
  EXPECT_EQ(m.check_consistency(), "");
}

}  // namespace
}  // namespace quill
