// The program association table, the simplest of all: its sections, its report, its document.

#include "tests/support/bytes.h"
#include "tests/support/faces.h"
#include "tests/support/faulty_dom.h"
#include "tests/support/log_file.h"
#include "tests/support/table_cases.h"

#include <algorithm>
#include <climits>
#include <string>

#include <quillon/sections/pat.h>

using namespace quillon;
using namespace quillon::test;

namespace {

// Two programs, byte by byte, the CRC from a calculator of its own.
const Bytes kPat = {
    0x00,                    // table_id
    0xB0, 0x11,              // section_syntax_indicator, section_length 17
    0x00, 0x01,              // transport_stream_id
    0xC7,                    // version_number 3, current_next_indicator 1
    0x00, 0x00,              // section_number, last_section_number
    0x00, 0x01, 0xE1, 0x00,  // program 1 on PID 0x100
    0x00, 0x02, 0xE1, 0x01,  // program 2 on PID 0x101
    0x53, 0xCA, 0xCC, 0xC7,  // CRC_32
};

const char* const kReport =
    "table name: program_association_section\n"
    "table_id 00\n"
    "section_length 0011\n"
    "context_id 0001\n"
    "version_number 03\n"
    "section_number 00\n"
    "last_section_number 0\n"
    "current_next_indicator 01\n"
    "crc32 53CACCC7\n"
    "program_number: 0001\n"
    "program_map_pid: 0100\n"
    "program_number: 0002\n"
    "program_map_pid: 0101\n";

const char* const kXml =
    R"(<pat table_id="0" syntax_indicator="1" section_length="17" context_id="1" version_number="3")"
    R"( section_number="0" last_section_number="0" current_next_indicator="1" crc32="1405799623">)"
    R"(<program_infos><program_info sid="1" pmtpid="256" /><program_info sid="2" pmtpid="257" />)"
    R"(</program_infos></pat>)";

const std::string kHeaderXml =
    R"(<pat table_id="0" syntax_indicator="1" section_length="17" context_id="1" version_number="3")"
    R"( section_number="0" last_section_number="0" current_next_indicator="1" crc32="0")";

Bytes program(int program_number, int program_map_pid, int reserved = 7) {
  return bits({{16, static_cast<uint64_t>(program_number), "program_number"},
               {3, static_cast<uint64_t>(reserved), "reserved"},
               {13, static_cast<uint64_t>(program_map_pid), "program_map_PID"}});
}

Pat parsed(const Bytes& section, bool keep_raw = false) {
  Pat out;
  out.Parse(section.data(), section.size(), keep_raw);
  return out;
}

std::string failure_of(const Bytes& section) {
  return failure([&] { parsed(section); });
}

// A section of any section_length from 4 on with its right CRC, which may be where the header goes on.
Bytes of_length(int length) {
  const size_t size = static_cast<size_t>(length) + 3;
  Bytes section = long_section(0x00, Bytes(size), {}, -12);
  section.resize(size);
  repair_crc(section);
  return section;
}

const TableCases kTables = {table_case<Pat>("Pat", "pat", kPat)};

}  // namespace

TEST(Pat, ReadsASection) {
  const Pat pat = parsed(kPat);
  EXPECT_TRUE(pat.is_parsed());
  EXPECT_EQ(pat.get_table_id(), 0);
  EXPECT_EQ(pat.get_section_length(), 17);
  EXPECT_EQ(pat.get_transport_stream_id(), 1);
  EXPECT_EQ(pat.get_version_number(), 3);
  EXPECT_EQ(pat.get_section_number(), 0);
  EXPECT_EQ(pat.get_last_section_number(), 0);
  EXPECT_EQ(pat.get_current_next_indicator(), 1);
  EXPECT_EQ(pat.get_crc32(), 0x53CACCC7U);
  EXPECT_STREQ(pat.get_table_id_text(), "program_association_section");
  ASSERT_EQ(pat.get_program_info_size(), 2U);
  ASSERT_EQ(pat.get_program_info().size(), 2U);
  EXPECT_EQ(pat.get_program_info(0).get_program_number(), 1);
  EXPECT_EQ(pat.get_program_info(0).get_program_map_pid(), 0x100);
  EXPECT_EQ(pat.get_program_info()[1].get_program_number(), 2);
  EXPECT_EQ(pat.get_program_info()[1].get_program_map_pid(), 0x101);
  EXPECT_EQ(pat.get_pid_from_program_number(1), 0x100);
  EXPECT_EQ(pat.get_pid_from_program_number(2), 0x101);
  EXPECT_EQ(pat.get_pid_from_program_number(3), 8191);
}

