// Undoes what a request makes on the way to its result (types with their parameters, a symbol, its
// tag) unless it is committed. Private to the sources of the term manager.
//
//   Transaction making(*this);           // before the first type is made
//   const DataType* type = get_bv_type(width);
//   ... scratch_types, name_buffer ...
//   const Symbol* s = making.add_symbol(tag);
//   by_width.insert({width, s});         // the last step that can fail
//   making.commit();
//
// Representation: stores only grow at their ends, so their former sizes tell what is new. Tables
// have no order, so new entries are noted in the manager's undo log. Nested transactions share the
// log; it is empty when no transaction is open. While a transaction is open, only a transaction
// nested in it may free what was made in it.
//
// Cost: a few loads and stores, and a log entry for each width, format and tag.

#ifndef QUILL_TERMS_TERMMANAGER_TRANSACTION_H
#define QUILL_TERMS_TERMMANAGER_TRANSACTION_H

#include <optional>

#include "quill/terms/termmanager/term_manager.h"

namespace quill {

class TermManager::Transaction {
 public:
  explicit Transaction(TermManager& manager_)
      : manager(manager_),
        log_before(manager_.undo_log.size()),
        types_before(manager_.universe->size()),
        symbols_before(manager_.signature->size()) {
    ++manager.open_transactions;
  }
  Transaction(const Transaction&) = delete;
  Transaction& operator=(const Transaction&) = delete;
  ~Transaction() {
    if (!committed) undo();
    if (--manager.open_transactions == 0) manager.undo_log.clear();
  }

  void enter_width(size_t width, const DataType* type) {
    manager.undo_log.push_back({.kind = UndoEntry::Width, .width = width});
    manager.bv_widths.assign(width, type);
  }

  void enter_format(const IEEEFloat::format& format, const DataType* type) {
    manager.undo_log.push_back({.kind = UndoEntry::Format, .format = format});
    manager.fp_formats.assign(format, type);
  }

  // Makes the function symbol with this tag, whose type has its components in scratch_types and
  // whose name, between backquotes, is in name_buffer.
  const Symbol* add_symbol(SymbolTag::tag tag) {
    const DataType* type = manager.universe->make_type(manager.scratch_types);
    const Symbol* s = manager.signature->add_symbol(manager.name_buffer.c_str(), type);
    const auto tagged = manager.tags.find(s);
    if (tagged != manager.tags.end()) replaced = tagged->second;
    manager.undo_log.push_back({.kind = UndoEntry::Tag, .symbol = s, .tag = replaced});
    manager.tags[s] = tag;
    return s;
  }

  // The tag that the symbol had before add_symbol, if any.
  std::optional<SymbolTag::tag> replaced_tag() const { return replaced; }

  void commit() { committed = true; }

 private:
  // Entries are logged before they enter their table, so the table may lack the latest one.
  void undo() noexcept {
    auto& log = manager.undo_log;
    for (; log.size() > log_before; log.pop_back()) {
      const UndoEntry& entry = log.back();
      switch (entry.kind) {
        case UndoEntry::Width:
          manager.bv_widths.erase(entry.width);
          break;
        case UndoEntry::Format:
          manager.fp_formats.erase(entry.format);
          break;
        case UndoEntry::Tag:
          manager.restore_tag(entry.symbol, entry.tag);
          break;
      }
    }
    manager.signature->rollback(symbols_before);
    manager.universe->rollback(types_before);
  }

  TermManager& manager;
  const size_t log_before;
  const size_t types_before;
  const size_t symbols_before;
  std::optional<SymbolTag::tag> replaced;
  bool committed = false;
};

}  // namespace quill

#endif
