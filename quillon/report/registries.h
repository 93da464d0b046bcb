#pragma once

#include <filesystem>
#include <span>

#include <quillon/platform/api.h>
#include <quillon/report/registry_kind.h>

namespace quillon {

// The registered names of DVB identifiers (ETSI TS 101 162), as the registries were in 2003. All names are
// Windows-1252, mark-up of the registries included, and live as long as the library. No lookup throws.

// Fills the indexes of the registries; until then no id has a name. To be called once, by the application.
// Throws std::bad_alloc, and then nothing has changed. While this or load_registry_overlay runs, no other
// function of this header may, nor a walk of a table, which looks names up; the lookups may run on any number
// of threads.
QUILLON_API void init();

// The name of an id; "<unknown>" if it has none, as every id that is out of range. Ids are 0 to 0xFFFF, those
// of MHP and private data any 32 bits. A registered name may be empty, and none is null.
QUILLON_API const char* get_network_id(int id);
QUILLON_API const char* get_original_network_id(int id);
QUILLON_API const char* get_bouquet_id(int id);
QUILLON_API const char* get_ca_system_id(int id);
QUILLON_API const char* get_data_broadcast_id(int id);
QUILLON_API const char* get_mhp_id(int id);
QUILLON_API const char* get_private_data_id(int id);

// An identifier and its name.
struct registry_row {
  int id;
  const char* name;
};

// All rows of a registry in its own order, a range of ids as one row for each. If an id has several rows, its
// name is that of the last. Needs no init, and does not include overlays.
QUILLON_API std::span<const registry_row> get_registry_rows(registry_kind kind);

// From now on the names of `file` come first in the lookups of `kind`, whether init has run or not. They
// replace those of a file that was loaded before; names that were handed out stay valid.
//
// The file is UTF-8: the line "first_id<TAB>last_id<TAB>name", then such lines with ids as 0x12AB, both ends
// included; where lines overlap the last one counts. Empty lines and lines that begin with # are skipped. A
// character that Windows-1252 lacks becomes `?`. Throws error with a text alone (code -1), which names file
// and line, and std::bad_alloc; in both cases nothing has changed.
QUILLON_API void load_registry_overlay(registry_kind kind, const std::filesystem::path& file);

}  // namespace quillon
