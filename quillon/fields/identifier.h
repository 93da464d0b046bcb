#pragma once

#include <cstdint>
#include <ostream>
#include <string>

#include <quillon/fields/language.h>
#include <quillon/fields/text.h>
#include <quillon/fields/wire_text.h>
#include <quillon/platform/api.h>
#include <quillon/sections/byte_view.h>
#include <quillon/sections/walkable.h>

namespace quillon {

// Identifies an MHP application (TS 102 812, 10.5): organisation_id, 32 bits, and application_id, 16 bits.
// Bytes past the section's end are 0; any value is accepted.
class QUILLON_API ApplicationIdentifier {
 public:
  ApplicationIdentifier() = default;
  explicit ApplicationIdentifier(ByteView bytes)
      : organisation_id(bytes.u32(0)), application_id(bytes.u16(4)) {}

  void dump_state(std::ostream& stream) const;
  // "0000002A 0001"
  std::string application_identifier_as_text() const;
  // Reads both numbers as hexadecimal; one that the text lacks stays as it was, with a null text both. Always
  // true.
  bool set_application_identifier_from_text(const char* text);

  // The attributes "organisation_id" and "application_id" of an element. Parse throws error("failed") if one
  // of them is missing, and keeps those before it; SaveSection gives false at the first that can't be
  // written. No pointer may be null.
  void Parse(void* node);
  bool SaveSection(void* document, void* node) const;

  uint32_t organisation_id = 0;
  int application_id = 0;

  QUILLON_WALK;
};

inline std::ostream& operator<<(std::ostream& stream, const ApplicationIdentifier& identifier) {
  return stream << identifier.application_identifier_as_text();
}

// A length byte and that many bytes, kept as they are, or UTF-8 in the standard reading (TS 102 809, 5.3.4).
// Any value is accepted.
class QUILLON_API LengthPrefixedString {
 public:
  LengthPrefixedString() = default;
  // `max_length` is ignored; `consumed` becomes the length plus 1, 1 to 256. A value that runs past the
  // section stops at its end.
  LengthPrefixedString(ByteView bytes, int max_length, int& consumed);

  int get_length() const { return length_; }
  const WireText& get_value() const { return value_; }

  // "<label>_length: " and "<label>: ", the value up to its first NUL. `label` may not be null.
  void dump_state(const char* label, std::ostream& stream) const;

  // The attributes "length" and "value" of an element. Parse throws error("failed") if one of them is
  // missing, and keeps those before it; SaveSection gives false at the first that can't be written. No
  // pointer may be null.
  void Parse(void* node);
  bool SaveSection(void* document, void* node) const;

  QUILLON_WALK;

  int length_ = 0;
  WireText value_;
};

inline std::ostream& operator<<(std::ostream& stream, const LengthPrefixedString& string) {
  return stream << string.get_value();
}

// A name in one language (EN 300 468, 6.2.22): the code, a length byte and the text.
class QUILLON_API MultilingualNameInfo {
 public:
  MultilingualNameInfo() = default;
  // Throws error(error::length_mismatch, "multilingual_name_info_descriptor") if `available`, the bytes there
  // are, is under 4, and the same with ":2" after the text if the name does not fit. Otherwise `consumed`
  // becomes the name's length plus 4, 4 to 259.
  MultilingualNameInfo(ByteView bytes, int available, int& consumed);

  const char* get_iso_639_language_code() const { return language_code_.c_str(); }
  const Text& get_name() const { return name_; }

  void _dump_state(std::ostream& stream) const;

  // The attributes "name" and "ISO_639_language_code" of an element. Parse throws error("failed") if one of
  // them is missing, and keeps those before it; SaveSection gives false at the first that can't be written.
  // No pointer may be null.
  void Parse(void* node);
  bool SaveSection(void* document, void* node) const;

  QUILLON_WALK;

  CodeCharacters language_code_;
  Text name_;
};

// The name.
inline std::ostream& operator<<(std::ostream& stream, const MultilingualNameInfo& info) {
  return stream << info.get_name();
}

}  // namespace quillon
