// The former path of quill/smtlib/name_escape.h.

#ifndef QUILL_PRINTERS_NAME_ESCAPE_H
#define QUILL_PRINTERS_NAME_ESCAPE_H

#include "quill/smtlib/name_escape.h"

#endif
