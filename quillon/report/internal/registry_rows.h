#pragma once

#include <cstdint>
#include <iterator>
#include <span>

#include <quillon/report/registries.h>

namespace quillon::detail {

struct RegistryList {
  const char* name;  // of the file, and of its array of rows
  uint32_t largest_id;
};

// In the order of registry_kind.
inline constexpr RegistryList registry_lists[] = {
    {"network_id", 0xFFFF},
    {"original_network_id", 0xFFFF},
    {"bouquet_id", 0xFFFF},
    {"ca_system_id", 0xFFFF},
    {"data_broadcast_id", 0xFFFF},
    {"mhp_organisation_id", 0xFFFFFFFF},
    {"private_data_specifier", 0xFFFFFFFF},
};

// Made from data/registries by the build.
extern const std::span<const registry_row> registry_rows[std::size(registry_lists)];

}  // namespace quillon::detail
