// The walk: what it hands over, and in what order.

#include "tests/support/cases.h"
#include "tests/support/table_cases.h"

#include <cstdio>
#include <set>
#include <sstream>
#include <stdexcept>

#include <quillon/appsignal/ait.h>
#include <quillon/atsc/mgt.h>
#include <quillon/atsc/stt.h>
#include <quillon/descriptors/dvb_loop.h>
#include <quillon/descriptors/general.h>
#include <quillon/descriptors/mpeg2/ca.h>
#include <quillon/fields/multiple_string.h>
#include <quillon/fields/time.h>
#include <quillon/tables/eit.h>

using namespace quillon;
using namespace quillon::test;

namespace {

// A loop that belongs to no table.
class Loop : public DvbLoop {
 public:
  explicit Loop(const Bytes& bytes, DescriptorFailures* failures = nullptr) { parse(bytes, failures); }
  void parse(const Bytes& bytes, DescriptorFailures* failures = nullptr) {
    const ByteView all = view(bytes);
    parse_descriptors(all, 0, static_cast<int>(bytes.size()), {all, false, failures});
  }
};

// The tags of a loop's descriptors in the order of its walk, with the first byte of each.
class Arrivals final : public FieldSink {
 public:
  template <class Walk>
  explicit Arrivals(Walk walk) {
    walk(*this);
  }
  std::vector<int> tags;

  void number(const char* name, int64_t value, const char*) override {
    if (std::string_view(name) == "descriptor_id") tags.push_back(static_cast<int>(value));
  }
};

std::vector<int> arrivals(const DescriptorLoop& loop) {
  return Arrivals([&](FieldSink& sink) { loop._walk_descriptors(sink); }).tags;
}

Bytes loop_of(const std::vector<int>& tags) {
  Bytes out;
  for (const int tag : tags) {
    const Bytes one = descriptor(tag, {0x0B, 0x00, 0xE1, 0x00});
    out.insert(out.end(), one.begin(), one.end());
  }
  return out;
}

// The names of attributes in a document as it is printed, an element a line, with those of the elements
// around them.
std::set<std::string> attribute_paths(const std::string& document) {
  std::set<std::string> out;
  std::vector<std::string> around;
  std::istringstream lines(document);
  std::string line;
  std::getline(lines, line);
  while (std::getline(lines, line)) {
    const size_t begin = line.find('<') + 1;
    if (line[begin] == '/') {
      around.pop_back();
      continue;
    }
    const std::string element = line.substr(begin, line.find_first_of(" />", begin) - begin);
    // The root has no name in a walk.
    around.push_back(around.empty() ? "" : around.back() + element + "/");
    for (size_t end = line.find("=\""); end != std::string::npos;
         end = line.find("=\"", line.find('"', end + 2)))
      out.insert(around.back() + line.substr(line.rfind(' ', end) + 1, end - line.rfind(' ', end) - 1));
    if (line.ends_with("/>")) around.pop_back();
  }
  return out;
}

}  // namespace

