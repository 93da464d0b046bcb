// Each length field of each table at lengths that are not its own, with a right CRC.

#include "tests/support/table_cases.h"
#include "tests/tables/tables.h"

#include <algorithm>
#include <array>

#include <quillon/descriptors/dvb_classes.h>
#include <quillon/sections/pat.h>
#include <quillon/tables/bat.h>
#include <quillon/tables/cat.h>
#include <quillon/tables/eit.h>
#include <quillon/tables/nit.h>
#include <quillon/tables/pmt.h>
#include <quillon/tables/rst.h>
#include <quillon/tables/sdt.h>
#include <quillon/tables/tdt.h>
#include <quillon/tables/tot.h>

using namespace quillon;
using namespace quillon::test;

namespace {

const char* const kGood = "nothing";
const char* const kCrc = "-1: crc error";  // no CRC is right in three bytes
const char* const kMismatch = "-1: descriptor start end mismatch";
const char* const kTooLittle = "-1: too little data";
const char* const kSize = "-1: invalid descriptor size";
const char* const kTag = "-1: invalid descriptor tag";
const char* const kPat = "3: Pat parse error";
const char* const kBit = "2: ";

struct LengthField {
  const char* name;
  size_t at;  // its first byte
  int width;  // 12: the low half of that byte, and the next
  // What a parse says to 0, one less, one more, and the largest value.
  std::array<const char*, 4> outcomes;

