// Annotations of terms, which printers write as (! t :key value).

#ifndef QUILL_PRINTERS_ANNOTATIONS_H
#define QUILL_PRINTERS_ANNOTATIONS_H

#include <string>
#include <utility>
#include <vector>

#include "quill/terms/term.h"
#include "quill/utils/hash_map.h"
#include "quill/utils/hash_set.h"

namespace quill {

// Pairs of key and value for each annotated term; the key with or without its colon.
using TermAnnotations =
    hsh::HashMap<const Term_*, std::vector<std::pair<std::string, std::string>>>;
using TermSet = hsh::HashSet<const Term_*>;

}  // namespace quill

#endif
