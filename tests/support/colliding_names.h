// Names that share one hash, as an attacker who has read name_hash.h would write them.

#ifndef TESTS_SUPPORT_COLLIDING_NAMES_H
#define TESTS_SUPPORT_COLLIDING_NAMES_H

#include <cstddef>
#include <string>
#include <vector>

namespace quill::testing {

// A NameHash under the first key gives one value to all of these names. Each is 16 bytes, none of
// them a NUL, a bar or a backslash, so that it can stand between the bars of a script.
std::vector<std::string> colliding_names(size_t count);

// As many names of that length that have nothing in common.
std::vector<std::string> ordinary_names(size_t count);

}  // namespace quill::testing

#endif
