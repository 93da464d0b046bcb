#pragma once

// The seven registries with what is known of them.

#include <cstddef>
#include <cstdint>

#include <quillon/report/registries.h>

namespace quillon::test {

// A registry as it was in 2003.
struct Registry {
  registry_kind kind;
  const char* name;
  const char* (*name_of)(int);
  size_t rows;
  size_t ids;
  size_t repeated;  // ids in more than one row
  uint32_t last;
  size_t head;  // rows in front that are out of order
};

inline constexpr Registry kNetwork{
    registry_kind::network, "network_id", get_network_id, 5994, 3591, 1088, 0xFFFF, 1};
inline constexpr Registry kRegistries[] = {
    kNetwork,
    {registry_kind::original_network, "original_network_id", get_original_network_id, 542, 542, 0, 0xFFFE, 2},
    {registry_kind::bouquet, "bouquet_id", get_bouquet_id, 1150, 1150, 0, 0xFD08, 0},
    {registry_kind::ca_system, "CA_system_id", get_ca_system_id, 9362, 9362, 0, 0x4AD1, 0},
    {registry_kind::data_broadcast, "data_broadcast_id", get_data_broadcast_id, 279, 279, 0, 0xFFFF, 0},
    {registry_kind::mhp_organisation, "organisation_id", get_mhp_id, 30, 30, 0, 0x1D, 0},
    {registry_kind::private_data, "private_data_specifier", get_private_data_id, 628, 628, 0, 0xFCFCFCFC, 0},
};

inline constexpr const char* kUnknown = "<unknown>";

}  // namespace quillon::test
