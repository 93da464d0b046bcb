// Lists the channels of an ATSC stream, with the guide of each.
#include <ctime>
#include <fstream>
#include <iomanip>
#include <iostream>

#include <quillon/quillon.h>

void print(const quillon::ScheduledEvent& event) {
  if (!event.start) return;
  const std::time_t start = std::chrono::system_clock::to_time_t(*event.start);
  std::cout << "  " << std::put_time(std::gmtime(&start), "%Y-%m-%d %H:%M");
  for (const auto& text : event.texts) std::cout << "  " << text.title << " [" << text.language << "]";
  std::cout << "\n";
}

int main(int argc, char** argv) try {
  std::ifstream file(argc > 1 ? argv[1] : "data/sample-atsc.ts", std::ios::binary);
  quillon::ServiceDirectory directory;
  quillon::ScheduleCollector schedule;
  quillon::TableCollector tables([&](const quillon::TableEvent& event) { directory.push(event); });
  quillon::SectionReader sections([&](const quillon::StreamSection& section) {
    tables.push(section);
    schedule.push(section);
  });
  quillon::PacketReader packets;
  quillon::for_each_packet(file, packets, [&](const quillon::TsPacket& packet) { sections.push(packet); });
  if (packets.packets() == 0) throw quillon::error("no transport stream");
  for (const quillon::Service* channel : directory.services()) {
    if (channel->major_channel_number < 0) continue;
    std::cout << channel->major_channel_number << "." << channel->minor_channel_number << "  "
              << channel->name << "\n";
    for (const auto& event : schedule.events(channel->id())) print(event);
  }
} catch (const std::exception& e) {
  std::cerr << e.what() << "\n";
  return 1;
}
