#pragma once

#include <cstdint>
#include <initializer_list>

namespace quillon {

// What stream_type says (ISO/IEC 13818-1, table 2-29).
const char* stream_type_text(int stream_type);

// The same in the edition in force (ISO/IEC 13818-1:2023, table 2-34). A user private type, and private data
// in PES packets, mean what the first of the registrations says that knows the type.
const char* standard_stream_type_text(int stream_type, std::initializer_list<uint32_t> format_identifiers);

// A format_identifier from its four characters.
constexpr uint32_t format_identifier(const char (&text)[5]) {
  uint32_t out = 0;
  for (int i = 0; i < 4; ++i) out = out << 8 | static_cast<unsigned char>(text[i]);
  return out;
}

}  // namespace quillon
