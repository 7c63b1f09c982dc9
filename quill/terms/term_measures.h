// Sizes of the graph at and below some roots. Linear in the terms and arguments that the roots
// reach, however often these are shared; nothing recurses.

#ifndef QUILL_TERMS_TERM_MEASURES_H
#define QUILL_TERMS_TERM_MEASURES_H

#include <cstddef>
#include <cstdint>

#include "quill/terms/term.h"

namespace quill {

// The number of different terms.
size_t dag_size(TermSpan roots);
size_t dag_size(const Term_* root);

// The number of terms that there would be without sharing; 2^64 - 1 if there are more.
uint64_t tree_size(const Term_* root);

// The number of terms on the longest path down from the root: 1 for a constant.
uint64_t depth(const Term_* root);

// Whether the term is the root or below it.
bool contains(const Term_* root, const Term_* t);

}  // namespace quill

#endif
