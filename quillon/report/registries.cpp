#include <algorithm>
#include <array>
#include <cstdint>
#include <iterator>
#include <map>
#include <set>
#include <string>
#include <vector>

#include <quillon/platform/code_page.h>
#include <quillon/report/internal/registered_name.h>
#include <quillon/report/internal/registry_file.h>
#include <quillon/report/internal/registry_rows.h>
#include <quillon/report/registries.h>

namespace quillon {

namespace {

constexpr unsigned kPage = 1252;

// The ids from `first` to `last` have one name.
struct IdRange {
  uint32_t first;
  uint32_t last;
  const char* name;
};

// Ranges apart from each other, ascending: the registries give most of their names to whole blocks, so that
// few ranges hold thousands of rows.
using Index = std::vector<IdRange>;

class IndexBuilder {
 public:
  // Its ids lose the names they had before.
  void add(const IdRange& range) {
    auto at = ranges_.lower_bound(range.first);
    if (at != ranges_.begin()) {
      const IdRange before = std::prev(at)->second;
      if (before.last >= range.first) std::prev(at)->second.last = range.first - 1;
      if (before.last > range.last) keep_end(before, range.last);
    }
    while (at != ranges_.end() && at->first <= range.last) {
      if (at->second.last > range.last) keep_end(at->second, range.last);
      at = ranges_.erase(at);
    }
    ranges_.insert_or_assign(range.first, range);
  }

  Index build() const {
    Index index;
    for (const auto& [first, range] : ranges_) {
      if (!index.empty() && index.back().name == range.name && index.back().last + 1 == first)
        index.back().last = range.last;
      else
        index.push_back(range);
    }
    index.shrink_to_fit();
    return index;
  }

 private:
  void keep_end(const IdRange& range, uint32_t after) {
    ranges_.insert_or_assign(after + 1, IdRange{after + 1, range.last, range.name});
  }

  std::map<uint32_t, IdRange> ranges_;
};

Index index_of(std::span<const registry_row> rows) {
  IndexBuilder builder;
  for (auto row = rows.begin(); row != rows.end();) {
    const auto first = static_cast<uint32_t>(row->id);
    IdRange range{first, first, row->name};
    while (++row != rows.end() && row->name == range.name && static_cast<uint32_t>(row->id) == range.last + 1)
      ++range.last;
    builder.add(range);
  }
  return builder.build();
}

const char* find(const Index& index, uint32_t id) {
  const auto next = std::upper_bound(index.begin(), index.end(), id,
                                     [](uint32_t i, const IdRange& range) { return i < range.first; });
  if (next == index.begin() || std::prev(next)->last < id) return nullptr;
  return std::prev(next)->name;
}

struct Registry {
  Index index;
  Index overlay;
};

// Initialized before any code runs: an application may call init from a constructor of its own statics.
constinit std::array<Registry, std::size(detail::registry_lists)> registries;

size_t number_of(registry_kind kind) {
  return static_cast<size_t>(kind);
}

const char* name_of(registry_kind kind, int id) {
  const char* const name = detail::registered_name(kind, id);
  return name ? name : "<unknown>";
}

// Names that were handed out outlive the overlay that they came from.
std::set<std::string>& kept_names() {
  static std::set<std::string> names;
  return names;
}

}  // namespace

const char* detail::registered_name(registry_kind kind, int id) {
  const Registry& registry = registries[number_of(kind)];
  const auto key = static_cast<uint32_t>(id);
  const char* const name = find(registry.overlay, key);
  return name ? name : find(registry.index, key);
}

void init() {
  std::array<Index, registries.size()> indexes;
  for (size_t i = 0; i < indexes.size(); ++i) indexes[i] = index_of(detail::registry_rows[i]);
  for (size_t i = 0; i < indexes.size(); ++i) registries[i].index = std::move(indexes[i]);
}

const char* get_network_id(int id) {
  return name_of(registry_kind::network, id);
}
const char* get_original_network_id(int id) {
  return name_of(registry_kind::original_network, id);
}
const char* get_bouquet_id(int id) {
  return name_of(registry_kind::bouquet, id);
}
const char* get_ca_system_id(int id) {
  return name_of(registry_kind::ca_system, id);
}
const char* get_data_broadcast_id(int id) {
  return name_of(registry_kind::data_broadcast, id);
}
const char* get_mhp_id(int id) {
  return name_of(registry_kind::mhp_organisation, id);
}
const char* get_private_data_id(int id) {
  return name_of(registry_kind::private_data, id);
}

std::span<const registry_row> get_registry_rows(registry_kind kind) {
  return detail::registry_rows[number_of(kind)];
}

void load_registry_overlay(registry_kind kind, const std::filesystem::path& file) {
  IndexBuilder builder;
  std::string name;
  std::set<std::string>& kept = kept_names();
  std::set<std::string> fresh;
  for (const auto& line :
       detail::read_registry_file(file, detail::registry_lists[number_of(kind)].largest_id)) {
    platform::encode(kPage, line.name, name);
    const auto there = kept.find(name);
    const std::string& stays = there != kept.end() ? *there : *fresh.insert(name).first;
    builder.add({line.first, line.last, stays.c_str()});
  }
  registries[number_of(kind)].overlay = builder.build();
  kept.merge(fresh);  // the strings stay where they are, and nothing fails
}

}  // namespace quillon
