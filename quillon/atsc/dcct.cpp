#include <quillon/atsc/dcct.h>
#include <quillon/atsc/internal/gps_time.h>
#include <quillon/faces/internal/walk_of.h>
#include <quillon/sections/internal/rows.h>

namespace quillon {

void AtscDCCT::_parse(ByteView body, bool) {
  protocol_version = body[0];
  dcc_test_count = body[1];
  const int pos = read_counted_rows(tests, body, 2, body_size() - 2, dcc_test_count, context(body));
  additional_descriptors_length = body.bits(pos, 1, 10);
  if (!parse_descriptors(body, pos + 2, pos + 2 + additional_descriptors_length, context(body)))
    throw error("AtscRRT: descriptor start end mismatch");
}

AtscDCCT::DCCTest::DCCTest(ByteView data, int& length, const RowContext& row)
    : dcc_context(data.bits(0, 7, 1)),
      dcc_from_major_channel_number(data.bits(0, 3, 10)),
      // Quirk: AtscDCCT::DCCTest channel numbers
      dcc_from_minor_channel_number(data.bits(data.standard() ? 1 : 2, 1, 10)),
      dcc_to_major_channel_number(data.bits(data.standard() ? 3 : 4, 3, 10)),
      dcc_to_minor_channel_number(data.bits(data.standard() ? 4 : 6, 1, 10)) {
  const int at = data.standard() ? 6 : 8;
  dcc_start_time = static_cast<int>(data.u32(at));
  dcc_end_time = static_cast<int>(data.u32(at + 4));
  dcc_term_count = data[at + 8];
  const int pos = read_counted_rows(terms, data, at + 9, length - 2, dcc_term_count, row);
  dcc_test_descriptors_length = data.bits(pos, 1, 10);
  const int end = pos + 2 + dcc_test_descriptors_length;
  if (!parse_descriptors(data, pos + 2, end, row))
    throw error("AtscDCCT::DCCTest: descriptor start end mismatch");
  length = end;
}

AtscDCCT::DCCTest::DCCTerm::DCCTerm(ByteView data, int& length, const RowContext& row)
    : dcc_selection_type(data[0]), dcc_term_descriptors_length(data.bits(9, 1, 10)) {
  // Quirk: AtscDCCT::DCCTerm dcc_selection_id
  if (data.standard()) dcc_selection_id = uint64_t{data.u32(1)} << 32 | data.u32(5);
  const int end = 11 + dcc_term_descriptors_length;
  if (!parse_descriptors(data, 11, end, row))
    throw error("AtscDCCT::DCCTest::DCCTerm: descriptor start end mismatch");
  length = end;
}

template <class V, class S>
void AtscDCCT::describe(V& v, S& s) {
  v.standard("dcc_subtype", s.get_dcc_subtype());
  v.standard("dcc_id", s.get_dcc_id());
  v.field("protocol_version", s.protocol_version);
  v.field("dcc_test_count", s.dcc_test_count);
  v.list("tests", "test", s.tests);
  v.field("additional_descriptors_length", s.additional_descriptors_length);
  v.descriptors(s);
}
QUILLON_TABLE_WALK_OF(AtscDCCT)

template <class V, class S>
void AtscDCCT::DCCTest::describe(V& v, S& s) {
  v.coded("dcc_context", s.dcc_context, s.dcc_context ? "channel redirect" : "temporary retune");
  v.field("dcc_from_major_channel_number", s.dcc_from_major_channel_number);
  v.field("dcc_from_minor_channel_number", s.dcc_from_minor_channel_number);
  v.field("dcc_to_major_channel_number", s.dcc_to_major_channel_number);
  v.field("dcc_to_minor_channel_number", s.dcc_to_minor_channel_number);
  // Quirk: unsigned fields of 32 bits
  v.coded("dcc_start_time", static_cast<uint32_t>(s.dcc_start_time),
          detail::gps_time_text(s.dcc_start_time).c_str());
  v.coded("dcc_end_time", static_cast<uint32_t>(s.dcc_end_time),
          detail::gps_time_text(s.dcc_end_time).c_str());
  v.field("dcc_term_count", s.dcc_term_count);
  v.list("terms", "term", s.terms);
  v.field("dcc_test_descriptors_length", s.dcc_test_descriptors_length);
  v.descriptors(s);
}
QUILLON_WALK_OF(AtscDCCT::DCCTest)

template <class V, class S>
void AtscDCCT::DCCTest::DCCTerm::describe(V& v, S& s) {
  v.field("dcc_selection_type", s.dcc_selection_type);
  // 64 bits are more than a number of the walk holds.
  std::vector<uint8_t> id(8);
  for (size_t i = 0; i < id.size(); ++i) id[i] = static_cast<uint8_t>(s.dcc_selection_id >> (56 - 8 * i));
  if (v.reading() == Reading::standard)
    v.field("dcc_selection_id", id);
  else
    v.field("dcc_selection_id", 0);
  v.field("dcc_term_descriptors_length", s.dcc_term_descriptors_length);
  v.descriptors(s);
}
QUILLON_WALK_OF(AtscDCCT::DCCTest::DCCTerm)

}  // namespace quillon
