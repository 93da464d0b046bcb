// Packets in, sections out.

#include "tests/demux/table_demux.h"
#include "tests/support/faces.h"

#include <stdexcept>

using namespace quillon;
using namespace quillon::test;

// Assembly

TEST(Demux, DeliversASectionThatFitsAndIgnoresTheTailOfTheNextPacket) {
  const Bytes section = section_of(kTable, 20);
  TableDemux demux;
  demux.feed(start_packet(kPid, 0, section));
  EXPECT_EQ(demux.order(), (Texts{"section 256/66"}));
  EXPECT_EQ(demux.sections(), (Sections{section}));
  demux.feed(next_packet(kPid, section));
  demux.feed(start_packet(kPid, 20, joined({section, section})));
  EXPECT_EQ(demux.sections(), (Sections{section, section}));
}

TEST(Demux, DeliversEachSizeOfASection) {
  for (const size_t size :
       {3u, 4u, 7u, 100u, 182u, 183u, 184u, 185u, 366u, 367u, 368u, 1024u, 4096u, 4098u}) {
    const Bytes section = section_of(kTable, size, static_cast<int>(size));
    TableDemux demux(packets({section}));
    demux.start();
    ASSERT_EQ(demux.sections(), (Sections{section})) << size;
    EXPECT_EQ(demux.calls.size(), demux.count("raw") * 2 + 1);
  }
}

TEST(Demux, TellsPidTableAndSectionNumber) {
  const Bytes section = long_section(0x40, Bytes(10, 0xAB), {.section_number = 5, .last_section_number = 9});
  RecordingDemux demux(packets({section}, {.pid = 0x10}));
  demux.add_psi_handler(0x10, 0x40);
  demux.start();
  ASSERT_EQ(demux.heard.size(), 1u);
  EXPECT_EQ(demux.heard[0].pid, 0x10);
  EXPECT_EQ(demux.heard[0].table_id, 0x40);
  EXPECT_EQ(demux.heard[0].number, 5);
  EXPECT_EQ(demux.heard[0].bytes, section);
}

TEST(Demux, TakesByteSixForTheSectionNumberAlsoOfAShortSection) {
  Bytes section = section_of(kTable, 3);
  section.insert(section.end(), {1, 2, 3, 4});
  TableDemux demux(start_packet(kPid, 0, section));
  demux.start();
  ASSERT_EQ(demux.heard.size(), 1u);
  EXPECT_EQ(demux.heard[0].bytes, section_of(kTable, 3));
  EXPECT_EQ(demux.heard[0].number, 4);
}

TEST(Demux, FeedsTheTailBeforeItStartsTheNextSection) {
  const Bytes one = section_of(kTable, 188, 1);
  const Bytes two = section_of(0x43, 20, 2);
  TableDemux demux(joined({start_packet(kPid, 0, first(one, 183)),  //
                           start_packet(kPid, 5, joined({behind(one, 183), two}))}));
  demux.add_psi_handler(kPid, 0x43);
  demux.start();
  EXPECT_EQ(demux.order(), (Texts{"section 256/66", "section 256/67"}));
  EXPECT_EQ(demux.sections(), (Sections{one, two}));
}

TEST(Demux, OverwritesASectionThatTheTailDidNotComplete) {
  const Bytes one = section_of(kTable, 200, 1);
  const Bytes two = section_of(kTable, 20, 2);
  TableDemux demux(
      joined({start_packet(kPid, 0, first(one, 183)),  //
              start_packet(kPid, 5, joined({Bytes(5), two})), next_packet(kPid, behind(one, 188))}));
  demux.start();
  EXPECT_EQ(demux.sections(), (Sections{two}));
}

TEST(Demux, DeliversTheSameSectionEachTimeItComes) {
  const Bytes section = section_of(kTable, 40);
  TableDemux demux(packets({section, section, section}));
  demux.start();
  EXPECT_EQ(demux.sections(), (Sections{section, section, section}));
}

