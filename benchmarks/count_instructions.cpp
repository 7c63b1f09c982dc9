// Work for an instruction counter: what scripts/count-instructions runs under callgrind.
//
//   count_instructions WORK COUNT
//
// prepares the work and does it COUNT times within the function `measured`, which the counter looks
// for.

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "benchmarks/term_shapes.h"
#include "quill/terms/subterms.h"
#include "quill/terms/termmanager/term_manager.h"
#include "quill/terms/termmanager/term_visitor.h"

namespace {

using quill::Term_;
using quill::TermManager;
using quill::bench::Terms;

// What is done for each number from 0 on.
using Work = std::function<void(size_t)>;

}  // namespace

extern "C" [[gnu::noinline]] void measured(const Work& work, size_t count);
extern "C" void measured(const Work& work, size_t count) {
  for (size_t i = 0; i < count; ++i) work(i);
}

namespace {

constexpr size_t side = 64;  // constants; each pair is a request

void hit_bv_add(TermManager& m, size_t count) {
  const Terms x = quill::bench::make_constants(m, "x", side, 32);
  for (size_t i = 0; i < side * side; ++i) m.make_bv_add(x[i / side], x[i % side]);
  measured([&](size_t i) { m.make_bv_add(x[i / side % side], x[i % side]); }, count);
}

void hit_extract(TermManager& m, size_t count) {
  const Term_* x = quill::bench::make_constants(m, "x", 1, 64)[0];
  for (size_t i = 0; i < side; ++i) m.make_bv_extract(63, i, x);
  measured([&](size_t i) { m.make_bv_extract(63, i % side, x); }, count);
}

void hit_equal(TermManager& m, size_t count) {
  const Terms x = quill::bench::make_constants(m, "x", side, 32);
  for (size_t i = 0; i < side * side; ++i) m.make_equal(x[i / side], x[i % side]);
  measured([&](size_t i) { m.make_equal(x[i / side % side], x[i % side]); }, count);
}

void hit_fp_add(TermManager& m, size_t count) {
  Terms x;
  for (size_t i = 0; i < side; ++i) {
    x.push_back(m.make_constant(m.make_symbol("x" + std::to_string(i), m.get_fp_type(8, 23))));
  }
  const Term_* rm = m.make_fprounding_even();
  for (size_t i = 0; i < side; ++i) m.make_fp_add(rm, x[i], x[i]);
  measured([&](size_t i) { m.make_fp_add(rm, x[i % side], x[i % side]); }, count);
}

void hit_number(TermManager& m, size_t count) {
  for (size_t i = 0; i < side; ++i) m.make_number(i);
  measured([&](size_t i) { m.make_number(i % side); }, count);
}

void hit_bv_number(TermManager& m, size_t count) {
  for (size_t i = 0; i < side; ++i) m.make_bv_number(i, 32);
  measured([&](size_t i) { m.make_bv_number(i % side, 32); }, count);
}

void hit_fp_number(TermManager& m, size_t count) {
  for (size_t i = 0; i < side; ++i) m.make_fp_bits_number(i, 8, 23);
  measured([&](size_t i) { m.make_fp_bits_number(i % side, 8, 23); }, count);
}

void is_fp_add(TermManager& m, size_t count) {
  const quill::Symbol* s = m.make_fp_add_symbol(8, 23);
  measured([&](size_t) { m.is_fp_add(s, nullptr, nullptr); }, count);
}

void is_fp_cast(TermManager& m, size_t count) {
  const quill::Symbol* s = m.make_fp_cast_symbol(8, 23, 11, 52);
  measured([&](size_t) { m.is_fp_cast(s, nullptr, nullptr, nullptr, nullptr); }, count);
}

void hit_fp_cast(TermManager& m, size_t count) {
  const Term_* x = m.make_constant(m.make_symbol("x", m.get_fp_type(8, 23)));
  const Term_* rm = m.make_fprounding_even();
  measured([&](size_t) { m.make_fp_cast(11, 52, rm, x); }, count);
}

// The names of the symbols asked for do not depend on COUNT: they are the first thousand, or those
// after a hundred thousand others.
void unique_symbols(TermManager& m, size_t before, size_t count) {
  const quill::DataType* type = m.get_int_type();
  for (size_t i = 0; i < before; ++i) m.make_unique_symbol("base", type);
  measured([&](size_t) { m.make_unique_symbol("base", type); }, count);
}

void numbered_symbols(TermManager& m, size_t before, size_t count) {
  const quill::DataType* type = m.get_int_type();
  const auto name = [](size_t i) { return "x" + std::to_string(i); };
  for (size_t i = 0; i < before; ++i) m.make_symbol(name(i), type);
  measured([&](size_t i) { m.make_symbol(name(before + i), type); }, count);
}

void copy_three_terms(TermManager& m, size_t count) {
  Terms terms = quill::bench::make_constants(m, "x", 1, 32);
  quill::bench::add_shape(m, quill::bench::Shape::LeftChain, terms, 1000000);
  const Term_* last = quill::bench::make_constants(m, "last", 1, 32)[0];
  const Term_* three = m.make_bv_not(m.make_bv_neg(last));
  TermManager target;
  target.copy_term(m, three);
  measured([&](size_t) { target.copy_term(m, three); }, count);
}

void operator_of_fp_add(TermManager& m, size_t count) {
  const quill::Symbol* s = m.make_fp_add_symbol(8, 23);
  uint64_t sum = 0;
  measured([&](size_t) { sum += m.operator_of(s).numbers[0]; }, count);
}

void operator_of_fp_cast(TermManager& m, size_t count) {
  const quill::Symbol* s = m.make_fp_cast_symbol(8, 23, 11, 52);
  uint64_t sum = 0;
  measured([&](size_t) { sum += m.operator_of(s).numbers[0]; }, count);
}

// A graph of so many terms, which has ids as they come from a program that builds several at once.
const Term_* make_graph(TermManager& m, size_t count) {
  Terms terms = quill::bench::make_constants(m, "x", 64, 32);
  while (terms.size() < count) {
    const Term_* a = terms[terms.size() - 1];
    const Term_* b = terms[terms.size() * 7919 % 1000003 % terms.size()];
    terms.push_back(m.make_bv_xor(a, b));
  }
  return terms.back();
}

struct CountingCallback {
  size_t count = 0;
  int visit(const Term_*, bool preorder) {
    count += preorder ? 0 : 1;
    return 2;
  }
};

// One walk, by the number of terms. (The number of walks is not known to the compiler, which would
// make a function of another name for it.)
void walk_visitor(TermManager& m, size_t count) {
  const Term_* root = make_graph(m, count);
  CountingCallback callback;
  quill::TermVisitor<CountingCallback> visitor(&callback, true);
  measured([&](size_t) { visitor.visit(root, true); }, std::min<size_t>(count, 1));
}

void walk_postorder(TermManager& m, size_t count) {
  const Term_* root = make_graph(m, count);
  size_t found = 0;
  const auto walk = [&](size_t) {
    for (const Term_* t : quill::postorder(root)) found += t->id != 0 ? 1 : 0;
  };
  measured(walk, std::min<size_t>(count, 1));
}

void walk_preorder(TermManager& m, size_t count) {
  const Term_* root = make_graph(m, count);
  size_t found = 0;
  const auto walk = [&](size_t) {
    for (const Term_* t : quill::preorder(root)) found += t->id != 0 ? 1 : 0;
  };
  measured(walk, std::min<size_t>(count, 1));
}

// Types that nothing uses, beside others of every kind and operators on them.
void free_types(TermManager& m, size_t before, size_t count) {
  for (size_t i = 0; i < before; ++i) {
    m.get_bv_type(i + 1);
    m.get_fp_type(2 + i % 100, 2 + i / 100);
    const quill::DataType* t = m.get_simple_type("other" + std::to_string(i), false);
    m.make_equality_symbol(t);
    m.make_array_read_symbol(m.get_int_type(), t);
  }
  std::vector<const quill::DataType*> types;
  for (size_t i = 0; i < count; ++i) {
    types.push_back(m.get_simple_type("type" + std::to_string(i), false));
  }
  measured([&](size_t i) { m.free_type(types[i]); }, count);
}

}  // namespace

