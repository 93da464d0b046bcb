#include <algorithm>
#include <set>
#include <utility>

#include <quillon/atsc/mgt.h>
#include <quillon/descriptors/data/application_signalling.h>
#include <quillon/descriptors/data/data_broadcast.h>
#include <quillon/sections/crc.h>
#include <quillon/sections/error.h>
#include <quillon/sections/pat.h>
#include <quillon/sections/section_size.h>
#include <quillon/stream/internal/seen_sections.h>
#include <quillon/stream/internal/table_ids.h>
#include <quillon/stream/section_reader.h>
#include <quillon/tables/pmt.h>

namespace quillon {

namespace {

constexpr int kPatPid = 0x0000;
// NIT, SDT and BAT, EIT, RST, TDT and TOT.
constexpr int kDvbPids[] = {0x0010, 0x0011, 0x0012, 0x0013, 0x0014};
constexpr int kMpegPids[] = {kPatPid, 0x0001};

constexpr int kPat = 0x00;
constexpr int kPmt = 0x02;
constexpr int kTot = 0x73;
constexpr int kMgt = 0xC7;
constexpr int kStt = 0xCD;  // the last of PSIP's base tables

constexpr int kPrivateSections = 0x05;
constexpr int kFirstDsmccSections = 0x0B;  // to kLastDsmccSections: messages, stream descriptors, any
constexpr int kLastDsmccSections = 0x0D;

constexpr size_t kMostNames = 32768;
constexpr size_t kHeader = 3;
constexpr size_t kLargest = 4098;

bool carries_sections(const PmtDVB::ElementaryStream& stream) {
  const int type = stream.get_stream_type();
  if (type >= kFirstDsmccSections && type <= kLastDsmccSections) return true;
  if (type == kPrivateSections && !stream.get_application_signalling_descriptors().empty()) return true;
  const auto& ids = stream.get_data_broadcast_id_descriptors();
  return std::any_of(ids.begin(), ids.end(), [](const DescriptorDataBroadcastId& id) {
    return id.data_broadcast_id == DescriptorDataBroadcastId::ip_mac_notification;
  });
}

// What a program association, a map or a master guide names to be read.
std::set<int> names_in(const StreamSection& section) {
  std::set<int> out;
  if (section.table_id() == kPat) {
    Pat pat;
    pat.Parse(section.bytes, section.size, false);
    for (const Pat::program_info& program : pat.get_program_info()) out.insert(program.get_program_map_pid());
  } else if (section.table_id() == kPmt) {
    PmtDVB map;
    map.set_tolerant(true);
    map.Parse(section.bytes, section.size, false);
    for (const PmtDVB::ElementaryStream& stream : map.get_pmt_stream_info())
      if (carries_sections(stream)) out.insert(stream.get_elementary_pid());
  } else {
    AtscMGT guide;
    guide.Parse(section.bytes, section.size, false);
    for (const AtscMGT::Table& table : guide.tables) out.insert(table.table_type_PID);
  }
  return out;
}

}  // namespace

class QUILLON_LOCAL SectionReader::State {
 public:
  State(std::array<uint8_t, TsPacket::pids>& interest, Sink sink, const SectionReaderOptions& options);

  void read(const TsPacket& packet);
  void finish_section(int pid, uint64_t packet, const uint8_t* bytes, size_t size);
  void ask_for(int pid, bool on);
  bool is_wanted(int pid) const { return at(pid).wanted > 0; }
  Standard standard() const { return standard_; }
  uint64_t count_section_of_chain() { return sections_of_chain_++; }

 private:
  // What of a PID's payload is to be remembered.
  struct Assembly {
    uint8_t counter = 0;
    size_t payload_size = 0;  // of the last packet
    uint8_t payload[TsPacket::size];
    size_t size = 0;  // of what is there of the section in progress; 0 if there is none
    uint8_t section[kLargest];

