// A callback that answers a bool must not compile: true would leave out the arguments.

#include "quill/terms/termmanager/term_visitor.h"

struct Callback {
  bool visit(const quill::Term_*, bool) { return true; }
};

void walk(const quill::Term_* root);
void walk(const quill::Term_* root) {
  Callback callback;
  quill::TermVisitor<Callback> visitor(&callback, true);
  visitor.visit(root, true);
}
