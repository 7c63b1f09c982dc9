// The former path of quill/frontends/smt2/script_writer.h.

#ifndef FRONTENDS_SMT2_SCRIPT_WRITER_H
#define FRONTENDS_SMT2_SCRIPT_WRITER_H

#include "quill/frontends/smt2/script_writer.h"

#endif
