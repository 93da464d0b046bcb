#pragma once

#include <quillon/descriptors/dvb_kinds.h>
#include <quillon/descriptors/loop.h>
#include <quillon/descriptors/mpeg2_kinds.h>

namespace quillon {

// Each accessor below needs the header of its class: get_short_event_descriptors() that of
// DescriptorShortEvent, <quillon/descriptors/event/short_event.h>.
QUILLON_DVB_KINDS(QUILLON_KIND_CLASS)
QUILLON_MPEG2_KINDS(QUILLON_KIND_CLASS)

// Owns a descriptor loop of MPEG-2 and DVB tables (EN 300 468, 6). Every tag is accepted by every owner:
// those with a class from 0x02 to 0x7C go to the vector of their class, the others to the general vector
// below 128 and to the user private one from 128 up.
class QUILLON_API DvbLoop : public DescriptorLoop {
 public:
  DvbLoop() noexcept : DescriptorLoop(family) {}

  QUILLON_DVB_KINDS(QUILLON_KIND_ACCESSOR)
  QUILLON_MPEG2_KINDS(QUILLON_KIND_ACCESSOR)

 private:
  static const detail::Family family;
};

}  // namespace quillon
