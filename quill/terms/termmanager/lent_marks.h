// Marks that a walk borrows. Private to the sources of the term manager.
//
// A walk takes the whole mark vector out of its home and puts a vector back at its end. What the
// walk calls may start another walk with the same home, through a delegate or an overridden
// make_term: that walk finds an empty vector there, instead of marks that are in use, and leaves
// its own one behind. The larger of the two is kept. Every vector at home is all clear, because
// each walk clears the marks that it set.

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
