#pragma once

// What the streams' sections are read with.

#include "bench/streams.h"

#include <quillon/quillon.h>

namespace quillon::bench {

// Handlers for all sections of the streams.
inline void add_handlers(Demux& demux) {
  demux.add_psi_handler(0x0000, 0x00);
  demux.add_psi_handler(0x0010, 0x40);
  demux.add_psi_handler(0x0011, 0x42);
  demux.add_psi_handler(kEitPid, 0x4E);
  demux.add_psi_handler(kEitPid, 0x50);
  for (int service = 0; service < kServices; ++service) demux.add_psi_handler(kFirstMapPid + service, 0x02);
}

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
