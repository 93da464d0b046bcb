#include "apps/quillon/html/contents.h"

#include "apps/quillon/describe.h"
#include "apps/quillon/text.h"

#include <algorithm>
#include <map>
#include <string_view>

namespace quillon::app::html {

namespace {

struct Look {
  const char* class_name;
  const char* title;
};
constexpr Look kLooks[] = {{"c-video", "Video"},
                           {"c-audio", "Audio"},
                           {"c-text", "Subtitles and teletext"},
                           {"c-data", "Data"},
                           {"c-tables", "Tables"},
                           {"c-access", "Conditional access"},
                           {"c-stuffing", "Null packets"},
                           {"c-unknown", "Unknown"}};

// By the words of the directory for it.
Carries kind_of(const ServiceStream& stream) {
  const std::string_view content = stream.content;
  const auto has = [content](const char* word) { return content.find(word) != std::string_view::npos; };
  if (has("video") || has("Video")) return Carries::video;
  if (has("audio") || has("Audio")) return Carries::audio;
  if (has("subtitles") || has("teletext")) return Carries::text;
  return Carries::data;
}

}  // namespace

const char* class_of(Carries carries) {
  return kLooks[static_cast<size_t>(carries)].class_name;
}

const char* title_of(Carries carries) {
  return kLooks[static_cast<size_t>(carries)].title;
}

std::vector<PidContent> contents_of_pids(const Input& input, const Survey& survey) {
  std::map<int, PidContent> known;
  // The first that says what a PID carries counts.
  const auto say = [&known](int pid, Carries carries, std::string brief, std::string owner) {
    known.try_emplace(pid, PidContent{pid, 0, carries, {}, std::move(brief), std::move(owner)});
  };
  const std::vector<const Service*> services = survey.directory.services();
  for (const Service* const service : services) {
    if (!service->is_actual) continue;
    for (const ServiceStream& stream : service->streams)
      say(stream.pid, kind_of(stream), text_of(stream), name_of(*service));
  }
  for (const Service* const service : services) {
    if (!service->is_actual) continue;
    say(service->map_pid, Carries::tables, "PMT of " + name_of(*service), "Tables");
    for (const CaStream& ca : service->ca) say(ca.pid, Carries::access, "ECM", "Conditional access");
  }
  for (const CaStream& ca : survey.directory.emms())
    say(ca.pid, Carries::access, "EMM", "Conditional access");
  for (const Service* const service : services)
    if (service->is_actual) say(service->pcr_pid, Carries::data, "PCR", name_of(*service));
  for (const auto& [id, table] : survey.tables)
    say(id.pid, Carries::tables, table_name(id.table_id, input.standard), "Tables");
  known[TsPacket::null_pid] = {TsPacket::null_pid, 0, Carries::stuffing, {}, "null packets", "Null packets"};

  const std::map<int, std::string> texts = app::contents_of(survey, input.standard);
  std::vector<PidContent> out;
  for (int pid = 0; pid < TsPacket::pids; ++pid) {
    const uint64_t packets = input.statistics.pid(pid).packets;
    if (packets == 0) continue;
    const auto found = known.find(pid);
    PidContent content = found != known.end() ? found->second : PidContent{pid, 0,         Carries::unknown,
                                                                           {},  "unknown", "Other PIDs"};
    content.packets = packets;
    if (const auto text = texts.find(pid); text != texts.end()) content.text = text->second;
    out.push_back(std::move(content));
  }
  std::stable_sort(out.begin(), out.end(),
                   [](const PidContent& a, const PidContent& b) { return a.packets > b.packets; });
  return out;
}

}  // namespace quillon::app::html
