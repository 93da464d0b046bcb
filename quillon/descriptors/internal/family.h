#pragma once

// Puts a Family together from the rows of the kind lists. For the library's own sources.

#include <initializer_list>

#include <quillon/descriptors/store.h>

namespace quillon::detail {

struct KindRow {
  int tag;  // -1 for the two kinds of DescriptorGeneral
  const char* saved;
  const char* loaded;
  const VectorOps* ops;
  int rank;  // place in the saving order, from 1; 0 if it is not saved
};

// The last two rows are the kinds of descriptors without a class: tags below 128, then the others.
consteval Family make_family(std::initializer_list<KindRow> rows, bool catches_failures) {
  Family out;
  out.catches_failures = catches_failures;
  size_t saved_count = 0;
  for (const KindRow& row : rows) {
    out.rank[out.kind_count] = static_cast<uint8_t>(row.rank);
    out.kinds[out.kind_count++] = {row.saved, row.loaded, row.ops};
    if (row.rank) ++saved_count;
  }
  out.general = static_cast<uint8_t>(out.kind_count - 2);
  for (size_t tag = 0; tag < 256; ++tag)
    out.kind_of_tag[tag] = static_cast<uint8_t>(tag < 128 ? out.general : out.general + 1);

  std::array<bool, Family::max_kinds> taken{};
  uint8_t kind = 0;
  for (const KindRow& row : rows) {
    if (row.tag >= 0) out.kind_of_tag[static_cast<size_t>(row.tag)] = kind;
    if (row.rank) {
      const size_t place = static_cast<size_t>(row.rank) - 1;
      if (place >= saved_count || taken[place]) throw "the ranks are no permutation";
      taken[place] = true;
    }
    ++kind;
  }
  return out;
}

}  // namespace quillon::detail
