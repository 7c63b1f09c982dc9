// The former path of quill/smtlib/operator_texts.h.

#ifndef QUILL_PRINTERS_SMTLIB2_OPERATORS_H
#define QUILL_PRINTERS_SMTLIB2_OPERATORS_H

#include "quill/smtlib/operator_texts.h"

#endif
