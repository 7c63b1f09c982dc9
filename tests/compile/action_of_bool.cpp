// An action that answers a bool must not compile: it may mean to go on, or to be done.

#include "quill/terms/subterms.h"

bool walk(const quill::Term_* root);
bool walk(const quill::Term_* root) {
  return quill::for_each_subterm(root, [](const quill::Term_*) { return true; });
}
