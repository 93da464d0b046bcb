#pragma once

#include <quillon/atsc/wire_only.h>
#include <quillon/fields/language.h>

namespace quillon {

// The elementary streams of a virtual channel (A/65, 6.9.5).
class QUILLON_API DescriptorAtscServiceLocation final : public DescriptorAtscWireOnly {
 public:
  // An elementary stream of the channel.
  class QUILLON_API Element {
   public:
    explicit Element(ByteView data);

    // Empty for the types that A/65 has no use for.
    static const char* get_stream_type_text(int stream_type);
    const char* get_stream_type_text() const { return get_stream_type_text(stream_type); }

    int stream_type = 0;
    int elementary_PID = 0;
    ISO639LanguageCode language;

    QUILLON_WALK;
  };

  DescriptorAtscServiceLocation() = default;
  // Throws error("DescriptorAtscCaptionService: number_elements mismatch (1)") if the count is not that of
  // the whole elements which the length allows, "... (2)" if there are bytes beyond them, and
  // "DescriptorAtscServiceLocation: element start end mismatch" if the section ends among them.
  explicit DescriptorAtscServiceLocation(ByteView d);

  const char* get_tag_text() const override { return "service_location_descriptor"; }

  int PCR_PID = 0;
  int number_elements = 0;
  std::vector<Element> elements;

  QUILLON_WALK;
};

}  // namespace quillon
