// The former path of quill/derived/derived_bv.h.

#ifndef QUILL_TERMS_DERIVED_BV_H
#define QUILL_TERMS_DERIVED_BV_H

#include "quill/derived/derived_bv.h"

#endif
