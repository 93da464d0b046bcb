#include "apps/quillon/html/section_sample.h"

#include <algorithm>

namespace quillon::app::html {

namespace {

// What a section takes beside its bytes.
constexpr size_t kOverhead = sizeof(KeptSection) + 32;

void clear(SectionSample::Group& group) {
  group.kept.clear();
  group.bytes = 0;
}

}  // namespace

void SectionSample::push(const StreamSection& section, double seconds) {
  ++met_;
  const Key key{section.pid, section.table_id()};
  if (groups_.size() == kMostGroups && !groups_.contains(key)) return;
  Group& group = groups_[key];
  if (group.met++ % group.stride != 0) return;
  group.kept.push_back({section.pid, section.packet, seconds, !section.has_crc || section.crc_ok,
                        std::vector<uint8_t>(section.bytes, section.bytes + section.size)});
  group.bytes += section.size + kOverhead;
  bytes_ += section.size + kOverhead;
  while (bytes_ > kMostBytes) {
    Group& largest = std::max_element(groups_.begin(), groups_.end(), [](const auto& a, const auto& b) {
                       return a.second.bytes < b.second.bytes;
                     })->second;
    Group& goes = largest.kept.size() > 1 ? largest : group;
    bytes_ -= goes.bytes;
    goes.kept.size() > 1 ? thin(goes) : clear(goes);
    bytes_ += goes.bytes;
  }
}

void SectionSample::thin(Group& group) {
  size_t left = 0;
  for (size_t at = 0; at < group.kept.size(); at += 2) std::swap(group.kept[left++], group.kept[at]);
  group.kept.resize(left);
  group.stride *= 2;
  group.bytes = 0;
  for (const KeptSection& section : group.kept) group.bytes += section.bytes.size() + kOverhead;
}

std::vector<const KeptSection*> SectionSample::of_table(int table_id) const {
  std::vector<const KeptSection*> out;
  for (const auto& [key, group] : groups_)
    if (key.second == table_id)
      for (const KeptSection& section : group.kept) out.push_back(&section);
  std::stable_sort(out.begin(), out.end(),
                   [](const KeptSection* a, const KeptSection* b) { return a->packet < b->packet; });
  return out;
}

}  // namespace quillon::app::html
