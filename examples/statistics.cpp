// Prints the statistics of a transport stream: rates and errors by PID, and how often tables are sent.
#include <fstream>
#include <iomanip>
#include <iostream>

#include <quillon/quillon.h>

int main(int argc, char** argv) try {
  std::ifstream file(argc > 1 ? argv[1] : "data/sample.ts", std::ios::binary);
  quillon::StreamStatistics statistics;
  quillon::SectionReader sections([&](const auto& section) { statistics.on_section(section); },
                                  {.repeats = true});
  quillon::PacketReader packets;
  quillon::for_each_packet(file, packets, [&](const quillon::TsPacket& packet) {
    statistics.push(packet);
    sections.push(packet);
  });
  if (packets.packets() == 0) throw quillon::error("no transport stream");
  std::cout << std::fixed << std::setprecision(1) << statistics.packets() << " packets in "
            << statistics.seconds() << " s, " << statistics.bit_rate() / 1000 << " kbit/s\n";
  for (int pid = 0; pid < quillon::TsPacket::pids; ++pid) {
    const quillon::PidStatistics& counts = statistics.pid(pid);
    if (counts.packets == 0) continue;
    std::cout << "PID " << std::setw(4) << pid << std::setw(6) << counts.packets << " packets" << std::setw(7)
              << statistics.bit_rate(pid) / 1000 << " kbit/s, " << counts.continuity_errors
              << " continuity errors\n";
  }
  for (const quillon::TableRepetition& table : statistics.tables())
    if (table.intervals > 0)
      std::cout << "table " << table.table_id << "." << table.extension << " on PID " << table.pid
                << ": every " << table.mean << " s\n";
} catch (const std::exception& e) {
  std::cerr << e.what() << "\n";
  return 1;
}