    void begin(const uint8_t* data, size_t length);
    // True if the section in progress is complete.
    bool append(const uint8_t* data, size_t length);
    void remember(int packet_counter, const uint8_t* data, size_t length);
    bool repeats(const uint8_t* data, size_t length) const {
      return length == payload_size && std::equal(data, data + length, payload);
    }
  };

  struct Pid {
    uint32_t wanted = 0;  // how many ask for it: the standards, the application, tables
    uint32_t in_pat = 0;  // of them, sections of the program association
    bool asked_for = false;
    std::unique_ptr<Assembly> assembly;
  };

  // The table that names a PID.
  using Source = uint64_t;
  static Source source_at(int pid, int extension = 0, int section = 0) {
    return static_cast<Source>(pid) << 32 | static_cast<Source>(extension) << 8 |
           static_cast<Source>(section);
  }
  static int pid_of(Source source) { return static_cast<int>(source >> 32); }
  // In place of a PID: the table was met, whatever it names.
  static constexpr int kLearnt = -1;

  class InProgress;

  Pid& at(int pid) { return pids_[static_cast<size_t>(pid)]; }
  const Pid& at(int pid) const { return pids_[static_cast<size_t>(pid)]; }
  void want(int pid);
  void want_no_more(int pid);
  void note_interest(int pid);

  bool may_begin_section(int pid, const uint8_t* data, size_t length) const;
  void read_start(const TsPacket& packet, Assembly& assembly, const uint8_t* data, size_t length);
  void read_tail(const TsPacket& packet, Assembly& assembly, const uint8_t* data, size_t length);

  void learn(const StreamSection& section);
  std::optional<Source> source_of(const StreamSection& section) const;
  // From now on `source` names these and no others.
  void set_names(Source source, const std::set<int>& pids);
  template <class Keep>
  void drop_names(Source first, Source end, Keep keep);

  std::array<uint8_t, TsPacket::pids>& interest_;
  const Sink sink_;
  const bool every_pid_;
  const bool repeats_;
  const bool standard_is_given_;
  Standard standard_;
  std::array<Pid, TsPacket::pids> pids_;
  std::set<std::pair<Source, int>> names_;
  detail::SeenSections seen_;
  int in_progress_ = -1;  // the PID of the packet that is being read
  uint64_t sections_of_chain_ = 0;
};

// While a packet is read, its PID's assembly stays, whatever the sink does.
class SectionReader::State::InProgress {
 public:
  InProgress(State& state, int pid) : state_(state) { state_.in_progress_ = pid; }
  ~InProgress() { state_.note_interest(std::exchange(state_.in_progress_, -1)); }
  InProgress(const InProgress&) = delete;
  InProgress& operator=(const InProgress&) = delete;

