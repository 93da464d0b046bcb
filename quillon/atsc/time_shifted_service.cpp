#include <quillon/atsc/time_shifted_service.h>

namespace quillon {

DescriptorAtscTimeShiftedService::DescriptorAtscTimeShiftedService(ByteView d)
    : DescriptorAtscWireOnly(d), number_of_services(d[2]) {
  const int span = descriptor_length - 1;
  if (span / 5 != number_of_services)
    throw error("DescriptorAtscTimeShiftedService: number_of_services mismatch (1)");
  if (span % 5 != 0) throw error("DescriptorAtscTimeShiftedService: number_of_services mismatch (2)");
  services.reserve(static_cast<size_t>(number_of_services));
  const bool whole = walk(d, 3, 3 + span, [this](ByteView at, int) {
    services.emplace_back(at);
    return 5;
  });
  if (!whole) throw error("DescriptorAtscTimeShiftedService: service start end mismatch");
}

}  // namespace quillon
