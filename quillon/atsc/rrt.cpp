#include <quillon/atsc/rrt.h>

namespace quillon {

void AtscRRT::_parse(ByteView body, bool) {
  protocol_version = body[0];
  rating_region_name_length = body[1];
  dimensions_defined = body[2 + rating_region_name_length];
  const int pos = detail::walk_rows(body, 3 + rating_region_name_length, body_size() - 2, dimensions_defined,
                                    [this](ByteView row, int length) {
                                      dimensions.emplace_back(row, length, false, nullptr);
                                      return length;
                                    });
  descriptors_length = body.bits(pos, 1, 10);
  if (!walk_descriptors(body, pos + 2, pos + 2 + descriptors_length, {body}))
    throw error("AtscRRT: descriptor start end mismatch");
}

AtscRRT::Dimension::Dimension(ByteView data, int& length, bool, ByteView)
    : dimension_name_length(data[0]),
      graduated_scale(data.bits(2 + dimension_name_length, 4, 1)),
      values_defined(data.bits(2 + dimension_name_length, 3, 4)) {
  const int pos = detail::walk_rows(data, 3 + dimension_name_length, length, values_defined,
                                    [this](ByteView row, int size) {
                                      values.emplace_back(row, size, false, nullptr);
                                      return size;
                                    });
  if (pos != length) throw error("AtscRRT::Dimension: descriptor start end mismatch");
}

AtscRRT::Dimension::Value::Value(ByteView data, int& length, bool, ByteView)
    : abbrev_rating_value_length(data[0]), rating_value_length(data[1 + abbrev_rating_value_length]) {
  length = abbrev_rating_value_length + rating_value_length + 2;
}

}  // namespace quillon