 private:
  State& state_;
};

void SectionReader::State::Assembly::begin(const uint8_t* data, size_t length) {
  std::copy_n(data, length, section);
  size = length;
}

bool SectionReader::State::Assembly::append(const uint8_t* data, size_t length) {
  if (size == 0) return false;
  for (; size < kHeader && length > 0; --length) section[size++] = *data++;
  if (size < kHeader) return false;
  const size_t taken = std::min(length, section_size(section) - size);
  std::copy_n(data, taken, section + size);
  size += taken;
  return size == section_size(section);
}

void SectionReader::State::Assembly::remember(int packet_counter, const uint8_t* data, size_t length) {
  counter = static_cast<uint8_t>(packet_counter);
  payload_size = length;
  std::copy_n(data, length, payload);
}

SectionReader::State::State(std::array<uint8_t, TsPacket::pids>& interest, Sink sink,
                            const SectionReaderOptions& options)
    : interest_(interest),
      sink_(std::move(sink)),
      every_pid_(options.every_pid),
      repeats_(options.repeats),
      standard_is_given_(options.standard.has_value()),
      standard_(options.standard.value_or(Standard::dvb)) {
  for (const int pid : kMpegPids) want(pid);
  if (options.standard != Standard::atsc)
    for (const int pid : kDvbPids) want(pid);
  if (options.standard != Standard::dvb) want(detail::psip_base_pid);
  for (const int pid : options.pids) ask_for(pid, true);
  for (int pid = 0; pid < TsPacket::pids; ++pid) note_interest(pid);
}

void SectionReader::State::ask_for(int pid, bool on) {
  if (pid < 0 || pid >= TsPacket::null_pid || at(pid).asked_for == on) return;
  at(pid).asked_for = on;
  on ? want(pid) : want_no_more(pid);
}

void SectionReader::State::want(int pid) {
  ++at(pid).wanted;
  note_interest(pid);
}

void SectionReader::State::want_no_more(int pid) {
  if (--at(pid).wanted > 0) return;
  note_interest(pid);
  // What its tables named goes with it.
  drop_names(source_at(pid), source_at(pid + 1), [](int) { return false; });
}

void SectionReader::State::note_interest(int pid) {
  const bool interest = at(pid).wanted > 0 || (every_pid_ && pid != TsPacket::null_pid);
  interest_[static_cast<size_t>(pid)] = interest;
  if (!interest && pid != in_progress_) at(pid).assembly.reset();
}

void SectionReader::State::read(const TsPacket& packet) {
  if (packet.has_error() || packet.is_scrambled() || !packet.has_payload()) return;
  const size_t header = packet.has_adaptation_field() ? 5u + packet.data[4] : 4u;
  if (header >= TsPacket::size) return;
  const uint8_t* const data = packet.data + header;
  const size_t length = TsPacket::size - header;

  const int pid = packet.pid();
  std::unique_ptr<Assembly>& assembly = at(pid).assembly;
  if (!assembly) {
    if (!packet.starts_unit() || !may_begin_section(pid, data, length)) return;
    assembly = std::make_unique<Assembly>();
  } else {
    const int step = (packet.continuity_counter() - assembly->counter) & 0x0F;
    if (step == 0 && assembly->repeats(data, length)) return;
    if (step != 1) assembly->size = 0;
  }
  assembly->remember(packet.continuity_counter(), data, length);

  const InProgress in_progress(*this, pid);
  if (packet.starts_unit())
    read_start(packet, *assembly, data, length);
  else
    read_tail(packet, *assembly, data, length);
}

// Whether there is a reason to look into a payload on a PID without assembly.
bool SectionReader::State::may_begin_section(int pid, const uint8_t* data, size_t length) const {
  const size_t first = size_t{1} + data[0];
  return is_wanted(pid) || (first + 1 < length && data[first] != 0xFF && data[first + 1] & 0x80);
}

void SectionReader::State::read_start(const TsPacket& packet, Assembly& assembly, const uint8_t* data,
                                      size_t length) {
  const bool is_pes = length >= 3 && data[0] == 0x00 && data[1] == 0x00 && data[2] == 0x01;
  if (!is_pes) read_tail(packet, assembly, data + 1, std::min<size_t>(data[0], length - 1));
  assembly.size = 0;
  if (is_pes || !interest_[static_cast<size_t>(packet.pid())]) return;
  for (size_t first = size_t{1} + data[0]; first < length && data[first] != 0xFF;) {
    const size_t left = length - first;
    const size_t size = left < kHeader ? kLargest : section_size(data + first);
    if (size > left) {
      assembly.begin(data + first, left);
      return;
    }
    finish_section(packet.pid(), packet.index, data + first, size);
    if (!interest_[static_cast<size_t>(packet.pid())]) return;
    first += size;
  }
}

void SectionReader::State::read_tail(const TsPacket& packet, Assembly& assembly, const uint8_t* data,
                                     size_t length) {
  if (!assembly.append(data, length)) return;
  finish_section(packet.pid(), packet.index, assembly.section, std::exchange(assembly.size, 0));
}

void SectionReader::State::finish_section(int pid, uint64_t packet, const uint8_t* bytes, size_t size) {
  StreamSection section{pid, packet, bytes, size, false, false, false};
  section.has_crc = section.is_long() || section.table_id() == kTot;
  section.crc_ok = section.has_crc && section_crc(bytes, size) == good_section_crc;
  if (pid >= 0 && !is_wanted(pid) && !(section.is_long() && section.crc_ok)) return;
  section.repeated = !seen_.add(section);
  try {
    learn(section);
  } catch (...) {
    // The sink has not got it: it will when it comes again.
    if (!section.repeated) seen_.forget(section);
    throw;
  }
  if (!section.repeated || repeats_) sink_(section);
}

void SectionReader::State::learn(const StreamSection& section) {
  if (!section.is_long() || !section.crc_ok || !section.is_current()) return;
  const bool base_psip = section.pid < 0 || section.pid == detail::psip_base_pid;
  if (base_psip && section.table_id() >= kMgt && section.table_id() <= kStt && !standard_is_given_)
    standard_ = Standard::atsc;

  const std::optional<Source> source = source_of(section);
  // A repeated table says something new where its names were dropped meanwhile.
  if (!source || (section.repeated && (names_.size() >= kMostNames || names_.contains({*source, kLearnt}))))
    return;
  if (names_.size() < kMostNames) names_.emplace(*source, kLearnt);
  try {
    set_names(*source, names_in(section));
  } catch (const error&) {
    return;  // what a table that is refused would say is not learnt
  } catch (...) {
    names_.erase({*source, kLearnt});  // there was no memory for all of it
    throw;
  }
  if (section.table_id() == kPat)
    drop_names(source_at(kPatPid, 0, section.last_section_number() + 1), source_at(kPatPid + 1),
               [](int) { return false; });
}

std::optional<SectionReader::State::Source> SectionReader::State::source_of(
    const StreamSection& section) const {
  const int pid = section.pid;
  const int table_id = section.table_id();
  if ((pid == kPatPid && table_id == kPat) || (pid == detail::psip_base_pid && table_id == kMgt))
    return source_at(pid, 0, section.section_number());
  if (pid >= 0 && table_id == kPmt && (at(pid).in_pat > 0 || at(pid).asked_for))
    return source_at(pid, section.extension());
  return std::nullopt;
}

void SectionReader::State::set_names(Source source, const std::set<int>& pids) {
  // The null PID carries no sections; and a table that names its own PID would keep itself.
  for (const int pid : pids) {
    if (pid == TsPacket::null_pid || pid == pid_of(source) || names_.size() >= kMostNames) continue;
    if (!names_.emplace(source, pid).second) continue;
    at(pid).in_pat += pid_of(source) == kPatPid;
    want(pid);
  }
  drop_names(source, source + 1, [&](int pid) { return pid == kLearnt || pids.contains(pid); });
}

template <class Keep>
void SectionReader::State::drop_names(Source first, Source end, Keep keep) {
  for (auto name = names_.lower_bound({first, kLearnt}); name != names_.end() && name->first < end;) {
    if (keep(name->second)) {
      ++name;
      continue;
    }
    const auto [source, pid] = *name;
    names_.erase(name);
    if (pid != kLearnt) {
      at(pid).in_pat -= pid_of(source) == kPatPid;
      want_no_more(pid);
    }
    name = names_.upper_bound({source, pid});
  }
}

SectionReader::SectionReader(Sink sink, const SectionReaderOptions& options)
    : state_(std::make_unique<State>(interest_, std::move(sink), options)) {}

SectionReader::~SectionReader() = default;

void SectionReader::read(const TsPacket& packet) {
  state_->read(packet);
}

void SectionReader::push_section(const uint8_t* bytes, size_t size) {
  if (size < kHeader || section_size(bytes) != size) return;
  state_->finish_section(-1, state_->count_section_of_chain(), bytes, size);
}

void SectionReader::add_pid(int pid) {
  state_->ask_for(pid, true);
}

void SectionReader::remove_pid(int pid) {
  state_->ask_for(pid, false);
}

bool SectionReader::reads_pid(int pid) const {
  return pid >= 0 && pid < TsPacket::pids && state_->is_wanted(pid);
}

Standard SectionReader::standard() const {
  return state_->standard();
}

}  // namespace quillon
