#pragma once

// What NIT and BAT do alike with their rows. For the library's own sources.

#include <quillon/tables/transport_stream_row.h>

namespace quillon::detail {

// What a row is offered, and tests against its fixed part.
enum class Offer { rest_of_loop, whole_loop };

// Reads the loop whose length stands at `at`.
template <class Row>
void parse_transport_streams(std::vector<Row>& rows, ByteView body, int at, bool keep_raw, Offer offer,
                             DescriptorFailures* failures) {
  const int size = body.bits(at, 3, 12);
  const bool whole = walk(body, at + 2, at + 2 + size, [&](ByteView row, int left) {
    int length = offer == Offer::whole_loop ? size : left;
    rows.emplace_back(row, length, keep_raw, body, failures);
    return length;
  });
  if (!whole) throw error("descriptor start end mismatch");
}

}  // namespace quillon::detail
