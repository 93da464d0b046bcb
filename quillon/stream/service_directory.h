#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <quillon/platform/api.h>
#include <quillon/stream/service_id.h>
#include <quillon/stream/table_collector.h>

namespace quillon {

// Where the ECMs or EMMs of a CA system are.
struct CaStream {
  int ca_system_id = 0;
  int pid = 0;

  auto operator<=>(const CaStream&) const = default;
};

// An elementary stream of a service.
struct ServiceStream {
  int pid = 0;
  int stream_type = 0;
  const char* stream_type_text = "";  // in the edition in force
  // "H.264 video", "AC-3 audio", "subtitles": what it carries, by its type and descriptors; stream_type_text
  // where these do not say.
  const char* content = "";
  uint32_t format_identifier = 0;      // of its registration; 0 without one
  int component_tag = -1;              // -1 without one
  std::vector<std::string> languages;  // ISO 639-2, of sound, subtitles and teletext, as they are sent
  std::vector<CaStream> ca;            // ECMs

  bool operator==(const ServiceStream&) const = default;
};

// A service of DVB, a virtual channel of ATSC, or a program of which no more is known. What is not known is
// -1, or empty. Texts are UTF-8.
struct Service {
  bool is_actual = true;  // of the transport stream that is read
  int original_network_id = -1;
  int transport_stream_id = -1;
  int service_id = 0;  // program_number
  // Of the virtual channels with one program: 0, 1, ...
  int channel_of_program = 0;

  std::string name;
  std::string provider;
  int service_type = -1;
  const char* service_type_text = "";  // in the edition in force
  int running_status = -1;             // 1 not running, 2 starts in a few seconds, 3 pausing, 4 running
  int free_ca_mode = -1;               // in ATSC access_controlled
  int eit_schedule_flag = -1;
  int eit_present_following_flag = -1;

  int major_channel_number = -1;  // these four of ATSC alone
  int minor_channel_number = -1;
  int source_id = -1;
  int hidden = -1;

  int map_pid = -1;
  int pcr_pid = -1;
  std::vector<ServiceStream> streams;
  std::vector<CaStream> ca;  // ECMs of the program and its streams, each once

  uint64_t revision = 1;  // counts its changes

  // What its event information calls it.
  ServiceId id() const {
    if (source_id >= 0) return {-1, -1, source_id};
    return {original_network_id, transport_stream_id, service_id};
  }

  bool operator==(const Service&) const = default;
};

// What became of a service.
struct ServiceEvent {
  enum class Kind { appeared, changed, gone };
  Kind kind;
  const Service& service;  // as it is now; one that is gone, as it was
};

// The services of a transport stream and of those that it tells of, by PAT, PMT, CAT, SDT, TVCT and CVCT on
// the PIDs of their standards (or in a chain of bare sections).
//
//   ServiceDirectory directory;
//   TableCollector tables([&](const TableEvent& event) { directory.push(event); });
//   SectionReader sections([&](const StreamSection& section) { tables.push(section); }, {.repeats = true});
//   while (packets.next(packet)) sections.push(packet);
//   for (const Service* service : directory.services())
//     std::cout << service->service_id << " " << service->name << "\n";
//
// Of several tables that describe one service, the one that came last counts. A service goes when no
// table has it any more: tables that are gone or forgotten say nothing. A map counts if a program association
// names it, or until there is one. A section that cannot be parsed says nothing, and the rest of its table
// does.
//
// Memory: 24 MiB at most, while a table is read. What of a table would need more is left out, and so is what
// the seventeenth table and those after it say of one service, and the virtual channels of a program beyond
// sixteen.
//
// The sink may not push. One that throws leaves the directory as it is to be, and does not get the other
// events of the same table. Where memory runs out, std::bad_alloc comes out of push; the same event pushed
// again makes the directory what it is to be, and tells what was not told. For threads the rule of the tables
// holds (PsiBase1).
class QUILLON_API ServiceDirectory {
 public:
  using Sink = std::function<void(const ServiceEvent&)>;

  explicit ServiceDirectory(Sink sink = {});
  ~ServiceDirectory();
  ServiceDirectory(const ServiceDirectory&) = delete;
  ServiceDirectory& operator=(const ServiceDirectory&) = delete;

  // Events of other tables, and of next ones, are passed over.
  void push(const TableEvent& event);

  // Those of the stream itself first, each in the order of its ids. The pointers are good until the next
  // push.
  std::vector<const Service*> services() const;
  // Of the conditional access table.
  const std::vector<CaStream>& emms() const;

 private:
  class State;

  std::unique_ptr<State> state_;
};

}  // namespace quillon
