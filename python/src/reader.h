#pragma once

#include "apps/quillon/section_chain.h"
#include "python/src/made.h"
#include "python/src/section.h"

#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <pybind11/pybind11.h>
#include <span>
#include <string>
#include <vector>

#include <quillon/stream/packet_reader.h>
#include <quillon/stream/schedule_collector.h>
#include <quillon/stream/section_reader.h>
#include <quillon/stream/service_directory.h>
#include <quillon/stream/stream_statistics.h>
#include <quillon/stream/table_collector.h>

namespace quillon::python {

using Sections = std::vector<std::unique_ptr<Section>>;

// Cuts an input into its packets, or into its sections where it has none: whichever its first bytes turn out
// to be. Throws error where 64 MiB hold neither.
class Cutter {
 public:
  template <class OnPacket, class OnSection>
  void push(std::span<const uint8_t> bytes, OnPacket on_packet, OnSection on_section);
  template <class OnPacket, class OnSection>
  void finish(OnPacket on_packet, OnSection on_section);

  bool is_chain() const { return content_ == app::Content::sections; }
  const PacketReader& packets() const { return packets_; }
  uint64_t skipped() const { return is_chain() ? chain_.skipped() : packets_.skipped(); }

 private:
  template <class OnPacket, class OnSection>
  void cut(std::span<const uint8_t> bytes, OnPacket on_packet, OnSection on_section);

  app::Content content_ = app::Content::unknown;
  std::vector<uint8_t> first_;  // until it is known
  size_t next_look_ = 0;        // at them, by their size
  uint64_t since_found_ = 0;    // bytes without a packet
  PacketReader packets_;
  app::ChainReader chain_;
};

// All that is made of one input. Work is done without the interpreter's lock and under one of its own, so
// that threads may share a reader.
class Reader {
 public:
  struct Choice {
    std::vector<bool> pids;    // by PID; empty: all
    std::vector<bool> tables;  // by table id; empty: all
    bool repeats = false;
    Reading reading = Reading::standard;
  };
  struct Counts {
    StreamStatistics statistics;
    size_t stride;
    uint64_t skipped;
    uint64_t sections;
    std::map<int, uint64_t> crc_errors;
  };

  Reader(Choice choice, SectionReaderOptions how);

  // Bytes to learn from, before the first that count: which PIDs the stream names, and whose tables it holds.
  void look_ahead(const pybind11::object& data);
  // The sections that the next bytes complete; without `wanted` they are counted and collected alone.
  pybind11::list feed(const pybind11::object& data, bool wanted);
  pybind11::list finish(bool wanted);

  std::string standard() const;
  pybind11::list services() const;
  pybind11::dict schedule() const;
  pybind11::object statistics() const;

 private:
  struct LookAhead {
    explicit LookAhead(const SectionReaderOptions& how) : reader([](const StreamSection&) {}, how) {}

    Cutter cutter;
    SectionReader reader;
  };

  void begin();
  void take(const StreamSection& section);
  bool is_wanted(const StreamSection& section) const;
  template <class Work>
  pybind11::list sections_of(bool wanted, Work work);
  template <class Work>
  auto unlocked(Work work) const;

  const Choice choice_;
  SectionReaderOptions how_;
  mutable std::mutex mutex_;  // taken without the interpreter's lock, so that neither waits for the other
  std::unique_ptr<LookAhead> look_ahead_;
  Cutter cutter_;
  std::unique_ptr<SectionReader> reader_;  // from the first bytes on
  Sections* sections_ = nullptr;           // while some are wanted
  bool finished_ = false;

  StreamStatistics statistics_;
  uint64_t taken_ = 0;
  std::map<int, uint64_t> crc_errors_;
  ServiceDirectory directory_;
  TableCollector tables_;
  ScheduleCollector schedule_;
};

void define_reader(pybind11::module_& module);

}  // namespace quillon::python