TEST(Demux, GoesOnWithASectionThatBeganInTheLastBytesOfAPacket) {
  const Bytes filler = section_of(0x43, 400, 7);
  for (const size_t held : {1u, 2u, 3u, 4u})
    for (const size_t size : {3u, 4u, 20u, 184u, 400u}) {
      const Bytes section = section_of(kTable, size, 3);
      const size_t now = std::min(held, size);
      // The tail of another table's section lies in front, so that the start falls on the packet's end.
      TableDemux demux(joined({start_packet(kPid, 0, first(filler, 183)),
                               start_packet(kPid, static_cast<int>(183 - now),
                                            joined({Bytes(183 - now), first(section, now)}))}));
      Bytes rest = behind(section, now);
      for (size_t at = 0; at < rest.size(); at += 184)
        demux.add(next_packet(kPid, first(behind(rest, at), std::min<size_t>(184, rest.size() - at))));
      demux.start();
      EXPECT_EQ(demux.sections(), (Sections{section})) << held << " of " << size;
    }
}

TEST(Demux, DoesNotCompleteAStartOfOneOrTwoBytesByWhatAnEarlierSectionLeft) {
  // The buffer still holds the length of a section of three bytes.
  for (const size_t held : {1u, 2u}) {
    const Bytes section = section_of(kTable, 30, 3);
    TableDemux demux(joined({start_packet(kPid, 0, section_of(kTable, 3)),
                             start_packet(kPid, static_cast<int>(183 - held),
                                          joined({Bytes(183 - held), first(section, held)}))}));
    demux.start();
    EXPECT_EQ(demux.heard.size(), 1u);
    demux.feed(next_packet(kPid, behind(section, held)));
    EXPECT_EQ(demux.sections(), (Sections{section_of(kTable, 3), section}));
  }
}

TEST(Demux, TakesAStartCodeForNoSection) {
  const Bytes one = section_of(kTable, 300);
  const Bytes code = packet({.pid = kPid, .start = 1}, {0x00, 0x00, 0x00, 0x01, 0xE0});
  TableDemux demux(
      joined({start_packet(kPid, 0, first(one, 183)), code, next_packet(kPid, behind(one, 183))}));
  demux.add_psi_handler(kPid, 0x00);
  const uint8_t none = 0;
  demux.add_psi_handler(kPid, &none, &none, 0, 5);
  demux.start();
  // The handler in progress stays it; the filter, too, saw nothing of the packet.
  EXPECT_EQ(demux.order(), (Texts{"section 256/66", "filtered 5"}));
  EXPECT_EQ(demux.sections(), (Sections{one, one}));
}

TEST(Demux, TakesNothingButTheStartCodeForOne) {
  for (size_t i = 0; i < 4; ++i) {
    Bytes payload{0x00, 0x00, 0x00, 0x01, 0x11, 0x22};
    payload[i] = 0x02;
    // Enough for whatever length the bytes make now.
    const Bytes rest = next_packet(kPid, Bytes(184));
    RecordingDemux demux(joined({packet({.pid = kPid, .start = 1}, payload), rest, rest, rest}));
    const uint8_t none = 0;
    demux.add_psi_handler(kPid, &none, &none, 0, 5);
    demux.start();
    EXPECT_EQ(demux.heard.size(), 1u) << i;
  }
  // The pointer, the table id 0x00 and the lengths 0x00 0x00: a section of three bytes at a packet's end.
  RecordingDemux demux(packet({.pid = kPid, .start = 1, .field = 179}, {0x00, 0x00, 0x00, 0x00}));
  demux.add_psi_handler(kPid, 0x00);
  demux.start();
  EXPECT_EQ(demux.sections(), (Sections{{0x00, 0x00, 0x00}}));
}

TEST(Demux, ReadsNoStartCodeBehindThePayload) {
  // Three bytes of payload; the 0x01 that would make the code is not there.
  RecordingDemux demux(packet({.pid = kPid, .start = 1, .field = 180}, {0x00, 0x00, 0x00}));
  demux.add_psi_handler(kPid, 0x00);
  demux.start();
  demux.feed(next_packet(kPid, {0x01, 0x77}));
  EXPECT_EQ(demux.sections(), (Sections{{0x00, 0x00, 0x01, 0x77}}));
}

