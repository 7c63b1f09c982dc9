// The former path of quill/frontends/smt2/parse_error.h.

#ifndef FRONTENDS_SMT2_PARSE_ERROR_H
#define FRONTENDS_SMT2_PARSE_ERROR_H

#include "quill/frontends/smt2/parse_error.h"

#endif
