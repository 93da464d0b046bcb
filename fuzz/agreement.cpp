#include "fuzz/require.h"
#include "fuzz/structure.h"
#include "fuzz/tables.h"
#include "fuzz/targets.h"

#include <string>

#include <quillon/xml/document.h>

namespace quillon::fuzz {

namespace {

struct Outcome {
  bool accepted = true;
  std::string text = {};
  int code = 0;

  bool operator==(const Outcome&) const = default;
};

template <class Action>
Outcome outcome_of(Action action) {
  try {
    action();
    return {};
  } catch (const error& e) {
    return {false, e.what(), e.get_code()};
  }
}

// Each failure is where its descriptor is.
void check_failures(const AnyTable& table, const Bytes& section) {
  const bool is_short = section[0] >= 0x70 && section[0] <= 0x73;
  const size_t body = is_short ? 3 : 8;
  for (const DescriptorFailure& failure : table.get_descriptor_failures()) {
    require(failure.offset >= 0 && body + static_cast<size_t>(failure.offset) < section.size());
    require(section[body + static_cast<size_t>(failure.offset)] == failure.tag);
  }
}

// What a load of `text` saves; empty if it does not load.
std::string saved_again(const std::string& element, const std::string& text) {
  const xml::Document document = xml::Document::from_text(text);
  const auto table = AnyTable::for_element(element);
  return outcome_of([&] { table->ParseDOM(document.root()); }).accepted ? saved(*table) : std::string();
}

// Vectors of integers come back twice as long: kept, see the attribute layer.
bool grows(const std::string& text) {
  return text.find("<service_availability_descriptor ") != std::string::npos ||
         text.find("<frequency_list_descriptor ") != std::string::npos;
}

void agree(const Bytes& bytes, const std::string& element, Reading reading) {
  const auto parse = [reading](AnyTable& table, const Bytes& section, bool keep_raw) {
    table.set_reading(reading);
    return outcome_of([&] { table.Parse(section.data(), section.size(), keep_raw); });
  };
  const auto strict = AnyTable::for_element(element);
  const Outcome strictly = parse(*strict, bytes, false);
  if (reading == Reading::kept) require(strict->get_descriptor_failures().empty());
  const std::string report = report_of(*strict);
  const std::string strictly_saved = saved(*strict);

  const auto tolerant = AnyTable::for_element(element);
  tolerant->set_tolerant(true);
  const Outcome tolerantly = parse(*tolerant, bytes, true);
  const std::string tolerantly_saved = saved(*tolerant);
  check_failures(*tolerant, bytes);
  if (reading == Reading::standard || tolerant->get_descriptor_failures().empty()) {
    require(tolerantly == strictly);
    require(report_of(*tolerant) == report);
    require(tolerantly_saved == strictly_saved);
  } else {
    require(!strictly.accepted);
  }

  // What lies past a section changes nothing.
  Bytes more = bytes;
  more.insert(more.end(), 300, 0xA5);
  const auto beside = AnyTable::for_element(element);
  require(parse(*beside, more, false) == strictly);
  require(report_of(*beside) == report);
  require(saved(*beside) == strictly_saved);

  if (!tolerantly.accepted) return;
  const std::string once = saved_again(element, tolerantly_saved);
  if (!once.empty() && !grows(tolerantly_saved)) require(saved_again(element, once) == once);
}

}  // namespace

void agreement(const uint8_t* data, size_t size) {
  if (size < 1) return;
  Bytes bytes(data, data + size);
  repair(bytes);
  for (const std::string& element : elements_for(bytes[0]))
    for (const Reading reading : {Reading::kept, Reading::standard}) agree(bytes, element, reading);
}

}  // namespace quillon::fuzz
