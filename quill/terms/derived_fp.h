// The former path of quill/derived/derived_fp.h.

#ifndef QUILL_TERMS_DERIVED_FP_H
#define QUILL_TERMS_DERIVED_FP_H

#include "quill/derived/derived_fp.h"

#endif
