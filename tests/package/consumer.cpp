// A program outside the tree that uses the installed library and front end.
#include <iostream>

#include "quill/frontends/smt2/smt2.h"
#include "quill/quill.h"

int main() {
  quill::TermManager manager;
  const quill::Term_* x = manager.make_constant(manager.make_symbol("x", manager.get_int_type()));
  std::cout << quill::outterm(&manager, manager.make_plus(x, manager.make_number(3))) << "\n";
  const quill::Term_* read = quill::smt2::read_term("(<= x 3)", manager);
  std::cout << quill::outterm(&manager, read) << "\n";
}
