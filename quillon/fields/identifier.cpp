#include <cstdio>
#include <ostream>

#include <quillon/fields/identifier.h>
#include <quillon/platform/or_empty.h>
#include <quillon/report/internal/line.h>
#include <quillon/sections/error.h>

namespace quillon {

void ApplicationIdentifier::dump_state(std::ostream& stream) const {
  stream << "organisation_id: " << organisation_id << std::endl;
  stream << "application_id: " << application_id << std::endl;
}

std::string ApplicationIdentifier::application_identifier_as_text() const {
  char text[24];
  std::snprintf(text, sizeof text, "%08X %04X", organisation_id, static_cast<unsigned>(application_id));
  return text;
}

bool ApplicationIdentifier::set_application_identifier_from_text(const char* text) {
  unsigned organisation = organisation_id;
  auto application = static_cast<unsigned>(application_id);
  std::sscanf(detail::or_empty(text), "%X %X", &organisation, &application);
  organisation_id = organisation;
  application_id = static_cast<int>(application);
  return true;
}

LengthPrefixedString::LengthPrefixedString(ByteView bytes, int, int& consumed)
    : length_(bytes[0]),
      // Quirk: texts of an Ait but application_name
      value_(bytes.present(1, length_), bytes.reading()) {
  consumed = length_ + 1;
}

void LengthPrefixedString::dump_state(const char* label, std::ostream& stream) const {
  stream << label << "_length: " << length_ << std::endl;
  report::Line line(stream);
  line.label(label, ": ", {}).add(value_.c_str()).end();
}

MultilingualNameInfo::MultilingualNameInfo(ByteView bytes, int available, int& consumed) {
  if (available < 4) throw error(error::length_mismatch, "multilingual_name_info_descriptor");
  language_code_ = CodeCharacters(bytes);
  const int length = bytes[3];
  if (available < length + 4) throw error(error::length_mismatch, "multilingual_name_info_descriptor:2");
  name_.parse(length, bytes.from(4));
  consumed = length + 4;
}

void MultilingualNameInfo::_dump_state(std::ostream& stream) const {
  stream << "MultilingualNameInfo::ISO_639_language_code: " << language_code_ << std::endl;
  const bool is_utf8 = name_.get_reading() == Reading::standard;
  report::line(stream, "MultilingualNameInfo::name: ", is_utf8 ? name_.utf8().c_str() : name_.c_strA());
}

}  // namespace quillon
