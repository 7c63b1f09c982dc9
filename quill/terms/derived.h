// The former path of quill/derived/derived.h.

#ifndef QUILL_TERMS_DERIVED_H
#define QUILL_TERMS_DERIVED_H

#include "quill/derived/derived.h"

#endif