int main(int argc, char** argv) {
  const std::map<std::string, void (*)(TermManager&, size_t)> works = {
      {"hit_bv_add", hit_bv_add},
      {"hit_extract", hit_extract},
      {"hit_equal", hit_equal},
      {"hit_fp_add", hit_fp_add},
      {"hit_fp_cast", hit_fp_cast},
      {"hit_number", hit_number},
      {"hit_bv_number", hit_bv_number},
      {"hit_fp_number", hit_fp_number},
      {"is_fp_add", is_fp_add},
      {"is_fp_cast", is_fp_cast},
      {"unique_symbols_first", [](TermManager& m, size_t count) { unique_symbols(m, 0, count); }},
      {"unique_symbols_late",
       [](TermManager& m, size_t count) { unique_symbols(m, 100000, count); }},
      {"numbered_symbols_first",
       [](TermManager& m, size_t count) { numbered_symbols(m, 0, count); }},
      {"numbered_symbols_late",
       [](TermManager& m, size_t count) { numbered_symbols(m, 100000, count); }},
      {"copy_three_terms", copy_three_terms},
      {"operator_of_fp_add", operator_of_fp_add},
      {"operator_of_fp_cast", operator_of_fp_cast},
      {"walk_visitor", walk_visitor},
      {"walk_postorder", walk_postorder},
      {"walk_preorder", walk_preorder},
      {"free_types_first", [](TermManager& m, size_t count) { free_types(m, 0, count); }},
      {"free_types_late", [](TermManager& m, size_t count) { free_types(m, 10000, count); }},
  };
  const auto work = works.find(argc == 3 ? argv[1] : "");
  if (work == works.end()) {
    std::fputs("usage: count_instructions WORK COUNT\n", stderr);
    return 2;
  }
  TermManager manager;
  work->second(manager, std::strtoul(argv[2], nullptr, 10));
}
