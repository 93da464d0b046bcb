// Every descriptor case and every table case on a DOM of which one call fails, for each call.

#include "tests/support/cases.h"
#include "tests/support/faulty_dom.h"
#include "tests/support/table_cases.h"

#include <functional>
#include <list>
#include <utility>

#include <quillon/appsignal/int.h>
#include <quillon/descriptors/mpeg2/audio.h>
#include <quillon/fields/identifier.h>
#include <quillon/fields/time.h>
#include <quillon/tables/cat.h>

using namespace quillon;
using namespace quillon::test;

namespace {

using Trace = std::vector<std::string>;

bool calls(const std::string& step, const std::string& operation) {
  return step.compare(0, step.find(' '), operation) == 0;
}

bool is_of_attribute(const std::string& step) {
  return calls(step, "createAttribute") || calls(step, "put_nodeValue") || calls(step, "setAttributeNode");
}

// Where the `nth` call of an operation is, from 1.
size_t place_of(const Trace& trace, const std::string& operation, int nth) {
  for (size_t i = 0; i < trace.size(); ++i)
    if (calls(trace[i], operation) && --nth == 0) return i;
  return trace.size();
}

// An element of a save: from its creation to its attachment, which comes when it is filled. (The rows of a
// table are attached at once; what is set on them then counts as the table's own.)
struct Element {
  std::string name;
  size_t begin;
  size_t end;
  const Element* parent;  // null for the element that is saved to
  bool has_attributes;

  // Of the elements that hold them, those without attributes are the lists.
  bool is_item() const { return parent && !parent->has_attributes; }
  bool is_descriptor() const { return parent && parent->name == "descriptors"; }
};

std::list<Element> elements_of(const Trace& trace) {
  std::list<Element> out;
  Element* open = nullptr;
  std::vector<Element*> around;
  for (size_t i = 0; i < trace.size(); ++i)
    if (calls(trace[i], "createElement")) {
      around.push_back(open);
      open = &out.emplace_back(Element{trace[i].substr(trace[i].find(' ') + 1), i, 0, open, false});
    } else if (calls(trace[i], "appendChild")) {
      open->end = i;
      open = around.back();
      around.pop_back();
    } else if (open && is_of_attribute(trace[i])) {
      open->has_attributes = true;
    }
  return out;
}

constexpr size_t kEnds = static_cast<size_t>(-1);

// The step at which a save goes on when the one at `failed` failed; kEnds if it ends there, with false.
size_t next_step(const Trace& good, size_t failed) {
  const std::list<Element> elements = elements_of(good);
  const Element* inside = nullptr;  // the innermost element whose filling failed
  for (const Element& e : elements) {
    // A descriptor loop passes over what cannot be created or attached, itself included.
    const bool swallowed = e.name == "descriptors" || e.is_descriptor();
    if (swallowed && failed == e.begin) return e.name == "descriptors" ? e.end : e.end + 1;
    if (swallowed && failed == e.end) return e.end + 1;
    if (failed > e.begin && failed < e.end) inside = &e;
  }
  // An item of a list, or a descriptor of a loop, is attached as far as it has got; in all others the
  // element around them fails too.
  for (; inside; inside = inside->parent)
    if (inside->is_item()) return inside->end;
  return kEnds;
}

// A save of which the call at `failed` failed, beside a save without faults: what was made is left, and
// nothing else is made than by the good one.
void expect_left_in_order(const Trace& good, size_t failed, const Trace& trace, bool result) {
  const size_t next = next_step(good, failed);
  Trace expected(good.begin(), good.begin() + static_cast<ptrdiff_t>(failed) + 1);
  if (next != kEnds) expected.insert(expected.end(), good.begin() + static_cast<ptrdiff_t>(next), good.end());
  EXPECT_EQ(trace, expected);
  EXPECT_EQ(result, next != kEnds);
}

using Save = std::function<bool(void* document, void* node)>;

// The one save that throws, at the addresses of its records. Kept: callers distinguish it from a false.
bool throws(const std::string& name, const Trace& good, size_t failed) {
  if (name != "DescriptorAitRoutingIPv6" || !is_of_attribute(good[failed])) return false;
  while (!calls(good[failed], "createAttribute")) --failed;
  return good[failed] == "createAttribute address" || good[failed] == "createAttribute address_mask";
}

void expect_saves_survived(const std::string& name, const Save& save, bool good_result) {
  FaultyDom good;
  EXPECT_EQ(save(good.document(), good.node()), good_result);
  EXPECT_EQ(good.references(), 0);
  for (const char* operation : {"createElement", "createAttribute", "put_nodeValue", "appendChild",
                                "setAttributeNode", "QueryInterface"})
    for (int nth = 1; nth <= good.calls(operation); ++nth) {
      SCOPED_TRACE(std::string(operation) + " " + std::to_string(nth));
      FaultyDom dom(operation, nth);
      bool result = false;
      const std::string thrown = failure([&] { result = save(dom.document(), dom.node()); });
      EXPECT_EQ(dom.references(), 0);
      const size_t failed = place_of(good.trace(), operation, nth);
      if (throws(name, good.trace(), failed)) {
        EXPECT_EQ(thrown, "-1: failed");
        EXPECT_EQ(dom.trace().size(), failed + 1);
        continue;
      }
      EXPECT_EQ(thrown, "nothing");
      if (!good_result) {
        EXPECT_FALSE(result);
        EXPECT_EQ(dom.trace().size(), failed + 1);
        continue;
      }
      expect_left_in_order(good.trace(), failed, dom.trace(), result);
    }
}

using Load = std::function<void(void* node)>;

// A load ends with its first failing call, in an error.
void expect_loads_survived(const Load& load) {
  FaultyDom good;
  EXPECT_EQ(failure([&] { load(good.node()); }), "nothing");
  EXPECT_EQ(good.references(), 0);
  for (const char* operation : {"get_attributes", "getNamedItem", "get_nodeValue", "selectSingleNode",
                                "get_childNodes", "get_length", "get_item", "get_nodeName"})
    for (int nth = 1; nth <= good.calls(operation); ++nth) {
      SCOPED_TRACE(std::string(operation) + " " + std::to_string(nth));
      FaultyDom dom(operation, nth);
      EXPECT_EQ(failure([&] { load(dom.node()); }).compare(0, 10, "-1: failed"), 0);
      EXPECT_EQ(dom.references(), 0);
      const size_t failed = place_of(good.trace(), operation, nth);
      EXPECT_EQ(dom.trace(),
                Trace(good.trace().begin(), good.trace().begin() + static_cast<ptrdiff_t>(failed) + 1));
    }
}

}  // namespace

