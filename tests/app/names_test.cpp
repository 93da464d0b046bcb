// The program's names command, and the UTF-8 in which all its output is.

#include "tests/app/program.h"

#include <algorithm>
#include <string>

using namespace quillon::test;

namespace {

class ProgramNames : public Program {
 protected:
  Result names(const std::string& kind, const std::string& id = {}) const {
    return run("names " + kind + " " + id);
  }

  void expect_line(const std::string& kind, const std::string& id, const std::string& line) const {
    const Result told = names(kind, id);
    EXPECT_EQ(told.code, 0) << kind;
    EXPECT_EQ(told.out, line + "\n");
    EXPECT_EQ(told.messages, "");
  }
};

}  // namespace

TEST_F(ProgramNames, TellAnId) {
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

TEST_F(ProgramNames, ListARegistryInItsOrder) {
  const Result told = names("network");
  EXPECT_EQ(told.code, 0);
  EXPECT_EQ(told.out.find("0x0058 (Thiacom 1 & 2 co-located 78.5°E)\n0x0000 Reserved\n"), 0u);
  EXPECT_NE(told.out.find(
                "\n0x3001 UK Digital Terrestrial Television\n0x3001 German Digital Terrestrial Television\n"),
            std::string::npos);
  const Result mhp = names("mhp-organisation");
  EXPECT_EQ(std::count(mhp.out.begin(), mhp.out.end(), '\n'), 30);
}

TEST_F(ProgramNames, ComplainOfWhatTheyDontKnow) {
  Result told = names("ca-system", "0x4AD2");
  EXPECT_EQ(told.code, 1);
  EXPECT_EQ(told.out, "");
  EXPECT_EQ(told.messages, "ca-system 0x4AD2 is not registered\n");

  told = names("ca_system");
  EXPECT_EQ(told.code, 2);
  EXPECT_EQ(told.messages,
            "no registry is called ca_system; there are network, original-network, bouquet, ca-system, "
            "data-broadcast, mhp-organisation, private-data\n");

  for (const char* const id : {"0x", "x", "1x", "0x100000000", "0x-1"}) {
    told = names("network", id);
    EXPECT_EQ(told.code, 2) << id;
    EXPECT_EQ(told.out, "");
    EXPECT_EQ(told.messages, std::string(id) + " is no id: a number is wanted, as 11 or 0x0B00\n");
  }
  EXPECT_EQ(names("network", "-1").code, 2);
}
