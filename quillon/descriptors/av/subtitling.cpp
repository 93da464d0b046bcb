#include <quillon/descriptors/av/subtitling.h>
#include <quillon/faces/internal/describe.h>
#include <quillon/sections/internal/rows.h>

namespace quillon {

DescriptorSubtitling::DescriptorSubtitling(ByteView d) : DescriptorBase(d) {
  if (!read_rows(subtitling_infos, d, 2, descriptor_length, 8))
    throw error(error::length_mismatch, "subtitling_descriptor");
}

template <class V, class S>
void DescriptorSubtitling::describe(V& v, S& s) {
  v.list("subtitlinginfo", "info", s.subtitling_infos);
}
QUILLON_FACES_OF(DescriptorSubtitling, "subtitling_descriptor")

// A report begins with the language, a document ends with it.
template <class V, class S>
void DescriptorSubtitling::SubtitlingInfo::describe(V& v, S& s) {
  v.labels("DescriptorSubtitling::", ": ");
  if constexpr (!V::xml) v.field("ISO_639_language_code", s.ISO_639_language_code);
  v.field("subtitling_type", s.subtitling_type);
  v.field("composition_page_id", s.composition_page_id);
  v.field("antcillary_page_id", s.ancillary_page_id);  // sic: saved documents and reports have this name
  if constexpr (V::xml) v.field("ISO_639_language_code", s.ISO_639_language_code);
}
QUILLON_RECORD_FACES_OF(DescriptorSubtitling::SubtitlingInfo)

}  // namespace quillon