TEST(Pat, PrintsItsReport) {
  EXPECT_EQ(report(parsed(kPat)), kReport);
  EXPECT_EQ(report(Pat::program_info(0xABCD, 0x1FFF)), "program_number: abcd\nprogram_map_pid: 1fff\n");
}

TEST(Pat, HasItsDocument) {
  EXPECT_EQ(saved(parsed(kPat), "pat"), kXml);
  const auto pat = loaded_table<Pat>(kXml);
  EXPECT_TRUE(pat.is_parsed());
  EXPECT_EQ(report(pat), kReport);
  EXPECT_EQ(saved(pat, "pat"), kXml);
}

TEST(Pat, LoadsAndSavesADocumentWithACrcAboveTheSignedNumbers) {
  const std::string xml =
      R"(<pat table_id="0" syntax_indicator="1" section_length="17" context_id="1" version_number="3")"
      R"( section_number="0" last_section_number="0" current_next_indicator="1" crc32="-12345678">)"
      R"(<program_infos><program_info sid="1" pmtpid="256" /><program_info sid="2" pmtpid="257" />)"
      R"(</program_infos></pat>)";
  const auto pat = loaded_table<Pat>(xml);
  EXPECT_EQ(pat.get_crc32(), 0xFF439EB2U);
  EXPECT_EQ(pat.get_pid_from_program_number(1), 256);
  EXPECT_EQ(pat.get_pid_from_program_number(2), 257);
  EXPECT_EQ(saved(pat, "pat"), xml);
}

TEST(Pat, IsEmptyAtFirst) {
  const Pat pat;
  EXPECT_FALSE(pat.is_parsed());
  EXPECT_EQ(pat.get_program_info_size(), 0U);
  for (const int number : {-1, 0, 1, 0xFFFF, INT_MAX})
    EXPECT_EQ(pat.get_pid_from_program_number(number), 8191) << number;
  EXPECT_EQ(saved(pat), R"(<d table_id="0" syntax_indicator="0" section_length="0" context_id="0")"
                        R"( version_number="0" section_number="0" last_section_number="0")"
                        R"( current_next_indicator="0" crc32="0"><program_infos /></d>)");
}

TEST(Pat, TakesEachBitOfAnEntryForItsField) {
  for (int bit = 0; bit < 32; ++bit) {
    const Pat pat = parsed(long_section(0x00, bits({{32, 1ULL << bit, "entry"}})));
    ASSERT_EQ(pat.get_program_info_size(), 1U);
    EXPECT_EQ(pat.get_program_info(0).get_program_number(), bit >= 16 ? 1 << (bit - 16) : 0) << bit;
    EXPECT_EQ(pat.get_program_info(0).get_program_map_pid(), bit < 13 ? 1 << bit : 0) << bit;
  }
}

TEST(Pat, HasTheNetworkAmongItsPrograms) {
  const Pat pat = parsed(long_section(0x00, joined({program(7, 0x70), program(0, 0x10)})));
  ASSERT_EQ(pat.get_program_info_size(), 2U);
  EXPECT_EQ(pat.get_program_info(1).get_program_number(), 0);
  EXPECT_EQ(pat.get_pid_from_program_number(0), 0x10);
}

TEST(Pat, KeepsBothEntriesOfAProgramAndFindsTheLater) {
  const Pat pat =
      parsed(long_section(0x00, joined({program(5, 0x50), program(6, 0x60), program(5, 0x51, 0)})));
  ASSERT_EQ(pat.get_program_info_size(), 3U);
  EXPECT_EQ(pat.get_program_info(0).get_program_map_pid(), 0x50);
  EXPECT_EQ(pat.get_program_info(2).get_program_map_pid(), 0x51);
  EXPECT_EQ(pat.get_pid_from_program_number(5), 0x51);
  EXPECT_EQ(pat.get_pid_from_program_number(6), 0x60);
}

