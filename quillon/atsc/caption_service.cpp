#include <quillon/atsc/caption_service.h>

namespace quillon {

DescriptorAtscCaptionService::DescriptorAtscCaptionService(ByteView d)
    : DescriptorAtscWireOnly(d), number_of_services(d.bits(2, 4, 5)) {
  const int span = descriptor_length - 1;
  if (span / 6 != number_of_services)
    throw error("DescriptorAtscCaptionService: number_of_services mismatch (1)");
  if (span % 6 != 0) throw error("DescriptorAtscCaptionService: number_of_services mismatch (2)");
  services.reserve(static_cast<size_t>(number_of_services));
  const bool whole = walk(d, 3, 3 + span, [this](ByteView at, int) {
    services.emplace_back(at);
    return 6;
  });
  if (!whole) throw error("DescriptorAtscCaptionService: service start end mismatch");
}

DescriptorAtscCaptionService::Service::Service(ByteView data)
    : digital_cc(data.bits(3, 7, 1)), easy_reader(data.bits(4, 7, 1)), wide_aspect_ratio(data.bits(4, 6, 1)) {
  language.parse(data);
  if (digital_cc)
    caption_service_number = data.bits(3, 5, 6);
  else
    line21_field = data.bits(3, 5, 5);
}

}  // namespace quillon
