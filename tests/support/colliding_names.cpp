#include "tests/support/colliding_names.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

#include "quill/utils/keyed_hash.h"

namespace quill::testing {

std::vector<std::string> colliding_names(size_t count) {
  const uint64_t key = hash_key(0);
  const uint64_t annihilator = 0x9e3779b97f4a7c15;  // hash_mix makes 0 of it, under each key
  std::vector<std::string> names;
  for (uint64_t number = 0; names.size() < count; ++number) {
    std::string name(16, ' ');
    for (size_t i = 0; i < 8; ++i) name[i] = static_cast<char>('a' + (number >> 4 * i & 15));
    uint64_t word;
    std::memcpy(&word, name.data(), 8);
    word = annihilator ^ hash_mix(hash_mix(16, key) ^ word, key);
    std::memcpy(&name[8], &word, 8);
    const auto is_fit = [](char c) { return c != '\0' && c != '|' && c != '\\'; };
    if (std::all_of(name.begin(), name.end(), is_fit)) names.push_back(name);
  }
  return names;
}

std::vector<std::string> ordinary_names(size_t count) {
  std::vector<std::string> names;
  for (size_t i = 0; i < count; ++i) names.push_back("name" + std::to_string(100000000000 + i));
  return names;
}

}  // namespace quill::testing
