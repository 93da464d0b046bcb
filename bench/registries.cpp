#include <benchmark/benchmark.h>
#include <map>
#include <random>
#include <vector>

#include <quillon/report/registries.h>

namespace {

using namespace quillon;

// Ids in no order that a branch predictor could learn; all are registered.
std::vector<int> shuffled_ids(registry_kind kind) {
  std::vector<int> ids;
  for (const registry_row& row : get_registry_rows(kind)) ids.push_back(row.id);
  std::mt19937 random(1);
  for (size_t i = ids.size(); i > 1; --i) std::swap(ids[i - 1], ids[random() % i]);
  return ids;
}

void fill_indexes(benchmark::State& state) {
  for (auto _ : state) init();
}
BENCHMARK(fill_indexes)->Unit(benchmark::kMicrosecond);

void look_up(benchmark::State& state, registry_kind kind, const char* (*name_of)(int)) {
  init();
  const std::vector<int> ids = shuffled_ids(kind);
  size_t next = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(name_of(ids[next]));
    if (++next == ids.size()) next = 0;
  }
}
BENCHMARK_CAPTURE(look_up, network, registry_kind::network, get_network_id);
BENCHMARK_CAPTURE(look_up, ca_system, registry_kind::ca_system, get_ca_system_id);
BENCHMARK_CAPTURE(look_up, private_data, registry_kind::private_data, get_private_data_id);
BENCHMARK_CAPTURE(look_up, mhp_organisation, registry_kind::mhp_organisation, get_mhp_id);

void look_up_absent(benchmark::State& state) {
  init();
  int id = 0x4AD2;
  for (auto _ : state) {
    benchmark::DoNotOptimize(get_ca_system_id(id));
    id = id == 0xFFFF ? 0x4AD2 : id + 1;
  }
}
BENCHMARK(look_up_absent);

// For comparison: an index of all rows, one node each.
using RowIndex = std::map<int, int>;

RowIndex row_index(registry_kind kind) {
  RowIndex index;
  int number = 0;
  for (const registry_row& row : get_registry_rows(kind)) index[row.id] = number++;
  return index;
}

void fill_row_indexes(benchmark::State& state) {
  for (auto _ : state)
    for (int kind = 0; kind <= static_cast<int>(registry_kind::private_data); ++kind)
      benchmark::DoNotOptimize(row_index(static_cast<registry_kind>(kind)));
}
BENCHMARK(fill_row_indexes)->Unit(benchmark::kMicrosecond);

void look_up_row(benchmark::State& state, registry_kind kind) {
  const RowIndex index = row_index(kind);
  const auto rows = get_registry_rows(kind);
  const std::vector<int> ids = shuffled_ids(kind);
  size_t next = 0;
  for (auto _ : state) {
    const auto at = index.find(ids[next]);
    benchmark::DoNotOptimize(at == index.end() ? "<unknown>" : rows[static_cast<size_t>(at->second)].name);
    if (++next == ids.size()) next = 0;
  }
}
BENCHMARK_CAPTURE(look_up_row, network, registry_kind::network);
BENCHMARK_CAPTURE(look_up_row, ca_system, registry_kind::ca_system);

}  // namespace

BENCHMARK_MAIN();
