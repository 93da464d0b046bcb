#include <algorithm>
#include <map>
#include <optional>
#include <tuple>
#include <utility>
#include <variant>

#include <quillon/atsc/cvct.h>
#include <quillon/atsc/service_location.h>
#include <quillon/atsc/tvct.h>
#include <quillon/descriptors/av/stream_identifier.h>
#include <quillon/descriptors/av/subtitling.h>
#include <quillon/descriptors/av/teletext.h>
#include <quillon/descriptors/mpeg2/audio.h>
#include <quillon/descriptors/mpeg2/ca.h>
#include <quillon/descriptors/mpeg2/registration.h>
#include <quillon/descriptors/service/service.h>
#include <quillon/platform/utf8.h>
#include <quillon/sections/pat.h>
#include <quillon/stream/internal/standard_parse.h>
#include <quillon/stream/internal/stream_content.h>
#include <quillon/stream/internal/table_ids.h>
#include <quillon/stream/service_directory.h>
#include <quillon/tables/cat.h>
#include <quillon/tables/internal/stream_type.h>
#include <quillon/tables/pmt.h>
#include <quillon/tables/sdt.h>

namespace quillon {

namespace {

constexpr size_t kMostPartBytes = size_t{8} << 20;
constexpr size_t kMostPartsOfTable = 16384;
constexpr size_t kMostEmms = 4096;
constexpr size_t kMostTablesOfService = 16;
constexpr int kMostChannelsOfProgram = 16;
// Of a part: what refers to it, and its blocks of the heap.
constexpr size_t kPartCost = 384;
constexpr size_t kStreamCost = 64;

bool is_on(const TableId& table, int pid) {
  return table.pid < 0 || table.pid == pid;
}

template <class Table, class Use>
void read_sections(const TableEvent& event, Use use) {
  for (const std::vector<uint8_t>& section : event.sections)
    detail::with_parsed<Table>(section.data(), section.size(), use);
}

std::vector<CaStream> ca_streams(const DvbLoop& loop) {
  std::vector<CaStream> out;
  for (const DescriptorCa& ca : loop.get_CA_descriptors())
    out.push_back({ca.get_ca_system_id(), ca.get_ca_pid()});
  return out;
}

void add_language(std::vector<std::string>& languages, const ISO639LanguageCode& code) {
  if (languages.empty() || languages.back() != code.c_strA()) languages.emplace_back(code.c_strA());
}

std::vector<std::string> languages_of(const DvbLoop& loop) {
  std::vector<std::string> out;
  for (const DescriptorISO639Language& descriptor : loop.get_ISO_639_language_descriptors())
    for (const auto& language : descriptor.get_language_vector())
      add_language(out, language.get_iso_639_language_code());
  for (const DescriptorSubtitling& descriptor : loop.get_subtitling_descriptors())
    for (const auto& subtitles : descriptor.subtitling_infos)
      add_language(out, subtitles.ISO_639_language_code);
  for (const DescriptorTeletext& descriptor : loop.get_teletext_descriptors())
    for (const auto& page : descriptor.teletext_items) add_language(out, page.language);
  return out;
}

const char* content_of(const ServiceStream& stream, const DvbLoop* loop) {
  const char* const content = detail::stream_content(stream.stream_type, stream.format_identifier, loop);
  return content ? content : stream.stream_type_text;
}

ServiceStream stream_of(const PmtDVB::ElementaryStream& row) {
  ServiceStream out;
  out.pid = row.get_elementary_pid();
  out.stream_type = row.get_stream_type();
  out.stream_type_text = row.standard_stream_type_text();
  if (const auto& registrations = row.get_registration_descriptors(); !registrations.empty())
    out.format_identifier = registrations.front().get_format_identifier();
  if (const auto& identifiers = row.get_stream_identifier_descriptors(); !identifiers.empty())
    out.component_tag = identifiers.front().component_tag;
  out.content = content_of(out, &row);
  out.languages = languages_of(row);
  out.ca = ca_streams(row);
  return out;
}

const char* atsc_stream_type_text(const ServiceStream& stream) {
  return standard_stream_type_text(stream.stream_type, {stream.format_identifier, format_identifier("GA94")});
}

Service service_of(const Sdt& table, const Sdt::Service_info& row) {
  Service out;
  out.is_actual = table.get_table_id() == 0x42;
  out.original_network_id = table.get_original_network_id();
  out.transport_stream_id = table.get_transport_stream_id();
  out.service_id = row.get_service_id();
  out.running_status = row.get_running_status();
  out.free_ca_mode = row.get_free_ca_mode();
  out.eit_schedule_flag = row.get_eit_schedule_flag();
  out.eit_present_following_flag = row.get_eit_present_following_flag();
  if (const auto& descriptors = row.get_service_descriptors(); !descriptors.empty()) {
    const DescriptorService& service = descriptors.front();
    out.name = service.get_service_nameA().utf8();
    out.provider = service.get_provider_nameA().utf8();
    out.service_type = service.get_service_type();
    out.service_type_text = DescriptorService::standard_service_type_text(out.service_type);
  }
  return out;
}

Service service_of(const VirtualChannel& channel, int transport_stream_id) {
  Service out;
  out.is_actual = channel.channel_TSID == transport_stream_id;
  out.transport_stream_id = channel.channel_TSID;
  out.service_id = channel.program_number;
  out.name = platform::to_utf8(channel.short_name);
  out.service_type = channel.service_type;
  out.service_type_text = VirtualChannel::standard_service_type_text(channel.service_type);
  out.free_ca_mode = channel.access_controlled;
  out.major_channel_number = channel.major_channel_number;
  out.minor_channel_number = channel.minor_channel_number;
  out.source_id = channel.source_id;
  out.hidden = channel.hidden;
  for (const DescriptorAtscServiceLocation& location : channel.get_atsc_service_location_descriptor()) {
    out.pcr_pid = location.PCR_PID;
    for (const auto& element : location.elements) {
      ServiceStream stream;
      stream.pid = element.elementary_PID;
      stream.stream_type = element.stream_type;
      stream.stream_type_text = atsc_stream_type_text(stream);
      stream.content = content_of(stream, nullptr);
      if (*element.language.c_strA()) stream.languages.emplace_back(element.language.c_strA());
      out.streams.push_back(std::move(stream));
    }
  }
  return out;
}

}  // namespace

class QUILLON_LOCAL ServiceDirectory::State {
 public:
  explicit State(Sink sink) : sink_(std::move(sink)) {}

