#include <cstdarg>
#include <cstdio>

#include <quillon/atsc/ac3_audio.h>
#include <quillon/descriptors/internal/code_text.h>
#include <quillon/faces/internal/walk_of.h>
#include <quillon/platform/debug_output.h>

namespace quillon {

namespace {

[[gnu::format(printf, 2, 3)]] void trace(platform::DebugOutput output, const char* format, ...) {
  if (!output) return;
  char text[128];
  va_list values;
  va_start(values, format);
  std::vsnprintf(text, sizeof text, format, values);
  va_end(values);
  output(text);
}

// The low 32 bits of the address of byte `i`, which need not be there.
unsigned address(ByteView d, int i) {
  return static_cast<unsigned>(reinterpret_cast<uintptr_t>(d.data()) + static_cast<uintptr_t>(i));
}

}  // namespace

DescriptorAtscAC3Audio::DescriptorAtscAC3Audio(ByteView d) : DescriptorAtscWireOnly(d) {
  // Quirk: DescriptorAtscAC3Audio optional fields, text
  if (d.standard()) {
    read_standard(d.from(2).upto(descriptor_length));
    return;
  }
  if (descriptor_length < 7) throw error("DescriptorAtscAC3Audio: descriptor_length too small");
  const platform::DebugOutput output = platform::debug_output();
  sample_rate_code = d.bits(2, 7, 3);
  bsid = d.bits(2, 4, 5);
  bit_rate_code = d.bits(3, 7, 6);
  surround_mode = d.bits(3, 1, 2);
  bsmod = d.bits(4, 7, 3);
  num_channels = d.bits(4, 4, 4);
  full_svc = d.bits(4, 0, 1);
  langcod = d[5];
  int pos = 6;
  trace(output, "DescriptorAtscAC3Audio: p[0]=0x%08x", address(d, 0));
  trace(output, "DescriptorAtscAC3Audio: TRACE0 p2[0]=0x%08x", address(d, pos));
  trace(output, "DescriptorAtscAC3Audio: num_channels=%d", num_channels);
  if (num_channels == 0) langcod2 = d[pos++];
  if (bsmod < 2) {
    mainid = d.bits(pos, 7, 3);
    priority = d.bits(pos, 4, 2);
  } else {
    asvcflags = d[pos];
  }
  ++pos;
  trace(output, "DescriptorAtscAC3Audio: TRACE1 p2[0]=0x%08x", address(d, pos));
  textlen = d.bits(pos, 7, 7);
  text_code = d.bits(pos, 0, 1);
  trace(output, "DescriptorAtscAC3Audio: textlen=%d", textlen);
  if (text_code == 1) {
    text = d.chars(pos + 1, textlen);
  } else {
    if (textlen % 2 != 0) throw error("DescriptorAtscAC3Audio: textlen mismatch");
    // The first unit begins with the length byte and the last byte of the text is left out: kept.
    wide_text.reserve(static_cast<size_t>(textlen) / 2);
    for (int i = 0; i < textlen; i += 2) wide_text.push_back(static_cast<uint16_t>(d.u16(pos + i)));
  }
  trace(output, "DescriptorAtscAC3Audio: TRACE2 p2[0]=0x%08x", address(d, pos));
  pos += 1 + textlen;
  trace(output, "DescriptorAtscAC3Audio: TRACE3 p2[0]=0x%08x", address(d, pos));
  language_flag = d.bits(pos, 7, 1);
  language_flag_2 = d.bits(pos, 6, 1);
  trace(output, "DescriptorAtscAC3Audio: language_flag=%d", language_flag);
  trace(output, "DescriptorAtscAC3Audio: language_flag_2=%d", language_flag_2);
  ++pos;
  if (language_flag == 1) {
    language.parse(d.from(pos));
    pos += 3;
  }
  if (language_flag_2 == 1) {
    language_2.parse(d.from(pos));
    pos += 3;
  }
  const int additional_info_length = 2 + descriptor_length - pos;
  trace(output, "DescriptorAtscAC3Audio: additional_info_length=%d", additional_info_length);
  if (additional_info_length < 0) throw error("DescriptorAtscAC3Audio: fatal error");
  additional_info = d.bytes(pos, additional_info_length);
}

void DescriptorAtscAC3Audio::read_standard(ByteView body) {
  if (descriptor_length < 3) throw error("DescriptorAtscAC3Audio: descriptor_length too small");
  sample_rate_code = body.bits(0, 7, 3);
  bsid = body.bits(0, 4, 5);
  bit_rate_code = body.bits(1, 7, 6);
  surround_mode = body.bits(1, 1, 2);
  bsmod = body.bits(2, 7, 3);
  num_channels = body.bits(2, 4, 4);
  full_svc = body.bits(2, 0, 1);
  // Past the end of the body all fields are 0.
  langcod = body[3];
  int pos = 4;
  if (num_channels == 0) langcod2 = body[pos++];
  if (bsmod < 2) {
    mainid = body.bits(pos, 7, 3);
    priority = body.bits(pos, 4, 2);
  } else {
    asvcflags = body[pos];
  }
  ++pos;
  textlen = body.bits(pos, 7, 7);
  text_code = body.bits(pos, 0, 1);
  ++pos;
  const std::string_view bytes = body.present(pos, textlen);
  if (text_code == 1)
    text = bytes;
  else
    for (size_t i = 0; i + 1 < bytes.size(); i += 2)
      wide_text.push_back(static_cast<uint16_t>(body.u16(pos + static_cast<int>(i))));
  pos += textlen;
  language_flag = body.bits(pos, 7, 1);
  language_flag_2 = body.bits(pos, 6, 1);
  ++pos;
  if (language_flag) {
    language.parse(body.from(pos));
    pos += 3;
  }
  if (language_flag_2) {
    language_2.parse(body.from(pos));
    pos += 3;
  }
  additional_info = body.bytes(pos, descriptor_length - pos);
}

const char* DescriptorAtscAC3Audio::get_sample_rate_code_text(int sample_rate_code) {
  return detail::text_of(sample_rate_code,
                         {"48 kHz", "44.1 kHz", "32 kHz", "Reserved kHz", "48 or 44.1 kHz", "48 or 32 kHz",
                          "44.1 or 32 kHz", "48 or 44.1 or 32 kHz"},
                         "");
}

const char* DescriptorAtscAC3Audio::get_bit_rate_code_text(int bit_rate_code) {
#define QUILLON_BIT_RATES(meaning)                                                                    \
  {                                                                                                   \
    "32" meaning, "40" meaning, "48" meaning, "56" meaning, "64" meaning, "80" meaning, "96" meaning, \
        "112" meaning, "128" meaning, "160" meaning, "192" meaning, "224" meaning, "256" meaning,     \
        "320" meaning, "384" meaning, "448" meaning, "512" meaning, "576" meaning, "640" meaning      \
  }
  if (bit_rate_code < 32)
    return detail::text_of(bit_rate_code, QUILLON_BIT_RATES(" Exact Bit Rate (kbit/s)"), "");
  return detail::text_of(bit_rate_code - 32, QUILLON_BIT_RATES(" Bit Rate Upper Limit (kbit/s)"), "");
#undef QUILLON_BIT_RATES
}

const char* DescriptorAtscAC3Audio::get_surround_mode_text(int surround_mode) {
  return detail::text_of(
      surround_mode, {"Not indicated", "NOT Dolby surround encoded", "Dolby surround encoded", "Reserved"},
      "");
}

const char* DescriptorAtscAC3Audio::get_num_channels_text(int num_channels) {
  return detail::text_of(num_channels,
                         {"1 + 1", "1/0", "2/0", "3/0", "2/1", "3/1", "2/2", "3/2", "1", "<= 2", "<= 3",
                          "<= 4", "<= 5", "<= 6", "Reserved", "Reserved"},
                         "");
}

const char* DescriptorAtscAC3Audio::get_priority_text(int priority) {
  return detail::text_of(priority, {"reserved", "Primary Audio", "Other Audio", "Not specified"}, "");
}

template <class V, class S>
void DescriptorAtscAC3Audio::describe(V& v, S& s) {
  v.coded("sample_rate_code", s.sample_rate_code, s.get_sample_rate_code_text());
  v.field("bsid", s.bsid);
  v.coded("bit_rate_code", s.bit_rate_code, s.get_bit_rate_code_text());
  v.coded("surround_mode", s.surround_mode, s.get_surround_mode_text());
  v.field("bsmod", s.bsmod);
  v.coded("num_channels", s.num_channels, s.get_num_channels_text());
  v.field("full_svc", s.full_svc);
  v.field("langcod", s.langcod);
  v.field("langcod2", s.langcod2);
  v.field("mainid", s.mainid);
  v.coded("priority", s.priority, s.get_priority_text());
  v.field("asvcflags", s.asvcflags);
  v.field("textlen", s.textlen);
  v.field("text_code", s.text_code);
  v.field("text", s.text);
  v.field("wide_text", wide_view(s.wide_text));
  v.field("language_flag", s.language_flag);
  v.field("language_flag_2", s.language_flag_2);
  v.field("language", s.language);
  v.field("language_2", s.language_2);
  v.field("additional_info", s.additional_info);
}
QUILLON_WALK_OF(DescriptorAtscAC3Audio)

}  // namespace quillon
