#include <quillon/atsc/caption_service.h>
#include <quillon/faces/internal/walk_of.h>
#include <quillon/sections/internal/rows.h>

namespace quillon {

DescriptorAtscCaptionService::DescriptorAtscCaptionService(ByteView d)
    : DescriptorAtscWireOnly(d), number_of_services(d.bits(2, 4, 5)) {
  const int span = descriptor_length - 1;
  if (span / 6 != number_of_services)
    throw error("DescriptorAtscCaptionService: number_of_services mismatch (1)");
  if (span % 6 != 0) throw error("DescriptorAtscCaptionService: number_of_services mismatch (2)");
  if (!read_rows(services, d, 3, span, 6))
    throw error("DescriptorAtscCaptionService: service start end mismatch");
}

DescriptorAtscCaptionService::Service::Service(ByteView data)
    : digital_cc(data.bits(3, 7, 1)), easy_reader(data.bits(4, 7, 1)), wide_aspect_ratio(data.bits(4, 6, 1)) {
  language.parse(data);
  if (digital_cc)
    caption_service_number = data.bits(3, 5, 6);
  else
    // Quirk: DescriptorAtscCaptionService line21_field
    line21_field = data.standard() ? data.bits(3, 0, 1) : data.bits(3, 5, 5);
}

template <class V, class S>
void DescriptorAtscCaptionService::describe(V& v, S& s) {
  v.field("number_of_services", s.number_of_services);
  v.list("services", "service", s.services);
}
QUILLON_WALK_OF(DescriptorAtscCaptionService)

template <class V, class S>
void DescriptorAtscCaptionService::Service::describe(V& v, S& s) {
  v.field("language", s.language);
  v.field("digital_cc", s.digital_cc);
  v.field("caption_service_number", s.caption_service_number);
  v.field("line21_field", s.line21_field);
  v.field("easy_reader", s.easy_reader);
  v.field("wide_aspect_ratio", s.wide_aspect_ratio);
}
QUILLON_WALK_OF(DescriptorAtscCaptionService::Service)

}  // namespace quillon
