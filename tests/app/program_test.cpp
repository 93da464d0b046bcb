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
      R"({"pid":0,"packet":1,"time":null,"table":"pat","table_id":0,"table_id_meaning":"program_association_section",)"
      R"("syntax_indicator":1,"section_length":21,"context_id":1105,"version_number":3,"section_number":0,)"
      R"("last_section_number":0,"current_next_indicator":1,"crc32":443875533,"transport_stream_id":1105,)"
      R"("program_infos":[{"sid":0,"pmtpid":16},{"sid":4097,"pmtpid":256},{"sid":4098,"pmtpid":512}]})"
      "\n");
  EXPECT_EQ(count(run("json --reading kept s.ts").out, "\"service_name\":\"Caf\xC3\xA9 Radio\""), 1);
  // Identifiers have their registered names.
  EXPECT_GE(count(run("json --table 1 s.ts").out, "sys_id_meaning"), 1);
}

TEST_F(Program, ShowsEveryFieldToPeople) {
  file("s.ts", sample_stream());
  const Result result = run("show --table 0 --hex s.ts");
  EXPECT_EQ(result.code, 0);
  EXPECT_EQ(result.messages, "");
  EXPECT_EQ(result.out.rfind("PAT  packet 1, PID 0x0000\n"
                             "  table_id: 0 (program_association_section)\n"
                             "  syntax_indicator: 1\n"
                             "  section_length: 21\n"
                             "  context_id: 1105\n",
                             0),
            0u)
      << result.out;
  EXPECT_NE(result.out.find("\n  program_infos: 3\n    program_info\n      sid: 0\n      pmtpid: 16\n"),
            std::string::npos);
  EXPECT_NE(result.out.find("00 B0 15 04 51"), std::string::npos) << result.out;
  EXPECT_EQ(run("report --full s.ts").code, 2);
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
  for (const std::string command : {"json", "show"}) {
    const Result kept = run(command + " --reading kept " + chain);
    EXPECT_EQ(kept.code, 1);
    EXPECT_EQ(kept.out, "");
    EXPECT_EQ(
        kept.messages,
        "s.bin: section 1: EIT (table 0xCB): refused: AtscTVCT::Channel: descriptor start end mismatch\n"
        "all sections were refused\n");
    const Result standard = run(command + " " + chain);
    EXPECT_EQ(standard.code, 0);
    EXPECT_EQ(standard.messages, "");
    EXPECT_GE(count(standard.out, "\"Title\""), 1);
    EXPECT_EQ(run(command + " --reading standard " + chain).out, standard.out);
  }
  for (const std::string command : {"report", "xml"}) {
    EXPECT_EQ(run(command + " " + chain).code, 1);
    EXPECT_EQ(run(command + " --reading standard " + chain).code, 0);
  }
  EXPECT_EQ(run("json --reading other " + chain).code, 2);
}

TEST_F(Program, ReadsTextsInATableOfTheUsersChoice) {
  const Bytes network = long_section(
      0x40, joined({{0xF0, 0x06}, descriptor(0x40, joined({text("caf"), {0xE9}})), {0xF0, 0x00}}));
  const std::string chain = file("s.bin", network);
  EXPECT_EQ(count(run("json " + chain).out, "cafØ"), 1);
  EXPECT_EQ(count(run("json --text-table 9 " + chain).out, "café"), 1);
  EXPECT_EQ(count(run("json --text-table 09 " + chain).out, "café"), 1);
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
  EXPECT_EQ(result.messages, "s.bin: skipped 2 bytes that are no whole section\n");
  EXPECT_EQ(run("report - < s.bin").out, result.out);
}