TEST(Demux, DropsAContinuationWithoutAStart) {
  const Bytes section = section_of(kTable, 20);
  TableDemux demux;
  demux.add_psi_handler(kPid, 0x47);
  demux.feed(next_packet(kPid, section));
  demux.feed(start_packet(kPid, 20, joined({section, section})));
  EXPECT_EQ(demux.sections(), (Sections{section}));
}

TEST(Demux, LeavesAnUnfinishedSectionWhenAnotherTableBegins) {
  const Bytes one = section_of(kTable, 300, 1);
  const Bytes two = section_of(0x43, 20, 2);
  TableDemux demux(joined({start_packet(kPid, 0, first(one, 183)),  //
                           start_packet(kPid, 0, two),              //
                           next_packet(kPid, behind(one, 183))}));
  demux.add_psi_handler(kPid, 0x43);
  demux.start();
  EXPECT_EQ(demux.sections(), (Sections{two}));
  // The next start of the first table overwrites what it kept.
  demux.feed(packets({one}));
  EXPECT_EQ(demux.sections(), (Sections{two, one}));
}

TEST(Demux, ForgetsTheHandlerAtATableIdWithoutOne) {
  const Bytes one = section_of(kTable, 300, 1);
  TableDemux demux(joined({start_packet(kPid, 0, first(one, 183)),           //
                           start_packet(kPid, 0, section_of(0x43, 400, 2)),  //
                           next_packet(kPid, behind(one, 183))}));
  demux.start();
  EXPECT_TRUE(demux.heard.empty());
}

TEST(Demux, DeliversEarlyWhatClaimsTooLittle) {
  Bytes section = section_of(kTable, 100);
  section[2] = 17;
  TableDemux demux(start_packet(kPid, 0, section));
  demux.start();
  EXPECT_EQ(demux.sections(), (Sections{first(section, 20)}));
}

TEST(Demux, TakesInTheNextPacketsOfWhatClaimsTooMuch) {
  Bytes section = section_of(kTable, 150);
  section[2] = 197;
  const Bytes next = next_packet(kPid, Bytes(184, 0x33));
  TableDemux demux(joined({start_packet(kPid, 0, section), next}));
  demux.start();
  ASSERT_EQ(demux.heard.size(), 1u);
  EXPECT_EQ(demux.heard[0].bytes,
            joined({section, Bytes(33, 0xFF), Bytes(17, 0x33)}));  // stuffing of the first packet included
  // Or the next start overwrites it.
  TableDemux other(joined({start_packet(kPid, 0, section), start_packet(kPid, 0, section_of(kTable, 9))}));
  other.start();
  EXPECT_EQ(other.sections(), (Sections{section_of(kTable, 9)}));
}

TEST(Demux, FeedsTheBytesInFrontOfAPointerBehindTheEndAndStartsNothing) {
  for (const int pointer : {183, 184, 200, 255}) {
    const Bytes one = section_of(kTable, 183 + 183, 1);
    TableDemux demux(joined({start_packet(kPid, 0, first(one, 183)),  //
                             start_packet(kPid, pointer, behind(one, 183))}));
    demux.start();
    EXPECT_EQ(demux.sections(), (Sections{one})) << pointer;

    // Nobody is in progress after it.
    const Bytes two = section_of(kTable, 500, 2);
    TableDemux other(joined({start_packet(kPid, 0, first(two, 183)),                     //
                             start_packet(kPid, pointer, first(behind(two, 183), 183)),  //
                             next_packet(kPid, behind(two, 366))}));
    other.start();
    EXPECT_TRUE(other.heard.empty()) << pointer;
  }
}

