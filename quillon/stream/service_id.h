#pragma once

#include <compare>

#include <quillon/platform/api.h>

namespace quillon {

// The service that event information speaks of. In ATSC it is a source_id, and the other two are -1.
struct ServiceId {
  int original_network_id = -1;
  int transport_stream_id = -1;
  int service_id = 0;

  auto operator<=>(const ServiceId&) const = default;
};

}  // namespace quillon
