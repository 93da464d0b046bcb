#include <quillon/appsignal/dsmcc.h>

namespace quillon {

void DsmCC::_parse(ByteView body, bool) {
  const std::vector<uint8_t> payload = body.bytes(0, body_size());
  data_.insert(data_.end(), payload.begin(), payload.end());
}

}  // namespace quillon
