#include "fuzz/accessors.h"
#include "fuzz/structure.h"
#include "fuzz/targets.h"

#include <cstdlib>
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

void require(bool held) {
  if (!held) std::abort();
}

// Each failure stands where its descriptor is.
void check_failures(const Table& table, const Bytes& section) {
  const bool is_short = section[0] >= 0x70 && section[0] <= 0x73;
  const size_t body = is_short ? 3 : 8;
  for (const DescriptorFailure& failure : table.failures()) {
    require(failure.offset >= 0 && body + static_cast<size_t>(failure.offset) < section.size());
    require(section[body + static_cast<size_t>(failure.offset)] == failure.tag);
  }
}

// What a load of `text` saves; empty if it does not load.
std::string saved_again(MakeTable make, const std::string& text) {
  const xml::Document document = xml::Document::from_text(text);
  const auto table = make();
  return outcome_of([&] { table->load(document.root()); }).accepted ? table->save() : std::string();
}

// Vectors of integers come back twice as long: kept, see the attribute layer.
bool grows(const std::string& text) {
  return text.find("<service_availability_descriptor ") != std::string::npos ||
         text.find("<frequency_list_descriptor ") != std::string::npos;
}

}  // namespace

void agreement(const uint8_t* data, size_t size) {
  if (size < 1) return;
  Bytes bytes(data, data + size);
  repair(bytes);
  for (const MakeTable make : classes_of(bytes[0])) {
    const auto strict = make();
    const Outcome strictly = outcome_of([&] { strict->parse(bytes, false); });
    require(strict->failures().empty());
    const std::string report = strict->report();
    const std::string strictly_saved = strict->save();

    const auto tolerant = make();
    tolerant->set_tolerant(true);
    const Outcome tolerantly = outcome_of([&] { tolerant->parse(bytes, true); });
    const std::string saved = tolerant->save();
    check_failures(*tolerant, bytes);
    if (tolerant->failures().empty()) {
      require(tolerantly == strictly);
      require(tolerant->report() == report);
      require(saved == strictly_saved);
    } else {
      require(!strictly.accepted);
    }

    // What lies behind a section changes nothing.
    Bytes more = bytes;
    more.insert(more.end(), 300, 0xA5);
    const auto beside = make();
    require(outcome_of([&] { beside->parse(more, false); }) == strictly);
    require(beside->report() == report);
    require(beside->save() == strictly_saved);

    if (!tolerantly.accepted) continue;
    const std::string once = saved_again(make, saved);
    if (!once.empty() && !grows(saved)) require(saved_again(make, once) == once);
  }
}

}  // namespace quillon::fuzz
