// The former path of quill/frontends/smt2/value.h.

#ifndef FRONTENDS_SMT2_VALUE_H
#define FRONTENDS_SMT2_VALUE_H

#include "quill/frontends/smt2/value.h"

#endif
