#include <quillon/atsc/time_shifted_service.h>
#include <quillon/faces/internal/walk_of.h>
#include <quillon/sections/internal/rows.h>

namespace quillon {

DescriptorAtscTimeShiftedService::DescriptorAtscTimeShiftedService(ByteView d)
    : DescriptorAtscWireOnly(d),
      // Quirk: DescriptorAtscTimeShiftedService number_of_services
      number_of_services(d.standard() ? d.bits(2, 4, 5) : d[2]) {
  const int span = descriptor_length - 1;
  if (span / 5 != number_of_services)
    throw error("DescriptorAtscTimeShiftedService: number_of_services mismatch (1)");
  if (span % 5 != 0) throw error("DescriptorAtscTimeShiftedService: number_of_services mismatch (2)");
  if (!read_rows(services, d, 3, span, 5))
    throw error("DescriptorAtscTimeShiftedService: service start end mismatch");
}

template <class V, class S>
void DescriptorAtscTimeShiftedService::describe(V& v, S& s) {
  v.field("number_of_services", s.number_of_services);
  v.list("services", "service", s.services);
}
QUILLON_WALK_OF(DescriptorAtscTimeShiftedService)

template <class V, class S>
void DescriptorAtscTimeShiftedService::Service::describe(V& v, S& s) {
  v.field("time_shift", s.time_shift);
  v.field("major_channel_number", s.major_channel_number);
  v.field("minor_channel_number", s.minor_channel_number);
}
QUILLON_WALK_OF(DescriptorAtscTimeShiftedService::Service)

}  // namespace quillon
