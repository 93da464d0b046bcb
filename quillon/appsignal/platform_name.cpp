#include <quillon/appsignal/platform_name.h>
#include <quillon/faces/internal/describe.h>

namespace quillon {

template <class V, class S>
void DescriptorIntIPMACPlatformName::describe(V& v, S& s) {
  v.field("ISO_639_language_code", s.iso_639_language_code_);
  v.field("text_char", s.text_char_);
}
QUILLON_SILENT_FACES_OF(DescriptorIntIPMACPlatformName, "IP/MAC_platform_name_descriptor")

template <class V, class S>
void DescriptorIntIPMACPlatformProviderName::describe(V& v, S& s) {
  v.field("ISO_639_language_code", s.iso_639_language_code_);
  v.field("text_char", s.text_char_);
}
QUILLON_SILENT_FACES_OF(DescriptorIntIPMACPlatformProviderName, "IP/MAC_platform_provider_name_descriptor")

}  // namespace quillon
