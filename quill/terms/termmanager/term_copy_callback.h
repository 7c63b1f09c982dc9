// Does the work of one call of the copying members: copies terms, symbols and types of one manager
// to another, each once. Private to the sources of the term manager.
//
// TermVisitor drives the copying of terms: the pre-visit replaces the keys of the substitution, and
// the post-visit rebuilds a term from its copied symbol and arguments. The tables lead from objects
// of the source to those of the destination. The source is only read.

#ifndef QUILL_TERMS_TERMMANAGER_TERM_COPY_CALLBACK_H
#define QUILL_TERMS_TERMMANAGER_TERM_COPY_CALLBACK_H

#include <vector>

#include "quill/terms/termmanager/operator_family.h"
#include "quill/terms/termmanager/term_manager.h"
#include "quill/utils/hash_map.h"

namespace quill {

class TermManager::TermCopyCallback {
 public:
  // The callback keeps references to all three.
  TermCopyCallback(TermManager& receiver, const TermManager& owner, const TermMap& replacements);
  TermCopyCallback(const TermCopyCallback&) = delete;
  TermCopyCallback& operator=(const TermCopyCallback&) = delete;

  int visit(const Term_* t, bool preorder);

  // The copy of a term, which must have been visited.
  const Term_* copy_of(const Term_* t) const { return terms.find(t)->second; }

  const Symbol* copy_symbol(const Symbol* s);
  const DataType* copy_type(const DataType* d);

 private:
  const Symbol* make_symbol_copy(const Symbol* s);
  const Symbol* make_number_symbol(const Symbol* s, const QNumber& value);
  const Symbol* make_family_symbol(const Symbol* s, SymbolTag::tag tag);
  const Symbol* make_array_symbol(const Symbol* s, SymbolTag::tag tag);
  template <class Key>
  const Symbol* make_keyed_symbol(const Symbol* s, SymbolTag::tag tag,
                                  const SymbolFamily<Key>& from, SymbolFamily<Key>& to);
  void set_type_and_name(const Symbol* s);

  const DataType* find_type(const DataType* d) const;
  const DataType* copy_plain_type(const DataType* d);
  const DataType* make_nested_type(const DataType* d);
  const size_t* find_width(const DataType* d) const;
  const IEEEFloat::format* find_format(const DataType* d) const;

  TermManager* destination;
  const TermManager* source;
  const TermMap* substitution;
  TermMap terms;
  hsh::HashMap<const DataType*, const DataType*> types;
  hsh::HashMap<const Symbol*, const Symbol*> symbols;
  std::vector<const Term_*> args;  // of the term being rebuilt
};

}  // namespace quill

#endif