TEST_F(Program, FindsTheSectionsOfADamagedChain) {
  const Bytes pat = long_section(0x00, Bytes{0x00, 0x07, 0xE3, 0x00}, {.extension = 1});
  const Bytes map = long_section(0x02, Bytes{0xE1, 0x01, 0xF0, 0x00}, {.extension = 7});
  Bytes bad = pat;
  bad[9] ^= 1;
  const Result first = run("report " + file("bad.bin", joined({bad, pat, map})));
  EXPECT_EQ(first.code, 0);
  EXPECT_EQ(count(first.out, "table name: "), 2);
  EXPECT_EQ(first.messages, "bad.bin: section 1: PAT (table 0x00): refused: crc error\n");
  const Result piped = run("report - < bad.bin");
  EXPECT_EQ(piped.out, first.out);
  EXPECT_EQ(piped.messages, "standard input: section 1: PAT (table 0x00): refused: crc error\n");
  // One that claims to be longer, or has no length at all.
  for (const Bytes& begin : {joined({{0x00, 0xBF, 0xF0}, Bytes(9)}), Bytes(12, 0x00)}) {
    const Result result = run("report " + file("begin.bin", joined({begin, pat, map})));
    EXPECT_EQ(result.out, first.out);
    EXPECT_EQ(result.messages, "begin.bin: skipped 12 bytes that are no whole section\n");
  }
  // What is between may look like a section that is longer than what follows.
  for (const uint8_t garbage : Bytes{0x00, 0x33, 0xFF, 0x47}) {
    const Result result = run("report " + file("between.bin", joined({pat, Bytes(100, garbage), map})));
    EXPECT_EQ(result.out, first.out) << int{garbage};
    EXPECT_EQ(result.messages, "between.bin: skipped 100 bytes that are no whole section\n");
  }
}

TEST_F(Program, ReadsTheSectionsBackThatItWrote) {
  file("s.ts", sample_stream());
  EXPECT_EQ(run("sections s.ts -o s.bin").code, 0);
  const std::string sections = whole(folder_ / "s.bin");
  EXPECT_FALSE(sections.empty());
  EXPECT_EQ(run("sections s.ts").out, sections);
  EXPECT_EQ(run("sections s.ts -o -").out, sections);
  EXPECT_EQ(run("sections s.bin").out, sections);
  for (const std::string command : {"report", "xml", "services", "epg"})
    EXPECT_EQ(run(command + " s.bin").out, run(command + " s.ts").out) << command;
  // All but where a section was, which comes first in a line.
  const auto without_place = [](const std::string& lines) {
    std::istringstream in(lines);
    std::string out;
    for (std::string line; std::getline(in, line);) out += line.substr(line.find("\"table\":")) + "\n";
    return out;
  };
  EXPECT_TRUE(without_place(run("json s.bin").out) == without_place(run("json s.ts").out));
  EXPECT_EQ(count(run("show s.bin").out, "  section "), count(run("show s.ts").out, ", PID 0x"));
  EXPECT_EQ(run("tables s.bin").code, 0);
  EXPECT_NE(run("summary s.bin").out.find(", without packets\n"), std::string::npos);
  EXPECT_EQ(run("pids s.bin").messages, "s.bin: a chain of sections has no PIDs\n");
  // Short sections alone, with a CRC and without.
  for (const std::string table : {"0x70", "0x73"}) {
    EXPECT_EQ(run("sections --table " + table + " s.ts -o t.bin").code, 0);
    EXPECT_EQ(run("report t.bin").out, run("report --table " + table + " s.ts").out);
  }
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
            "s.ts: packet 1, PID 0x0000: PAT (table 0x00): refused: crc error\n"
            "s.ts: packet 2, PID 0x0000: PAT (table 0x00): refused: Pat parse error\n");
  const Result none = run("report " + file("none.ts", packets({broken, odd, odd}, {.pid = 0})));
  EXPECT_EQ(none.code, 1);
  EXPECT_EQ(none.out, "");
  EXPECT_EQ(none.messages.substr(none.messages.rfind('\n', none.messages.size() - 2) + 1),
            "all sections were refused\n");
}

TEST_F(Program, TellsOfABrokenDescriptorAndKeepsIt) {
  const Bytes map =
      long_section(0x02, joined({Bytes{0xE1, 0x01, 0xF0, 0x05}, descriptor(0x62, Bytes{0x01, 0x02, 0x03})}));
  const Result result = run("report --pid 0x300 " + file("s.ts", packets({map}, {.pid = 0x300})));
  EXPECT_EQ(count(result.out, "descriptor_tag: 62 User Private\n"), 1);
  EXPECT_EQ(result.messages,
            "s.ts: packet 1, PID 0x0300: PMT (table 0x02): descriptor 0x62 kept as it is: failure 0\n");
}

