#include "apps/quillon/json_fields.h"
#include "fuzz/require.h"
#include "fuzz/structure.h"
#include "fuzz/tables.h"
#include "fuzz/targets.h"
#include "fuzz/well_formed.h"

#include <map>
#include <string>

#include <quillon/sections/pat.h>
#include <quillon/tables/eit.h>
#include <quillon/tables/nit.h>
#include <quillon/tables/pmt.h>
#include <quillon/tables/sdt.h>

namespace quillon::fuzz {

namespace {

struct Interrupted {};

// Counts what JSON has to hold, and throws where it has no patience for a further call.
class Counter final : public FieldSink {
 public:
  explicit Counter(size_t patience = SIZE_MAX) : patience_(patience) {}

  size_t calls = 0;
  JsonCount json{.containers = 1};
  std::map<std::string, size_t> lists;  // sizes of those that are in no other
  int64_t table_id = -1;

  void number(const char* name, int64_t value, const char* meaning) override {
    call();
    if (open_.empty() && std::string_view(name) == "table_id") table_id = value;
    json.values += meaning && (open_.empty() || open_.back() == "") ? 2 : 1;
  }
  void real(const char*, double) override { leaf(); }
  void text(const char*, std::string_view) override { leaf(); }
  void bytes(const char*, const uint8_t*, size_t) override { leaf(); }
  void time(const char*, const DateTime&) override { leaf(); }
  void duration(const char*, const Duration&) override { leaf(); }
  void begin(const char*, const char*) override {
    call();
    ++json.containers;
    // A descriptor tells its name.
    if (!open_.empty() && open_.back() == "descriptors") ++json.values;
    open_.emplace_back();
  }
  void begin_list(const char* name, size_t size) override {
    call();
    ++json.containers;
    if (open_.empty()) lists[name] = size;
    open_.emplace_back(name);
  }
  void end() override {
    call();
    open_.pop_back();
  }

 private:
  void call() {
    if (calls++ == patience_) throw Interrupted();
  }
  void leaf() {
    call();
    ++json.values;
  }

  const size_t patience_;
  std::vector<std::string> open_;  // names of lists, empty for records
};

std::string json_of(const AnyTable& table) {
  app::JsonFields fields;
  table.walk(fields);
  return std::string(fields.take());
}

template <class Table, class Rows>
void expect_rows(const AnyTable& any, const Counter& counter, const char* list, Rows rows) {
  if (const Table* const table = any.as<Table>()) require(counter.lists.at(list) == (table->*rows)().size());
}

void check(const AnyTable& table, size_t chance) {
  const std::string json = json_of(table);
  Counter counter;
  table.walk(counter);
  const std::optional<JsonCount> found = count_json(json);
  require(found && found->values == counter.json.values && found->containers == counter.json.containers);
  if (table.is_parsed()) require(counter.table_id == table.get_table_id());
  expect_rows<Eit>(table, counter, "event_infos", &Eit::get_eventinfo);
  expect_rows<Sdt>(table, counter, "service_infos", &Sdt::get_service_infos);
  expect_rows<PmtDVB>(table, counter, "stream_infos", &PmtDVB::get_pmt_stream_info);
  expect_rows<Nit>(table, counter, "stream_infos", &Nit::get_stream_infos);

  require(json_of(table) == json);
  try {
    Counter interrupted(chance % counter.calls);
    table.walk(interrupted);
    std::abort();
  } catch (const Interrupted&) {
  }
  require(json_of(table) == json);
  require(json_of(*table.copy()) == json);
}

}  // namespace

void walk(const uint8_t* data, size_t size) {
  if (size < 1) return;
  Bytes bytes(data, data + size);
  repair(bytes);
  // The CRC is as good as chance.
  const size_t chance = static_cast<size_t>(bytes.end()[-2] << 8 | bytes.end()[-1]);
  for (const std::string& element : elements_for(bytes[0]))
    for (const Reading reading : {Reading::kept, Reading::standard}) {
      const auto table = AnyTable::for_element(element);
      table->set_reading(reading);
      table->set_tolerant(true);
      try {
        table->Parse(bytes);
      } catch (const error&) {
        // What was read until then can be walked over too.
      }
      check(*table, chance);
    }
}

}  // namespace quillon::fuzz
