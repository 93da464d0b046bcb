// The companion program from the outside: what it prints, and its exit codes.

#include "tests/app/program.h"

#include "tests/support/packets.h"
#include "tests/support/sample.h"
#include "tests/support/xmllint.h"

#include <quillon/version.h>

using namespace quillon::test;

TEST_F(Program, ReportsEachDistinctSectionOnce) {
  file("s.ts", sample_stream());
  const Result result = run("report s.ts");
  EXPECT_EQ(result.code, 0);
  EXPECT_EQ(result.messages, "");
  EXPECT_EQ(count(result.out, "table name: program_association_section\n"), 1);
  EXPECT_EQ(count(result.out, "table name: conditional_access_section\n"), 1);
  EXPECT_EQ(count(result.out, "table name: TS_program_map_section\n"), 2);
  EXPECT_EQ(count(result.out, "table name: network_information_section - actual_transport_network\n"), 1);
  EXPECT_EQ(count(result.out, "table name: event_information_section"), 3);
  EXPECT_EQ(count(result.out, "UTC_time: 1/1-2025 12:30:0\n"), 2);      // TDT and TOT
  EXPECT_EQ(count(result.out, "service_name Caf\xC3\xA9 Radio\n"), 1);  // in UTF-8
  const Result all = run("report --all s.ts");
  EXPECT_EQ(count(all.out, "table name: program_association_section\n"), 8);
  EXPECT_EQ(count(all.out, "table name: event_information_section"), 24);
}

TEST_F(Program, PrintsEachDistinctSectionAsALineOfJson) {
  file("s.ts", sample_stream());
  const Result result = run("json s.ts");
  EXPECT_EQ(result.code, 0);
  EXPECT_EQ(result.messages, "");
  // The reports of TDT and TOT have no such line.
  EXPECT_EQ(count(result.out, "\n"), count(run("report s.ts").out, "table name: ") + 2);
  EXPECT_EQ(
      run("json --table 0 s.ts").out,
      R"({"pid":0,"packet":1,"table":"pat","table_id":0,"table_id_meaning":"program_association_section",)"
      R"("syntax_indicator":1,"section_length":21,"context_id":1105,"version_number":3,"section_number":0,)"
      R"("last_section_number":0,"current_next_indicator":1,"crc32":443875533,"transport_stream_id":1105,)"
      R"("program_infos":[{"sid":0,"pmtpid":16},{"sid":4097,"pmtpid":256},{"sid":4098,"pmtpid":512}]})"
      "\n");
  EXPECT_EQ(count(result.out, "\"service_name\":\"Caf\xC3\xA9 Radio\""), 1);
  // Identifiers have their registered names.
  EXPECT_GE(count(run("json --table 1 s.ts").out, "sys_id_meaning"), 1);
}

TEST_F(Program, AddsEveryFieldToAReport) {
  file("s.ts", sample_stream());
  const std::string report = run("report --table 0 s.ts").out;
  const std::string full = run("report --full --table 0 s.ts").out;
  EXPECT_EQ(full.substr(0, report.size()), report);
  EXPECT_NE(full.find("\nprogram_infos: 3\n  program_info:\n    sid: 0\n    pmtpid: 16\n"),
            std::string::npos);
}

TEST_F(Program, NarrowsByPidAndTable) {
  file("s.ts", sample_stream());
  EXPECT_EQ(count(run("report --table 0x42 s.ts").out, "table name: "), 1);
  EXPECT_EQ(count(run("report --pid 0x12 s.ts").out, "table name: "), 3);
  EXPECT_EQ(count(run("report --pid 0x100 --pid 0x200 --table 2 s.ts").out, "table name: "), 2);
  EXPECT_EQ(run("report --pid 0x12 --table 0x42 s.ts").out, "");
}

TEST_F(Program, FindsATableOnAnyPid) {
  const Bytes section = long_section(0x42, Bytes{0x00, 0x01, 0xFF});
  file("s.ts", joined({packets({section}, {.pid = 0x777}), sample_stream()}));
  EXPECT_EQ(count(run("report --table 0x42 s.ts").out, "table name: "), 2);
  EXPECT_EQ(count(run("report s.ts").out, "table name: service"), 1);
}

