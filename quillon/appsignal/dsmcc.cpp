#include <quillon/appsignal/dsmcc.h>
#include <quillon/faces/internal/walk_of.h>

namespace quillon {

void DsmCC::_parse(ByteView body, bool) {
  const std::vector<uint8_t> payload = body.bytes(0, body_size());
  data_.insert(data_.end(), payload.begin(), payload.end());
}

template <class V, class S>
void DsmCC::describe(V& v, S& s) {
  v.more("table_id_extension", s.get_table_extension());
  v.more("data", s.data_);
}
QUILLON_TABLE_WALK_OF(DsmCC)

}  // namespace quillon
