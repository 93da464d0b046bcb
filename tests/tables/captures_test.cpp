// Recorded streams: what the demultiplexer finds in them, and what the tables make of it. The folder of the
// streams is that of the environment variable QUILLON_STREAMS; without it these tests are skipped.

#include "tests/stream/streams.h"
#include "tests/support/faces.h"
#include "tests/support/packets.h"

#include <map>
#include <set>
#include <string_view>

#include <quillon/appsignal/ait.h>
#include <quillon/atsc/eit_atsc.h>
#include <quillon/descriptors/service/service.h>
#include <quillon/faces/field_sink.h>
#include <quillon/sections/crc.h>
#include <quillon/stream/any_table.h>
#include <quillon/tables/sdt.h>

using namespace quillon;
using namespace quillon::test;

namespace {

// The different sections of a capture by table id.
using Sections = std::map<int, std::set<Bytes>>;
using Counts = std::map<int, size_t>;

bool is_right(const Bytes& section) {
  return section[1] & 0x80 && section_crc(section.data(), section.size()) == good_section_crc;
}

// All sections with a right CRC on any PID, and the short ones on that of the time tables.
class Collector : public MemoryDemux {
 public:
  explicit Collector(Bytes stream) : MemoryDemux(stream) {
    serve_every_section(true);
    std::set<int> pids;
    for (size_t at = 0; at + kPacketSize <= stream.size(); at += kPacketSize)
      pids.insert((stream[at + 1] & 0x1F) << 8 | stream[at + 2]);
    for (const int pid : pids) add_psi_handler(pid, nullptr, nullptr, 0, static_cast<unsigned long>(pid));
  }

  Sections sections;
  std::map<int, std::map<int, std::set<Bytes>>> by_pid;

 protected:
  using MemoryDemux::on_psi_section;
  void on_psi_section(unsigned long pid, int size, uint8_t* bytes) override {
    const Bytes section(bytes, bytes + size);
    const bool time = pid == 0x14 && !(section[1] & 0x80) && (section[0] == 0x70 || section[0] == 0x73);
    if (!time && !is_right(section)) return;
    sections[section[0]].insert(section);
    by_pid[static_cast<int>(pid)][section[0]].insert(section);
  }
};

Sections sections_of_chain(const Bytes& chain) {
  Sections out;
  for (size_t at = 0; at + 3 <= chain.size();) {
    const size_t size = (static_cast<size_t>(chain[at + 1] & 0x0F) << 8 | chain[at + 2]) + 3;
    const auto begin = chain.begin() + static_cast<ptrdiff_t>(at);
    const Bytes section(begin, begin + static_cast<ptrdiff_t>(std::min(size, chain.size() - at)));
    EXPECT_TRUE(is_right(section)) << at;
    out[section[0]].insert(section);
    at += size;
  }
  return out;
}

Counts counts(const Sections& sections) {
  Counts out;
  for (const auto& [table_id, different] : sections) out[table_id] = different.size();
  return out;
}

// The tags of the descriptors without a class of their own.
class GeneralTags final : public FieldSink {
 public:
  std::set<int> tags;

  void number(const char* name, int64_t value, const char*) override {
    if (in_general_ && std::string_view(name) == "descriptor_id") tags.insert(static_cast<int>(value));
  }
  void begin(const char* name, const char*) override {
    in_general_ = std::string_view(name) == "general_descriptor";
  }
  void end() override { in_general_ = false; }

