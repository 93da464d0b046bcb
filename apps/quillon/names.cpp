#include "apps/quillon/names.h"

#include "apps/quillon/commands.h"
#include "apps/quillon/output.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <cstring>
#include <iostream>
#include <iterator>
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

// Decimal, or hexadecimal after 0x.
std::optional<uint32_t> number(std::string_view text) {
  int base = 10;
  if (text.starts_with("0x") || text.starts_with("0X")) {
    text.remove_prefix(2);
    base = 16;
  }
  uint32_t value = 0;
  const auto [end, result] = std::from_chars(text.data(), text.data() + text.size(), value, base);
  if (result != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return value;
}

int complain(const std::string& text) {
  std::cerr << "quillon: " << text << std::endl;
  return exit_bad_input;
}

int finish() {
  std::cout.flush();
  return std::cout ? exit_ok : complain("standard output: can't be written");
}

}  // namespace

int names(const std::string& kind_name, const std::optional<std::string>& id) {
  const auto kind = std::find_if(std::begin(kKinds), std::end(kKinds),
                                 [&kind_name](const Kind& k) { return k.name == kind_name; });
  if (kind == std::end(kKinds)) {
    std::string known;
    for (const Kind& k : kKinds) known += (known.empty() ? "" : ", ") + std::string(k.name);
    return complain("no registry is called " + kind_name + "; there are " + known);
  }
  const auto print = [&kind](uint32_t value, const char* name) {
    std::cout << hex(value, kind->digits) << ' ' << platform::to_utf8(1252, name) << '\n';
  };

  if (!id) {
    for (const registry_row& row : get_registry_rows(kind->registry))
      print(static_cast<uint32_t>(row.id), row.name);
    return finish();
  }
  const std::optional<uint32_t> value = number(*id);
  if (!value) return complain(*id + " is no id");
  init();
  const char* const name = kind->name_of(static_cast<int>(*value));
  if (std::strcmp(name, "<unknown>") == 0)
    return complain(std::string(kind->name) + " " + hex(*value, kind->digits) + " is not registered");
  print(*value, name);
  return finish();
}

}  // namespace quillon::app
