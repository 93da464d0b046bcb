#include "apps/quillon/choice.h"

#include "apps/quillon/text.h"

#include <algorithm>
#include <optional>
#include <string_view>

#include <quillon/stream/internal/table_ids.h>

namespace quillon::app {

namespace {

constexpr int kMap = 0x02;
constexpr int kAtscEvents = 0xCB;
constexpr int kAtscTexts = 0xCC;

bool is_of(const std::vector<int>& values, int value) {
  return values.empty() || std::find(values.begin(), values.end(), value) != values.end();
}

bool is_same_name(std::string_view a, std::string_view b) {
  const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; };
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [lower](char x, char y) { return lower(x) == lower(y); });
}

}  // namespace

bool is_wanted(const Choice& choice, const StreamSection& section) {
  if (section.pid >= 0 && !is_of(choice.pids, section.pid)) return false;
  // A short section has neither an extension nor a version.
  const auto in_header = [&section](int value) { return section.is_long() ? value : -1; };
  return is_of(choice.tables, section.table_id()) &&
         is_of(choice.extensions, in_header(section.extension())) &&
         is_of(choice.versions, in_header(section.version())) &&
         (!choice.only_current || section.is_current());
}

bool is_wanted(const Choice& choice, const Service& service) {
  const std::string channel =
      std::to_string(service.major_channel_number) + "." + std::to_string(service.minor_channel_number);
  const auto names = [&](const std::string& text) {
    return number_from(text) == service.service_id || is_same_name(text, service.name) ||
           (service.major_channel_number >= 0 && text == channel);
  };
  return choice.services.empty() || std::any_of(choice.services.begin(), choice.services.end(), names);
}

std::string text_of(const Choice& choice) {
  std::string text;
  const auto add = [&text](const std::string& part) { text.append(text.empty() ? "" : " ").append(part); };
  for (const int pid : choice.pids) add("--pid " + pid_text(pid));
  for (const int table : choice.tables) add("--table " + hex(static_cast<unsigned>(table), 2));
  for (const std::string& service : choice.services) add("--service " + service);
  for (const int extension : choice.extensions) add("--extension " + std::to_string(extension));
  for (const int version : choice.versions) add("--version " + std::to_string(version));
  if (choice.only_current) add("--only-current");
  return text;
}

ServiceSections::ServiceSections(const Choice& choice)
    : choice_(choice), tables_([this](const TableEvent& event) {
        directory_.push(event);
        is_old_ = true;
      }) {
  for (const std::string& service : choice.services)
    if (const std::optional<int64_t> number = number_from(service)) numbers_.insert(*number);
}

void ServiceSections::learn(const StreamSection& section) {
  if (!choice_.services.empty()) tables_.push(section);
}

void ServiceSections::look_up() {
  programs_.clear();
  events_.clear();
  pids_.clear();
  for (const Service* const service : directory_.services()) {
    if (!app::is_wanted(choice_, *service)) continue;
    events_.push_back(service->id());
    if (!service->is_actual) continue;
    programs_.insert(service->service_id);
    for (const ServiceStream& stream : service->streams) pids_.insert(stream.pid);
  }
  is_old_ = false;
}

// An id of -1 is not known.
bool ServiceSections::has_events(const ServiceId& id) const {
  return std::any_of(events_.begin(), events_.end(), [&id](const ServiceId& known) {
    return known.service_id == id.service_id &&
           (known.transport_stream_id < 0 || known.transport_stream_id == id.transport_stream_id) &&
           (known.original_network_id < 0 || known.original_network_id == id.original_network_id);
  });
}

bool ServiceSections::is_wanted(const StreamSection& section) {
  if (choice_.services.empty()) return true;
  if (is_old_) look_up();
  const int id = section.table_id();
  if (id == kMap) return programs_.contains(section.extension()) || numbers_.contains(section.extension());
  const TableId table = TableId::of(section);
  if (detail::is_event_information(id))
    return has_events({table.original_network_id, table.transport_stream_id, table.extension}) ||
           numbers_.contains(table.extension);
  if (id == kAtscEvents) return has_events({-1, -1, table.extension});
  if (id == kAtscTexts) return has_events({-1, -1, static_cast<int>(table.further_id >> 16)});
  return pids_.contains(section.pid);
}

}  // namespace quillon::app
