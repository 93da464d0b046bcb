#include <quillon/appsignal/application.h>
#include <quillon/faces/internal/describe.h>
#include <quillon/sections/internal/rows.h>

namespace quillon {

DescriptorAitApplication::DescriptorAitApplication(ByteView d)
    : DescriptorAitBase(d), application_profiles_length_(d[2]) {
  if (application_profiles_length_ % 5 != 0)
    throw error(error::length_mismatch,
                "application_descriptor: application_profiles_length length mismatch");
  const int end = 3 + application_profiles_length_;
  if (!read_rows(application_profiles_, d, 3, application_profiles_length_, 5))
    throw error(error::length_mismatch, "application_descriptor: 1");
  service_bound_flag_ = d.bits(end, 7, 1);
  visibility_ = d.bits(end, 6, 2);
  application_priority_ = d[end + 1];
  transport_protocol_label_ = d.bytes(end + 2, descriptor_length - application_profiles_length_ - 3);
}

// The report follows the wire, the document puts the list after the attributes.
template <class V, class S>
void DescriptorAitApplication::describe(V& v, S& s) {
  v.field("application_profiles_length", s.application_profiles_length_);
  if constexpr (V::dump) v.list("application_profiles", "profile", s.application_profiles_);
  v.field("service_bound_flag", s.service_bound_flag_);
  v.field("visibility", s.visibility_);
  v.field("application_priority", s.application_priority_);
  if constexpr (V::dump) {
    for (const uint8_t label : s.transport_protocol_label_)
      v.stream() << "transport_protocol_label: " << label << std::endl;
  } else {
    v.bytes("transport_protocol_label", s.transport_protocol_label_);
    v.list("application_profiles", "profile", s.application_profiles_);
  }
}
QUILLON_FACES_OF(DescriptorAitApplication, "application_descriptor")

template <class V, class S>
void DescriptorAitApplication::ApplicationProfile::describe(V& v, S& s) {
  v.field("application_profile", s.application_profile_);
  v.field("version_major", s.version_major_);
  v.field("version_minor", s.version_minor_);
  v.field("version_micro", s.version_micro_);
}
QUILLON_RECORD_FACES_OF(DescriptorAitApplication::ApplicationProfile)

DescriptorAitApplicationName::DescriptorAitApplicationName(ByteView d) : DescriptorAitBase(d) {
  if (!read_uneven_rows(application_name_infos_, d, 2, descriptor_length))
    throw error(error::length_mismatch, "application_name_descriptor: 1");
}

template <class V, class S>
void DescriptorAitApplicationName::describe(V& v, S& s) {
  v.list("application_name_infos", "info", s.application_name_infos_);
}
QUILLON_FACES_OF(DescriptorAitApplicationName, "application_name_descriptor")

template <class V, class S>
void DescriptorAitApplicationName::ApplicationNameInfo::describe(V& v, S& s) {
  if constexpr (!V::xml) v.field("ISO_639_language_code", s.iso_639_language_code_);
  v.field("application_name_length", s.application_name_length_);
  v.field("application_name", s.application_name_);
  if constexpr (V::xml) v.field("ISO_639_language_code", s.iso_639_language_code_);
}
QUILLON_RECORD_FACES_OF(DescriptorAitApplicationName::ApplicationNameInfo)

template <class V, class S>
void DescriptorAitApplicationIcons::describe(V& v, S& s) {
  v.field("icon_locator_length", s.icon_locator_length_);
  v.field("icon_locator", s.icon_locator_);
  v.field("icon_flags", s.icon_flags_);
  if constexpr (V::dump) {
    v.stream() << "reserved_future_use:" << std::endl;  // also where there are no bytes
    report::block(v.stream(), s.reserved_future_use_);
  } else {
    v.bytes("reserved_future_use", s.reserved_future_use_);
  }
}
QUILLON_FACES_OF(DescriptorAitApplicationIcons, "application_icons_descriptor")

DescriptorAitExternalApplicationAuthorisation::DescriptorAitExternalApplicationAuthorisation(ByteView d)
    : DescriptorAitBase(d) {
  if (descriptor_length % 7 != 0)
    throw error(error::length_mismatch, "external_application_authorisation_descriptor: 1");
  read_rows(external_application_authorisation_infos_, d, 2, descriptor_length, 7);
}

template <class V, class S>
void DescriptorAitExternalApplicationAuthorisation::describe(V& v, S& s) {
  v.list("external_application_authorisation_infos", "info", s.external_application_authorisation_infos_);
}
QUILLON_FACES_OF(DescriptorAitExternalApplicationAuthorisation,
                 "external_application_authorisation_descriptor")

// Saved documents spell the identifier without its second i.
template <class V, class S>
void DescriptorAitExternalApplicationAuthorisation::AitExternalApplicationAuthorisationInfo::describe(V& v,
                                                                                                      S& s) {
  if constexpr (!V::xml) v.child("application_identifer", s.application_identifier_);
  v.field("application_priority", s.application_priority_);
  if constexpr (V::xml) v.child("application_identifer", s.application_identifier_);
}
QUILLON_RECORD_FACES_OF(
    DescriptorAitExternalApplicationAuthorisation::AitExternalApplicationAuthorisationInfo)

}  // namespace quillon
