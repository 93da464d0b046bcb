#include <quillon/descriptors/data/data_broadcast.h>
#include <quillon/faces/internal/describe.h>
#include <quillon/sections/internal/rows.h>

namespace quillon {

DescriptorDataBroadcast::DescriptorDataBroadcast(ByteView d)
    : DescriptorBase(d),
      data_broadcast_id(d.u16(2)),
      component_tag(d[4]),
      selector_length(d[5]),
      selector_bytes(d.bytes(6, selector_length)),
      textlength(d[9 + selector_length]),
      // Quirk: DescriptorDataBroadcast text, DescriptorAitApplicationName
      text(d.standard() ? WireText::from_dvb(d.present(10 + selector_length, textlength))
                        : WireText(d.chars(10 + selector_length, textlength))) {
  language.parse(d.from(6 + selector_length));
}

template <class V, class S>
void DescriptorDataBroadcast::describe(V& v, S& s) {
  v.coded("data_broadcast_id", s.data_broadcast_id, registry_kind::data_broadcast);
  v.field("component_tag", s.component_tag);
  v.field("selector_length", s.selector_length);
  v.field("language_code", s.language);
  v.field("textlength", s.textlength);
  v.field("text", s.text);
  v.bytes("selector_bytes", s.selector_bytes);
}
QUILLON_SILENT_FACES_OF(DescriptorDataBroadcast, "data_broadcast_descriptor")

DescriptorDataBroadcastId::DescriptorDataBroadcastId(ByteView d)
    : DescriptorBase(d), data_broadcast_id(d.u16(2)) {
  if (data_broadcast_id != ip_mac_notification) {
    id_selector_bytes = d.bytes(4, descriptor_length - 2);
    return;
  }
  platform_id_data_length = d[4];
  if (platform_id_data_length % 5 != 0) throw error("invalid length");
  const int end = 5 + platform_id_data_length;
  read_rows(platform_id_data, d, 5, platform_id_data_length, 5);
  private_data = d.bytes(end, 2 + descriptor_length - end);
}

template <class V, class S>
void DescriptorDataBroadcastId::describe(V& v, S& s) {
  v.coded("data_broadcast_id", s.data_broadcast_id, registry_kind::data_broadcast);
  v.more("id_selector_byte", s.id_selector_bytes);
  v.field("platform_id_data_length", s.platform_id_data_length);
  v.list("platformiddata", "platformiddata", s.platform_id_data);
  v.bytes("private_data_byte", s.private_data);
}
QUILLON_SILENT_FACES_OF(DescriptorDataBroadcastId, "data_broadcast_id_descriptor")

template <class V, class S>
void DescriptorDataBroadcastId::PlatformIdData::describe(V& v, S& s) {
  v.field("platform_id", s.platform_id);
  v.field("action_type", s.action_type);
  v.field("INT_versioning_flag", s.INT_versioning_flag);
  v.field("INT_version", s.INT_version);
}
QUILLON_SILENT_RECORD_FACES_OF(DescriptorDataBroadcastId::PlatformIdData)

}  // namespace quillon
