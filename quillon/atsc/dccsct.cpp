#include <quillon/atsc/dccsct.h>
#include <quillon/descriptors/internal/code_text.h>

namespace quillon {

namespace {

constexpr int kDescriptors = 11;

}  // namespace

void AtscDCCSCT::_parse(ByteView body, bool) {
  protocol_version = body[0];
  updates_defined = body[1];
  const int pos =
      detail::walk_rows(body, 2, body_size() - 2, updates_defined, [this](ByteView row, int length) {
        updates.emplace_back(row, length, false, nullptr);
        return length;
      });
  dccsct_descriptors_length = body.bits(pos, 1, 10);
  if (!walk_descriptors(body, kDescriptors, kDescriptors + dccsct_descriptors_length, {body}))
    throw error("AtscDCCT::DCCTest::DCCTerm: descriptor start end mismatch");
}

AtscDCCSCT::Update::Update(ByteView data, int& length, bool, ByteView)
    : update_type(data[0]), update_data_length(data[1]) {
  if (update_type == 1) genre_category_code = data[2];
  if (update_type == 2) dcc_state_location_code = data[2];
  if (update_type == 3) {
    state_code = data[2];
    dcc_county_location_code = data.bits(3, 1, 10);
  }
  const int pos = 2 + update_data_length;
  update_descriptors_length = data.bits(pos, 1, 10);
  const int end = pos + 2 + update_descriptors_length;
  if (!walk_descriptors(data, pos + 2, end, {data}))
    throw error("AtscDCCSCT::Update descriptor start end mismatch");
  length = end;
}

const char* AtscDCCSCT::Update::get_update_type_text(int update_type) {
  if (update_type >= 4 && update_type <= 255) return "Reserved for future use";
  return detail::text_of(update_type, {"Reserved", "new_genre_category", "new_state", "new_county"}, "");
}

}  // namespace quillon
