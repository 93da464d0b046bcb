// The program's names command, and the UTF-8 in which all its output is.

#include "apps/quillon/names.h"

#include <algorithm>
#include <cstdint>
#include <gtest/gtest.h>
#include <iostream>
#include <iterator>
#include <optional>
#include <sstream>
#include <string>

namespace {

// What a call printed, and its exit code.
struct Told {
  int code;
  std::string out;
  std::string err;
};

Told names(const std::string& kind, const std::optional<std::string>& id = std::nullopt) {
  std::ostringstream out;
  std::ostringstream err;
  std::streambuf* const cout = std::cout.rdbuf(out.rdbuf());
  std::streambuf* const cerr = std::cerr.rdbuf(err.rdbuf());
  const int code = quillon::app::names(kind, id);
  std::cout.rdbuf(cout);
  std::cerr.rdbuf(cerr);
  return {code, out.str(), err.str()};
}

void expect_line(const std::string& kind, const std::string& id, const std::string& line) {
  const Told told = names(kind, id);
  EXPECT_EQ(told.code, 0) << kind;
  EXPECT_EQ(told.out, line + "\n");
  EXPECT_EQ(told.err, "");
}

}  // namespace

TEST(ProgramNames, TellAnId) {
  expect_line("network", "0x3001", "0x3001 German Digital Terrestrial Television");
  expect_line("network", "0x31", "0x0031 Hispasat – VIA DIGITAL");
  expect_line("network", "0x85", "0x0085 ");
  expect_line("original-network", "0x85", "0x0085 BetaTechnik");
  expect_line("bouquet", "47", "0x002F TVNZ Digital");
  expect_line("ca-system", "0X2300", "0x2300 BARCO AS&nbsp;");
  expect_line("data-broadcast", "0x106", "0x0106 The Digital Network\u00A0");
  expect_line("mhp-organisation", "9", "0x09 IRT (Institut für Rundfunktechnik GmbH)");
  expect_line("private-data", "0xbbbbbbbb", "0xBBBBBBBB Bertelsmann Broadband Group &nbsp;");
}

TEST(ProgramNames, ListARegistryInItsOrder) {
  const Told told = names("network");
  EXPECT_EQ(told.code, 0);
  EXPECT_EQ(told.out.find("0x0058 (Thiacom 1 & 2 co-located 78.5°E)\n0x0000 Reserved\n"), 0u);
  EXPECT_NE(told.out.find(
                "\n0x3001 UK Digital Terrestrial Television\n0x3001 German Digital Terrestrial Television\n"),
            std::string::npos);
  const Told mhp = names("mhp-organisation");
  EXPECT_EQ(std::count(mhp.out.begin(), mhp.out.end(), '\n'), 30);
}

TEST(ProgramNames, ComplainOfWhatTheyDontKnow) {
  Told told = names("ca-system", "0x4AD2");
  EXPECT_EQ(told.code, 1);
  EXPECT_EQ(told.out, "");
  EXPECT_EQ(told.err, "quillon: ca-system 0x4AD2 is not registered\n");

  told = names("ca_system");
  EXPECT_EQ(told.code, 1);
  EXPECT_EQ(
      told.err,
      "quillon: no registry is called ca_system; there are network, original-network, bouquet, ca-system, "
      "data-broadcast, mhp-organisation, private-data\n");

  for (const char* const id : {"", "0x", "x", "1x", "-1", "0x100000000", "0x-1", " 1"}) {
    told = names("network", id);
    EXPECT_EQ(told.code, 1) << id;
    EXPECT_EQ(told.out, "");
    EXPECT_EQ(told.err, std::string("quillon: ") + id + " is no id\n");
  }
}
