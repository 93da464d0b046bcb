#include "python/src/reader.h"

#include "python/src/convert.h"
#include "python/src/fields.h"

#include <algorithm>
#include <pybind11/stl.h>
#include <utility>

#include <quillon/sections/error.h>
#include <quillon/stream/table_kinds.h>

namespace py = pybind11;

namespace quillon::python {

namespace {

// What holds no packets or sections for so long has none: a device may give zeros for ever.
constexpr uint64_t kPatience = uint64_t{64} << 20;
// In fewer bytes than three packets of the largest stride, a section in a packet may look like one without.
constexpr size_t kFirstLook = 3 * 208;
constexpr char kNothing[] = "the input holds no transport packets, nor sections";

// -1 is what is not known.
template <class Number>
std::optional<Number> known(Number value) {
  return value < 0 ? std::nullopt : std::optional(value);
}

std::optional<bool> known_flag(int value) {
  return value < 0 ? std::nullopt : std::optional(value != 0);
}

py::tuple strings(const std::vector<std::string>& texts) {
  py::tuple out(texts.size());
  for (size_t i = 0; i < texts.size(); ++i) out[i] = to_str(texts[i]);
  return out;
}

template <class Values, class Convert>
py::tuple tuple_of(const Values& values, Convert convert) {
  py::tuple out(values.size());
  for (size_t i = 0; i < values.size(); ++i) out[i] = convert(values[i]);
  return out;
}

py::object python_of(const ServiceId& id) {
  return type_named("ServiceId")(known(id.original_network_id), known(id.transport_stream_id), id.service_id);
}

py::tuple python_of(const std::vector<CaStream>& streams) {
  const py::object type = type_named("CaStream");
  return tuple_of(streams, [&](const CaStream& ca) { return type(ca.ca_system_id, ca.pid); });
}

py::object python_of(const ServiceStream& stream) {
  using namespace py::literals;
  return type_named("ServiceStream")(
      "pid"_a = stream.pid, "stream_type"_a = stream.stream_type,
      "stream_type_text"_a = to_str(stream.stream_type_text), "content"_a = to_str(stream.content),
      "format_identifier"_a = stream.format_identifier, "component_tag"_a = known(stream.component_tag),
      "languages"_a = strings(stream.languages), "ca"_a = python_of(stream.ca));
}

py::object python_of(const Service& service) {
  using namespace py::literals;
  return type_named("Service")(
      "id"_a = python_of(service.id()), "is_actual"_a = service.is_actual,
      "original_network_id"_a = known(service.original_network_id),
      "transport_stream_id"_a = known(service.transport_stream_id), "service_id"_a = service.service_id,
      "name"_a = to_str(service.name), "provider"_a = to_str(service.provider),
      "service_type"_a = known(service.service_type),
      "service_type_text"_a = to_str(service.service_type_text),
      "running_status"_a = known(service.running_status), "free_ca_mode"_a = known_flag(service.free_ca_mode),
      "eit_schedule_flag"_a = known_flag(service.eit_schedule_flag),
      "eit_present_following_flag"_a = known_flag(service.eit_present_following_flag),
      "major_channel_number"_a = known(service.major_channel_number),
      "minor_channel_number"_a = known(service.minor_channel_number),
      "source_id"_a = known(service.source_id), "hidden"_a = known_flag(service.hidden),
      "map_pid"_a = known(service.map_pid), "pcr_pid"_a = known(service.pcr_pid),
      "streams"_a = tuple_of(service.streams, [](const ServiceStream& stream) { return python_of(stream); }),
      "ca"_a = python_of(service.ca));
}

// Rows of lists as the dicts that a section's fields have of them.
template <class Rows>
py::tuple dicts_of(const Rows& rows) {
  return tuple_of(rows, [](const auto& row) {
    DictFields fields;
    row.walk(fields);
    return fields.take();
  });
}

py::object python_of(const ExtendedText& text) {
  const py::tuple items = tuple_of(text.items, [](const ExtendedText::Item& item) {
    return py::make_tuple(to_str(item.description), to_str(item.item));
  });
  return type_named("LongText")(to_str(text.language), items, to_str(text.text), text.is_complete);
}

py::object python_of(const ScheduledEvent& event) {
  using namespace py::literals;
  const py::object text_type = type_named("EventText");
  return type_named("Event")(
      "event_id"_a = event.event_id, "start"_a = event.start ? to_datetime(*event.start) : py::none(),
      "duration"_a = event.duration ? to_timedelta(event.duration->count()) : py::none(),
      "running_status"_a = event.running_status, "free_ca_mode"_a = known_flag(event.free_ca_mode),
      "texts"_a = tuple_of(event.texts,
                           [&](const EventText& text) {
                             return text_type(to_str(text.language), to_str(text.title), to_str(text.text));
                           }),
      "long_texts"_a = tuple_of(event.long_texts, [](const ExtendedText& text) { return python_of(text); }),
      "contents"_a = dicts_of(event.contents), "ratings"_a = dicts_of(event.ratings),
      "genres"_a = dicts_of(event.genres), "advisories"_a = dicts_of(event.advisories));
}

py::object python_of(const Reader::Counts& counts) {
  using namespace py::literals;
  const StreamStatistics& all = counts.statistics;
  const py::object pid_type = type_named("PidStatistics");
  const py::object table_type = type_named("TableRepetition");
  py::dict pids;
  for (int pid = 0; pid < TsPacket::pids; ++pid) {
    const PidStatistics& of = all.pid(pid);
    if (of.packets == 0) continue;
    pids[py::int_(pid)] = pid_type("packets"_a = of.packets, "bit_rate"_a = all.bit_rate(pid),
                                   "continuity_errors"_a = of.continuity_errors,
                                   "duplicates"_a = of.duplicates, "transport_errors"_a = of.transport_errors,
                                   "scrambled"_a = of.scrambled, "clock_references"_a = of.clock_references);
  }
  const py::tuple tables = tuple_of(all.tables(), [&](const TableRepetition& table) {
    const auto measured = [&](double seconds) {
      return table.intervals > 0 ? std::optional(seconds) : std::nullopt;
    };
    return table_type("pid"_a = table.pid, "table_id"_a = table.table_id, "extension"_a = table.extension,
                      "transport_stream_id"_a = table.transport_stream_id,
                      "original_network_id"_a = table.original_network_id, "further_id"_a = table.further_id,
                      "is_current"_a = table.is_current, "count"_a = table.count,
                      "smallest"_a = measured(table.smallest), "largest"_a = measured(table.largest),
                      "mean"_a = measured(table.mean));
  });
  py::dict crc_errors;
  for (const auto& [pid, count] : counts.crc_errors) crc_errors[py::cast(known(pid))] = count;
  return type_named("Statistics")("packets"_a = all.packets(), "null_packets"_a = all.null_packets(),
                                  "packet_size"_a = counts.stride, "skipped_bytes"_a = counts.skipped,
                                  "sync_losses"_a = all.sync_losses(), "seconds"_a = all.seconds(),
                                  "bit_rate"_a = all.bit_rate(), "sections"_a = counts.sections,
                                  "crc_errors"_a = crc_errors, "pids"_a = pids, "tables"_a = tables);
}

// A number from 0 to `last`.
size_t index_of(const py::handle& value, long last, const char* what) {
  const auto number = py::reinterpret_steal<py::object>(PyNumber_Index(value.ptr()));
  if (!number) throw py::error_already_set();
  int overflow = 0;
  const long index = PyLong_AsLongAndOverflow(number.ptr(), &overflow);
  if (overflow != 0 || index < 0 || index > last)
    throw py::value_error(py::str(number).cast<std::string>() + " is no " + what + ": from 0 to " +
                          std::to_string(last) + " is wanted");
  return static_cast<size_t>(index);
}

// By the name of their documents' element.
void add_tables(std::vector<bool>& tables, const std::string& name) {
  static constexpr struct {
    int first, last;
    const char* name;
  } kinds[] = {
#define QUILLON_ROW(first, last, standard, table, element) {first, last, element},
      QUILLON_TABLE_KINDS(QUILLON_ROW)
#undef QUILLON_ROW
  };
  bool is_known = false;
  std::string names;
  for (const auto& kind : kinds) {
    if (names.find(kind.name) == names.npos) names.append(names.empty() ? "" : ", ").append(kind.name);
    if (name != kind.name) continue;
    is_known = true;
    std::fill(tables.begin() + kind.first, tables.begin() + kind.last + 1, true);
  }
  if (!is_known) throw py::value_error("no table is called \"" + name + "\"; there are " + names);
}

std::unique_ptr<Reader> make_reader(const py::iterable& pids, const py::iterable& tables, bool repeats,
                                    bool every_pid, const std::optional<std::string>& standard,
                                    const std::string& reading) {
  Reader::Choice choice;
  SectionReaderOptions how;
  for (const py::handle pid : pids) {
    choice.pids.resize(TsPacket::pids);
    const size_t index = index_of(pid, TsPacket::pids - 1, "PID");
    choice.pids[index] = true;
    how.pids.push_back(static_cast<int>(index));
  }
  for (const py::handle table : tables) {
    choice.tables.resize(0x100);
    if (py::isinstance<py::str>(table))
      add_tables(choice.tables, py::reinterpret_borrow<py::str>(table));
    else
      choice.tables[index_of(table, 0xFF, "table id")] = true;
  }
  choice.repeats = repeats;
  choice.reading = reading_of(reading);
  // A table that is asked for by its id alone is sought on every PID.
  how.every_pid = every_pid || (choice.pids.empty() && !choice.tables.empty());
  how.repeats = true;  // which the statistics count
  if (standard) how.standard = standard_of(*standard);
  return std::make_unique<Reader>(std::move(choice), std::move(how));
}

}  // namespace

template <class OnPacket, class OnSection>
void Cutter::push(std::span<const uint8_t> bytes, OnPacket on_packet, OnSection on_section) {
  if (content_ != app::Content::unknown) return cut(bytes, on_packet, on_section);
  first_.insert(first_.end(), bytes.begin(), bytes.end());
  if (first_.size() < std::max(next_look_, kFirstLook)) return;
  // Not at each of many small pieces, as a look goes through all of them.
  next_look_ = first_.size() + first_.size() / 4 + 1;
  content_ = app::content_of(first_);
  if (content_ != app::Content::unknown) cut(std::exchange(first_, {}), on_packet, on_section);
}

template <class OnPacket, class OnSection>
void Cutter::cut(std::span<const uint8_t> bytes, OnPacket on_packet, OnSection on_section) {
  if (is_chain()) {
    chain_.push(bytes, on_section);
    if (chain_.since_section() >= kPatience) throw error("no section is in the last 64 MiB of the input");
    return;
  }
  packets_.feed(bytes.data(), bytes.size());
  for (TsPacket packet; packets_.next(packet);) on_packet(packet);
  if (packets_.packets() == 0 && packets_.position() >= kPatience) throw error(kNothing);
}

template <class OnPacket, class OnSection>
void Cutter::finish(OnPacket on_packet, OnSection on_section) {
  if (content_ == app::Content::unknown) {
    content_ = app::content_of(first_);
    if (content_ == app::Content::unknown) content_ = app::Content::packets;
    cut(std::exchange(first_, {}), on_packet, on_section);
  }
  if (is_chain()) return chain_.finish(on_section);
  packets_.finish();
  for (TsPacket packet; packets_.next(packet);) on_packet(packet);
  if (packets_.packets() == 0) throw error(kNothing);
}

Reader::Reader(Choice choice, SectionReaderOptions how)
    : choice_(std::move(choice)),
      how_(std::move(how)),
      tables_([this](const TableEvent& event) { directory_.push(event); }) {}

template <class Work>
auto Reader::unlocked(Work work) const {
  const py::gil_scoped_release release;
  const std::lock_guard lock(mutex_);
  return work();
}

void Reader::look_ahead(const py::object& data) {
  const Bytes bytes(data);
  unlocked([&] {
    if (!look_ahead_) look_ahead_ = std::make_unique<LookAhead>(how_);
    SectionReader& reader = look_ahead_->reader;
    look_ahead_->cutter.push(
        bytes.get(), [&](const TsPacket& packet) { reader.push(packet); },
        [&](const uint8_t* section, size_t size) { reader.push_section(section, size); });
  });
}

// The reader from the first bytes on, with what was learnt.
void Reader::begin() {
  if (look_ahead_) {
    const SectionReader& learnt = look_ahead_->reader;
    if (!look_ahead_->cutter.is_chain())
      for (int pid = 0; pid < TsPacket::pids; ++pid)
        if (learnt.reads_pid(pid)) how_.pids.push_back(pid);
    how_.standard = learnt.standard();
    look_ahead_.reset();
  }
  reader_ = std::make_unique<SectionReader>([this](const StreamSection& section) { take(section); }, how_);
}

template <class Work>
py::list Reader::sections_of(bool wanted, Work work) {
  Sections sections;
  unlocked([&] {
    if (finished_) throw error("the input was finished");
    if (!reader_) begin();
    sections_ = wanted ? &sections : nullptr;
    work(
        [this](const TsPacket& packet) {
          statistics_.push(packet);
          reader_->push(packet);
        },
        [this](const uint8_t* section, size_t size) { reader_->push_section(section, size); });
  });
  py::list out(sections.size());
  for (size_t i = 0; i < sections.size(); ++i) out[i] = py::cast(std::move(sections[i]));
  return out;
}

py::list Reader::feed(const py::object& data, bool wanted) {
  const Bytes bytes(data);
  return sections_of(
      wanted, [&](auto on_packet, auto on_section) { cutter_.push(bytes.get(), on_packet, on_section); });
}

py::list Reader::finish(bool wanted) {
  return sections_of(wanted, [&](auto on_packet, auto on_section) {
    finished_ = true;
    cutter_.finish(on_packet, on_section);
  });
}

bool Reader::is_wanted(const StreamSection& section) const {
  if (section.repeated && !choice_.repeats) return false;
  if (section.pid >= 0 && !choice_.pids.empty() && !choice_.pids[static_cast<size_t>(section.pid)])
    return false;
  return choice_.tables.empty() || choice_.tables[static_cast<size_t>(section.table_id())];
}

void Reader::take(const StreamSection& section) {
  ++taken_;
  if (section.has_crc && !section.crc_ok) ++crc_errors_[section.pid];
  statistics_.on_section(section);
  tables_.push(section);
  tables_.advance(statistics_.seconds());
  schedule_.push(section);
  if (!sections_ || !is_wanted(section)) return;
  const std::optional<double> time =
      statistics_.bit_rate() > 0 ? std::optional(statistics_.seconds()) : std::nullopt;
  sections_->push_back(std::make_unique<Section>(section, time, reader_->standard(), choice_.reading));
}

std::string Reader::standard() const {
  return unlocked([this] {
    const Standard standard = reader_ ? reader_->standard() : how_.standard.value_or(Standard::dvb);
    return standard == Standard::atsc ? "atsc" : "dvb";
  });
}

py::list Reader::services() const {
  const std::vector<Service> services = unlocked([this] {
    std::vector<Service> out;
    for (const Service* const service : directory_.services()) out.push_back(*service);
    return out;
  });
  py::list out;
  for (const Service& service : services) out.append(python_of(service));
  return out;
}

py::dict Reader::schedule() const {
  py::dict out;
  for (const ServiceId& id : unlocked([this] { return schedule_.services(); })) {
    py::list events;
    for (const ScheduledEvent& event : unlocked([&] { return schedule_.events(id); }))
      events.append(python_of(event));
    out[python_of(id)] = events;
  }
  return out;
}

py::object Reader::statistics() const {
  return python_of(unlocked([this] {
    return Counts{statistics_, cutter_.packets().stride(), cutter_.skipped(), taken_, crc_errors_};
  }));
}

void define_reader(py::module_& module) {
  py::class_<Reader>(module, "Reader",
                     "Takes the bytes of a stream as they come and gives the sections that they complete, "
                     "for those who read\n"
                     "by themselves: an event loop, a callback, a socket. open() does the reading, too.\n\n"
                     "    reader = quillon.Reader()\n"
                     "    while chunk := connection.recv(65536):\n"
                     "        for section in reader.feed(chunk):\n"
                     "            print(section)\n\n"
                     "The options are those of open(). Threads may share a reader.")
      .def(py::init(&make_reader), py::kw_only(), py::arg("pids") = py::tuple(),
           py::arg("tables") = py::tuple(), py::arg("repeats") = false, py::arg("every_pid") = false,
           py::arg("standard") = py::none(), py::arg("reading") = "standard")
      .def(
          "feed", [](Reader& self, const py::object& data) { return self.feed(data, true); }, py::arg("data"),
          "The sections that these bytes complete. They may be cut anywhere; a packet is certain once "
          "others\n"
          "follow it, so that the last two of a piece come with the next. Raises Error once 64 MiB hold no\n"
          "packets, nor sections.")
      .def(
          "finish", [](Reader& self) { return self.finish(true); },
          "States that no more comes, and gives the last sections. Raises Error if the whole input held no\n"
          "packets, nor sections.")
      .def("_look_ahead", &Reader::look_ahead, py::arg("data"))
      .def("_feed", &Reader::feed, py::arg("data"), py::arg("wanted"))
      .def("_finish", &Reader::finish, py::arg("wanted"))
      .def_property_readonly("standard", &Reader::standard,
                             "Whose tables the stream holds, as far as is known: \"dvb\" or \"atsc\".")
      .def("services", &Reader::services,
           "The services that what was read tells of: those of the stream itself first, by their ids.")
      .def("schedule", &Reader::schedule,
           "The events that what was read tells of: a dict from ServiceId to the list of its events, by "
           "start.")
      .def_property_readonly("statistics", &Reader::statistics, "What was read so far, counted.");
}

}  // namespace quillon::python
