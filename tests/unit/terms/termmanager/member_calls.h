// A call of each public member of TermManager, and for most of them one that is refused, as a
// table.

#ifndef QUILL_TESTS_UNIT_TERMS_TERMMANAGER_MEMBER_CALLS_H
#define QUILL_TESTS_UNIT_TERMS_TERMMANAGER_MEMBER_CALLS_H

#include <functional>
#include <string>
#include <vector>

#include "quill/terms/termmanager/term_manager.h"
#include "tests/support/operator_rows.h"

namespace quill::testing {

// What the calls are made on and with. Two sites of which the same is asked stay equal.
class CallSite {
 public:
  explicit CallSite(TermManager& manager);

  const Term_* t(const char* name) const { return operands.terms({name})[0]; }
  const Term_* of_source(const char* name) const { return source_operands.terms({name})[0]; }
  const Symbol* symbol(const char* name) const { return m.get_signature()->get_symbol(name); }

  TermManager& m;
  Operands operands;
  TermManager source;  // of copies
  Operands source_operands;
  const Term_* shared_source;  // (f (g i) (g i)) of the source
  const Symbol* unary;         // Int to Int
  const Symbol* binary;        // Int, Int to Int
  std::vector<bool> marks;
  TermManager::TermMap images;  // of substitutions, kept from call to call
  int calls = 0;                // for names that are new each time
};

struct MemberCall {
  std::string member;  // its name; those of one name are told apart by a number after the name
  std::function<std::string(CallSite&)> make;  // and says what came of it
};

// Each member has at least one. Missing are only those that nobody may call on a manager that has a
// request under way.
const std::vector<MemberCall>& member_calls();

// What the call returns, or the class and the text of what it throws.
std::string outcome(const MemberCall& call, CallSite& site);

}  // namespace quill::testing

#endif
