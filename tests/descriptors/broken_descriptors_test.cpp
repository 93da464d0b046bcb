// Descriptors that their class refuses, in a strict table and in a tolerant one.

#include "tests/descriptors/dvb_loops.h"

#include <algorithm>

#include <quillon/tables/cat.h>

using namespace quillon;
using namespace quillon::test;

namespace {

// A body that its class refuses, and what the class says.
struct Broken {
  int tag;
  Bytes body;
  std::string text;
  int code = -1;
};

const std::vector<Broken>& broken() {
  static const std::vector<Broken> all = {
      {0x0A, Bytes(5), "descriptor length mismatch"},
      {0x14, {0, 0, 0, 0, 4, 0, 0, 0, 0}, "association_tag_descriptor:selector_length", 3},
      {0x14, {0, 0, 0, 1, 2, 0, 0}, "association_tag_descriptor:selector_length", 3},
      {0x41, Bytes(4), "descriptor length mismatch"},
      {0x45, {1, 2, 0}, "", 2},
      {0x46, Bytes(4), "", 0},
      {0x49, {}, "country_availability_descriptor", 3},
      {0x49, Bytes(3), "country_availability_descriptor", 3},
      {0x4A, {0, 0, 0, 0, 0, 0, 11, 1}, "DescriptorLinkage: invalid platform_id_data_length length"},
      {0x4A, {0, 0, 0, 0, 0, 0, 11, 5, 0, 0, 1, 0, 0}, "DescriptorLinkage: descriptor start end mismatch"},
      {0x4A, {0, 0, 0, 0, 0, 0, 11, 6, 0, 0, 1, 2, 0, 0}, "PlatformIDInfo: descriptor start end mismatch"},
      {0x4B, {0}, "NVOD_reference_descriptor", 3},
      {0x4E, {0, 'a', 'b', 'c', 2, 1, 0, 0}, "data length mismatch"},
      {0x51, {}, "mosiac_descriptor", 3},
      {0x51, {0, 0, 0, 0, 0}, "", 2},
      {0x54, {0}, "descriptor length mismatch"},
      {0x55, Bytes(5), "parental_rating_descriptor", 3},
      {0x56, Bytes(4), "descriptor length mismatch"},
      {0x58, Bytes(12), "descriptor start end mismatch"},
      {0x59, Bytes(9), "subtitling_descriptor", 3},
      {0x5B, Bytes(3), "multilingual_name_info_descriptor", 3},
      {0x5B, {'a', 'b', 'c', 1}, "multilingual_name_info_descriptor:2", 3},
      {0x5C, Bytes(3), "multilingual_name_info_descriptor", 3},
      {0x5C, {'a', 'b', 'c', 1}, "multilingual_name_info_descriptor:2", 3},
      {0x5D, Bytes(4), "multilingual_service_name_info_descriptor", 3},
      {0x5D, {'a', 'b', 'c', 1, 0}, "multilingual_service_name_info_descriptor:2", 3},
      {0x5D, {'a', 'b', 'c', 0, 2}, "multilingual_service_name_info_descriptor:3", 3},
      {0x5D, {'a', 'b', 'c', 0, 1}, "", 2},
      {0x5E, {}, "", 2},
      {0x5E, Bytes(4), "multilingual_name_info_descriptor", 3},
      {0x62, Bytes(6), "", 0},
      {0x66, {0, 11, 7}, "invalid length"},
      {0x6C, {0, 0, 0, 0, 0, 0, 0, 0, 0, 4}, "", 0},
      {0x6C, Bytes(9), "", 2},
      {0x6D, {0, 0, 0, 0, 0, 0, 4}, "", 0},
      {0x6D, Bytes(6), "", 2},
      {0x6E, {0}, "", 2},
      {0x6F, Bytes(4), ""},
      {0x72, {}, "", 0},
      {0x72, Bytes(2), "", 0},
      {0x75, Bytes(4), "invalid descriptor size"},
      {0x76, {0, 1}, "descriptor start end mismatch"},
      {0x77, Bytes(2), "descriptor length to small"},
      {0x78, Bytes(3), "descriptor length to small"},
  };
  return all;
}

// What follows a broken descriptor: one without a class, whose zeros harm nobody who reads on into it.
const Bytes kBehind = descriptor(0x00, Bytes(40));

}  // namespace

TEST(BrokenDescriptors, FailAStrictTable) {
  for (const Broken& b : broken())
    for (const Owner& o : owners()) {
      SCOPED_TRACE(std::string(o.name) + ", tag " + std::to_string(b.tag) + ": " + b.text);
      const Bytes section = o.section(joined({descriptor(0x42, {}), descriptor(b.tag, b.body), kBehind}));
      EXPECT_EQ(failure([&] { o.loop(section, nullptr); }), std::to_string(b.code) + ": " + b.text);
    }
}

