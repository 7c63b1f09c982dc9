// Texts with holes, in which the table of operators writes names and types.
//
//   {w}        what is bound to w
//   {~t}       the type bound to t as it is spelled in names of symbols
//   {h-l+1}    a sum of bound numbers
//
// Matching binds a letter that is alone in its hole and not bound yet to the type or number found
// there; Bool, which most operators do not take, is never bound.

#ifndef TESTS_LIFE_PATTERN_H
#define TESTS_LIFE_PATTERN_H

#include <cstddef>
#include <map>
#include <string>
#include <vector>

namespace quill::life {

using Texts = std::vector<std::string>;
using Bindings = std::map<char, std::string>;

// Whether every letter of the sum is bound, and its value.
bool is_bound(const std::string& sum, const Bindings& bindings);
long value_of(const std::string& sum, const Bindings& bindings);

// The pattern with its holes filled; all letters must be bound.
std::string fill(const std::string& pattern, const Bindings& bindings);

// Whether the pattern fits the text; binds letters, also when it does not.
bool match(const std::string& pattern, const std::string& text, Bindings& bindings);

// The text of the type, number or name that begins at `start`: up to the parenthesis that closes it
// or to the next blank, colon, bar or parenthesis.
std::string item_at(const std::string& text, size_t start);

// What a compound type is made of, its head first; nothing for a simple type.
Texts components_of(const std::string& type);

// The type of the terms that a symbol of this type heads, and the number of its arguments.
std::string result_of(const std::string& type);
size_t arity_of(const std::string& type);

bool is_subtype(const std::string& a, const std::string& b);

}  // namespace quill::life

#endif
