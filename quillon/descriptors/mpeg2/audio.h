#pragma once

#include <quillon/descriptors/descriptor_base.h>
#include <quillon/fields/language.h>

namespace quillon {

// Coding parameters of an audio elementary stream (ISO/IEC 13818-1, 2.6.4).
class QUILLON_API DescriptorAudioStream final : public DescriptorBase {
 public:
  DescriptorAudioStream() = default;
  explicit DescriptorAudioStream(ByteView d)
      : DescriptorBase(d),
        free_format_flag_(d.bits(2, 7, 1)),
        id_(d.bits(2, 6, 1)),
        layer_(d.bits(2, 5, 2)),
        variable_rate_audio_indicator_(d.bits(2, 3, 1)) {}

  QUILLON_FIELD(int, free_format_flag, get_free_format_flag);
  QUILLON_FIELD(int, id, get_id);
  QUILLON_FIELD(int, layer, get_layer);
  QUILLON_FIELD(int, variable_rate_audio_indicator, get_variable_rate_audio_indicator);

  QUILLON_FACES();
};

// One entry of a language descriptor as it is on the wire.
struct ISO_639_LANGUAGE_CODE {
  uint8_t iso_639_language_code[3];
  uint8_t audio_type;
};

// The languages of a stream (ISO/IEC 13818-1, 2.6.18).
class QUILLON_API DescriptorISO639Language final : public DescriptorBase {
 public:
  // A language of the stream, and what kind of sound it is.
  class QUILLON_API ISO639Lang {
   public:
    ISO639Lang() = default;
    explicit ISO639Lang(ISO_639_LANGUAGE_CODE* entry)
        : ISO639Lang(ByteView(reinterpret_cast<const uint8_t*>(entry))) {}
    explicit ISO639Lang(ByteView entry) : audio_type_(entry[3]) { iso_639_language_code_.parse(entry); }

    QUILLON_FIELD(ISO639LanguageCode, iso_639_language_code, get_iso_639_language_code);

   public:
    int get_audio_type() const { return audio_type_; }  // 8 bits, after a load too

    QUILLON_RECORD_FACES;

    uint8_t audio_type_ = 0;
  };

  DescriptorISO639Language() = default;
  // Throws error("descriptor length mismatch") unless the length is a multiple of 4.
  explicit DescriptorISO639Language(ByteView d);

  QUILLON_FIELD(std::vector<ISO639Lang>, language_vector, get_language_vector);

  QUILLON_FACES(language_vector_);
};

}  // namespace quillon
