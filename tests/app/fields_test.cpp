// The fields of objects as JSON and as lines.

#include "apps/quillon/field_lines.h"
#include "apps/quillon/json_fields.h"
#include "tests/support/cases.h"
#include "tests/support/table_cases.h"

#include <rapidjson/document.h>

#include <quillon/descriptors/event/local_time_offset.h>
#include <quillon/descriptors/event/short_event.h>
#include <quillon/fields/time.h>

using namespace quillon;
using namespace quillon::test;

namespace {

std::string json_of(const auto& object) {
  app::JsonFields fields;
  object.walk(fields);
  return std::string(fields.take());
}

std::string lines_of(const auto& object) {
  app::FieldLines lines(false);
  object.walk(lines);
  return lines.take();
}

// Counts what a walk hands over.
class Count final : public FieldSink {
 public:
  size_t values = 0;
  size_t meanings = 0;
  size_t containers = 0;
  size_t descriptors = 0;

  void number(const char*, int64_t, const char* meaning) override {
    ++values;
    if (meaning && !in_list()) ++meanings;
  }
  void real(const char*, double) override { ++values; }
  void text(const char*, std::string_view) override { ++values; }
  void bytes(const char*, const uint8_t*, size_t) override { ++values; }
  void time(const char*, const DateTime&) override { ++values; }
  void duration(const char*, const Duration&) override { ++values; }
  void begin(const char*, const char*) override {
    ++containers;
    if (in_list() && open_.back() == "descriptors") ++descriptors;
    open_.push_back("");
  }
  void begin_list(const char* name, size_t) override {
    ++containers;
    open_.push_back(name);
  }
  void end() override { open_.pop_back(); }

 private:
  bool in_list() const { return !open_.empty() && !open_.back().empty(); }

  std::vector<std::string> open_;  // the names of lists
};

// The values, objects and arrays in a value.
void count(const rapidjson::Value& value, size_t& values, size_t& containers) {
  if (value.IsObject()) {
    ++containers;
    for (const auto& member : value.GetObject()) count(member.value, values, containers);
  } else if (value.IsArray()) {
    ++containers;
    for (const auto& item : value.GetArray()) count(item, values, containers);
  } else {
    ++values;
  }
}

template <class Walk>
void expect_whole(Walk walk) {
  Count expected;
  walk(expected);
  app::JsonFields fields;
  walk(fields);
  rapidjson::Document document;
  const std::string text(fields.take());
  document.Parse<rapidjson::kParseValidateEncodingFlag>(text.data(), text.size());
  ASSERT_FALSE(document.HasParseError()) << text;
  size_t values = 0, containers = 0;
  count(document, values, containers);
  EXPECT_EQ(values, expected.values + expected.meanings + expected.descriptors);
  EXPECT_EQ(containers, expected.containers + 1);
}

}  // namespace

TEST(JsonFields, HoldEachFieldOfEachDescriptor) {
  for (const DescriptorCase& c : Cases::all()) {
    SCOPED_TRACE(c.name);
    expect_whole([&](FieldSink& sink) { c.walk_to(view(c.bytes), sink); });
  }
}

TEST(JsonFields, HoldEachFieldOfEachTable) {
  for (const TableCase& c : TableCases::all()) {
    SCOPED_TRACE(c.name);
    const auto table = c.make();
    table->Parse(c.section.data(), c.section.size(), true);
    expect_whole([&](FieldSink& sink) { table->walk(sink); });
  }
}

TEST(JsonFields, AreInUtf8AndEscaped) {
  // A name with a quote, a control code and a letter beyond ASCII, and a text with a NUL after its first
  // letter.
  const Bytes bytes = descriptor(0x4D, joined({text("deu"), counted("a\"\x01\xE9"), counted("b")}));
  EXPECT_EQ(
      json_of(DescriptorShortEvent(view(bytes))),
      "{\"descriptor_id\":77,\"descriptor_id_meaning\":\"short_event_descriptor\",\"descriptor_length\":10,"
      "\"language_code\":\"deu\",\"event_name\":\"a\\\"\\u0001\u00E9\",\"text\":\"b\"}\n");
}

TEST(JsonFields, GiveTimesByIso8601AndNullForNone) {
  DescriptorLocalTimeOffset::LocalTime time;
  EXPECT_NE(json_of(time).find("\"time_of_change\":\"0001-01-01T01:01:01Z\""), std::string::npos);
  const Bytes none = joined({text("DEU"), Bytes(10, 0xFF)});
  int used = static_cast<int>(none.size());
  EXPECT_NE(json_of(DescriptorLocalTimeOffset::LocalTime(view(none), used)).find("\"time_of_change\":null"),
            std::string::npos);
  app::JsonFields fields;
  const uint8_t duration[] = {0x01, 0x45, 0x07, 0xFF, 0xFF, 0xFF};
  fields.duration("a", Duration(duration));
  fields.duration("b", Duration(duration + 3));
  fields.real("c", 1.5);
  EXPECT_EQ(fields.take(), "{\"a\":\"01:45:07\",\"b\":null,\"c\":1.5}\n");
  EXPECT_EQ(fields.take(), "{}\n");
}

TEST(FieldLines, AreIndentedAndSteerNoTerminal) {
  const Bytes bytes = descriptor(0x4D, joined({text("deu"), counted("a\x1B[2J\x9B"), counted("b")}));
  EXPECT_EQ(lines_of(DescriptorShortEvent(view(bytes))),
            "  descriptor_id: 77 (short_event_descriptor)\n"
            "  descriptor_length: 12\n"
            "  language_code: \"deu\"\n"
            "  event_name: \"a\\x1B[2J\u203A\"\n"
            "  text: \"b\"\n");
  app::FieldLines lines(false);
  lines.begin_list("rows", 1);
  lines.begin("row", "Row");
  const uint8_t data[] = {0x0A, 0xFF};
  lines.bytes("data", data, 2);
  lines.bytes("none", nullptr, 0);
  lines.text("name", "x\u0085y\x7F");
  lines.real("rate", 0.25);
  lines.end();
  lines.end();
  lines.number("count", -1, nullptr);
  EXPECT_EQ(lines.take(),
            "  rows: 1\n"
            "    row\n"
            "      data: 0aff\n"
            "      none: none\n"
            "      name: \"x\\u0085y\\x7F\"\n"
            "      rate: 0.25\n"
            "  count: -1\n");
}
