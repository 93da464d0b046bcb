#pragma once

#include <cstdint>
#include <iosfwd>
#include <string>

#include <quillon/fields/language.h>
#include <quillon/fields/text.h>
#include <quillon/platform/api.h>
#include <quillon/sections/byte_view.h>

namespace quillon {

// Identifies an MHP application (TS 102 812, 10.5): organisation_id, 32 bits, and application_id, 16 bits.
class QUILLON_API ApplicationIdentifier {
 public:
  ApplicationIdentifier() = default;
  explicit ApplicationIdentifier(ByteView bytes)
      : organisation_id(bytes.u32(0)), application_id(bytes.u16(4)) {}

  void dump_state(std::ostream& stream) const;
  // "0000002A 0001"
  std::string application_identifier_as_text() const;
  // Reads both numbers as hexadecimal; one that the text lacks, a null one both, stays as it was. Always
  // true.
  bool set_application_identifier_from_text(const char* text);

  // The two attributes of an element; Parse throws error("failed").
  void Parse(void* node);
  bool SaveSection(void* document, void* node) const;

  uint32_t organisation_id = 0;
  int application_id = 0;
};

// A length byte and that many bytes, kept as they stand.
class QUILLON_API LengthPrefixedString {
 public:
  LengthPrefixedString() = default;
  // `max_length` is not looked at; `consumed` becomes the length and its byte. A value that runs past the
  // section stops at its end.
  LengthPrefixedString(ByteView bytes, int max_length, int& consumed);

  int get_length() const { return length_; }
  const std::string& get_value() const { return value_; }

  // "<label>_length: " and "<label>: ", the value up to its first NUL.
  void dump_state(const char* label, std::ostream& stream) const;

  // The attributes "length" and "value" of an element; Parse throws error("failed").
  void Parse(void* node);
  bool SaveSection(void* document, void* node) const;

 private:
  int length_ = 0;
  std::string value_;
};

// A name in one language (EN 300 468, 6.2.22): the code, a length byte and the text.
class QUILLON_API MultilingualNameInfo {
 public:
  MultilingualNameInfo() = default;
  // Throws error(3, "multilingual_name_info_descriptor") if `available` is under 4, and the same with ":2" if
  // the name does not fit; `consumed` becomes the name's length plus 4.
  MultilingualNameInfo(ByteView bytes, int available, int& consumed);

  const char* get_iso_639_language_code() const { return language_code_.c_str(); }
  const Text& get_name() const { return name_; }

  void _dump_state(std::ostream& stream) const;

  // The two attributes of an element; Parse throws error("failed").
  void Parse(void* node);
  bool SaveSection(void* document, void* node) const;

 private:
  CodeCharacters language_code_;
  Text name_;
};

}  // namespace quillon