TEST_F(Program, MeetsMapsThatComeBeforeTheAssociation) {
  const Bytes map = long_section(0x02, Bytes{0xE1, 0x01, 0xF0, 0x00}, {.extension = 7});
  const Bytes pat = long_section(0x00, Bytes{0x00, 0x07, 0xE3, 0x00}, {.extension = 1});
  file("s.ts", joined({packets({map}, {.pid = 0x300}), packets({pat}, {.pid = 0})}));
  const Result result = run("report s.ts");
  EXPECT_EQ(count(result.out, "program_number: 0007\n"), 2);
  EXPECT_LT(result.out.find("TS_program_map_section"), result.out.find("program_association_section"));
}

TEST_F(Program, WritesADocumentAndLoadsItBack) {
  file("s.ts", sample_stream());
  const Result report = run("report s.ts");
  EXPECT_EQ(run("xml s.ts -o s.xml").code, 0);
  const Result loaded = run("load s.xml");
  EXPECT_EQ(loaded.code, 0);
  EXPECT_EQ(loaded.messages, "");
  EXPECT_EQ(loaded.out, report.out);
  EXPECT_EQ(run("xml s.ts").out, whole(folder_ / "s.xml"));
  EXPECT_EQ(run("load - < s.xml").out, report.out);
  EXPECT_EQ(run("report - < s.ts").out, report.out);
}

TEST_F(Program, SaysWhyADocumentCannotBeWritten) {
  file("s.ts", sample_stream());
  const Result nowhere = run("xml s.ts -o none/s.xml");
  EXPECT_EQ(nowhere.code, 1);
  EXPECT_EQ(nowhere.messages, "can't write none/s.xml: No such file or directory\n");
  const Result folder = run("load .");
  EXPECT_EQ(folder.code, 1);
  EXPECT_EQ(folder.messages, "can't read .: Is a directory\n");
}

// The bundled stream, and the recorded ones where they are.
TEST_F(Program, WritesDocumentsForOtherReaders) {
  std::vector<std::string> documents;
  for (const char* const place : {"QUILLON_DATA", "QUILLON_STREAMS"}) {
    const char* const streams = std::getenv(place);
    if (!streams || !std::filesystem::is_directory(streams)) continue;
    for (const auto& entry : std::filesystem::directory_iterator(streams)) {
      if (entry.path().extension() != ".ts" && entry.path().extension() != ".bin") continue;
      const Result result = run("xml \"" + std::filesystem::canonical(entry.path()).string() + "\"");
      EXPECT_EQ(result.code, 0) << entry.path();
      documents.push_back(result.out);
    }
  }
  if (std::getenv("QUILLON_DATA")) {
    EXPECT_GT(documents.size(), 0u);
  }
  expect_taken_by_xmllint(documents);
}

TEST_F(Program, ReadsPacketsOf192And204BytesAndGarbage) {
  const Bytes stream = sample_stream();
  const auto stretched = [&stream](const Bytes& before, const Bytes& behind) {
    Bytes out;
    for (size_t at = 0; at < stream.size(); at += kPacketSize) {
      out.insert(out.end(), before.begin(), before.end());
      out.insert(out.end(), stream.begin() + static_cast<ptrdiff_t>(at),
                 stream.begin() + static_cast<ptrdiff_t>(at + kPacketSize));
      out.insert(out.end(), behind.begin(), behind.end());
    }
    return out;
  };
  const std::string expected = run("report " + file("s.ts", stream)).out;
  EXPECT_EQ(run("report " + file("192.ts", stretched(Bytes(4, 0x11), {}))).out, expected);
  EXPECT_EQ(run("report " + file("204.ts", stretched({}, Bytes(16, 0x22)))).out, expected);
  const Result dirty = run("report " + file("dirty.ts", joined({Bytes(77, 0x33), stream, Bytes(99, 0x44)})));
  EXPECT_EQ(dirty.out, expected);
  EXPECT_EQ(dirty.messages, "dirty.ts: skipped 176 bytes that are no packets of 188 bytes\n");
  EXPECT_EQ(dirty.code, 0);
}