 private:
  bool in_general_ = false;
};

std::set<int> range(int first, int last) {
  std::set<int> out;
  for (int tag = first; tag <= last; ++tag) out.insert(tag);
  return out;
}

// The tags below 128 that no class is there for.
std::set<int> classless(const AnyTable& table, Standard standard) {
  std::set<int> out = range(0x00, 0x01);
  if (table.as<Ait>()) {
    out = range(0x0E, 0x7F);
    out.erase(0x5F);
  } else if (standard == Standard::atsc) {
    out.merge(range(0x15, 0x7F));
  } else {
    out.merge(range(0x15, 0x3F));
    out.insert(0x65);
    out.merge(range(0x7D, 0x7F));
  }
  return out;
}

// A document without its carousel ids, which no load finds.
std::string without_carousel_ids(std::string xml) {
  for (size_t at; (at = xml.find("<carousel_id_descriptor ")) != std::string::npos;)
    xml.erase(at, xml.find("/>", at) + 2 - at);
  const std::string emptied = "<descriptors></descriptors>";
  for (size_t at; (at = xml.find(emptied)) != std::string::npos;)
    xml.replace(at, emptied.size(), "<descriptors />");
  return xml;
}

// The fields after an event's start are read a byte early, so that the events of a real table are refused.
// Kept: see AtscEIT.
bool is_refused(const AnyTable& table, const Bytes& section) {
  return table.as<AtscEIT>() && section[9] > 0;
}

// The texts of a walk, which are all readable.
class Texts final : public FieldSink {
 public:
  void text(const char* name, std::string_view utf8) override {
    EXPECT_EQ(utf8.find("\uFFFD"), std::string_view::npos) << name << ": " << utf8;
    EXPECT_EQ(utf8.find("\u0080"), std::string_view::npos) << name << ": " << utf8;
    for (const char c : utf8) EXPECT_TRUE(static_cast<unsigned char>(c) >= 0x20 || c == '\n') << name;
  }
};

// The standard reading takes the whole section.
void expect_standard_table(const Bytes& section, Standard standard) {
  const auto table = AnyTable::for_table_id(section[0], standard);
  table->set_reading(Reading::standard);
  table->Parse(section.data(), section.size(), false);
  for (const DescriptorFailure& refused : table->get_descriptor_failures())
    ADD_FAILURE() << refused.tag << ": " << refused.text;
  Texts texts;
  table->walk(texts);
  if (const AtscEIT* const eit = table->as<AtscEIT>()) {
    EXPECT_EQ(eit->events.size(), static_cast<size_t>(eit->num_events_in_section));
  }
}

// The section has a class, which refuses no descriptor that it has a class for, and loads what it saves.
void expect_table(const Bytes& section, Standard standard) {
  const auto table = AnyTable::for_table_id(section[0], standard);
  ASSERT_NE(table, nullptr);
  const std::string failed = failure([&] { table->Parse(section.data(), section.size(), true); });
  if (is_refused(*table, section)) {
    EXPECT_EQ(failed, "-1: AtscTVCT::Channel: descriptor start end mismatch");
    EXPECT_EQ(table->as<AtscEIT>()->num_events_in_section, section[9]);
    return;
  }
  EXPECT_EQ(failed, "nothing");
  EXPECT_FALSE(report(*table).empty());

  GeneralTags general;
  table->walk(general);
  const std::set<int> known = classless(*table, standard);
  for (const int tag : general.tags) EXPECT_TRUE(known.contains(tag)) << tag;

  const std::string xml = saved(*table);
  // A table of ATSC saves its header alone.
  if (std::string_view(table->element()).starts_with("atsc_")) {
    EXPECT_TRUE(xml.ends_with("\" />"));
  }
  const auto again = AnyTable::for_element(table->element());
  const xml::Document document = xml::Document::from_text(xml);
  again->ParseDOM(document.root());
  EXPECT_EQ(saved(*again), without_carousel_ids(xml));
}

void expect_tables(const Sections& sections, Standard standard) {
  for (const auto& [table_id, different] : sections) {
    if (table_id == 0xE4) continue;  // of this bouquet's own
    size_t number = 0;
    for (const Bytes& section : different) {
      SCOPED_TRACE("table id " + std::to_string(table_id) + ", section " + std::to_string(number++));
      expect_table(section, standard);
      expect_standard_table(section, standard);
    }
  }
}

}  // namespace

