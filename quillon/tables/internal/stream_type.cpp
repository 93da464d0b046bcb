#include <iterator>

#include <quillon/tables/internal/stream_type.h>

namespace quillon {

namespace {

constexpr const char* kStreamTypes[] = {
    "ITU-T | ISO/IEC Reserved",
    "ISO/IEC 11172-2 Video",
    "ITU-T Rec. H.262 | ISO/IEC 13818-2 Video or ISO/IEC 11172-2 constrained parameter video stream",
    "ISO/IEC 11172-3 Audio",
    "ISO/IEC 13818-3 Audio",
    "ITU-T Rec. H.222.0 | ISO/IEC 13818-1 private_sections",
    "ITU-T Rec. H.222.0 | ISO/IEC 13818-1 PES packets containing private data",
    "ISO/IEC 13522 MHEG",
    "ITU-T Rec. H.222.0 | ISO/IEC 13818-1 Annex A DSM-CC",
    "ITU-T Rec. H.222.1",
    "ISO/IEC 13818-6 type A",
    "ISO/IEC 13818-6 type B",
    "ISO/IEC 13818-6 type C",
    "ISO/IEC 13818-6 type D",
    "ITU-T Rec. H.222.0 | ISO/IEC 13818-1 auxiliary",
    "ISO/IEC 13818-7 Audio with ADTS transport syntax",
    "ISO/IEC 14496-2 Visual",
    "ISO/IEC 14496-3 Audio with the LATM transport syntax as defined in ISO/IEC 14496-3/AMD-1",
    "ISO/IEC 14496-1 SL-packetized stream or FlexMux stream carried in PES packets",
    "ISO/IEC 14496-1 SL-packetized stream or FlexMux stream carried in ISO/IEC14496_sections",
    "ISO/IEC 13818-6 Synchronized Download Protocol",
    "Metadata carried in PES packets",
    "Metadata carried in metadata_sections",
    "Metadata carried in ISO/IEC 13818-6 Data Carousel",
    "Metadata carried in ISO/IEC 13818-6 Object Carousel",
    "Metadata carried in ISO/IEC 13818-6 Synchronized Download Protocol",
    "IPMP stream (defined in ISO/IEC 13818-11, MPEG-2 IPMP)",
    "AVC video stream as defined in ITU-T Rec. H.264 | ISO/IEC 14496-10 Video",
};

// From 0x1C on.
constexpr const char* kNewStreamTypes[] = {
    "ISO/IEC 14496-3 Audio, without additional transport syntax",
    "ISO/IEC 14496-17 Text",
    "Auxiliary video stream as defined in ISO/IEC 23002-3",
    "SVC video sub-bitstream of an AVC video stream (ISO/IEC 14496-10, Annex G)",
    "MVC video sub-bitstream of an AVC video stream (ISO/IEC 14496-10, Annex H)",
    "JPEG 2000 video stream (ISO/IEC 15444-1)",
    "Additional view ISO/IEC 13818-2 video stream for service-compatible stereoscopic 3D",
    "Additional view AVC video stream for service-compatible stereoscopic 3D",
    "HEVC video stream (ITU-T Rec. H.265 | ISO/IEC 23008-2)",
    "HEVC temporal video subset",
    "MVCD video sub-bitstream of an AVC video stream (ISO/IEC 14496-10, Annex I)",
    "Timeline and external media information stream",
    "HEVC enhancement sub-partition (Annex G)",
    "HEVC temporal enhancement sub-partition (Annex G)",
    "HEVC enhancement sub-partition (Annex H)",
    "HEVC temporal enhancement sub-partition (Annex H)",
    "Green access units carried in MPEG-2 sections",
    "MPEG-H 3D Audio (ISO/IEC 23008-3), main stream",
    "MPEG-H 3D Audio (ISO/IEC 23008-3), auxiliary stream",
    "Quality access units carried in sections",
    "Media orchestration access units carried in sections",
    "HEVC substream with motion-constrained tile sets",
    "JPEG XS video stream (ISO/IEC 21122-2)",
    "VVC video stream (ITU-T Rec. H.266 | ISO/IEC 23090-3)",
    "VVC temporal video subset",
    "EVC video stream (ISO/IEC 23094-1)",
    "LCEVC video stream (ISO/IEC 23094-2)",
};
constexpr int kFirstNew = 0x1C;

// What a type means under a registration; type 6 is private data in PES packets.
constexpr struct {
  int stream_type;
  uint32_t format_identifier;
  const char* text;
} kRegistered[] = {
    {0x06, format_identifier("AC-3"), "AC-3 audio"},
    {0x06, format_identifier("EAC3"), "Enhanced AC-3 audio"},
    {0x06, format_identifier("DTS1"), "DTS audio"},
    {0x06, format_identifier("DTS2"), "DTS audio"},
    {0x06, format_identifier("DTS3"), "DTS audio"},
    {0x06, format_identifier("HEVC"), "HEVC video"},
    {0x06, format_identifier("Opus"), "Opus audio"},
    {0x06, format_identifier("VC-1"), "VC-1 video"},
    {0x06, format_identifier("BSSD"), "SMPTE 302M audio"},
    {0x06, format_identifier("KLVA"), "KLV metadata"},
    {0x80, format_identifier("SCTE"), "SCTE video"},
    {0x80, format_identifier("GA94"), "SCTE video"},
    {0x80, format_identifier("HDMV"), "LPCM audio"},
    {0x81, format_identifier("AC-3"), "AC-3 audio"},
    {0x81, format_identifier("GA94"), "AC-3 audio"},
    {0x81, format_identifier("HDMV"), "AC-3 audio"},
    {0x82, format_identifier("SCTE"), "SCTE 27 subtitling"},
    {0x82, format_identifier("HDMV"), "DTS audio"},
    {0x83, format_identifier("HDMV"), "Dolby TrueHD audio"},
    {0x84, format_identifier("HDMV"), "Enhanced AC-3 audio"},
    {0x85, format_identifier("HDMV"), "DTS-HD audio"},
    {0x86, format_identifier("CUEI"), "SCTE 35 splice information"},
    {0x86, format_identifier("HDMV"), "DTS-HD Master audio"},
    {0x87, format_identifier("GA94"), "Enhanced AC-3 audio"},
    {0x87, format_identifier("EAC3"), "Enhanced AC-3 audio"},
    {0x90, format_identifier("HDMV"), "Presentation graphics"},
    {0x95, format_identifier("GA94"), "ATSC data service table, network resources table"},
    {0xA1, format_identifier("HDMV"), "Secondary Enhanced AC-3 audio"},
    {0xA2, format_identifier("HDMV"), "Secondary DTS-HD audio"},
    {0xC2, format_identifier("GA94"), "ATSC synchronous data stream"},
    {0xD1, format_identifier("drac"), "Dirac video"},
    {0xD4, format_identifier("AVSV"), "AVS3 video"},
    {0xD5, format_identifier("AVSA"), "AVS3 audio"},
    {0xEA, format_identifier("VC-1"), "VC-1 video"},
};

}  // namespace

const char* stream_type_text(int stream_type) {
  if (stream_type == 0x7F) return "IPMP stream";
  if (stream_type < 0 || stream_type > 0x7F) return "User Private";
  if (stream_type < static_cast<int>(std::size(kStreamTypes))) return kStreamTypes[stream_type];
  return "ITU-T Rec. H.222.0 | ISO/IEC 13818-1 Reserved";
}

// Quirk: stream_type texts
const char* standard_stream_type_text(int stream_type, std::initializer_list<uint32_t> format_identifiers) {
  for (const uint32_t format : format_identifiers)
    for (const auto& row : kRegistered)
      if (row.stream_type == stream_type && row.format_identifier == format) return row.text;
  const int i = stream_type - kFirstNew;
  if (i >= 0 && i < static_cast<int>(std::size(kNewStreamTypes))) return kNewStreamTypes[i];
  return stream_type_text(stream_type);
}

}  // namespace quillon