  int of(const Bytes& section) const {
    return width == 8 ? section[at] : (section[at] & 0x0F) << 8 | section[at + 1];
  }
  int largest() const { return (1 << width) - 1; }
};

struct Lengths {
  TableCase table;
  std::vector<LengthField> fields;
};

// Parses a section whose memory ends where it does, and shows all faces of what came of it.
std::string outcome(const TableCase& table, const Bytes& section) {
  const Outcome out = outcome_of(table, section, false);
  EXPECT_EQ(out.parsed, out.good());
  EXPECT_EQ(reloaded(table, out.saved).failure, kGood);
  return out.failure;
}

// The section with another value in a length field. With another section_length it has as many bytes.
Bytes changed(const TableCase& table, const LengthField& field, int value) {
  Bytes section = table.section;
  section[field.at] =
      static_cast<uint8_t>(field.width == 8 ? value : (section[field.at] & 0xF0) | value >> 8);
  if (field.width != 8) section[field.at + 1] = static_cast<uint8_t>(value);
  const size_t crc_size = table.has_crc ? 4 : 0;
  if (field.at == 1) {
    const size_t size = static_cast<size_t>(value) + 3;
    section.resize(section.size() - crc_size);
    section.resize(std::max<size_t>(3, size - std::min(size, crc_size)));
    section.resize(size);
  }
  if (table.has_crc && section.size() >= 7) repair_crc(section);
  return section;
}

const Bytes kPrivate = descriptor(0x80, {1, 2});

// Of the types that the cases could have, those with which no CRC is read as a descriptor that its class
// refuses.
Bytes stream(int type) {
  return joined({{static_cast<uint8_t>(type), 0xE0, 0x21}, loop(kPrivate)});
}
const Bytes kTransportStream = joined({{0, 1, 0, 2}, loop(kPrivate)});
const Bytes kService = joined({{0, 1, 0xFC}, loop(kPrivate)});
const Bytes kEvent = joined({{0, 1, 0xC9, 0x58, 0x12, 0, 0, 1, 0, 0}, loop(kPrivate)});
const Bytes kTwoStreams = joined({loop(kPrivate), loop(joined({kTransportStream, kTransportStream}))});

const std::vector<Lengths> kLengths = {
    {table_case<Pat>("Pat", "pat", long_section(0x00, {0, 1, 0xE1, 0})),
     {{"section_length", 1, 12, {kCrc, kPat, kPat, kPat}}}},
    {table_case<Cat>("Cat", "cat", long_section(0x01, descriptor(0x09, {0, 1, 0xE0, 1}))),
     {{"section_length", 1, 12, {kCrc, kSize, kSize, kTag}},
      {"descriptor_length", 9, 8, {kTag, kSize, kSize, kSize}}}},
    {table_case<PmtDVB>("PmtDVB", "pmt",
                        long_section(0x02, joined({{0xE1, 0}, loop(kPrivate), stream(0x1B), stream(0x02)}))),
     {{"section_length", 1, 12, {kCrc, kMismatch, kTooLittle, kGood}},
      {"program_info_length", 10, 12, {kMismatch, kMismatch, kMismatch, kMismatch}},
      {"descriptor_length of the program", 13, 8, {kMismatch, kMismatch, kMismatch, kMismatch}},
      {"ES_info_length of the first row", 19, 12, {kMismatch, kMismatch, kMismatch, kMismatch}},
      {"descriptor_length of the first row", 22, 8, {kGood, kGood, kGood, kGood}},
      {"ES_info_length of the last row", 28, 12, {kTooLittle, kTooLittle, kMismatch, kMismatch}}}},
    {table_case<Nit>("Nit", "nit", long_section(0x40, kTwoStreams)),
     {{"section_length", 1, 12, {kCrc, kGood, kGood, kGood}},
      {"network_descriptors_length", 8, 12, {kTooLittle, kMismatch, kMismatch, kGood}},
      {"descriptor_length of the network", 11, 8, {kGood, kGood, kGood, kGood}},
      {"transport_stream_loop_length", 14, 12, {kGood, kMismatch, kMismatch, kMismatch}},
      {"transport_descriptors_length of the first row", 20, 12, {kMismatch, kMismatch, kMismatch, kMismatch}},
      {"descriptor_length of the first row", 23, 8, {kGood, kGood, kGood, kGood}},
      {"transport_descriptors_length of the last row",
       30,
       12,
       {kMismatch, kMismatch, kMismatch, kMismatch}}}},
    {table_case<Bat>("Bat", "bat", long_section(0x4A, kTwoStreams)),
     {{"section_length", 1, 12, {kCrc, kGood, kGood, kGood}},
      {"bouquet_descriptors_length", 8, 12, {kTooLittle, kMismatch, kMismatch, kGood}},
      {"descriptor_length of the bouquet", 11, 8, {kGood, kGood, kGood, kGood}},
      {"transport_stream_loop_length", 14, 12, {kGood, kMismatch, kTooLittle, kMismatch}},
      {"transport_descriptors_length of the first row", 20, 12, {kMismatch, kMismatch, kMismatch, kMismatch}},
      {"descriptor_length of the first row", 23, 8, {kGood, kGood, kGood, kGood}},
      {"transport_descriptors_length of the last row",
       30,
       12,
       {kTooLittle, kTooLittle, kMismatch, kMismatch}}}},
    {table_case<Sdt>("Sdt", "sdt", long_section(0x42, joined({{0, 1, 0xFF}, kService, kService}))),
     {{"section_length", 1, 12, {kCrc, kMismatch, kTooLittle, kGood}},
      {"descriptors_loop_length of the first row", 14, 12, {kMismatch, kMismatch, kMismatch, kMismatch}},
      {"descriptor_length of the first row", 17, 8, {kGood, kGood, kGood, kGood}},
      {"descriptors_loop_length of the last row", 23, 12, {kTooLittle, kTooLittle, kMismatch, kMismatch}}}},
    {table_case<Eit>("Eit", "eit", long_section(0x4E, joined({Bytes(6), kEvent, kEvent}))),
     {{"section_length", 1, 12, {kCrc, kMismatch, kMismatch, kMismatch}},
      {"descriptors_loop_length of the first row", 24, 12, {kMismatch, kMismatch, kMismatch, kMismatch}},
      {"descriptor_length of the first row", 27, 8, {kGood, kGood, kGood, kGood}},
      {"descriptors_loop_length of the last row", 40, 12, {kMismatch, kMismatch, kMismatch, kMismatch}}}},
    {table_case<Tdt>("Tdt", "tdt", short_section(0x70, Bytes(5))),
     {{"section_length", 1, 12, {kGood, kGood, kGood, kBit}}}},
    {table_case<Tot>("Tot", "tot", short_section(0x73, joined({Bytes(5), loop(kPrivate), {1, 2, 3, 4}}))),
     {{"section_length", 1, 12, {kGood, kGood, kGood, kBit}},
      {"descriptors_loop_length", 8, 12, {kGood, kMismatch, kMismatch, kMismatch}},
      {"descriptor_length", 11, 8, {kMismatch, kMismatch, kMismatch, kMismatch}}}},
    {table_case<Rst>("Rst", "rst", short_section(0x71, Bytes(9))),
     {{"section_length", 1, 12, {kGood, kMismatch, kMismatch, kBit}}}},
};

}  // namespace

TEST(TableLengths, HaveTheirOutcomes) {
  for (const auto& [table, fields] : kLengths) {
    EXPECT_EQ(outcome(table, table.section), kGood) << table.name;
    for (const LengthField& field : fields) {
      const int right = field.of(table.section);
      const int values[] = {0, right - 1, right + 1, field.largest()};
      for (size_t i = 0; i < 4; ++i)
        EXPECT_EQ(outcome(table, changed(table, field, values[i])), field.outcomes[i])
            << table.name << ": " << field.name << " " << values[i];
    }
  }
}

TEST(TableLengths, MayHaveAnyValue) {
  for (const auto& [table, fields] : kLengths)
    for (const LengthField& field : fields)
      for (int value = 0; value <= field.largest(); value += value < 80 ? 1 : 89) {
        const std::string text = outcome(table, changed(table, field, value));
        const bool too_short_for_a_crc = table.has_crc && field.at == 1 && value < 4;
        EXPECT_EQ(text == kCrc, too_short_for_a_crc)
            << table.name << ": " << field.name << " " << value << ": " << text;
      }
}
