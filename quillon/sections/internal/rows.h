#pragma once

// Rows of a table or descriptor. For the library's own sources.

#include <type_traits>

#include <quillon/sections/byte_view.h>

namespace quillon {

// Walks rows from `begin` to `end`: `row(at, left)` reads one row and returns the bytes it used. True if the
// last row ended exactly on `end`; a walk that passes the view's limit stops there, false. A walk of no bytes
// can't miss its end.
template <class Row>
bool each_row(ByteView view, int begin, int end, Row&& row) {
  int pos = begin;
  while (pos < end && view.has(pos)) pos += row(view.from(pos), end - pos);
  return pos == end && (begin == end || view.reaches(end));
}

// Reads one row and returns the bytes it used. The row's constructor takes the bytes that are left, which
// become those that it used, or takes the two apart.
template <class List, class... Context>
int read_row(List& list, ByteView at, int left, const Context&... context) {
  int used = left;
  if constexpr (std::is_constructible_v<typename List::value_type, ByteView, int, int&, const Context&...>)
    list.emplace_back(at, left, used, context...);
  else
    list.emplace_back(at, used, context...);
  return used;
}

// Reads `length` bytes of rows of `size` bytes each. True if the last one ended exactly there.
template <class List>
bool read_rows(List& list, ByteView view, int begin, int length, int size) {
  if (length > 0) list.reserve(list.size() + static_cast<size_t>((length + size - 1) / size));
  return each_row(view, begin, begin + length, [&](ByteView at, int left) {
    if constexpr (std::is_constructible_v<typename List::value_type, ByteView>)
      list.emplace_back(at);
    else
      read_row(list, at, left);
    return size;
  });
}

// The same for rows that each have a size of their own.
template <class List, class... Context>
bool read_uneven_rows(List& list, ByteView view, int begin, int length, const Context&... context) {
  return each_row(view, begin, begin + length,
                  [&](ByteView at, int left) { return read_row(list, at, left, context...); });
}

// The same where `size_of(at)` gives that size: the rows are counted first, so that they are read into their
// place.
template <class List, class SizeOf, class... Context>
bool read_sized_rows(List& list, ByteView view, int begin, int length, SizeOf size_of,
                     const Context&... context) {
  size_t count = 0;
  each_row(view, begin, begin + length, [&](ByteView at, int) {
    ++count;
    return size_of(at);
  });
  list.reserve(list.size() + count);
  return read_uneven_rows(list, view, begin, length, context...);
}

// The same for up to `count` rows, whose number ATSC tables state, which begin before `end`; returns the
// place past the last one.
template <class List, class... Context>
int read_counted_rows(List& list, ByteView view, int begin, int end, int count, const Context&... context) {
  int pos = begin;
  for (int n = 0; n < count && pos < end && view.has(pos); ++n) {
    int length = end - pos;
    list.emplace_back(view.from(pos), length, context...);
    pos += length;
  }
  return pos;
}

}  // namespace quillon
