#include "frontends/smt2/logic.h"

#include <string_view>

namespace quill::smt2 {

namespace {

constexpr uint32_t bit(Theory theory) { return 1u << static_cast<unsigned>(theory); }

constexpr uint32_t ints = bit(Theory::INTS);
constexpr uint32_t reals = bit(Theory::REALS);
constexpr uint32_t mixed = ints | reals | bit(Theory::REALS_INTS);

struct Piece {
  std::string_view name;
  uint32_t theories;
};

// The first piece that fits is taken, so a piece stands before its own prefixes.
constexpr Piece pieces[] = {
    {"UF", 0},
    {"AX", bit(Theory::ARRAYS)},
    {"A", bit(Theory::ARRAYS)},
    {"BV", bit(Theory::BIT_VECTORS)},
    {"FP", bit(Theory::FLOATING_POINT)},
    {"S", bit(Theory::STRINGS)},
    {"IDL", ints},
    {"RDL", reals},
    {"LIRA", mixed},
    {"NIRA", mixed},
    {"LIA", ints},
    {"NIA", ints},
    {"LRA", reals},
    {"NRA", reals},
};

}  // namespace

const char* describe(Theory theory) {
  switch (theory) {
    case Theory::CORE:
      return "the core theory";
    case Theory::INTS:
      return "the theory of integers";
    case Theory::REALS:
      return "the theory of reals";
    case Theory::ARITHMETIC:
      return "arithmetic";
    case Theory::REALS_INTS:
      return "the theory of reals and integers";
    case Theory::ARRAYS:
      return "the theory of arrays";
    case Theory::BIT_VECTORS:
      return "the theory of bit-vectors";
    case Theory::FLOATING_POINT:
      return "the theory of floating-point numbers";
    case Theory::STRINGS:
      return "the theory of strings";
  }
  return "";
}

Logic::Logic(const std::string& given_name) : logic_name(given_name) {
  std::string_view rest = logic_name;
  if (rest.substr(0, 3) == "QF_") rest.remove_prefix(3);
  uint32_t found = bit(Theory::CORE);
  while (!rest.empty()) {
    const Piece* piece = nullptr;
    for (const Piece& candidate : pieces) {
      if (rest.substr(0, candidate.name.size()) == candidate.name) {
        piece = &candidate;
        break;
      }
    }
    if (piece == nullptr) return;  // no combination: every theory
    found |= piece->theories;
    rest.remove_prefix(piece->name.size());
  }
  theories = found;
}

}  // namespace quill::smt2
