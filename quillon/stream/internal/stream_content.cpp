#include <quillon/descriptors/av/aac.h>
#include <quillon/descriptors/av/ac3.h>
#include <quillon/descriptors/av/dts.h>
#include <quillon/descriptors/av/subtitling.h>
#include <quillon/descriptors/av/teletext.h>
#include <quillon/descriptors/av/vbi.h>
#include <quillon/descriptors/data/application_signalling.h>
#include <quillon/descriptors/data/data_broadcast.h>
#include <quillon/descriptors/dvb_loop.h>
#include <quillon/stream/internal/stream_content.h>

namespace quillon::detail {

namespace {

constexpr uint32_t identifier(const char (&text)[5]) {
  uint32_t out = 0;
  for (int i = 0; i < 4; ++i) out = out << 8 | static_cast<uint8_t>(text[i]);
  return out;
}

struct Format {
  uint32_t format_identifier;
  const char* content;
};

// What a registration says of private data (the register of SMPTE RA).
constexpr Format kFormats[] = {
    {identifier("AC-3"), "AC-3 audio"},     {identifier("EAC3"), "E-AC-3 audio"},
    {identifier("DTS1"), "DTS audio"},      {identifier("DTS2"), "DTS audio"},
    {identifier("DTS3"), "DTS audio"},      {identifier("Opus"), "Opus audio"},
    {identifier("BSSD"), "PCM audio"},      {identifier("HEVC"), "HEVC video"},
    {identifier("VC-1"), "VC-1 video"},     {identifier("drac"), "Dirac video"},
    {identifier("KLVA"), "metadata"},       {identifier("ID3 "), "metadata"},
    {identifier("VANC"), "ancillary data"},
};

const char* content_of_private_data(uint32_t format_identifier, const DvbLoop* loop) {
  for (const Format& format : kFormats)
    if (format.format_identifier == format_identifier) return format.content;
  if (!loop) return nullptr;
  if (!loop->get_AC3_descriptors().empty()) return "AC-3 audio";
  if (!loop->get_enhanced_AC_3_descriptors().empty()) return "E-AC-3 audio";
  if (!loop->get_AAC_descriptors().empty()) return "AAC audio";
  if (!loop->get_DTS_descriptors().empty()) return "DTS audio";
  if (!loop->get_subtitling_descriptors().empty()) return "subtitles";
  if (!loop->get_teletext_descriptors().empty()) return "teletext";
  if (!loop->get_VBI_data_descriptors().empty() || !loop->get_VBI_teletext_descriptors().empty())
    return "VBI data";
  return nullptr;
}

const char* content_of_sections(const DvbLoop* loop) {
  if (loop && !loop->get_application_signalling_descriptors().empty()) return "applications";
  if (loop)
    for (const DescriptorDataBroadcastId& broadcast : loop->get_data_broadcast_id_descriptors())
      if (broadcast.data_broadcast_id == DescriptorDataBroadcastId::ip_mac_notification)
        return "IP/MAC notification";
  return "sections";
}

}  // namespace

const char* stream_content(int stream_type, uint32_t format_identifier, const DvbLoop* loop) {
  switch (stream_type) {
    case 0x01:
      return "MPEG-1 video";
    case 0x02:
      return "MPEG-2 video";
    case 0x03:
    case 0x04:
      return "MPEG audio";
    case 0x05:
      return content_of_sections(loop);
    case 0x06:
      return content_of_private_data(format_identifier, loop);
    case 0x08:
    case 0x0A:
    case 0x0B:
    case 0x0C:
    case 0x0D:
      return "DSM-CC";
    case 0x0F:
    case 0x11:
      return "AAC audio";
    case 0x10:
      return "MPEG-4 video";
    case 0x15:
    case 0x16:
      return "metadata";
    case 0x1B:
      return "H.264 video";
    case 0x20:
      return "H.264 video, second view";
    case 0x21:
      return "JPEG 2000 video";
    case 0x24:
    case 0x25:
      return "HEVC video";
    case 0x33:
      return "VVC video";
    case 0x42:
      return "AVS video";
    case 0x81:
      return "AC-3 audio";
    case 0x86:
      return "splice information";
    case 0x87:
      return "E-AC-3 audio";
    case 0xEA:
      return format_identifier == identifier("VC-1") ? "VC-1 video" : nullptr;
    default:
      return stream_type < 0x80 ? nullptr : content_of_private_data(format_identifier, loop);
  }
}

}  // namespace quillon::detail
