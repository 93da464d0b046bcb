#pragma once

#include <quillon/atsc/atsc_kinds.h>
#include <quillon/descriptors/loop.h>
#include <quillon/descriptors/mpeg2_kinds.h>

namespace quillon {

// Each accessor below needs the header of its class: get_atsc_genre_descriptor() that of DescriptorAtscGenre,
// <quillon/atsc/genre.h>.
QUILLON_ATSC_KINDS(QUILLON_KIND_CLASS)
QUILLON_MPEG2_KINDS(QUILLON_KIND_CLASS)

// Owns a descriptor loop of ATSC tables (A/65, 6.9). Every tag is accepted by every owner: those with a class
// go to the vector of their class, the others to the general vector below 128 and to the user private one
// from 128 up. A descriptor that its class refuses goes to the general vector, whatever its tag, and
// by its tag in the standard reading.
class QUILLON_API AtscLoop : public DescriptorLoop {
 public:
  AtscLoop() noexcept : DescriptorLoop(family) {}

  // Reads one descriptor into the vector of its tag; the view is on the tag byte.
  void ParseDescriptor(ByteView descriptor) { parse_descriptor(descriptor); }

#define QUILLON_ATSC_ACCESSOR(tag, Class, accessor, element) \
  const std::vector<Class>& get_atsc_##accessor() const;
  QUILLON_ATSC_KINDS(QUILLON_KIND_ACCESSOR)
  QUILLON_MPEG2_KINDS(QUILLON_ATSC_ACCESSOR)
#undef QUILLON_ATSC_ACCESSOR

 private:
  static const detail::Family family;
};

}  // namespace quillon