TEST(Walk, HandsOverATable) {
  const Bytes section = long_section(
      0x4E, joined({bits({{16, 0x1234, "transport_stream_id"},
                          {16, 0x20FA, "original_network_id"},
                          {8, 1, "segment_last_section_number"},
                          {8, 0x4E, "last_table_id"},
                          {16, 7, "event_id"},
                          {16, 0xE3E1, "start_time: date"},
                          {24, 0x203000, "start_time: time"},
                          {24, 0x014500, "duration"},
                          {3, 4, "running_status"},
                          {1, 1, "free_CA_mode"},
                          {12, 14, "descriptors_loop_length"}}),
                    descriptor(0x4D, joined({text("deu"), {4}, text("News"), {3}, text("B\xE9\x80")}))}));
  Eit eit;
  eit.Parse(section.data(), section.size(), false);
  EXPECT_EQ(walked(eit),
            "table_id: 78 (event_information_section - actual_transport_stream, present/following)\n"
            "syntax_indicator: 1\n"
            "section_length: 41\n"
            "context_id: 4660\n"
            "version_number: 3\n"
            "section_number: 0\n"
            "last_section_number: 0\n"
            "current_next_indicator: 1\n"
            "crc32: 2793714769\n"
            "service_id: 4660\n"
            "transport_stream_id: 4660\n"
            "original_network_id: 8442\n"
            "segment_last_section_number: 1\n"
            "last_table_id: 78\n"
            "event_infos: list of 1\n"
            "  event: Eit::EventInfo\n"
            "    event_id: 7\n"
            "    running_status: 4\n"
            "    free_CA_mode: 1\n"
            "    descriptors_length: 14\n"
            "    start_time: time 7 8 2018 20 30 0\n"
            "    duration: duration 1 45 0\n"
            "    descriptors: list of 1\n"
            "      short_event_descriptor: DescriptorShortEvent\n"
            "        descriptor_id: 77 (short_event_descriptor)\n"
            "        descriptor_length: 12\n"
            "        language_code: \"deu\"\n"
            "        event_name: \"News\"\n"
            "        text: \"B\u00E9\u20AC\"\n");
}

TEST(Walk, KeepsTheOrderOfTheWire) {
  for (const std::vector<int>& tags :
       std::vector<std::vector<int>>{{},
                                     {0x52},
                                     {0x52, 0x52, 0x09, 0x09},
                                     {0x09, 0x52, 0x09},
                                     {0x52, 0x09, 0x52, 0x09, 0x52, 0x0A, 0x0A, 0x09},
                                     {0x5F, 0x83, 0x5F, 0x84, 0x13, 0x5F, 0x83, 0x01}})
    EXPECT_EQ(arrivals(Loop(loop_of(tags))), tags);
}

TEST(Walk, KeepsTheOrderOfARefusedDescriptorOverSeveralParses) {
  DescriptorFailures failures;
  Loop loop(joined({descriptor(0x55, {1}), loop_of({0x52}), descriptor(0x55, {1}), loop_of({0x09})}),
            &failures);
  ASSERT_EQ(failures.size(), 2u);
  EXPECT_EQ(arrivals(loop), (std::vector<int>{0x55, 0x52, 0x55, 0x09}));
  loop.parse(loop_of({0x52, 0x09}));
  EXPECT_EQ(arrivals(loop), (std::vector<int>{0x55, 0x52, 0x55, 0x09, 0x52, 0x09}));

  const Loop copy = loop;
  EXPECT_EQ(walked_loop(copy), walked_loop(loop));
  const std::string before = walked_loop(loop);
  const Loop moved = std::move(loop);
  EXPECT_EQ(walked_loop(moved), before);
  EXPECT_EQ(walked_loop(loop),
            "descriptors: list of 0\n");  // NOLINT(bugprone-use-after-move): moved from is empty
  loop = moved;
  EXPECT_EQ(walked_loop(loop), before);
}

TEST(Walk, KeepsTheOrderOfALoadedDocument) {
  xml::Document document;
  void* const list = document.append_element(document.create_root("d"), "descriptors");
  const auto add = [&](const char* name, const auto& descriptor) {
    descriptor.SaveSection(document.dom(), document.append_element(list, name));
  };
  const Bytes ca = descriptor(0x09, {0x0B, 0x00, 0xE1, 0x00});
  add("CA_descriptor", DescriptorCa(view(ca)));
  add("general_descriptor", DescriptorGeneral(0x03, ca.data(), 2));
  add("CA_descriptor", DescriptorCa(view(ca)));
  Loop loop{{}};
  loop._parse_descriptors(document.root());
  EXPECT_EQ(arrivals(loop), (std::vector<int>{0x09, 0x03, 0x09}));
}

