#pragma once

#include <quillon/descriptors/descriptor_base.h>
#include <quillon/fields/identifier.h>
#include <quillon/fields/language.h>

namespace quillon {

// The profiles, the visibility and the priority of an application (TS 102 812, 10.7.3).
class QUILLON_API DescriptorAitApplication final : public DescriptorAitBase {
 public:
  // A profile that the application runs on, and the version of it that it needs.
  class QUILLON_API ApplicationProfile {
   public:
    ApplicationProfile() = default;
    explicit ApplicationProfile(ByteView p)
        : application_profile_(p.u16(0)), version_major_(p[2]), version_minor_(p[3]), version_micro_(p[4]) {}

    QUILLON_FIELD(int, application_profile, get_application_profile);
    QUILLON_FIELD(int, version_major, get_version_major);
    QUILLON_FIELD(int, version_minor, get_version_minor);
    QUILLON_FIELD(int, version_micro, get_version_micro);

    QUILLON_RECORD_FACES;
  };

  DescriptorAitApplication() = default;
  // Throws error(error::length_mismatch, "application_descriptor: application_profiles_length length
  // mismatch") unless the profiles take a multiple of 5 bytes, and error(error::length_mismatch,
  // "application_descriptor: 1") if they run past the section.
  explicit DescriptorAitApplication(ByteView d);

  QUILLON_FIELD(int, application_profiles_length, get_application_profiles_length);
  QUILLON_FIELD(std::vector<ApplicationProfile>, application_profiles, get_application_profiles);
  QUILLON_FIELD(int, service_bound_flag, get_service_bound_flag);
  QUILLON_FIELD(int, visibility, get_visibility);  // 2 bits
  QUILLON_FIELD(int, application_priority, get_application_priority);
  QUILLON_FIELD(std::vector<uint8_t>, transport_protocol_label,
                get_transport_protocol_label);  // in order of preference

  QUILLON_FACES(application_profiles_, transport_protocol_label_);
};

// The name of an application, in one language or more (TS 102 812, 10.7.4.1).
class QUILLON_API DescriptorAitApplicationName final : public DescriptorAitBase {
 public:
  // The name in one language.
  class QUILLON_API ApplicationNameInfo {
   public:
    ApplicationNameInfo() = default;
    // `length` is not looked at; `consumed` becomes the bytes of the row.
    ApplicationNameInfo(ByteView p, int /*length*/, int& consumed)
        : iso_639_language_code_(p),
          application_name_length_(p[3]),
          // Quirk: DescriptorDataBroadcast text, DescriptorAitApplicationName
          application_name_(p.standard() ? WireText::from_dvb(p.present(4, application_name_length_))
                                         : WireText(p.present(4, application_name_length_), p.reading())) {
      consumed = 4 + application_name_length_;
    }

    QUILLON_FIELD(CodeCharacters, iso_639_language_code, get_iso_639_language_code);
    QUILLON_FIELD(int, application_name_length, get_application_name_length);
    // DVB text in the standard reading.
    QUILLON_FIELD(WireText, application_name, get_application_name);

    QUILLON_RECORD_FACES;
  };

  DescriptorAitApplicationName() = default;
  // Throws error(error::length_mismatch, "application_name_descriptor: 1") unless the last name ends with the
  // descriptor.
  explicit DescriptorAitApplicationName(ByteView d);

  QUILLON_FIELD(std::vector<ApplicationNameInfo>, application_name_infos, get_application_name_infos);

  QUILLON_FACES(application_name_infos_);
};

// Where an application's icons are (TS 102 812, 10.7.4.2).
class QUILLON_API DescriptorAitApplicationIcons final : public DescriptorAitBase {
 public:
  DescriptorAitApplicationIcons() = default;
  explicit DescriptorAitApplicationIcons(ByteView d)
      : DescriptorAitBase(d),
        icon_locator_length_(d[2]),
        // Quirk: texts of an Ait but application_name
        icon_locator_(d.present(3, icon_locator_length_), d.reading()),
        icon_flags_(d.u16(3 + icon_locator_length_)),
        reserved_future_use_(
            d.bytes(5 + icon_locator_length_, descriptor_length - icon_locator_length_ - 3)) {}

  QUILLON_FIELD(int, icon_locator_length, get_icon_locator_length);
  QUILLON_FIELD(WireText, icon_locator, get_icon_locator);
  QUILLON_FIELD(int, icon_flags, get_icon_flags);
  QUILLON_FIELD(std::vector<uint8_t>, reserved_future_use, get_reserved_future_use);

  QUILLON_FACES(reserved_future_use_);
};

// The applications that may run together with the service without being listed for it (TS 102 812, 10.7.5).
class QUILLON_API DescriptorAitExternalApplicationAuthorisation final : public DescriptorAitBase {
 public:
  // An application that may run, and its priority.
  class QUILLON_API AitExternalApplicationAuthorisationInfo {
   public:
    AitExternalApplicationAuthorisationInfo() = default;
    explicit AitExternalApplicationAuthorisationInfo(ByteView p)
        : application_identifier_(p), application_priority_(p[6]) {}

    uint32_t get_organisation_id() const { return application_identifier_.organisation_id; }
    int get_application_id() const { return application_identifier_.application_id; }

    QUILLON_FIELD(ApplicationIdentifier, application_identifier, get_application_identifier);
    QUILLON_FIELD(int, application_priority, get_application_priority);

    QUILLON_RECORD_FACES;
  };

  DescriptorAitExternalApplicationAuthorisation() = default;
  // Throws error(error::length_mismatch, "external_application_authorisation_descriptor: 1") unless the
  // length is a multiple of 7.
  explicit DescriptorAitExternalApplicationAuthorisation(ByteView d);

  QUILLON_FIELD(std::vector<AitExternalApplicationAuthorisationInfo>,
                external_application_authorisation_infos, get_external_application_authorisation_infos);

  QUILLON_FACES(external_application_authorisation_infos_);
};

}  // namespace quillon
