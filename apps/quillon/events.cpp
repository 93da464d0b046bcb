#include "apps/quillon/events.h"

#include "apps/quillon/text.h"
#include "apps/quillon/times.h"

#include <chrono>

namespace quillon::app {

namespace {

constexpr int kMostLines = 500;
// How often is looked for what is due, in seconds.
constexpr double kLook = 0.05;

struct KindRow {
  const char* name;
  const char* one;  // of what is counted
  const char* many;
};
constexpr KindRow kKindRows[Events::kKinds] = {
    {"table_new", nullptr, "new tables"},
    {"table_changed", nullptr, "changed tables"},
    {"table_gone", nullptr, "gone tables"},
    {"service_new", nullptr, "new services"},
    {"service_changed", nullptr, "changed services"},
    {"service_renamed", nullptr, "renamed services"},
    {"service_gone", nullptr, "gone services"},
    {"continuity_error", "continuity error", "continuity errors"},
    {"crc_error", "section with a wrong CRC", "sections with a wrong CRC"},
    {"transport_error", "packet marked as damaged", "packets marked as damaged"},
    {"sync_loss", "loss of synchronization", "losses of synchronization"},
    {"scrambling_begins", "scrambling begins", "times scrambling begins"},
    {"scrambling_ends", "scrambling ends", "times scrambling ends"},
};

}  // namespace

Events::Events(Console& console, bool json, bool tells_name, const Input& input)
    : console_(console),
      json_(json),
      is_live_(input.is_live),
      name_(tells_name ? input.name : std::string()),
      time_(input) {}

const char* Events::name_of(Kind kind) {
  return kKindRows[kind].name;
}

std::string Events::pid_column(int pid) {
  return pid < 0 ? std::string() : "PID " + pid_text(pid) + "  ";
}

bool Events::is_over(double since) const {
  const double now = time_.pace();
  return now < since || now - since >= 1;
}

bool Events::has_line(Kind kind, uint64_t count) {
  Limit& limit = limits_[kind];
  if (is_over(limit.since)) {
    tell_omitted(kind);
    limit = {time_.pace()};
  }
  if (++limit.lines <= kMostLines) return true;
  limit.omitted += count;
  return false;
}

void Events::count(Kind kind, int pid) {
  const auto [place, is_first] = counted_.try_emplace({kind, pid}, Counted{time_.pace()});
  is_first ? tell_count(kind, pid, 1) : void(++place->second.untold);
}

void Events::tick() {
  const double now = time_.pace();
  if (now >= looked_ && now - looked_ < kLook) return;
  looked_ = now;
  for (auto place = counted_.begin(); place != counted_.end();) {
    auto& [key, counted] = *place;
    if (!is_over(counted.told_at)) {
      ++place;
    } else if (counted.untold == 0) {
      place = counted_.erase(place);
    } else {
      tell_count(key.first, key.second, counted.untold);
      counted = {now};
      ++place;
    }
  }
  for (size_t kind = 0; kind < kKinds; ++kind)
    if (limits_[kind].omitted > 0 && is_over(limits_[kind].since)) tell_omitted(static_cast<Kind>(kind));
}

void Events::finish() {
  for (const auto& [key, counted] : counted_)
    if (counted.untold > 0) tell_count(key.first, key.second, counted.untold);
  counted_.clear();
  for (size_t kind = 0; kind < kKinds; ++kind) tell_omitted(static_cast<Kind>(kind));
}

void Events::tell_count(Kind kind, int pid, uint64_t count) {
  if (!has_line(kind, count)) return;
  const KindRow& row = kKindRows[kind];
  if (json_) {
    begin_object(row.name);
    if (pid >= 0) fields_.number("pid", pid, nullptr);
    fields_.number("count", static_cast<int64_t>(count), nullptr);
    console_.print(fields_.take());
  } else {
    line(pid_column(pid) + (count == 1 ? row.one : grouped(count) + " " + row.many));
  }
}

void Events::tell_omitted(Kind kind) {
  const uint64_t count = std::exchange(limits_[kind].omitted, 0);
  if (count == 0) return;
  if (json_) {
    begin_object("events_omitted");
    fields_.text("omitted", name_of(kind));
    fields_.number("count", static_cast<int64_t>(count), nullptr);
    console_.print(fields_.take());
  } else {
    line(grouped(count) + " more " + kKindRows[kind].many + ", too many to tell each");
  }
}

void Events::begin_object(const char* name) {
  fields_.text("event", name);
  if (!name_.empty()) fields_.text("input", name_);
  if (time_.is_known()) fields_.seconds("time", time_.seconds());
  fields_.number("packet", static_cast<int64_t>(time_.count()), nullptr);
  if (is_live_) fields_.text("arrival", iso_8601(std::chrono::system_clock::now()));
}

void Events::line(const std::string& text) {
  console_.print((name_.empty() ? std::string() : name_ + ": ") + time_.text() + "  " + text + "\n");
}

}  // namespace quillon::app
