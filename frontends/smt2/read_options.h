// The former path of quill/frontends/smt2/read_options.h.

#ifndef FRONTENDS_SMT2_READ_OPTIONS_H
#define FRONTENDS_SMT2_READ_OPTIONS_H

#include "quill/frontends/smt2/read_options.h"

#endif
