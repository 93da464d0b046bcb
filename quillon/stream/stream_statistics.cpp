#include <algorithm>

#include <quillon/stream/stream_statistics.h>

namespace quillon {

namespace {

constexpr uint64_t kTicksASecond = 27'000'000;
constexpr uint64_t kWrap = (uint64_t{1} << 33) * 300;
// PCRs are at most 100 ms apart; where some were lost they may be more.
constexpr uint64_t kLongestStep = kTicksASecond;
// So many PCRs of others without one of the clock: it has stopped.
constexpr uint64_t kStopped = 500;
constexpr size_t kMostTables = 16384;

struct AdaptationField {
  bool discontinuity = false;
  bool has_clock = false;
  uint64_t clock = 0;  // ticks of 27 MHz
};

AdaptationField adaptation_field(const TsPacket& packet) {
  AdaptationField out;
  const uint8_t* const p = packet.data + 4;
  if (!packet.has_adaptation_field() || p[0] == 0) return out;
  out.discontinuity = p[1] & 0x80;
  if (!(p[1] & 0x10) || p[0] < 7) return out;
  out.has_clock = true;
  const uint64_t base = uint64_t{p[2]} << 25 | uint64_t{p[3]} << 17 | uint64_t{p[4]} << 9 |
                        uint64_t{p[5]} << 1 | uint64_t{p[6]} >> 7;
  out.clock = base * 300 + ((p[6] & 1u) << 8 | p[7]);
  return out;
}

}  // namespace

StreamStatistics::StreamStatistics() : pids_(TsPacket::pids) {}

void StreamStatistics::push(const TsPacket& packet) {
  ++packets_;
  if (packet.after_gap && packets_ > 1) ++sync_losses_;
  Pid& pid = pids_[static_cast<size_t>(packet.pid())];
  ++pid.counts.packets;
  // The rest of its header may be as wrong.
  if (packet.has_error()) {
    ++pid.counts.transport_errors;
    return;
  }
  if (packet.is_scrambled()) ++pid.counts.scrambled;
  const AdaptationField field = adaptation_field(packet);
  if (field.discontinuity) pid.met = false;
  if (packet.pid() != TsPacket::null_pid) check_counter(packet, pid);
  if (!field.has_clock) return;
  ++pid.counts.clock_references;
  take_clock(packet.pid(), field.clock, field.discontinuity);
}

// ISO/IEC 13818-1, 2.4.3.3: a packet without payload does not count, and one with payload may be sent twice.
void StreamStatistics::check_counter(const TsPacket& packet, Pid& pid) {
  const int step = (packet.continuity_counter() - pid.counter) & 0x0F;
  const bool duplicate = pid.met && packet.has_payload() && step == 0 && !pid.repeated;
  if (duplicate)
    ++pid.counts.duplicates;
  else if (pid.met && step != (packet.has_payload() ? 1 : 0))
    ++pid.counts.continuity_errors;
  pid.repeated = duplicate;
  pid.counter = static_cast<uint8_t>(packet.continuity_counter());
  pid.met = true;
}

void StreamStatistics::take_clock(int pid, uint64_t ticks, bool jumps) {
  const bool begins = clock_pid_ < 0;
  if (pid != clock_pid_ && !begins && ++others_ < kStopped) return;
  const uint64_t step = (ticks + kWrap - clock_) % kWrap;
  const uint64_t packets = packets_ - clock_packet_;
  if (pid == clock_pid_ && !jumps && step > 0 && step <= kLongestStep) {
    time_ += static_cast<double>(step);
    ticks_a_packet_ = static_cast<double>(step) / static_cast<double>(packets);
    measured_ticks_ += step;
    measured_packets_ += packets;
  } else {
    time_ = now();
  }
  clock_pid_ = pid;
  others_ = 0;
  clock_ = ticks;
  clock_packet_ = packets_;
}

double StreamStatistics::now() const {
  return time_ + static_cast<double>(packets_ - clock_packet_) * ticks_a_packet_;
}

void StreamStatistics::on_section(const StreamSection& section) {
  if (section.pid < 0 || (section.has_crc && !section.crc_ok)) return;
  const TableId id = TableId::of(section);
  auto place = tables_.find(id);
  if (place == tables_.end()) {
    if (tables_.size() >= kMostTables) return;
    place = tables_.emplace(id, Table{.section_number = section.section_number()}).first;
  }
  Table& table = place->second;
  if (section.section_number() != table.section_number) return;
  ++table.count;
  const double time = now();
  if (table.timed) {
    // Between two PCRs time is an estimate, which the second one may take back a little.
    const double interval = std::max(0.0, time - table.last) / kTicksASecond;
    table.sum += interval;
    table.smallest = table.intervals == 0 ? interval : std::min(table.smallest, interval);
    table.largest = std::max(table.largest, interval);
    ++table.intervals;
  }
  table.timed = ticks_a_packet_ > 0;
  table.last = time;
}

const PidStatistics& StreamStatistics::pid(int pid) const {
  static constexpr PidStatistics none;
  return pid < 0 || pid > TsPacket::null_pid ? none : pids_[static_cast<size_t>(pid)].counts;
}

double StreamStatistics::seconds() const {
  return static_cast<double>(measured_ticks_) / kTicksASecond;
}

double StreamStatistics::bit_rate() const {
  if (measured_ticks_ == 0) return 0;
  return static_cast<double>(measured_packets_ * TsPacket::size * 8) / seconds();
}

double StreamStatistics::bit_rate(int pid) const {
  return packets_ == 0
             ? 0
             : bit_rate() * static_cast<double>(this->pid(pid).packets) / static_cast<double>(packets_);
}

std::vector<TableRepetition> StreamStatistics::tables() const {
  std::vector<TableRepetition> out;
  for (const auto& [id, table] : tables_) {
    const double mean = table.intervals == 0 ? 0 : table.sum / static_cast<double>(table.intervals);
    out.push_back({id, table.count, table.intervals, table.smallest, table.largest, mean});
  }
  return out;
}

}  // namespace quillon
