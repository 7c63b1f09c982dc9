#include "quill/frontends/smt2/script.h"

namespace quill::smt2 {

bool asks_about_answer(CommandKind kind) {
  switch (kind) {
    case CommandKind::DEFINE_CONST:
    case CommandKind::DEFINE_FUN:
    case CommandKind::DEFINE_SORT:  // not written
    case CommandKind::ECHO:
    case CommandKind::GET_ASSERTIONS:
    case CommandKind::GET_ASSIGNMENT:
    case CommandKind::GET_INFO:
    case CommandKind::GET_MODEL:
    case CommandKind::GET_OPTION:
    case CommandKind::GET_PROOF:
    case CommandKind::GET_UNSAT_ASSUMPTIONS:
    case CommandKind::GET_UNSAT_CORE:
    case CommandKind::GET_VALUE:
    case CommandKind::SET_INFO:
    case CommandKind::SET_OPTION:
      return true;
    case CommandKind::ASSERT:
    case CommandKind::CHECK_SAT:
    case CommandKind::CHECK_SAT_ASSUMING:
    case CommandKind::DECLARE_CONST:
    case CommandKind::DECLARE_FUN:
    case CommandKind::DECLARE_SORT:
    case CommandKind::EXIT:
    case CommandKind::POP:
    case CommandKind::PUSH:
    case CommandKind::RESET:
    case CommandKind::RESET_ASSERTIONS:
    case CommandKind::SET_LOGIC:
      return false;
  }
  return false;
}

}  // namespace quill::smt2
