// A script of some two thousand calls that reaches every operator family, number form,
// transformation and printer.
//
// The calls of a script refer to the results of earlier calls by position, so that one script can
// run on any number of states, side by side.

#ifndef QUILL_TESTS_UNIT_EXHAUSTION_SCRIPT_H
#define QUILL_TESTS_UNIT_EXHAUSTION_SCRIPT_H

#include <array>
#include <cstddef>
#include <exception>
#include <functional>
#include <ostream>
#include <streambuf>
#include <string>
#include <vector>

#include "quill/printers/bit_definitions.h"
#include "quill/printers/smtlib2_term_printer.h"
#include "quill/terms/termmanager/term_manager.h"

namespace quill::testing {

// What a call returned, whichever it is.
struct Outcome {
  Outcome() = default;
  Outcome(const DataType* made) : type(made) {}
  Outcome(const Symbol* made) : symbol(made) {}
  Outcome(const Term_* made) : term(made) {}
  Outcome(std::string written) : text(std::move(written)) {}
  Outcome(bool answered, size_t a = 0, size_t b = 0, size_t c = 0, size_t d = 0)
      : answer(answered), numbers{a, b, c, d} {}

  const DataType* type = nullptr;
  const Symbol* symbol = nullptr;
  const Term_* term = nullptr;
  bool is_copy = false;  // one of these, in the other manager
  bool answer = false;
  std::array<size_t, 4> numbers{};
  std::exception_ptr refusal;
  std::string text;
};

// What a script works on. Its own storage is there from the start, so that only the library
// allocates in a call.
struct State {
  explicit State(size_t calls);
  State(const State&) = delete;
  State& operator=(const State&) = delete;

  const DataType* type(size_t i) const { return outcomes[i].type; }
  const Symbol* symbol(size_t i) const { return outcomes[i].symbol; }
  const Term_* term(size_t i) const { return outcomes[i].term; }

  // What was written since the last call of this; by way of the buffer, which holds no more.
  std::string take_text();
  std::ostream& out() { return stream; }

  TermManager m;
  TermManager other;  // what is copied goes there
  BitDefinitions definitions;
  SmtLib2TermPrinter::Annotations annotations;
  std::vector<Outcome> outcomes;

  // Arguments of calls, to be filled without an allocation.
  std::vector<const Term_*> terms;
  std::vector<const Term_*> more_terms;
  std::vector<const Symbol*> symbols;
  std::vector<const DataType*> types;

 private:
  class FixedBuffer : public std::streambuf {
   public:
    explicit FixedBuffer(size_t size) : room(size, '\0') { rewind(); }
    void rewind() { setp(room.data(), room.data() + room.size()); }
    std::string text() const { return {pbase(), pptr()}; }

   private:
    std::string room;
  };
  FixedBuffer buffer;
  std::ostream stream;
};

enum class Effect {
  One,      // a failure leaves no term behind
  Several,  // terms made on the way may stay
  Fresh,    // a failure uses up the number of a fresh variable
  Collect,  // results of the manager that are not kept go
};

struct Call {
  std::string text;
  std::function<Outcome(State&)> run;
  Effect effect = Effect::One;
  std::vector<size_t> kept = {};  // of a collection: the positions of the results that stay
};

std::vector<Call> make_script();

// All that can be told about an outcome without addresses.
std::string description(const State& s, const Outcome& outcome);

}  // namespace quill::testing

#endif
