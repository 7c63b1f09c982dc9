// Stream adaptors for terms:
//
//   out << outterm(&manager, t);                  in SMT-LIB, shared subterms bound by let
//   out << outshallowterm(&manager, t);           the same: the shallow form is only for messages,
//                                                 see TermManager::to_shallow_str_literal
//   out << outtermlist(&manager, &terms);         [ t1 t2 t3 ]
//
// The term is written on its own, so nothing can be defined before it: operators that SMT-LIB 2.6
// does not have are written as functions that some readers have, (fp.to_ieee_bv f), (sbv_to_int b)
// and ((_ int2bv 8) i). For text that uses only the standard see Configuration.
//
// The adaptors hold only the pointers that they were given; each output makes a printer of its own.

#ifndef QUILL_PRINTERS_OUTTERM_H
#define QUILL_PRINTERS_OUTTERM_H

#include <iosfwd>
#include <string>
#include <vector>

#include "quill/terms/term.h"
#include "quill/terms/termmanager/term_manager.h"

namespace quill {

struct outterm {
  outterm(TermManager* owner, const Term_* t) : manager(owner), term(t) {}
  // Writing does not change the manager.
  outterm(const TermManager* owner, const Term_* t)
      : manager(const_cast<TermManager*>(owner)), term(t) {}
  TermManager* manager;
  const Term_* term;
};

struct outshallowterm {
  outshallowterm(TermManager* owner, const Term_* t) : manager(owner), term(t) {}
  TermManager* manager;
  const Term_* term;
};

struct outtermlist {
  outtermlist(TermManager* owner, const std::vector<const Term_*>* list)
      : manager(owner), terms(list) {}
  TermManager* manager;
  const std::vector<const Term_*>* terms;
};

std::ostream& operator<<(std::ostream& os, const outterm& x);

// The text that outterm writes.
std::string to_smtlib(const TermManager& m, const Term_* t);

std::ostream& operator<<(std::ostream& os, const outshallowterm& x);
std::ostream& operator<<(std::ostream& os, const outtermlist& x);

}  // namespace quill

#endif
