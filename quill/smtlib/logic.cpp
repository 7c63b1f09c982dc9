#include "quill/smtlib/logic.h"

#include <algorithm>
#include <iterator>

namespace quill {

namespace {

constexpr uint32_t bit(Theory theory) { return 1u << static_cast<unsigned>(theory); }

constexpr uint32_t ints = bit(Theory::Ints);
constexpr uint32_t reals = bit(Theory::Reals);
constexpr uint32_t mixed = ints | reals | bit(Theory::RealsInts);

struct Piece {
  std::string_view name;
  uint32_t theories;
  char order;  // of arithmetic: D, L or N; blank for other pieces
};

// The first piece that matches is taken, so a piece comes before its own prefixes.
// clang-format off
constexpr Piece pieces[] = {
    {"UF",   0,                           ' '},
    {"AX",   bit(Theory::Arrays),         ' '},
    {"A",    bit(Theory::Arrays),         ' '},
    {"BV",   bit(Theory::BitVectors),    ' '},
    {"FP",   bit(Theory::FloatingPoint), ' '},
    {"S",    bit(Theory::Strings),        ' '},
    {"IDL",  ints,                        'D'},
    {"RDL",  reals,                       'D'},
    {"LIRA", mixed,                       'L'},
    {"NIRA", mixed,                       'N'},
    {"LIA",  ints,                        'L'},
    {"NIA",  ints,                        'N'},
    {"LRA",  reals,                       'L'},
    {"NRA",  reals,                       'N'},
};
// clang-format on

// The combinations known to readers that have a fixed list of names, such as z3. QF_UFLIRA is not
// one.
constexpr std::string_view known[] = {
    "QF_UF",    "QF_IDL",    "QF_RDL",     "QF_LIA",    "QF_LRA",     "QF_LIRA",
    "QF_NIA",   "QF_NRA",    "QF_NIRA",    "QF_UFIDL",  "QF_UFRDL",   "QF_UFLIA",
    "QF_UFLRA", "QF_UFNIA",  "QF_UFNRA",   "QF_UFNIRA", "QF_AX",      "QF_ALIA",
    "QF_ANIA",  "QF_AUFLIA", "QF_AUFLIRA", "QF_AUFNIA", "QF_AUFNIRA", "QF_BV",
    "QF_ABV",   "QF_UFBV",   "QF_AUFBV",   "QF_FP",     "QF_BVFP",    "QF_FPLRA",
};

bool is_known(std::string_view name) {
  return std::find(std::begin(known), std::end(known), name) != std::end(known);
}

}  // namespace

const char* describe(Theory theory) {
  switch (theory) {
    case Theory::NoTheory:
      return "no theory";
    case Theory::Core:
      return "the core theory";
    case Theory::Ints:
      return "the theory of integers";
    case Theory::Reals:
      return "the theory of reals";
    case Theory::Arithmetic:
      return "arithmetic";
    case Theory::RealsInts:
      return "the theory of reals and integers";
    case Theory::Arrays:
      return "the theory of arrays";
    case Theory::BitVectors:
    case Theory::Bits:
      return "the theory of bit-vectors";
    case Theory::FloatingPoint:
      return "the theory of floating-point numbers";
    case Theory::Strings:
      return "the theory of strings";
    case Theory::Extensions:
      return "an extension of the standard";
  }
  return "";
}

Logic::Logic(std::string_view logic_name_) : logic_name(logic_name_) {
  std::string_view rest = logic_name;
  if (rest.substr(0, 3) == "QF_") rest.remove_prefix(3);
  uint32_t found = bit(Theory::Core);
  bool found_free_sorts = false;
  bool found_free_functions = false;
  Order found_order = Order::NoProducts;
  while (!rest.empty()) {
    const Piece* piece =
        std::find_if(std::begin(pieces), std::end(pieces), [&](const Piece& candidate) {
          return rest.substr(0, candidate.name.size()) == candidate.name;
        });
    if (piece == std::end(pieces)) return;  // not a combination: provides everything
    found |= piece->theories;
    // AX, arrays on their own, comes with uninterpreted sorts.
    if (piece->name == "UF" || piece->name == "AX") found_free_sorts = true;
    if (piece->name == "UF") found_free_functions = true;
    if (piece->order == 'D') found_order = Order::Difference;
    if (piece->order == 'L') found_order = Order::Linear;
    if (piece->order == 'N') found_order = Order::Any;
    rest.remove_prefix(piece->name.size());
  }
  theories = found;
  widely_known = is_known(logic_name);
  free_sorts = found_free_sorts;
  free_functions = found_free_functions;
  order = found_order;
}

bool Logic::covers(const LogicNeeds& needs) const {
  return (!needs.ints || has(Theory::Ints)) && (!needs.reals || has(Theory::Reals)) &&
         (!needs.both || has(Theory::RealsInts)) && (!needs.free_functions || free_functions) &&
         (!needs.free_sorts || free_sorts) && (!needs.arrays || has(Theory::Arrays)) &&
         (!needs.bits || has(Theory::Bits)) && (!needs.bit_vectors || has(Theory::BitVectors)) &&
         (!needs.floating_point || has(Theory::FloatingPoint)) &&
         (!needs.everything || has(Theory::Extensions)) &&
         (!needs.linear || order >= Order::Linear) && (!needs.nonlinear || order == Order::Any);
}

Logic Logic::extended_by(const LogicNeeds& needs) const {
  if (covers(needs)) return *this;
  const bool with_ints = needs.ints || needs.both || has(Theory::Ints);
  const bool with_reals = needs.reals || needs.both || has(Theory::Reals);
  const bool with_floats = needs.floating_point || has(Theory::FloatingPoint);
  const bool with_bits =
      needs.bit_vectors || has(Theory::BitVectors) || (needs.bits && !with_floats);
  std::string combined = logic_name.substr(0, 3) == "QF_" ? "QF_" : "";
  if (needs.arrays || has(Theory::Arrays)) combined += 'A';
  if (needs.free_functions || needs.free_sorts || free_sorts) combined += "UF";
  if (with_bits) combined += "BV";
  if (with_floats) combined += "FP";
  if (has(Theory::Strings)) combined += 'S';
  const bool differences = order == Order::Difference && !needs.linear && !needs.nonlinear;
  if (differences && with_ints != with_reals) {
    combined += with_ints ? "IDL" : "RDL";
  } else if (with_ints || with_reals) {
    combined += needs.nonlinear || order == Order::Any ? 'N' : 'L';
    if (with_ints) combined += 'I';
    if (with_reals) combined += 'R';
    combined += 'A';
  }
  return Logic(is_known(combined) && !needs.everything ? std::string_view(combined) : "ALL");
}

}  // namespace quill
