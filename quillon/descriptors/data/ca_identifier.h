#pragma once

#include <quillon/descriptors/descriptor_base.h>

namespace quillon {

// The CA systems that a bouquet, service or event is associated with (EN 300 468, 6.2.5).
class QUILLON_API DescriptorCAIdentifier final : public DescriptorBase {
 public:
  // A CA system.
  class QUILLON_API CAIdentifierID {
   public:
    CAIdentifierID() = default;
    explicit CAIdentifierID(ByteView id) : CA_system_id(id.u16(0)) {}

    int CA_system_id = 0;

    QUILLON_RECORD_FACES;
  };

  DescriptorCAIdentifier() = default;
  // An odd length takes in the byte after the descriptor; in the standard reading its last byte is ignored.
  explicit DescriptorCAIdentifier(ByteView d);

  std::vector<CAIdentifierID> ca_identifier_ids;

  QUILLON_FACES(ca_identifier_ids);
};

// How often the ECMs of a CA system come (EN 301 192, 9.7), in milliseconds.
class QUILLON_API DescriptorECMRepetitionRate final : public DescriptorBase {
 public:
  DescriptorECMRepetitionRate() = default;
  // Throws error("descriptor length to small") for a length below 4.
  explicit DescriptorECMRepetitionRate(ByteView d);

  int CA_system_ID = 0;
  int ECM_repetition_rate = 0;
  // As many as there are on the wire, but counted up from the first of them, except in the standard reading.
  // Kept: readers of saved documents rely on it.
  std::vector<uint8_t> private_data;

  QUILLON_FACES(private_data);
};

}  // namespace quillon