TEST(Pat, NeedsABodyOfWholeEntriesEvenANegativeOne) {
  for (int length = 4; length <= 41; ++length) {
    const Bytes section = of_length(length);
    ASSERT_EQ(section.size(), static_cast<size_t>(length) + 3);
    if ((length - 9) % 4 != 0)
      EXPECT_EQ(failure_of(section), "3: Pat parse error") << length;
    else
      EXPECT_EQ(parsed(section).get_program_info_size(), length < 9 ? 0U : (size_t(length) - 9) / 4)
          << length;
  }
}

TEST(Pat, ReadsTheLongestSection) {
  Bytes body;
  for (int i = 0; i < 1021; ++i) {
    const Bytes entry = program(i * 61 & 0xFFFF, i);
    body.insert(body.end(), entry.begin(), entry.end());
  }
  const Pat pat = parsed(long_section(0x00, body));
  EXPECT_EQ(pat.get_section_length(), 4093);
  ASSERT_EQ(pat.get_program_info_size(), 1021U);
  for (int i = 0; i < 1021; ++i) EXPECT_EQ(pat.get_pid_from_program_number(i * 61 & 0xFFFF), i);
}

TEST(Pat, IsRefusedWithABadCrcAndSaysSoInTheLog) {
  Bytes section = kPat;
  section.back() ^= 1;
  Pat pat;
  {
    TemporaryLog log("quillon_pat_test.csv", log_create_always | log_type, 1);
    EXPECT_EQ(failure([&] { pat.Parse(section.data(), true); }), "-1: crc error");
    ASSERT_EQ(log.lines().size(), 1U);
    const std::string line = log.lines()[0];
    const std::string tail = R"(,"error  ","crc error, got 0xfb3ee248 expected 0xffffffff")";
    EXPECT_EQ(line.substr(std::min(line.size(), line.size() - tail.size())), tail);
  }
  EXPECT_FALSE(pat.is_parsed());
  EXPECT_TRUE(pat.get_section_raw_bytes().empty());
  EXPECT_EQ(saved(pat), R"(<d table_id="0" syntax_indicator="1" section_length="17" context_id="0")"
                        R"( version_number="0" section_number="0" last_section_number="0")"
                        R"( current_next_indicator="0" crc32="0"><program_infos /></d>)");
}

TEST(Pat, WritesNothingIntoALogThatIsBelowFailures) {
  Bytes section = kPat;
  section.back() ^= 1;
  TemporaryLog log("quillon_pat_test.csv", log_create_always, 0);
  EXPECT_EQ(failure_of(section), "-1: crc error");
  EXPECT_EQ(log.text(), "");
}

TEST(Pat, IsRefusedWithAnyOneBitWrong) {
  for (size_t bit = 0; bit < kPat.size() * 8; ++bit) {
    Bytes section = kPat;
    section[bit / 8] = static_cast<uint8_t>(section[bit / 8] ^ 1 << bit % 8);
    const std::string text = failure_of(section);
    EXPECT_TRUE(text == "-1: crc error" || text == "-1: section is shorter than its section_length")
        << bit << ": " << text;
  }
}

TEST(Pat, IsRefusedUnderAnotherTableId) {
  for (int table_id = 1; table_id <= 255; ++table_id) {
    const Bytes section = long_section(table_id, program(1, 1));
    Pat pat;
    EXPECT_EQ(failure([&] { pat.Parse(section.data(), true); }), "-1: invalid table id") << table_id;
    EXPECT_EQ(pat.get_table_id(), table_id);
    EXPECT_EQ(pat.get_transport_stream_id(), 0);
    EXPECT_EQ(pat.get_program_info_size(), 0U);
    EXPECT_EQ(pat.get_section_raw_bytes(), section);
  }
}

TEST(Pat, IsRefusedWithoutTheSyntaxIndicator) {
  Header header;
  header.syntax_indicator = 0;
  EXPECT_EQ(failure_of(long_section(0x00, program(1, 1), header)), "2: ");
}

TEST(Pat, TakesAnyReservedBits) {
  for (int reserved = 0; reserved < 4; ++reserved)
    for (int private_bit = 0; private_bit < 2; ++private_bit) {
      Header header;
      header.reserved = reserved;
      header.private_bit = private_bit;
      EXPECT_EQ(parsed(long_section(0x00, program(1, 9), header)).get_pid_from_program_number(1), 9);
    }
}

