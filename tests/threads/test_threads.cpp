// Managers on several threads: one for each thread, one that moves from thread to thread, and one
// that all threads read; and managers in a process that forks. This is a separate program, so that
// it can be built with ThreadSanitizer and run in minutes.

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <exception>
#include <functional>
#include <memory>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "quill/printers/outterm.h"
#include "quill/terms/termmanager/term_manager.h"
#include "quill/terms/termmanager/term_visitor.h"
#include "quill/utils/gcd_cache.h"
#include "tests/journal/journal.h"

namespace quill {
namespace {

constexpr size_t num_threads = 8;

// Runs action(0) to action(7), each in a thread of its own, all at the same time.
void in_threads(const std::function<void(size_t)>& action) {
  std::vector<std::thread> threads;
  for (size_t n = 0; n < num_threads; ++n) threads.emplace_back(action, n);
  for (std::thread& thread : threads) thread.join();
}

std::string journal(uint64_t seed) {
  std::ostringstream lines;
  journal::Journal(seed, lines).perform(4000);
  return lines.str();
}

// The journals hold numerals of 200 bits, floating-point numerals, copies, collections and texts.
TEST(Threads, EachWithItsOwnManagersDoesWhatASingleThreadDoes) {
  std::array<std::string, num_threads> together;
  in_threads([&](size_t n) { together[n] = journal(n); });
  for (size_t n = 0; n < num_threads; ++n) EXPECT_TRUE(together[n] == journal(n)) << "seed " << n;
}

TEST(Threads, TheSameCallsOnAllThreadsGiveTheSame) {
  std::array<std::string, num_threads> together;
  in_threads([&](size_t n) { together[n] = journal(100); });
  for (size_t n = 1; n < num_threads; ++n) EXPECT_TRUE(together[n] == together[0]) << n;
}

TEST(Threads, AJournalGoesOnInAnotherThread) {
  const std::string expected = journal(7);
  std::ostringstream lines;
  std::unique_ptr<journal::Journal> moving;
  std::thread([&] { moving = std::make_unique<journal::Journal>(7, lines); }).join();
  for (int i = 0; i < 4; ++i) std::thread([&] { moving->perform(1000); }).join();
  std::thread([&] { moving.reset(); }).join();
  EXPECT_TRUE(lines.str() == expected);
}

TEST(Threads, AManagerIsMadeUsedAndDestroyedOnDifferentThreads) {
  std::unique_ptr<TermManager> m;
  const Term_* sum = nullptr;
  std::string text;
  std::thread([&] { m = std::make_unique<TermManager>(); }).join();
  std::thread([&] {
    const Term_* x = m->make_constant(m->make_symbol("x", m->get_int_type()));
    const QNumber large =
        QNumber::from_string("1606938044258990275541962092341162602522202993782792835301376");
    sum = m->make_plus(x, m->make_number(large));
    m->make_fp_rat_number(QNumber(1, 3), 8, 23, m->make_fprounding_even());
    m->gc({sum}, {}, {});
  }).join();
  std::thread([&] {
    std::ostringstream out;
    out << outterm(m.get(), sum);
    text = out.str();
    m.reset();
  }).join();
  EXPECT_EQ(text, "(+ x 1606938044258990275541962092341162602522202993782792835301376)");
}

// What each thread reads of a manager that nobody changes.
struct Counter {
  size_t visits = 0;
  int visit(const Term_*, bool) {
    ++visits;
    return 2;
  }
};

std::string read(TermManager& shared, const std::vector<const Term_*>& roots) {
  std::ostringstream out;
  Counter counter;
  std::vector<bool> marks;
  TermVisitor<Counter> visitor(&counter, /*visit_once=*/true);
  visitor.set_marks(&marks);
  TermManager own;
  for (const Term_* t : roots) {
    visitor.visit(t, /*clear_marks=*/true);
    const Term_* copy = own.copy_term(shared, t);
    out << counter.visits << ' ' << outterm(&shared, t) << '\n'
        << t->to_str() << ' ' << shared.to_shallow_str_literal(t) << '\n'
        << copy->id << ' ' << outterm(&own, copy) << '\n'
        << t->symbol->type->to_str() << shared.is_interpreted(t->symbol) << '\n';
  }
  std::vector<const Term_*> copies;
  own.copy_terms(shared, roots, copies, /*use_manager_marks=*/true);
  for (const Term_* t : copies) out << t->id << ' ';
  return out.str();
}

TEST(Threads, AllReadOneManagerThatNobodyChanges) {
  TermManager m;
  const DataType* bytes = m.get_bv_type(8);
  const Term_* array = m.make_constant(m.make_symbol("a", m.get_array_type(bytes, bytes)));
  const Term_* index = m.make_constant(m.make_symbol("i", bytes));
  const Term_* mode = m.make_fprounding_zero();
  std::vector<const Term_*> roots;
  const Term_* large = m.make_bv_number(QNumber::from_string("1" + std::string(60, '0')), 200);
  for (int i = 0; i < 60; ++i) {
    const Term_* byte = m.make_bv_number(i, 8);
    index = m.make_bv_add(index, byte);
    array = m.make_array_write(array, index, byte);
    const Term_* is_less = m.make_bv_ult(m.make_array_read(array, index), index);
    const Term_* number = m.make_fp_rat_number(QNumber(i, 7), 5, 10, mode);
    const Term_* bits = m.make_fp_as_ieeebv(m.make_fp_add(mode, number, number));
    const Term_* has_bits = m.make_equal(bits, m.make_bv_number(i, 16));
    large = m.make_bv_rotate_left(static_cast<size_t>(i), large);
    const Term_* is_large = m.make_equal(large, m.make_bv_not(large));
    const Term_* both = m.make_and(has_bits, is_large);
    roots.push_back(m.make_and(is_less, both));
  }
  const size_t terms = m.get_bank()->size();
  const std::string expected = read(m, roots);
  std::array<std::string, num_threads> texts;
  in_threads([&](size_t n) { texts[n] = read(m, roots); });
  for (size_t n = 0; n < num_threads; ++n) EXPECT_TRUE(texts[n] == expected) << n;
  EXPECT_EQ(m.get_bank()->size(), terms);
  EXPECT_EQ(m.check_consistency(), "");
}

// What a thread throws may be kept and thrown again in all others.
TEST(Threads, AllReadTheTextOfOneError) {
  std::exception_ptr shared;
  try {
    TermManager m;
    m.make_bv_not(m.make_constant(m.make_symbol("x", m.get_int_type())));
  } catch (...) {
    shared = std::current_exception();
  }
  std::array<std::string, num_threads> texts;
  in_threads([&](size_t n) {
    try {
      std::rethrow_exception(shared);
    } catch (const TermManager::error& e) {
      texts[n] = e.what();
    }
  });
  EXPECT_NE(texts[0], "");
  for (size_t n = 1; n < num_threads; ++n) EXPECT_EQ(texts[n], texts[0]);
}

// The one table of the process: all threads fill it and find the same.
TEST(Threads, AllFillTheTableOfDivisors) {
  std::array<uint64_t, num_threads> sums{};
  in_threads([&](size_t n) {
    for (uint64_t a = 1; a <= 300; ++a) {
      for (uint64_t b = 1; b <= 300; ++b) sums[n] += gcd(a, b);
    }
  });
  for (const uint64_t sum : sums) EXPECT_EQ(sum, 336784U);
}

// What the action returns in a child process.
std::string output_of_fork(const std::function<std::string()>& action) {
  int ends[2];
  if (pipe(ends) != 0) return "no pipe";
  const pid_t child = fork();
  if (child == 0) {
    close(ends[0]);
    const std::string text = action();
    size_t written = 0;
    while (written < text.size()) {
      const ssize_t n = write(ends[1], text.data() + written, text.size() - written);
      if (n <= 0) _exit(1);
      written += static_cast<size_t>(n);
    }
    _exit(0);
  }
  close(ends[1]);
  std::string text;
  std::array<char, 4096> piece;
  for (ssize_t n; (n = ::read(ends[0], piece.data(), piece.size())) > 0;) {
    text.append(piece.data(), static_cast<size_t>(n));
  }
  close(ends[0]);
  int status = -1;
  if (child < 0 || waitpid(child, &status, 0) != child || status != 0) return "a failed child";
  return text;
}

// From a thread, whose scratch integer has been used, while others may have managers of their own.
TEST(Fork, ParentAndChildGoOnApart) {
  const std::string expected = journal(7);
  std::thread([&] {
    std::ostringstream lines;
    journal::Journal both(7, lines);
    both.perform(2000);
    const auto go_on = [&] {
      both.perform(2000);
      return lines.str();
    };
    EXPECT_TRUE(output_of_fork(go_on) == expected);
    EXPECT_TRUE(go_on() == expected);
    EXPECT_TRUE(output_of_fork([&] {
                  both.perform(100);
                  return std::string("later");
                }) == "later");
  }).join();
}

}  // namespace
}  // namespace quill
