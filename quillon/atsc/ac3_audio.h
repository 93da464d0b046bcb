#pragma once

#include <string>

#include <quillon/atsc/wire_only.h>
#include <quillon/fields/language.h>
#include <quillon/platform/wide_string.h>

namespace quillon {

// An AC-3 audio stream (A/52, annex A). Its parser traces what it reads to the debug output
// (<quillon/platform/debug_output.h>).
class QUILLON_API DescriptorAtscAC3Audio final : public DescriptorAtscWireOnly {
 public:
  DescriptorAtscAC3Audio() = default;
  // In the standard reading throws error("DescriptorAtscAC3Audio: descriptor_length too small") below 3; the
  // fields behind full_svc are there as far as the body goes. Else throws the same below 7,
  // "DescriptorAtscAC3Audio: textlen mismatch" for wide text of odd length, and
  // "DescriptorAtscAC3Audio: fatal error" if the fields go beyond the descriptor.
  explicit DescriptorAtscAC3Audio(ByteView d);

  const char* get_tag_text() const override { return "AC-3_audio_stream_descriptor"; }

  // Each is empty for a number that the standard does not have.
  static const char* get_sample_rate_code_text(int sample_rate_code);
  const char* get_sample_rate_code_text() const { return get_sample_rate_code_text(sample_rate_code); }
  static const char* get_bit_rate_code_text(int bit_rate_code);
  const char* get_bit_rate_code_text() const { return get_bit_rate_code_text(bit_rate_code); }
  static const char* get_surround_mode_text(int surround_mode);
  const char* get_surround_mode_text() const { return get_surround_mode_text(surround_mode); }
  static const char* get_num_channels_text(int num_channels);
  const char* get_num_channels_text() const { return get_num_channels_text(num_channels); }
  static const char* get_priority_text(int priority);
  const char* get_priority_text() const { return get_priority_text(priority); }

  int sample_rate_code = 0;
  int bsid = 0;
  int bit_rate_code = 0;
  int surround_mode = 0;
  int bsmod = 0;
  int num_channels = 0;
  int full_svc = 0;
  int langcod = 0;
  int langcod2 = 0;   // for 1 + 1 channels
  int mainid = 0;     // of a main service, bsmod 0 or 1
  int priority = 0;   // likewise
  int asvcflags = 0;  // of an associated service
  int textlen = 0;    // in bytes
  int text_code = 0;  // 1: `text`; 0: `wide_text`
  std::string text;
  wide_string wide_text;
  int language_flag = 0;
  int language_flag_2 = 0;
  ISO639LanguageCode language;
  ISO639LanguageCode language_2;
  std::vector<uint8_t> additional_info;

  QUILLON_WALK;
  void read_standard(ByteView body);
};

}  // namespace quillon
