#include "quill/smtlib/logic.h"

#include <algorithm>
#include <iterator>

namespace quill {

namespace {

constexpr uint32_t bit(Theory theory) { return 1u << static_cast<unsigned>(theory); }

constexpr uint32_t ints = bit(Theory::INTS);
constexpr uint32_t reals = bit(Theory::REALS);
constexpr uint32_t mixed = ints | reals | bit(Theory::REALS_INTS);

struct Piece {
  std::string_view name;
  uint32_t theories;
  char order;  // of arithmetic: D, L or N; blank for other pieces
};

// The first piece that matches is taken, so a piece comes before its own prefixes.
// clang-format off
constexpr Piece pieces[] = {
    {"UF",   0,                           ' '},
    {"AX",   bit(Theory::ARRAYS),         ' '},
    {"A",    bit(Theory::ARRAYS),         ' '},
    {"BV",   bit(Theory::BIT_VECTORS),    ' '},
    {"FP",   bit(Theory::FLOATING_POINT), ' '},
    {"S",    bit(Theory::STRINGS),        ' '},
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
    case Theory::NONE:
      return "no theory";
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
    case Theory::BITS:
      return "the theory of bit-vectors";
    case Theory::FLOATING_POINT:
      return "the theory of floating-point numbers";
    case Theory::STRINGS:
      return "the theory of strings";
    case Theory::EXTENSIONS:
      return "an extension of the standard";
  }
  return "";
}

Logic::Logic(std::string_view given_name) : logic_name(given_name) {
  std::string_view rest = logic_name;
  if (rest.substr(0, 3) == "QF_") rest.remove_prefix(3);
  uint32_t found = bit(Theory::CORE);
  bool found_free_sorts = false;
  bool found_free_functions = false;
  Order found_order = Order::NONE;
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
    if (piece->order == 'D') found_order = Order::DIFFERENCE;
    if (piece->order == 'L') found_order = Order::LINEAR;
    if (piece->order == 'N') found_order = Order::ANY;
    rest.remove_prefix(piece->name.size());
  }
  theories = found;
  widely_known = is_known(logic_name);
  free_sorts = found_free_sorts;
  free_functions = found_free_functions;
  order = found_order;
}

bool Logic::covers(const LogicNeeds& needs) const {
  return (!needs.ints || has(Theory::INTS)) && (!needs.reals || has(Theory::REALS)) &&
         (!needs.both || has(Theory::REALS_INTS)) && (!needs.free_functions || free_functions) &&
         (!needs.free_sorts || free_sorts) && (!needs.arrays || has(Theory::ARRAYS)) &&
         (!needs.bits || has(Theory::BITS)) && (!needs.bit_vectors || has(Theory::BIT_VECTORS)) &&
         (!needs.floating_point || has(Theory::FLOATING_POINT)) &&
         (!needs.everything || has(Theory::EXTENSIONS)) &&
         (!needs.linear || order >= Order::LINEAR) && (!needs.nonlinear || order == Order::ANY);
}

Logic Logic::extended_by(const LogicNeeds& needs) const {
  if (covers(needs)) return *this;
  const bool with_ints = needs.ints || needs.both || has(Theory::INTS);
  const bool with_reals = needs.reals || needs.both || has(Theory::REALS);
  const bool with_floats = needs.floating_point || has(Theory::FLOATING_POINT);
  const bool with_bits =
      needs.bit_vectors || has(Theory::BIT_VECTORS) || (needs.bits && !with_floats);
  std::string combined = logic_name.substr(0, 3) == "QF_" ? "QF_" : "";
  if (needs.arrays || has(Theory::ARRAYS)) combined += 'A';
  if (needs.free_functions || needs.free_sorts || free_sorts) combined += "UF";
  if (with_bits) combined += "BV";
  if (with_floats) combined += "FP";
  if (has(Theory::STRINGS)) combined += 'S';
  const bool differences = order == Order::DIFFERENCE && !needs.linear && !needs.nonlinear;
  if (differences && with_ints != with_reals) {
    combined += with_ints ? "IDL" : "RDL";
  } else if (with_ints || with_reals) {
    combined += needs.nonlinear || order == Order::ANY ? 'N' : 'L';
    if (with_ints) combined += 'I';
    if (with_reals) combined += 'R';
    combined += 'A';
  }
  return Logic(is_known(combined) && !needs.everything ? std::string_view(combined) : "ALL");
}

}  // namespace quill