TEST(Demux, StartsASectionOnTheLastByteThatAPointerCanName) {
  TableDemux demux(joined(
      {start_packet(kPid, 182, joined({Bytes(182), {kTable}})), next_packet(kPid, {0x70, 0x01, 0x99})}));
  demux.start();
  EXPECT_EQ(demux.sections(), (Sections{{kTable, 0x70, 0x01, 0x99}}));
}

TEST(Demux, HoldsNoMoreThanItsBuffer) {
  // A hook that throws leaves a section that is complete in its buffer: continuations go on filling it.
  const Bytes section = section_of(kTable, 300);
  for (const bool filter : {false, true}) {
    RecordingDemux demux;
    if (filter)
      demux.add_psi_handler(kPid, nullptr, nullptr, 0, 5);
    else
      demux.add_psi_handler(kPid, kTable);
    demux.then = [](const std::string& hook) {
      if (hook == "section" || hook == "filtered") throw std::runtime_error("hook");
    };
    demux.feed(start_packet(kPid, 0, first(section, 183)));
    for (int i = 0; i < 100; ++i)
      EXPECT_THROW(demux.feed(next_packet(kPid, Bytes(184, 0x21))), std::runtime_error) << i;
    demux.then = [](const std::string&) {};
    demux.heard.clear();
    demux.feed(packets({section}));
    EXPECT_EQ(demux.sections(), (Sections{section}));
  }
}

// Several PIDs and tables

TEST(Demux, KeepsPidsAndTablesApart) {
  std::vector<Bytes> streams;
  RecordingDemux demux;
  for (const int pid : {0x10, 0x11, 0x12}) {
    std::vector<Bytes> sections;
    for (const int table : {0x40, 0x41, 0x42}) {
      sections.push_back(section_of(table, 700, pid * table));
      demux.add_psi_handler(pid, table);
    }
    streams.push_back(packets(sections, {.pid = pid}));
  }
  for (size_t at = 0; at < streams[0].size(); at += kPacketSize)
    for (const Bytes& stream : streams) demux.add(first(behind(stream, at), kPacketSize));
  demux.start();
  ASSERT_EQ(demux.heard.size(), 9u);
  for (const Heard& h : demux.heard) {
    EXPECT_EQ(h.bytes[0], h.table_id);
    EXPECT_EQ(h.bytes, section_of(h.table_id, 700, h.pid * h.table_id));
  }
}

TEST(Demux, AddsATableOnce) {
  TableDemux demux(packets({section_of(kTable, 20)}));
  demux.add_psi_handler(kPid, kTable);
  demux.start();
  EXPECT_EQ(demux.heard.size(), 1u);
  EXPECT_EQ(report(demux), "pid: 100\ntable_id: 42\n");
}

TEST(Demux, AddingATableAgainLeavesTheSectionInProgress) {
  const Bytes section = section_of(kTable, 300);
  TableDemux demux(start_packet(kPid, 0, first(section, 183)));
  demux.start();
  demux.add_psi_handler(kPid, kTable);
  demux.feed(next_packet(kPid, behind(section, 183)));
  EXPECT_EQ(demux.sections(), (Sections{section}));
}

// Several sections in a packet

TEST(Demux, ServesOneStartAPacketUnlessToldOtherwise) {
  Sections sections;
  for (int i = 0; i < 40; ++i) sections.push_back(section_of(kTable, static_cast<size_t>(3 + i * 3), i));
  const Bytes stream = packets(sections, {.shared = true});

  TableDemux every(stream);
  every.serve_every_section(true);
  every.start();
  EXPECT_EQ(every.sections(), sections);

  TableDemux one(stream);
  one.start();
  EXPECT_GT(one.heard.size(), 10u);
  EXPECT_LT(one.heard.size(), sections.size());
  for (const Heard& h : one.heard)
    EXPECT_NE(std::find(sections.begin(), sections.end(), h.bytes), sections.end());
}

