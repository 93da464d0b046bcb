#pragma once

#include <quillon/descriptors/loop.h>

namespace quillon {

// Each accessor below needs the header of its class: get_short_event_descriptors() that of
// DescriptorShortEvent, <quillon/descriptors/event/short_event.h>.
#define QUILLON_KIND(tag, Class, accessor, element, rank) class Class;
#define QUILLON_KIND_LOADED_AS(tag, Class, accessor, saved, loaded, rank) class Class;
#include <quillon/descriptors/dvb_kinds.inc>
#include <quillon/descriptors/mpeg2_kinds.inc>
#undef QUILLON_KIND
#undef QUILLON_KIND_LOADED_AS
class DescriptorGeneral;

namespace detail {
QUILLON_API extern const Family dvb_family;
}

// Owns a descriptor loop of MPEG-2 and DVB tables (EN 300 468, 6). Every tag is accepted by every owner:
// those with a class from 0x02 to 0x7C go to the vector of their class, the others to the general vector
// below 128 and to the user private one from 128 up.
class QUILLON_API DvbLoop : public DescriptorLoop<detail::dvb_family> {
 public:
#define QUILLON_KIND(tag, Class, accessor, element, rank) const std::vector<Class>& get_##accessor() const;
#define QUILLON_KIND_LOADED_AS(tag, Class, accessor, saved, loaded, rank) \
  const std::vector<Class>& get_##accessor() const;
#include <quillon/descriptors/dvb_kinds.inc>
#include <quillon/descriptors/mpeg2_kinds.inc>
#undef QUILLON_KIND
#undef QUILLON_KIND_LOADED_AS
  const std::vector<DescriptorGeneral>& get_general_descriptors() const;
  const std::vector<DescriptorGeneral>& get_user_private_descriptors() const;
};

}  // namespace quillon
