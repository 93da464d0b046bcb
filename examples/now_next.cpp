// Prints what is on each service of a DVB stream, and what comes next, at the time that the stream states.
#include <ctime>
#include <fstream>
#include <iomanip>
#include <iostream>

#include <quillon/quillon.h>

void print(const quillon::ScheduledEvent& event) {
  const std::time_t start = std::chrono::system_clock::to_time_t(*event.start);
  std::cout << "  " << std::put_time(std::gmtime(&start), "%Y-%m-%d %H:%M") << "  "
            << (event.texts.empty() ? "?" : event.texts[0].title) << "\n";
}

int main(int argc, char** argv) try {
  std::ifstream file(argc > 1 ? argv[1] : "data/sample.ts", std::ios::binary);
  quillon::ScheduleCollector schedule;
  quillon::Tdt clock;
  quillon::SectionReader sections([&](const quillon::StreamSection& section) {
    schedule.push(section);
    if (section.table_id() == 0x70) clock.Parse(section.span());
  });
  quillon::PacketReader packets;
  quillon::for_each_packet(file, packets, [&](const quillon::TsPacket& packet) { sections.push(packet); });
  if (packets.packets() == 0) throw quillon::error("no transport stream");
  if (!clock.is_parsed()) throw quillon::error("the stream has no time and date table");
  const auto now = clock.get_utc_time().get_time_point();
  for (const quillon::ServiceId& service : schedule.services()) {
    std::cout << "service " << service.service_id << "\n";
    int left = 2;
    for (const auto& event : schedule.events(service))
      if (event.start && event.duration && *event.start + *event.duration > now && left-- > 0) print(event);
  }
} catch (const std::exception& e) {
  std::cerr << e.what() << "\n";
  return 1;
}
