#include <quillon/descriptors/service/telephone.h>
#include <quillon/faces/internal/describe.h>

namespace quillon {

DescriptorTelephone::DescriptorTelephone(ByteView d)
    : DescriptorBase(d),
      foriegn_availability_(d.bits(2, 5, 1)),
      connection_type_(d.bits(2, 4, 5)),
      // Quirk: DescriptorTelephone country_prefix_length, international_area_code_length
      country_prefix_length_(d.bits(3, d.standard() ? 6 : 7, 2)),
      international_area_code_length_(d.bits(3, d.standard() ? 4 : 5, 3)),
      operator_code_length_(d.bits(3, 1, 2)),
      national_area_code_length_(d.bits(4, 6, 3)),
      core_number_length_(d.bits(4, 3, 4)) {
  int pos = 5;
  const auto next = [&](int length) {
    pos += length;
    return d.chars(pos - length, length);
  };
  country_prefix_char_ = next(country_prefix_length_);
  international_area_code_char_ = next(international_area_code_length_);
  operator_code_char_ = next(operator_code_length_);
  national_area_code_char_ = next(national_area_code_length_);
  core_number_char_ = next(core_number_length_);
}

template <class V, class S>
void DescriptorTelephone::describe(V& v, S& s) {
  v.field("foriegn_availability", s.foriegn_availability_);  // sic: saved documents have this name
  v.field("connection_type", s.connection_type_);
  v.field("country_prefix_length", s.country_prefix_length_);
  v.field("international_area_code_length", s.international_area_code_length_);
  v.field("operator_code_length", s.operator_code_length_);
  v.field("national_area_code_length", s.national_area_code_length_);
  v.field("core_number_length", s.core_number_length_);
  v.field("country_prefix_char", s.country_prefix_char_);
  v.field("international_area_code_char", s.international_area_code_char_);
  v.field("operator_code_char", s.operator_code_char_);
  v.field("national_area_code_char", s.national_area_code_char_);
  v.field("core_number_char", s.core_number_char_);
}
QUILLON_FACES_OF(DescriptorTelephone, "telephone_descriptor")

}  // namespace quillon
