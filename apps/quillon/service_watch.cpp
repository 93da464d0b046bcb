#include "apps/quillon/service_watch.h"

#include "apps/quillon/choice.h"
#include "apps/quillon/describe.h"
#include "apps/quillon/text.h"

#include <string>
#include <utility>
#include <vector>

namespace quillon::app {

namespace {

// What a service description may come after the other tables (TS 101 211, 4.4).
constexpr double kPatience = 2;

std::string label_of(const Service& service) {
  std::string out = "service " + std::to_string(service.service_id);
  if (service.major_channel_number >= 0)
    out += ", channel " + std::to_string(service.major_channel_number) + "." +
           std::to_string(service.minor_channel_number);
  if (!service.is_actual)
    out += " of transport stream " + std::to_string(service.transport_stream_id) + ", network " +
           std::to_string(service.original_network_id);
  if (!service.name.empty()) out += " \"" + visible(service.name) + "\"";
  return out;
}

std::string number_text(int number) {
  return number < 0 ? "unknown" : std::to_string(number);
}

std::string pid_or_unknown(int pid) {
  return pid < 0 ? "unknown" : pid_text(pid);
}

std::string running_or_number(int status) {
  const char* const text = running_text(status);
  return text ? text : number_text(status);
}

std::string scrambled_text(int mode) {
  return mode < 0 ? "unknown" : mode ? "yes" : "no";
}

std::vector<int> pids_of(const std::vector<ServiceStream>& streams) {
  std::vector<int> out;
  out.reserve(streams.size());
  for (const ServiceStream& stream : streams) out.push_back(stream.pid);
  return out;
}

std::vector<int> systems_of(const std::vector<CaStream>& streams) {
  std::vector<int> out;
  out.reserve(streams.size());
  for (const CaStream& stream : streams) out.push_back(stream.ca_system_id);
  return out;
}

std::string hex_list(const std::vector<int>& values) {
  std::string out;
  for (const int value : values)
    out.append(out.empty() ? "" : " ").append(hex(static_cast<unsigned>(value), 4));
  return out.empty() ? "none" : out;
}

void add_list(JsonFields& fields, const char* name, const std::vector<int>& values) {
  fields.begin_list(name, values.size());
  for (const int value : values) fields.number(name, value, nullptr);
  fields.end();
}

void add_known(JsonFields& fields, const char* name, int value, const char* meaning = nullptr) {
  if (value >= 0) fields.number(name, value, meaning);
}

// What of a service is another one than before, as one line and as JSON.
class Changes {
 public:
  Changes(const Service& old, const Service& now) : old_(old), now_(now) {}

  // Calls the sink with each part; it has one function for each kind of value.
  template <class Sink>
  void each(Sink& sink) const {
    const auto number = [&](const char* part, const char* title, int Service::*member,
                            std::string (*text)(int) = number_text) {
      if (old_.*member != now_.*member) sink.number(part, title, old_.*member, now_.*member, text);
    };
    const auto list = [&](const char* part, const char* title, const auto& before, const auto& after,
                          auto values_of) {
      if (before != after) sink.list(part, title, values_of(before), values_of(after));
    };
    if (old_.name != now_.name) sink.text("name", "name", old_.name, now_.name);
    if (old_.provider != now_.provider) sink.text("provider", "provider", old_.provider, now_.provider);
    number("service_type", "type", &Service::service_type);
    number("running_status", "status", &Service::running_status, running_or_number);
    number("free_ca_mode", "scrambled", &Service::free_ca_mode, scrambled_text);
    number("eit_schedule_flag", "schedule of events", &Service::eit_schedule_flag);
    number("eit_present_following_flag", "present and following event", &Service::eit_present_following_flag);
    number("original_network_id", "network", &Service::original_network_id);
    number("transport_stream_id", "transport stream", &Service::transport_stream_id);
    number("major_channel_number", "major channel", &Service::major_channel_number);
    number("minor_channel_number", "minor channel", &Service::minor_channel_number);
    number("source_id", "source", &Service::source_id);
    number("hidden", "hidden", &Service::hidden);
    number("map_pid", "PID of its map", &Service::map_pid, pid_or_unknown);
    number("pcr_pid", "PID of its clock", &Service::pcr_pid, pid_or_unknown);
    list("streams", "streams", old_.streams, now_.streams, pids_of);
    list("ca", "conditional access", old_.ca, now_.ca, systems_of);
  }

 private:
  const Service& old_;
  const Service& now_;
};

class ChangeText {
 public:
  void number(const char*, const char* title, int old, int now, std::string (*text)(int)) {
    add(title).append(" ").append(text(old)).append(" -> ").append(text(now));
  }
  void text(const char*, const char* title, const std::string& old, const std::string& now) {
    add(title) += " \"" + visible(old) + "\" -> \"" + visible(now) + "\"";
  }
  void list(const char*, const char* title, const std::vector<int>& old, const std::vector<int>& now) {
    std::string& text = add(title);
    if (old != now) text.append(" ").append(hex_list(old)).append(" -> ").append(hex_list(now));
  }
  const std::string& take() const { return text_; }

 private:
  std::string& add(const char* title) { return text_.append(text_.empty() ? "" : ", ").append(title); }

