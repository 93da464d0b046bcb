#pragma once

#include <quillon/descriptors/descriptor_base.h>
#include <quillon/fields/text.h>

namespace quillon {

// The type of a service, its name and that of its provider (EN 300 468, 6.2.33).
class QUILLON_API DescriptorService final : public DescriptorBase {
 public:
  DescriptorService() = default;
  explicit DescriptorService(ByteView d);

  // The meaning of a service_type; "<unknown>" outside 0 to 255.
  static const char* get_service_type_text(int service_type);
  const char* get_service_type_text() const { return get_service_type_text(service_type_); }
  // In the edition in force.
  static const char* standard_service_type_text(int service_type);

  QUILLON_FIELD(int, service_type, get_service_type);
  QUILLON_FIELD(Text, provider_nameA, get_provider_nameA);
  QUILLON_FIELD(Text, service_nameA, get_service_nameA);

  QUILLON_FACES();
};

// The services of a network or bouquet by id and type (EN 300 468, 6.2.35).
class QUILLON_API DescriptorServiceList final : public DescriptorBase {
 public:
  // A service of the stream, and its type.
  class QUILLON_API ServiceList {
   public:
    ServiceList() = default;
    explicit ServiceList(ByteView item) : service_id_(item.u16(0)), service_type_(item[2]) {}

    QUILLON_FIELD(int, service_id, get_service_id);
    QUILLON_FIELD(int, service_type, get_service_type);

    QUILLON_RECORD_FACES;
  };

  DescriptorServiceList() = default;
  // Throws error("descriptor length mismatch") unless the length is a multiple of 3.
  explicit DescriptorServiceList(ByteView d);

  QUILLON_FIELD(std::vector<ServiceList>, servicelist, get_servicelist);

  QUILLON_FACES();
};

// Where a service has gone to (EN 300 468, 6.2.36).
class QUILLON_API DescriptorServiceMove final : public DescriptorBase {
 public:
  DescriptorServiceMove() = default;
  explicit DescriptorServiceMove(ByteView d)
      : DescriptorBase(d),
        new_original_network_id_(d.u16(2)),
        new_transport_stream_id_(d.u16(4)),
        new_service_id_(d.u16(6)) {}

  QUILLON_FIELD(int, new_original_network_id, get_new_original_network_id);
  QUILLON_FIELD(int, new_transport_stream_id, get_new_transport_stream_id);
  QUILLON_FIELD(int, new_service_id, get_new_service_id);

  QUILLON_FACES();
};

// The textual identifier of a service (TS 102 809, 6.2.1). It is read in the standard reading, and walked
// then; documents have tag and length alone.
class QUILLON_API DescriptorServiceIdentifier final : public DescriptorBase {
 public:
  DescriptorServiceIdentifier() = default;
  explicit DescriptorServiceIdentifier(ByteView d) : DescriptorBase(d) {
    // Quirk: DescriptorServiceIdentifier body
    if (d.standard()) textual_service_identifier_.parse(descriptor_length, d.from(2));
  }

  QUILLON_FIELD(Text, textual_service_identifier, get_textual_service_identifier);

  QUILLON_FACES();
};

}  // namespace quillon
