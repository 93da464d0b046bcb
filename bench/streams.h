#pragma once

// Deterministic transport streams to measure with, and what they hold.

#include <cstddef>
#include <cstdint>
#include <map>
#include <vector>

namespace quillon::bench {

struct Counts {
  uint64_t packets = 0;
  std::map<int, uint64_t> sections;  // by table id
  uint64_t events = 0;
  uint64_t descriptors = 0;

  bool operator==(const Counts&) const = default;
};

struct Stream {
  std::vector<uint8_t> bytes;
  Counts holds;
  std::vector<uint8_t> section_bytes;  // all sections, one after the other
  std::vector<uint32_t> section_sizes;
};

inline constexpr int kServices = 20;
inline constexpr int kFirstMapPid = 0x0100;
inline constexpr int kEitPid = 0x0012;

// 20 services, of whose packets one in twenty carries service information.
Stream mux(size_t size);
// Service information alone, heavy with the EIT schedule: every event has short, extended, component,
// content, rating and content identifier descriptors, and a quarter of the texts select a character table.
Stream si(size_t size);

// One EIT schedule section of about 4 KiB; `seed` varies its texts.
std::vector<uint8_t> eit_section(int service, int table_id, int section, int version, uint32_t seed);
std::vector<uint8_t> sdt_section(int version);
std::vector<uint8_t> nit_section(int version);
std::vector<uint8_t> pat_section(int version);
std::vector<uint8_t> pmt_section(int service, int version);

}  // namespace quillon::bench
