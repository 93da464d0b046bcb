#pragma once

// What the tests of all ATSC tables do with sections and rows.

#include "tests/support/bytes.h"
#include "tests/support/faces.h"

#include <gtest/gtest.h>
#include <set>
#include <string>
#include <type_traits>
#include <vector>

#include <quillon/sections/byte_view.h>

namespace quillon::test {

template <class T>
T parsed(const Bytes& section, bool keep_raw = false) {
  T out;
  out.Parse(section.data(), section.size(), keep_raw);
  return out;
}

template <class T>
std::string failure_of(const Bytes& section) {
  return failure([&] { parsed<T>(section); });
}

// The section with another section_length, from 4 on: cut, or filled up with zeros, its CRC made right.
inline Bytes with_length(Bytes section, int length) {
  section[1] = static_cast<uint8_t>((section[1] & 0xF0) | length >> 8);
  section[2] = static_cast<uint8_t>(length);
  section.resize(section.size() - 4);
  section.resize(static_cast<size_t>(length) + 3);
  section.shrink_to_fit();
  repair_crc(section);
  return section;
}

// A row and the bytes that it says it used, of `length` that it is offered (all, if below 0).
template <class Row>
struct Read {
  explicit Read(const Bytes& bytes, int length = -1)
      : used(length < 0 ? static_cast<int>(bytes.size()) : length), row(view(bytes), used, false, nullptr) {}

  int used;
  Row row;
};

// What a row throws for bytes. A length that it would write back is then as it was.
template <class Row>
std::string row_refusal(const Bytes& bytes, int length = -1) {
  const int offered = length < 0 ? static_cast<int>(bytes.size()) : length;
  int used = offered;
  const std::string out = failure([&] { Row(view(bytes), used, false, nullptr); });
  if (out != "nothing") {
    EXPECT_EQ(used, offered);
  }
  return out;
}

// Where a number of a row is: `width` bits from bit 7 - `first` % 8 of byte `first` / 8 on.
template <class Row>
struct Place {
  int Row::*member;
  int first;
  int width;
};

// Sets every bit of the first `size` bytes of a row, alone among zeros, but for those of the bytes in
// `left_out`: each is part of the numbers that are there, and of no other.
template <class Row>
void expect_places(int size, const std::vector<Place<Row>>& places, const std::set<int>& left_out) {
  for (int bit = 0; bit < size * 8; ++bit) {
    if (left_out.count(bit / 8)) continue;
    Bytes bytes(4200);  // zeros are descriptors of two bytes
    bytes[static_cast<size_t>(bit / 8)] = static_cast<uint8_t>(0x80 >> bit % 8);
    const Row row = Read<Row>(bytes).row;
    for (const Place<Row>& place : places) {
      const int below = place.first + place.width - 1 - bit;
      const bool inside = bit >= place.first && below >= 0;
      EXPECT_EQ(row.*place.member, inside ? static_cast<int>(1u << below) : 0)
          << "bit " << bit << ", number at bit " << place.first;
    }
  }
}

// A text function from -1 to 256, by the last value of each range.
struct Until {
  int last;
  const char* text;
};
inline void expect_ranges(const char* (*text)(int), const std::vector<Until>& ranges, int from = -1,
                          int to = 256) {
  for (int code = from; code <= to; ++code) {
    const char* expected = "";
    for (const Until& range : ranges)
      if (code >= 0 && code <= range.last) {
        expected = range.text;
        break;
      }
    ASSERT_STREQ(text(code), expected) << code;
  }
}

// Uses all faces of a table, whatever the section makes of it.
template <class T>
std::string exercised(const Bytes& section) {
  T table;
  const std::string out = failure([&] { table.Parse(section.data(), section.size(), true); });
  report(table);
  saved(table);
  T copy = table;
  copy.reset();
  copy = std::move(table);
  return out;
}

// A section that is cut or filled up to any length, or damaged in any byte, its CRC made right, gives one of
// these failures or none, and a table that can be used.
template <class T>
void expect_bounded(const Bytes& section, std::set<std::string> failures) {
  failures.insert({"nothing", "2: ", "-1: invalid table id"});
  std::vector<int> lengths = {4093, 4094, 4095};
  for (int length = 4; length <= static_cast<int>(section.size()) + 8; ++length) lengths.push_back(length);
  for (const int length : lengths) {
    const std::string what = exercised<T>(with_length(section, length));
    EXPECT_EQ(failures.count(what), 1u) << "length " << length << ": " << what;
  }
  for (size_t at = 0; at + 4 < section.size(); ++at) {
    if (at == 1 || at == 2) continue;  // section_length
    for (const int value : {0x00, 0x01, 0x7F, 0x80, 0xFF, section[at] ^ 1, section[at] + 1}) {
      Bytes damaged = section;
      damaged[at] = static_cast<uint8_t>(value);
      repair_crc(damaged);
      damaged.shrink_to_fit();
      const std::string what = exercised<T>(damaged);
      EXPECT_EQ(failures.count(what), 1u) << "byte " << at << ", " << value << ": " << what;
    }
  }
}

// What the header predicates accept: the table id, the reserved bits.
template <class T>
void expect_header(int table_id, const Bytes& body, bool any_reserved_bits) {
  for (int id = 0; id < 256; ++id)
    EXPECT_EQ(failure_of<T>(long_section(id, body)), id == table_id ? "nothing" : "-1: invalid table id")
        << id;
  for (int reserved = 0; reserved < 4; ++reserved)
    EXPECT_EQ(failure_of<T>(long_section(table_id, body, {.reserved = reserved})),
              any_reserved_bits || reserved == 3 ? "nothing" : "2: ")
        << reserved;
  EXPECT_EQ(failure_of<T>(long_section(table_id, body, {.syntax_indicator = 0})), "2: ");
  Bytes bad = long_section(table_id, body);
  bad.back() ^= 1;
  EXPECT_EQ(failure_of<T>(bad), "-1: crc error");
  EXPECT_EQ(failure_of<T>({static_cast<uint8_t>(table_id), 0xB0, 0}), "-1: crc error");  // section_length 0
}

// A document of a header alone, as a save writes it, with something in it.
inline std::string header_document(int table_id, const std::string& inside) {
  return "<d table_id=\"" + std::to_string(table_id) +
         "\" syntax_indicator=\"1\" section_length=\"9\" context_id=\"7\" version_number=\"3\""
         " section_number=\"1\" last_section_number=\"2\" current_next_indicator=\"1\" crc32=\"-2\">" +
         inside + "</d>";
}

// A load reads the header and the descriptors, if they are there; a save writes the header, which loads.
template <class T>
void expect_descriptors_loaded(int table_id) {
  const auto table = loaded_table<T>(header_document(
      table_id,
      R"(<descriptors><atsc_genre_descriptor descriptor_id="171" descriptor_length="1"/></descriptors>)"));
  EXPECT_TRUE(table.is_parsed());
  EXPECT_EQ(table.get_table_id(), table_id);
  EXPECT_EQ(table.get_crc32(), 0xFFFFFFFEu);
  EXPECT_EQ(table.get_atsc_genre_descriptor().size(), 1u);
  const std::string header = header_document(table_id, "");
  const std::string xml = header.substr(0, header.size() - 5) + " />";
  EXPECT_EQ(saved(table), xml);
  EXPECT_EQ(saved(loaded_table<T>(xml)), xml);
}

}  // namespace quillon::test