TEST(DemuxEverySection, FindsTablesAndFiltersInOrder) {
  const Sections sections{section_of(0x41, 10, 1), section_of(kTable, 10, 2), section_of(0x43, 200, 3),
                          section_of(kTable, 10, 4)};
  const uint8_t none = 0;
  TableDemux demux(packets(sections, {.shared = true}));
  demux.add_psi_handler(kPid, 0x43);
  demux.add_psi_handler(kPid, &none, &none, 0, 5);
  demux.serve_every_section(true);
  demux.start();
  EXPECT_EQ(demux.order(), (Texts{"filtered 5", "section 256/66", "filtered 5", "section 256/67",
                                  "filtered 5", "section 256/66", "filtered 5"}));
  EXPECT_EQ(demux.sections(), (Sections{sections[0], sections[1], sections[1], sections[2], sections[2],
                                        sections[3], sections[3]}));
}

TEST(DemuxEverySection, EndsAtStuffing) {
  const Bytes one = section_of(kTable, 20, 1);
  const Bytes two = section_of(kTable, 20, 2);
  TableDemux demux(start_packet(kPid, 0, joined({one, {0xFF, 0xF0, 0x00}, two})));
  demux.serve_every_section(true);
  demux.start();
  EXPECT_EQ(demux.sections(), (Sections{one}));

  // Stuffing that is announced as a section is served as one, as ever.
  RecordingDemux stuffed(start_packet(kPid, 0, {0xFF, 0xF0, 0x00, 0x42, 0x70, 0x00}));
  stuffed.add_psi_handler(kPid, 0xFF);
  stuffed.add_psi_handler(kPid, 0x42);
  stuffed.serve_every_section(true);
  stuffed.start();
  EXPECT_EQ(stuffed.order(), (Texts{"section 256/255", "section 256/66"}));
}

TEST(DemuxEverySection, GoesOnWithAHeaderThatThePacketSplits) {
  for (const size_t held : {1u, 2u, 3u}) {
    const Bytes one = section_of(0x43, 183 - held, 1);
    const Bytes two = section_of(kTable, 250, 2);
    const Bytes three = section_of(kTable, 20, 3);
    const Sections all{one, two, three};
    TableDemux demux(packets(all, {.shared = true}));
    demux.add_psi_handler(kPid, 0x43);
    demux.serve_every_section(true);
    demux.start();
    EXPECT_EQ(demux.sections(), all) << held;
  }
}

TEST(DemuxEverySection, DeliversWhatTheDefaultDeliversWhereEachSectionStartsAPacket) {
  const Sections sections{section_of(kTable, 20, 1), section_of(kTable, 183, 2), section_of(kTable, 900, 3)};
  for (const int field : {-1, 0, 60}) {
    TableDemux demux(packets(sections, {.field = field}));
    demux.serve_every_section(true);
    demux.start();
    EXPECT_EQ(demux.sections(), sections);
  }
}

TEST(DemuxEverySection, GivesAFilterTheSectionWithoutWhatFollowsIt) {
  // The packet's rest is not part of a section that another follows: the bytes after it are what was there.
  const Bytes data{0x42, 0x70, 0x00, 0x42};
  const Bytes mask(4, 0xFF);
  for (const bool every_section : {false, true}) {
    RecordingDemux demux(start_packet(kPid, 0, joined({section_of(0x42, 3), section_of(0x42, 3)})));
    demux.add_psi_handler(kPid, data.data(), mask.data(), 4, 5);
    demux.serve_every_section(every_section);
    demux.start();
    EXPECT_EQ(demux.heard.size(), every_section ? 0u : 1u);
  }
}

TEST(DemuxEverySection, FeedsTheTailInFrontOfThePointer) {
  const Bytes one = section_of(kTable, 240, 1);
  const Bytes two = section_of(kTable, 9, 2);
  const Bytes three = section_of(kTable, 7, 3);
  TableDemux demux(joined({start_packet(kPid, 0, first(one, 183)),
                           start_packet(kPid, 57, joined({behind(one, 183), two, three}))}));
  demux.serve_every_section(true);
  demux.start();
  EXPECT_EQ(demux.sections(), (Sections{one, two, three}));
}
