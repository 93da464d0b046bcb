#pragma once

#include <quillon/descriptors/descriptor_base.h>

namespace quillon {

// A DTS stream (EN 300 468, annex G).
class QUILLON_API DescriptorDTS final : public DescriptorBase {
 public:
  DescriptorDTS() = default;
  explicit DescriptorDTS(ByteView d)
      : DescriptorBase(d),
        sample_rate_code(d.bits(2, 7, 4)),
        bit_rate_code(d.bits(2, 3, 6)),
        nblks(d.bits(3, 5, 7)),
        fsize(d.bits(4, 6, 14)),
        surround_mode(d.bits(5, 0, 6)),
        lfe_flag(d.bits(6, 2, 1)),
        extended_surround_flag(d.bits(6, 1, 2)),
        additional_info(d.bytes(7, descriptor_length - 5)) {}

  const char* get_sample_rate_code_cstr() const;
  const char* get_bit_rate_code_cstr() const;
  const char* get_surround_mode_cstr() const;
  const char* get_extended_surround_flag_cstr() const;

  // In the edition in force.
  static const char* standard_sample_rate_code_text(int sample_rate_code);
  static const char* standard_bit_rate_code_text(int bit_rate_code);
  static const char* standard_surround_mode_text(int surround_mode);

  int sample_rate_code = 0;
  int bit_rate_code = 0;  // 6 bits
  int nblks = 0;          // 7 bits
  int fsize = 0;          // 14 bits, bytes of a frame less 1
  int surround_mode = 0;  // 6 bits
  int lfe_flag = 0;
  int extended_surround_flag = 0;  // 2 bits
  std::vector<uint8_t> additional_info;

  QUILLON_FACES(additional_info);
};

}  // namespace quillon
