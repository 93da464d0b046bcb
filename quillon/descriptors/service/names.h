#pragma once

#include <quillon/descriptors/descriptor_base.h>
#include <quillon/fields/identifier.h>
#include <quillon/fields/language.h>
#include <quillon/fields/text.h>

namespace quillon {

// The name of a network (EN 300 468, 6.2.27).
class QUILLON_API DescriptorNetworkName final : public DescriptorBase {
 public:
  DescriptorNetworkName() = default;
  explicit DescriptorNetworkName(ByteView d)
      : DescriptorBase(d), network_name_(descriptor_length, d.from(2)) {}

  QUILLON_FIELD(Text, network_name, get_network_name);

  QUILLON_FACES();
};

// The name of a bouquet (EN 300 468, 6.2.4).
class QUILLON_API DescriptorBouquetName final : public DescriptorBase {
 public:
  DescriptorBouquetName() = default;
  explicit DescriptorBouquetName(ByteView d)
      : DescriptorBase(d), bouquet_name_(descriptor_length, d.from(2)) {}

  QUILLON_FIELD(Text, bouquet_name, get_bouquet_name);

  QUILLON_FACES();
};

// The name of a network in several languages (EN 300 468, 6.2.24).
class QUILLON_API DescriptorMultilingualNetworkName final : public DescriptorBase {
 public:
  DescriptorMultilingualNetworkName() = default;
  // Throws error(error::bad_value) if the last name does not end with the body, and what MultilingualNameInfo
  // throws.
  explicit DescriptorMultilingualNetworkName(ByteView d);

  QUILLON_FIELD(std::vector<MultilingualNameInfo>, nameinfo, get_nameinfo);

  QUILLON_FACES(nameinfo_);
};

// The name of a bouquet in several languages (EN 300 468, 6.2.22).
class QUILLON_API DescriptorMultilingualBouquetName final : public DescriptorBase {
 public:
  DescriptorMultilingualBouquetName() = default;
  // Throws error(error::bad_value) if the last name does not end with the body, and what MultilingualNameInfo
  // throws.
  explicit DescriptorMultilingualBouquetName(ByteView d);

  QUILLON_FIELD(std::vector<MultilingualNameInfo>, nameinfo, get_nameinfo);

  QUILLON_FACES(nameinfo_);
};

// The names of a service and of its provider in several languages (EN 300 468, 6.2.25).
class QUILLON_API DescriptorMultilingualServiceName final : public DescriptorBase {
 public:
  // The names of provider and service in one language.
  class QUILLON_API MultilingualServiceNameInfo {
   public:
    MultilingualServiceNameInfo() = default;
    // Throws error(error::length_mismatch, "multilingual_service_name_info_descriptor") if `available` is
    // under 5, the same with ":2" after the text if the provider's name does not fit, and with ":3" if the
    // service's lacks more than one byte, in the standard reading any. Otherwise `consumed` becomes the
    // lengths of both names plus 5.
    MultilingualServiceNameInfo(ByteView bytes, int available, int& consumed);

    QUILLON_FIELD(CodeCharacters, iso_639_language_code, get_iso_639_language_code);
    QUILLON_FIELD(Text, provider_name, get_provider_name);
    QUILLON_FIELD(Text, service_name, get_service_name);

    QUILLON_RECORD_FACES;
  };

  DescriptorMultilingualServiceName() = default;
  // Throws error(error::bad_value) if the last item does not end with the body, and what the items throw.
  explicit DescriptorMultilingualServiceName(ByteView d);

  QUILLON_FIELD(std::vector<MultilingualServiceNameInfo>, servicenameinfo, get_servicenameinfo);

  QUILLON_FACES(servicenameinfo_);
};

}  // namespace quillon