TEST_F(Program, ReadsAsTheStandardsSay) {
  const Bytes event = bits({{8, 0, "protocol_version"},
                            {8, 1, "num_events_in_section"},
                            {2, 3, "reserved"},
                            {14, 0x1234, "event_id"},
                            {32, 1450000000, "start_time"},
                            {2, 3, "reserved"},
                            {2, 0, "ETM_location"},
                            {20, 1800, "length_in_seconds"},
                            {8, 13, "title_length"},
                            {8, 1, "number_strings"}});
  const Bytes title = joined({text("eng"), {1, 0, 0, 5}, text("Title"), {0xF0, 0x00}});
  const std::string chain = file("s.bin", long_section(0xCB, joined({event, title})));
  const Result kept = run("json " + chain);
  EXPECT_EQ(kept.out, "");
  EXPECT_NE(kept.messages.find("AtscTVCT::Channel: descriptor start end mismatch"), std::string::npos);
  const Result standard = run("json --reading standard " + chain);
  EXPECT_EQ(standard.messages, "");
  EXPECT_EQ(count(standard.out, R"("text":"Title")"), 1);
  EXPECT_EQ(run("json --reading other " + chain).code, 2);
}

TEST_F(Program, ReadsTextsInATableOfTheUsersChoice) {
  const Bytes network = long_section(
      0x40, joined({{0xF0, 0x06}, descriptor(0x40, joined({text("caf"), {0xE9}})), {0xF0, 0x00}}));
  const std::string chain = file("s.bin", network);
  EXPECT_EQ(count(run("json --reading standard " + chain).out, "cafØ"), 1);
  EXPECT_EQ(count(run("json --reading standard --text-table 9 " + chain).out, "café"), 1);
  const Result none = run("json --text-table 12 " + chain);
  EXPECT_EQ(none.code, 2);
  EXPECT_EQ(none.messages, "quillon: there is no ISO 8859-12\n");
  EXPECT_EQ(run("json --text-table 16 " + chain).code, 2);
}

TEST_F(Program, ReadsAChainOfSections) {
  const Bytes pat = long_section(0x00, Bytes{0x00, 0x07, 0xE3, 0x00}, {.extension = 1});
  const Bytes map = long_section(0x02, Bytes{0xE1, 0x01, 0xF0, 0x00}, {.extension = 7});
  const Result result = run("report " + file("s.bin", joined({pat, map, map, Bytes{0x00, 0xB0}})));
  EXPECT_EQ(count(result.out, "table name: "), 2);
  EXPECT_EQ(result.messages, "s.bin: the last 2 bytes are no whole section\n");
}

TEST_F(Program, TellsOfABrokenSectionAndGoesOn) {
  Bytes broken = long_section(0x00, Bytes{0x00, 0x07, 0xE3, 0x00});
  broken[8] ^= 1;
  const Bytes odd = long_section(0x00, Bytes{0x00, 0x07, 0xE3, 0x00, 0x01});
  const Bytes good = long_section(0x00, Bytes{0x00, 0x07, 0xE3, 0x00});
  const Result result = run("report " + file("s.ts", packets({broken, odd, good}, {.pid = 0})));
  EXPECT_EQ(result.code, 0);
  EXPECT_EQ(count(result.out, "table name: "), 1);
  EXPECT_EQ(result.messages,
            "s.ts: packet 1: PID 0x0000, table 0x00: crc error\n"
            "s.ts: packet 2: PID 0x0000, table 0x00: Pat parse error\n");
}

TEST_F(Program, TellsOfABrokenDescriptorAndKeepsIt) {
  const Bytes map =
      long_section(0x02, joined({Bytes{0xE1, 0x01, 0xF0, 0x05}, descriptor(0x62, Bytes{0x01, 0x02, 0x03})}));
  const Result result = run("report --pid 0x300 " + file("s.ts", packets({map}, {.pid = 0x300})));
  EXPECT_EQ(count(result.out, "descriptor_tag: 62 User Private\n"), 1);
  EXPECT_EQ(result.messages,
            "s.ts: packet 1: PID 0x0300, table 0x02: descriptor 0x62 at byte 4 of the body kept as it is: "
            "failure 0\n");
}

