#include "apps/quillon/describe.h"

#include "apps/quillon/text.h"

#include <algorithm>
#include <optional>
#include <set>

#include <quillon/platform/utf8.h>
#include <quillon/report/registries.h>

namespace quillon::app {

namespace {

std::string joined(const std::vector<std::string>& parts, const char* separator) {
  std::string out;
  for (const std::string& part : parts) out.append(out.empty() ? "" : separator).append(part);
  return out;
}

// Those that the choice names, and those of its services; none if it names neither.
std::optional<std::set<int>> wanted_pids(const Choice& choice, const Survey& survey) {
  if (choice.pids.empty() && choice.services.empty()) return std::nullopt;
  std::set<int> out(choice.pids.begin(), choice.pids.end());
  for (const Service* const service : survey.directory.services()) {
    if (choice.services.empty() || !service->is_actual || !is_wanted(choice, *service)) continue;
    out.insert({service->map_pid, service->pcr_pid});
    for (const ServiceStream& stream : service->streams) out.insert(stream.pid);
    for (const CaStream& ca : service->ca) out.insert(ca.pid);
  }
  return out;
}

std::string versions_text(const SeenTable& table) {
  std::vector<std::string> parts;
  for (const int version : table.versions) parts.push_back(std::to_string(version));
  // Of one that changes for ever, the newest.
  constexpr size_t most = 4;
  const bool is_cut = parts.size() > most;
  if (is_cut) parts.erase(parts.begin(), parts.end() - most);
  return (is_cut ? "... " : "") + joined(parts, ", ");
}

}  // namespace

std::string number_of(const Service& service) {
  if (service.major_channel_number >= 0)
    return std::to_string(service.major_channel_number) + "." + std::to_string(service.minor_channel_number);
  return std::to_string(service.service_id);
}

std::string name_of(const Service& service) {
  return service.name.empty() ? "program " + std::to_string(service.service_id) : service.name;
}

std::map<ServiceId, const Service*> by_id(const ServiceDirectory& services) {
  std::map<ServiceId, const Service*> out;
  for (const Service* const service : services.services()) out.try_emplace(service->id(), service);
  return out;
}

const char* running_text(int running_status) {
  constexpr const char* texts[] = {"undefined", "not running", "starts in a few seconds",
                                   "pausing",   "running",     "off-air"};
  return running_status >= 0 && running_status < 6 ? texts[running_status] : nullptr;
}

const char* running_remark(int running_status) {
  const char* const text = running_status == 0 ? nullptr : running_text(running_status);
  return text ? text : "";
}

std::string text_of(const ServiceStream& stream) {
  std::string out = stream.content;
  if (!stream.languages.empty()) out += " (" + joined(stream.languages, ", ") + ")";
  return out;
}

std::string text_of(const std::vector<CaStream>& ca) {
  std::set<int> systems;
  for (const CaStream& stream : ca) systems.insert(stream.ca_system_id);
  std::vector<std::string> parts;
  parts.reserve(systems.size());
  for (const int system : systems)
    parts.push_back(hex(static_cast<unsigned>(system), 4) + " " +
                    platform::to_utf8(1252, get_ca_system_id(system)));
  return joined(parts, ", ");
}

std::string text_of(const std::vector<ServiceStream>& streams) {
  std::vector<std::pair<std::string, int>> counts;
  for (const ServiceStream& stream : streams) {
    const std::string text = text_of(stream);
    const auto same =
        std::find_if(counts.begin(), counts.end(), [&text](const auto& c) { return c.first == text; });
    same == counts.end() ? void(counts.emplace_back(text, 1)) : void(++same->second);
  }
  std::vector<std::string> parts;
  parts.reserve(counts.size());
  for (const auto& [text, count] : counts)
    parts.push_back(count == 1 ? text : std::to_string(count) + " x " + text);
  return joined(parts, ", ");
}

std::map<int, std::string> contents_of(const Survey& survey, Standard standard) {
  std::map<int, std::set<std::string>> parts;
  for (const auto& [id, table] : survey.tables) parts[id.pid].insert(table_name(id.table_id, standard));
  for (const Service* const service : survey.all_services().services()) {
    if (!service->is_actual) continue;
    const std::string of = " of " + name_of(*service);
    if (service->map_pid >= 0) parts[service->map_pid].insert("PMT" + of);
    const auto is_pcr = [service](const ServiceStream& stream) { return stream.pid == service->pcr_pid; };
    for (const ServiceStream& stream : service->streams) parts[stream.pid].insert(text_of(stream) + of);
    if (service->pcr_pid >= 0 && service->pcr_pid != TsPacket::null_pid &&
        std::none_of(service->streams.begin(), service->streams.end(), is_pcr))
      parts[service->pcr_pid].insert("PCR" + of);
    for (const CaStream& ca : service->ca) parts[ca.pid].insert("ECM of " + text_of(std::vector{ca}));
  }
  for (const CaStream& ca : survey.all_services().emms())
    parts[ca.pid].insert("EMM of " + text_of(std::vector{ca}));
  parts[TsPacket::null_pid] = {"null packets"};
  std::map<int, std::string> out;
  for (auto& [pid, texts] : parts) {
    // The map is named with its service.
    if (texts.contains("PMT") && texts.lower_bound("PMT ") != texts.end() &&
        texts.lower_bound("PMT ")->starts_with("PMT "))
      texts.erase("PMT");
    out[pid] = joined({texts.begin(), texts.end()}, ", ");
  }
  return out;
}

std::string rate_text(double bit_rate) {
  if (bit_rate >= 1e6) return fixed(bit_rate / 1e6, 3, "Mbit/s");
  return fixed(bit_rate / 1e3, 1, "kbit/s");
}

std::string share_text(uint64_t part, uint64_t whole) {
  return whole == 0 ? "" : fixed(100.0 * static_cast<double>(part) / static_cast<double>(whole), 1, "%");
}

std::vector<std::string> troubles_of(const Options& options, const Input& input, const Survey& survey) {
  const std::optional<std::set<int>> wanted = wanted_pids(options.choice, survey);
  std::vector<std::string> out;
  const auto add = [&out](uint64_t count, const std::string& what) {
    if (count > 0) out.push_back(grouped(count) + " " + what);
  };
  add(input.packets.skipped(), "bytes that belong to no packet");
  add(input.packets.sync_losses(), "losses of synchronisation");
  for (int pid = 0; pid < TsPacket::pids; ++pid) {
    if (wanted && !wanted->contains(pid)) continue;
    const PidStatistics& counts = input.statistics.pid(pid);
    add(counts.continuity_errors, "continuity errors on PID " + pid_text(pid));
    add(counts.transport_errors, "packets with an error on PID " + pid_text(pid));
  }
  for (const auto& [pid, count] : survey.crc_errors)
    add(count, "sections with a wrong CRC" + (pid < 0 ? "" : " on PID " + pid_text(pid)));
  for (const auto& [what, count] : survey.refused) add(count, "refused: " + what);
  return out;
}

Columns table_columns(const Input& input, const Survey& survey) {
  std::map<TableId, TableRepetition> repetitions;
  for (const TableRepetition& r : input.statistics.tables()) repetitions[r] = r;
  Columns out({5, 6, 7, 8}, {"PID", "table", "extension", "version", "sections", "sent", "smallest", "mean",
                             "largest interval"});
  for (const auto& [id, table] : survey.tables) {
    const auto number = [](int value) { return hex(static_cast<unsigned>(value), 4); };
    std::string extension = number(id.extension);
    if (id.further_id != 0) extension += " of " + hex(id.further_id, 8);
    if (id.original_network_id != 0) extension += " of " + number(id.original_network_id);
    if (id.transport_stream_id != 0) extension += "." + number(id.transport_stream_id);
    const auto found = repetitions.find(id);
    const bool is_timed = found != repetitions.end() && found->second.intervals > 0;
    const auto interval = [&](double TableRepetition::*part) {
      return is_timed ? seconds_text(found->second.*part) : std::string();
    };
    out.add({pid_text(id.pid), table_title(id.table_id, input.standard), extension,
             versions_text(table) + (id.is_current ? "" : " (next)"),
             std::to_string(table.section_numbers.count()) + " of " +
                 std::to_string(table.last_section_number + 1),
             grouped(table.sections), interval(&TableRepetition::smallest), interval(&TableRepetition::mean),
             interval(&TableRepetition::largest)});
  }
  return out;
}

Columns table_kind_columns(const Input& input, const Survey& survey) {
  struct Kind {
    size_t tables = 0;
    size_t sections = 0;
    uint64_t sent = 0;
  };
  std::map<std::pair<int, int>, Kind> kinds;
  for (const auto& [id, table] : survey.tables) {
    Kind& kind = kinds[{id.pid, id.table_id}];
    ++kind.tables;
    kind.sections += table.section_numbers.count();
    kind.sent += table.sections;
  }
  Columns out({2, 3, 4}, {"PID", "table", "tables", "sections", "sent"});
  for (const auto& [id, kind] : kinds)
    out.add({pid_text(id.first), table_title(id.second, input.standard), grouped(kind.tables),
             grouped(kind.sections), grouped(kind.sent)});
  return out;
}

Columns pid_columns(const Options& options, const Input& input, const Survey& survey) {
  const std::map<int, std::string> contents = contents_of(survey, input.standard);
  const std::optional<std::set<int>> wanted = wanted_pids(options.choice, survey);
  Columns out({1, 2, 3}, {"PID", "packets", "rate", "share", "content", "trouble"});
  for (int pid = 0; pid < TsPacket::pids; ++pid) {
    const PidStatistics& counts = input.statistics.pid(pid);
    if (counts.packets == 0 || (wanted && !wanted->contains(pid))) continue;
    std::vector<std::string> troubles;
    const auto add = [&troubles](uint64_t count, const char* what) {
      if (count > 0) troubles.push_back(grouped(count) + " " + what);
    };
    add(counts.scrambled, "scrambled");
    add(counts.continuity_errors, "discontinuous");
    add(counts.transport_errors, "with errors");
    add(counts.duplicates, "twice");
    const auto content = contents.find(pid);
    const double rate = input.statistics.bit_rate(pid);
    out.add({pid_text(pid), grouped(counts.packets), rate > 0 ? rate_text(rate) : "",
             share_text(counts.packets, input.statistics.packets()),
             content == contents.end() ? "" : content->second, joined(troubles, ", ")});
  }
  return out;
}

}  // namespace quillon::app
