#include "quill/frontends/smt2/script.h"

namespace quill::smt2 {

bool asks_about_answer(CommandKind kind) { return command_row(kind).leaves_answer; }

}  // namespace quill::smt2
