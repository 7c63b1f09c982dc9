// Every public member of the manager is called from a delegate, from an overridden make_term and
// from the callback of a visitor, nested two deep in all combinations. What it returns or throws,
// the results of the requests and walks around it, and the whole state of the manager are the same
// as when the calls are made one after the other.

#include <gtest/gtest.h>

#include <array>
#include <cctype>
#include <cstddef>
#include <fstream>
#include <functional>
#include <iterator>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "quill/terms/termmanager/term_manager.h"
#include "quill/terms/termmanager/term_visitor.h"
#include "tests/unit/terms/termmanager/member_calls.h"

namespace quill {
namespace {

using testing::CallSite;
using testing::MemberCall;
using testing::Terms;
using Texts =
    std::array<std::string, 3>;  // what the outer level, the inner one and the call come to
using Action = std::function<void()>;

// From where a call is made.
enum Place { Delegate, BeforeBuilding, AfterBuilding, PreVisit, PostVisit };
constexpr std::array<Place, 5> all_places = {Delegate, BeforeBuilding, AfterBuilding, PreVisit,
                                             PostVisit};

// Runs the action that is put into it once, from the delegate or the overridden make_term of the
// next request that gets there. The delegate declines.
class CallingManager : public TermManager {
 public:
  CallingManager() {
    set_delegate(&asked);
    set_delegate_enabled(true);
  }

  const Term_* make_term(const Symbol* s, const Terms& args) override {
    act(BeforeBuilding);
    const Term_* t = TermManager::make_term(s, args);
    act(AfterBuilding);
    return t;
  }

  void put(Place where, Action what) {
    place = where;
    action = std::move(what);
  }

 private:
  struct Asked : TermFactory {
    explicit Asked(CallingManager& m) : manager(m) {}
    const Term_* make_term(const Symbol*, const Terms&) override {
      manager.act(Delegate);
      return nullptr;
    }
    CallingManager& manager;
  };

  void act(Place where) {
    if (!action || where != place) return;
    const Action now = std::move(action);
    action = nullptr;
    now();
  }

  Asked asked{*this};
  Place place = Delegate;
  Action action;
};

// Walks below a term of its level, all with one visitor, and acts when it is in the
// middle.
class Walker {
 public:
  explicit Walker(TermManager& m) {
    const DataType* type = m.get_int_type();
    const Symbol* middle = m.make_symbol("middle", m.get_function_type({type}, type));
    const Symbol* root = m.make_symbol("root", m.get_function_type({type, type}, type));
    for (Level& level : levels) {
      const std::string number = std::to_string(&level - levels.data());
      const Term_* a = m.make_constant(m.make_symbol("below" + number, type));
      const Term_* b = m.make_constant(m.make_symbol("beside" + number, type));
      level.middle = m.make_uninterpreted_function(middle, {a});
      level.root = m.make_uninterpreted_function(root, {level.middle, b});
    }
  }

  // The calls of the walk; those of a walk that the action makes are its own affair.
  std::string walk(size_t number, Place where, Action what) {
    Level& level = levels[number];
    level.place = where;
    level.action = std::move(what);
    level.calls.clear();
    const bool is_outermost = levels_under_way.empty();
    levels_under_way.push_back(&level);
    visitor.visit(level.root, /*clear_marks=*/is_outermost);
    levels_under_way.pop_back();
    return level.calls;
  }

  int visit(const Term_* t, bool preorder) {
    Level& level = *levels_under_way.back();
    level.calls += preorder ? " +" : " -";
    level.calls += t->symbol->name;
    if (t == level.middle && level.place == (preorder ? PreVisit : PostVisit)) level.action();
    return 2;
  }

 private:
  struct Level {
    const Term_* root = nullptr;
    const Term_* middle = nullptr;
    Place place = PreVisit;
    Action action;
    std::string calls;
  };

