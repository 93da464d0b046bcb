#pragma once

#include <quillon/descriptors/descriptor_base.h>
#include <quillon/fields/wire_text.h>

namespace quillon {

// How the files of an application are carried (TS 102 812, 10.8.1). protocol_id selects which of the two
// records the wire fills; the other keeps its zeros, and both are saved.
class QUILLON_API DescriptorAitTransportProtocol final : public DescriptorAitBase {
 public:
  // An object carousel. The ids are there when remote_connection is 1.
  class QUILLON_API TransportOC {
   public:
    TransportOC() = default;
    // `length` is not looked at; `consumed` becomes the bytes of the selector.
    TransportOC(ByteView p, int length, int& consumed);

    QUILLON_FIELD(int, remote_connection, get_remote_connection);
    QUILLON_FIELD(int, original_network_id, get_original_network_id);
    QUILLON_FIELD(int, transport_stream_id, get_transport_stream_id);
    QUILLON_FIELD(int, service_id, get_service_id);
    QUILLON_FIELD(int, component_tag, get_component_tag);

    QUILLON_RECORD_FACES;
  };

  // IP. The ids are there when remote_connection is 1; the URLs are read in the standard reading, and walked
  // then.
  class QUILLON_API TransportIP {
   public:
    TransportIP() = default;
    // As for TransportOC. alignment_indicator is always taken from byte 7, also where the selector has 2
    // bytes, but for the standard reading. Kept: readers of reports and saved documents rely on it.
    TransportIP(ByteView p, int length, int& consumed);

    QUILLON_FIELD(int, remote_connection, get_remote_connection);
    QUILLON_FIELD(int, original_network_id, get_original_network_id);
    QUILLON_FIELD(int, transport_stream_id, get_transport_stream_id);
    QUILLON_FIELD(int, service_id, get_service_id);
    QUILLON_FIELD(int, alignment_indicator, get_alignment_indicator);
    QUILLON_FIELD(std::vector<WireText>, urls, get_urls);

    QUILLON_RECORD_FACES;
  };

  // HTTP over the interaction channel (TS 102 809, 5.3.6): each extension, appended to the base, is a URL.
  // Read in the standard reading, and walked then.
  class QUILLON_API URLGroup {
   public:
    // `used` becomes the bytes of the group.
    URLGroup(ByteView p, int& used);

    QUILLON_FIELD(WireText, url_base, get_url_base);
    QUILLON_FIELD(std::vector<WireText>, url_extensions, get_url_extensions);

    QUILLON_WALK;
  };

  DescriptorAitTransportProtocol() = default;
  // In the standard reading throws error("DescriptorAitTransportProtocol: URL start end mismatch") unless the
  // last URL ends with the descriptor.
  explicit DescriptorAitTransportProtocol(ByteView d);

  QUILLON_FIELD(int, protocol_id, get_protocol_id);  // 1: object carousel, 2: IP, 3: HTTP
  QUILLON_FIELD(int, transport_protocol_label, get_transport_protocol_label);
  QUILLON_FIELD(TransportOC, transport_oc, get_transport_oc);
  QUILLON_FIELD(TransportIP, transport_ip, get_transport_ip);
  // protocol_id 3, and any other, in the standard reading.
  QUILLON_FIELD(std::vector<URLGroup>, url_groups, get_url_groups);
  QUILLON_FIELD(std::vector<uint8_t>, selector_bytes, get_selector_bytes);

  QUILLON_FACES();
};

}  // namespace quillon
