#include "apps/quillon/details.h"

#include <cctype>
#include <cstdio>
#include <sstream>

#include <quillon/atsc/atsc_classes.h>
#include <quillon/atsc/atsc_loop.h>
#include <quillon/fields/multiple_string.h>
#include <quillon/platform/utf8.h>

namespace quillon::app {

namespace {

using String = ATSCMultipleStringStructure::String;

std::string printable(std::string utf8) {
  for (size_t i = 0; i < utf8.size(); ++i) {
    const auto byte = static_cast<unsigned char>(utf8[i]);
    if (byte < 0x20 || byte == 0x7F) utf8[i] = ' ';
    const bool upper_control =
        byte == 0xC2 && i + 1 < utf8.size() && static_cast<unsigned char>(utf8[i + 1]) < 0xA0;
    if (upper_control) utf8.replace(i, 2, " ");
  }
  return utf8;
}

std::string hex2(int value) {
  return hex(static_cast<unsigned>(value), 2);
}
std::string hex8(uint32_t value) {
  return hex(value, 8);
}
std::string pair_of(int first, const char* between, int second) {
  return std::to_string(first) + between + std::to_string(second);
}

std::string hexadecimal(const std::vector<uint8_t>& bytes) {
  std::string out;
  for (const uint8_t byte : bytes) {
    char text[4];
    std::snprintf(text, sizeof text, "%02X", byte);
    out += text;
  }
  return out;
}

// Units of 400 bit/s.
std::string rate(int units) {
  return std::to_string(int64_t{units} * 400) + " bit/s";
}

// "0x47413934, GA94"
std::string identifier(uint32_t value) {
  std::string text;
  for (int shift = 24; shift >= 0; shift -= 8) text += static_cast<char>(value >> shift & 0xFF);
  for (const char c : text)
    if (!std::isprint(static_cast<unsigned char>(c)) || static_cast<unsigned char>(c) > 0x7E)
      return hex8(value);
  return hex8(value) + ", " + text;
}

std::string text_of(const String::Segment& segment) {
  if (segment.number_bytes == 0 || !segment.decoded_text.empty()) return shown(segment.decoded_text);
  // Coded text, or text in a mode that is not decoded.
  const char* const why =
      segment.compression_type != 0 ? segment.get_compression_type_text() : segment.get_mode_text();
  std::string text = "[";
  return text.append(std::to_string(segment.number_bytes)).append(" bytes: ").append(shown(why)).append("]");
}

// What the reports of the descriptors leave out.

void members(Details& out, const DescriptorVideoStream& d) {
  out.line("frame_rate_code", d.get_frame_rate_code());
  out.line("MPEG_1_only_flag", yes_no(d.get_mpeg_1_only_flag()));
  out.line("still_picture_flag", yes_no(d.get_still_picture_flag()));
  if (d.get_mpeg_1_only_flag()) return;
  out.line("profile_and_level_indication", hex2(d.get_profile_and_level_indication()));
  out.line("chroma_format", d.get_chroma_format());
}
void members(Details& out, const DescriptorHierarchy& d) {
  out.line("hierarchy_type", coded(d.get_hierarchy_type(), d.get_hierchy_type_string()));
  out.line("hierarchy_layer_index", d.get_hierarchy_layer_index());
  out.line("hierarchy_embedded_layer_index", d.get_hierarchy_embedded_layer_index());
  out.line("hierarchy_channel", d.get_hierarchy_channel());
}
void members(Details& out, const DescriptorRegistration& d) {
  out.line("format_identifier", identifier(d.get_format_identifier()));
  if (!d.get_additional_identification_info().empty())
    out.line("additional_identification_info", hexadecimal(d.get_additional_identification_info()));
}
void members(Details& out, const DescriptorDataStreamAlignment& d) {
  out.line("alignment_type", coded(d.get_alignment_type(), d.get_alignment_type_string()));
}
void members(Details& out, const DescriptorTargetBackgroundGrid& d) {
  out.line("size", pair_of(d.get_horizontal_size(), " x ", d.get_vertical_size()));
  out.line("aspect_ratio_information", d.get_aspect_ratio_information());
}
void members(Details& out, const DescriptorVideoWindow& d) {
  out.line("offset", pair_of(d.get_horizontal_offset(), ", ", d.get_vertical_offset()));
  out.line("window_priority", d.get_window_priority());
}
void members(Details& out, const DescriptorISO639Language& d) {
  for (const auto& language : d.get_language_vector()) {
    out.line("language", shown(language.get_iso_639_language_code().c_strA()));
    const Details::Level level(out);
    out.line("audio_type", language.get_audio_type());
  }
}
void members(Details& out, const DescriptorSystemClock& d) {
  out.line("external_clock_reference_indicator", yes_no(d.get_external_clock_reference_indicator()));
  out.line("clock_accuracy",
           pair_of(d.get_clock_accuracy_integer(), "e-", d.get_clock_accuracy_exponent()) + " ppm");
}
void members(Details& out, const DescriptorMultiplexBufferUtilization& d) {
  out.line("bound_valid_flag", yes_no(d.get_bound_valid_flag()));
  out.line("LTW_offset", pair_of(d.get_ltw_offset_lower_bound(), " to ", d.get_ltw_offset_upper_bound()));
}
void members(Details& out, const DescriptorMaximumBitrate& d) {
  out.line("maximum_bitrate", rate(d.get_maximum_bitrate()));
}
void members(Details& out, const DescriptorSmoothingBuffer& d) {
  out.line("sb_leak_rate", rate(d.get_sb_leak_rate()));
  out.line("sb_size", std::to_string(d.get_sb_size()) + " bytes");
}
void members(Details& out, const DescriptorIBP& d) {
  out.line("closed_gop_flag", yes_no(d.get_closed_gop_flag()));
  out.line("identical_gop_flag", yes_no(d.get_identical_gop_flag()));
  out.line("max_gop_length", d.get_max_gop_length());
}
void members(Details& out, const DescriptorCarouselId& d) {
  out.line("carousel_id", hex8(d.get_carousel_id()));
  out.line("FormatId", d.get_formatid());
}
void members(Details& out, const DescriptorAssociationTag& d) {
  out.line("association_tag", hex4(d.get_association_tag()));
  out.line("use", hex4(d.get_use()));
}

void members(Details& out, const DescriptorAtscStuffing& d) {
  out.line("data", hexadecimal(d.data));
}
void members(Details& out, const DescriptorAtscAC3Audio& d) {
  out.line("sample_rate_code", coded(d.sample_rate_code, d.get_sample_rate_code_text()));
  out.line("bit_rate_code", coded(d.bit_rate_code, d.get_bit_rate_code_text()));
  out.line("surround_mode", coded(d.surround_mode, d.get_surround_mode_text()));
  out.line("bsmod", d.bsmod);
  out.line("num_channels", coded(d.num_channels, d.get_num_channels_text()));
  out.line("full_svc", yes_no(d.full_svc));
  if (d.bsmod < 2) out.line("priority", coded(d.priority, d.get_priority_text()));
  if (d.language_flag) out.line("language", shown(d.language.c_strA()));
  if (d.language_flag_2) out.line("language_2", shown(d.language_2.c_strA()));
  if (!d.text.empty()) out.line("text", shown(d.text.c_str()));
  if (!d.wide_text.empty()) out.line("text", shown(d.wide_text));
}
void members(Details& out, const DescriptorAtscCaptionService& d) {
  for (const auto& service : d.services) {
    std::string text = shown(service.language.c_strA());
    text += service.digital_cc ? ", digital, service " + std::to_string(service.caption_service_number)
                               : ", line 21, field " + std::to_string(service.line21_field);
    if (service.easy_reader) text += ", easy reader";
    if (service.wide_aspect_ratio) text += ", wide";
    out.line("captions", text);
  }
}
void members(Details& out, const DescriptorAtscContentAdvisory& d) {
  for (const auto& region : d.regions) {
    out.line("rating_region", region.rating_region);
    const Details::Level level(out);
    for (const auto& dimension : region.dimensions)
      out.line("dimension", pair_of(dimension.rating_dimension_j, ", value ", dimension.rating_value));
    out.strings("rating_description_text", region.rating_description_text);
  }
}
void members(Details& out, const DescriptorAtscExtendedChannelName& d) {
  out.strings("long_channel_name_text", d.long_channel_name_text);
}
void members(Details& out, const DescriptorAtscServiceLocation& d) {
  out.line("PCR_PID", hex4(d.PCR_PID));
  for (const auto& element : d.elements) {
    out.line("elementary_PID", hex4(element.elementary_PID));
    const Details::Level level(out);
    out.line("stream_type", coded(element.stream_type, element.get_stream_type_text()));
    const std::string language = shown(element.language.c_strA());
    if (!language.empty()) out.line("language", language);
  }
}
void members(Details& out, const DescriptorAtscTimeShiftedService& d) {
  for (const auto& service : d.services)
    out.line("channel", channel_number(service.major_channel_number, service.minor_channel_number) + ", " +
                            std::to_string(service.time_shift) + " minutes later");
}
void members(Details& out, const DescriptorAtscComponentName& d) {
  out.strings("component_name_string", d.component_name_string);
}
void members(Details& out, const DescriptorAtscDCCDepartingRequest& d) {
  out.line("dcc_departing_request_type", d.dcc_departing_request_type);
  out.strings("dcc_departing_request_text", d.dcc_departing_request_text);
}
void members(Details& out, const DescriptorAtscDCCArrivingRequest& d) {
  out.line("dcc_arriving_request_type", d.dcc_arriving_request_type);
  out.strings("dcc_arriving_request_text", d.dcc_arriving_request_text);
}
void members(Details& out, const DescriptorAtscRedistributionControl& d) {
  out.line("data", hexadecimal(d.data));
}
void members(Details& out, const DescriptorAtscGenre& d) {
  for (const auto& attribute : d.attributes) out.line("attribute", hex2(attribute.attribute));
}

template <class Descriptor>
void print(Details& out, const std::vector<Descriptor>& descriptors) {
  for (const Descriptor& descriptor : descriptors) {
    std::ostringstream report;
    report << std::uppercase;
    descriptor.dump_state(report);
    std::istringstream lines(report.str());
    std::string text;
    std::getline(lines, text);
    out.line(shown(text.c_str()));
    const Details::Level level(out);
    if constexpr (requires { members(out, descriptor); })
      members(out, descriptor);
    else
      while (std::getline(lines, text)) out.line(shown(text.c_str()));
  }
}

}  // namespace

std::string shown(const char* ansi) {
  return printable(utf8(ansi));
}
std::string shown(const wide_string& text) {
  return printable(platform::to_utf8(text));
}

std::string coded(int code, const char* text) {
  const std::string meaning = shown(text);
  return meaning.empty() ? std::to_string(code) : std::to_string(code) + ", " + meaning;
}
std::string yes_no(int flag) {
  return flag ? "yes" : "no";
}
std::string hex4(int value) {
  return hex(static_cast<unsigned>(value), 4);
}
std::string channel_number(int major, int minor) {
  return pair_of(major, ".", minor);
}

void Details::line(const std::string& text) {
  text_.append(depth_ * 2, ' ');
  text_ += text;
  text_ += '\n';
}
void Details::line(const char* name, const std::string& value) {
  line(std::string(name) + ": " + value);
}
void Details::line(const char* name, int value) {
  line(name, std::to_string(value));
}

void Details::strings(const char* name, const ATSCMultipleStringStructure& text) {
  for (const String& string : text.strings) {
    std::string all;
    for (const String::Segment& segment : string.segments) all += text_of(segment);
    line(std::string(name) + " (" + shown(string.iso639languagecode.c_strA()) + "): " + all);
  }
}

void Details::descriptors(const AtscLoop& loop) {
#define QUILLON_KIND(tag, Class, accessor, element, rank) print(*this, loop.get_atsc_##accessor());
#define QUILLON_KIND_LOADED_AS(tag, Class, accessor, saved, loaded, rank) \
  print(*this, loop.get_atsc_##accessor());
#include <quillon/descriptors/mpeg2_kinds.inc>
#undef QUILLON_KIND
#undef QUILLON_KIND_LOADED_AS
#define QUILLON_KIND(tag, Class, accessor, element, rank) print(*this, loop.get_##accessor());
#include <quillon/atsc/atsc_kinds.inc>
#undef QUILLON_KIND
  print(*this, loop.get_general_descriptors());
  print(*this, loop.get_user_private_descriptors());
}

}  // namespace quillon::app
