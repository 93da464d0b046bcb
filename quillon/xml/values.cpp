// The XML form of the value types.

#include <quillon/fields/identifier.h>
#include <quillon/fields/time.h>
#include <quillon/xml/internal/grammar.h>

namespace quillon {

void DateTime::Parse(void* node) {
  xml::Reader in(node);
  in.get("day", day);
  in.get("month", month);
  in.get("year", year);
  in.get("hour", hour);
  in.get("minute", minute);
  in.get("second", second);
}

bool DateTime::SaveSection(void* document, void* node) const {
  xml::Writer out(document, node);
  out.add("day", day);
  out.add("month", month);
  out.add("year", year);
  out.add("hour", hour);
  out.add("minute", minute);
  return out.add("second", second);
}

void TimeOffset::Parse(void* node) {
  xml::Reader in(node);
  in.get("hour", hours_);
  in.get("minute", minutes_);
}

bool TimeOffset::SaveSection(void* document, void* node) const {
  xml::Writer out(document, node);
  out.add("hour", hours_);
  return out.add("minute", minutes_);
}

void ApplicationIdentifier::Parse(void* node) {
  xml::Reader in(node);
  in.get("organisation_id", organisation_id);
  in.get("application_id", application_id);
}

bool ApplicationIdentifier::SaveSection(void* document, void* node) const {
  xml::Writer out(document, node);
  out.add("organisation_id", organisation_id);
  return out.add("application_id", application_id);
}

void LengthPrefixedString::Parse(void* node) {
  xml::Reader in(node);
  in.get("length", length_);
  in.get("value", value_);
}

bool LengthPrefixedString::SaveSection(void* document, void* node) const {
  xml::Writer out(document, node);
  out.add("length", length_);
  return out.add("value", value_);
}

void MultilingualNameInfo::Parse(void* node) {
  xml::Reader in(node);
  in.get("name", name_);
  in.get("ISO_639_language_code", language_code_);
}

bool MultilingualNameInfo::SaveSection(void* document, void* node) const {
  xml::Writer out(document, node);
  out.add("name", name_);
  return out.add("ISO_639_language_code", language_code_.c_str());
}

}  // namespace quillon
