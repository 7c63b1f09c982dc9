// Translates names between SMT-LIB text and a term manager.
//
// Most names are the same on both sides. Two kinds of names are not:
//
//   - names that SMT-LIB can write and the manager would refuse or take for its own: the empty
//     name, names that begin with a backquote, the names of fresh variables ('1) and of numerals
//     (7, 1/2, 5_8, 0_8_23), and for sorts the names of the manager's own types (BitVec, 32, 8:23);
//   - names that the manager can hold and SMT-LIB or its readers cannot: names with a bar, a
//     backslash or a control character, names with a leading @ or ., names that the theories of the
//     logic have (for sorts, including the names of operators), and the two words _ and as.
//
// The side that cannot have such a name uses an escape of it: "quill!" followed by the name, in
// which every byte other than a letter or a digit becomes ! and two hexadecimal digits. An escape
// of a name of the first kind is an ordinary name in SMT-LIB and therefore gets one more layer of
// escape in the manager, and vice versa. The two functions below therefore undo each other:
//
//   name_to_smtlib(name_from_smtlib(s)) == s
//       for every name s that readers of SMT-LIB accept in a declaration
//   name_from_smtlib(name_to_smtlib(n)) == n
//       for every name n that the manager accepts and does not take for its own
//
// Examples: |3| is quill!3 in the manager, and |3| again when it is written; |a b| is "a b" in the
// manager; the manager's a|b is written quill!a!7cb.
//
// Names are passed and returned without the bars of quoted symbols. Callers can choose another
// prefix and a logic, the same for both functions; the prefix must not be empty.
//
// A script may declare both a name that the logic leaves free but that cannot be written, and its
// escape: |@x| and quill!!40x. Both then become @x, and the code that declares names has to keep
// them apart.

#ifndef QUILL_SMTLIB_NAME_ESCAPE_H
#define QUILL_SMTLIB_NAME_ESCAPE_H

#include <string>
#include <string_view>

#include "quill/smtlib/logic.h"

namespace quill {

enum class NameKind { Symbol, Sort };

constexpr std::string_view default_escape_prefix = "quill!";

// The manager's name for a name in SMT-LIB text.
std::string name_from_smtlib(std::string_view name, NameKind kind,
                             std::string_view prefix = default_escape_prefix,
                             const Logic& logic = Logic());

// The name in SMT-LIB text for a name in the manager.
std::string name_to_smtlib(std::string_view name, NameKind kind,
                           std::string_view prefix = default_escape_prefix,
                           const Logic& logic = Logic());

}  // namespace quill

#endif
