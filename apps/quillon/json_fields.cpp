#include "apps/quillon/json_fields.h"

#include "apps/quillon/output.h"

#include <cmath>
#include <cstring>

#include <quillon/fields/time.h>

namespace quillon::app {

std::string JsonFields::take() {
  writer_.EndObject();
  std::string out(buffer_.GetString(), buffer_.GetSize());
  buffer_.Clear();
  writer_.Reset(buffer_);
  writer_.StartObject();
  return out;
}

void JsonFields::key(const char* name) {
  if (levels_.back() == Level::record) writer_.Key(name);
}

void JsonFields::string(std::string_view text) {
  writer_.String(text.data(), static_cast<rapidjson::SizeType>(text.size()));
}

void JsonFields::number(const char* name, int64_t value, const char* meaning) {
  key(name);
  writer_.Int64(value);
  if (!meaning || levels_.back() != Level::record) return;
  writer_.Key(std::string(name).append("_meaning").c_str());
  writer_.String(meaning);
}

void JsonFields::real(const char* name, double value) {
  key(name);
  if (!std::isfinite(value) || !writer_.Double(value)) writer_.Null();
}

void JsonFields::text(const char* name, std::string_view utf8) {
  key(name);
  string(utf8);
}

void JsonFields::bytes(const char* name, const uint8_t* data, size_t size) {
  std::string text;
  for (size_t i = 0; i < size; ++i) append_hex(text, data[i]);
  key(name);
  string(text);
}

void JsonFields::time(const char* name, const DateTime& utc) {
  key(name);
  is_defined(utc) ? string(iso_8601(utc)) : void(writer_.Null());
}

void JsonFields::duration(const char* name, const Duration& value) {
  key(name);
  is_defined(value) ? string(clock(value)) : void(writer_.Null());
}

void JsonFields::begin(const char* name, const char*) {
  key(name);
  writer_.StartObject();
  if (levels_.back() == Level::descriptors) {
    writer_.Key("descriptor");
    writer_.String(name);
  }
  levels_.push_back(Level::record);
}

void JsonFields::begin_list(const char* name, size_t) {
  key(name);
  writer_.StartArray();
  levels_.push_back(std::strcmp(name, "descriptors") == 0 ? Level::descriptors : Level::list);
}

void JsonFields::end() {
  levels_.back() == Level::record ? writer_.EndObject() : writer_.EndArray();
  levels_.pop_back();
}

}  // namespace quillon::app
