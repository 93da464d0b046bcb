#include "apps/quillon/commands.h"
#include "apps/quillon/failure.h"
#include "apps/quillon/text.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <limits>
#include <optional>
#include <string>
#include <string_view>

#include <quillon/platform/utf8.h>
#include <quillon/report/registries.h>

namespace quillon::app {

namespace {

struct Kind {
  std::string_view name;
  registry_kind registry;
  const char* (*name_of)(int);
  int digits;  // of an id
};

constexpr Kind kKinds[] = {
    {"network", registry_kind::network, get_network_id, 4},
    {"original-network", registry_kind::original_network, get_original_network_id, 4},
    {"bouquet", registry_kind::bouquet, get_bouquet_id, 4},
    {"ca-system", registry_kind::ca_system, get_ca_system_id, 4},
    {"data-broadcast", registry_kind::data_broadcast, get_data_broadcast_id, 4},
    {"mhp-organisation", registry_kind::mhp_organisation, get_mhp_id, 2},
    {"private-data", registry_kind::private_data, get_private_data_id, 8},
};

}  // namespace

Exit names(const Options& options, Console& console) {
  const auto kind = std::find_if(std::begin(kKinds), std::end(kKinds),
                                 [&options](const Kind& k) { return k.name == options.kind; });
  if (kind == std::end(kKinds)) {
    std::string known;
    for (const Kind& k : kKinds) known += (known.empty() ? "" : ", ") + std::string(k.name);
    console.message("no registry is called " + options.kind + "; there are " + known);
    return exit_usage;
  }
  const auto print = [&](uint32_t value, const char* name) {
    console.print(hex(value, kind->digits) + ' ' + platform::to_utf8(1252, name) + '\n');
  };
  if (!options.id) {
    for (const registry_row& row : get_registry_rows(kind->registry))
      print(static_cast<uint32_t>(row.id), row.name);
    return exit_ok;
  }
  const std::optional<int64_t> number = number_from(*options.id);
  if (!number || *number < 0 || *number > std::numeric_limits<uint32_t>::max()) {
    console.message(*options.id + " is no id: a number is wanted, as 11 or 0x0B00");
    return exit_usage;
  }
  init();
  const auto value = static_cast<uint32_t>(*number);
  const char* const name = kind->name_of(static_cast<int>(value));
  if (std::strcmp(name, "<unknown>") == 0)
    throw Failure(std::string(kind->name) + " " + hex(value, kind->digits) + " is not registered");
  print(value, name);
  return exit_ok;
}

}  // namespace quillon::app
