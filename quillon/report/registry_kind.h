#pragma once

#include <quillon/platform/api.h>

namespace quillon {

// The registries of DVB identifiers (<quillon/report/registries.h>).
enum class registry_kind {
  network,
  original_network,
  bouquet,
  ca_system,
  data_broadcast,
  mhp_organisation,
  private_data,
};

}  // namespace quillon
