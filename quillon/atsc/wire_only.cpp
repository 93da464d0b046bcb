// The walks of the classes that are little more than bytes.

#include <quillon/atsc/content_identifier.h>
#include <quillon/atsc/private_information.h>
#include <quillon/atsc/redistribution_control.h>
#include <quillon/atsc/stuffing.h>
#include <quillon/faces/internal/walk_of.h>

namespace quillon {

template <class V, class S>
void DescriptorAtscStuffing::describe(V& v, S& s) {
  v.field("data", s.data);
}
QUILLON_WALK_OF(DescriptorAtscStuffing)

template <class V, class S>
void DescriptorAtscRedistributionControl::describe(V& v, S& s) {
  v.field("data", s.data);
}
QUILLON_WALK_OF(DescriptorAtscRedistributionControl)

template <class V, class S>
void DescriptorAtscATSCPrivateInformation::describe(V& v, S& s) {
  v.standard("format_identifier", s.format_identifier);
  v.standard("private_data_byte", s.private_data);
}
QUILLON_WALK_OF(DescriptorAtscATSCPrivateInformation)

template <class V, class S>
void DescriptorAtscContentIdentifier::describe(V& v, S& s) {
  v.standard("data", s.data);
}
QUILLON_WALK_OF(DescriptorAtscContentIdentifier)

}  // namespace quillon
