// The former path of quill/smtlib/logic.h.

#ifndef QUILL_PRINTERS_SMTLIB2_LOGIC_H
#define QUILL_PRINTERS_SMTLIB2_LOGIC_H

#include "quill/smtlib/logic.h"

#endif
