#include <quillon/atsc/dcct.h>
#include <quillon/atsc/internal/gps_time.h>
#include <quillon/faces/internal/walk_of.h>
#include <quillon/sections/internal/rows.h>

namespace quillon {

void AtscDCCT::_parse(ByteView body, bool) {
  protocol_version = body[0];
  dcc_test_count = body[1];
  const int pos = read_counted_rows(tests, body, 2, body_size() - 2, dcc_test_count);
  additional_descriptors_length = body.bits(pos, 1, 10);
  if (!parse_descriptors(body, pos + 2, pos + 2 + additional_descriptors_length, {body}))
    throw error("AtscRRT: descriptor start end mismatch");
}

AtscDCCT::DCCTest::DCCTest(ByteView data, int& length, bool, ByteView)
    : dcc_context(data.bits(0, 7, 1)),
      dcc_from_major_channel_number(data.bits(0, 3, 10)),
      dcc_from_minor_channel_number(data.bits(2, 1, 10)),
      dcc_to_major_channel_number(data.bits(4, 3, 10)),
      dcc_to_minor_channel_number(data.bits(6, 1, 10)),
      dcc_start_time(static_cast<int>(data.u32(8))),
      dcc_end_time(static_cast<int>(data.u32(12))),
      dcc_term_count(data[16]) {
  const int pos = read_counted_rows(terms, data, 17, length - 2, dcc_term_count);
  dcc_test_descriptors_length = data.bits(pos, 1, 10);
  const int end = pos + 2 + dcc_test_descriptors_length;
  if (!parse_descriptors(data, pos + 2, end, {data}))
    throw error("AtscDCCT::DCCTest: descriptor start end mismatch");
  length = end;
}

AtscDCCT::DCCTest::DCCTerm::DCCTerm(ByteView data, int& length, bool, ByteView)
    : dcc_selection_type(data[0]), dcc_term_descriptors_length(data.bits(9, 1, 10)) {
  const int end = 11 + dcc_term_descriptors_length;
  if (!parse_descriptors(data, 11, end, {data}))
    throw error("AtscDCCT::DCCTest::DCCTerm: descriptor start end mismatch");
  length = end;
}

template <class V, class S>
void AtscDCCT::describe(V& v, S& s) {
  v.field("protocol_version", s.protocol_version);
  v.field("dcc_test_count", s.dcc_test_count);
  v.list("tests", "test", s.tests);
  v.field("additional_descriptors_length", s.additional_descriptors_length);
  v.descriptors(s);
}
QUILLON_WALK_OF(AtscDCCT)

template <class V, class S>
void AtscDCCT::DCCTest::describe(V& v, S& s) {
  v.coded("dcc_context", s.dcc_context, s.dcc_context ? "channel redirect" : "temporary retune");
  v.field("dcc_from_major_channel_number", s.dcc_from_major_channel_number);
  v.field("dcc_from_minor_channel_number", s.dcc_from_minor_channel_number);
  v.field("dcc_to_major_channel_number", s.dcc_to_major_channel_number);
  v.field("dcc_to_minor_channel_number", s.dcc_to_minor_channel_number);
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
  v.field("dcc_selection_id", s.dcc_selection_id);
  v.field("dcc_term_descriptors_length", s.dcc_term_descriptors_length);
  v.descriptors(s);
}
QUILLON_WALK_OF(AtscDCCT::DCCTest::DCCTerm)

}  // namespace quillon
