#include <quillon/atsc/dccsct.h>
#include <quillon/descriptors/internal/code_text.h>
#include <quillon/faces/internal/walk_of.h>
#include <quillon/sections/internal/rows.h>

namespace quillon {

namespace {

constexpr int kDescriptors = 11;

}  // namespace

void AtscDCCSCT::_parse(ByteView body, bool) {
  protocol_version = body[0];
  updates_defined = body[1];
  const int pos = read_counted_rows(updates, body, 2, body_size() - 2, updates_defined, context(body));
  dccsct_descriptors_length = body.bits(pos, 1, 10);
  // Quirk: AtscDCCSCT texts, descriptors
  const int begin = standard() ? pos + 2 : kDescriptors;
  if (!parse_descriptors(body, begin, begin + dccsct_descriptors_length, context(body)))
    throw error("AtscDCCT::DCCTest::DCCTerm: descriptor start end mismatch");
}

AtscDCCSCT::Update::Update(ByteView data, int& length, const RowContext& row)
    : update_type(data[0]), update_data_length(data[1]) {
  if (update_type == 1) genre_category_code = data[2];
  if (update_type == 2) dcc_state_location_code = data[2];
  if (update_type == 3) {
    state_code = data[2];
    dcc_county_location_code = data.bits(3, 1, 10);
  }
  // Quirk: AtscDCCSCT texts, descriptors
  if (data.standard()) {
    if (update_type == 1) genre_category_name_text.parse_field(data, 3, update_data_length - 1);
    if (update_type == 2) dcc_state_location_code_text.parse_field(data, 3, update_data_length - 1);
    if (update_type == 3) dcc_county_location_code_text.parse_field(data, 5, update_data_length - 3);
  }
  const int pos = 2 + update_data_length;
  update_descriptors_length = data.bits(pos, 1, 10);
  const int end = pos + 2 + update_descriptors_length;
  if (!parse_descriptors(data, pos + 2, end, row))
    throw error("AtscDCCSCT::Update descriptor start end mismatch");
  length = end;
}

const char* AtscDCCSCT::Update::get_update_type_text(int update_type) {
  if (update_type >= 4 && update_type <= 255) return "Reserved for future use";
  return detail::text_of(update_type, {"Reserved", "new_genre_category", "new_state", "new_county"}, "");
}

template <class V, class S>
void AtscDCCSCT::describe(V& v, S& s) {
  v.field("protocol_version", s.protocol_version);
  v.field("updates_defined", s.updates_defined);
  v.list("updates", "update", s.updates);
  v.field("dccsct_descriptors_length", s.dccsct_descriptors_length);
  v.descriptors(s);
}
QUILLON_TABLE_WALK_OF(AtscDCCSCT)

template <class V, class S>
void AtscDCCSCT::Update::describe(V& v, S& s) {
  v.coded("update_type", s.update_type, s.get_update_type_text());
  v.field("update_data_length", s.update_data_length);
  v.field("genre_category_code", s.genre_category_code);
  v.field("genre_category_name_text", s.genre_category_name_text);
  v.field("dcc_state_location_code", s.dcc_state_location_code);
  v.field("dcc_state_location_code_text", s.dcc_state_location_code_text);
  v.field("state_code", s.state_code);
  v.field("dcc_county_location_code", s.dcc_county_location_code);
  v.field("dcc_county_location_code_text", s.dcc_county_location_code_text);
  v.field("update_descriptors_length", s.update_descriptors_length);
  v.descriptors(s);
}
QUILLON_WALK_OF(AtscDCCSCT::Update)

}  // namespace quillon
