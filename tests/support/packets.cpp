#include "tests/support/packets.h"

#include <cstdlib>

namespace quillon::test {

namespace {

constexpr size_t kHeaderSize = 4;

size_t room_in(int field) {
  return kPacketSize - kHeaderSize - (field < 0 ? 0 : static_cast<size_t>(field) + 1);
}

}  // namespace

Bytes packet(const PacketHeader& h, const Bytes& payload) {
  const auto u = [](int value) { return static_cast<uint64_t>(value); };
  const int control = h.control >= 0 ? h.control : h.field >= 0 ? 3 : 1;
  Bytes out = bits({{8, 0x47, "sync_byte"},
                    {1, u(h.error), "transport_error_indicator"},
                    {1, u(h.start), "payload_unit_start_indicator"},
                    {1, u(h.priority), "transport_priority"},
                    {13, u(h.pid), "PID"},
                    {2, u(h.scrambling), "transport_scrambling_control"},
                    {2, u(control), "adaptation_field_control"},
                    {4, u(h.counter), "continuity_counter"}});
  if (h.field >= 0) {
    out.push_back(static_cast<uint8_t>(h.field));
    // No flags, then stuffing.
    for (int i = 0; i < h.field; ++i) out.push_back(i == 0 ? 0x00 : 0xFF);
  }
  out.insert(out.end(), payload.begin(), payload.end());
  out.resize(kPacketSize, 0xFF);
  return out;
}

Bytes start_packet(int pid, int pointer_field, const Bytes& payload) {
  return packet({.pid = pid, .start = 1}, joined({{static_cast<uint8_t>(pointer_field)}, payload}));
}

Bytes next_packet(int pid, const Bytes& payload) {
  return packet({.pid = pid}, payload);
}

Bytes packets(const std::vector<Bytes>& sections, const Packing& packing) {
  const size_t room = room_in(packing.field);
  if (room < 2) std::abort();
  Bytes out;
  int counter = packing.counter;
  size_t section = 0;  // the section that the next byte belongs to
  size_t at = 0;       // and its place there
  while (section < sections.size()) {
    const size_t tail = at > 0 ? sections[section].size() - at : 0;
    const bool another = at == 0 || (packing.shared && section + 1 < sections.size());
    // A start needs a byte for the pointer and one for itself.
    const bool start = another && tail + 2 <= room;
    Bytes payload;
    if (start) payload.push_back(static_cast<uint8_t>(tail));
    while (section < sections.size() && payload.size() < room) {
      if (at == 0 && !start) break;
      const size_t taken = std::min(room - payload.size(), sections[section].size() - at);
      const auto from = sections[section].begin() + static_cast<ptrdiff_t>(at);
      payload.insert(payload.end(), from, from + static_cast<ptrdiff_t>(taken));
      at += taken;
      if (at < sections[section].size()) break;
      ++section;
      at = 0;
      if (!packing.shared) break;
    }
    payload.resize(room, packing.stuffing);
    const Bytes made =
        packet({.pid = packing.pid, .start = start, .counter = counter, .field = packing.field}, payload);
    out.insert(out.end(), made.begin(), made.end());
    counter = (counter + 1) % 16;
  }
  return out;
}

Bytes section_of(int table_id, size_t size, int seed) {
  if (size < 3 || size > 4098) std::abort();
  Bytes body(size - 3);
  for (size_t i = 0; i < body.size(); ++i) body[i] = static_cast<uint8_t>(static_cast<size_t>(seed) + i);
  return short_section(table_id, body);
}

bool MemoryDemux::read_buf(uint8_t* buffer, int size, int& bytes_read) {
  ++reads_;
  const size_t taken = std::min(static_cast<size_t>(size), stream_.size() - at_);
  std::copy_n(stream_.begin() + static_cast<ptrdiff_t>(at_), taken, buffer);
  at_ += taken;
  bytes_read = static_cast<int>(taken);
  return taken > 0;
}

}  // namespace quillon::test
