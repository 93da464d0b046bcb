#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <istream>
#include <span>
#include <type_traits>
#include <vector>

#include <quillon/platform/api.h>

namespace quillon {

namespace detail {

inline void fetch([[maybe_unused]] const uint8_t* bytes) {
#if defined(__GNUC__)
  __builtin_prefetch(bytes);
#endif
}

}  // namespace detail

// A transport packet where it was found.
struct TsPacket {
  static constexpr size_t size = 188;
  static constexpr int pids = 0x2000;
  static constexpr int null_pid = 0x1FFF;

  const uint8_t* data;  // 188 bytes, of which the first is 0x47
  uint64_t index;       // among the packets of the input, from 0
  uint64_t position;    // of its first byte in the input
  bool after_gap;       // it does not follow the packet before it, or is the first after garbage
  // One of the packets to come, if they are as they should; null where it is not in memory.
  const uint8_t* upcoming = nullptr;

  static int pid_of(const uint8_t* header) { return (header[1] & 0x1F) << 8 | header[2]; }
  int pid() const { return pid_of(data); }
  int continuity_counter() const { return data[3] & 0x0F; }
  bool starts_unit() const { return data[1] & 0x40; }
  bool has_error() const { return data[1] & 0x80; }
  bool is_scrambled() const { return data[3] & 0xC0; }
  bool has_adaptation_field() const { return data[3] & 0x20; }
  bool has_payload() const { return data[3] & 0x10; }
};

// Finds the packets in a byte stream that need not be clean: 188 bytes each, and 0, 4 (a time stamp in
// front), 16 or 20 (parity after it) more from one to the next, which is found and kept. The bytes come in
// pieces of any size, with the same packets from all of them; one that is whole in its piece is given there,
// and not copied.
//
//   PacketReader reader;
//   TsPacket packet;
//   reader.feed(bytes, size);  // as often as there are bytes
//   while (reader.next(packet)) use(packet);
//   reader.finish();
//   while (reader.next(packet)) use(packet);
//
// A packet is certain once sync bytes follow it at two strides, so that those of a piece's end wait for the
// next piece, or for finish. Where they do not, every byte 0x47 is tried by what speaks for it: sync bytes a
// stride on, a PID that was met and counts on, a place in line with the packets before. A packet in which
// another begins for certain was cut short and is not given, nor is one whose own sync byte is lost; one to
// which bytes were added, or of which bytes were changed, can't be told from a whole one. docs/robustness.md
// says what is lost.
//
// It takes 16 KiB, and nothing a packet. For threads the rule of the tables holds (PsiBase1).
class QUILLON_API PacketReader {
 public:
  PacketReader();
  PacketReader(const PacketReader&) = delete;
  PacketReader& operator=(const PacketReader&) = delete;

  // Takes the next piece, which must last until next gives false. Throws error("the last piece was not read
  // to its end") where it has not yet; and error("the input was finished").
  void feed(const uint8_t* data, size_t size);
  void feed(std::span<const uint8_t> piece) { feed(piece.data(), piece.size()); }
  // States that no more comes: next gives what is left.
  void finish() { finished_ = true; }
  // The next packet, good until the next call of next or feed; false if more bytes are needed.
  bool next(TsPacket& packet) {
    return follows_at_two_strides() ? give(static_cast<size_t>(next_), packet) : search(packet);
  }

  // Packets that were given.
  uint64_t packets() const { return packets_; }
  // Bytes between the packets given, and after finish those after the last, that belong to none. Time stamps
  // and parity belong to their packet.
  uint64_t skipped() const { return skipped_; }
  // How often a packet did not follow the one before it.
  uint64_t sync_losses() const { return sync_losses_; }
  // Bytes from one packet to the next: 188, 192, 204 or 208; 0 before it is known.
  size_t stride() const { return stride_; }
  // Bytes of the input up to where the next packet is looked for.
  uint64_t position() const { return base_ + scan_; }

 private:
  enum class Step { given, more, ended };

  static constexpr uint8_t kSync = 0x47;

