// Scripts changed at random: pieces of one or two seeds deleted, repeated, exchanged and nested,
// and single bytes, tokens and numbers replaced. A text depends on its number alone.

#ifndef TESTS_MUTATIONS_MUTATOR_H
#define TESTS_MUTATIONS_MUTATOR_H

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <random>
#include <string>
#include <utility>
#include <vector>

namespace quill::smt2 {

class Mutator {
 public:
  Mutator(const std::vector<std::string>& texts, uint64_t number)
      : seeds(texts), random(number * 0x9e3779b97f4a7c15 + 1) {}

  std::string make() {
    std::string text = pick_seed();
    for (size_t steps = below(3) == 0 ? 1 + below(6) : 1; steps != 0; --steps) change(text);
    return text;
  }

 private:
  static constexpr size_t longest = 1 << 17;

  using Range = std::pair<size_t, size_t>;  // from the first byte to the one after the last

  size_t below(size_t count) { return count == 0 ? 0 : static_cast<size_t>(random() % count); }
  const std::string& pick_seed() { return seeds[below(seeds.size())]; }

  void change(std::string& text) {
    const size_t kind = below(8);
    const Range range = kind == 0 ? bytes(text) : kind < 4 ? whole_command(text) : expression(text);
    const size_t length = range.second - range.first;
    switch (below(12)) {
      case 0:
        text.erase(range.first, length);
        break;
      case 1:
        text.insert(range.second, text.substr(range.first, length));
        break;
      case 2: {
        const std::string& other = pick_seed();
        const Range piece = expression(other);
        text.replace(range.first, length, other.substr(piece.first, piece.second - piece.first));
        break;
      }
      case 3: {
        const Range piece = expression(text);
        text.replace(range.first, length, text.substr(piece.first, piece.second - piece.first));
        break;
      }
      case 4:
        if (!text.empty()) text[below(text.size())] = static_cast<char>(below(256));
        break;
      case 5:
        text.insert(below(text.size() + 1), 1, "()|\"; \n:#!_0-.aA@\\"[below(18)]);
        break;
      case 6:
        text.replace(range.first, length, token());
        break;
      case 7:
        text.insert(whole_command(text).second, command());
        break;
      case 8:
        text += pick_seed();
        break;
      case 9:
        text.resize(below(text.size() + 1));
        break;
      case 10: {  // nested
        const size_t times = 1 + below(40);
        const std::string piece = text.substr(range.first, length);
        const std::string heads[] = {"(not ", "(- ", "(bvnot ", "(! ", "(let ((v "};
        const std::string& head = heads[below(5)];
        std::string nested;
        for (size_t i = 0; i < times; ++i) nested += head;
        nested += piece;
        for (size_t i = 0; i < times; ++i) {
          nested += head == "(! " ? " :named n" + std::to_string(i) + ")"
                                  : std::string(head == "(let ((v " ? ")) (= v v))" : ")");
        }
        text.replace(range.first, length, nested);
        break;
      }
      default:
        change_number(text);
        break;
    }
    if (text.size() > longest) text.resize(longest);
  }

  // Some bytes, one at least where there are any.
  Range bytes(const std::string& text) {
    const size_t first = below(text.size());
    return {first, std::min(text.size(), first + 1 + below(16))};
  }

  // An expression with its parentheses, or a word.
  Range expression(const std::string& text) {
    size_t first = below(text.size());
    while (first < text.size() && (text[first] == ' ' || text[first] == ')')) ++first;
    size_t end = first;
    int depth = 0;
    while (end < text.size()) {
      const char c = text[end++];
      if (c == '(') ++depth;
      if (c == ')' && --depth <= 0) {
        if (depth < 0) --end;
        break;
      }
      if (depth == 0 && end < text.size() &&
          (text[end] == ' ' || text[end] == '(' || text[end] == ')')) {
        break;
      }
    }
    return {first, end};
  }

  // A command, as far as parentheses tell.
  Range whole_command(const std::string& text) {
    std::vector<Range> found;
    size_t first = 0;
    int depth = 0;
    for (size_t i = 0; i < text.size(); ++i) {
      if (text[i] == '(' && depth++ == 0) first = i;
      if (text[i] == ')' && depth != 0 && --depth == 0) found.emplace_back(first, i + 1);
    }
    return found.empty() ? bytes(text) : found[below(found.size())];
  }

  void change_number(std::string& text) {
    const std::string numbers[] = {"0",
                                   "1",
                                   "2",
                                   "3",
                                   "64",
                                   "65",
                                   "65536",
                                   "1000001",
                                   "2000001",
                                   "4294967296",
                                   "100000000",
                                   "9223372036854775808",
                                   "999999999999",
                                   "18446744073709551615",
                                   "0.00000001",
                                   "123456789012345678901234567890"};
    size_t first = below(text.size());
    while (first < text.size() && (text[first] < '0' || text[first] > '9')) ++first;
    size_t end = first;
    while (end < text.size() && text[end] >= '0' && text[end] <= '9') ++end;
    text.replace(first, end - first, numbers[below(std::size(numbers))]);
  }

  std::string token() {
    const std::string tokens[] = {"x",
                                  "y",
                                  "p",
                                  "true",
                                  "3",
                                  "(- 3)",
                                  "0.5",
                                  "#b101",
                                  "#xff",
                                  "Int",
                                  "Bool",
                                  "Real",
                                  "Float32",
                                  "RNE",
                                  "quill!div_by_zero",
                                  "and",
                                  "not",
                                  "distinct",
                                  "ite",
                                  "let",
                                  "!",
                                  "_",
                                  "as",
                                  "+",
                                  "*",
                                  "div",
                                  "mod",
                                  "abs",
                                  "bvadd",
                                  "concat",
                                  "select",
                                  "store",
                                  "const",
                                  ":named",
                                  "extract",
                                  "NaN",
                                  "fp.to_ieee_bv",
                                  "sbv_to_int",
                                  "(_ int2bv 70000)",
                                  "(_ fp.to_ubv 8)",
                                  "(_ extract 3 0)",
                                  "(_ BitVec 8)",
                                  "(_ +oo 5 11)",
                                  "(Array Int Bool)",
                                  "|a b|",
                                  "\"s\"",
                                  "()"};
    return tokens[below(std::size(tokens))];
  }

  std::string command() {
    const std::string commands[] = {"(push 1)",
                                    "(push 3)",
                                    "(pop 1)",
                                    "(reset)",
                                    "(reset-assertions)",
                                    "(check-sat)",
                                    "(echo \"a\")",
                                    "(set-logic ALL)",
                                    "(set-logic QF_UF)",
                                    "(set-logic QF_FPLRA)",
                                    "(set-option :global-declarations true)",
                                    "(set-option :global-declarations false)",
                                    "(declare-const x Int)",
                                    "(declare-const y Bool)",
                                    "(declare-fun f (Int Bool) Int)",
                                    "(declare-sort S 0)",
                                    "(define-fun g ((a Int)) Int (div a 0))",
                                    "(define-const z Bool (! true :named w))",
                                    "(assert (! (= 1 (div 2 0)) :named v))",
                                    "(get-value (x))",
                                    "(check-sat-assuming (w v))",
                                    "(exit)"};
    return commands[below(std::size(commands))];
  }

  const std::vector<std::string>& seeds;
  std::mt19937_64 random;
};

}  // namespace quill::smt2

#endif
