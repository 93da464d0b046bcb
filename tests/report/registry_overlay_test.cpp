#include "tests/report/registries.h"
#include "tests/support/faces.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include <quillon/platform/internal/log_file.h>

using namespace quillon;
using namespace quillon::test;

namespace {

const char* private_data(uint32_t specifier) {
  return get_private_data_id(static_cast<int>(specifier));
}

// A file that overlays a registry; all overlays are empty again at the end.
class RegistryOverlay : public testing::Test {
 protected:
  static void SetUpTestSuite() { init(); }

  static constexpr const char* kHeading = "first_id\tlast_id\tname\n";

  ~RegistryOverlay() override {
    for (const Registry& registry : kRegistries) load(registry.kind, kHeading);
    std::filesystem::remove(file_);
  }

  void load(registry_kind kind, const std::string& text) {
    std::ofstream(file_, std::ios::binary) << text;
    load_registry_overlay(kind, file_);
  }
  void load_rows(registry_kind kind, const std::string& rows) { load(kind, kHeading + rows); }

  // The failure's text after the file's name.
  std::string refusal(registry_kind kind, const std::string& text) {
    const std::string all = failure([&] { load(kind, text); });
    const std::string front = "-1: " + file_.string();
    EXPECT_EQ(all.substr(0, front.size()), front);
    return all.size() < front.size() ? all : all.substr(front.size());
  }

  std::filesystem::path file_ = platform::executable_folder() + "registry_overlay_test.tsv";
};

}  // namespace

TEST_F(RegistryOverlay, AnswersFirst) {
  load_rows(registry_kind::ca_system, "0x2300\t0x2301\tOther\n0x4AD2\t0x4AD2\tNew\n0x0001\t0x0001\t\n");
  EXPECT_STREQ(get_ca_system_id(0x22FF), "Scopus Network Technologies");
  EXPECT_STREQ(get_ca_system_id(0x2300), "Other");
  EXPECT_STREQ(get_ca_system_id(0x2301), "Other");
  EXPECT_STREQ(get_ca_system_id(0x2302), "BARCO AS&nbsp;");
  EXPECT_STREQ(get_ca_system_id(0x4AD2), "New");
  EXPECT_STREQ(get_ca_system_id(0x4AD3), kUnknown);
  EXPECT_STREQ(get_ca_system_id(1), "");
  EXPECT_STREQ(get_ca_system_id(2), "Standardized systems");
  for (const Registry& registry : kRegistries) {
    const bool other = registry.name_of(0x2300) == std::string_view("Other");
    EXPECT_EQ(other, registry.kind == registry_kind::ca_system) << registry.name;
  }
  EXPECT_EQ(get_registry_rows(registry_kind::ca_system).size(), 9362u);
}

TEST_F(RegistryOverlay, IsThereForEachKind) {
  for (const Registry& registry : kRegistries) {
    load_rows(registry.kind, std::string("0x0000\t0x0000\tMy ") + registry.name + "\n");
    EXPECT_STREQ(registry.name_of(0), (std::string("My ") + registry.name).c_str());
  }
}

TEST_F(RegistryOverlay, OutlastsInit) {
  load_rows(registry_kind::bouquet, "0x0000\t0x0000\tMine\n");
  init();
  EXPECT_STREQ(get_bouquet_id(0), "Mine");
}

TEST_F(RegistryOverlay, GivesWayToTheNextFileAndLeavesItsNames) {
  load_rows(registry_kind::bouquet, "0x0000\t0x0001\tEarlier\n");
  const char* const earlier = get_bouquet_id(1);
  load_rows(registry_kind::bouquet, "0x0000\t0x0000\tLater\n");
  EXPECT_STREQ(get_bouquet_id(0), "Later");
  EXPECT_STREQ(get_bouquet_id(1), kUnknown);
  EXPECT_STREQ(earlier, "Earlier");
}

TEST_F(RegistryOverlay, TakesIdsOf32BitsWhereTheKindHasThem) {
  load_rows(registry_kind::private_data, "0x80000000\t0xFFFFFFFF\tUpper\n0x7FFFFFFF\t0x7FFFFFFF\tBelow\n");
  EXPECT_STREQ(private_data(0x7FFFFFFF), "Below");
  EXPECT_STREQ(private_data(0x80000000), "Upper");
  EXPECT_STREQ(private_data(0xFCFCFCFC), "Upper");
  EXPECT_STREQ(private_data(0xFFFFFFFF), "Upper");
  load_rows(registry_kind::mhp_organisation, "0x00010000\t0xFFFFFFFF\tLarge\n");
  EXPECT_STREQ(get_mhp_id(0x10000), "Large");
  EXPECT_STREQ(get_mhp_id(-1), "Large");
  EXPECT_STREQ(get_mhp_id(0xFFFF), kUnknown);
  load_rows(registry_kind::network, "0x0000\t0xFFFF\tAll\n");
  EXPECT_STREQ(get_network_id(0xFFFF), "All");
}

TEST_F(RegistryOverlay, HoldsWindows1252) {
  load_rows(registry_kind::network,
            "0x0001\t0x0001\t28.2°E – Übertragung €\n0x0002\t0x0002\tЖ日😀!\n0x0003\t0x0003\tends in a "
            "blank\u00A0\n");
  EXPECT_STREQ(get_network_id(1), "28.2\260E \226 \334bertragung \200");
  EXPECT_STREQ(get_network_id(2), "\?\?\?!");
  EXPECT_STREQ(get_network_id(3), "ends in a blank\xA0");
}

