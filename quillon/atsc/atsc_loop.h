#pragma once

#include <quillon/descriptors/loop.h>

namespace quillon {

// Each accessor below needs the header of its class: get_atsc_genre_descriptor() that of DescriptorAtscGenre,
// <quillon/atsc/genre.h>.
#define QUILLON_KIND(tag, Class, accessor, element, rank) class Class;
#define QUILLON_KIND_LOADED_AS(tag, Class, accessor, saved, loaded, rank) class Class;
#include <quillon/atsc/atsc_kinds.inc>
#include <quillon/descriptors/mpeg2_kinds.inc>
#undef QUILLON_KIND
#undef QUILLON_KIND_LOADED_AS
class DescriptorGeneral;

namespace detail {
QUILLON_API extern const Family atsc_family;
}

// Owns a descriptor loop of ATSC tables (A/65, 6.9). Every tag is accepted by every owner: those with a class
// go to the vector of their class, the others to the general vector below 128 and to the user private one
// from 128 up. A descriptor that its class refuses goes to the general vector, whatever its tag.
class QUILLON_API AtscLoop : public DescriptorLoop<detail::atsc_family> {
 public:
  // Reads one descriptor into the vector of its tag; the view is on the tag byte.
  void ParseDescriptor(ByteView descriptor) { parse_descriptor(descriptor, {descriptor}); }

#define QUILLON_KIND(tag, Class, accessor, element, rank) const std::vector<Class>& get_##accessor() const;
#include <quillon/atsc/atsc_kinds.inc>
#undef QUILLON_KIND
#define QUILLON_KIND(tag, Class, accessor, element, rank) \
  const std::vector<Class>& get_atsc_##accessor() const;
#define QUILLON_KIND_LOADED_AS(tag, Class, accessor, saved, loaded, rank) \
  const std::vector<Class>& get_atsc_##accessor() const;
#include <quillon/descriptors/mpeg2_kinds.inc>
#undef QUILLON_KIND
#undef QUILLON_KIND_LOADED_AS
  const std::vector<DescriptorGeneral>& get_general_descriptors() const;
  const std::vector<DescriptorGeneral>& get_user_private_descriptors() const;
};

}  // namespace quillon
