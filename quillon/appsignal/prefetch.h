#pragma once

#include <quillon/descriptors/descriptor_base.h>
#include <quillon/fields/wire_text.h>

namespace quillon {

// The modules of a carousel that are worth loading ahead (TS 102 812, 10.8.3).
class QUILLON_API DescriptorAitPreFetch final : public DescriptorAitBase {
 public:
  // The label of modules to be fetched, and how urgently.
  class QUILLON_API PreFetchInfo {
   public:
    PreFetchInfo() = default;
    // `length` is not looked at; `consumed` becomes the length byte and the label.
    PreFetchInfo(ByteView p, int /*length*/, int& consumed)
        : label_length_(p[0]), label_(p.present(1, label_length_), p.reading()) {
      consumed = 1 + label_length_;
      // Quirk: DescriptorAitPreFetch rows
      if (p.standard()) prefetch_priority_ = p[consumed++];
    }

    QUILLON_FIELD(int, label_length, get_label_length);
    QUILLON_FIELD(WireText, label, get_label);
    // 1 to 100, the highest, in the standard reading. Else its byte begins the next row. Kept: readers of
    // reports and saved documents rely on it.
    QUILLON_FIELD(int, prefetch_priority, get_prefetch_priority);

    QUILLON_RECORD_FACES;
  };

  DescriptorAitPreFetch() = default;
  // Throws error(error::length_mismatch, "prefetch_descriptor: 1") unless the last row ends one byte past the
  // descriptor: the rows are given the whole length, though the label has taken a byte of it. In the standard
  // reading they end with it.
  explicit DescriptorAitPreFetch(ByteView d);

  QUILLON_FIELD(int, transport_protocol_label, get_transport_protocol_label);
  QUILLON_FIELD(std::vector<PreFetchInfo>, prefetch_info, get_prefetch_info);

  QUILLON_FACES(prefetch_info_);
};

// Where the DIIs of a carousel are (TS 102 812, 10.8.3).
class QUILLON_API DescriptorAitDIILocation final : public DescriptorAitBase {
 public:
  // A DII of the carousel, by its identification and the stream that carries it.
  class QUILLON_API DIILocationInfo {
   public:
    DIILocationInfo() = default;
    explicit DIILocationInfo(ByteView p)
        : dii_identification_(p.bits(0, 6, 15)), association_tag_(p.u16(2)) {}

    QUILLON_FIELD(int, dii_identification, get_dii_identification);  // 15 bits
    QUILLON_FIELD(int, association_tag, get_association_tag);

    QUILLON_RECORD_FACES;
  };

  DescriptorAitDIILocation() = default;
  // Throws error(error::length_mismatch, "dii_location_descriptor: 1") unless the length is a multiple of 4,
  // though the label takes a byte of it. Each row is read from the descriptor's first byte, so that all are
  // equal. Both kept: readers of saved documents rely on them. In the standard reading the rows are in what
  // follows the label.
  explicit DescriptorAitDIILocation(ByteView d);

  QUILLON_FIELD(int, transport_protocol_label, get_transport_protocol_label);
  QUILLON_FIELD(std::vector<DIILocationInfo>, dii_location_infos, get_dii_location_infos);

  QUILLON_FACES(dii_location_infos_);
};

}  // namespace quillon