  bool sync(size_t at) const { return window_[at] == kSync; }
  // What packets of a clean stream cost.
  bool follows_at_two_strides() const {
    if (!in_step_) return false;
    const auto at = static_cast<size_t>(next_);
    return at + 2 * stride_ < end_ && sync(at) && sync(at + stride_) && sync(at + 2 * stride_);
  }
  // What is fetched from memory ahead, and how far, was measured: a header is one cache line of three, and
  // the packet that it begins is worth fetching to those alone who want its PID.
  const uint8_t* fetch_after(size_t at) const {
    const size_t ahead = at + 24 * stride_;
    if (ahead >= end_) return nullptr;
    detail::fetch(window_ + ahead);
    return window_ + at + 16 * stride_;
  }
  bool give(size_t at, TsPacket& packet) {
    packet = {window_ + at, packets_++, base_ + at, !in_step_, fetch_after(at)};
    in_step_ = true;
    scan_ = at + TsPacket::size;
    next_ = static_cast<int64_t>(at + stride_);
    last_header(at) = packet.data[3];
    return true;
  }

  int pid_at(size_t at) const { return TsPacket::pid_of(window_ + at); }
  // Of the PID of the header at `at`.
  uint8_t& last_header(size_t at) { return headers_[static_cast<size_t>(pid_at(at))]; }
  uint8_t last_header(size_t at) const { return headers_[static_cast<size_t>(pid_at(at))]; }

  bool search(TsPacket& packet);
  Step find_stride(TsPacket& packet);
  Step find_packet(TsPacket& packet);
  Step no_packet();
  bool at_end() const;
  size_t tries_end() const;
  bool find_sync(size_t tries_end);
  void skip_to(size_t at);
  bool is_packet(size_t at);
  size_t begins_within(size_t at, int follow) const;
  int evidence(size_t at, int follow) const;
  int header_evidence(size_t at) const;
  bool counts_on(uint8_t last, size_t at) const;
  bool has_plausible_header(size_t at) const;
  int followers(size_t at) const;
  int run(size_t at, size_t stride) const;
  bool is_certain_run(size_t at, size_t stride) const;
  bool more();
  void drop_front(size_t size);

  // The bytes that are looked at: those of the piece, or `held_`.
  const uint8_t* window_ = nullptr;
  size_t end_ = 0;
  uint64_t base_ = 0;     // position of the window in the input
  size_t scan_ = 0;       // after the last packet, and what was tried since
  int64_t next_ = 0;      // where the next packet is due; passed by `scan_` after damage
  bool in_step_ = false;  // no byte since the last packet was tried
  size_t stride_ = 0;
  uint64_t run_ = 0;  // where the first packet is that showed the stride
  uint64_t packets_ = 0;
  uint64_t skipped_ = 0;
  uint64_t sync_losses_ = 0;
  bool finished_ = false;

  const uint8_t* piece_ = nullptr;
  size_t piece_size_ = 0;
  std::vector<uint8_t> held_;  // what earlier pieces left, and the first bytes of this one
  size_t carried_ = 0;         // of held_, from earlier pieces
  // The last byte of each PID's last header; 0 before the first.
  std::array<uint8_t, TsPacket::pids> headers_ = {};
};

// Reads an input to its end and calls `each` with its packets; if that gives bools, until one is false.
template <class Each>
void for_each_packet(std::istream& in, PacketReader& packets, Each each) {
  std::vector<char> piece(size_t{1} << 18);
  TsPacket packet;
  for (bool ended = false; !ended;) {
    in.read(piece.data(), static_cast<std::streamsize>(piece.size()));
    ended = in.gcount() == 0;
    if (ended)
      packets.finish();
    else
      packets.feed(reinterpret_cast<const uint8_t*>(piece.data()), static_cast<size_t>(in.gcount()));
    while (packets.next(packet)) {
      if constexpr (std::is_same_v<decltype(each(packet)), bool>) {
        if (!each(packet)) return;
      } else {
        each(packet);
      }
    }
  }
}

}  // namespace quillon
