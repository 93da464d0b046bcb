#pragma once

#include "apps/quillon/options.h"

#include <cstdint>
#include <set>
#include <string>
#include <vector>

#include <quillon/stream/section_reader.h>
#include <quillon/stream/service_directory.h>
#include <quillon/stream/table_collector.h>

namespace quillon::app {

// Whether a section is wanted, but for what is asked of services.
bool is_wanted(const Choice& choice, const StreamSection& section);
// By its program number, name or channel; true if none was asked for.
bool is_wanted(const Choice& choice, const Service& service);
// "--table 0x42 --only-current"; empty if all is wanted.
std::string text_of(const Choice& choice);

// Which sections tell of the services that are wanted: their maps, their events, and what their streams
// carry.
class ServiceSections {
 public:
  explicit ServiceSections(const Choice& choice);
  ServiceSections(const ServiceSections&) = delete;
  ServiceSections& operator=(const ServiceSections&) = delete;

  // Each section, wanted or not, names services.
  void learn(const StreamSection& section);
  bool is_wanted(const StreamSection& section);

 private:
  void look_up();
  bool has_events(const ServiceId& id) const;

  const Choice& choice_;
  ServiceDirectory directory_;
  TableCollector tables_;
  std::set<int64_t> numbers_;  // that were asked for, known or not
  bool is_old_ = true;         // what follows
  std::set<int> programs_;
  std::vector<ServiceId> events_;
  std::set<int> pids_;
};

}  // namespace quillon::app
