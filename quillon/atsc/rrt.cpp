#include <quillon/atsc/rrt.h>
#include <quillon/faces/internal/walk_of.h>
#include <quillon/sections/internal/rows.h>

namespace quillon {

void AtscRRT::_parse(ByteView body, bool keep_raw) {
  protocol_version = body[0];
  rating_region_name_length = body[1];
  // Quirk: AtscRRT texts, values, dimensions
  if (standard()) rating_region_name_text.parse_field(body, 2, rating_region_name_length);
  dimensions_defined = body[2 + rating_region_name_length];
  const int pos = read_counted_rows(dimensions, body, 3 + rating_region_name_length, body_size() - 2,
                                    dimensions_defined, keep_raw, body);
  descriptors_length = body.bits(pos, 1, 10);
  if (!parse_descriptors(body, pos + 2, pos + 2 + descriptors_length, context(body)))
    throw error("AtscRRT: descriptor start end mismatch");
}

AtscRRT::Dimension::Dimension(ByteView data, int& length, bool, ByteView) : dimension_name_length(data[0]) {
  // Quirk: AtscRRT texts, values, dimensions
  if (data.standard()) dimension_name_text.parse_field(data, 1, dimension_name_length);
  const int at = dimension_name_length + (data.standard() ? 1 : 2);
  graduated_scale = data.bits(at, 4, 1);
  values_defined = data.bits(at, 3, 4);
  const int pos = read_counted_rows(values, data, at + 1, length, values_defined, false, data);
  if (data.standard())
    length = pos;
  else if (pos != length)
    throw error("AtscRRT::Dimension: descriptor start end mismatch");
}

AtscRRT::Dimension::Value::Value(ByteView data, int& length, bool, ByteView)
    : abbrev_rating_value_length(data[0]), rating_value_length(data[1 + abbrev_rating_value_length]) {
  // Quirk: AtscRRT texts, values, dimensions
  if (data.standard()) {
    abbrev_rating_value_text.parse_field(data, 1, abbrev_rating_value_length);
    rating_value_text.parse_field(data, 2 + abbrev_rating_value_length, rating_value_length);
  }
  length = abbrev_rating_value_length + rating_value_length + 2;
}

template <class V, class S>
void AtscRRT::describe(V& v, S& s) {
  v.field("protocol_version", s.protocol_version);
  v.field("rating_region_name_length", s.rating_region_name_length);
  v.field("rating_region_name_text", s.rating_region_name_text);
  v.field("dimensions_defined", s.dimensions_defined);
  v.list("dimensions", "dimension", s.dimensions);
  v.field("descriptors_length", s.descriptors_length);
  v.descriptors(s);
}
QUILLON_TABLE_WALK_OF(AtscRRT)

template <class V, class S>
void AtscRRT::Dimension::describe(V& v, S& s) {
  v.field("dimension_name_length", s.dimension_name_length);
  v.field("dimension_name_text", s.dimension_name_text);
  v.field("graduated_scale", s.graduated_scale);
  v.field("values_defined", s.values_defined);
  v.list("values", "value", s.values);
}
QUILLON_WALK_OF(AtscRRT::Dimension)

template <class V, class S>
void AtscRRT::Dimension::Value::describe(V& v, S& s) {
  v.field("abbrev_rating_value_length", s.abbrev_rating_value_length);
  v.field("abbrev_rating_value_text", s.abbrev_rating_value_text);
  v.field("rating_value_length", s.rating_value_length);
  v.field("rating_value_text", s.rating_value_text);
}
QUILLON_WALK_OF(AtscRRT::Dimension::Value)

}  // namespace quillon