  std::string text_;
};

class ChangeFields {
 public:
  explicit ChangeFields(JsonFields& fields) : fields_(fields) { fields_.begin_list("changes", 0); }
  ~ChangeFields() { fields_.end(); }
  ChangeFields(const ChangeFields&) = delete;
  ChangeFields& operator=(const ChangeFields&) = delete;

  void number(const char* part, const char*, int old, int now, std::string (*)(int)) {
    begin(part);
    add_known(fields_, "old", old);
    add_known(fields_, "new", now);
    fields_.end();
  }
  void text(const char* part, const char*, const std::string& old, const std::string& now) {
    begin(part);
    fields_.text("old", old);
    fields_.text("new", now);
    fields_.end();
  }
  void list(const char* part, const char*, const std::vector<int>& old, const std::vector<int>& now) {
    begin(part);
    add_list(fields_, "old", old);
    add_list(fields_, "new", now);
    fields_.end();
  }

 private:
  void begin(const char* part) {
    fields_.begin("change", "");
    fields_.text("part", part);
  }

  JsonFields& fields_;
};

void add_ids(JsonFields& fields, const Service& service) {
  fields.number("service_id", service.service_id, nullptr);
  fields.number("actual", service.is_actual, nullptr);
  add_known(fields, "transport_stream_id", service.transport_stream_id);
  add_known(fields, "original_network_id", service.original_network_id);
  add_known(fields, "major_channel_number", service.major_channel_number);
  add_known(fields, "minor_channel_number", service.minor_channel_number);
  fields.text("name", service.name);
}

}  // namespace

ServiceWatch::Key ServiceWatch::key_of(const Service& s) {
  if (s.is_actual) return {false, 0, 0, s.service_id, s.channel_of_program};
  return {true, s.original_network_id, s.transport_stream_id, s.service_id, s.channel_of_program};
}

void ServiceWatch::on_event(const ServiceEvent& event) {
  const Service& service = event.service;
  const auto place = services_.try_emplace(key_of(service)).first;
  Known& known = place->second;
  if (event.kind == ServiceEvent::Kind::appeared) {
    known.untold_since = events_.time().pace();
    ++untold_;
  }
  const Service old = std::exchange(known.service, service);
  if (event.kind == ServiceEvent::Kind::gone) {
    if (known.untold_since) tell_new(known);
    tell_gone(service);
    services_.erase(place);
  } else if (!known.untold_since) {
    tell_changes(old, service);
  } else if (!service.name.empty() && (!service.is_actual || !service.streams.empty())) {
    tell_new(known);
  }
}

void ServiceWatch::tick() {
  if (untold_ == 0) return;
  const double now = events_.time().pace();
  if (now >= looked_ && now - looked_ < kPatience / 10) return;
  looked_ = now;
  for (auto& [key, known] : services_)
    if (known.untold_since && (now < *known.untold_since || now - *known.untold_since >= kPatience))
      tell_new(known);
}

void ServiceWatch::finish() {
  for (auto& [key, known] : services_)
    if (known.untold_since) tell_new(known);
}

void ServiceWatch::tell_new(Known& known) {
  known.untold_since.reset();
  --untold_;
  const Service& service = known.service;
  if (!is_wanted(choice_, service)) return;
  const auto text = [&] {
    std::string out = label_of(service) + ": new";
    if (*service.service_type_text) out += std::string(", ") + visible(service.service_type_text);
    if (service.running_status > 0) out.append(", ").append(running_or_number(service.running_status));
    if (service.free_ca_mode > 0) out += ", scrambled";
    if (!service.streams.empty()) out += ", streams " + hex_list(pids_of(service.streams));
    return out;
  };
  events_.tell(Events::service_new, text, [&](JsonFields& fields) {
    add_ids(fields, service);
    fields.text("provider", service.provider);
    add_known(fields, "service_type", service.service_type, service.service_type_text);
    add_known(fields, "running_status", service.running_status, running_text(service.running_status));
    add_known(fields, "free_ca_mode", service.free_ca_mode);
    add_known(fields, "map_pid", service.map_pid);
    add_known(fields, "pcr_pid", service.pcr_pid);
    add_list(fields, "streams", pids_of(service.streams));
    add_list(fields, "ca", systems_of(service.ca));
  });
}

void ServiceWatch::tell_gone(const Service& service) {
  if (!is_wanted(choice_, service)) return;
  events_.tell(
      Events::service_gone, [&] { return label_of(service) + ": gone"; },
      [&](JsonFields& fields) { add_ids(fields, service); });
}

void ServiceWatch::tell_changes(const Service& old, const Service& now) {
  if (!is_wanted(choice_, old) && !is_wanted(choice_, now)) return;
  Service before = old;
  if (!old.name.empty() && !now.name.empty() && old.name != now.name) {
    events_.tell(
        Events::service_renamed, [&] { return label_of(old) + ": renamed to \"" + visible(now.name) + "\""; },
        [&](JsonFields& fields) {
          add_ids(fields, now);
          fields.text("old_name", old.name);
        });
    before.name = now.name;
  }
  const Changes changes(before, now);
  ChangeText parts;
  changes.each(parts);
  if (parts.take().empty()) return;
  events_.tell(
      Events::service_changed, [&] { return label_of(now) + ": changed: " + parts.take(); },
      [&](JsonFields& fields) {
        add_ids(fields, now);
        ChangeFields list(fields);
        changes.each(list);
      });
}

}  // namespace quillon::app