TEST(Pat, DoublesItsListWhenItIsNotReset) {
  Pat pat = parsed(kPat, true);
  const Bytes other = long_section(0x00, joined({program(2, 0x222), program(3, 0x333)}));
  pat.Parse(other.data(), false);
  ASSERT_EQ(pat.get_program_info_size(), 4U);
  EXPECT_EQ(pat.get_program_info(0).get_program_map_pid(), 0x100);
  EXPECT_EQ(pat.get_program_info(2).get_program_map_pid(), 0x222);
  EXPECT_EQ(pat.get_pid_from_program_number(1), 0x100);
  EXPECT_EQ(pat.get_pid_from_program_number(2), 0x222);
  EXPECT_EQ(pat.get_transport_stream_id(), 0x1234);

  pat.reset();
  EXPECT_FALSE(pat.is_parsed());
  EXPECT_EQ(pat.get_program_info_size(), 0U);
  EXPECT_EQ(pat.get_pid_from_program_number(1), 8191);
  EXPECT_EQ(pat.get_transport_stream_id(), 0x1234);
  EXPECT_EQ(pat.get_section_raw_bytes(), kPat);
  pat.Parse(kPat.data(), false);
  EXPECT_EQ(report(pat), kReport);
}

TEST(Pat, KeepsWhatItHasWhenAParseFails) {
  Pat pat = parsed(kPat);
  EXPECT_EQ(failure([&] { pat.Parse(of_length(10).data(), false); }), "3: Pat parse error");
  EXPECT_TRUE(pat.is_parsed());
  EXPECT_EQ(pat.get_section_length(), 10);
  EXPECT_EQ(pat.get_program_info_size(), 2U);
}

TEST(Pat, GivesItsKeptBytesByPosition) {
  EXPECT_EQ(parsed(kPat).get_section_ptr_by_desc_pos(0), nullptr);
  EXPECT_TRUE(parsed(kPat).get_section_raw_bytes().empty());

  const Pat pat = parsed(kPat, true);
  const Pat copy = pat;
  EXPECT_EQ(copy.get_section_raw_bytes(), kPat);
  for (const Pat* table : {&pat, &copy}) {
    const uint8_t* const raw = table->get_section_raw_bytes().data();
    EXPECT_EQ(table->get_section_ptr_by_desc_pos(0), raw + 8);
    EXPECT_EQ(table->get_section_ptr_by_desc_pos(-8), raw);
    EXPECT_EQ(table->get_section_ptr_by_desc_pos(11), raw + 19);
    for (const int outside : {12, 13, INT_MAX, -9, INT_MIN})
      EXPECT_EQ(table->get_section_ptr_by_desc_pos(outside), nullptr) << outside;
  }
}

TEST(Pat, LoadsEveryChildOfItsListWhateverItsName) {
  const auto pat = loaded_table<Pat>(
      kHeaderXml +
      R"(><other /><program_infos><a pmtpid="1" sid="70000" more="x" /><b sid="-1" pmtpid="-2" />)"
      R"(<c sid="70000" pmtpid="3" /></program_infos></pat>)");
  ASSERT_EQ(pat.get_program_info_size(), 3U);
  EXPECT_EQ(pat.get_program_info(0).get_program_number(), 70000);
  EXPECT_EQ(pat.get_program_info(0).get_program_map_pid(), 1);
  EXPECT_EQ(pat.get_program_info(1).get_program_number(), -1);
  EXPECT_EQ(pat.get_pid_from_program_number(-1), -2);
  EXPECT_EQ(pat.get_pid_from_program_number(70000), 3);
}

TEST(Pat, DoublesItsListWhenItIsLoadedTwice) {
  const xml::Document document = xml::Document::from_text(kXml);
  Pat pat;
  pat.ParseDOM(document.root());
  pat.ParseDOM(document.root());
  EXPECT_EQ(pat.get_program_info_size(), 4U);
  pat.reset();
  pat.ParseDOM(document.root());
  EXPECT_EQ(saved(pat, "pat"), kXml);
}

