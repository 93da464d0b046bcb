#pragma once

// What the tests of application signalling and IP/MAC notification share.

#include "tests/support/cases.h"
#include "tests/support/expect.h"
#include "tests/support/faulty_dom.h"

#include <string>
#include <string_view>

namespace quillon::test {

inline ByteView view(const Bytes& bytes) {
  return ByteView(bytes.data(), bytes.size());
}

// A length byte and the characters.
inline Bytes counted(std::string_view characters) {
  return joined({bits({{8, characters.size(), "length"}}), text(characters)});
}

// What a class throws for bytes.
template <class T>
std::string refusal(const Bytes& bytes) {
  return failure([&] { T(view(bytes)); });
}

template <class T>
std::string saved_after_reset(const Bytes& bytes) {
  T object(view(bytes));
  object.reset();
  return saved(object);
}

// A document with each `from` written as `to`.
inline std::string changed(std::string xml, const std::string& from, const std::string& to) {
  for (size_t at = xml.find(from); at != std::string::npos; at = xml.find(from, at + to.size()))
    xml.replace(at, from.size(), to);
  return xml;
}

// The saved document of one of the registered cases.
inline const std::string& xml_of(const std::string& name) {
  for (const DescriptorCase& c : Cases::all())
    if (c.name == name) return c.xml;
  static const std::string none;
  ADD_FAILURE() << "no case " << name;
  return none;
}

// Every face of a table, whatever comes of it, for each damaged byte and each place to cut the body at, the
// CRC repaired. The sections have their own ends, watched by the sanitizers.
template <class Table>
void exercise_damaged(const Bytes& section) {
  const auto exercise = [](const Bytes& bytes) {
    for (const bool tolerant : {false, true}) {
      Table table;
      table.set_tolerant(tolerant);
      failure([&] { table.Parse(bytes.data(), bytes.size(), true); });
      report(table);
      const std::string xml = saved(table);
      failure([&] { saved(loaded_table<Table>(xml)); });
      table.reset();
    }
  };
  for (size_t i = 3; i + 4 < section.size(); ++i)
    for (const uint8_t value : Bytes{0x00, 0x01, 0x7F, 0x80, 0xFF}) {
      Bytes damaged = section;
      damaged[i] = value;
      repair_crc(damaged);
      exercise(damaged);
    }
  for (size_t size = 12; size < section.size(); ++size) {
    Bytes cut(section.begin(), section.begin() + static_cast<ptrdiff_t>(size));
    cut[1] = static_cast<uint8_t>((cut[1] & 0xF0) | (size - 3) >> 8);
    cut[2] = static_cast<uint8_t>(size - 3);
    repair_crc(cut);
    exercise(cut);
  }
}

#if !defined(_WIN32)

// The four failures of a list, each step failing in turn.
template <class T>
void expect_list_failures(const std::string& list) {
  const auto failure_of = [](const char* step) {
    FaultyDom dom(step);
    const std::string out = failure([&] {
      T object;
      object.Parse(dom.node());
    });
    EXPECT_EQ(dom.references(), 0);
    return out;
  };
  EXPECT_EQ(failure_of("selectSingleNode"), "-1: failed to get " + list);
  EXPECT_EQ(failure_of("get_childNodes"), "-1: failed to get program_info list " + list);
  EXPECT_EQ(failure_of("get_length"), "-1: failed to get length " + list);
  EXPECT_EQ(failure_of("get_item"), "-1: failed to get program_info node " + list);
}

#endif

}  // namespace quillon::test
