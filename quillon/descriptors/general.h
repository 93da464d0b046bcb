#pragma once

#include <quillon/descriptors/descriptor_base.h>

namespace quillon {

// Any descriptor as bytes: one that has no class, or that its class refused.
class QUILLON_API DescriptorGeneral final : public DescriptorBase {
 public:
  DescriptorGeneral() = default;
  explicit DescriptorGeneral(descriptor_base* descriptor)
      : DescriptorGeneral(ByteView(reinterpret_cast<const uint8_t*>(descriptor))) {}
  explicit DescriptorGeneral(ByteView d) : DescriptorBase(d), private_data_(d.bytes(2, d[1])) {}
  // Copies `length` bytes, none if that is below 1.
  DescriptorGeneral(int tag, const uint8_t* data, int length)
      : DescriptorBase(tag, length), private_data_(ByteView(data).bytes(0, length)) {}

  QUILLON_FIELD(std::vector<uint8_t>, private_data, get_private_data);

  QUILLON_FACES(private_data_);
};

// Stuffing (EN 300 468, 6.2.40).
class QUILLON_API DescriptorStuffing final : public DescriptorBase {
 public:
  DescriptorStuffing() = default;
  explicit DescriptorStuffing(ByteView d) : DescriptorBase(d), stuffing_byte_(d.bytes(2, d[1])) {}

  QUILLON_FIELD(std::vector<uint8_t>, stuffing_byte, get_stuffing_byte);

  QUILLON_FACES(stuffing_byte_);
};

}  // namespace quillon
