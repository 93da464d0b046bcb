#include "apps/quillon/html/damage_list.h"

#include "apps/quillon/text.h"

#include <utility>

namespace quillon::app::html {

namespace {

constexpr uint64_t kMostOfAKind = 200;

struct Look {
  const char* id;
  const char* title;
};
constexpr Look kLooks[] = {
    {"sync-losses", "Sync losses"},           {"continuity-errors", "Continuity errors"},
    {"transport-errors", "Transport errors"}, {"wrong-crcs", "Sections with a wrong CRC"},
    {"refused-sections", "Refused sections"}, {"refused-descriptors", "Refused descriptors"},
};

}  // namespace

const char* DamageList::id_of(Kind kind) {
  return kLooks[kind].id;
}

const char* DamageList::title_of(Kind kind) {
  return kLooks[kind].title;
}

void DamageList::add(Kind kind, uint64_t packet, int pid, double seconds, std::string what) {
  if (counts_[kind]++ < kMostOfAKind) items_.push_back({kind, packet, pid, seconds, std::move(what)});
}

void DamageList::push(const Input& input, const TsPacket& packet) {
  const int pid = packet.pid();
  const double now = input.statistics.seconds();
  if (packet.after_gap && packet.index > 0)
    add(sync_loss, packet.index, pid, now, "the packet does not follow the one before it");
  if (packet.has_error()) add(transport_error, packet.index, pid, now, "the packet says that it is damaged");
  uint64_t& known = continuity_[static_cast<size_t>(pid)];
  const uint64_t errors = input.statistics.pid(pid).continuity_errors;
  if (errors != known) add(continuity, packet.index, pid, now, "packets before this one are missing");
  known = errors;
}

void DamageList::push(const Input& input, const StreamSection& section, const ParsedTable& parsed) {
  const auto add_here = [&](Kind kind, const std::string& what) {
    add(kind, section.packet, section.pid, input.statistics.seconds(),
        table_title(section.table_id(), input.standard) + ": " + what);
  };
  if (section.has_crc && !section.crc_ok) add_here(wrong_crc, "the CRC is wrong");
  if (!parsed.refused.empty()) add_here(refused_section, parsed.refused);
  if (!parsed.table) return;
  for (const DescriptorFailure& failure : parsed.table->get_descriptor_failures())
    add_here(refused_descriptor, name_of(failure) + ": " + text_of(failure));
}

}  // namespace quillon::app::html
