// Writes a journal of random calls, and its hash as the last line.
//
//   write_journal SEED CALLS [SHIFT]
//
// The program first allocates SHIFT blocks of memory, so that it writes the same journal with other
// addresses.

#include <cstdlib>
#include <exception>
#include <iostream>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "tests/journal/journal.h"

int main(int argc, char** argv) try {
  if (argc < 3 || argc > 4) {
    std::cerr << "usage: write_journal SEED CALLS [SHIFT]\n";
    return 2;
  }
  const unsigned long seed = std::stoul(argv[1]);
  const unsigned long calls = std::stoul(argv[2]);
  const unsigned long shift = argc == 4 ? std::stoul(argv[3]) : 0;

  // Every other block is freed, in no order, so that later allocations are scattered in memory.
  std::mt19937_64 random(shift);
  std::vector<std::unique_ptr<char[]>> blocks;
  for (unsigned long i = 0; i < shift; ++i) {
    blocks.push_back(std::make_unique<char[]>(16 + random() % 2000));
  }
  for (unsigned long i = 0; i < shift / 2; ++i) blocks[random() % blocks.size()].reset();

  std::ios::sync_with_stdio(false);
  quill::journal::Journal journal(seed, std::cout);
  journal.perform(calls);
  std::cout << calls << " calls, hash " << journal.hash() << '\n';
  return std::cout.flush() ? 0 : 1;
} catch (const std::exception& e) {
  std::cerr << "write_journal: " << e.what() << '\n';
  return 1;
}
