#include <quillon/descriptors/av/vbi.h>
#include <quillon/faces/internal/describe.h>
#include <quillon/sections/internal/rows.h>

namespace quillon {

DescriptorVBIData::DescriptorVBIData(ByteView d) : DescriptorBase(d) {
  if (!read_uneven_rows(vbi_service_data, d, 2, descriptor_length)) throw error(error::bad_value);
}

template <class V, class S>
void DescriptorVBIData::describe(V& v, S& s) {
  v.list("vbiservicedata", "vbi", s.vbi_service_data);
}
QUILLON_FACES_OF(DescriptorVBIData, "VBI_data_descriptor")

template <class V, class S>
void DescriptorVBIData::VBIServiceData::describe(V& v, S& s) {
  v.field("data_service_id", s.data_service_id);
  v.field("data_service_descriptor_length", s.data_service_descriptor_length);
  v.bytes("data", s.data);
}
QUILLON_SILENT_RECORD_FACES_OF(DescriptorVBIData::VBIServiceData)

DescriptorVBITeletext::DescriptorVBITeletext(ByteView d) : DescriptorBase(d) {
  if (descriptor_length % VBITeleTextData::size != 0) throw error(error::bad_loop_unit);
  read_rows(vbi_teletext_data, d, 2, descriptor_length, VBITeleTextData::size);
}

template <class V, class S>
void DescriptorVBITeletext::describe(V& v, S& s) {
  v.list("vbiteletextdata", "vbi", s.vbi_teletext_data);
}
QUILLON_FACES_OF(DescriptorVBITeletext, "VBI_teletext_descriptor")

template <class V, class S>
void DescriptorVBITeletext::VBITeleTextData::describe(V& v, S& s) {
  v.field("teletext_type", s.teletext_type);
  v.field("teletext_magazine_number", s.teletext_magazine_number);
  v.field("teletext_page_number", s.teletext_page_number);
  v.field("ISO_639_language_code", s.language);
}
QUILLON_SILENT_RECORD_FACES_OF(DescriptorVBITeletext::VBITeleTextData)

}  // namespace quillon
