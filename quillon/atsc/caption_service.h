#pragma once

#include <quillon/atsc/wire_only.h>
#include <quillon/fields/language.h>

namespace quillon {

// The closed captions of a program (A/65, 6.9.2).
class QUILLON_API DescriptorAtscCaptionService final : public DescriptorAtscWireOnly {
 public:
  // A caption service.
  class QUILLON_API Service {
   public:
    explicit Service(ByteView data);

    ISO639LanguageCode language;
    int digital_cc = 0;
    int caption_service_number = 0;  // 6 bits, for digital captions
    int line21_field = 0;            // for the others: bit 0, but bits 1 to 5 when kept
    int easy_reader = 0;
    int wide_aspect_ratio = 0;

    QUILLON_WALK;
  };

  DescriptorAtscCaptionService() = default;
  // Throws error("DescriptorAtscCaptionService: number_of_services mismatch (1)") if the count is not that of
  // the whole services which the length allows, "... (2)" if there are bytes beyond them, and
  // "DescriptorAtscCaptionService: service start end mismatch" if the section ends among them.
  explicit DescriptorAtscCaptionService(ByteView d);

  const char* get_tag_text() const override { return "caption_service_descriptor"; }

  int number_of_services = 0;  // 5 bits
  std::vector<Service> services;

  QUILLON_WALK;

 private:
  void _reset() override { services.clear(); }
};

}  // namespace quillon
