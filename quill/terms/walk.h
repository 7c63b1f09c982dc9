// What the callback of a walk answers.

#ifndef QUILL_TERMS_WALK_H
#define QUILL_TERMS_WALK_H

namespace quill {

enum class Walk {
  Stop = 0,           // end the whole walk
  SkipArguments = 1,  // leave out the arguments of this term; other terms may lead to them
  Continue = 2
};

}  // namespace quill

#endif
