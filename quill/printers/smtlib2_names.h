// The former path of quill/smtlib/theory_names.h.

#ifndef QUILL_PRINTERS_SMTLIB2_NAMES_H
#define QUILL_PRINTERS_SMTLIB2_NAMES_H

#include "quill/smtlib/theory_names.h"

#endif
