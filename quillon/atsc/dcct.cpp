#include <quillon/atsc/dcct.h>

namespace quillon {

void AtscDCCT::_parse(ByteView body, bool) {
  protocol_version = body[0];
  dcc_test_count = body[1];
  const int pos =
      detail::walk_rows(body, 2, body_size() - 2, dcc_test_count, [this](ByteView row, int length) {
        tests.emplace_back(row, length, false, nullptr);
        return length;
      });
  additional_descriptors_length = body.bits(pos, 1, 10);
  if (!walk_descriptors(body, pos + 2, pos + 2 + additional_descriptors_length, {body}))
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
  const int pos = detail::walk_rows(data, 17, length - 2, dcc_term_count, [this](ByteView row, int size) {
    terms.emplace_back(row, size, false, nullptr);
    return size;
  });
  dcc_test_descriptors_length = data.bits(pos, 1, 10);
  const int end = pos + 2 + dcc_test_descriptors_length;
  if (!walk_descriptors(data, pos + 2, end, {data}))
    throw error("AtscDCCT::DCCTest: descriptor start end mismatch");
  length = end;
}

AtscDCCT::DCCTest::DCCTerm::DCCTerm(ByteView data, int& length, bool, ByteView)
    : dcc_selection_type(data[0]), dcc_term_descriptors_length(data.bits(9, 1, 10)) {
  const int end = 11 + dcc_term_descriptors_length;
  if (!walk_descriptors(data, 11, end, {data}))
    throw error("AtscDCCT::DCCTest::DCCTerm: descriptor start end mismatch");
  length = end;
}

}  // namespace quillon
