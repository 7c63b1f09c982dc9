// What a manager is asked for, the result, and what happens when it calls back: plain data.

#ifndef TESTS_LIFE_TASK_H
#define TESTS_LIFE_TASK_H

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "tests/life/model.h"
#include "tests/life/pattern.h"

namespace quill::life {

// One call of a manager, or a walk over its terms.
struct Task {
  enum Kind { Build, Fresh, Substitute, Copy, Walk };

  Kind kind = Build;
  size_t manager = 0;  // the one that is asked; of a copy, the one that it is made in

  // To build: through the builder of the head's operation, or with make_term.
  Head head = {};
  Texts arguments = {};
  bool by_builder = false;

  std::string type = {};  // of the fresh variable

  Texts roots = {};  // of the substitution, the walk (one each) or the copy
  Model::Pairs pairs =
      {};  // replaced and replacing; of a copy, of the source and of the copy's side
  // Of a substitution: 0 by a map of pairs, 1 by vectors and a map, 2 by vectors. Of a copy:
  // copy_term, with pairs, copy_terms with and without the manager's marks. Of a walk: 0 as a tree,
  // others as a dag.
  size_t form = 0;
};

struct Outcome {
  enum End { Done, Refused, Thrown };  // by the manager, and by somebody whom it called

  End end = Done;
  Texts results = {};         // the terms returned
  Model::Images images = {};  // what a substitution has left in its map

  bool operator==(const Outcome& other) const {
    return end == other.end && results == other.results && images == other.images;
  }
};

// A call of a delegate, an overridden function or a callback.
struct Event {
  enum Place { BeforeBuilding, Delegate, AfterBuilding, PreVisit, PostVisit };

  Place place = Delegate;
  size_t manager = 0;
  std::string symbol = {};  // of the request, or the text of the term visited
  Texts arguments = {};

  bool operator==(const Event& other) const {
    return place == other.place && manager == other.manager && symbol == other.symbol &&
           arguments == other.arguments;
  }
  bool is_visit() const { return place == PreVisit || place == PostVisit; }
};

// The reaction to a call: perhaps a task, and then this.
struct Reaction {
  enum Then {
    GoOn,          // decline, build, return what was built, descend
    GoOnWithCopy,  // build from a vector of its own
    Plain,         // return the plain term
    Answer,        // return another term
    LeaveOut,      // the arguments of the term visited
    Stop,          // the walk
    Throw,
  };

  std::optional<Task> task = {};
  Outcome foreseen = {};  // of the task
  Then then = GoOn;
  std::string answer = {};
};

struct Step {
  Event event;
  Reaction reaction = {};
};

}  // namespace quill::life

#endif