TEST(BrokenDescriptors, AreKeptAsBytesInATolerantTable) {
  for (const Broken& b : broken())
    for (const Owner& o : owners()) {
      SCOPED_TRACE(std::string(o.name) + ", tag " + std::to_string(b.tag) + ": " + b.text);
      const Bytes descriptors = joined({descriptor(0x42, {}), descriptor(b.tag, b.body), kBehind});
      DescriptorFailures failures;
      const DvbLoop loop = o.loop(o.section(descriptors), &failures);
      ASSERT_EQ(failures.size(), 1u);
      EXPECT_EQ(failures[0].tag, b.tag);
      EXPECT_EQ(failures[0].offset, o.place + 2);
      EXPECT_EQ(failures[0].text, b.text);
      EXPECT_EQ(failures[0].code, b.code);

      EXPECT_EQ(loop.get_stuffing_descriptors().size(), 1u);
      ASSERT_EQ(loop.get_general_descriptors().size(), 2u);
      const DescriptorGeneral& kept = loop.get_general_descriptors()[0];
      EXPECT_EQ(kept.get_descriptor_tag(), b.tag);
      EXPECT_EQ(kept.get_descriptor_length(), static_cast<int>(b.body.size()));
      EXPECT_EQ(kept.get_private_data(), b.body);
      EXPECT_EQ(saved_names(loop), (std::vector<std::string>{"stuffing_descriptor", "general_descriptor",
                                                             "general_descriptor"}));
    }
}

TEST(BrokenDescriptors, AreOfNoOtherClass) {
  for (int tag = 0; tag < 256; ++tag) {
    if (std::any_of(broken().begin(), broken().end(), [tag](const Broken& b) { return b.tag == tag; }))
      continue;
    for (size_t length = 0; length <= 255; length += length < 40 ? 1 : 43)
      for (const int fill : {0x00, 0x01, 0x0B, 0x80, 0xFF, -1}) {
        Bytes body(length, static_cast<uint8_t>(fill));
        if (fill < 0)
          for (size_t i = 0; i < length; ++i) body[i] = static_cast<uint8_t>(i * 37);
        EXPECT_EQ(failure([&] { loop_of(descriptor(tag, body)); }), "nothing") << tag << " " << length;
      }
  }
}

TEST(BrokenDescriptors, AreAllToldByATolerantTable) {
  const Bytes bad = descriptor(0x62, Bytes(6));
  const Bytes good = descriptor(0x42, {});
  const Bytes row_of_two = joined({Bytes(4), loop(joined({good, bad}))});
  const Bytes section =
      long_section(0x40, joined({loop(joined({bad, good, bad})), loop(joined({row_of_two, row_of_two}))}));
  Nit table;
  table.set_tolerant(true);
  EXPECT_EQ(failure_of_parse(section, table), "nothing");
  ASSERT_EQ(table.get_descriptor_failures().size(), 4u);
  std::vector<int> offsets;
  for (const DescriptorFailure& f : table.get_descriptor_failures()) {
    EXPECT_EQ(f.tag, 0x62);
    EXPECT_EQ(f.code, 0);
    EXPECT_EQ(f.text, "");
    EXPECT_EQ(section[8 + static_cast<size_t>(f.offset)], 0x62);
    offsets.push_back(f.offset);
  }
  EXPECT_EQ(offsets, (std::vector<int>{2, 12, 30, 46}));
  EXPECT_EQ(table.get_general_descriptors().size(), 2u);
  EXPECT_EQ(table.get_stream_infos().at(1).get_general_descriptors().size(), 1u);

  // They are added up until the table is reset, which leaves it tolerant.
  table.Parse(section.data(), false);
  EXPECT_EQ(table.get_descriptor_failures().size(), 8u);
  table.reset();
  EXPECT_TRUE(table.get_descriptor_failures().empty());
  EXPECT_EQ(failure_of_parse(section, table), "nothing");
  EXPECT_EQ(table.get_descriptor_failures().size(), 4u);

  table.set_tolerant(false);
  EXPECT_EQ(failure_of_parse(section, table), "0: ");
}

TEST(BrokenDescriptors, AreAllThatATolerantTableTolerates) {
  PmtDVB table;
  table.set_tolerant(true);
  const Bytes rows_overrun = joined({{0xE1, 0}, loop(descriptor_claiming(0x62, 7, Bytes(5)))});
  EXPECT_EQ(failure_of_parse(long_section(0x02, rows_overrun), table), "-1: descriptor start end mismatch");
  EXPECT_EQ(table.get_descriptor_failures().size(), 1u);

  Cat cat;
  cat.set_tolerant(true);
  EXPECT_EQ(failure_of_parse(long_section(0x01, descriptor(0x42, {})), cat), "-1: invalid descriptor tag");
  EXPECT_TRUE(cat.get_descriptor_failures().empty());
}
