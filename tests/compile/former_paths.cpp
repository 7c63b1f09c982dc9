// Programs that were written for the former paths and names of headers and enumerators must
// compile.

#include "frontends/smt2/parse_error.h"
#include "frontends/smt2/read_options.h"
#include "frontends/smt2/script.h"
#include "frontends/smt2/script_stats.h"
#include "frontends/smt2/script_transformations.h"
#include "frontends/smt2/script_writer.h"
#include "frontends/smt2/smt2.h"
#include "frontends/smt2/value.h"
#include "quill/printers/bit_definitions.h"
#include "quill/printers/configuration.h"
#include "quill/printers/name_escape.h"
#include "quill/printers/outterm.h"
#include "quill/printers/smtlib2_logic.h"
#include "quill/printers/smtlib2_names.h"
#include "quill/printers/smtlib2_operators.h"
#include "quill/printers/smtlib2_syntax.h"
#include "quill/printers/smtlib2_term_printer.h"
#include "quill/printers/smtlib_term_printer.h"
#include "quill/printers/term_printer.h"
#include "quill/quill.h"
#include "quill/terms/data_type.h"
#include "quill/terms/derived.h"
#include "quill/terms/derived_bv.h"
#include "quill/terms/derived_fp.h"
#include "quill/terms/id_pool.h"
#include "quill/terms/node_slabs.h"
#include "quill/terms/ownership_record.h"
#include "quill/terms/signature.h"
#include "quill/terms/slab_regions.h"
#include "quill/terms/symbol.h"
#include "quill/terms/term.h"
#include "quill/terms/term_bank.h"
#include "quill/terms/term_table.h"
#include "quill/terms/termmanager/cache_sweep.h"
#include "quill/terms/termmanager/family_keys.h"
#include "quill/terms/termmanager/operator_family.h"
#include "quill/terms/termmanager/symbol_tag.h"
#include "quill/terms/termmanager/term_factory.h"
#include "quill/terms/termmanager/term_manager.h"
#include "quill/terms/termmanager/term_visitor.h"
#include "quill/terms/termmanager/type_keyed_symbols.h"
#include "quill/terms/termmanager/type_table.h"
#include "quill/terms/type_universe.h"
#include "quill/utils/bucket_growth.h"
#include "quill/utils/bv_number.h"
#include "quill/utils/exception.h"
#include "quill/utils/gmp_integer.h"
#include "quill/utils/growing_array.h"
#include "quill/utils/hash.h"
#include "quill/utils/hash_map.h"
#include "quill/utils/hash_set.h"
#include "quill/utils/hash_table.h"
#include "quill/utils/huge_pages.h"
#include "quill/utils/ieee_float.h"
#include "quill/utils/intern_index.h"
#include "quill/utils/memory_pool.h"
#include "quill/utils/name_hash.h"
#include "quill/utils/qnumber.h"
#include "quill/utils/scope_guard.h"
#include "quill/utils/xmalloc.h"

namespace {

// clang-format off
[[maybe_unused]] const quill::smt2::CommandKind commands[] = {
    quill::smt2::CommandKind::ASSERT,          quill::smt2::CommandKind::CHECK_SAT,
    quill::smt2::CommandKind::DECLARE_FUN,     quill::smt2::CommandKind::DEFINE_CONST,
    quill::smt2::CommandKind::ECHO,            quill::smt2::CommandKind::GET_UNSAT_ASSUMPTIONS,
    quill::smt2::CommandKind::RESET_ASSERTIONS, quill::smt2::CommandKind::SET_OPTION,
};
// clang-format on

[[maybe_unused]] bool uses_what_has_moved(quill::TermManager& manager, const quill::Term_* x) {
  const quill::Logic logic("QF_LIA");
  const quill::smt2::Script script;
  return quill::is_theory_symbol("abs", logic) && quill::make_distinct(manager, {x, x}) == x &&
         quill::make_bv_sgt(manager, x, x) == quill::make_fp_geq(manager, x, x) &&
         quill::name_from_smtlib("3", quill::NameKind::Symbol) == "quill!3" &&
         quill::find_theory_symbol("abs")->theory == quill::Theory::INTS &&
         quill::smt2::asks_about_answer(quill::smt2::CommandKind::GET_VALUE) &&
         quill::find_smtlib2_operator(quill::SymbolTag::AND)->text == "and" &&
         script.commands.empty();
}

}  // namespace