TEST_F(Program, RefusesWhatItCannotRead) {
  EXPECT_EQ(run("report missing.ts").code, 1);
  EXPECT_EQ(run("report missing.ts").messages, "missing.ts: can't be opened\n");
  EXPECT_EQ(run("report .").code, 1);
  const Result letter = run("report " + file("letter.txt", text("Zebras are no stream of any kind at all.")));
  EXPECT_EQ(letter.code, 1);
  EXPECT_EQ(letter.messages, "letter.txt: holds no transport packets\n");
  EXPECT_EQ(run("report " + file("empty.ts", {})).code, 1);
  EXPECT_EQ(run("load missing.xml").code, 1);
  const Result malformed =
      run("load " + file("bad.xml", text("<transport_stream>\n  <pat></transport_stream>")));
  EXPECT_EQ(malformed.code, 1);
  EXPECT_EQ(malformed.messages.rfind("bad.xml: malformed XML", 0), 0u) << malformed.messages;
  EXPECT_EQ(run("load " + file("other.xml", text("<other/>"))).code, 1);
  EXPECT_EQ(run("load " + file("empty.xml", {})).code, 1);
}

TEST_F(Program, TellsWhichElementDoesNotLoadAndLoadsTheOthers) {
  file("s.ts", sample_stream());
  std::string text = run("xml --table 0 --table 0x42 s.ts").out;
  text.replace(text.find(" pmtpid="), 8, " pmt_id=");
  const Result result = run("load " + file("s.xml", Bytes(text.begin(), text.end())));
  EXPECT_EQ(result.code, 1);
  EXPECT_EQ(count(result.out, "table name: service_description_section"), 1);
  EXPECT_EQ(result.messages,
            "s.xml: element 1, pat: failed to get pid node\n"
            "s.xml: some tables could not be loaded\n");
}

TEST_F(Program, AnswersWrongUseWithTwo) {
  EXPECT_EQ(run("").code, 2);
  EXPECT_EQ(run("nonsense").code, 2);
  EXPECT_EQ(run("report").code, 2);
  EXPECT_EQ(run("report --pid 9000 s.ts").code, 2);
  EXPECT_EQ(run("report --standard isdb s.ts").code, 2);
  EXPECT_EQ(run("--help").code, 0);
}

TEST_F(Program, TakesNamesInAnyScript) {
  const std::string name = file("Träger α 日本.ts", sample_stream());
  const Result report = run("report \"" + name + "\"");
  EXPECT_EQ(report.code, 0);
  EXPECT_EQ(report.out, run("report " + file("s.ts", sample_stream())).out);
  EXPECT_EQ(run("xml s.ts -o \"ä.xml\"").code, 0);
  EXPECT_EQ(run("load \"ä.xml\"").out, report.out);
  EXPECT_EQ(run("report \"ß.ts\"").messages, "ß.ts: can't be opened\n");
  EXPECT_EQ(run("load \"ß.xml\"").messages, "can't read ß.xml: No such file or directory\n");
}

TEST_F(Program, TellsTheVersion) {
  const Result result = run("--version");
  EXPECT_EQ(result.code, 0);
  EXPECT_EQ(result.out, "quillon " QUILLON_VERSION_STRING "\n");
}

TEST_F(Program, PrintsWhatTheReadmeShows) {
  const char* const folder = std::getenv("QUILLON_DATA");
  if (!folder) GTEST_SKIP() << "QUILLON_DATA is not set";
  const std::string readme = whole(std::filesystem::path(folder).parent_path() / "README.md");
  const size_t begin = readme.find("```text\n") + 8;
  const std::string shown = readme.substr(begin, readme.find("```", begin) - begin);
  EXPECT_GT(shown.size(), 100u);
  const std::string printed = run("report \"" + std::string(folder) + "/sample.ts\"").out;
  EXPECT_EQ(printed.substr(0, shown.size()), shown);
}

TEST(Readme, HoldsTheExampleThatIsCompiled) {
  const char* const folder = std::getenv("QUILLON_DATA");
  if (!folder) GTEST_SKIP() << "QUILLON_DATA is not set";
  const std::filesystem::path top = std::filesystem::path(folder).parent_path();
  const std::string example = whole(top / "examples/programs.cpp");
  EXPECT_FALSE(example.empty());
  EXPECT_NE(whole(top / "README.md").find("```cpp\n" + example + "```"), std::string::npos);
}
