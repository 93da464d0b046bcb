#include <istream>

#include <quillon/demux/sources.h>
#include <quillon/sections/log.h>

namespace quillon {

namespace {

// How far ahead of the packet that is served headers are fetched from memory into the second cache, and from
// there into the first, which so much would crowd; and how far the rest of packets that go on to a handler.
// All were measured.
constexpr int kHeadersAhead = 96 * Demux::packet_size;
constexpr int kHeadersNear = 12 * Demux::packet_size;
constexpr int kPayloadsAhead = 8 * Demux::packet_size;
constexpr ptrdiff_t kCacheLine = 64;

}  // namespace

bool DemuxIstream::read_buf(uint8_t* buffer, int size, int& bytes_read) {
  stream_.read(reinterpret_cast<char*>(buffer), size);
  bytes_read = static_cast<int>(stream_.gcount());
  return stream_.good();
}

void DemuxPush::fetch(const uint8_t* packet, ptrdiff_t left) const {
  if (left <= kHeadersAhead) return;
  constexpr int to_read = 0;
  constexpr int into_second_cache = 2;
  __builtin_prefetch(packet + kHeadersAhead, to_read, into_second_cache);
  __builtin_prefetch(packet + kHeadersNear);
  const uint8_t* const next = packet + kPayloadsAhead;
  if (!find((next[1] & 0x1F) << 8 | next[2])) return;
  __builtin_prefetch(next + kCacheLine);
  __builtin_prefetch(next + 2 * kCacheLine);
}

int DemuxPush::push_data(uint8_t* data, int length) {
  return push(data, length);
}

int DemuxPush::push(const uint8_t* data, ptrdiff_t length) {
  if (length % packet_size != 0) {
    log_write(1, "Buffer length %ld not a multiple of 188 bytes", static_cast<long>(length));
    return -1;
  }
  for (ptrdiff_t at = 0; at < length; at += packet_size) {
    const uint8_t* const packet = data + at;
    fetch(packet, length - at);
    if (packet[0] != sync_byte) {
      log_write(1, "TS sync byte not found: %02X", packet[0]);
      return 2;
    }
    process(packet, data);
  }
  return 0;
}

int Demux2::start() {
  std::vector<uint8_t> slots(pid_handlers_.size() * packet_size);
  while (!at_end()) {
    // Hooks may remove PIDs during the pass; where they add some, it ends with the slots.
    size_t at = 0;
    for (auto place = pid_handlers_.begin(); place != pid_handlers_.end() && at < slots.size();
         at += packet_size) {
      const int pid = place->first;
      serve(pid, slots.data() + at, slots[0]);
      place = pid_handlers_.upper_bound(pid);
    }
    idle();
  }
  return stop_result_;
}

void Demux2::serve(int pid, uint8_t* slot, const uint8_t& sync) {
  int bytes_read = 0;
  const bool read = read_packet(pid, slot, packet_size, bytes_read);
  if (log_wants(3)) log_write(3, "read_buf(%d)=%d", bytes_read, read);
  if (!read || bytes_read != packet_size) return;
  if (log_wants(3)) log_write(3, "bytes read");
  on_raw_ts_packet(slot);
  // Only the first PID's slot is checked; TSHeader refuses a wrong sync byte in another.
  if (sync != sync_byte) {
    if (log_wants(3)) log_write(3, "invalid sync byte");
    invalidate();
    return;
  }
  process_as(pid, slot);
}

void Demux2::invalidate() {
  for (const auto& [pid, handler] : pid_handlers_) handler->invalidate();
}

}  // namespace quillon
