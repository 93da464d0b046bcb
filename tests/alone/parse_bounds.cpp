// What the worst section costs: its heap at the peak, and the blocks of code that its parse enters. Counts,
// not times: a loaded machine changes nothing. The library's sources are compiled into this program a second
// time, with a call at the head of each block.

#include "tests/alone/counted_heap.h"
#include "tests/alone/counted_operations.h"
#include "tests/alone/worst_sections.h"

#include <algorithm>
#include <functional>
#include <gtest/gtest.h>
#include <iostream>
#include <random>

using namespace quillon;
using namespace quillon::test;

namespace {

constexpr size_t kMostHeap = 8u * 1024 * 1024;

// Those of 10 ms.
constexpr uint64_t kMostOperations = 13000000;

struct Cost {
  std::string what;
  size_t heap = 0;
  uint64_t operations = 0;
  bool good = false;
};

Cost cost_of(const TableCase& table, const Bytes& section, bool tolerant) {
  Cost cost;
  const size_t before = live;
  peak = before;
  const uint64_t begun = operations();
  const auto object = table.make();
  object->set_tolerant(tolerant);
  try {
    object->Parse(section.data(), section.size(), true);
    cost.good = true;
  } catch (const error&) {
  }
  cost.operations = operations() - begun;
  cost.heap = peak - before;
  return cost;
}

// The worst that was seen, of a table or of all.
struct Worst {
  Cost heap;
  Cost operations;
  size_t sections = 0;
  size_t good = 0;

  void look_at(const TableCase& table, const Bytes& section, const std::string& what) {
    for (const bool tolerant : {false, true}) {
      Cost cost = cost_of(table, section, tolerant);
      ++sections;
      good += cost.good;
      cost.what = table.name + (tolerant ? ", tolerant, " : ", ") + what;
      if (cost.heap > heap.heap) heap = cost;
      if (cost.operations > operations.operations) operations = cost;
    }
  }
  void expect_bounded() const {
    std::cout << sections << " sections, " << good << " of them good\n"
              << "most heap: " << heap.heap << " bytes (" << heap.what << ")\n"
              << "most operations: " << operations.operations << " (" << operations.what << ")\n";
    EXPECT_LE(heap.heap, kMostHeap) << heap.what;
    EXPECT_LE(operations.operations, kMostOperations) << operations.what;
  }
};

}  // namespace

TEST(ParseBounds, CountsOperationsAndHeap) {
  const auto pat = table_case<Pat>("Pat", "pat", {});
  const Cost small = cost_of(pat, long_section(0x00, Bytes(4)), false);
  const Cost large = cost_of(pat, long_section(0x00, Bytes(4000)), false);
  EXPECT_GT(small.operations, 20u);
  EXPECT_GT(large.operations, small.operations + 1000);
  EXPECT_GT(large.heap, small.heap + 4000);
  EXPECT_GT(cost_of(pat, long_section(0x01, Bytes(4)), false).operations, kThrow);
}

TEST(ParseBounds, HoldForEachTableIdWithAnyFill) {
  std::vector<Bytes> bodies;
  for (const Fill& fill : general_fills()) bodies.push_back(fill.make(kLongBody));
  Worst worst;
  for (const Bounded& b : tables())
    for (int id = 0; id < 256; ++id) {
      const bool its_own = std::find(b.ids.begin(), b.ids.end(), id) != b.ids.end();
      // An id that is not its own is refused whatever follows it; Int alone reads on.
      for (size_t i = 0; i < (its_own ? bodies.size() : 1); ++i)
        worst.look_at(b.table, section_of(b, id, bodies[i]),
                      "id " + std::to_string(id) + ", " + general_fills()[i].name);
    }
  worst.expect_bounded();
}

TEST(ParseBounds, HoldForEachLoopWithAnyFill) {
  Worst worst;
  for (const Bounded& b : tables())
    for (const Shape& shape : b.shapes)
      for (const Fill& fill : general_fills())
        worst.look_at(b.table, section_of(b, b.ids[0], shape.body(fill.make)), shape.name + ", " + fill.name);
  EXPECT_GT(worst.good, worst.sections / 10);
  worst.expect_bounded();
}

TEST(ParseBounds, HoldForEachLoopFullOfOneTag) {
  Worst worst;
  for (int tag = 0; tag < 256; ++tag)
    for (const Fill& fill : fills_of(tag))
      for (const char* name : {"PmtDVB", "AtscMGT", "Ait", "Int"}) {
        const auto b = std::find_if(tables().begin(), tables().end(),
                                    [name](const Bounded& each) { return each.table.name == name; });
        const Bytes body = b->shapes.front().body(fill.make);
        worst.look_at(b->table, section_of(*b, b->ids[0], body), fill.name);
        // The pairs of a notification table know other tags than its own loop.
        if (b->table.name == "Int")
          for (const size_t i : {b->shapes.size() - 1, b->shapes.size() / 2})
            worst.look_at(b->table, section_of(*b, b->ids[0], b->shapes[i].body(fill.make)), fill.name);
      }
  EXPECT_GT(worst.good, worst.sections / 10);
  worst.expect_bounded();
}
