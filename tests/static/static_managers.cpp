// Managers that are static or thread-local objects.
//
// They are made before main() or in the middle of it, are destroyed after it or when their thread
// ends, and still do then what managers do: make, normalise, print, read, refuse, copy and collect.
// A fault shows as another text, a GMP number that is not freed, or a report of the address
// sanitizer. The program prints nothing and ends with status 0, or prints the first fault and ends
// with status 1.

#include <gmp.h>

#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <sstream>
#include <string>
#include <string_view>
#include <thread>

#include "quill/frontends/smt2/smt2.h"
#include "quill/quill.h"

namespace {

using quill::DataType;
using quill::QNumber;
using quill::Symbol;
using quill::Term_;
using quill::TermManager;

void require(bool holds, const char* what) {
  if (holds) return;
  std::fprintf(stderr, "static_managers: %s\n", what);
  std::_Exit(1);
}

void require_text(std::string_view text, std::string_view expected) {
  if (text == expected) return;
  std::fprintf(stderr, "static_managers: \"%.*s\" instead of \"%.*s\"\n",
               static_cast<int>(text.size()), text.data(), static_cast<int>(expected.size()),
               expected.data());
  std::_Exit(1);
}

// Blocks that GMP holds, each with its size in front, of all threads, which run one after the
// other.
size_t blocks_held = 0;

struct Block {
  size_t size;
  size_t mark;
};
constexpr size_t live = 0x6b636f6c62706d67;

void* allocate(size_t size) {
  auto* block = static_cast<Block*>(std::malloc(sizeof(Block) + size));
  require(block != nullptr, "out of memory");
  *block = {size, live};
  ++blocks_held;
  return block + 1;
}

void release(void* memory, size_t) {
  Block* const block = static_cast<Block*>(memory) - 1;
  require(block->mark == live, "GMP frees a block that it does not hold");
  block->mark = 0;
  --blocks_held;
  std::free(block);
}

void* reallocate(void* memory, size_t, size_t size) {
  void* const larger = allocate(size);
  const size_t size_before = (static_cast<Block*>(memory) - 1)->size;
  std::memcpy(larger, memory, size_before < size ? size_before : size);
  release(memory, 0);
  return larger;
}

// Constructed first, so that it is destroyed after everything else.
struct Balance {
  Balance() { mp_set_memory_functions(allocate, reallocate, release); }
  ~Balance() { require(blocks_held == 0, "GMP holds memory at the end"); }
};
const Balance balance;

std::string printed(TermManager& m, const Term_* t) {
  std::ostringstream out;
  out << quill::outterm(&m, t);
  return out.str();
}

// The large numbers that are normalised have a common divisor.
QNumber large_third() {
  QNumber n;
  QNumber d;
  quill::BVNumber::pow2(100, &n);
  quill::BVNumber::pow2(100, &d);
  quill::GmpInteger triple;
  mpz_mul_ui(triple, d.big_num(), 3);
  QNumber third(n.big_num(), triple);
  third.normalize();
  return third;
}

// A manager that is used when it is made and when it is destroyed.
class Work {
 public:
  explicit Work(const char* own_name) : name(own_name) { use(); }
  ~Work() { use(); }
  Work(const Work&) = delete;
  Work& operator=(const Work&) = delete;

  void use() {
    const DataType* integer = manager.get_int_type();
    const DataType* byte = manager.get_bv_type(8);
    const DataType* function = manager.get_function_type({integer, byte}, integer);
    require_text(function->to_str(), "(-> Int (BitVec 8) Int)");
    require_text(function->get_name(), "");
    require_text(function->get_component(0)->get_name(), "->");

    const Term_* x = manager.make_constant(manager.make_symbol(name, integer));
    const Term_* sum = manager.make_plus(x, manager.make_number(7));
    require_text(printed(manager, sum), "(+ " + name + " 7)");
    require_text(manager.to_shallow_str_literal(sum), "(`+_int` " + name + " 7)");

    require_text(large_third().to_str(), "1/3");
    const Term_* third = manager.make_number(large_third());
    require_text(printed(manager, third), "(/ 1.0 3.0)");
    const Term_* rounded =
        manager.make_fp_rat_number(QNumber(1, 3), 5, 10, manager.make_fprounding_even());
    require_text(printed(manager, rounded), "(fp #b0 #b01101 #b0101010101)");
    QNumber size;
    require(manager.is_finite_domain_type(manager.get_bv_type(100), &size), "an infinite type");
    require_text(size.to_str(), "1267650600228229401496703205376");

    try {
      manager.make_bv_not(x);
      require(false, "the negation of the bits of an integer is accepted");
    } catch (const TermManager::error& e) {
      require_text(e.what(), "type error. term " + name + "is not a bit-vector");
    }

    TermManager other;
    require_text(printed(other, other.copy_term(manager, sum)), "(+ " + name + " 7)");
    std::istringstream in(
        "(declare-const r Real)(assert (<= r (/ 1267650600228229401496703205376.0 3.0)))");
    const quill::smt2::Script script = quill::smt2::read(in, other);
    std::ostringstream out;
    quill::smt2::write(out, other, script);
    require_text(
        out.str(),
        "(declare-const r Real)\n(assert (<= r (/ 1267650600228229401496703205376.0 3.0)))\n");

    manager.gc({sum}, {}, {});
    require_text(printed(manager, sum), "(+ " + name + " 7)");
  }

 private:
  const std::string name;
  TermManager manager;
};

// Filled in main(), when the objects below have been made, and destroyed after them.
std::unique_ptr<Work> filled_in_main;

// Made before main(), and before the first use of anything that the library keeps; destroyed after
// all of main's.
Work made_before_main("made_before_main");

// Made when its thread first asks for it, which is before that thread's first use of a number.
Work& of_this_thread() {
  thread_local Work work("of_this_thread");
  return work;
}

// The object that a thread makes first is destroyed last: it uses a manager after the library has
// given back the thread's numbers.
void use_in_a_thread() {
  struct Early {
    TermManager manager;
    ~Early() {
      require_text(large_third().to_str(), "1/3");
      QNumber power;
      quill::BVNumber::pow2(200, &power);
      require_text(printed(manager, manager.make_number(power)),
                   "1606938044258990275541962092341162602522202993782792835301376");
    }
  };
  thread_local Early early;
  early.manager.make_true();
  of_this_thread().use();
}

}  // namespace

int main() {
  of_this_thread().use();
  const size_t held_before = blocks_held;
  std::thread(use_in_a_thread).join();
  require(blocks_held == held_before, "a thread that ended holds numbers");
  filled_in_main = std::make_unique<Work>("filled_in_main");
  static Work made_in_main("made_in_main");
  made_in_main.use();
  made_before_main.use();
}