TEST_F(RegistryOverlay, PassesOverCommentsEmptyLinesAndWhatEditorsAdd) {
  load(registry_kind::network,
       "\xEF\xBB\xBF# kept by hand\r\n\r\nfirst_id\tlast_id\tname\r\n# one more\r\n0x1\t0x0a\tA # B\r\n\r\n"
       "0x000b\t0x000B\tthe last line, not ended");
  EXPECT_STREQ(get_network_id(1), "A # B");
  EXPECT_STREQ(get_network_id(0xA), "A # B");
  EXPECT_STREQ(get_network_id(0xB), "the last line, not ended");
}

TEST_F(RegistryOverlay, TakesNothingOfAFileWithABadLine) {
  load_rows(registry_kind::network, "0x0001\t0x0001\tBefore\n");
  const std::string columns = "fewer than three columns";
  const std::string number = "an id is not a number as 0x12AB";
  const std::string coding = "the name is not UTF-8";
  const std::string control = "a control character in the name";
  const struct {
    std::string line;
    std::string why;
  } cases[] = {
      {"0x0001", columns},
      {"0x0001\t0x0001", columns},
      {"0x0001 0x0001 Name", columns},
      {"first_id\tlast_id\tname", number},
      {"\t0x0001\tName", number},
      {"0x\t0x0001\tName", number},
      {"0001\t0x0001\tName", number},
      {"0x0001\t-0x0001\tName", number},
      {"0x0001\t0x-001\tName", number},
      {"0x0001 \t0x0001\tName", number},
      {"0x0001\t0x00g1\tName", number},
      {"0x0001\t0x100000001\tName", number},
      {"0x0001\t0x10000\tName", "an id is too large"},
      {"0x10000\t0x10000\tName", "an id is too large"},
      {"0x0002\t0x0001\tName", "last_id is below first_id"},
      {"0x0001\t0x0001\tName\t", "more than three columns"},
      {"0x0001\t0x0001\tA\x01", control},
      {std::string("0x0001\t0x0001\tA\0B", 17), control},
      {"0x0001\t0x0001\tA\x7F", control},
      {"0x0001\t0x0001\tA\rB", control},
      {"0x0001\t0x0001\t78.5\260E", coding},
      {"0x0001\t0x0001\t\xC2", coding},
      {"0x0001\t0x0001\t\xC1\x81", coding},
      {"0x0001\t0x0001\t\xE2\x82", coding},
      {"0x0001\t0x0001\t\xE2\x82z", coding},
      {"0x0001\t0x0001\t\xE0\x9F\xBF", coding},
      {"0x0001\t0x0001\t\xED\xA0\x80", coding},
      {"0x0001\t0x0001\t\xF0\x8F\xBF\xBF", coding},
      {"0x0001\t0x0001\t\xF4\x90\x80\x80", coding},
      {"0x0001\t0x0001\t\xF5\x80\x80\x80", coding},
  };
  for (const auto& c : cases) {
    const std::string rows = "0x0001\t0x0001\tTaken\n# comment\n" + c.line + "\n0x0003\t0x0003\tTaken\n";
    EXPECT_EQ(refusal(registry_kind::network, kHeading + rows), ", line 4: " + c.why) << c.line;
    EXPECT_STREQ(get_network_id(1), "Before") << c.line;
    EXPECT_STREQ(get_network_id(3), "Astra") << c.line;
  }
}

TEST_F(RegistryOverlay, NeedsItsHeading) {
  EXPECT_EQ(refusal(registry_kind::network, ""), ": the heading of the columns is missing");
  EXPECT_EQ(refusal(registry_kind::network, "# only a comment\n"), ": the heading of the columns is missing");
  EXPECT_EQ(refusal(registry_kind::network, "# comment\n0x0001\t0x0001\tName\n"),
            ", line 2: the heading of the columns is missing");
}

TEST_F(RegistryOverlay, NeedsAFileThatCanBeRead) {
  const std::filesystem::path folder = platform::executable_folder();
  const std::filesystem::path none = folder / "no such folder" / "file.tsv";
  EXPECT_EQ(failure([&] { load_registry_overlay(registry_kind::network, none); }),
            "-1: " + none.string() + ": can't be opened");
  EXPECT_NE(failure([&] { load_registry_overlay(registry_kind::network, folder); }), "nothing");
}

// Lines that overlap in all ways, against ids that are named one by one.
TEST_F(RegistryOverlay, LetsTheLastLineWin) {
  constexpr uint32_t kIds = 24;
  std::mt19937 random(1);
  const auto below = [&random](uint32_t limit) { return static_cast<uint32_t>(random() % limit); };
  for (int round = 0; round < 200; ++round) {
    std::vector<std::string> expected(kIds, kUnknown);
    std::string rows;
    for (int line = 0; line < 12; ++line) {
      const uint32_t a = below(kIds);
      const uint32_t b = below(kIds);
      const std::string name(1, static_cast<char>('A' + below(4)));
      char text[64];
      std::snprintf(text, sizeof text, "0x%X\t0x%X\t%s\n", 0xFFFFFFE8 + std::min(a, b),
                    0xFFFFFFE8 + std::max(a, b), name.c_str());
      rows += text;
      for (uint32_t id = std::min(a, b); id <= std::max(a, b); ++id) expected[id] = name;
    }
    load_rows(registry_kind::private_data, rows);
    for (uint32_t id = 0; id < kIds; ++id)
      ASSERT_EQ(private_data(0xFFFFFFE8 + id), expected[id]) << id << "\n" << rows;
    ASSERT_STREQ(private_data(0xFFFFFFE7), kUnknown);
    ASSERT_STREQ(private_data(0), "Reserved");
  }
}
