#include <quillon/faces/internal/describe.h>
#include <quillon/sections/internal/require_crc.h>
#include <quillon/tables/tot.h>

namespace quillon {

void Tot::_parse(ByteView body, bool keep_raw) {
  // Quirk: Tot CRC_32
  if (standard()) detail::require_crc(body.data() - 3, static_cast<size_t>(get_section_length()) + 3);
  utc_time_ = DateTime(body);
  const int end = 7 + body.bits(5, 3, 12);
  if (!parse_descriptors(body, 7, end, {body, keep_raw, tolerance()}))
    throw error("descriptor start end mismatch");
  crc_ = body.u32(end);
}

void Tot::_reset() {
  utc_time_ = DateTime();
  crc_ = 0;
  clear_descriptors();
}

template <class V, class S>
void Tot::describe(V& v, S& s) {
  v.field("UTC_time", s.utc_time_);
  if constexpr (V::load)
    v.field("crc32", s.crc_, "failed to get crc32");
  else
    v.field("crc32", s.crc_);
  v.descriptors(s);
}
QUILLON_TABLE_FACES_OF(Tot)

void Tot::_dump_state(std::ostream& stream) const {
  PsiBase::_dump_state(stream);
  faces::Dump v(stream);
  describe(v, *this);
}

}  // namespace quillon
