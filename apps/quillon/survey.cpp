#include "apps/quillon/survey.h"

#include "apps/quillon/text.h"

#include <algorithm>

#include <quillon/atsc/stt.h>
#include <quillon/descriptors/service/names.h>
#include <quillon/stream/internal/gps_time.h>
#include <quillon/tables/nit.h>
#include <quillon/tables/tdt.h>
#include <quillon/tables/tot.h>

namespace quillon::app {

namespace {

constexpr int kActualNetwork = 0x40;

constexpr size_t kMostTables = 65536;

}  // namespace

void SeenTable::push(const StreamSection& section) {
  ++sections;
  const int version = section.version();
  if (versions.empty() || versions.back() != version) section_numbers.reset();
  if (std::find(versions.begin(), versions.end(), version) == versions.end()) versions.push_back(version);
  last_section_number = section.last_section_number();
  section_numbers.set(static_cast<size_t>(section.section_number()));
}

Survey::Survey(const Choice& choice) {
  Choice sections = choice;
  sections.services.clear();
  if (sections != Choice{}) all_ = std::make_unique<All>();
}

void Survey::learn(const Input& input, const StreamSection& section, bool is_wanted) {
  if (section.has_crc && !section.crc_ok) return;
  const double now = input.statistics.seconds();
  if (all_) {
    all_->collector.push(section);
    all_->collector.advance(now);
  }
  if (!is_wanted) return;
  collector.push(section);
  collector.advance(now);
}

ParsedTable Survey::push(const Input& input, const StreamSection& section) {
  ++sections;
  if (section.has_crc && !section.crc_ok) {
    ++crc_errors[section.pid];
    return {};
  }
  schedule.push(section);
  const TableId id = TableId::of(section);
  if (tables.size() < kMostTables || tables.contains(id))
    tables[id].push(section);
  else
    ++unlisted;
  if (section.repeated) return {};
  ParsedTable parsed = parse(section.span(), input.standard, Reading::standard);
  examine(input, section.table_id(), parsed);
  return parsed;
}

void Survey::examine(const Input& input, int table_id, const ParsedTable& parsed) {
  const auto title = [&] { return table_title(table_id, input.standard); };
  if (!parsed.refused.empty()) ++refused[title() + ": " + parsed.refused];
  const AnyTable* const table = parsed.table.get();
  if (!table) return;
  for (const DescriptorFailure& failure : table->get_descriptor_failures())
    ++refused[title() + ", " + name_of(failure) + ": " + text_of(failure)];
  const auto set_time = [&](std::chrono::sys_seconds utc) {
    time = utc;
    time_at = input.statistics.seconds();
  };
  if (const auto* const network = table->as<Nit>(); network && table_id == kActualNetwork) {
    for (const DescriptorNetworkName& name : network->get_network_name_descriptors())
      network_name = name.get_network_name().utf8();
  } else if (const auto* const clock = table->as<Tdt>()) {
    if (clock->get_utc_time().is_defined()) set_time(clock->get_utc_time().get_time_point());
  } else if (const auto* const offset = table->as<Tot>()) {
    if (offset->get_utc_time().is_defined()) set_time(offset->get_utc_time().get_time_point());
  } else if (const auto* const system = table->as<AtscSTT>()) {
    set_time(detail::utc_of_gps(static_cast<uint32_t>(system->system_time), system->GPS_UTC_offset));
  }
}

std::optional<std::chrono::sys_seconds> Survey::time_now(const Input& input) const {
  if (!time) return std::nullopt;
  return *time + std::chrono::seconds(static_cast<int64_t>(input.statistics.seconds() - time_at));
}

Exit Surveyor::run(Needs needs) {
  needs.repeats = needs.statistics = true;
  return read_inputs(options_, console_, *this, needs);
}

void Surveyor::begin(const Input&) {
  survey_.emplace(options_.choice);
}

void Surveyor::tell_unlisted(const Input& input) const {
  if (survey_->unlisted > 0)
    console_.message(input.name + ": holds more than " + grouped(kMostTables) + " tables; " +
                     grouped(survey_->unlisted) + " sections of others are not listed");
}

void Surveyor::end(const Input& input) {
  tell_unlisted(input);
  if (options_.inputs.size() > 1) {
    console_.print((is_first_ ? "" : "\n") + input.name + ":\n");
    is_first_ = false;
  }
  print(input, *survey_);
  console_.flush();
}

std::vector<const Service*> Surveyor::wanted_services(const Survey& survey) const {
  std::vector<const Service*> out;
  for (const Service* const service : survey.directory.services())
    if (is_wanted(options_.choice, *service)) out.push_back(service);
  if (out.empty() && !options_.choice.services.empty())
    console_.message("no service is " + text_of(options_.choice));
  return out;
}

}  // namespace quillon::app
