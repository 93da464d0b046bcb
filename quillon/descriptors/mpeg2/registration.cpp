#include <quillon/descriptors/mpeg2/registration.h>
#include <quillon/faces/internal/describe.h>

namespace quillon {

template <class V, class S>
void DescriptorRegistration::describe(V& v, S& s) {
  v.field("format_identifier", s.format_identifier_);
  v.bytes("additional_identification_info", s.additional_identification_info_);
}
QUILLON_SILENT_FACES_OF(DescriptorRegistration, "registration_descriptor")

template <class V, class S>
void DescriptorCopyright::describe(V& v, S& s) {
  v.labels("", ":");
  v.field("copyright_identifier", s.copyright_identifier_);
  if constexpr (V::dump) {
    v.stream() << "additional_copyright_info: ";
    for (const uint8_t byte : s.additional_copyright_info_) v.stream() << byte;
    v.stream() << std::endl;
  } else {
    v.bytes("additional_copyright_info", s.additional_copyright_info_);
  }
}
QUILLON_FACES_OF(DescriptorCopyright, "copyright_descriptor")

template <class V, class S>
void DescriptorPrivateDataIndicator::describe(V& v, S& s) {
  v.field("private_data_indicator", s.private_data_indicator_);
}
QUILLON_FACES_OF(DescriptorPrivateDataIndicator, "private_data__indicatordescriptor")

}  // namespace quillon
