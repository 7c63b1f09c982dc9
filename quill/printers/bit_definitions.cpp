#include "quill/printers/bit_definitions.h"

#include <utility>

#include "quill/utils/scope_guard.h"

namespace quill {

const BitDefinitions::Definition* BitDefinitions::find(const Term_* value) const {
  const auto found = by_value.find(value);
  return found == by_value.end() ? nullptr : &definitions[found->second];
}

const BitDefinitions::Definition* BitDefinitions::find_nan(IEEEFloat::format format) const {
  const auto found = nans.find(format);
  if (found == nans.end() || found->second >= definitions.size()) return nullptr;
  const Definition& definition = definitions[found->second];
  const bool is_it = definition.value == nullptr && definition.format == format;
  return is_it ? &definition : nullptr;
}

size_t BitDefinitions::define(const Term_* value) {
  const size_t before = definitions.size();
  if (find(value) != nullptr) return before;
  IEEEFloat::format format;
  size_t e = 0;
  size_t m = 0;
  manager.is_fp_type(value->type(), &e, &m);
  format.e = e;
  format.m = m;
  ScopeGuard undo([this, made = mark()] { take_back_to(made); });
  if (find_nan(format) == nullptr) add("quill!ieee_nan_", next_nan, format, nullptr);
  add("quill!ieee_bits_", next_bits, format, value);
  undo.dismiss();
  return before;
}

void BitDefinitions::add(const char* base, uint64_t& next, IEEEFloat::format format,
                         const Term_* value) {
  std::string name;
  do {
    name = base + std::to_string(next++);
  } while (manager.get_signature()->get_symbol(name.c_str()) != nullptr ||
           reserved.find(name) != reserved.end());
  definitions.push_back({std::move(name), format, value});
  ScopeGuard undo_definition([this] { definitions.pop_back(); });
  depths.push_back(depth);
  ScopeGuard undo_depth([this] { depths.pop_back(); });
  if (value == nullptr) {
    nans[format] = definitions.size() - 1;
  } else {
    by_value.insert({value, definitions.size() - 1});
  }
  undo_depth.dismiss();
  undo_definition.dismiss();
}

void BitDefinitions::take_back_to(const Mark& before) noexcept {
  while (definitions.size() > before.count) forget_last();
  next_bits = before.next_bits;
  next_nan = before.next_nan;
}

void BitDefinitions::forget_last() noexcept {
  const Term_* value = definitions.back().value;
  if (value != nullptr) by_value.erase(by_value.find(value));
  definitions.pop_back();
  depths.pop_back();
}

void BitDefinitions::pop(uint64_t levels) {
  depth -= levels < depth ? levels : depth;
  while (!depths.empty() && depths.back() > depth) forget_last();
}

void BitDefinitions::clear() {
  depth = 0;
  while (!definitions.empty()) forget_last();
  nans.erase_if([](const auto&) { return true; });
}

}  // namespace quill
