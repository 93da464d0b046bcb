#pragma once

#include <filesystem>
#include <span>

#include <quillon/platform/api.h>

namespace quillon {

// The registered names of DVB identifiers (ETSI TS 101 162), as the registries stood in 2003. All names are
// Windows-1252, mark-up of the registries included, and live as long as the library.

// Fills the indexes of the registries; until then no id has a name. To be called once, by the application.
// Where it throws, as memory runs out, nothing has changed. Neither this nor load_registry_overlay may run
// beside any function of this header; the lookups may run on any number of threads.
QUILLON_API void init();

// The name of an id; "<unknown>" if it has none. A registered name may be empty.
QUILLON_API const char* get_network_id(int id);
QUILLON_API const char* get_original_network_id(int id);
QUILLON_API const char* get_bouquet_id(int id);
QUILLON_API const char* get_ca_system_id(int id);
QUILLON_API const char* get_data_broadcast_id(int id);
QUILLON_API const char* get_mhp_id(int id);
QUILLON_API const char* get_private_data_id(int id);  // the 32 bits of the specifier

enum class registry_kind {
  network,
  original_network,
  bouquet,
  ca_system,
  data_broadcast,
  mhp_organisation,
  private_data,
};

struct registry_row {
  int id;
  const char* name;
};

// All rows of a registry, one a value, in its own order. If an id has several rows, its name is that of the
// last. Needs no init, and knows no overlay.
QUILLON_API std::span<const registry_row> get_registry_rows(registry_kind kind);

// From now on the names of `file` come first in the lookups of `kind`, whether init has run or not. They take
// the place of those of a file that was loaded before; names that were given out stay valid.
//
// The file is UTF-8: the line "first_id<TAB>last_id<TAB>name", then such lines with ids as 0x12AB, both ends
// included; where lines overlap the last one counts. Empty lines and lines that begin with # are passed over.
// A character that Windows-1252 lacks becomes `?`. Throws error, naming file and line; nothing has changed
// then, nor when memory runs out.
QUILLON_API void load_registry_overlay(registry_kind kind, const std::filesystem::path& file);

}  // namespace quillon
