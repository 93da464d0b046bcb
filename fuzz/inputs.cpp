#include "apps/quillon/packet_source.h"
#include "fuzz/targets.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include <quillon/report/registries.h>
#include <quillon/sections/error.h>

namespace quillon::fuzz {

void overlay(const uint8_t* data, size_t size) {
  static const std::filesystem::path file = [] {
    auto folder = std::filesystem::temp_directory_path() / "quillon-overlay-XXXXXX";
    std::string name = folder.string();
    if (!mkdtemp(name.data())) std::abort();
    return std::filesystem::path(name) / "overlay.tsv";
  }();
  std::ofstream(file, std::ios::binary)
      .write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
  init();
  try {
    load_registry_overlay(registry_kind::ca_system, file);
  } catch (const error& e) {
    // A refusal tells the line.
    if (std::string(e.what()).find(file.filename().string()) == std::string::npos) std::abort();
  }
  for (int id = 0; id < 0x10000; id += 257) get_ca_system_id(id);
}

void packets(const uint8_t* data, size_t size) {
  std::istringstream in(std::string(reinterpret_cast<const char*>(data), size));
  app::PacketSource source(in);
  while (const uint8_t* const packet = source.next())
    if (packet[0] != 0x47) std::abort();
  if (source.position() != size || source.packets() * 188 + source.skipped() > size) std::abort();
}

}  // namespace quillon::fuzz
