#include "tests/life/pattern.h"

#include <cctype>

namespace quill::life {

namespace {

bool is_letter(char c) { return std::isalpha(static_cast<unsigned char>(c)) != 0; }

std::string fill_hole(const std::string& hole, const Bindings& bindings) {
  if (hole.size() == 1) return bindings.at(hole[0]);
  if (hole[0] != '~') return std::to_string(value_of(hole, bindings));
  const std::string& type = bindings.at(hole[1]);
  return type == "Real" ? "rat" : type == "Int" ? "int" : type;
}

}  // namespace

bool is_bound(const std::string& sum, const Bindings& bindings) {
  for (const char c : sum) {
    if (is_letter(c) && bindings.count(c) == 0) return false;
  }
  return true;
}

long value_of(const std::string& sum, const Bindings& bindings) {
  long value = 0;
  long sign = 1;
  for (size_t i = 0; i < sum.size(); ++i) {
    if (sum[i] == '+' || sum[i] == '-') {
      sign = sum[i] == '+' ? 1 : -1;
    } else if (is_letter(sum[i])) {
      value += sign * std::stol(bindings.at(sum[i]));
    } else {
      size_t digits = 0;
      value += sign * std::stol(sum.substr(i), &digits);
      i += digits - 1;
    }
  }
  return value;
}

std::string fill(const std::string& pattern, const Bindings& bindings) {
  std::string text;
  for (size_t i = 0; i < pattern.size(); ++i) {
    if (pattern[i] != '{') {
      text += pattern[i];
      continue;
    }
    const size_t end = pattern.find('}', i);
    text += fill_hole(pattern.substr(i + 1, end - i - 1), bindings);
    i = end;
  }
  return text;
}

bool match(const std::string& pattern, const std::string& text, Bindings& bindings) {
  size_t at = 0;
  for (size_t i = 0; i < pattern.size(); ++i) {
    if (pattern[i] != '{') {
      if (at >= text.size() || text[at] != pattern[i]) return false;
      ++at;
      continue;
    }
    const size_t end = pattern.find('}', i);
    const std::string hole = pattern.substr(i + 1, end - i - 1);
    i = end;
    if (hole.size() == 1 && bindings.count(hole[0]) == 0) {
      const std::string item = item_at(text, at);
      if (item.empty() || item == "Bool") return false;
      bindings[hole[0]] = item;
      at += item.size();
      continue;
    }
    const std::string filled = fill_hole(hole, bindings);
    if (text.compare(at, filled.size(), filled) != 0) return false;
    at += filled.size();
  }
  return at == text.size();
}

std::string item_at(const std::string& text, size_t start) {
  if (start >= text.size()) return "";
  size_t end = start;
  if (text[start] == '(') {
    size_t depth = 0;
    do {
      depth += text[end] == '(';
      depth -= text[end] == ')';
      ++end;
    } while (depth != 0);
  } else {
    end = text.find_first_of(" :|)", start);
    if (end == std::string::npos) end = text.size();
  }
  return text.substr(start, end - start);
}

Texts components_of(const std::string& type) {
  Texts components;
  if (type[0] != '(') return components;
  for (size_t i = 1; i + 1 < type.size();) {
    const size_t bar = type[i] == '|' ? type.find('|', i + 1) + 1 : 0;
    components.push_back(bar != 0 ? type.substr(i, bar - i) : item_at(type, i));
    i += components.back().size() + 1;
  }
  return components;
}

std::string result_of(const std::string& type) {
  return arity_of(type) == 0 ? type : components_of(type).back();
}

size_t arity_of(const std::string& type) {
  if (type.rfind("(-> ", 0) != 0) return 0;
  return components_of(type).size() - 2;
}

bool is_subtype(const std::string& a, const std::string& b) {
  return a == b || (a == "Int" && b == "Real");
}

}  // namespace quill::life