TEST(Walk, ForgetsWithTheLoop) {
  // An application information table that is reset keeps all but its general descriptors.
  struct Table : Ait {
    void read(int tag) { ParseDescriptorAit(view(descriptor(tag, {1, 2, 3, 4}))); }
  };
  Table ait;
  for (const int tag : {0x5F, 0x20, 0x5F, 0x90, 0x20}) ait.read(tag);
  EXPECT_EQ(arrivals(ait), (std::vector<int>{0x5F, 0x20, 0x5F, 0x90, 0x20}));
  ait.reset();
  EXPECT_EQ(arrivals(ait), (std::vector<int>{0x5F, 0x5F, 0x90}));
  ait.read(0x20);
  ait.read(0x5F);
  EXPECT_EQ(arrivals(ait), (std::vector<int>{0x5F, 0x5F, 0x90, 0x20, 0x5F}));
}

TEST(Walk, EndsWithWhatTheSinkThrows) {
  class Full final : public FieldSink {
   public:
    void number(const char*, int64_t, const char*) override { throw std::runtime_error("full"); }
  };
  const Loop loop(loop_of({0x52}));
  Full full;
  EXPECT_THROW(loop._walk_descriptors(full), std::runtime_error);
  EXPECT_EQ(arrivals(loop), (std::vector<int>{0x52}));
}

TEST(Walk, GivesMeaningsInUtf8) {
  // The quotes of this text are those of code page 1252.
  const Bytes row = bits({{16, 0x0000, "table_type"},
                          {3, 7, "reserved"},
                          {13, 0x1FF7, "table_type_PID"},
                          {3, 7, "reserved"},
                          {5, 9, "table_type_version_number"},
                          {32, 0, "number_bytes"},
                          {4, 15, "reserved"},
                          {12, 0, "table_type_descriptors_length"}});
  int length = static_cast<int>(row.size());
  EXPECT_EQ(walked(AtscMGT::Table(view(row), length, false, nullptr)),
            "table_type: 0 (Terrestrial VCT with current_next_indicator=\u20191\u2019)\n"
            "table_type_PID: 8183\n"
            "table_type_version_number: 9\n"
            "number_bytes: 0\n"
            "table_type_descriptors_length: 0\n"
            "descriptors: list of 0\n");
}

TEST(Walk, GivesTimesOfAtscTheirMeaning) {
  AtscSTT stt;
  stt.system_time = 0;
  stt.GPS_UTC_offset = 1;
  EXPECT_NE(walked(stt).find("system_time: 0 (1980-01-05T23:59:59Z)\n"), std::string::npos);
  stt.system_time = -1;
  stt.GPS_UTC_offset = 18;
  EXPECT_NE(walked(stt).find("system_time: 4294967295 (2116-02-12T06:27:57Z)\n"), std::string::npos);
}

TEST(Walk, HandsOverTheStringsOfAtsc) {
  const Bytes bytes = joined({{1}, text("eng"), {2, 0x00, 0x00, 2}, text("Hi"), {0x01, 0xFF, 1, 0xAA}});
  ATSCMultipleStringStructure strings;
  int length = static_cast<int>(bytes.size());
  strings.parse(view(bytes), length);
  EXPECT_EQ(walked(strings),
            "number_strings: 1\n"
            "strings: list of 1\n"
            "  string: ATSCMultipleStringStructure::String\n"
            "    ISO_639_language_code: \"eng\"\n"
            "    number_segments: 2\n"
            "    segments: list of 2\n"
            "      segment: ATSCMultipleStringStructure::String::Segment\n"
            "        compression_type: 0 (No compression)\n"
            "        mode: 0 (Select Unicode Code Range 0x0000 \u2013 0x00FF)\n"
            "        number_bytes: 2\n"
            "        compressed_string_bytes: 48 69\n"
            "        decoded_text: \"Hi\"\n"
            "      segment: ATSCMultipleStringStructure::String::Segment\n"
            "        compression_type: 1 (Huffman coding using standard encode/decode tables defined in "
            "Table C.4 and C.5 in Annex C.)\n"
            "        mode: 255 (Not applicable)\n"
            "        number_bytes: 1\n"
            "        compressed_string_bytes: aa\n"
            "        decoded_text: \"\"\n");
}