TEST_F(Program, TellsAKindOfTroubleOnceWithACount) {
  // Five megabytes of sections that are refused, each another one.
  std::vector<Bytes> sections;
  for (int i = 0; i < 1250; ++i)
    sections.push_back(long_section(0x00, Bytes(4001, static_cast<uint8_t>(i)), {.extension = i}));
  Bytes chain;
  for (const Bytes& section : sections) chain.insert(chain.end(), section.begin(), section.end());
  const Result few = run("json " + file("s.bin", chain));
  EXPECT_EQ(few.code, 1);
  EXPECT_EQ(few.messages,
            "s.bin: section 1: PAT (table 0x00): refused: Pat parse error\n"
            "all sections were refused\n"
            "s.bin: PAT (table 0x00): refused: Pat parse error: 1,249 more, the last in section 1250\n");
  const Result each = run("json --verbose s.bin");
  EXPECT_EQ(count(each.messages, "\n"), 1251);
  EXPECT_EQ(count(each.messages, "s.bin: section 1250: "), 1);
}

TEST_F(Program, LimitsWhatItTellsOfARun) {
  // Kinds of trouble without end, and troubles without end.
  Bytes chain;
  const auto add = [&chain](const Bytes& section) {
    chain.insert(chain.end(), section.begin(), section.end());
  };
  for (int i = 0; i < 256; ++i) {
    add(long_section(i, Bytes{0x00}));
    add(long_section(0x02, joined({{0xE1, 0x01, 0xF0, 0x03}, descriptor(i, Bytes{0xFF})}), {.extension = i}));
  }
  const Result kinds = run("show " + file("kinds.bin", chain));
  EXPECT_GT(count(kinds.messages, "\n"), 20);
  EXPECT_LE(count(kinds.messages, "\n"), 102);
  EXPECT_EQ(count(kinds.messages, " troubles of other kinds; --verbose tells them\n"), 1);
  EXPECT_GT(count(run("show --verbose kinds.bin").messages, "\n"), count(kinds.messages, "\n"));
  chain.clear();
  for (int i = 0; i < 12'000; ++i) add(long_section(0x00, Bytes{0x00}, {.extension = i}));
  const Result verbose = run("report --verbose " + file("many.bin", chain));
  EXPECT_EQ(count(verbose.messages, "\n"), 10'002);
  EXPECT_EQ(count(verbose.messages, "2,000 further messages\n"), 1);
}

TEST_F(Program, RefusesWhatItCannotRead) {
  for (const std::string command : {"summary", "services", "pids", "epg", "tables", "show", "json", "report",
                                    "xml", "load", "sections"}) {
    const Result missing = run(command + " missing.ts");
    EXPECT_EQ(missing.code, 1) << command;
    EXPECT_EQ(missing.messages, "missing.ts: not found\n") << command;
    const Result folder = run(command + " .");
    EXPECT_EQ(folder.code, 1) << command;
    EXPECT_EQ(folder.messages, ".: is a folder; name the files in it\n") << command;
    if (command == "load") continue;
    const Result letter =
        run(command + " " + file("letter.txt", text("Zebras are no stream of any kind at all.")));
    EXPECT_EQ(letter.code, 1) << command;
    EXPECT_EQ(letter.messages, "letter.txt: holds no transport packets, nor sections\n") << command;
    EXPECT_EQ(run(command + " " + file("empty.ts", {})).code, 1) << command;
  }
  const Result malformed =
      run("load " + file("bad.xml", text("<transport_stream>\n  <pat></transport_stream>")));
  EXPECT_EQ(malformed.code, 1);
  EXPECT_EQ(malformed.messages.rfind("bad.xml: malformed XML", 0), 0u) << malformed.messages;
  EXPECT_EQ(run("load letter.txt").messages, "letter.txt: is no XML: it does not begin with a tag\n");
  EXPECT_EQ(run("load " + file("other.xml", text("<other/>"))).code, 1);
  EXPECT_EQ(run("load " + file("empty.xml", {})).code, 1);
}

TEST_F(Program, ReadsTheOthersOfSeveralInputs) {
  file("s.ts", sample_stream());
  file("t.ts", sample_stream());
  const Result one = run("json s.ts");
  const Result both = run("json s.ts missing.ts t.ts");
  EXPECT_EQ(both.code, 1);
  EXPECT_EQ(both.messages, "missing.ts: not found\n");
  EXPECT_EQ(count(both.out, "{\"input\":\"s.ts\",\"pid\":"), count(one.out, "\n"));
  EXPECT_EQ(count(both.out, "{\"input\":\"t.ts\",\"pid\":"), count(one.out, "\n"));
  const std::string services = run("services s.ts").out;
  EXPECT_EQ(run("services s.ts t.ts").out, "s.ts:\n" + services + "\nt.ts:\n" + services);
  EXPECT_NE(run("show s.ts t.ts").out.find("\nPAT  t.ts, packet 1, PID 0x0000\n"), std::string::npos);
  EXPECT_EQ(run("xml s.ts -o s.xml").code, 0);
  const Result loaded = run("load s.xml missing.xml s.xml");
  EXPECT_EQ(loaded.code, 1);
  EXPECT_EQ(loaded.out, run("report s.ts").out + run("report t.ts").out);
  EXPECT_EQ(run("json s.ts t.ts").code, 0);
  const Result twice = run("json - - < s.ts");
  EXPECT_EQ(twice.code, 2);
  EXPECT_EQ(twice.messages, "quillon: standard input can be read once, and - is given twice\n");
}

TEST_F(Program, KeepsAFileThatItCannotMakeAnew) {
  file("s.ts", sample_stream());
  const std::string stream = whole(folder_ / "s.ts");
  std::filesystem::create_directory(folder_ / "sub");
  for (const std::string command : {"xml", "sections"}) {
    for (const std::string name : {"s.ts", "./s.ts", "sub/../s.ts"}) {
      const Result itself = run(command + " s.ts -o " + name);
      EXPECT_EQ(itself.code, 1) << command << " " << name;
      EXPECT_EQ(itself.messages, name + ": is the input; name another file with -o\n");
      EXPECT_TRUE(whole(folder_ / "s.ts") == stream);
    }
    file("old", text("old"));
    EXPECT_EQ(run(command + " missing.ts -o old").code, 1);
    EXPECT_EQ(run(command + " s.ts missing.ts -o old").code, 1);
    EXPECT_EQ(whole(folder_ / "old"), "old") << command;
    EXPECT_EQ(run(command + " s.ts -o old").code, 0);
    EXPECT_EQ(whole(folder_ / "old"), run(command + " s.ts").out);
    // Nothing was left beside it.
    for (const auto& entry : std::filesystem::directory_iterator(folder_))
      EXPECT_TRUE(entry.path().filename().string().find("old") == std::string::npos ||
                  entry.path().filename() == "old")
          << entry.path();
  }
}

TEST_F(Program, NarrowsByEachFilter) {
  const Bytes now = long_section(0x42, Bytes{0x00, 0x01, 0xFF}, {.extension = 5, .version = 3});
  const Bytes next =
      long_section(0x42, Bytes{0x00, 0x01, 0xFF}, {.extension = 5, .version = 4, .current_next = 0});
  const Bytes other = long_section(0x46, Bytes{0x00, 0x01, 0xFF}, {.extension = 6, .version = 4});
  const Bytes time = short_section(0x70, Bytes{0xC0, 0x79, 0x12, 0x45, 0x00});
  file("s.ts", joined({packets({now, next, other}, {.pid = 0x11}), packets({time}, {.pid = 0x14})}));
  const auto met = [this](const std::string& filters) {
    return count(run("json " + filters + " s.ts").out, "\n");
  };
  EXPECT_EQ(met(""), 4);
  EXPECT_EQ(met("--pid 0x11"), 3);
  EXPECT_EQ(met("--pid 17 --pid 0x14"), 4);
  EXPECT_EQ(met("--table 0x42"), 2);
  EXPECT_EQ(met("--table 0x42 --table 70"), 3);
  EXPECT_EQ(met("--extension 5"), 2);
  EXPECT_EQ(met("--extension 0"), 0);  // a short section has none
  EXPECT_EQ(met("--version 4"), 2);
  EXPECT_EQ(met("--version 0"), 0);
  EXPECT_EQ(met("--only-current"), 3);
  EXPECT_EQ(met("--table 0x42 --version 4"), 1);
  EXPECT_EQ(met("--table 0x42 --version 4 --only-current"), 0);
  EXPECT_EQ(met("--pid 0x11 --table 0x46 --extension 6 --version 4 --only-current"), 1);
  EXPECT_EQ(run("json --table 0x42 --pid 0x14 s.ts").messages, "nothing matches --pid 0x0014 --table 0x42\n");
  EXPECT_EQ(run("json --table 0x42 --pid 0x14 s.ts").code, 0);
}

TEST_F(Program, TellsTheTroubleOfThePidsAskedFor) {
  const Bytes one = long_section(0x42, Bytes{0x00, 0x01, 0xFF});
  const Bytes other = short_section(0x70, Bytes{0xC0, 0x79, 0x12, 0x45, 0x00});
  file("s.ts", joined({packets({one}, {.pid = 0x11}),
                       packets({one}, {.pid = 0x11, .counter = 5}),
                       packets({other}, {.pid = 0x14}),
                       packets({other}, {.pid = 0x14, .counter = 5}),
                       packet({.pid = 0x300, .error = 1}, {}),
                       packet({.pid = 0x301, .error = 1}, {}),
                       {0x00, 0x01}}));
  const auto trouble = [this](const std::string& filters) {
    const std::string out = run("summary " + filters + " s.ts").out;
    return out.substr(out.find("\nTrouble\n") + 1);
  };
  const std::string bytes = "Trouble\n  2 bytes that belong to no packet\n";
  const std::string description = "  1 continuity errors on PID 0x0011\n";
  const std::string time = "  1 continuity errors on PID 0x0014\n";
  const std::string damaged = "  1 packets with an error on PID 0x0300\n";
  EXPECT_EQ(trouble(""), bytes + description + time + damaged + "  1 packets with an error on PID 0x0301\n");
  EXPECT_EQ(trouble("--pid 0x11"), bytes + description);
  EXPECT_EQ(trouble("--pid 0x14 --pid 0x300"), bytes + time + damaged);
  EXPECT_EQ(trouble("--pid 0x100"), bytes);
}

TEST_F(Program, ListsSoManyTables) {
  constexpr int most = 65536;
  Bytes sections;
  const auto add = [&sections](int i) {
    const auto network = static_cast<uint8_t>(i >> 16);
    const Bytes section = long_section(0x46, Bytes{0x00, network, 0xFF}, {.extension = i & 0xFFFF});
    sections.insert(sections.end(), section.begin(), section.end());
  };
  for (int i = 0; i < most + 3; ++i) add(i);
  add(0);
  add(most);
  const std::string message = "s.bin: holds more than 65,536 tables; 4 sections of others are not listed\n";
  file("s.bin", sections);
  const Result tables = run("tables s.bin");
  EXPECT_EQ(tables.code, 0);
  EXPECT_EQ(tables.messages, message);
  EXPECT_EQ(count(tables.out, "\n"), 1 + most);
  // What is listed is counted further.
  EXPECT_EQ(tables.out.substr(tables.out.find('\n') + 1).rfind("       SDT (table 0x46)  0x0000", 0), 0u)
      << tables.out.substr(0, 400);
  EXPECT_EQ(run("html s.bin -o page.html").messages, message);
}

TEST_F(Program, SaysThatNothingMatches) {
  file("s.ts", sample_stream());
  for (const std::string command :
       {"summary", "pids", "epg", "tables", "show", "json", "report", "xml", "sections"}) {
    EXPECT_NE(run(command + " --pid 0x1234 s.ts").messages.find("nothing matches --pid 0x1234\n"),
              std::string::npos)
        << command;
    EXPECT_NE(run(command + " --service Nobody s.ts").messages.find("--service Nobody\n"), std::string::npos)
        << command;
  }
  // A PID of video is met, and named, though no section is on it.
  const Result video = run("pids --pid 0x101 s.ts");
  EXPECT_EQ(video.messages, "");
  EXPECT_NE(video.out.find("  0x0101  "), std::string::npos);
  EXPECT_NE(video.out.find(" of "), std::string::npos) << video.out;
  const Bytes own = long_section(0xBC, Bytes(8, 0x11));
  EXPECT_EQ(run("json " + file("own.bin", own)).messages,
            "no table is known by the ids of the 1 sections; quillon sections writes them as they are\n");
}

TEST_F(Program, NarrowsToAService) {
  const char* const data = std::getenv("QUILLON_DATA");
  if (!data) GTEST_SKIP() << "QUILLON_DATA is not set";
  const std::filesystem::path streams = data;
  std::filesystem::copy_file(streams / "sample.ts", folder_ / "s.ts");
  std::filesystem::copy_file(streams / "sample-atsc.ts", folder_ / "a.ts");
  for (const std::string command :
       {"summary", "services", "pids", "epg", "tables", "show", "json", "report", "xml", "sections"}) {
    const std::string all = run(command + " s.ts").out;
    const std::string one = run(command + " --service 0x1001 s.ts").out;
    EXPECT_FALSE(one.empty()) << command;
    EXPECT_LT(one.size(), all.size()) << command;
    for (const std::string name : {"\"Quill One\"", "\"quill one\"", "4097", "04097"})
      EXPECT_EQ(run(command + " --service " + name + " s.ts").out, one) << command << name;
    EXPECT_EQ(run(command + " --service \"Quill\" s.ts").out == one, false) << command;
    const std::string two = run(command + " --service 4097 --service 4098 s.ts").out;
    EXPECT_GT(two.size(), one.size()) << command;
    const std::string channel = run(command + " --service 12.1 a.ts").out;
    // In the kept reading no event of ATSC is read.
    EXPECT_FALSE(channel.empty()) << command;
    EXPECT_EQ(run(command + " --service inkwell a.ts").out, channel) << command;
  }
}

TEST_F(Program, ListsWhatIsOnAndWhatIsAskedFor) {
  const char* const data = std::getenv("QUILLON_DATA");
  if (!data) GTEST_SKIP() << "QUILLON_DATA is not set";
  std::filesystem::copy_file(std::filesystem::path(data) / "sample.ts", folder_ / "s.ts");
  const auto epg = [this](const std::string& options) {
    return run("epg --service 4097 " + options + " s.ts");
  };
  const std::string all = epg("").out;
  EXPECT_EQ(count(all, "\n> 2026-11-22 12:30  1:00:00  Ink and Paper"), 1);
  EXPECT_EQ(count(epg("--now").out, "  2026-11-22 1") + count(epg("--now").out, "> 2026-11-22 1"), 3 - 1);
  const std::string evening = epg("--from 2026-11-22T12:00 --to 2026-11-22T13:30").out;
  EXPECT_EQ(count(evening, "2026-11-22 "), 2) << evening;
  EXPECT_EQ(count(evening, "Noon News"), 1);
  EXPECT_EQ(count(evening, "Ink and Paper"), 1);
  // What has begun counts, what has ended does not.
  EXPECT_EQ(count(epg("--from 2026-11-22T12:30 --to 2026-11-22T12:31").out, "2026-11-22 "), 1);
  EXPECT_EQ(count(epg("--from 2026-11-22T12:29 --to 2026-11-22T12:30").out, "Noon News"), 1);
  EXPECT_EQ(epg("--from \"2026-11-22 12:00\" --to 2026-11-22T13:30:00Z").out, evening);
  EXPECT_EQ(epg("--from 1999-01-01 --to 1999-01-02").out, "");
  EXPECT_EQ(epg("--to 1999-01-02").messages, "s.ts: no events of --service 4097\n");
  for (const std::string time : {"noon", "2026-13-01", "2026-11-22T24:00", "2026-11-22T12:00x", "2026"}) {
    const Result bad = epg("--from " + time);
    EXPECT_EQ(bad.code, 2) << time;
    EXPECT_EQ(bad.messages, "quillon: " + time + " is no time; give it as 2026-11-22T20:15\n");
  }
}

TEST_F(Program, TellsWhichElementDoesNotLoadAndLoadsTheOthers) {
  file("s.ts", sample_stream());
  std::string text = run("xml --table 0 --table 0x42 s.ts").out;
  text.replace(text.find(" pmtpid="), 8, " pmt_id=");
  const Result result = run("load " + file("s.xml", Bytes(text.begin(), text.end())));
  EXPECT_EQ(result.code, 1);
  EXPECT_EQ(count(result.out, "table name: service_description_section"), 1);
  EXPECT_EQ(result.messages,
            "s.xml: element 1: pat: failed to get pid node\n"
            "s.xml: some tables could not be loaded\n");
}

TEST_F(Program, AnswersWrongUseWithTwo) {
  EXPECT_EQ(run("").code, 2);
  EXPECT_EQ(run("").messages, "quillon: no command is given; quillon --help tells what there is\n");
  EXPECT_EQ(run("nonsense").code, 2);
  EXPECT_EQ(run("nonsense").messages,
            "quillon: there is no command nonsense; quillon --help tells what there is\n");
  EXPECT_EQ(run("--nonsense").code, 2);
  EXPECT_EQ(run("names zebras").code, 2);
  EXPECT_EQ(run("names network x").code, 2);
  EXPECT_EQ(run("names network 0x9999").code, 1);
  for (const std::string command : {"summary", "services", "pids", "epg", "tables", "show", "json", "report",
                                    "xml", "load", "sections", "watch", "names"}) {
    EXPECT_EQ(run(command).code, 2) << command;
    EXPECT_EQ(run(command + " --nonsense s.ts").code, 2) << command;
    EXPECT_EQ(run(command + " --help").code, 0) << command;
  }
  EXPECT_EQ(run("report --standard isdb s.ts").code, 2);
  EXPECT_EQ(run("--help").code, 0);
}

TEST_F(Program, TakesNumbersAsPeopleWriteThem) {
  const Bytes section = long_section(0x0A, Bytes(8));
  file("s.ts", joined({packets({section}, {.pid = 10}), sample_stream()}));
  const std::string ten = run("sections --pid 10 s.ts").out;
  EXPECT_EQ(ten.size(), section.size());
  for (const std::string number : {"010", "0x0A", "0xa", "0XA", "00010"})
    EXPECT_EQ(run("sections --pid " + number + " s.ts").out, ten) << number;
  for (const std::string option : {"pid", "table", "extension", "version", "text-table", "seconds"})
    for (const std::string bad : {"0x", "1x", "x", "1,2", "99999", "-1", "99999999999999999999"}) {
      if (option == "seconds" && bad == "99999") continue;
      const Result result = run("json --" + option + " " + bad + " s.ts");
      EXPECT_EQ(result.code, 2) << option << " " << bad;
      EXPECT_EQ(result.messages.rfind("quillon: --" + option + ": " + bad + " is n", 0), 0u)
          << result.messages;
      EXPECT_LT(result.messages.size(), 160u);
    }
  EXPECT_EQ(run("json --seconds 0 s.ts").code, 2);
  EXPECT_EQ(run("json --seconds nan s.ts").code, 2);
  EXPECT_EQ(run("names ca-system 0x0B00").out, run("names ca-system 02816").out);
}

TEST_F(Program, TakesNamesInAnyScript) {
  const std::string name = file("Träger α 日本.ts", sample_stream());
  const Result report = run("report \"" + name + "\"");
  EXPECT_EQ(report.code, 0);
  EXPECT_EQ(report.out, run("report " + file("s.ts", sample_stream())).out);
  EXPECT_EQ(run("xml s.ts -o \"ä.xml\"").code, 0);
  EXPECT_EQ(run("load \"ä.xml\"").out, report.out);
  EXPECT_EQ(run("report \"ß.ts\"").messages, "ß.ts: not found\n");
  EXPECT_EQ(run("load \"ß.xml\"").messages, "ß.xml: not found\n");
}

TEST_F(Program, TellsTheVersion) {
  const Result result = run("--version");
  EXPECT_EQ(result.code, 0);
  EXPECT_EQ(result.out, "quillon " QUILLON_VERSION_STRING "\n");
}
