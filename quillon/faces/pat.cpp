// The faces of the program association table.

#include <quillon/faces/internal/describe.h>
#include <quillon/sections/pat.h>

namespace quillon {

template <class V, class S>
void Pat::describe(V& v, S& s) {
  v.more("transport_stream_id", s.get_transport_stream_id());
  v.rows("program_infos", "program_info", s.programs_);
}
QUILLON_SAVE_OF(Pat, _save_section)
QUILLON_TABLE_WALK_OF(Pat)

// The table's own attributes are not asked for: only the header has some.
void Pat::_parse(void* node) {
  faces::load_rows(node, "program_infos", programs_);
}

template <class V, class S>
void Pat::program_info::describe(V& v, S& s) {
  if constexpr (V::load) {
    v.field("sid", s.program_number_, "failed to get sid attribute");
    v.field("pmtpid", s.program_map_pid_, "failed to get pid node");
  } else {
    v.field("sid", s.program_number_);
    v.field("pmtpid", s.program_map_pid_);
  }
}
QUILLON_SAVE_OF(Pat::program_info, _save_stream_info)
QUILLON_WALK_OF(Pat::program_info)

Pat::program_info::program_info(void* node) {
  faces::Load v(node, "failed to get attribute map");
  describe(v, *this);
}

}  // namespace quillon
