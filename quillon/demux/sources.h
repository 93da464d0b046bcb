#pragma once

#include <iosfwd>

#include <quillon/demux/demux.h>

namespace quillon {

// Pulls packets from a standard stream; the last, partial packet is ignored.
class QUILLON_API DemuxIstream : public Demux {
 public:
  explicit DemuxIstream(std::istream& stream) : stream_(stream) {}

 private:
  bool read_buf(uint8_t* buffer, int size, int& bytes_read) override;

  std::istream& stream_;
};

// Is fed whole packets by its application. on_raw_ts_packet and idle are not called, and stop has no effect.
class QUILLON_API DemuxPush : public Demux {
 public:
  // 0 when all packets are processed; -1, with none processed, if `length` is not a multiple of 188; 2 at a
  // packet without sync byte, those in front of it being processed. From the second packet on
  // on_adaption_field_header_ gets an address in the first packet: kept, hooks rely on it.
  int push_data(uint8_t* data, int length);

 private:
  bool read_buf(uint8_t*, int, int&) override { return false; }
  // Has packets behind this one fetched from memory; `left` bytes are there from it on.
  void fetch(const uint8_t* packet, int left) const;
};

// Reads one packet a PID in turn, from a device that delivers each PID apart. No PID may be added while start
// runs; stop has no effect. The numbers are the device's: a PID that no packet carries is read like any
// other.
class QUILLON_API Demux2 : public Demux {
 public:
  // Runs until at_end gives true; calls idle after each pass over the PIDs. A PID whose read failed or was
  // short takes no further part in that pass. Throws error("TS syncbyte expected").
  int start();

 protected:
  ~Demux2() = default;

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
