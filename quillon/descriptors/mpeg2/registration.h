#pragma once

#include <quillon/descriptors/descriptor_base.h>

namespace quillon {

// Identifies a private format (ISO/IEC 13818-1, 2.6.8).
class QUILLON_API DescriptorRegistration final : public DescriptorBase {
 public:
  DescriptorRegistration() = default;
  explicit DescriptorRegistration(ByteView d)
      : DescriptorBase(d),
        format_identifier_(d.u32(2)),
        additional_identification_info_(d.bytes(6, descriptor_length - 4)) {}

  QUILLON_FIELD(uint32_t, format_identifier, get_format_identifier);
  QUILLON_FIELD(std::vector<uint8_t>, additional_identification_info, get_additional_identification_info);

  QUILLON_FACES(additional_identification_info_);
};

// Identifies a copyright (ISO/IEC 13818-1, 2.6.24).
class QUILLON_API DescriptorCopyright final : public DescriptorBase {
 public:
  DescriptorCopyright() = default;
  explicit DescriptorCopyright(ByteView d)
      : DescriptorBase(d),
        copyright_identifier_(d.u32(2)),
        additional_copyright_info_(d.bytes(6, descriptor_length - 4)) {}

  QUILLON_FIELD(uint32_t, copyright_identifier, get_copyright_identifier);
  QUILLON_FIELD(std::vector<uint8_t>, additional_copyright_info, get_additional_copyright_info);

  QUILLON_FACES(additional_copyright_info_);
};

// Marks private data (ISO/IEC 13818-1, 2.6.28).
class QUILLON_API DescriptorPrivateDataIndicator final : public DescriptorBase {
 public:
  DescriptorPrivateDataIndicator() = default;
  explicit DescriptorPrivateDataIndicator(ByteView d)
      : DescriptorBase(d), private_data_indicator_(d.u32(2)) {}

  QUILLON_FIELD(uint32_t, private_data_indicator, get_private_data_indicator);

  QUILLON_FACES();
};

}  // namespace quillon
