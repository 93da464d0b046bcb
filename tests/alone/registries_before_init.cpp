// Before init no id has a name. A program of its own, in which nothing else calls init.

#include "tests/report/registries.h"

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <string_view>

#include <quillon/platform/internal/log_file.h>

using namespace quillon;
using namespace quillon::test;

namespace {

size_t named() {
  size_t count = 0;
  for (const Registry& registry : kRegistries)
    for (int id = -1; id <= 0x10000; ++id)
      if (registry.name_of(id) != std::string_view(kUnknown)) ++count;
  return count;
}

}  // namespace

// One test, as each step depends on those before it.
TEST(RegistriesBeforeInit, HaveRowsButNoNames) {
  EXPECT_EQ(named(), 0u);
  EXPECT_STREQ(get_network_id(0), kUnknown);
  for (const Registry& registry : kRegistries) {
    const auto rows = get_registry_rows(registry.kind);
    EXPECT_FALSE(rows.empty()) << registry.name;
    for (const registry_row& row : rows) ASSERT_STREQ(registry.name_of(row.id), kUnknown) << registry.name;
  }

  const std::filesystem::path file = platform::executable_folder() + "overlay_before_init.tsv";
  std::ofstream(file, std::ios::binary) << "first_id\tlast_id\tname\n0x2300\t0x2301\tOverlay\n";
  load_registry_overlay(registry_kind::ca_system, file);
  std::filesystem::remove(file);
  EXPECT_STREQ(get_ca_system_id(0x2301), "Overlay");
  EXPECT_EQ(named(), 2u);

  init();
  EXPECT_STREQ(get_ca_system_id(0x2301), "Overlay");
  EXPECT_STREQ(get_ca_system_id(0x2302), "BARCO AS&nbsp;");
  EXPECT_STREQ(get_network_id(0), "Reserved");
}
