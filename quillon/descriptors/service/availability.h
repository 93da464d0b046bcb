#pragma once

#include <quillon/descriptors/descriptor_base.h>

namespace quillon {

// The countries that a bouquet or service is meant for, or not meant for (EN 300 468, 6.2.10). It has no XML
// form: a load brings no countries and leaves the flag 0.
class QUILLON_API DescriptorCountryAvailability final : public DescriptorBase {
 public:
  // A country by its three letters (ISO 3166).
  class QUILLON_API tagCOUNTRYCODE {
   public:
    tagCOUNTRYCODE() = default;
    explicit tagCOUNTRYCODE(ByteView code) : country_code_(code.chars(0, 3)) {}

    QUILLON_FIELD(std::string, country_code, get_country_code);

    QUILLON_WALK;
  };

  DescriptorCountryAvailability() = default;
  // Throws error(error::length_mismatch, "country_availability_descriptor") unless the codes fill the body.
  explicit DescriptorCountryAvailability(ByteView d);

  QUILLON_FIELD(int, country_availability_flag, get_country_availability_flag);
  QUILLON_FIELD(std::vector<tagCOUNTRYCODE>, country_codes, get_country_codes);

  QUILLON_FACES();
};

// The cells of a terrestrial network that a service is available in, or not (EN 300 468, 6.2.34).
class QUILLON_API DescriptorServiceAvailability final : public DescriptorBase {
 public:
  DescriptorServiceAvailability() = default;
  // Throws error(error::bad_loop_unit) unless the cells fill the body.
  explicit DescriptorServiceAvailability(ByteView d);

  QUILLON_FIELD(int, availability_flag, get_availability_flag);
  QUILLON_FIELD(std::vector<int>, cell_id, get_cell_id);

  QUILLON_FACES();
};

}  // namespace quillon
