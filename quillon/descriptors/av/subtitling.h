#pragma once

#include <quillon/descriptors/descriptor_base.h>
#include <quillon/fields/language.h>

namespace quillon {

// The languages and pages of a DVB subtitle stream (EN 300 468, 6.2.41).
class QUILLON_API DescriptorSubtitling final : public DescriptorBase {
 public:
  // Subtitles in one language.
  class QUILLON_API SubtitlingInfo {
   public:
    SubtitlingInfo() = default;
    explicit SubtitlingInfo(ByteView info)
        : subtitling_type(info[3]), composition_page_id(info.u16(4)), ancillary_page_id(info.u16(6)) {
      ISO_639_language_code.parse(info);
    }

    ISO639LanguageCode ISO_639_language_code;
    int subtitling_type = 0;
    int composition_page_id = 0;
    int ancillary_page_id = 0;

    QUILLON_RECORD_FACES;
  };

  DescriptorSubtitling() = default;
  // Throws error(error::length_mismatch, "subtitling_descriptor") unless the last row ends with the
  // descriptor.
  explicit DescriptorSubtitling(ByteView d);

  std::vector<SubtitlingInfo> subtitling_infos;

  QUILLON_FACES(subtitling_infos);
};

}  // namespace quillon
