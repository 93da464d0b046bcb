#pragma once

// Tables by their classes, and all that a parsed table can be asked.

#include <string>
#include <string_view>
#include <vector>

#include <quillon/faces/field_sink.h>
#include <quillon/stream/any_table.h>

namespace quillon::fuzz {

// The elements of the classes for a table id, whatever the standard. Some classes take any table id: they
// come for their own alone.
std::vector<std::string> elements_for(int table_id);

std::string report_of(const AnyTable& table);
// In a document of its own, whether or not the save came to its end.
std::string saved(const AnyTable& table);
// Walks over everything that the table holds, reads it, and checks that records and lists end as they begin.
void walk(const AnyTable& table);
// What is left: the questions that take an argument.
void ask(const AnyTable& table);

// Reads each field.
class Reader final : public FieldSink {
 public:
  ~Reader();

  void number(const char* name, int64_t value, const char* meaning) override;
  void real(const char* name, double value) override;
  void text(const char* name, std::string_view utf8) override;
  void bytes(const char* name, const uint8_t* data, size_t size) override;
  void time(const char* name, const DateTime& utc) override;
  void duration(const char* name, const Duration& value) override;
  void begin(const char* name, const char* kind) override;
  void begin_list(const char* name, size_t size) override;
  void end() override;

 private:
  // Counts an item of the list that is open, if one is.
  void item(const char* name);

  // The items that are to come to each list; records have none.
  std::vector<size_t> open_;
  static constexpr size_t kRecord = SIZE_MAX;
};

}  // namespace quillon::fuzz
