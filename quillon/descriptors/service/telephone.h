#pragma once

#include <quillon/descriptors/descriptor_base.h>

namespace quillon {

// A telephone number to be dialled by a receiver (EN 300 468, 6.2.42). The second byte of the body is split
// in another way than there: 2 bits, 3, 1 that is passed over, 2. Kept: readers of saved documents rely on
// it. The standard reading has 1 that is passed over, 2, 3, 2.
class QUILLON_API DescriptorTelephone final : public DescriptorBase {
 public:
  DescriptorTelephone() = default;
  explicit DescriptorTelephone(ByteView d);

  QUILLON_FIELD(int, foriegn_availability, get_foriegn_availability);
  QUILLON_FIELD(int, connection_type, get_connection_type);
  QUILLON_FIELD(int, country_prefix_length, get_country_prefix_length);
  QUILLON_FIELD(int, international_area_code_length, get_international_area_code_length);
  QUILLON_FIELD(int, operator_code_length, get_operator_code_length);
  QUILLON_FIELD(int, national_area_code_length, get_national_area_code_length);
  QUILLON_FIELD(int, core_number_length, get_core_number_length);
  QUILLON_FIELD(std::string, country_prefix_char, get_country_prefix_char);
  QUILLON_FIELD(std::string, international_area_code_char, get_international_area_code_char);
  QUILLON_FIELD(std::string, operator_code_char, get_operator_code_char);
  QUILLON_FIELD(std::string, national_area_code_char, get_national_area_code_char);
  QUILLON_FIELD(std::string, core_number_char, get_core_number_char);

  QUILLON_FACES(country_prefix_char_, international_area_code_char_, operator_code_char_,
                national_area_code_char_, core_number_char_);
};

}  // namespace quillon
