#include <quillon/atsc/ett.h>

namespace quillon {

void AtscETT::_parse(ByteView body, bool) {
  protocol_version = body[0];
  ETM_id = static_cast<int>(body.u32(1));
  int length = body_size() - 5;
  extended_text_message.parse(body.from(5), length);
  if (5 + length != body_size()) throw error("AtscETT: extended_text_message start end mismatch");
}

}  // namespace quillon
