#include "fuzz/input_file.h"
#include "fuzz/require.h"
#include "fuzz/targets.h"

#include <string>
#include <string_view>
#include <vector>

#include <quillon/report/registries.h>
#include <quillon/sections/error.h>

namespace quillon::fuzz {

void overlay(const uint8_t* data, size_t size) {
  static const InputFile file("overlay");
  // Names once given out stay. When they have grown to this, a bad line after the others keeps them from
  // being taken; the lines are still read.
  constexpr size_t kEnough = 64 << 20;
  static size_t taken = 0;
  std::vector<uint8_t> text(data, data + size);
  constexpr std::string_view kBadLine = "\nend";
  if (taken > kEnough) text.insert(text.end(), kBadLine.begin(), kBadLine.end());
  file.write(text);
  try {
    load_registry_overlay(registry_kind::ca_system, file.path());
    taken += size;
  } catch (const error& e) {
    // A refusal names the file.
    require(std::string(e.what()).find(file.path().filename().string()) != std::string::npos);
  }
  for (int id = 0; id < 0x10000; id += 257) get_ca_system_id(id);
}

}  // namespace quillon::fuzz
