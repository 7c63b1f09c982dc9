// Marks that a walk borrows. Private to the sources of the term manager.
//
// A walk takes the mark vector from its owner and returns a vector when it ends. The walk may call
// a delegate or an overridden make_term, which may start another walk with the same owner. The
// inner walk then finds an empty vector instead of marks that are in use, and returns its own
// vector first; the owner keeps the larger of the two. All bits of the owner's vector are clear,
// because each walk clears the marks that it has set.

#ifndef QUILL_TERMS_TERMMANAGER_LENT_MARKS_H
#define QUILL_TERMS_TERMMANAGER_LENT_MARKS_H

#include <vector>

namespace quill {

class LentMarks {
 public:
  explicit LentMarks(std::vector<bool>& owner) : home(owner) { marks.swap(home); }
  LentMarks(const LentMarks&) = delete;
  LentMarks& operator=(const LentMarks&) = delete;
  ~LentMarks() {
    if (marks.size() > home.size()) marks.swap(home);
  }

  std::vector<bool>* get() { return &marks; }

 private:
  std::vector<bool>& home;
  std::vector<bool> marks;
};

}  // namespace quill

#endif