  void push(const TableEvent& event);
  std::vector<const Service*> services() const;
  const std::vector<CaStream>& emms() const { return emms_; }

 private:
  // Which service: not actual, network, stream, number, channel of the program. A service of the actual
  // stream is known by its number alone, as it may be met before its other ids.
  using Key = std::tuple<bool, int, int, int, int>;
  static Key key_of(const Service& service);
  static Key program_key(int program_number) { return {false, 0, 0, program_number, 0}; }

  // What a program association says of a program, and a map.
  struct Association {
    int map_pid;
    int transport_stream_id;
    bool operator==(const Association&) const = default;
  };
  struct Program {
    int map_pid;
    int pcr_pid;
    std::vector<ServiceStream> streams;
    std::vector<CaStream> ca;
    bool operator==(const Program&) const = default;
  };
  // What a table says of a service; a Service is what a description says.
  using Part = std::variant<Association, Program, Service>;
  // By service, and by serial of the table; those of a table that is being read have none.
  using Parts = std::map<std::pair<Key, uint64_t>, Part>;
  static constexpr uint64_t kNoSerial = 0;
  struct Source {
    uint64_t serial;  // greater than that of a table that came before
    std::vector<Key> keys;
  };

  // What is said of a service, by those that count; null where nothing is.
  struct Chosen {
    const Association* association = nullptr;
    const Program* program = nullptr;
    const Service* description = nullptr;
  };
  struct Change {
    ServiceEvent::Kind kind;
    const Service* service;
    std::map<Key, Service>::node_type gone = {};
  };

