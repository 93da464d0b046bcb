#pragma once

#include <quillon/atsc/wire_only.h>
#include <quillon/fields/multiple_string.h>

namespace quillon {

// What a receiver shows before it leaves a channel in a directed channel change (A/65, 6.9).
class QUILLON_API DescriptorAtscDCCDepartingRequest final : public DescriptorAtscWireOnly {
 public:
  DescriptorAtscDCCDepartingRequest() = default;
  // Throws error("DescriptorAtscDCCDepartingRequest: service start end mismatch") unless the text has its
  // length.
  explicit DescriptorAtscDCCDepartingRequest(ByteView d);

  const char* get_tag_text() const override { return "dcc_departing_request_descriptor"; }

  int dcc_departing_request_type = 0;
  int dcc_departing_request_text_length = 0;
  ATSCMultipleStringStructure dcc_departing_request_text;

  QUILLON_WALK;
};

// What a receiver shows when it has reached a channel in a directed channel change (A/65, 6.9).
class QUILLON_API DescriptorAtscDCCArrivingRequest final : public DescriptorAtscWireOnly {
 public:
  DescriptorAtscDCCArrivingRequest() = default;
  // Throws error("DescriptorAtscDCCArrivingRequest: service start end mismatch") unless the text has its
  // length.
  explicit DescriptorAtscDCCArrivingRequest(ByteView d);

  const char* get_tag_text() const override { return "dcc_arriving_request_descriptor"; }

  int dcc_arriving_request_type = 0;
  int dcc_arriving_request_text_length = 0;
  ATSCMultipleStringStructure dcc_arriving_request_text;

  QUILLON_WALK;
};

}  // namespace quillon
