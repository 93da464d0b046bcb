#include <quillon/faces/internal/describe.h>
#include <quillon/tables/tdt.h>

namespace quillon {

void Tdt::_parse(ByteView body, bool) {
  utc_time_ = DateTime(body);
}

template <class V, class S>
void Tdt::describe(V& v, S& s) {
  v.field("UTC_time", s.utc_time_);
}
QUILLON_TABLE_FACES_OF(Tdt)

void Tdt::_dump_state(std::ostream& stream) const {
  PsiBase::_dump_state(stream);
  faces::Dump v(stream);
  describe(v, *this);
}

}  // namespace quillon
