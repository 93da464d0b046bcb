#include <quillon/descriptors/mpeg2/audio.h>
#include <quillon/faces/internal/describe.h>
#include <quillon/sections/internal/rows.h>

namespace quillon {

template <class V, class S>
void DescriptorAudioStream::describe(V& v, S& s) {
  v.field("free_format_flag", s.free_format_flag_);
  v.field("ID", s.id_);
  v.field("layer", s.layer_);
  v.field("variable_rate_audio_indicator", s.variable_rate_audio_indicator_);
}
QUILLON_FACES_OF(DescriptorAudioStream, "audio_stream_descriptor")

DescriptorISO639Language::DescriptorISO639Language(ByteView d) : DescriptorBase(d) {
  if (descriptor_length % 4 != 0) throw error("descriptor length mismatch");
  read_rows(language_vector_, d, 2, descriptor_length, 4);
}

template <class V, class S>
void DescriptorISO639Language::describe(V& v, S& s) {
  v.list("language_vector", "language", s.language_vector_);
}
QUILLON_FACES_OF(DescriptorISO639Language, "ISO_639_language_descriptor")

template <class V, class S>
void DescriptorISO639Language::ISO639Lang::describe(V& v, S& s) {
  v.field("ISO_639_language_code", s.iso_639_language_code_);
  if constexpr (V::dump)
    v.stream() << "audio_type: " << static_cast<char>(s.audio_type_) << std::endl;
  else
    v.field("audio_type", s.audio_type_);
}
QUILLON_RECORD_FACES_OF(DescriptorISO639Language::ISO639Lang)

}  // namespace quillon
