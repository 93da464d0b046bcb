#pragma once

// Transport packets made from sections, and demultiplexers that write down what their hooks were given.

#include "tests/support/bytes.h"

#include <algorithm>
#include <functional>
#include <string>
#include <vector>

#include <quillon/demux/demux.h>

namespace quillon::test {

constexpr size_t kPacketSize = 188;

// What one packet says of itself beside its payload.
struct PacketHeader {
  int pid = 0x100;
  int start = 0;  // payload_unit_start_indicator
  int counter = 0;
  int field = -1;    // adaptation_field_length; below 0 for a packet without the field
  int control = -1;  // adaptation_field_control; below 0 for what `field` asks for
  int error = 0;     // transport_error_indicator
  int priority = 0;
  int scrambling = 0;
};

// One packet: header, adaptation field, payload, and 0xFF up to its end. A payload that is too long is cut.
Bytes packet(const PacketHeader& header, const Bytes& payload);

// A packet that starts a payload unit: pointer_field, then the bytes.
Bytes start_packet(int pid, int pointer_field, const Bytes& payload);
// A packet that goes on.
Bytes next_packet(int pid, const Bytes& payload);

struct Packing {
  int pid = 0x100;
  // On: a section begins where the one before it ended, also in the same packet. Off: it begins a packet.
  bool shared = false;
  int field = -1;           // adaptation_field_length of every packet; below 0 for none
  uint8_t stuffing = 0xFF;  // after the last section of a packet
  int counter = 0;          // of the first packet
};

// Sections as packets, with pointer fields and continuity counters.
Bytes packets(const std::vector<Bytes>& sections, const Packing& packing = {});

// A private section that is `size` bytes long, from 3 to 4098, its bytes counted up from `seed`.
Bytes section_of(int table_id, size_t size, int seed = 0);

// A section that reached a hook; `key` is that of the filter, -1 of a table id's handler.
struct Heard {
  int pid = -1;
  int table_id = -1;
  int number = -1;
  long key = -1;
  Bytes bytes;
};

// Writes down every hook, then calls `then` with its name: "raw", "packet", "field", "section", "filtered"
// or "idle".
template <class Source>
class Recording : public Source {
 public:
  using Source::Source;
  using Source::stop;

  std::vector<std::string> calls;  // "raw", "packet 256", "field 12" with the place in the packet, ...
  std::vector<Heard> heard;
  std::function<void(const std::string& hook)> then = [](const std::string&) {};

  // The bytes of each section that reached a hook.
  std::vector<Bytes> sections() const {
    std::vector<Bytes> out;
    for (const Heard& h : heard) out.push_back(h.bytes);
    return out;
  }
  // "section 256/66" and "filtered 5", in their order.
  std::vector<std::string> order() const {
    std::vector<std::string> out;
    for (const Heard& h : heard)
      out.push_back(h.key < 0 ? "section " + std::to_string(h.pid) + "/" + std::to_string(h.table_id)
                              : "filtered " + std::to_string(h.key));
    return out;
  }
  size_t count(const std::string& call) const {
    return static_cast<size_t>(std::count(calls.begin(), calls.end(), call));
  }

 protected:
  void idle() override { tell("idle", "idle"); }
  void on_raw_ts_packet(const uint8_t*) override { tell("raw", "raw"); }
  void on_ts_packet(const Demux::TSHeader& header, const uint8_t* data) override {
    packet_ = data - 4;
    tell("packet", "packet " + std::to_string(header.get_pid()));
  }
  void on_adaption_field_header_(const Demux::AdaptionFieldHeader&, const uint8_t* data) override {
    tell("field", "field " + std::to_string(data - packet_));
  }
  void on_psi_section(unsigned long key, int size, uint8_t* section) override {
    heard.push_back({-1, -1, -1, static_cast<long>(key), Bytes(section, section + size)});
    tell("filtered", "filtered " + std::to_string(key));
  }
  void on_psi_section(int pid, int table_id, int number, const uint8_t* section) override {
    const int size = ((section[1] & 0x0F) << 8 | section[2]) + 3;
    heard.push_back({pid, table_id, number, -1, Bytes(section, section + size)});
    tell("section", "section " + std::to_string(pid) + "/" + std::to_string(table_id));
  }

 private:
  void tell(const char* hook, const std::string& call) {
    calls.push_back(call);
    then(hook);
  }

  const uint8_t* packet_ = nullptr;
};

// Reads packets from memory; the last read may be short.
class MemoryDemux : public Demux {
 public:
  explicit MemoryDemux(Bytes stream = {}) : stream_(std::move(stream)) {}

  // Puts more after what is left to read.
  void add(const Bytes& more) { stream_.insert(stream_.end(), more.begin(), more.end()); }
  // What start gives for these packets after those that are left.
  int feed(const Bytes& more) {
    add(more);
    return start();
  }
  int reads() const { return reads_; }

 protected:
  bool read_buf(uint8_t* buffer, int size, int& bytes_read) override;

 private:
  Bytes stream_;
  size_t at_ = 0;
  int reads_ = 0;
};

using RecordingDemux = Recording<MemoryDemux>;

}  // namespace quillon::test
