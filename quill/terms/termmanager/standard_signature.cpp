// Constructs a manager with its standard signature, and destroys it.

#include "quill/terms/termmanager/term_manager.h"

namespace quill {

TermManager::TermManager()
    : universe(std::make_unique<TypeUniverse>()),
      signature(std::make_unique<Signature>(universe.get())),
      bank(std::make_unique<TermBank>()) {
  initialize_standard_signature();
}

TermManager::~TermManager() {
  memory.freed_bytes =
      bank->memory_use().slab_bytes + (signature->size() + universe->size()) * bytes_of_an_entry;
  bank.reset();       // terms before the symbols that head them,
  signature.reset();  // symbols before their types
  universe.reset();
}

// Registers a function symbol whose type has its components in scratch_types.
const Symbol* TermManager::add_function_symbol(const char* name, SymbolTag::tag tag) {
  return add_interpreted_symbol(name, universe->make_type(scratch_types), tag);
}

// The order of these steps is the order in which a new manager creates its types, symbols and
// terms; ids and walk orders follow from it.
void TermManager::initialize_standard_signature() {
  const auto simple = [this](const char* name) { return universe->make_type(std::string(name)); };
  bool_type = simple("Bool");
  rat_type = simple("Real");
  int_type = simple("Int");
  array_type_head = simple("Array");
  bv_type_head = simple("BitVec");
  fprounding_type = simple("FPRounding");
  fp_type_head = simple("FP");
  universe->set_subtype(int_type, rat_type);

  true_symbol = add_interpreted_symbol("true", bool_type, SymbolTag::TRUE);
  false_symbol = add_interpreted_symbol("false", bool_type, SymbolTag::FALSE);
  true_term = bank->make_term(true_symbol, nullptr);
  false_term = bank->make_term(false_symbol, nullptr);

  const DataType* application = universe->get_application_type();
  scratch_types = {application, bool_type, bool_type};
  not_symbol = add_function_symbol("not", SymbolTag::NOT);
  scratch_types = {application, bool_type, bool_type, bool_type};
  and_symbol = add_function_symbol("and", SymbolTag::AND);
  or_symbol = add_function_symbol("or", SymbolTag::OR);
  iff_symbol = add_function_symbol("iff", SymbolTag::IFF);

  scratch_types = {application, rat_type, rat_type, rat_type};
  rat_plus_symbol = add_function_symbol("+_rat", SymbolTag::PLUS);
  rat_times_symbol = add_function_symbol("*_rat", SymbolTag::TIMES);
  scratch_types.back() = bool_type;
  rat_leq_symbol = add_function_symbol("<=_rat", SymbolTag::LEQ);
  rat_equal_symbol = make_equality_symbol(rat_type);

  scratch_types = {application, int_type, int_type, int_type};
  int_plus_symbol = add_function_symbol("+_int", SymbolTag::PLUS);
  int_times_symbol = add_function_symbol("*_int", SymbolTag::TIMES);
  scratch_types.back() = bool_type;
  int_leq_symbol = add_function_symbol("<=_int", SymbolTag::LEQ);
  int_equal_symbol = make_equality_symbol(int_type);

  scratch_types = {application, rat_type, int_type};
  floor_symbol = add_function_symbol("floor", SymbolTag::FLOOR);

  const char* const rounding_names[4] = {"fprounding_even", "fprounding_zero",
                                         "fprounding_plus_inf", "fprounding_minus_inf"};
  for (size_t i = 0; i < 4; ++i) {
    rounding_symbols[i] =
        add_interpreted_symbol(rounding_names[i], fprounding_type, SymbolTag::NONE);
  }
}

}  // namespace quill
