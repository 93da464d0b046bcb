#pragma once

#include <quillon/appsignal/int_kinds.h>
#include <quillon/descriptors/dvb_kinds.h>
#include <quillon/descriptors/loop.h>

namespace quillon {

// Each accessor below needs the header of its class: get_target_IP_slash_descriptors() that of
// DescriptorIntTargetIPSlash, <quillon/appsignal/slash.h>.
QUILLON_INT_KINDS(QUILLON_KIND_CLASS)
QUILLON_DVB_KINDS(QUILLON_KIND_CLASS)

// Owns a descriptor loop of the IP/MAC notification table (EN 301 192, 8.4.5). From 0x40 up the tags are
// those of DVB, below it the table has its own: none of MPEG-2 is known here. Tags without a class go to the
// general vector below 128 and to the user private one from 128 up.
class QUILLON_API IntLoop : public DescriptorLoop {
 public:
  IntLoop() noexcept : DescriptorLoop(family) {}

  // Reads one descriptor into the vector of its class. Throws error as that class does.
  void ParseDescriptorInt(ByteView descriptor) { parse_descriptor(descriptor); }

  QUILLON_INT_KINDS(QUILLON_KIND_ACCESSOR)
  QUILLON_DVB_KINDS(QUILLON_KIND_ACCESSOR)

 private:
  static const detail::Family family;
};

}  // namespace quillon
