#pragma once

// Hand-made wire forms: bytes put together from named fields.

#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include <quillon/sections/byte_view.h>

namespace quillon::test {

using Bytes = std::vector<uint8_t>;

inline ByteView view(const Bytes& bytes) {
  return ByteView(bytes.data(), bytes.size());
}

// One field of a wire form: its width in bits, its value, and its name for the reader.
struct Field {
  int width;
  uint64_t value;
  const char* name;
};

// Fields one after the other, most significant bit first; the sum of the widths is a multiple of 8.
Bytes bits(std::initializer_list<Field> fields);

Bytes text(std::string_view characters);
// A length byte and the characters.
Bytes counted(std::string_view characters);
Bytes joined(std::initializer_list<Bytes> parts);

// tag, length and body; the length may be given a value of its own.
Bytes descriptor(int tag, const Bytes& body);
Bytes descriptor_claiming(int tag, int length, const Bytes& body);

// What a section header holds beside the table id and the length.
struct Header {
  int extension = 0x1234;
  int version = 3;
  int current_next = 1;
  int section_number = 0;
  int last_section_number = 0;
  int syntax_indicator = 1;
  int private_bit = 0;
  int reserved = 3;
};

// A long section with its right CRC. `length_change` is added to section_length before the CRC is made.
Bytes long_section(int table_id, const Bytes& body, const Header& header = {}, int length_change = 0);
// A short section, the body as it is.
Bytes short_section(int table_id, const Bytes& body, int syntax_indicator = 0);
// Puts the low 12 bits of `length` at `at`; the high half of the first byte stays.
void set_length(Bytes& bytes, size_t at, int length);
// Makes the last four bytes the right CRC of the others.
void repair_crc(Bytes& section);

}  // namespace quillon::test
