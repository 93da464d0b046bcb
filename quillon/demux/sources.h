#pragma once

#include <cstddef>
#include <iosfwd>
#include <span>

#include <quillon/demux/demux.h>

namespace quillon {

// Pulls packets from a standard stream, which must outlive it; a last, partial packet is ignored.
class QUILLON_API DemuxIstream : public Demux {
 public:
  explicit DemuxIstream(std::istream& stream) : stream_(stream) {}

 private:
  bool read_buf(uint8_t* buffer, int size, int& bytes_read) override;

  std::istream& stream_;
};

// Is fed whole packets by its application. on_raw_ts_packet and idle are not called, and stop has no effect.
// push_data throws only what a hook does.
class QUILLON_API DemuxPush : public Demux {
 public:
  // 0 when all packets are processed; -1, with none processed, if `length` is not a multiple of 188; 2 at a
  // packet without sync byte, with those before it processed. `data` may be null for a length of 0. From the
  // second packet on, on_adaption_field_header_ gets an address in the first packet: kept, hooks rely on it.
  int push_data(uint8_t* data, int length);
  // The same for bytes that are constant. Those that come in other pieces than whole packets go through a
  // PacketReader: `demux.push_data({packet.data, packet.size})`.
  int push_data(std::span<const uint8_t> packets) {
    return push(packets.data(), static_cast<ptrdiff_t>(packets.size()));
  }

 private:
  bool read_buf(uint8_t*, int, int&) override { return false; }
  int push(const uint8_t* data, ptrdiff_t length);
  // Starts to fetch packets after this one from memory; there are `left` bytes from this one on.
  void fetch(const uint8_t* packet, ptrdiff_t left) const;
};

// Reads one packet a PID in turn, from a device that delivers each PID separately. No PID may be added while
// start runs; stop does not end it. The numbers are the device's: a PID that no packet carries is read like
// any other.
class QUILLON_API Demux2 : public Demux {
 public:
  // Runs until at_end gives true; calls idle after each pass over the PIDs. A PID whose read failed or was
  // short takes no further part in that pass. Where the first PID's packet lacks the sync byte, the sections
  // in progress of all table ids are dropped; where another's does, throws error("TS syncbyte expected"),
  // code -1. Throws std::bad_alloc, if at all, before the first read. Gives 1, or what a hook handed to stop.
  int start();

 protected:
  ~Demux2() = default;

  // The order of the virtual functions is fixed: programs built against another version call them by their
  // place.

  virtual bool at_end() = 0;
  // Reads one packet of `pid`.
  virtual bool read_packet(int pid, uint8_t* buffer, int size, int& bytes_read) = 0;

 private:
  bool read_buf(uint8_t*, int, int&) override { return false; }
  // One packet of `pid`, read into `slot`; `sync` is the first byte of the first PID's slot.
  void serve(int pid, uint8_t* slot, const uint8_t& sync);
  void invalidate();
};

}  // namespace quillon
