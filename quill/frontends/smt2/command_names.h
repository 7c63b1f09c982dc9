// The names of commands: those of SMT-LIB 2.6, and those that other readers have beside them.

#ifndef QUILL_FRONTENDS_SMT2_COMMAND_NAMES_H
#define QUILL_FRONTENDS_SMT2_COMMAND_NAMES_H

#include <string_view>

namespace quill::smt2 {

// Whether it is a command of some reader that the standard does not have.
bool is_foreign_command(std::string_view name);

// Whether it is any command.
bool is_command_name(std::string_view name);

}  // namespace quill::smt2

#endif
