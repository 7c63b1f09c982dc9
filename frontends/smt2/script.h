// The former path of quill/frontends/smt2/script.h.

#ifndef FRONTENDS_SMT2_SCRIPT_H
#define FRONTENDS_SMT2_SCRIPT_H

#include "quill/frontends/smt2/script.h"

#endif
