// The former path of quill/smtlib/syntax.h.

#ifndef QUILL_PRINTERS_SMTLIB2_SYNTAX_H
#define QUILL_PRINTERS_SMTLIB2_SYNTAX_H

#include "quill/smtlib/syntax.h"

#endif
