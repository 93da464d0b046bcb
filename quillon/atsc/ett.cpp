#include <quillon/atsc/ett.h>
#include <quillon/faces/internal/walk_of.h>

namespace quillon {

void AtscETT::_parse(ByteView body, bool) {
  protocol_version = body[0];
  ETM_id = static_cast<int>(body.u32(1));
  int length = body_size() - 5;
  extended_text_message.parse(body.from(5), length);
  if (5 + length != body_size()) throw error("AtscETT: extended_text_message start end mismatch");
}

template <class V, class S>
void AtscETT::describe(V& v, S& s) {
  v.field("protocol_version", s.protocol_version);
  // Quirk: unsigned fields of 32 bits
  const auto id = static_cast<uint32_t>(s.ETM_id);
  v.field("ETM_id", id);
  v.field("source_id", id >> 16);
  // The low two bits distinguish the id of an event from that of a channel.
  if ((id & 3) == 2) v.field("event_id", id >> 2 & 0x3FFF);
  v.field("extended_text_message", s.extended_text_message);
}
QUILLON_TABLE_WALK_OF(AtscETT)

}  // namespace quillon
