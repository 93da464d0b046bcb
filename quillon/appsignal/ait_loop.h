#pragma once

#include <quillon/appsignal/ait_kinds.h>
#include <quillon/descriptors/loop.h>

namespace quillon {

// Each accessor below needs the header of its class: get_routing_descriptors_IPv4() that of
// DescriptorAitRoutingIPv4, <quillon/appsignal/routing.h>.
QUILLON_AIT_KINDS(QUILLON_KIND_CLASS)

// Owns a descriptor loop of the application information table (TS 102 812, 10.4.6). Tags without a class go
// to the general vector below 128 and to the user private one from 128 up; of the DVB tags 0x5F alone has its
// meaning here.
class QUILLON_API AitLoop : public DescriptorLoop {
 public:
  AitLoop() noexcept : DescriptorLoop(family) {}

  // Reads one descriptor into the vector of its class. Throws error as that class does.
  void ParseDescriptorAit(ByteView descriptor) { parse_descriptor(descriptor); }

  QUILLON_AIT_KINDS(QUILLON_KIND_ACCESSOR)

 protected:
  // Reports all descriptors but the private data specifiers.
  void dump_loop(std::ostream& stream) const { dump_descriptors_without(0x5F, stream); }

 private:
  static const detail::Family family;
};

}  // namespace quillon