TEST(Captures, OfASatelliteMultiplexWithSchedules) {
  const Bytes stream = recorded_stream("dvb-eit-schedule.ts");
  if (stream.empty()) GTEST_SKIP();
  Collector demux(stream);
  EXPECT_EQ(demux.start(), 1);
  EXPECT_EQ(counts(demux.sections), (Counts{{0x00, 1},
                                            {0x02, 5},
                                            {0x40, 1},
                                            {0x42, 1},
                                            {0x4E, 10},
                                            {0x4F, 18},
                                            {0x50, 113},
                                            {0x51, 36},
                                            {0x52, 29},
                                            {0x53, 23}}));
  expect_tables(demux.sections, Standard::dvb);
}

TEST(Captures, OfASatelliteMultiplexWithBouquets) {
  const Bytes stream = recorded_stream("dvb-sat-bat.ts");
  if (stream.empty()) GTEST_SKIP();
  Collector demux(stream);
  EXPECT_EQ(demux.start(), 1);
  EXPECT_EQ(
      counts(demux.sections),
      (Counts{{0x00, 1}, {0x01, 1}, {0x02, 10}, {0x40, 1}, {0x4A, 3}, {0x4E, 1}, {0x4F, 11}, {0xE4, 4}}));
  EXPECT_EQ(demux.by_pid[0x11][0x4A].size(), 1u);
  EXPECT_EQ(demux.by_pid[0xBC9][0x4A].size(), 2u);
  expect_tables(demux.sections, Standard::dvb);
}

TEST(Captures, OfATerrestrialMultiplexWithApplications) {
  const Bytes stream = recorded_stream("dvbt-ait.ts");
  if (stream.empty()) GTEST_SKIP();
  Collector demux(stream);
  EXPECT_EQ(demux.start(), 1);
  EXPECT_EQ(counts(demux.sections),
            (Counts{{0x00, 1}, {0x02, 2}, {0x40, 1}, {0x42, 1}, {0x70, 4}, {0x73, 3}, {0x74, 3}}));
  expect_tables(demux.sections, Standard::dvb);
}

TEST(Captures, OfServicesWithNamesInOtherScripts) {
  const Bytes chain = recorded_stream("sdt-charsets-sections.bin");
  if (chain.empty()) GTEST_SKIP();
  const Sections sections = sections_of_chain(chain);
  EXPECT_EQ(counts(sections), (Counts{{0x00, 3}, {0x02, 3}, {0x42, 3}}));
  expect_tables(sections, Standard::dvb);

  std::set<std::string> names;
  for (const Bytes& section : sections.at(0x42)) {
    Sdt table;
    table.Parse(section.data(), false);
    for (const auto& service : table.get_service_infos())
      for (const auto& d : service.get_service_descriptors()) names.insert(saved(d));
  }
  EXPECT_EQ(names, (std::set<std::string>{R"(<d descriptor_id="72" descriptor_length="12" service_type="1")"
                                          R"( provider_name="DVB" service_name="P1.1" />)",
                                          R"(<d descriptor_id="72" descriptor_length="17" service_type="22")"
                                          R"( provider_name="РТРС" service_name="03 МАТЧ!" />)",
                                          R"(<d descriptor_id="72" descriptor_length="20" service_type="22")"
                                          R"( provider_name="РТРС" service_name="06 РОССИЯ-К" />)"}));
}

TEST(Captures, OfATerrestrialStationOfAtsc) {
  const Bytes stream = recorded_stream("atsc-psip.ts");
  if (stream.empty()) GTEST_SKIP();
  Collector demux(stream);
  EXPECT_EQ(demux.start(), 1);
  EXPECT_EQ(counts(demux.sections),
            (Counts{{0x00, 1}, {0x02, 3}, {0xC7, 1}, {0xC8, 1}, {0xCB, 12}, {0xCD, 1}}));
  expect_tables(demux.sections, Standard::atsc);
}

TEST(Captures, OfSectionsOfAtsc) {
  const Bytes chain = recorded_stream("atsc-sections.bin");
  if (chain.empty()) GTEST_SKIP();
  const Sections sections = sections_of_chain(chain);
  EXPECT_EQ(counts(sections),
            (Counts{{0x00, 1}, {0x02, 3}, {0xC7, 1}, {0xC8, 1}, {0xCB, 7}, {0xCC, 13}, {0xCD, 1}}));
  expect_tables(sections, Standard::atsc);
}