  std::array<Level, 2> levels;
  std::vector<Level*> levels_under_way;
  TermVisitor<Walker> visitor{this, /*visit_once=*/true};
};

// The requests around a call, in turn. Each makes terms that were not there, and most of them a
// symbol as well, before anybody is called.
struct Request {
  std::function<void(TermManager&, const Terms&)> make_symbol;  // what it has made by then
  std::function<const Term_*(TermManager&, const Terms&)> make;
  bool is_refused = false;  // by the manager's own make_term
};

const DataType* type_of(const Term_* t) { return t->type(); }

void no_symbol(TermManager&, const Terms&) {}

// Over the constants: two of type Int, two of a type of their own, a Bool, and an array of that
// type.
const std::vector<Request> requests = {
    {no_symbol, [](TermManager& m, const Terms& t) { return m.make_plus(t[0], t[1]); }},
    {[](TermManager& m, const Terms& t) { m.make_equality_symbol(type_of(t[2])); },
     [](TermManager& m, const Terms& t) { return m.make_equal(t[2], t[3]); }},
    {[](TermManager& m, const Terms& t) { m.make_term_ite_symbol(type_of(t[2])); },
     [](TermManager& m, const Terms& t) { return m.make_term_ite(t[4], t[2], t[3]); }},
    {no_symbol, [](TermManager& m, const Terms& t) { return m.make_not(t[4]); }},
    {[](TermManager& m, const Terms& t) {
       m.make_array_read_symbol(m.get_int_type(), type_of(t[2]));
     },
     [](TermManager& m, const Terms& t) { return m.make_array_read(t[5], t[0]); }},
    {no_symbol,
     [](TermManager& m, const Terms& t) {
       const Symbol* iff = m.get_signature()->get_symbol("`iff`");
       return m.make_bin(iff, t[4], m.make_false(), "around");
     }},
    {no_symbol, [](TermManager& m, const Terms& t) { return m.make_and(t[4], t[0]); },
     /*is_refused=*/true},
    {no_symbol, [](TermManager& m, const Terms& t) { return m.make_equal(t[3], t[0]); },
     /*is_refused=*/true},
};

std::string outcome_of(const std::function<const Term_*()>& request) {
  try {
    const Term_* t = request();
    return std::to_string(t->id) + " " + t->to_str();
  } catch (const TermManager::error& e) {
    return std::string("error: ") + e.what();
  }
}

// One run through all calls: nested in two levels, or flat.
class RoundsOfCalls {
 public:
  RoundsOfCalls(Place outer, Place inner, bool nested) : places{outer, inner}, is_nested(nested) {}

  // Makes the call within two levels and notes what came of each.
  Texts make(const MemberCall& call, size_t number) {
    round = number;
    log = {"not reached", "not reached", "not reached"};
    for (Terms& t : operands) t.clear();
    for (size_t level = 0; level < 2; ++level) {
      const std::string tail = std::to_string(round) + "_" + std::to_string(level);
      const DataType* own = m.get_simple_type("T" + tail, false);
      const DataType* array = m.get_array_type(m.get_int_type(), own);
      const std::array<const DataType*, 6> types = {
          m.get_int_type(), m.get_int_type(), own, own, m.get_bool_type(), array};
      for (size_t i = 0; i < types.size(); ++i) {
        operands[level].push_back(
            m.make_constant(m.make_symbol("c" + std::to_string(i) + "_" + tail, types[i])));
      }
    }
    enter(0, [&] { enter(1, [&] { log[2] = testing::outcome(call, site); }); });
    return log;
  }

  CallingManager m;
  CallSite site{m};

 private:
  void enter(size_t level, const Action& action) {
    const Place place = places[level];
    if (place == PreVisit || place == PostVisit) {
      if (is_nested) {
        log[level] = walker.walk(level, place, action);
      } else {
        action();
        log[level] = walker.walk(level, place, [] {});
      }
      return;
    }
    const Request& request = request_of(level);
    const Terms& t = operands[level];
    if (is_nested) {
      m.put(place, action);
      log[level] = outcome_of([&] { return request.make(m, t); });
      return;
    }
    const auto make = [&] { log[level] = outcome_of([&] { return request.make(m, t); }); };
    request.make_symbol(m, t);
    if (place == AfterBuilding) make();
    action();
    if (place != AfterBuilding) make();
  }

  // A request that is refused calls only make_term before that.
  const Request& request_of(size_t level) const {
    size_t i = (round + 3 * level) % requests.size();
    while (requests[i].is_refused && places[level] != BeforeBuilding) {
      i = (i + 1) % requests.size();
    }
    return requests[i];
  }

