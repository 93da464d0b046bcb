// The workloads as ratios to the yardstick, all in one run: the machine's speed drops out. Interleaved,
// median of the runs. Exit code 1 if a workload counts other than what the stream holds; times are never
// judged.
//
//   bench_ratios [RUNS [MEGABYTES OF SI, 4 TIMES AS MANY OF MUX]]

#include "bench/workloads.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <vector>

using namespace quillon::bench;

namespace {

struct Workload {
  const char* name;
  Counts (*run)(const Stream&);
  bool rows;  // counts events and descriptors too
  double aim_mux;
  double aim_si;
  std::vector<double> seconds = {};
};

template <class Action>
double timed(Action action) {
  const auto start = std::chrono::steady_clock::now();
  action();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

double median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  return values[values.size() / 2];
}

bool right(const Workload& workload, Counts counts, const Stream& stream) {
  if (!workload.rows) {
    counts.events = stream.holds.events;
    counts.descriptors = stream.holds.descriptors;
  }
  return counts == stream.holds;
}

bool measure(const char* name, const Stream& stream, bool is_mux, int runs) {
  std::vector<Workload> workloads = {
      {"W1, push", assemble_pushed, false, 0.28, 0.05},
      {"W1, pull", assemble_pulled, false, 2.0, 0.15},
      {"W1, found", assemble_found, false, 0.9, 0.25},
      {"W2", parse_all, true, 0.9, 0.6},
      {"W2, again", parse_again, true, 0.8, 0.45},
      {"W3", report_all, true, 1.5, 0.9},
      {"W3x", save_all, true, 2.4, 2.1},
      {"W3j", walk_all, true, 2.5, 1.8},
  };
  uint64_t sections = 0;
  for (const auto& [id, count] : stream.holds.sections) sections += count;
  std::printf(
      "%s: %.1f MB, %llu packets, %llu sections (", name, static_cast<double>(stream.bytes.size()) / 1e6,
      static_cast<unsigned long long>(stream.holds.packets), static_cast<unsigned long long>(sections));
  for (const auto& [id, count] : stream.holds.sections)
    std::printf("%s%02X: %llu", id ? ", " : "", id, static_cast<unsigned long long>(count));
  std::printf("), %llu events, %llu descriptors\n", static_cast<unsigned long long>(stream.holds.events),
              static_cast<unsigned long long>(stream.holds.descriptors));

  bool all_right = true;
  std::vector<double> yard;
  for (int run = 0; run <= runs; ++run) {  // the first one warms up
    uint64_t crcs = 0;
    const double seconds = timed([&] { crcs = yardstick(stream); });
    if (run) yard.push_back(seconds);
    if (crcs != sections) all_right = false;
    // Another order each run: what one leaves in the caches is not always the same one's gain.
    for (size_t i = 0; i < workloads.size(); ++i) {
      Workload& workload = workloads[(i + static_cast<size_t>(run)) % workloads.size()];
      Counts counts;
      const double taken = timed([&] { counts = workload.run(stream); });
      if (run) workload.seconds.push_back(taken);
      if (!right(workload, counts, stream)) {
        std::printf("%s: the counts are wrong\n", workload.name);
        all_right = false;
      }
    }
  }
  const double b = median(yard);
  std::printf("  %-10s %8s %8s %8s\n", "", "ratio", "aim", "MB/s");
  std::printf("  %-10s %8.3f %8s %8.0f\n", "B", 1.0, "",
              static_cast<double>(stream.section_bytes.size()) / b / 1e6);
  for (const Workload& workload : workloads) {
    const double taken = median(workload.seconds);
    std::printf("  %-10s %8.3f %8.3f %8.0f\n", workload.name, taken / b,
                is_mux ? workload.aim_mux : workload.aim_si,
                static_cast<double>(stream.bytes.size()) / taken / 1e6);
  }
  return all_right;
}

}  // namespace

int main(int argc, char** argv) {
  const int runs = argc > 1 ? std::atoi(argv[1]) : 9;
  const size_t megabytes = argc > 2 ? static_cast<size_t>(std::atoi(argv[2])) : 16;
  const bool mux_right = measure("mux", mux(megabytes * 4 << 20), true, runs);
  const bool si_right = measure("si", si(megabytes << 20), false, runs);
  return mux_right && si_right ? 0 : 1;
}
