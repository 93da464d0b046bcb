#include <iomanip>

#include <quillon/descriptors/dvb_classes.h>
#include <quillon/descriptors/internal/dump_descriptors.h>
#include <quillon/faces/internal/describe.h>
#include <quillon/report/internal/line.h>
#include <quillon/sections/internal/rows.h>
#include <quillon/tables/internal/stream_type.h>
#include <quillon/tables/pmt.h>

namespace quillon {

namespace {

constexpr const char* kPmtMismatch = "descriptor start end mismatch";

constexpr int kStreamHeader = 5;
// The stream_type of PES packets with private data.
constexpr int kPrivateData = 6;

int stream_size(ByteView row) {
  return row.bits(3, 3, 12) + kStreamHeader;
}

}  // namespace

void PmtDVB::_parse(ByteView body, bool keep_raw) {
  pcr_pid_ = body.bits(0, 4, 13);
  const int program_end = 4 + body.bits(2, 3, 12);
  const RowContext context{body, keep_raw, tolerance()};
  if (!parse_descriptors(body, 4, program_end, context)) throw error(kPmtMismatch);
  if (!read_sized_rows(streams_, body, program_end, body_size() - program_end, stream_size, context))
    throw error(kPmtMismatch);
  spread_registration();
}

void PmtDVB::spread_registration() {
  const auto& registrations = get_registration_descriptors();
  if (registrations.empty()) return;
  for (ElementaryStream& stream : streams_)
    stream.program_format_identifier_ = registrations.front().get_format_identifier();
}

PmtDVB::ElementaryStream::ElementaryStream(ByteView info, int& size, const RowContext& row) {
  if (size < kStreamHeader) throw error("too little data");
  stream_type_ = info[0];
  elementary_pid_ = info.bits(1, 4, 13);
  es_info_length_ = info.bits(3, 3, 12);
  // An overrun of this loop is found by the table alone.
  parse_descriptors(info, kStreamHeader, stream_size(info), row);
  size = stream_size(info);
}

const char* PmtDVB::ElementaryStream::get_stream_type_cstr(int stream_type) {
  return stream_type_text(stream_type);
}

const char* PmtDVB::ElementaryStream::standard_stream_type_text() const {
  if (stream_type_ == kPrivateData) {
    if (!get_AC3_descriptors().empty()) return "AC-3 audio";
    if (!get_enhanced_AC_3_descriptors().empty()) return "Enhanced AC-3 audio";
    if (!get_DTS_descriptors().empty()) return "DTS audio";
    if (!get_AAC_descriptors().empty()) return "AAC audio";
    if (!get_subtitling_descriptors().empty()) return "DVB subtitling";
    if (!get_teletext_descriptors().empty()) return "EBU teletext";
  }
  const auto& registrations = get_registration_descriptors();
  const uint32_t own = registrations.empty() ? 0 : registrations.front().get_format_identifier();
  return quillon::standard_stream_type_text(stream_type_, {own, program_format_identifier_});
}

void PmtDVB::_reset() {
  streams_.clear();
  clear_descriptors();
}

void PmtDVB::_dump_state(std::ostream& stream) const {
  const std::ios::fmtflags flags = stream.flags();
  const std::streamsize width = stream.width();
  stream << std::hex << std::right << std::unitbuf << std::uppercase << std::setfill('0');
  stream << "program_number: " << std::setw(4) << get_program_number() << std::endl;
  stream << "version_number: " << std::setw(2) << get_version_number() << std::endl;
  stream << "section_number: " << std::setw(2) << get_section_number() << std::endl;
  stream << "last_section_number: " << std::setw(2) << get_last_section_number() << std::endl;
  stream << "current_next_indicator: " << std::setw(2) << get_current_next_indicator() << std::endl;
  stream << "pcr_pid: " << std::setw(2) << pcr_pid_ << std::endl;
  dump_descriptors(stream, get_CA_descriptors(), get_general_descriptors(),
                   get_ISO_639_language_descriptors(), get_video_stream_descriptors(),
                   get_audio_stream_descriptors(), get_STD_descriptors(),
                   get_private_data_indicator_descriptors(), get_copyright_descriptors());
  stream << "Dumping " << streams_.size() << " stream infos" << std::endl;
  for (const ElementaryStream& row : streams_) row.dump_state(stream);
  stream << "crc32: " << std::setw(8) << get_crc32() << std::endl;
  stream.flags(flags);
  stream.width(width);
}

void PmtDVB::ElementaryStream::dump_state(std::ostream& stream) const {
  stream << std::hex;
  report::line(stream, "stream_type: ", stream_type_, 2);
  report::line(stream, "elementary_PID: ", elementary_pid_, 4);
  dump_descriptors(stream, get_CA_descriptors(), get_general_descriptors(), get_teletext_descriptors(),
                   get_ISO_639_language_descriptors(), get_video_stream_descriptors(),
                   get_audio_stream_descriptors(), get_STD_descriptors(),
                   get_private_data_indicator_descriptors(), get_copyright_descriptors(),
                   get_stream_identifier_descriptors());
}

template <class V, class S>
void PmtDVB::describe(V& v, S& s) {
  v.more("program_number", s.get_program_number());
  v.field("pcr", s.pcr_pid_);
  v.rows("stream_infos", "stream", s.streams_);
  v.descriptors(s);
  if constexpr (V::load) s.spread_registration();
}
QUILLON_TABLE_FACES_OF(PmtDVB)

template <class V, class S>
void PmtDVB::ElementaryStream::describe(V& v, S& s) {
  if constexpr (V::walk)
    v.coded("stream_type", s.stream_type_, {s.get_stream_type_cstr(), s.standard_stream_type_text()});
  else
    v.field("stream_type", s.stream_type_);
  v.field("elementary_pid", s.elementary_pid_);
  v.field("es_info_length", s.es_info_length_);
  v.descriptors(s);
}
QUILLON_ROW_FACES_OF(PmtDVB::ElementaryStream, ElementaryStream)

}  // namespace quillon
