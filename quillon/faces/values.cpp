// The faces of the value types.

#include <quillon/faces/internal/describe.h>
#include <quillon/fields/identifier.h>
#include <quillon/fields/multiple_string.h>
#include <quillon/fields/time.h>
#include <quillon/platform/utf8.h>

namespace quillon {

template <class V, class S>
void DateTime::describe(V& v, S& s) {
  v.field("day", s.day);
  v.field("month", s.month);
  v.field("year", s.year);
  v.field("hour", s.hour);
  v.field("minute", s.minute);
  v.field("second", s.second);
}
QUILLON_XML_RECORD_FACES_OF(DateTime)

template <class V, class S>
void Duration::describe(V& v, S& s) {
  v.field("hour", s.hours_);
  v.field("minute", s.minutes_);
  v.field("second", s.seconds_);
}
QUILLON_WALK_OF(Duration)

template <class V, class S>
void TimeOffset::describe(V& v, S& s) {
  v.field("hour", s.hours_);
  v.field("minute", s.minutes_);
}
QUILLON_XML_RECORD_FACES_OF(TimeOffset)

template <class V, class S>
void ApplicationIdentifier::describe(V& v, S& s) {
  v.coded("organisation_id", s.organisation_id, registry_kind::mhp_organisation);
  v.field("application_id", s.application_id);
}
QUILLON_XML_RECORD_FACES_OF(ApplicationIdentifier)

template <class V, class S>
void LengthPrefixedString::describe(V& v, S& s) {
  v.field("length", s.length_);
  v.field("value", s.value_);
}
QUILLON_XML_RECORD_FACES_OF(LengthPrefixedString)

template <class V, class S>
void MultilingualNameInfo::describe(V& v, S& s) {
  v.field("name", s.name_);
  v.field("ISO_639_language_code", s.language_code_);
}
QUILLON_XML_RECORD_FACES_OF(MultilingualNameInfo)

template <class V, class S>
void ATSCMultipleStringStructure::describe(V& v, S& s) {
  v.field("number_strings", s.number_strings);
  v.list("strings", "string", s.strings);
}
QUILLON_WALK_OF(ATSCMultipleStringStructure)

template <class V, class S>
void ATSCMultipleStringStructure::String::describe(V& v, S& s) {
  v.field("ISO_639_language_code", s.iso639languagecode);
  v.field("number_segments", s.number_segments);
  v.list("segments", "segment", s.segments);
  v.standard("text", platform::to_utf16(s.utf8()));
}
QUILLON_WALK_OF(ATSCMultipleStringStructure::String)

template <class V, class S>
void ATSCMultipleStringStructure::String::Segment::describe(V& v, S& s) {
  v.coded("compression_type", s.compression_type, s.get_compression_type_text());
  v.coded("mode", s.mode, {s.get_mode_text(), s.standard_mode_text(s.mode)});
  v.field("number_bytes", s.number_bytes);
  v.field("compressed_string_bytes", s.compressed_string_bytes);
  v.field("decoded_text", wide_view(s.decoded_text));
}
QUILLON_WALK_OF(ATSCMultipleStringStructure::String::Segment)

}  // namespace quillon
