#pragma once

#include <quillon/descriptors/loop.h>

namespace quillon {

// Each accessor below needs the header of its class: get_routing_descriptors_IPv4() that of
// DescriptorAitRoutingIPv4, <quillon/appsignal/routing.h>.
#define QUILLON_KIND(tag, Class, accessor, element, rank) class Class;
#include <quillon/appsignal/ait_kinds.inc>
#undef QUILLON_KIND
class DescriptorGeneral;

namespace detail {
QUILLON_API extern const Family ait_family;
}

// Owns a descriptor loop of the application information table (TS 102 812, 10.4.6). Tags without a class go
// to the general vector below 128 and to the user private one from 128 up; of the DVB tags 0x5F alone has its
// meaning here.
class QUILLON_API AitLoop : public DescriptorLoop<detail::ait_family> {
 public:
  // Reads one descriptor into the vector of its class. Throws error as that class does.
  void ParseDescriptorAit(ByteView descriptor) { parse_descriptor(descriptor, {descriptor}); }

#define QUILLON_KIND(tag, Class, accessor, element, rank) const std::vector<Class>& get_##accessor() const;
#include <quillon/appsignal/ait_kinds.inc>
#undef QUILLON_KIND
  const std::vector<DescriptorGeneral>& get_general_descriptors() const;
  const std::vector<DescriptorGeneral>& get_user_private_descriptors() const;

 protected:
  // Reports all descriptors but the private data specifiers.
  void dump_loop(std::ostream& stream) const;
};

}  // namespace quillon