  static bool says_something(const TableId& table);
  static Parts parts_of(const TableEvent& event);
  static void put(Parts& parts, const Key& key, Part part);
  static void add_program(Parts& parts, const PmtDVB& map, int pid);
  template <class Table>
  static void add_channels(Parts& parts, const TableEvent& event);
  static size_t cost_of(const Part& part);

  void read_emms(const TableEvent& event);
  // Replaces what a table said, and adds the services of which it says something else now to those touched;
  // changes nothing where memory runs out.
  void replace(const TableId& table, Parts parts);
  bool has_room(const Key& key) const;
  // Calls `use` with each part of a kind, from the table that came first on.
  template <class Kind, class Use>
  void each_part(const Key& key, Use use) const;
  Chosen choose(const Key& key) const;
  static Service made_of(const Key& key, const Chosen& chosen);
  // Makes a service what its parts say; changes nothing where memory runs out.
  void update(const Key& key);

  const Sink sink_;
  std::map<TableId, Source> sources_;
  Parts parts_;
  size_t part_bytes_ = 0;
  uint64_t serials_ = kNoSerial;
  std::vector<Key> touched_;     // to be updated
  std::vector<Change> changes_;  // to be told
  std::map<Key, Service> services_;
  bool has_association_ = false;  // there was one: maps count that it names, and no others
  std::vector<CaStream> emms_;
  std::optional<TableId> emm_table_;
};

ServiceDirectory::State::Key ServiceDirectory::State::key_of(const Service& s) {
  if (s.is_actual) return {false, 0, 0, s.service_id, s.channel_of_program};
  return {true, s.original_network_id, s.transport_stream_id, s.service_id, s.channel_of_program};
}

bool ServiceDirectory::State::says_something(const TableId& table) {
  switch (table.table_id) {
    case 0x00:
      return is_on(table, 0x0000);
    case 0x02:
      return true;
    case 0x42:
    case 0x46:
      return is_on(table, 0x0011);
    case 0xC8:
    case 0xC9:
      return is_on(table, detail::psip_base_pid);
    default:
      return false;
  }
}

ServiceDirectory::State::Parts ServiceDirectory::State::parts_of(const TableEvent& event) {
  Parts out;
  if (!event.is_there()) return out;
  switch (event.table.table_id) {
    case 0x00:
      read_sections<Pat>(event, [&](const Pat& pat) {
        for (const Pat::program_info& row : pat.get_program_info())
          if (row.get_program_number() != 0)
            put(out, program_key(row.get_program_number()),
                Association{row.get_program_map_pid(), pat.get_transport_stream_id()});
      });
      break;
    case 0x02:
      read_sections<PmtDVB>(event, [&](const PmtDVB& map) { add_program(out, map, event.table.pid); });
      break;
    case 0xC8:
      add_channels<AtscTVCT>(out, event);
      break;
    case 0xC9:
      add_channels<AtscCVCT>(out, event);
      break;
    default:
      read_sections<Sdt>(event, [&](const Sdt& sdt) {
        for (const Sdt::Service_info& row : sdt.get_service_infos()) {
          Service service = service_of(sdt, row);
          const Key key = key_of(service);
          put(out, key, std::move(service));
        }
      });
  }
  return out;
}

void ServiceDirectory::State::put(Parts& parts, const Key& key, Part part) {
  if (parts.size() < kMostPartsOfTable) parts.insert_or_assign({key, kNoSerial}, std::move(part));
}

void ServiceDirectory::State::add_program(Parts& parts, const PmtDVB& map, int pid) {
  Program program{pid, map.get_pcr_pid(), {}, ca_streams(map)};
  for (const PmtDVB::ElementaryStream& row : map.get_pmt_stream_info()) {
    program.streams.push_back(stream_of(row));
    const std::vector<CaStream>& ca = program.streams.back().ca;
    program.ca.insert(program.ca.end(), ca.begin(), ca.end());
  }
  std::sort(program.ca.begin(), program.ca.end());
  program.ca.erase(std::unique(program.ca.begin(), program.ca.end()), program.ca.end());
  put(parts, program_key(map.get_program_number()), std::move(program));
}

template <class Table>
void ServiceDirectory::State::add_channels(Parts& parts, const TableEvent& event) {
  std::map<Key, int> channels;  // how many a program has
  read_sections<Table>(event, [&](const Table& table) {
    for (const VirtualChannel& channel : table.channels) {
      Service service = service_of(channel, event.table.extension);
      int& count = channels[key_of(service)];
      if (count >= kMostChannelsOfProgram) continue;
      service.channel_of_program = count++;
      const Key key = key_of(service);
      put(parts, key, std::move(service));
    }
  });
}

size_t ServiceDirectory::State::cost_of(const Part& part) {
  size_t out = sizeof part + kPartCost;
  const auto add = [&](const std::vector<ServiceStream>& streams, const std::vector<CaStream>& ca) {
    out += ca.capacity() * sizeof(CaStream) + streams.capacity() * sizeof(ServiceStream);
    for (const ServiceStream& stream : streams)
      out += kStreamCost + stream.ca.capacity() * sizeof(CaStream) +
             stream.languages.capacity() * sizeof(std::string);
  };
  if (const auto* const program = std::get_if<Program>(&part)) add(program->streams, program->ca);
  if (const auto* const service = std::get_if<Service>(&part)) {
    add(service->streams, service->ca);
    out += service->name.capacity() + service->provider.capacity();
  }
  return out;
}

void ServiceDirectory::State::push(const TableEvent& event) {
  if (!event.table.is_current) return;
  if (event.table.table_id == 0x01 && is_on(event.table, 0x0001)) read_emms(event);
  if (!says_something(event.table)) return;

  // What there is no memory for stays touched, or to be told, until the next push.
  replace(event.table, parts_of(event));
  if (event.table.table_id == 0x00 && event.is_there() && !has_association_) {
    for (const auto& [key, service] : services_) touched_.push_back(key);
    has_association_ = true;
  }
  for (const Key& key : touched_) {
    update(key);
    if (key != program_key(std::get<3>(key))) continue;
    // Its other channels have its streams too.
    Key channel = key;
    for (int& i = std::get<4>(channel); ++i, services_.contains(channel);) update(channel);
  }
  touched_.clear();
  const std::vector<Change> changes = std::exchange(changes_, {});
  if (!sink_) return;
  for (const Change& change : changes) sink_({change.kind, *change.service});
}

void ServiceDirectory::State::read_emms(const TableEvent& event) {
  if (!event.is_there()) {
    if (emm_table_ != event.table) return;
    emms_.clear();
    emm_table_.reset();
    return;
  }
  std::vector<CaStream> emms;
  read_sections<Cat>(event, [&](const Cat& cat) {
    for (const CaStream& ca : ca_streams(cat))
      if (emms.size() < kMostEmms) emms.push_back(ca);
  });
  emms_ = std::move(emms);
  emm_table_ = event.table;
}

void ServiceDirectory::State::replace(const TableId& table, Parts parts) {
  auto source = sources_.find(table);
  if (source == sources_.end() && parts.empty()) return;
  const size_t before = source == sources_.end() ? 0 : source->second.keys.size();
  std::vector<Key> keys;
  keys.reserve(before + parts.size());
  touched_.reserve(touched_.size() + before + parts.size());
  if (source == sources_.end()) source = sources_.emplace(table, Source{++serials_, {}}).first;

  const uint64_t serial = source->second.serial;
  for (const Key& key : source->second.keys) {
    const auto old = parts_.find({key, serial});
    const auto now = parts.find({key, kNoSerial});
    if (now != parts.end() && now->second == old->second) {
      keys.push_back(key);
      parts.erase(now);
      continue;
    }
    part_bytes_ -= cost_of(old->second);
    parts_.erase(old);
    touched_.push_back(key);
  }
  while (!parts.empty()) {
    auto part = parts.extract(parts.begin());
    const Key& key = part.key().first;
    const size_t cost = cost_of(part.mapped());
    if (part_bytes_ + cost > kMostPartBytes || !has_room(key)) continue;
    part_bytes_ += cost;
    keys.push_back(key);
    touched_.push_back(key);
    part.key().second = serial;
    parts_.insert(std::move(part));
  }
  if (keys.empty())
    sources_.erase(source);
  else
    source->second.keys = std::move(keys);
  std::sort(touched_.begin(), touched_.end());
  touched_.erase(std::unique(touched_.begin(), touched_.end()), touched_.end());
}

template <class Kind, class Use>
void ServiceDirectory::State::each_part(const Key& key, Use use) const {
  for (auto part = parts_.lower_bound({key, 0}); part != parts_.end() && part->first.first == key; ++part)
    if (const auto* const of_kind = std::get_if<Kind>(&part->second)) use(*of_kind);
}

bool ServiceDirectory::State::has_room(const Key& key) const {
  size_t count = 0;
  for (auto part = parts_.lower_bound({key, 0}); part != parts_.end() && part->first.first == key; ++part)
    ++count;
  return count < kMostTablesOfService;
}

ServiceDirectory::State::Chosen ServiceDirectory::State::choose(const Key& key) const {
  Chosen out;
  each_part<Service>(key, [&](const Service& description) { out.description = &description; });
  const bool is_actual = !std::get<0>(key);
  if (!is_actual) return out;
  const Key program = program_key(std::get<3>(key));
  each_part<Association>(program, [&](const Association& association) { out.association = &association; });
  if (has_association_ && !out.association) return out;
  each_part<Program>(program, [&](const Program& map) {
    if (!out.association || map.map_pid < 0 || map.map_pid == out.association->map_pid) out.program = &map;
  });
  return out;
}

Service ServiceDirectory::State::made_of(const Key& key, const Chosen& chosen) {
  Service out;
  out.service_id = std::get<3>(key);
  if (chosen.description) out = *chosen.description;
  if (const Association* const association = chosen.association) {
    out.map_pid = association->map_pid;
    if (out.transport_stream_id < 0) out.transport_stream_id = association->transport_stream_id;
  }
  if (const Program* const program = chosen.program) {
    if (out.map_pid < 0) out.map_pid = program->map_pid;
    out.pcr_pid = program->pcr_pid;
    out.streams = program->streams;
    out.ca = program->ca;
    if (out.source_id >= 0)
      for (ServiceStream& stream : out.streams) stream.stream_type_text = atsc_stream_type_text(stream);
  }
  return out;
}

void ServiceDirectory::State::update(const Key& key) {
  using Kind = ServiceEvent::Kind;
  const Chosen chosen = choose(key);
  const bool is_first_channel = std::get<4>(key) == 0;
  const bool is_there = chosen.description || (is_first_channel && (chosen.program || chosen.association));
  const auto old = services_.find(key);
  if (!is_there) {
    if (old == services_.end()) return;
    changes_.push_back({Kind::gone, &old->second});
    changes_.back().gone = services_.extract(old);
    return;
  }
  Service made = made_of(key, chosen);
  if (old == services_.end()) {
    std::map<Key, Service> appeared;
    const Service& service = appeared.emplace(key, std::move(made)).first->second;
    changes_.push_back({Kind::appeared, &service});
    services_.merge(appeared);
    return;
  }
  Service& service = old->second;
  made.revision = service.revision;
  if (made == service) return;
  ++made.revision;
  changes_.push_back({Kind::changed, &service});
  service = std::move(made);
}

std::vector<const Service*> ServiceDirectory::State::services() const {
  std::vector<const Service*> out;
  for (const auto& [key, service] : services_) out.push_back(&service);
  return out;
}

ServiceDirectory::ServiceDirectory(Sink sink) : state_(std::make_unique<State>(std::move(sink))) {}

ServiceDirectory::~ServiceDirectory() = default;

void ServiceDirectory::push(const TableEvent& event) {
  state_->push(event);
}

std::vector<const Service*> ServiceDirectory::services() const {
  return state_->services();
}

const std::vector<CaStream>& ServiceDirectory::emms() const {
  return state_->emms();
}

}  // namespace quillon
