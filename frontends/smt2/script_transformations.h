// The former path of quill/frontends/smt2/script_transformations.h.

#ifndef FRONTENDS_SMT2_SCRIPT_TRANSFORMATIONS_H
#define FRONTENDS_SMT2_SCRIPT_TRANSFORMATIONS_H

#include "quill/frontends/smt2/script_transformations.h"

#endif
