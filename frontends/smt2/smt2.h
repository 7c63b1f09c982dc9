// The former path of quill/frontends/smt2/smt2.h.

#ifndef FRONTENDS_SMT2_SMT2_H
#define FRONTENDS_SMT2_SMT2_H

#include "quill/frontends/smt2/smt2.h"

#endif