  Place places[2];
  bool is_nested;
  Walker walker{m};
  size_t round = 0;
  std::array<Terms, 2> operands;
  Texts log;
};

class CallsFromCallbacks : public ::testing::TestWithParam<std::tuple<Place, Place>> {};

TEST_P(CallsFromCallbacks, ComeToTheSameAsCallsOneAfterTheOther) {
  const auto [outer, inner] = GetParam();
  RoundsOfCalls nested(outer, inner, true);
  RoundsOfCalls flat(outer, inner, false);
  const std::vector<MemberCall>& calls = testing::member_calls();
  for (size_t i = 0; i < calls.size(); ++i) {
    ASSERT_EQ(nested.make(calls[i], i), flat.make(calls[i], i))
        << calls[i].member << ", call " << i;
    if (i % 150 != 149 && i + 1 != calls.size()) continue;
    ASSERT_EQ(nested.m.check_consistency(), "") << "after call " << i;
    ASSERT_EQ(nested.m.describe_state(), flat.m.describe_state()) << "after call " << i;
  }
}

std::string name_of_test(const ::testing::TestParamInfo<std::tuple<Place, Place>>& info) {
  const auto name = [](Place place) {
    constexpr std::array<const char*, 5> names = {"ADelegate", "BeforeBuilding", "AfterBuilding",
                                                  "APreVisit", "APostVisit"};
    return std::string(names[place]);
  };
  return name(std::get<0>(info.param)) + "Around" + name(std::get<1>(info.param));
}

INSTANTIATE_TEST_SUITE_P(TwoDeep, CallsFromCallbacks,
                         ::testing::Combine(::testing::ValuesIn(all_places),
                                            ::testing::ValuesIn(all_places)),
                         name_of_test);

//------------------------------------------------------------------------------------------------
// That the table is complete

// The names of the functions that the public part of the class declares, as often as each is there.
std::multiset<std::string> public_members() {
  std::ifstream in(QUILL_SOURCE_DIR "/quill/terms/termmanager/term_manager.h");
  const std::string header{std::istreambuf_iterator<char>(in), {}};
  const std::string start = "class TermManager : public TermFactory {\n public:\n";
  const size_t begin = header.find(start) + start.size();
  const size_t end = header.find("\n private:", begin);
  std::multiset<std::string> names;
  std::string declaration;
  int depth = 0;  // of braces
  for (size_t i = begin; i < end; ++i) {
    const char c = header[i];
    if (c == '/' && header[i + 1] == '/') {
      i = header.find('\n', i);
    } else if (c == '{') {
      ++depth;
    } else if (c == '}') {
      --depth;
    }
    if (depth > 0) continue;
    if (c != ';' && c != '}') {
      declaration += c;
      continue;
    }
    const size_t parenthesis = declaration.find('(');
    if (parenthesis != std::string::npos) {
      size_t first = parenthesis;
      while (std::isalnum(declaration[first - 1]) != 0 || declaration[first - 1] == '_') first--;
      names.insert(declaration.substr(first, parenthesis - first));
    }
    declaration.clear();
  }
  return names;
}

TEST(MemberCalls, AreThereForEachPublicMember) {
  // Nobody calls these on a manager that has a request under way: construction (also by copying),
  // destruction, assignment (its name has no letters), and what frees.
  const std::multiset<std::string> not_called = {"TermManager", "TermManager", "TermManager", "",
                                                 "gc",          "free_type",   "free_symbol"};
  std::multiset<std::string> declared = public_members();
  EXPECT_GT(declared.size(), 250U);
  for (const std::string& name : not_called) {
    const auto found = declared.find(name);
    ASSERT_NE(found, declared.end()) << name;
    declared.erase(found);
  }
  std::set<std::string> expected;
  for (const std::string& name : declared) {
    const size_t count = declared.count(name);
    expected.insert(name);
    for (size_t i = 2; i <= count; ++i) expected.insert(name + " " + std::to_string(i));
  }
  std::set<std::string> called;
  for (const MemberCall& call : testing::member_calls()) called.insert(call.member);
  for (const std::string& name : expected) EXPECT_EQ(called.count(name), 1U) << name;
  for (const std::string& name : called) EXPECT_EQ(expected.count(name), 1U) << name;
}

}  // namespace
}  // namespace quill
