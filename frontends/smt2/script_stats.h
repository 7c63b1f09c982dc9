// The former path of quill/frontends/smt2/script_stats.h.

#ifndef FRONTENDS_SMT2_SCRIPT_STATS_H
#define FRONTENDS_SMT2_SCRIPT_STATS_H

#include "quill/frontends/smt2/script_stats.h"

#endif
