#include <iomanip>
#include <ostream>

#include <quillon/sections/crc.h>
#include <quillon/sections/internal/composed.h>
#include <quillon/sections/internal/require_crc.h>
#include <quillon/sections/log.h>
#include <quillon/sections/psi_base.h>
#include <quillon/sections/section_size.h>

namespace quillon {

namespace {

int section_length_of(const uint8_t* section) {
  return (section[1] & 0x0F) << 8 | section[2];
}

void require_whole(const uint8_t* section, size_t size) {
  if (size < 3 || size < section_size(section)) throw error("section is shorter than its section_length");
}

[[noreturn]] void throw_wrong_header_bit(const uint8_t* where) {
  throw error(error::bad_value, static_cast<unsigned>(reinterpret_cast<uintptr_t>(where)));
}

}  // namespace

void detail::require_crc(const uint8_t* section, size_t size) {
  const uint32_t crc = section_crc(section, size);
  if (crc == good_section_crc) return;
  log_write(1, "crc error, got %#x expected 0xffffffff", crc);
  throw error("crc error");
}

void PsiTableBase::Parse(const uint8_t* section, size_t size, bool keep_raw) {
  require_whole(section, size);
  Parse(section, keep_raw);
}

void PsiTableBase::Parse(const uint8_t* section, bool keep_raw) {
  syntax_indicator_ = section[1] >> 7;
  section_length_ = section_length_of(section);
  const ByteView bytes(section, static_cast<size_t>(section_length_) + 3, get_reading());

  // Quirk: DsmCC section_syntax_indicator 0
  const bool has_checksum = standard() && !syntax_indicator_ && is_valid_syntax_indicator(0);
  if (!has_checksum) detail::require_crc(section, static_cast<size_t>(section_length_) + 3);
  section_end_ = section + section_length_ + 3;
  if (keep_raw) raw_bytes_.assign(section, section_end_);

  // Whatever the predicate says, a long section with a CRC has the indicator set.
  if (!syntax_indicator_ && !has_checksum) throw_wrong_header_bit(section);
  if (!is_valid_syntax_indicator(syntax_indicator_)) throw_wrong_header_bit(section + 1);
  // Quirk: AtscTVCT, AtscCVCT, AtscEIT, AtscETT, AtscRRT, AtscDCCT, AtscDCCSCT reserved header bits
  if (!standard() && !is_valid_reserved_header(bytes.bits(1, 5, 2))) throw_wrong_header_bit(section + 1);
  table_id_ = bytes[0];
  if (!is_valid_tablesid()) throw error("invalid table id");

  context_id_ = bytes.u16(3);
  version_number_ = bytes.bits(5, 5, 5);
  current_next_indicator_ = bytes.bits(5, 0, 1);
  section_number_ = bytes[6];
  last_section_number_ = bytes[7];
  crc_ = bytes.u32(section_length_ - 1);
  _parse(bytes.from(8), keep_raw);
  parsed_ = true;
}

void PsiTableBase::dump_state(std::ostream& outer) const {
  detail::compose(outer, [this](std::ostream& stream) {
    stream << std::hex << std::right << std::unitbuf << std::uppercase << std::setfill('0');
    stream << "table name: " << get_table_id_text() << std::endl;
    stream << "table_id " << std::setw(2) << table_id_ << std::endl;
    stream << "section_length " << std::setw(4) << section_length_ << std::endl;
    stream << "context_id " << std::setw(4) << context_id_ << std::endl;
    stream << "version_number " << std::setw(2) << version_number_ << std::endl;
    stream << "section_number " << std::setw(2) << section_number_ << std::endl;
    stream << "last_section_number " << last_section_number_ << std::endl;
    stream << "current_next_indicator " << std::setw(2) << current_next_indicator_ << std::endl;
    stream << "crc32 " << std::setw(8) << crc_ << std::endl;
    _dump_state(stream);
  });
}

void PsiTableBase::reset() {
  parsed_ = false;
  forget_failures();
  _reset();
}

const uint8_t* PsiTableBase::get_section_ptr_by_desc_pos(int position) const {
  const ptrdiff_t at = ptrdiff_t{position} + 8;
  if (at < 0 || at >= static_cast<ptrdiff_t>(raw_bytes_.size())) return nullptr;
  return raw_bytes_.data() + at;
}

void PsiBase::Parse(const uint8_t* section, size_t size, bool keep_raw) {
  require_whole(section, size);
  Parse(section, keep_raw);
}

void PsiBase::Parse(const uint8_t* section, bool keep_raw) {
  if (!is_syntax_indicator_valid(section[1] >> 7)) throw_wrong_header_bit(section);
  if (section[1] & 0x0C) throw_wrong_header_bit(section + 1);
  table_id_ = section[0];
  if (!is_valid_tablesid()) throw error("invalid table id");
  section_length_ = section_length_of(section);
  const size_t size = static_cast<size_t>(section_length_) + 3;
  if (keep_raw) raw_bytes_.assign(section, section + size);
  _parse(ByteView(section, size, get_reading()).from(3), keep_raw);
  parsed_ = true;
}

void PsiBase::dump_state(std::ostream& outer) const {
  detail::compose(outer, [this](std::ostream& stream) { _dump_state(stream); });
}

void PsiBase::_dump_state(std::ostream& stream) const {
  stream << "table_id: " << table_id_ << std::endl;
  stream << "section_length: " << section_length_ << std::endl;
}

void PsiBase::reset() {
  parsed_ = false;
  forget_failures();
  _reset();
}

}  // namespace quillon
