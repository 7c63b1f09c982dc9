#include "quill/frontends/smt2/core_operators.h"

#include <vector>

#include "quill/derived/derived.h"

namespace quill::smt2 {

namespace {

const std::vector<const Term_*>& bool_terms(TermBuilder& b, const Application& a) {
  b.expect_all(a, b.bool_type);
  std::vector<const Term_*>& terms = b.fresh_terms();
  for (const Value& value : a.args) terms.push_back(value.term);
  return terms;
}

}  // namespace

Value build_true(TermBuilder& b, const Application&) { return b.boolean(b.manager.make_true()); }

Value build_false(TermBuilder& b, const Application&) { return b.boolean(b.manager.make_false()); }

Value build_not(TermBuilder& b, const Application& a) {
  b.expect(a, 0, b.bool_type);
  return b.boolean(b.manager.make_not(a.args[0].term));
}

Value build_and(TermBuilder& b, const Application& a) {
  return b.boolean(make_and(b.manager, bool_terms(b, a)));
}

Value build_or(TermBuilder& b, const Application& a) {
  return b.boolean(make_or(b.manager, bool_terms(b, a)));
}

Value build_xor(TermBuilder& b, const Application& a) {
  const std::vector<const Term_*>& terms = bool_terms(b, a);
  const Term_* result = terms[0];
  for (size_t i = 1; i < terms.size(); ++i) result = make_xor(b.manager, result, terms[i]);
  return b.boolean(result);
}

Value build_implies(TermBuilder& b, const Application& a) {
  const std::vector<const Term_*>& terms = bool_terms(b, a);
  const Term_* result = terms.back();
  for (size_t i = terms.size() - 1; i-- > 0;) result = make_implies(b.manager, terms[i], result);
  return b.boolean(result);
}

Value build_equal(TermBuilder& b, const Application& a) {
  const DataType* sort = b.expect_common(a, 0);
  std::vector<const Term_*>& links = b.fresh_terms();
  for (size_t i = 0; i + 1 < a.args.size(); ++i) {
    links.push_back(b.equal(a.args[i].term, a.args[i + 1].term, sort));
  }
  return b.boolean(make_and(b.manager, links));
}

Value build_distinct(TermBuilder& b, const Application& a) {
  const DataType* sort = b.expect_common(a, 0);
  b.budget.spend_distinct(a.args.size(), a.position);
  std::vector<const Term_*>& pairs = b.fresh_terms();
  for (size_t i = 0; i < a.args.size(); ++i) {
    for (size_t j = i + 1; j < a.args.size(); ++j) {
      const Term_* same = b.equal(a.args[i].term, a.args[j].term, sort);
      pairs.push_back(b.manager.make_not(same));
    }
  }
  return b.boolean(make_and(b.manager, pairs));
}

Value build_ite(TermBuilder& b, const Application& a) {
  b.expect(a, 0, b.bool_type);
  const DataType* sort = b.expect_common(a, 1);
  const Term_* condition = a.args[0].term;
  if (sort == b.bool_type) {
    return b.boolean(make_ite(b.manager, condition, a.args[1].term, a.args[2].term));
  }
  return {b.if_then_else(condition, a.args[1].term, a.args[2].term, sort), sort};
}

}  // namespace quill::smt2
