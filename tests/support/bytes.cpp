#include "tests/support/bytes.h"

#include <boost/crc.hpp>
#include <cstdlib>

namespace quillon::test {

Bytes bits(std::initializer_list<Field> fields) {
  Bytes out;
  int filled = 0;
  for (const Field& field : fields)
    for (int i = field.width - 1; i >= 0; --i, ++filled) {
      if (filled % 8 == 0) out.push_back(0);
      out.back() = static_cast<uint8_t>(out.back() << 1 | static_cast<int>(field.value >> i & 1));
    }
  if (filled % 8 != 0) std::abort();
  return out;
}

Bytes text(std::string_view characters) {
  return Bytes(characters.begin(), characters.end());
}

Bytes counted(std::string_view characters) {
  return joined({bits({{8, characters.size(), "length"}}), text(characters)});
}

Bytes joined(std::initializer_list<Bytes> parts) {
  Bytes out;
  for (const Bytes& part : parts) out.insert(out.end(), part.begin(), part.end());
  return out;
}

Bytes descriptor(int tag, const Bytes& body) {
  return descriptor_claiming(tag, static_cast<int>(body.size()), body);
}

Bytes descriptor_claiming(int tag, int length, const Bytes& body) {
  return joined({bits({{8, static_cast<uint64_t>(tag), "descriptor_tag"},
                       {8, static_cast<uint64_t>(length), "descriptor_length"}}),
                 body});
}

Bytes long_section(int table_id, const Bytes& body, const Header& h, int length_change) {
  const auto u = [](int value) { return static_cast<uint64_t>(value); };
  const int length = static_cast<int>(body.size()) + 9 + length_change;
  Bytes out = joined({bits({{8, u(table_id), "table_id"},
                            {1, u(h.syntax_indicator), "section_syntax_indicator"},
                            {1, u(h.private_bit), "private_bit"},
                            {2, u(h.reserved), "reserved"},
                            {12, u(length), "section_length"},
                            {16, u(h.extension), "table_id_extension"},
                            {2, 3, "reserved"},
                            {5, u(h.version), "version_number"},
                            {1, u(h.current_next), "current_next_indicator"},
                            {8, u(h.section_number), "section_number"},
                            {8, u(h.last_section_number), "last_section_number"}}),
                      body, Bytes(4)});
  repair_crc(out);
  return out;
}

Bytes short_section(int table_id, const Bytes& body, int syntax_indicator) {
  return joined({bits({{8, static_cast<uint64_t>(table_id), "table_id"},
                       {1, static_cast<uint64_t>(syntax_indicator), "section_syntax_indicator"},
                       {1, 1, "reserved_future_use"},
                       {2, 3, "reserved"},
                       {12, body.size(), "section_length"}}),
                 body});
}

void set_length(Bytes& bytes, size_t at, int length) {
  bytes[at] = static_cast<uint8_t>((bytes[at] & 0xF0) | (length >> 8 & 0x0F));
  bytes[at + 1] = static_cast<uint8_t>(length);
}

void repair_crc(Bytes& section) {
  if (section.size() < 4) return;
  boost::crc_optimal<32, 0x04C11DB7, 0xFFFFFFFF, 0, false, false> crc;
  crc.process_bytes(section.data(), section.size() - 4);
  const uint32_t sum = crc.checksum();
  for (size_t i = 0; i < 4; ++i) section[section.size() - 4 + i] = static_cast<uint8_t>(sum >> (24 - 8 * i));
}

}  // namespace quillon::test
