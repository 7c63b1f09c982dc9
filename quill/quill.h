// The whole library: types, symbols, terms, numbers and printing. (The SMT-LIB front end is a
// library of its own: quill/frontends/smt2/smt2.h.)

#ifndef QUILL_QUILL_H
#define QUILL_QUILL_H

#include "quill/derived/derived.h"
#include "quill/derived/derived_bv.h"
#include "quill/derived/derived_fp.h"
#include "quill/printers/annotations.h"
#include "quill/printers/bit_definitions.h"
#include "quill/printers/configuration.h"
#include "quill/printers/outterm.h"
#include "quill/printers/smtlib2_term_printer.h"
#include "quill/smtlib/commands.h"
#include "quill/smtlib/lexical.h"
#include "quill/smtlib/logic.h"
#include "quill/smtlib/name_escape.h"
#include "quill/smtlib/operator_texts.h"
#include "quill/smtlib/syntax.h"
#include "quill/smtlib/theory_names.h"
#include "quill/terms/data_type.h"
#include "quill/terms/signature.h"
#include "quill/terms/symbol.h"
#include "quill/terms/term.h"
#include "quill/terms/term_bank.h"
#include "quill/terms/term_table.h"
#include "quill/terms/termmanager/family_keys.h"
#include "quill/terms/termmanager/symbol_tag.h"
#include "quill/terms/termmanager/term_factory.h"
#include "quill/terms/termmanager/term_manager.h"
#include "quill/terms/termmanager/term_visitor.h"
#include "quill/terms/type_universe.h"
#include "quill/utils/bv_number.h"
#include "quill/utils/exception.h"
#include "quill/utils/hash_map.h"
#include "quill/utils/hash_set.h"
#include "quill/utils/ieee_float.h"
#include "quill/utils/qnumber.h"
#include "quill/utils/qnumber_arithmetic.h"

#endif
