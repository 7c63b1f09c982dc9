#include "tests/unit/terms/termmanager/member_calls.h"

#include <cstddef>
#include <stdexcept>
#include <type_traits>

namespace quill::testing {

namespace {

using M = TermManager;
using S = CallSite;
using Symbols = std::vector<const Symbol*>;
using Types = std::vector<const DataType*>;

std::string text(const std::string& value) { return value; }
std::string text(const char* value) { return value; }
std::string text(bool value) { return value ? "true" : "false"; }
std::string text(uint64_t value) { return std::to_string(value); }
std::string text(const QNumber& value) { return value.to_str(); }
std::string text(const Term_* t) {
  if (t == nullptr) return "no term";
  return std::to_string(t->id) + " " + t->to_str() + " : " + t->symbol->type->to_str();
}
std::string text(const Symbol* s) {
  return s != nullptr ? s->name + (" : " + s->type->to_str()) : "no symbol";
}
std::string text(const DataType* d) { return d != nullptr ? d->to_str() : "no type"; }
template <class T>
std::string text(const std::vector<T>& values) {
  std::string result;
  for (const T& value : values) result += text(value) + ", ";
  return result;
}

template <class First, class... Rest>
std::string texts(const First& first, const Rest&... rest) {
  std::string result = text(first);
  ((result += "; " + text(rest)), ...);
  return result;
}

// The standard members, by their headings in the header.

void add_switches(std::vector<MemberCall>& calls) {
  calls.insert(
      calls.end(),
      {
          {"get_universe", [](S& s) { return texts(s.m.get_universe()->size()); }},
          {"get_signature", [](S& s) { return texts(s.m.get_signature()->size()); }},
          {"get_bank", [](S& s) { return texts(s.m.get_bank()->size()); }},
          {"set_typecheck_enabled",
           [](S& s) {
             s.m.set_typecheck_enabled(false);
             const Term_* ill_typed = s.m.make_and(s.t("p"), s.t("i"));
             s.m.set_typecheck_enabled(true);
             return texts(ill_typed);
           }},
          {"get_typecheck_enabled", [](S& s) { return texts(s.m.get_typecheck_enabled()); }},
          {"set_delegate",
           [](S& s) {
             struct Truth : TermFactory {
               explicit Truth(const Term_* t) : truth(t) {}
               const Term_* make_term(const Symbol*, const Terms&) override { return truth; }
               const Term_* truth;
             } other(s.m.make_true());
             TermFactory* const delegate = s.m.get_delegate();
             s.m.set_delegate(&other);
             const Term_* replaced = s.m.make_or(s.t("p"), s.t("p"));
             s.m.set_delegate(delegate);
             return texts(replaced);
           }},
          {"get_delegate", [](S& s) { return texts(s.m.get_delegate() != nullptr); }},
          {"set_delegate_enabled",
           [](S& s) {
             const bool enabled = s.m.get_delegate_enabled();
             s.m.set_delegate_enabled(false);
             const Term_* t = s.m.make_iff(s.t("p"), s.t("p"));
             s.m.set_delegate_enabled(enabled);
             return texts(t);
           }},
          {"get_delegate_enabled", [](S& s) { return texts(s.m.get_delegate_enabled()); }},
          {"set_reject_bool_arguments",
           [](S& s) {
             s.m.set_reject_bool_arguments(false);
             const DataType* type =
                 s.m.get_function_type({s.m.get_bool_type()}, s.m.get_int_type());
             s.m.set_reject_bool_arguments(true);
             return texts(type);
           }},
          {"get_reject_bool_arguments",
           [](S& s) { return texts(s.m.get_reject_bool_arguments()); }},
      });
}

void add_classification(std::vector<MemberCall>& calls) {
  calls.insert(
      calls.end(),
      {
          {"add_interpreted_symbol",
           [](S& s) {
             return texts(
                 s.m.add_interpreted_symbol("special", s.m.get_int_type(), SymbolTag::NONE));
           }},
          {"add_interpreted_symbol",
           [](S& s) {
             return texts(s.m.add_interpreted_symbol("and", s.m.get_int_type(), SymbolTag::BV_ADD));
           }},
          {"is_interpreted",
           [](S& s) {
             return texts(s.m.is_interpreted(s.symbol("`and`")), s.m.is_interpreted(s.unary));
           }},
          {"is_uninterpreted_function",
           [](S& s) {
             return texts(s.m.is_uninterpreted_function(s.unary),
                          s.m.is_uninterpreted_function(s.symbol("i")));
           }},
          {"is_variable", [](S& s) { return texts(s.m.is_variable(s.symbol("i"))); }},
          {"is_constant", [](S& s) { return texts(s.m.is_constant(s.symbol("i"))); }},
          {"get_tag",
           [](S& s) {
             return texts(uint64_t{s.m.get_tag(s.symbol("`and`"))}, uint64_t{s.m.get_tag(s.unary)});
           }},
      });
}

void add_types(std::vector<MemberCall>& calls) {
  calls.insert(
      calls.end(),
      {
          {"get_bool_type", [](S& s) { return texts(s.m.get_bool_type()); }},
          {"get_rat_type", [](S& s) { return texts(s.m.get_rat_type()); }},
          {"get_int_type", [](S& s) { return texts(s.m.get_int_type()); }},
          {"get_fprounding_type", [](S& s) { return texts(s.m.get_fprounding_type()); }},
          {"get_simple_type",
           [](S& s) {
             return texts(s.m.get_simple_type("Colour", false), s.m.get_simple_type("None", true));
           }},
          {"get_type_from_width", [](S& s) { return texts(s.m.get_type_from_width(17)); }},
          {"get_width_from_type",
           [](S& s) {
             return texts(uint64_t{s.m.get_width_from_type(s.m.get_type_from_width(18))});
           }},
          {"get_bv_type", [](S& s) { return texts(s.m.get_bv_type(19)); }},
          {"get_fp_type", [](S& s) { return texts(s.m.get_fp_type(3, 5)); }},
          {"get_fp_type", [](S& s) { return texts(s.m.get_fp_type(1, 5)); }},
          {"get_array_type",
           [](S& s) {
             return texts(
                 s.m.get_array_type(s.m.get_bv_type(5), s.m.get_simple_type("Key", false)));
           }},
          {"get_array_type",
           [](S& s) { return texts(s.m.get_array_type(s.m.get_bool_type(), s.m.get_int_type())); }},
          {"get_function_type",
           [](S& s) {
             return texts(s.m.get_function_type({s.m.get_bv_type(6)}, s.m.get_rat_type()));
           }},
          {"get_function_type",
           [](S& s) { return texts(s.m.get_function_type({s.unary->type}, s.m.get_rat_type())); }},
          {"get_compound_type",
           [](S& s) {
             return texts(
                 s.m.get_compound_type({s.m.get_simple_type("List", false), s.m.get_int_type()}));
           }},
          {"get_compound_type",
           [](S& s) {
             return texts(s.m.get_compound_type({s.m.get_bool_type(), s.m.get_bool_type()}));
           }},
          {"is_function_type",
           [](S& s) {
             Types args;
             const DataType* result = nullptr;
             const bool answer = s.m.is_function_type(s.binary->type, &args, &result);
             return texts(answer, args, result);
           }},
          {"is_bv_type",
           [](S& s) {
             size_t width = 0;
             const bool answer = s.m.is_bv_type(s.m.get_bv_type(8), &width);
             return texts(answer, uint64_t{width});
           }},
          {"is_fp_type",
           [](S& s) {
             size_t e = 0;
             size_t m = 0;
             const bool answer = s.m.is_fp_type(s.m.get_fp_type(8, 23), &e, &m);
             return texts(answer, uint64_t{e}, uint64_t{m});
           }},
          {"is_array_type",
           [](S& s) {
             const DataType* index = nullptr;
             const DataType* element = nullptr;
             const bool answer = s.m.is_array_type(s.t("a")->type(), &index, &element);
             return texts(answer, index, element);
           }},
          {"is_subtype",
           [](S& s) {
             return texts(s.m.is_subtype(s.m.get_int_type(), s.m.get_rat_type()),
                          s.m.is_subtype(s.m.get_rat_type(), s.m.get_int_type()));
           }},
          {"get_supertype",
           [](S& s) { return texts(s.m.get_supertype(s.m.get_int_type(), s.m.get_rat_type())); }},
          {"get_supertype",
           [](S& s) { return texts(s.m.get_supertype(s.m.get_int_type(), s.m.get_bool_type())); }},
          {"is_finite_domain_type",
           [](S& s) {
             QNumber size;
             const bool answer = s.m.is_finite_domain_type(s.m.get_bv_type(100), &size);
             return texts(answer, size);
           }},
      });
}

void add_symbols(std::vector<MemberCall>& calls) {
  calls.insert(
      calls.end(),
      {
          {"make_symbol",
           [](S& s) {
             return texts(s.m.make_symbol("s" + std::to_string(s.calls++), s.m.get_bv_type(9)));
           }},
          {"make_symbol", [](S& s) { return texts(s.m.make_symbol("i", s.m.get_rat_type())); }},
          {"make_symbol", [](S& s) { return texts(s.m.make_symbol("", s.m.get_rat_type())); }},
          {"make_unique_symbol",
           [](S& s) { return texts(s.m.make_unique_symbol("i", s.m.get_rat_type())); }},
          {"make_unique_symbol",
           [](S& s) { return texts(s.m.make_unique_symbol("`i", s.m.get_rat_type())); }},
          {"make_fresh_variable",
           [](S& s) { return texts(s.m.make_fresh_variable(s.m.get_bool_type())); }},
          {"make_fresh_variable",
           [](S& s) { return texts(s.m.make_fresh_variable(s.unary->type)); }},
          {"make_constant",
           [](S& s) {
             return texts(s.m.make_constant(s.m.make_symbol("constant", s.m.get_bool_type())));
           }},
          {"make_constant", [](S& s) { return texts(s.m.make_constant(s.unary)); }},
          {"make_uninterpreted_function",
           [](S& s) {
             return texts(s.m.make_uninterpreted_function(s.binary, {s.t("i"), s.t("j")}));
           }},
          {"make_uninterpreted_function",
           [](S& s) {
             return texts(s.m.make_uninterpreted_function(s.binary, {s.t("i"), s.t("r")}));
           }},
          {"debug_get_term",
           [](S& s) { return texts(s.m.debug_get_term(3), s.m.debug_get_term(1000000)); }},
      });
}

void add_core_terms(std::vector<MemberCall>& calls) {
  calls.insert(
      calls.end(),
      {
          {"make_term",
           [](S& s) {
             return texts(s.m.make_term(s.symbol("`or`"), {s.m.make_true(), s.t("p")}));
           }},
          {"make_term", [](S& s) { return texts(s.m.make_term(s.symbol("`or`"), {s.t("p")})); }},
          {"make_term",
           [](S& s) {
             return texts(s.m.make_term(s.symbol("`or`"), {s.t("p"), s.t("x8")}));
           }},
          {"do_make_term",
           [](S& s) {
             return texts(s.m.do_make_term(s.symbol("`iff`"), {s.m.make_true(), s.t("p")}));
           }},
          {"typecheck",
           [](S& s) { return texts(s.m.typecheck(s.t("i"), s.m.get_rat_type(), "here")); }},
          {"typecheck",
           [](S& s) { return texts(s.m.typecheck(s.t("r"), s.m.get_int_type(), "here")); }},
          {"typecheck 2",
           [](S& s) {
             s.m.typecheck(s.binary, {s.t("i"), s.t("j")});
             return text("well typed");
           }},
          {"typecheck 2",
           [](S& s) {
             s.m.typecheck(s.binary, {s.t("i"), s.t("r")});
             return text("well typed");
           }},
          {"make_bin",
           [](S& s) { return texts(s.m.make_bin(s.binary, s.t("j"), s.t("i"), "mine")); }},
          {"make_bin",
           [](S& s) { return texts(s.m.make_bin(s.binary, s.t("j"), s.t("p"), "mine")); }},
          {"make_true", [](S& s) { return texts(s.m.make_true()); }},
          {"make_false", [](S& s) { return texts(s.m.make_false()); }},
          {"make_and", [](S& s) { return texts(s.m.make_and(s.t("p"), s.m.make_true())); }},
          {"make_and", [](S& s) { return texts(s.m.make_and(s.t("p"), s.t("i"))); }},
          {"make_or", [](S& s) { return texts(s.m.make_or(s.t("p"), s.m.make_false())); }},
          {"make_or", [](S& s) { return texts(s.m.make_or(s.t("i"), s.t("p"))); }},
          {"make_iff", [](S& s) { return texts(s.m.make_iff(s.t("p"), s.m.make_true())); }},
          {"make_iff", [](S& s) { return texts(s.m.make_iff(s.t("x8"), s.t("i"))); }},
          {"make_not", [](S& s) { return texts(s.m.make_not(s.t("p"))); }},
          {"make_not", [](S& s) { return texts(s.m.make_not(s.t("x8"))); }},
          {"make_leq", [](S& s) { return texts(s.m.make_leq(s.t("i"), s.t("r"))); }},
          {"make_leq", [](S& s) { return texts(s.m.make_leq(s.t("i"), s.t("p"))); }},
          {"make_plus", [](S& s) { return texts(s.m.make_plus(s.t("i"), s.t("j"))); }},
          {"make_plus", [](S& s) { return texts(s.m.make_plus(s.t("x8"), s.t("j"))); }},
          {"make_times", [](S& s) { return texts(s.m.make_times(s.t("r"), s.t("r"))); }},
          {"make_times", [](S& s) { return texts(s.m.make_times(s.t("r"), s.t("p"))); }},
          {"make_floor", [](S& s) { return texts(s.m.make_floor(s.t("r"))); }},
          {"make_floor", [](S& s) { return texts(s.m.make_floor(s.t("p"))); }},
          {"make_equality_symbol",
           [](S& s) { return texts(s.m.make_equality_symbol(s.m.get_bv_type(4))); }},
          {"make_equality_symbol",
           [](S& s) { return texts(s.m.make_equality_symbol(s.m.get_bool_type())); }},
          {"make_equal", [](S& s) { return texts(s.m.make_equal(s.t("x32"), s.t("x32"))); }},
          {"make_equal", [](S& s) { return texts(s.m.make_equal(s.t("x32"), s.t("x8"))); }},
          {"make_equal", [](S& s) { return texts(s.m.make_equal(s.t("rm"), s.t("x8"))); }},
          {"make_term_ite_symbol",
           [](S& s) { return texts(s.m.make_term_ite_symbol(s.m.get_bv_type(4))); }},
          {"make_term_ite_symbol",
           [](S& s) { return texts(s.m.make_term_ite_symbol(s.m.get_bool_type())); }},
          {"make_term_ite",
           [](S& s) { return texts(s.m.make_term_ite(s.t("p"), s.t("x32"), s.t("x32"))); }},
          {"make_term_ite",
           [](S& s) { return texts(s.m.make_term_ite(s.t("p"), s.t("rm"), s.t("x32"))); }},
          {"is_term_ite",
           [](S& s) {
             const DataType* type = nullptr;
             const bool answer =
                 s.m.is_term_ite(s.m.make_term_ite_symbol(s.m.get_bv_type(8)), &type);
             return texts(answer, type, s.m.is_term_ite(s.unary, nullptr));
           }},
      });
}

// The makers, builders and recognisers of all families, the builders with all their failures.
void add_operators(std::vector<MemberCall>& calls) {
  for (const Row& row : operator_rows()) {
    std::string builder = row.operation;
    // Where errors name the operation otherwise than the member is called.
    if (builder == "make_int_fromsbv") builder = "make_int_from_sbv";
    if (builder == "make_int_fromubv") builder = "make_int_from_ubv";
    calls.push_back({builder + "_symbol", [&row](S& s) { return texts(row.make_symbol(s.m)); }});
    calls.push_back(
        {builder, [&row](S& s) { return texts(row.build(s.m, s.operands.terms(row.args))); }});
    for (const Failure& failure : row.failures) {
      calls.push_back({builder, [&row, &failure](S& s) {
                         return texts(row.build(s.m, s.operands.terms(failure.args)));
                       }});
    }
    const std::string recogniser = "is_" + builder.substr(std::string("make_").size());
    calls.push_back({recogniser, [&row](S& s) {
                       Names outputs;
                       const bool answer =
                           row.recognise.ask(s.m, row.make_symbol(s.m), ~0U, outputs);
                       return texts(answer, outputs);
                     }});
  }
}

void add_general_forms(std::vector<MemberCall>& calls) {
  calls.insert(
      calls.end(),
      {
          {"make_bv_symbol",
           [](S& s) {
             hsh::HashMap<const Symbol*, size_t> by_symbol;
             hsh::HashMap<size_t, const Symbol*> by_width;
             const Symbol* made = s.m.make_bv_symbol("bvmine", SymbolTag::BV_ADD, 8, 2, by_symbol,
                                                     by_width, nullptr);
             return texts(made, s.m.is_bv_symbol(made, by_symbol, nullptr));
           }},
          {"make_bv_symbol 2",
           [](S& s) {
             hsh::HashMap<const Symbol*, M::BVIndex1> by_symbol;
             hsh::HashMap<M::BVIndex1, const Symbol*> by_key;
             const Symbol* made = s.m.make_bv_symbol("bvindexed", SymbolTag::BV_ROTATE_LEFT, 3, 8,
                                                     1, by_symbol, by_key, nullptr);
             return texts(made, s.m.is_bv_symbol(made, by_symbol, nullptr, nullptr));
           }},
          {"is_bv_symbol",
           [](S& s) {
             const hsh::HashMap<const Symbol*, size_t> none;
             return texts(s.m.is_bv_symbol(s.unary, none, nullptr));
           }},
          {"is_bv_symbol 2",
           [](S& s) {
             const hsh::HashMap<const Symbol*, M::BVIndex1> none;
             return texts(s.m.is_bv_symbol(s.unary, none, nullptr, nullptr));
           }},
          {"is_bv_symbol 3",
           [](S& s) {
             const hsh::HashMap<const Symbol*, M::BVIndex2> none;
             return texts(s.m.is_bv_symbol(s.unary, none, nullptr, nullptr, nullptr));
           }},
          {"make_fp_symbol",
           [](S& s) {
             hsh::HashMap<IEEEFloat::format, const Symbol*> by_format;
             hsh::HashMap<const Symbol*, IEEEFloat::format> by_symbol;
             return texts(
                 s.m.make_fp_symbol("fpmine", SymbolTag::FP_ADD, 2, by_format, by_symbol, 8, 23));
           }},
          {"make_fp_is_symbol",
           [](S& s) {
             hsh::HashMap<IEEEFloat::format, const Symbol*> by_format;
             hsh::HashMap<const Symbol*, IEEEFloat::format> by_symbol;
             return texts(s.m.make_fp_is_symbol("fpismine", SymbolTag::FP_ISNAN, by_format,
                                                by_symbol, 8, 23));
           }},
          {"is_fp_symbol",
           [](S& s) {
             const hsh::HashMap<const Symbol*, IEEEFloat::format> none;
             return texts(s.m.is_fp_symbol(none, s.unary, nullptr, nullptr));
           }},
          {"get_fprounding_even", [](S& s) { return texts(s.m.get_fprounding_even()); }},
          {"get_fprounding_zero", [](S& s) { return texts(s.m.get_fprounding_zero()); }},
          {"get_fprounding_plus_inf", [](S& s) { return texts(s.m.get_fprounding_plus_inf()); }},
          {"get_fprounding_minus_inf", [](S& s) { return texts(s.m.get_fprounding_minus_inf()); }},
          {"make_fprounding_even_symbol",
           [](S& s) { return texts(s.m.make_fprounding_even_symbol()); }},
          {"make_fprounding_zero_symbol",
           [](S& s) { return texts(s.m.make_fprounding_zero_symbol()); }},
          {"make_fprounding_plus_inf_symbol",
           [](S& s) { return texts(s.m.make_fprounding_plus_inf_symbol()); }},
          {"make_fprounding_minus_inf_symbol",
           [](S& s) { return texts(s.m.make_fprounding_minus_inf_symbol()); }},
          {"make_fprounding_even", [](S& s) { return texts(s.m.make_fprounding_even()); }},
          {"make_fprounding_zero", [](S& s) { return texts(s.m.make_fprounding_zero()); }},
          {"make_fprounding_plus_inf", [](S& s) { return texts(s.m.make_fprounding_plus_inf()); }},
          {"make_fprounding_minus_inf",
           [](S& s) { return texts(s.m.make_fprounding_minus_inf()); }},
          {"is_fprounding_even",
           [](S& s) { return texts(s.m.is_fprounding_even(s.m.get_fprounding_even())); }},
          {"is_fprounding_zero",
           [](S& s) { return texts(s.m.is_fprounding_zero(s.m.get_fprounding_even())); }},
          {"is_fprounding_plus_inf",
           [](S& s) { return texts(s.m.is_fprounding_plus_inf(s.m.get_fprounding_plus_inf())); }},
          {"is_fprounding_minus_inf",
           [](S& s) { return texts(s.m.is_fprounding_minus_inf(s.unary)); }},
      });
}

void add_numerals(std::vector<MemberCall>& calls) {
  calls.insert(
      calls.end(),
      {
          {"make_number",
           [](S& s) {
             const int64_t value = 1000 + s.calls++;
             return texts(s.m.make_number(value), s.m.make_number(QNumber(value, 7)));
           }},
          {"make_number",
           [](S& s) {
             return texts(s.m.make_number(QNumber::from_string("123456789012345678901234567890")));
           }},
          {"make_bv_number", [](S& s) { return texts(s.m.make_bv_number(200, 8)); }},
          {"make_bv_number", [](S& s) { return texts(s.m.make_bv_number(256, 8)); }},
          {"make_bv_number", [](S& s) { return texts(s.m.make_bv_number(-1, 8)); }},
          {"make_fp_bits_number", [](S& s) { return texts(s.m.make_fp_bits_number(99, 5, 10)); }},
          {"make_fp_bits_number",
           [](S& s) { return texts(s.m.make_fp_bits_number(QNumber(1, 2), 5, 10)); }},
          {"make_fp_rat_number",
           [](S& s) {
             return texts(s.m.make_fp_rat_number(QNumber(1, 3), 5, 10, s.m.make_fprounding_zero()));
           }},
          {"make_fp_rat_number",
           [](S& s) { return texts(s.m.make_fp_rat_number(QNumber(1, 3), 5, 10, s.t("rm"))); }},
          {"make_fp_plus_inf", [](S& s) { return texts(s.m.make_fp_plus_inf(5, 10)); }},
          {"make_fp_minus_inf", [](S& s) { return texts(s.m.make_fp_minus_inf(5, 10)); }},
          {"make_fp_minus_inf", [](S& s) { return texts(s.m.make_fp_minus_inf(0, 10)); }},
          {"make_fp_nan", [](S& s) { return texts(s.m.make_fp_nan(5, 10)); }},
          {"is_number",
           [](S& s) {
             QNumber value;
             const bool answer = s.m.is_number(s.m.make_number(7)->symbol, &value);
             return texts(answer, value, s.m.is_number(s.unary, nullptr));
           }},
          {"operator_of",
           [](S& s) {
             const auto op = s.m.operator_of(s.m.make_bv_add_symbol(8));
             return texts(static_cast<uint64_t>(op.tag), op.numbers[0],
                          s.m.operator_of(s.unary).symbol);
           }},
          {"symbol_of",
           [](S& s) { return texts(s.m.symbol_of({.tag = SymbolTag::BV_ADD, .numbers = {24}})); }},
          {"make_operator",
           [](S& s) {
             const Term_* i = s.t("i");
             return texts(s.m.make_operator(s.m.operator_of(s.unary), std::vector{i}));
           }},
          {"make_operator 2",
           [](S& s) {
             const quill::Operator plus{.tag = SymbolTag::PLUS, .types = {s.m.get_int_type()}};
             return texts(s.m.make_operator(plus, {s.t("i"), s.t("j")}));
           }},
          {"make_operator 3",
           [](S& s) {
             const Term_* sum = s.m.make_plus(s.t("i"), s.t("j"));
             const quill::Operator times{.tag = SymbolTag::TIMES, .types = {s.m.get_int_type()}};
             return texts(s.m.make_operator(times, sum->arguments()));
           }},
          {"bv_value", [](S& s) { return texts(s.m.bv_value(s.m.make_bv_number(9, 8))); }},
          {"int_value", [](S& s) { return texts(s.m.int_value(s.m.make_number(-7))); }},
          {"real_value",
           [](S& s) { return texts(s.m.real_value(s.m.make_number(QNumber(1, 3)))); }},
          {"fp_value",
           [](S& s) {
             return texts(s.m.fp_value(s.m.make_fp_bits_number(15360, 5, 10)).get_bits());
           }},
          {"bv_width", [](S& s) { return texts(uint64_t{s.m.bv_width(s.m.get_bv_type(8))}); }},
          {"bv_width 2",
           [](S& s) { return texts(uint64_t{s.m.bv_width(s.m.make_bv_number(9, 8))}); }},
          {"fp_format", [](S& s) { return texts(s.m.fp_format(s.m.get_fp_type(5, 10)).m); }},
          {"fp_format 2", [](S& s) { return texts(s.m.fp_format(s.m.make_fp_nan(5, 10)).e); }},
          {"array_sorts",
           [](S& s) {
             const DataType* type = s.m.get_array_type(s.m.get_int_type(), s.m.get_rat_type());
             return texts(s.m.array_sorts(type).index, s.m.array_sorts(type).element);
           }},
          {"array_sorts 2",
           [](S& s) {
             const DataType* type = s.m.get_array_type(s.m.get_int_type(), s.m.get_rat_type());
             const Term_* t = s.m.make_array_const(type, s.m.make_number(QNumber(1, 3)));
             return texts(s.m.array_sorts(t).element);
           }},
          {"function_sorts",
           [](S& s) { return texts(s.m.function_sorts(s.binary->type).arguments); }},
          {"function_sorts 2", [](S& s) { return texts(s.m.function_sorts(s.binary).result); }},
      });
}

void add_transformations(std::vector<MemberCall>& calls) {
  const auto root = [](S& s) {
    const Term_* g = s.m.make_uninterpreted_function(s.unary, {s.t("i")});
    return s.m.make_uninterpreted_function(s.binary, {g, s.t("j")});
  };
  calls.insert(
      calls.end(),
      {
          {"substitute",
           [root](S& s) {
             s.images[s.t("i")] = s.t("j");
             const Term_* t = s.m.substitute(root(s), s.images, s.marks, true);
             return texts(t, uint64_t{s.images.count});
           }},
          {"substitute",
           [root](S& s) {
             TermManager::TermMap images;
             images[s.t("i")] = s.t("r");
             return texts(s.m.substitute(root(s), images, s.marks, true));
           }},
          {"substitute 2",
           [root](S& s) {
             TermManager::TermMap images;
             const Term_* t = s.m.substitute(root(s), {s.t("j")}, {s.t("i")}, images, s.marks);
             return texts(t, uint64_t{images.count});
           }},
          {"substitute 3",
           [root](S& s) {
             return texts(s.m.substitute(root(s), {s.t("i"), s.t("j")}, {s.t("j"), s.t("i")}));
           }},
          {"substitute 3", [root](S& s) { return texts(s.m.substitute(root(s), {s.t("i")}, {})); }},
          {"copy_term", [](S& s) { return texts(s.m.copy_term(s.source, s.shared_source)); }},
          {"copy_term",
           [](S& s) {
             // i is an Int here and a bit-vector there.
             TermManager other;
             const Term_* i = other.make_constant(other.make_symbol("i", other.get_bv_type(8)));
             return texts(s.m.copy_term(other, other.make_bv_not(i)));
           }},
          {"copy_term_with_subst",
           [](S& s) {
             TermManager::TermMap replaced;
             replaced[s.of_source("i")] = s.t("j");
             return texts(s.m.copy_term_with_subst(s.source, s.shared_source, replaced));
           }},
          {"copy_terms",
           [](S& s) {
             Terms out;
             s.m.copy_terms(s.source, {s.shared_source, s.of_source("p")}, out, true);
             s.m.copy_terms(s.source, {s.of_source("a"), s.shared_source}, out, false);
             return texts(out);
           }},
          {"copy_symbols",
           [](S& s) {
             Symbols out;
             s.m.copy_symbols(s.source, {s.shared_source->symbol, s.of_source("h")->symbol}, out);
             return texts(out);
           }},
          {"copy_types",
           [](S& s) {
             Types out;
             s.m.copy_types(s.source, {s.shared_source->symbol->type, s.source.get_fp_type(4, 4)},
                            out);
             return texts(out);
           }},
      });
}

void add_the_rest(std::vector<MemberCall>& calls) {
  calls.insert(
      calls.end(),
      {
          {"gc_generation", [](S& s) { return texts(s.m.gc_generation()); }},
          {"get_last_collection",
           [](S& s) { return texts(uint64_t{s.m.get_last_collection().terms}); }},
          {"check_consistency", [](S& s) { return texts(s.m.check_consistency()); }},
          {"describe_state", [](S& s) { return texts(s.m.describe_state().find("and") != 0); }},
          {"to_shallow_str_literal",
           [](S& s) {
             return texts(s.m.to_shallow_str_literal(s.m.make_and(s.t("p"), s.t("p"))));
           }},
      });
}

}  // namespace

CallSite::CallSite(TermManager& manager) : m(manager), operands(manager), source_operands(source) {
  const auto functions = [](TermManager& owner, const Symbol*& one, const Symbol*& two) {
    const DataType* type = owner.get_int_type();
    one = owner.make_symbol("unary", owner.get_function_type({type}, type));
    two = owner.make_symbol("binary", owner.get_function_type({type, type}, type));
  };
  functions(source, unary, binary);
  const Term_* g = source.make_uninterpreted_function(unary, {of_source("i")});
  shared_source = source.make_uninterpreted_function(binary, {g, g});
  functions(m, unary, binary);
}

const std::vector<MemberCall>& member_calls() {
  static const std::vector<MemberCall> all = [] {
    std::vector<MemberCall> calls;
    add_switches(calls);
    add_classification(calls);
    add_types(calls);
    add_symbols(calls);
    add_core_terms(calls);
    add_operators(calls);
    add_general_forms(calls);
    add_numerals(calls);
    add_transformations(calls);
    add_the_rest(calls);
    return calls;
  }();
  return all;
}

std::string outcome(const MemberCall& call, CallSite& site) {
  try {
    return call.make(site);
  } catch (const TermManager::error& e) {
    return std::string("error: ") + e.what();
  } catch (const Exception& e) {
    return std::string("Exception: ") + e.what();
  }
}

}  // namespace quill::testing
