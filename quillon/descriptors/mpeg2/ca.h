#pragma once

#include <quillon/descriptors/descriptor_base.h>

namespace quillon {

// Conditional access (ISO/IEC 13818-1, 2.6.16): where the ECMs or EMMs of a CA system are.
class QUILLON_API DescriptorCa final : public DescriptorBase {
 public:
  DescriptorCa() = default;
  explicit DescriptorCa(ByteView d)
      : DescriptorBase(d),
        ca_system_id_(d.u16(2)),
        ca_pid_(d.bits(4, 4, 13)),
        private_data_byte_(d.bytes(6, descriptor_length - 4)) {}

  void add_private_byte(uint8_t byte) { private_data_byte_.push_back(byte); }
  // The holder of the CA system by its range; "unknown provider" outside those known.
  const char* get_ca_provider1() const;

  QUILLON_FIELD(int, ca_system_id, get_ca_system_id);
  QUILLON_FIELD(int, ca_pid, get_ca_pid);
  QUILLON_FIELD(std::vector<uint8_t>, private_data_byte, get_private_data_byte);

  QUILLON_FACES(private_data_byte_);
};

}  // namespace quillon
