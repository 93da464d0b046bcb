#pragma once

#include <quillon/descriptors/descriptor_base.h>

namespace quillon {

// The kinds of application that a stream's application information tables speak of (TS 102 812, 10.7.1).
class QUILLON_API DescriptorApplicationSignalling final : public DescriptorBase {
 public:
  // A type of application, and the version of its AIT.
  class QUILLON_API ApplicationInfo {
   public:
    ApplicationInfo() = default;
    explicit ApplicationInfo(ByteView info)
        // Quirk: DescriptorApplicationSignalling application_type
        : application_type(info.standard() ? info.bits(0, 6, 15) : info.u16(0)),
          AIT_version_number(info.bits(2, 4, 5)) {}

    const char* get_application_type_text() const;

    int application_type = 0;    // all 16 bits, in the standard reading the low 15
    int AIT_version_number = 0;  // 5 bits

    QUILLON_RECORD_FACES;
  };

  DescriptorApplicationSignalling() = default;
  // Throws error("") unless the length is a multiple of 3.
  explicit DescriptorApplicationSignalling(ByteView d);

  std::vector<ApplicationInfo> application_infos;

  QUILLON_FACES(application_infos);
};

}  // namespace quillon
