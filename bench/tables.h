#pragma once

// The table classes of the streams' sections.

#include <type_traits>

#include <quillon/quillon.h>

namespace quillon::bench {

// Calls `take` with the std::type_identity of a table id's class.
template <class Take>
void with_class_of(int table_id, Take take) {
  switch (table_id) {
    case 0x00:
      return take(std::type_identity<Pat>());
    case 0x02:
      return take(std::type_identity<PmtDVB>());
    case 0x40:
      return take(std::type_identity<Nit>());
    case 0x42:
      return take(std::type_identity<Sdt>());
    default:
      return take(std::type_identity<Eit>());
  }
}

}  // namespace quillon::bench