// References of their own are what lets a caller release its nodes while a save or a load runs.
TEST(ReferencesOfTheFaces, AreTakenByValues) {
  const auto taken_by = [](auto value) {
    FaultyDom saved;
    value.SaveSection(saved.document(), saved.node());
    FaultyDom loaded;
    value.Parse(loaded.node());
    EXPECT_EQ(saved.references(), 0);
    EXPECT_EQ(loaded.references(), 0);
    return std::pair(saved.taken(), loaded.taken());
  };
  const std::pair document_and_node_then_node(2, 1);
  EXPECT_EQ(taken_by(DateTime()), document_and_node_then_node);
  EXPECT_EQ(taken_by(TimeOffset()), document_and_node_then_node);
  EXPECT_EQ(taken_by(ApplicationIdentifier()), document_and_node_then_node);
  EXPECT_EQ(taken_by(LengthPrefixedString()), document_and_node_then_node);
  EXPECT_EQ(taken_by(MultilingualNameInfo()), document_and_node_then_node);
  EXPECT_EQ(taken_by(DescriptorISO639Language::ISO639Lang()), document_and_node_then_node);
  const auto [pair_saved, pair_loaded] = taken_by(Int::TargetOperationalDescriptors());
  EXPECT_EQ(pair_saved, 2 + 2 * 4);  // its own, and those of two loops with a length
  EXPECT_EQ(pair_loaded, 1 + 2 * 2);
}

TEST(ReferencesOfTheFaces, AreTakenByLoops) {
  FaultyDom dom;
  Cat loop;
  loop._save_descriptors(dom.document(), dom.node());
  EXPECT_EQ(dom.taken(), 2);
  loop._parse_descriptors(dom.node());
  EXPECT_EQ(dom.taken(), 3);
  EXPECT_EQ(dom.references(), 0);
}

TEST(FailingDom, LeavesSavesOfDescriptorsInOrder) {
  for (const DescriptorCase& c : Cases::all()) {
    SCOPED_TRACE(c.name);
    const ByteView view(c.bytes.data(), c.bytes.size());
    expect_saves_survived(
        c.name, [&](void* document, void* node) { return c.save_to(view, document, node); }, true);
  }
}

TEST(FailingDom, EndsLoadsOfDescriptors) {
  for (const DescriptorCase& c : Cases::all()) {
    SCOPED_TRACE(c.name);
    expect_loads_survived(c.load_from);
  }
}

TEST(FailingDom, LeavesSavesOfTablesInOrder) {
  for (const TableCase& c : TableCases::all()) {
    SCOPED_TRACE(c.name);
    const auto table = c.make();
    table->Parse(c.section.data(), c.section.size(), true);
    expect_saves_survived(
        c.name, [&](void* document, void* node) { return table->SaveSection(document, node); },
        c.back != Back::unsaved);
  }
}

TEST(FailingDom, EndsLoadsOfTables) {
  for (const TableCase& c : TableCases::all()) {
    SCOPED_TRACE(c.name);
    expect_loads_survived([&](void* node) {
      const auto table = c.make();
      struct Parsed {
        const AnyTable& table;
        bool good = false;
        ~Parsed() { EXPECT_EQ(table.is_parsed(), good); }
      } parsed{*table};
      table->ParseDOM(node);
      parsed.good = true;
    });
  }
}