TEST(Pat, SaysWhatItsDocumentLacks) {
  const auto load = [](const std::string& rest, size_t programs) {
    const xml::Document document = xml::Document::from_text(kHeaderXml + rest);
    Pat pat;
    const std::string text = failure([&] { pat.ParseDOM(document.root()); });
    EXPECT_EQ(pat.is_parsed(), text == "nothing");
    EXPECT_EQ(pat.get_transport_stream_id(), 1);
    EXPECT_EQ(pat.get_program_info_size(), programs);
    return text;
  };
  EXPECT_EQ(load(" />", 0), "-1: failed to get program_infos node");
  EXPECT_EQ(load("><x><program_infos /></x></pat>", 0), "-1: failed to get program_infos node");
  EXPECT_EQ(load("><program_infos /></pat>", 0), "nothing");
  EXPECT_EQ(load(R"(><program_infos><p sid="1" pmtpid="2" /><p pmtpid="2" /></program_infos></pat>)", 1),
            "-1: failed to get sid attribute");
  EXPECT_EQ(load(R"(><program_infos><p sid="1" pmtpid="2" /><p sid="2" /></program_infos></pat>)", 1),
            "-1: failed to get pid node");
}

TEST(Pat, SaysWhichStepOfItsLoadFails) {
  const auto load = [](const char* operation, int nth = 1, HRESULT result = E_FAIL) {
    FaultyDom dom(operation, nth, result);
    Pat pat;
    const std::string text = failure([&] { pat.ParseDOM(dom.node()); });
    EXPECT_EQ(dom.references(), 0);
    return text;
  };
  EXPECT_EQ(load("get_attributes", 1), "-1: failed to get attribute map");
  EXPECT_EQ(load("selectSingleNode"), "-1: failed to get program_infos node");
  EXPECT_EQ(load("selectSingleNode", 1, S_FALSE), "-1: failed to get program_infos node");
  EXPECT_EQ(load("get_childNodes"), "-1: failed to get program_info list");
  EXPECT_EQ(load("get_length"), "-1: failed to get length");
  EXPECT_EQ(load("get_item"), "-1: failed to get program_info node");
  EXPECT_EQ(load("get_attributes", 2), "-1: failed to get attribute map");
  for (const char* const read : {"getNamedItem", "get_nodeValue"})
    for (const HRESULT result : {E_FAIL, S_FALSE}) {
      EXPECT_EQ(load(read, 10, result), "-1: failed to get sid attribute");
      EXPECT_EQ(load(read, 11, result), "-1: failed to get pid node");
    }
  EXPECT_EQ(load("none"), "nothing");
}

TEST(Pat, AttachesItsListAndItemsBeforeTheyAreFilled) {
  FaultyDom dom;
  EXPECT_TRUE(parsed(kPat).SaveSection(dom.document(), dom.node()));
  EXPECT_EQ(dom.steps(),
            "createAttribute table_id\n"
            "createAttribute syntax_indicator\n"
            "createAttribute section_length\n"
            "createAttribute context_id\n"
            "createAttribute version_number\n"
            "createAttribute section_number\n"
            "createAttribute last_section_number\n"
            "createAttribute current_next_indicator\n"
            "createAttribute crc32\n"
            "createElement program_infos\n"
            "appendChild\n"
            "createElement program_info\n"
            "appendChild\n"
            "createAttribute sid\n"
            "createAttribute pmtpid\n"
            "createElement program_info\n"
            "appendChild\n"
            "createAttribute sid\n"
            "createAttribute pmtpid\n");
}

TEST(Pat, EndsItsSaveAtTheFirstStepThatFails) {
  const Pat pat = parsed(kPat);
  const auto expect_failures = [&pat](const char* operation, int calls) {
    for (int nth = 1; nth <= calls; ++nth) {
      FaultyDom dom(operation, nth);
      EXPECT_FALSE(pat.SaveSection(dom.document(), dom.node())) << operation << " " << nth;
      EXPECT_EQ(dom.calls(operation), nth) << operation;
      EXPECT_EQ(dom.references(), 0) << operation << " " << nth;
    }
    FaultyDom dom(operation, calls + 1);
    EXPECT_TRUE(pat.SaveSection(dom.document(), dom.node())) << operation;
    EXPECT_EQ(dom.calls(operation), calls) << operation;
  };
  for (const char* const step : {"createAttribute", "put_nodeValue", "setAttributeNode"})
    expect_failures(step, 9 + 2 * 2);
  for (const char* const step : {"createElement", "appendChild"}) expect_failures(step, 1 + 2);
  expect_failures("QueryInterface", 2);
}
