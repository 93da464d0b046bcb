#pragma once

#include "apps/quillon/feed.h"
#include "apps/quillon/parse.h"

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include <quillon/stream/packet_reader.h>

namespace quillon::app::html {

// What is wrong in an input, with its place; of each kind the first 200.
class DamageList {
 public:
  enum Kind { sync_loss, continuity, transport_error, wrong_crc, refused_section, refused_descriptor, kinds };
  struct Item {
    Kind kind;
    uint64_t packet;
    int pid;
    double seconds;
    std::string what;
  };

  // Of the list of a kind in the page, and above it.
  static const char* id_of(Kind kind);
  static const char* title_of(Kind kind);

  // After its statistics were taken.
  void push(const Input& input, const TsPacket& packet);
  // A distinct one, as the table that it is, if its CRC is right.
  void push(const Input& input, const StreamSection& section, const ParsedTable& parsed);

  uint64_t count(Kind kind) const { return counts_[kind]; }
  const std::vector<Item>& items() const { return items_; }

 private:
  void add(Kind kind, uint64_t packet, int pid, double seconds, std::string what);

  std::array<uint64_t, kinds> counts_ = {};
  std::vector<Item> items_;
  std::vector<uint64_t> continuity_ = std::vector<uint64_t>(TsPacket::pids);
};

}  // namespace quillon::app::html
