// The rows of the registries take no heap, the indexes do. A program of its own, as it counts all
// allocations.

#include "tests/alone/counted_heap.h"
#include "tests/report/registries.h"

#include <gtest/gtest.h>

using namespace quillon;
using namespace quillon::test;

namespace {

int sum_of_lengths() {
  int sum = 0;
  for (const Registry& registry : kRegistries)
    for (const registry_row& row : get_registry_rows(registry.kind))
      for (const char* c = registry.name_of(row.id); *c; ++c) ++sum;
  return sum;
}

}  // namespace

TEST(RegistriesAllocation, IsMadeByInitAlone) {
  const size_t before = allocated;
  EXPECT_GT(sum_of_lengths(), 0);
  EXPECT_EQ(allocated, before);
  init();
  EXPECT_GT(allocated, before);
  // About half of what the rows themselves take as static data: they were not copied.
  EXPECT_LT(allocated - before, 128u * 1024);
  const size_t after = allocated;
  EXPECT_GT(sum_of_lengths(), 0);
  EXPECT_EQ(allocated, after);
}
