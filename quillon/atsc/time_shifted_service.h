#pragma once

#include <quillon/atsc/wire_only.h>

namespace quillon {

// The channels that carry the same service with a delay (A/65, 6.9.6).
class QUILLON_API DescriptorAtscTimeShiftedService final : public DescriptorAtscWireOnly {
 public:
  // A channel that carries the same, later by so many minutes.
  class QUILLON_API Service {
   public:
    explicit Service(ByteView data)
        : time_shift(data.bits(0, 1, 10)),
          major_channel_number(data.bits(2, 3, 10)),
          minor_channel_number(data.bits(3, 1, 10)) {}

    int time_shift = 0;  // in minutes
    int major_channel_number = 0;
    int minor_channel_number = 0;

    QUILLON_WALK;
  };

  DescriptorAtscTimeShiftedService() = default;
  // Throws error("DescriptorAtscTimeShiftedService: number_of_services mismatch (1)") if the count is not
  // that of the whole services which the length allows, "... (2)" if there are bytes beyond them, and
  // "DescriptorAtscTimeShiftedService: service start end mismatch" if the section ends among them.
  explicit DescriptorAtscTimeShiftedService(ByteView d);

  const char* get_tag_text() const override { return "time_shifted_service_descriptor"; }

  int number_of_services = 0;  // with its reserved bits, but in the standard reading
  std::vector<Service> services;

  QUILLON_WALK;
};

}  // namespace quillon