// What a document or a report shows of a descriptor, its walk shows too.
TEST(Walk, LacksNothingThatTheOtherFacesHave) {
  for (const DescriptorCase& c : Cases::all()) {
    SCOPED_TRACE(c.name);
    const auto walk_of = [&c](const Bytes& bytes) {
      WalkText text;
      c.walk_to(view(bytes), text);
      return text.take();
    };
    const std::string walk = walk_of(c.bytes);
    for (size_t bit = 16; bit < c.bytes.size() * 8; ++bit) {
      Bytes flipped = c.bytes;
      flipped[bit / 8] ^= static_cast<uint8_t>(0x80 >> bit % 8);
      if (failure([&] { walk_of(flipped); }) != "nothing" || walk_of(flipped) != walk) continue;
      EXPECT_EQ(c.saved_of(view(flipped)), c.xml) << "bit " << bit;
      EXPECT_EQ(c.report_of(view(flipped)), c.report) << "bit " << bit;
    }
  }
}

// The bits of each case that its walk does not show: reserved ones, and those that the class does not keep.
// Whole bytes by their place, with the bits of others: "4..9" or "2&0f".
TEST(Walk, LacksTheseBitsOfTheWireAlone) {
  std::set<std::string> lacking;
  for (const DescriptorCase& c : Cases::all()) {
    const auto walk_of = [&c](const Bytes& bytes) {
      WalkText text;
      c.walk_to(view(bytes), text);
      return text.take();
    };
    const std::string walk = walk_of(c.bytes);
    std::string bits;
    for (size_t i = 2; i < c.bytes.size(); ++i) {
      int unseen = 0;
      for (int bit = 1; bit < 256; bit *= 2) {
        Bytes flipped = c.bytes;
        flipped[i] ^= static_cast<uint8_t>(bit);
        if (failure([&] { walk_of(flipped); }) == "nothing" && walk_of(flipped) == walk) unseen |= bit;
      }
      char mask[8];
      std::snprintf(mask, sizeof mask, "&%02x", static_cast<unsigned>(unseen));
      const std::string before = ".." + std::to_string(i - 1);
      if (unseen == 0xFF && bits.ends_with(before))
        bits.replace(bits.size() - before.size(), before.size(), ".." + std::to_string(i));
      else if (unseen == 0xFF)
        bits += " " + std::to_string(i) + ".." + std::to_string(i);
      else if (unseen)
        bits += " " + std::to_string(i) + mask;
    }
    if (!bits.empty()) lacking.insert(c.name + ":" + bits + "\n");
  }
  std::string all;
  for (const std::string& line : lacking) all += line;
  EXPECT_EQ(all,
            "DescriptorAAC: 3..3\n"
            "DescriptorAC3, flags clear: 2&0f\n"
            "DescriptorAC3: 2&0f\n"
            "DescriptorAitApplication, empty: 3&1f\n"
            "DescriptorAitApplication: 13&1f\n"
            "DescriptorAitDIILocation: 4..9\n"
            "DescriptorAitRoutingIPv6: 36..36\n"
            "DescriptorAitTransportProtocol, a third protocol: 5..12\n"
            "DescriptorAitTransportProtocol, local IP: 5&7f 6..11 12&7f\n"
            "DescriptorAitTransportProtocol, local carousel: 5&7f\n"
            "DescriptorAitTransportProtocol, remote IP: 5&7f 12&7f 13..16\n"
            "DescriptorAitTransportProtocol, remote carousel: 5&7f\n"
            "DescriptorAnnouncementSupport: 4&08 5&08 13&08\n"
            "DescriptorApplicationSignalling: 4&e0 7&e0\n"
            "DescriptorAtscAC3Audio, wide text: 11..11 12&3f\n"
            "DescriptorAtscAC3Audio: 7&07 12&3f\n"
            "DescriptorAtscATSCPrivateInformation: 2..8\n"
            "DescriptorAtscCaptionService: 2&e0 6&40 7&3f 8..8 12&41 13&3f 14..14\n"
            "DescriptorAtscContentAdvisory: 2&c0 6&f0 8&f0\n"
            "DescriptorAtscContentIdentifier: 2..10\n"
            "DescriptorAtscGenre: 2&e0\n"
            "DescriptorAtscServiceLocation: 2&e0 6&e0 9..10 12&e0\n"
            "DescriptorAtscTimeShiftedService: 3&fc 5&f0 8&fc 10&f0\n"
            "DescriptorAudioStream: 2&07\n"
            "DescriptorCa without private data: 4&e0\n"
            "DescriptorCa: 4&e0\n"
            "DescriptorCableDeliverySystem: 5&0f 6..6 7&f0\n"
            "DescriptorComponent: 2&f0 12..13\n"
            "DescriptorCountryAvailability: 2&7f\n"
            "DescriptorDataBroadcastId: 9&c0 14&c0\n"
            "DescriptorECMRepetitionRate: 7..8\n"
            "DescriptorExtendedEvent, without items: 7&f3\n"
            "DescriptorExtendedEvent: 29&f3\n"
            "DescriptorFrequencyList, of which a load makes twice as many: 2&fc\n"
            "DescriptorHierarchy: 2&f0 3&c0 4&c0 5&c0\n"
            "DescriptorISO639Language with odd characters: 8..8\n"
            "DescriptorIntTargetMACAddress: 2..19\n"
            "DescriptorIntTargetMACAddressRange: 2..25\n"
            "DescriptorLinkage with a hand-over: 9&0e\n"
            "DescriptorLocalTimeOffset: 5&3e 18&3e\n"
            "DescriptorMaximumBitrate: 2&c0\n"
            "DescriptorMosiac: 2&08 3&03 4&f8 6&c0 7&c0 8&c0 12&03 13&f8 22&03 23&f8 25&c0 33&03 34&f8\n"
            "DescriptorMultiplexBufferUtilization: 4&80\n"
            "DescriptorPDC: 2&f0\n"
            "DescriptorPartialTransportStream: 2..9\n"
            "DescriptorS2SatelliteDeliverySystem: 2&3f 3&fc\n"
            "DescriptorSTD: 2&fe\n"
            "DescriptorSatelliteDeliverySystem: 5&0f\n"
            "DescriptorService, without names: 3..4\n"
            "DescriptorService: 12&fa\n"
            "DescriptorServiceAvailability: 2&7f\n"
            "DescriptorServiceIdentifier: 2..16\n"
            "DescriptorShortEvent, without texts: 5..6\n"
            "DescriptorShortEvent: 11&f5\n"
            "DescriptorSmoothingBuffer: 2&c0 5&c0\n"
            "DescriptorSystemClock: 2&40 3&1f\n"
            "DescriptorTVAId: 4&f8 7&f8\n"
            "DescriptorTelephone: 2&c0 3&04 4&80\n"
            "DescriptorTerrestrialDeliverySystem: 6&03 9..12\n"
            "DescriptorTimeSliceFecIdentifier: 2&18 6..6\n");
}

// In an object that holds it, it is one field.
TEST(Walk, OfATimeByItselfHasItsParts) {
  EXPECT_EQ(walked(Duration(Bytes{0x01, 0x30, 0x59}.data())), "hour: 1\nminute: 30\nsecond: 59\n");
  EXPECT_EQ(walked(TimeOffset(Bytes{0x12, 0x45}.data())), "hour: 12\nminute: 45\n");
}

TEST(Walk, OfATableHasEachFieldOfItsDocument) {
  for (const TableCase& c : TableCases::all()) {
    SCOPED_TRACE(c.name);
    const auto table = c.make();
    table->Parse(c.section.data(), c.section.size(), false);
    WalkText text;
    table->walk(text);
    text.take();
    for (const std::string& path : attribute_paths(document_of(c)))
      EXPECT_TRUE(text.paths().contains(path)) << path;
  }
}
