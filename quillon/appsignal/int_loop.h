#pragma once

#include <quillon/descriptors/loop.h>

namespace quillon {

// Each accessor below needs the header of its class: get_target_IP_slash_descriptors() that of
// DescriptorIntTargetIPSlash, <quillon/appsignal/slash.h>.
#define QUILLON_KIND(tag, Class, accessor, element, rank) class Class;
#include <quillon/appsignal/int_kinds.inc>
#include <quillon/descriptors/dvb_kinds.inc>
#undef QUILLON_KIND
class DescriptorGeneral;

namespace detail {
QUILLON_API extern const Family int_family;
}

// Owns a descriptor loop of the IP/MAC notification table (EN 301 192, 8.4.5). From 0x40 up the tags are
// those of DVB, below it the table has its own: none of MPEG-2 is known here. Tags without a class go to the
// general vector below 128 and to the user private one from 128 up.
class QUILLON_API IntLoop : public DescriptorLoop<detail::int_family> {
 public:
  // Reads one descriptor into the vector of its class. Throws error as that class does.
  void ParseDescriptorInt(ByteView descriptor) { parse_descriptor(descriptor, {descriptor}); }

#define QUILLON_KIND(tag, Class, accessor, element, rank) const std::vector<Class>& get_##accessor() const;
#include <quillon/appsignal/int_kinds.inc>
#include <quillon/descriptors/dvb_kinds.inc>
#undef QUILLON_KIND
  const std::vector<DescriptorGeneral>& get_general_descriptors() const;
  const std::vector<DescriptorGeneral>& get_user_private_descriptors() const;
};

}  // namespace quillon
