#pragma once

// What the tests of the tables share.

#include "tests/support/bytes.h"
#include "tests/support/faces.h"
#include "tests/support/faulty_dom.h"

#include <string>
#include <vector>

namespace quillon::test {

// Four reserved bits, a length of 12 bits, and what has that length, unless it claims another.
inline Bytes loop(const Bytes& content, int claimed = -1) {
  const size_t length = claimed < 0 ? content.size() : static_cast<size_t>(claimed);
  return joined({bits({{4, 15, "reserved"}, {12, length, "length"}}), content});
}

// A transport stream of a network or bouquet; its loop claims other bytes than it has if that is given.
inline Bytes stream_row(int transport_stream_id, int network_id, const Bytes& descriptors, int claimed = -1) {
  return joined({bits({{16, static_cast<uint64_t>(transport_stream_id), "transport_stream_id"},
                       {16, static_cast<uint64_t>(network_id), "original_network_id"}}),
                 loop(descriptors, claimed)});
}

template <class T>
T parsed_table(const Bytes& section, bool keep_raw = false) {
  T out;
  out.Parse(section.data(), section.size(), keep_raw);
  return out;
}

// What a table says to a section; the object, with what it has read until then, goes to `table`.
template <class T>
std::string failure_of_parse(const Bytes& section, T& table, bool keep_raw = false) {
  return failure([&] { table.Parse(section.data(), section.size(), keep_raw); });
}
template <class T>
std::string failure_of_parse(const Bytes& section) {
  T table;
  return failure_of_parse(section, table);
}

// A section with its report and its document: the bytes give both, and so does the document.
template <class T>
void expect_faces(const Bytes& section, const std::string& expected_report, const std::string& xml) {
  const std::string name = xml.substr(1, xml.find(' ') - 1);
  const T wire = parsed_table<T>(section);
  EXPECT_TRUE(wire.is_parsed());
  EXPECT_EQ(report(wire), expected_report);
  EXPECT_EQ(saved(wire, name.c_str()), xml);
  const T loaded = loaded_table<T>(xml);
  EXPECT_TRUE(loaded.is_parsed());
  EXPECT_EQ(report(loaded), expected_report);
  EXPECT_EQ(saved(loaded, name.c_str()), xml);
}

// The header's four bits after the table id: the first must be set, the others may be anything.
template <class T>
void expect_syntax_indicator_and_any_reserved_bits(int table_id, const Bytes& body) {
  Header header;
  header.syntax_indicator = 0;
  EXPECT_EQ(failure_of_parse<T>(long_section(table_id, body, header)), "2: ");
  for (int bits = 0; bits < 8; ++bits) {
    header = {};
    header.reserved = bits & 3;
    header.private_bit = bits >> 2;
    EXPECT_EQ(failure_of_parse<T>(long_section(table_id, body, header)), "nothing");
  }
}

// The table ids under which a section, its CRC made right, is not refused for its table id.
template <class T>
std::vector<int> table_ids(Bytes section) {
  std::vector<int> out;
  for (int id = 0; id < 256; ++id) {
    section[0] = static_cast<uint8_t>(id);
    repair_crc(section);
    T table;
    const std::string text = failure_of_parse(section, table);
    EXPECT_EQ(table.get_table_id(), id);
    if (text != "-1: invalid table id") out.push_back(id);
  }
  return out;
}

// A document is refused without any one of its attributes. The header's say their name, all others do not.
template <class T>
void expect_each_attribute_of_table_needed(const std::string& xml) {
  const std::string named =
      " table_id syntax_indicator section_length context_id version_number section_number"
      " last_section_number current_next_indicator crc32 descriptor_id descriptor_length ";
  for (size_t equals = xml.find("=\""); equals != std::string::npos; equals = xml.find("=\"", equals + 2)) {
    const size_t begin = xml.rfind(' ', equals);
    const size_t end = xml.find('"', equals + 2) + 1;
    const std::string name = xml.substr(begin + 1, equals - begin - 1);
    EXPECT_EQ(failure([&] { loaded_table<T>(std::string(xml).erase(begin, end - begin)); }),
              named.find(" " + name + " ") != std::string::npos ? "-1: failed to get " + name : "-1: failed")
        << name << " at " << begin;
  }
}

// What a load says to a document in which `part` is replaced by `other`.
template <class T>
std::string failure_of_load(std::string xml, const std::string& part, const std::string& other = {}) {
  const size_t at = xml.find(part);
  if (at == std::string::npos) return "there is no " + part;
  xml.replace(at, part.size(), other);
  return failure([&] { loaded_table<T>(xml); });
}

// What a load says when the `nth` call of an operation fails.
template <class T>
std::string failure_of_step(const char* operation, int nth = 1, HRESULT result = E_FAIL) {
  FaultyDom dom(operation, nth, result);
  T table;
  const std::string text = failure([&] { table.ParseDOM(dom.node()); });
  EXPECT_EQ(dom.references(), 0) << operation << " " << nth;
  EXPECT_EQ(table.is_parsed(), text == "nothing") << operation << " " << nth;
  return text;
}

}  // namespace quillon::test
