#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace quillon::app {

// Takes the payloads out of RTP packets (RFC 3550) and puts them in the order in which they were sent: one
// that is missing is waited for until `window` later ones are there, or for `patience`, and then counted as
// lost. Duplicates, and what comes later than that, are dropped. A sender that begins anew, or another one,
// counts once two packets in sequence came from it with none of the stream between them. The payload type is
// not looked at.
class RtpOrder {
 public:
  using Bytes = std::vector<uint8_t>;
  using Time = std::chrono::steady_clock::time_point;

  static constexpr size_t window = 16;
  static constexpr std::chrono::milliseconds patience{100};

  // Appends to `out` what is in order now.
  void push(const uint8_t* datagram, size_t size, Time now, Bytes& out);
  // The same without a new packet, for what was waited for; from `due` on, which is none while nothing is.
  void give_up(Time now, Bytes& out);
  std::optional<Time> due() const;
  // Appends all that is held, as no more comes.
  void flush(Bytes& out);

  // As Source::trouble.
  std::string trouble() const;

 private:
  struct Packet {
    uint32_t sender;
    uint16_t number;
    const uint8_t* payload;
    size_t size;
  };
  struct Held {
    Time since;
    Bytes payload;
  };
  struct Stray {
    uint32_t sender;
    uint16_t next;
    Bytes payload;
  };

  static std::optional<Packet> parse(const uint8_t* datagram, size_t size);
  std::optional<int64_t> place_of(const Packet& packet) const;
  void begin_anew(const Packet& packet, Bytes& out);
  void release(Bytes& out);

  bool begun_ = false;
  uint32_t sender_ = 0;
  int64_t next_ = 0;  // the packet's number, which goes on where 16 bits turn over
  std::map<int64_t, Held> held_;
  std::optional<Stray> stray_;
  uint64_t lost_ = 0;
  uint64_t reordered_ = 0;
  uint64_t strays_ = 0;
  uint64_t not_rtp_ = 0;
};

}  // namespace quillon::app
