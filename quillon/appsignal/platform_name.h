#pragma once

#include <quillon/descriptors/descriptor_base.h>
#include <quillon/fields/language.h>
#include <quillon/fields/text.h>

namespace quillon {

// The name of an IP/MAC platform in one language (EN 301 192, 8.4.5). Of a length below 3 the text has a
// negative length, and no bytes.
class QUILLON_API DescriptorIntIPMACPlatformName final : public DescriptorIntBase {
 public:
  DescriptorIntIPMACPlatformName() = default;
  explicit DescriptorIntIPMACPlatformName(ByteView d)
      : DescriptorIntBase(d), text_char_(descriptor_length - 3, d.from(5)) {
    iso_639_language_code_.parse(d.from(2));
  }

  QUILLON_FIELD(ISO639LanguageCode, iso_639_language_code, get_iso_639_language_code);
  QUILLON_FIELD(Text, text_char, get_text_char);

  QUILLON_FACES();
};

// The name of a platform's provider, likewise.
class QUILLON_API DescriptorIntIPMACPlatformProviderName final : public DescriptorIntBase {
 public:
  DescriptorIntIPMACPlatformProviderName() = default;
  explicit DescriptorIntIPMACPlatformProviderName(ByteView d)
      : DescriptorIntBase(d), text_char_(descriptor_length - 3, d.from(5)) {
    iso_639_language_code_.parse(d.from(2));
  }

  QUILLON_FIELD(ISO639LanguageCode, iso_639_language_code, get_iso_639_language_code);
  QUILLON_FIELD(Text, text_char, get_text_char);

  QUILLON_FACES();
};

}  // namespace quillon
