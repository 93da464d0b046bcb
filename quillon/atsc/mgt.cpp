#include <ostream>

#include <quillon/atsc/mgt.h>
#include <quillon/faces/internal/walk_of.h>
#include <quillon/report/internal/line.h>
#include <quillon/sections/internal/rows.h>

namespace quillon {

namespace {

constexpr const char* kMgtMismatch = "AtscMGT: descriptor start end mismatch";

constexpr const char* kReserved = "[Reserved for future ATSC use]";

// 0x92 and 0x96 are the closing quote and the en dash of code page 1252.
#define QUILLON_VCT(kind, indicator) kind " VCT with current_next_indicator=\x92" indicator "\x92"

// The text of all types up to `last`, from the row before on.
constexpr struct {
  int last;
  const char* text;
} kTableTypes[] = {
    {0x0000, QUILLON_VCT("Terrestrial", "1")},
    {0x0001, QUILLON_VCT("Terrestrial", "0")},
    {0x0002, QUILLON_VCT("Cable", "1")},
    {0x0003, QUILLON_VCT("Cable", "0")},
    {0x0004, "Channel ETT"},
    {0x0005, "DCCSCT"},
    {0x00FF, kReserved},
    {0x017F, "EIT-0 to EIT-127"},
    {0x01FF, kReserved},
    {0x027F, "Event ETT-0 to event ETT-127"},
    {0x0300, kReserved},
    {0x03FF, "RRT with rating_region 1-255"},
    {0x0FFF, "[User private]"},
    {0x13FF, kReserved},
    {0x1400, "DCCT with dcc_id 0x00 \x96 0xFF"},
    {0x14FF, ""},  // the other DCCTs have no text: kept
    {0xFFFF, kReserved},
};
#undef QUILLON_VCT

}  // namespace

void AtscMGT::_parse(ByteView body, bool keep_raw) {
  protocol_version = body[0];
  tables_defined = body.u16(1);
  const int pos = read_counted_rows(tables, body, 3, section_end(), tables_defined, context(body));
  descriptors_length = body.bits(pos, 3, 12);
  // Quirk: AtscMGT, AtscTVCT, AtscCVCT length of the last loop
  const int end = standard() ? pos + 2 + descriptors_length : body_size();
  if (!parse_descriptors(body, pos + 2, end, context(body, keep_raw))) throw error(kMgtMismatch);
}

AtscMGT::Table::Table(ByteView data, int& length, const RowContext& row)
    : table_type(data.u16(0)),
      table_type_PID(data.bits(2, 4, 13)),
      table_type_version_number(data.bits(4, 4, 5)),
      // Quirk: AtscMGT::Table number_bytes
      number_bytes(static_cast<int>((static_cast<uint32_t>(data.u16(5)) << 16) +
                                    data[7] * (data.standard() ? 256u : 100u) + data[8])),
      table_type_descriptors_length(data.bits(9, 3, 12)) {
  const int end = 11 + table_type_descriptors_length;
  if (!parse_descriptors(data, 11, end, row)) throw error(kMgtMismatch);
  length = end;
}

const char* AtscMGT::Table::get_table_type_text(int table_type) {
  if (table_type < 0) return "";
  for (const auto& range : kTableTypes)
    if (table_type <= range.last) return range.text;
  return "";
}

// Quirk: ATSC table_type texts
const char* AtscMGT::Table::standard_table_type_text(int table_type) {
  if (table_type >= 0x1400 && table_type <= 0x14FF) return get_table_type_text(0x1400);
  return get_table_type_text(table_type);
}

void AtscMGT::_dump_state(std::ostream& stream) const {
  report::line(stream, "protocol_version: ", protocol_version);
  report::line(stream, "tables_defined: ", tables_defined);
  for (const Table& table : tables) {
    table.dump_state(stream);
    stream << std::endl;
  }
}

void AtscMGT::Table::dump_state(std::ostream& stream) const {
  report::line(stream, "table_type: ", table_type);
  report::line(stream, "table_type_PID: ", table_type_PID);
  report::line(stream, "table_type_version_number: ", table_type_version_number);
  report::line(stream, "number_bytes: ", number_bytes);
  report::line(stream, "table_type_descriptors_length: ", table_type_descriptors_length);
}

template <class V, class S>
void AtscMGT::describe(V& v, S& s) {
  v.field("protocol_version", s.protocol_version);
  v.field("tables_defined", s.tables_defined);
  v.list("tables", "table", s.tables);
  v.field("descriptors_length", s.descriptors_length);
  v.descriptors(s);
}
QUILLON_TABLE_WALK_OF(AtscMGT)

template <class V, class S>
void AtscMGT::Table::describe(V& v, S& s) {
  v.coded("table_type", s.table_type, {get_table_type_text, standard_table_type_text});
  v.field("table_type_PID", s.table_type_PID);
  v.field("table_type_version_number", s.table_type_version_number);
  // Quirk: unsigned fields of 32 bits
  v.field("number_bytes", static_cast<uint32_t>(s.number_bytes));
  v.field("table_type_descriptors_length", s.table_type_descriptors_length);
  v.descriptors(s);
}
QUILLON_WALK_OF(AtscMGT::Table)

}  // namespace quillon
