// random_scripts FIRST COUNT: writes the random scripts of the seeds FIRST, FIRST + 1, ... to
// standard output, each after a line "; script SEED", and checks that each reads back to the same
// terms and prints as the same text. The last lines, which are also comments, say which bytes and
// words were in use as names. If a check fails, the exit status is 1 and standard error says what
// is wrong.

#include <cstdlib>
#include <iostream>
#include <set>
#include <sstream>
#include <string>

#include "quill/frontends/smt2/smt2.h"
#include "tests/random/round_trip.h"

int main(int argc, char** argv) {
  using namespace quill::smt2;
  if (argc != 3) {
    std::cerr << "usage: random_scripts FIRST COUNT\n";
    return 2;
  }
  const auto first = static_cast<uint32_t>(std::strtoul(argv[1], nullptr, 10));
  const auto count = static_cast<uint32_t>(std::strtoul(argv[2], nullptr, 10));
  std::set<unsigned char> bytes;
  std::set<std::string> names;
  bool good = true;
  for (uint32_t seed = first; seed != first + count; ++seed) {
    quill::TermManager manager;
    const RandomScript random(manager, seed);
    std::string text;
    const std::string fault = round_trip_fault(manager, random.script, text);
    if (!fault.empty()) {
      std::cerr << "script " << seed << ": " << fault << '\n';
      good = false;
    }
    std::cout << "; script " << seed << '\n' << text;
    for (const std::string& name : random.names) {
      names.insert(name);
      bytes.insert(name.begin(), name.end());
    }
  }
  std::cout << "; " << names.size() << " names, " << bytes.size() << " bytes\n";
  return good ? 0 : 1;
}
