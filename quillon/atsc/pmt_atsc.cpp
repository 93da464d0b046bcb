#include <iomanip>
#include <ostream>

#include <quillon/atsc/pmt_atsc.h>
#include <quillon/descriptors/mpeg2/ca.h>
#include <quillon/descriptors/mpeg2/registration.h>
#include <quillon/faces/internal/walk_of.h>
#include <quillon/sections/internal/rows.h>
#include <quillon/tables/internal/stream_type.h>

namespace quillon {

namespace {

constexpr const char* kAtscPmtMismatch = "descriptor start end mismatch";

}  // namespace

void PmtATSC::_parse(ByteView body, bool keep_raw) {
  pcr_pid = body.bits(0, 4, 13);
  const int program_end = 4 + body.bits(2, 3, 12);
  if (!parse_descriptors(body, 4, program_end, context(body, keep_raw))) throw error(kAtscPmtMismatch);
  const bool whole = each_row(body, program_end, body_size(), [&](ByteView row, int length) {
    streams_.emplace_back(row, length, context(body, keep_raw));
    return length;
  });
  if (!whole) throw error(kAtscPmtMismatch);
}

PmtATSC::ElementaryStream::ElementaryStream(ByteView info, int& length, const RowContext& row) {
  if (length < 5) throw error("too little data");
  stream_type = info[0];
  elementary_PID = info.bits(1, 4, 13);
  ES_info_length = info.bits(3, 3, 12);
  // An overrun of this loop is found by the table alone.
  parse_descriptors(info, 5, 5 + ES_info_length, row);
  length = ES_info_length + 5;
}

const char* PmtATSC::ElementaryStream::get_stream_type_cstr(int stream_type) {
  return stream_type_text(stream_type);
}

const char* PmtATSC::ElementaryStream::standard_stream_type_text() const {
  const auto& registrations = get_atsc_registration_descriptors();
  const uint32_t own = registrations.empty() ? 0 : registrations.front().get_format_identifier();
  return quillon::standard_stream_type_text(stream_type, {own, format_identifier("GA94")});
}

void PmtATSC::get_all_ca_descriptors(std::vector<DescriptorCa>& out) const {
  const auto add = [&out](const std::vector<DescriptorCa>& some) {
    out.insert(out.end(), some.begin(), some.end());
  };
  add(get_atsc_CA_descriptors());
  for (const ElementaryStream& row : streams_) add(row.get_atsc_CA_descriptors());
}

void PmtATSC::_reset() {
  streams_.clear();
  clear_descriptors();
}

void PmtATSC::_dump_state(std::ostream& stream) const {
  const std::ios::fmtflags flags = stream.flags();
  const std::streamsize width = stream.width();
  stream << std::hex << std::right << std::unitbuf << std::uppercase << std::setfill('0');
  stream << "program_number: " << std::setw(4) << get_program_number() << std::endl;
  stream << "version_number: " << std::setw(2) << get_version_number() << std::endl;
  stream << "section_number: " << std::setw(2) << get_section_number() << std::endl;
  stream << "last_section_number: " << std::setw(2) << get_last_section_number() << std::endl;
  stream << "current_next_indicator: " << std::setw(2) << get_current_next_indicator() << std::endl;
  stream << "pcr_pid: " << std::setw(2) << pcr_pid << std::endl;
  stream << "Dumping " << streams_.size() << " stream infos" << std::endl;
  stream << "crc32: " << std::setw(8) << get_crc32() << std::endl;
  stream.flags(flags);
  stream.width(width);
}

template <class V, class S>
void PmtATSC::describe(V& v, S& s) {
  v.field("pcr_pid", s.pcr_pid);
  v.list("stream_infos", "stream", s.streams_);
  v.descriptors(s);
}
QUILLON_TABLE_WALK_OF(PmtATSC)

template <class V, class S>
void PmtATSC::ElementaryStream::describe(V& v, S& s) {
  v.coded("stream_type", s.stream_type, {s.get_stream_type_cstr(), s.standard_stream_type_text()});
  v.field("elementary_PID", s.elementary_PID);
  v.field("ES_info_length", s.ES_info_length);
  v.descriptors(s);
}
QUILLON_WALK_OF(PmtATSC::ElementaryStream)

}  // namespace quillon
