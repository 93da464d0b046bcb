#include <quillon/atsc/service_location.h>
#include <quillon/faces/internal/walk_of.h>
#include <quillon/sections/internal/rows.h>

namespace quillon {

DescriptorAtscServiceLocation::DescriptorAtscServiceLocation(ByteView d)
    : DescriptorAtscWireOnly(d), PCR_PID(d.bits(2, 4, 13)), number_elements(d[4]) {
  const int span = descriptor_length - 3;
  // The other class's name in these two texts is kept: tools match on them.
  if (span / 6 != number_elements) throw error("DescriptorAtscCaptionService: number_elements mismatch (1)");
  if (span % 6 != 0) throw error("DescriptorAtscCaptionService: number_elements mismatch (2)");
  if (!read_rows(elements, d, 5, span, 6))
    throw error("DescriptorAtscServiceLocation: element start end mismatch");
}

DescriptorAtscServiceLocation::Element::Element(ByteView data)
    : stream_type(data[0]), elementary_PID(data.bits(1, 4, 13)) {
  language.parse(data.from(3));
}

const char* DescriptorAtscServiceLocation::Element::get_stream_type_text(int stream_type) {
  switch (stream_type) {
    case 2:
      return "ITU-T Rec. H.262 | ISO/IEC 13818-2 Video [9] or ISO/IEC 11172-2 [17] constrained parameter "
             "video "
             "stream";
    case 6:
      return "PES packets containing A/90 streaming, synchronized data";
    case 11:
      return "DSM-CC sections containing A/90 asynchronous data";
    case 13:
      return "DSM-CC addressable sections per A/90";
    case 20:
      return "DSM-CC sections containing non-streaming, synchronized data per A/90";
    case 129:
      return "Audio per ATSC A/53E [1] Annex B";
    case 149:
      return "Sections conveying A/90 [14] Data Service Table, Network Resources Table";
    case 194:
      return "PES packets containing A/90 [14] streaming, synchronous data";
    default:
      return "";
  }
}

template <class V, class S>
void DescriptorAtscServiceLocation::describe(V& v, S& s) {
  v.field("PCR_PID", s.PCR_PID);
  v.field("number_elements", s.number_elements);
  v.list("elements", "element", s.elements);
}
QUILLON_WALK_OF(DescriptorAtscServiceLocation)

template <class V, class S>
void DescriptorAtscServiceLocation::Element::describe(V& v, S& s) {
  v.coded("stream_type", s.stream_type, s.get_stream_type_text());
  v.field("elementary_PID", s.elementary_PID);
  v.field("language", s.language);
}
QUILLON_WALK_OF(DescriptorAtscServiceLocation::Element)

}  // namespace quillon
