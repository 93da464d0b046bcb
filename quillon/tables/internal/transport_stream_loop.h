#pragma once

// What NIT and BAT do alike with their rows. For the library's own sources.

#include <quillon/sections/internal/rows.h>
#include <quillon/tables/transport_stream_row.h>

namespace quillon::detail {

// What a row is offered, and tests against its fixed part.
enum class Offer { rest_of_loop, whole_loop };

// Reads the loop whose length is at `at`.
template <class Row>
void parse_transport_streams(std::vector<Row>& rows, int at, Offer offer, const RowContext& context) {
  const int size = context.body.bits(at, 3, 12);
  const bool whole = each_row(context.body, at + 2, at + 2 + size, [&](ByteView row, int left) {
    int length = offer == Offer::whole_loop ? size : left;
    rows.emplace_back(row, length, context);
    return length;
  });
  if (!whole) throw error("descriptor start end mismatch");
}

}  // namespace quillon::detail
