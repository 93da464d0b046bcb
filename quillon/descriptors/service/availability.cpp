#include <quillon/descriptors/service/availability.h>
#include <quillon/faces/internal/describe.h>
#include <quillon/sections/internal/rows.h>

namespace quillon {

DescriptorCountryAvailability::DescriptorCountryAvailability(ByteView d)
    : DescriptorBase(d), country_availability_flag_(d.bits(2, 7, 1)) {
  // Quirk: DescriptorCountryAvailability of length 0
  if (d.standard() && descriptor_length == 0) {
    country_availability_flag_ = 0;
    return;
  }
  if ((descriptor_length - 1) % 3 != 0)
    throw error(error::length_mismatch, "country_availability_descriptor");
  read_rows(country_codes_, d, 3, descriptor_length - 1, 3);
}

template <class V, class S>
void DescriptorCountryAvailability::describe(V& v, S& s) {
  if constexpr (!V::xml) v.field("country_availability_flag", s.country_availability_flag_);
  if constexpr (V::dump)
    for (const tagCOUNTRYCODE& country : s.country_codes_)
      v.field("country_code", country.get_country_code());
  v.more("country_codes", "country_code", s.country_codes_);
}
QUILLON_FACES_OF(DescriptorCountryAvailability, "country_availability_descriptor")

template <class V, class S>
void DescriptorCountryAvailability::tagCOUNTRYCODE::describe(V& v, S& s) {
  v.field("country_code", s.country_code_);
}
QUILLON_WALK_OF(DescriptorCountryAvailability::tagCOUNTRYCODE)

DescriptorServiceAvailability::DescriptorServiceAvailability(ByteView d)
    : DescriptorBase(d), availability_flag_(d.bits(2, 7, 1)) {
  if ((descriptor_length - 1) % 2 != 0) throw error(error::bad_loop_unit);
  cell_id_.reserve(d[1] / 2u);
  each_row(d, 3, 2 + descriptor_length, [this](ByteView at, int) {
    cell_id_.push_back(at.u16(0));
    return 2;
  });
}

template <class V, class S>
void DescriptorServiceAvailability::describe(V& v, S& s) {
  v.field("availability_flag", s.availability_flag_);
  v.bytes("cell_id", s.cell_id_);
}
QUILLON_SILENT_FACES_OF(DescriptorServiceAvailability, "service_availability_descriptor")

}  // namespace quillon
