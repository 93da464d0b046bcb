// Sections and packets a second: the demultiplexer with one packet in twenty wanted, and each table's parse,
// report, save and load.

#include "bench/streams.h"
#include "bench/workloads.h"
#include "tests/support/bytes.h"

#include <benchmark/benchmark.h>
#include <sstream>

#include <quillon/quillon.h>
#include <quillon/sections/crc.h>
#include <quillon/xml/dom.h>
#include <quillon/xml/internal/ref.h>

namespace {

using namespace quillon;
using test::Bytes;

const bench::Stream& small_mux() {
  static const bench::Stream stream = bench::mux(size_t{8} << 20);
  return stream;
}

void count_packets(benchmark::State& state) {
  state.SetItemsProcessed(state.iterations() * static_cast<int64_t>(small_mux().holds.packets));
}

void push_packets(benchmark::State& state) {
  for (auto _ : state) benchmark::DoNotOptimize(bench::assemble_pushed(small_mux()));
  count_packets(state);
}
BENCHMARK(push_packets)->Unit(benchmark::kMillisecond);

void pull_packets(benchmark::State& state) {
  for (auto _ : state) benchmark::DoNotOptimize(bench::assemble_pulled(small_mux()));
  count_packets(state);
}
BENCHMARK(pull_packets)->Unit(benchmark::kMillisecond);

// Packets of unwanted PIDs beside a growing number of handlers and filters.
class Silent : public DemuxPush {};

void unwanted_packets(benchmark::State& state) {
  Silent demux;
  for (int pid = 0; pid < state.range(0); ++pid) demux.add_psi_handler(0x1000 + pid, 0x00);
  for (auto _ : state)
    demux.push_data(const_cast<uint8_t*>(small_mux().bytes.data()),
                    static_cast<int>(small_mux().bytes.size()));
  count_packets(state);
}
BENCHMARK(unwanted_packets)->Arg(1)->Arg(10)->Arg(100)->Unit(benchmark::kMillisecond);

void filtered_packets(benchmark::State& state) {
  static const uint8_t kData[] = {0x42}, kMask[] = {0xFF};
  Silent demux;
  for (int i = 0; i < state.range(0); ++i)
    demux.add_psi_handler(bench::kEitPid, kData, kMask, 1, static_cast<unsigned long>(i));
  for (auto _ : state)
    demux.push_data(const_cast<uint8_t*>(small_mux().bytes.data()),
                    static_cast<int>(small_mux().bytes.size()));
  count_packets(state);
}
BENCHMARK(filtered_packets)->Arg(1)->Arg(16)->Arg(256)->Unit(benchmark::kMillisecond);

Bytes mgt_section() {
  Bytes body = {0x00, 0x00, 20};
  for (uint8_t i = 0; i < 20; ++i)
    body.insert(body.end(), {0x01, i, 0xFD, i, 0xE1, 0x00, 0x00, 0x01, 0x00, 0xF0, 0x00});
  body.insert(body.end(), {0xF0, 0x00});
  return test::long_section(0xC7, body);
}

Bytes tvct_section() {
  Bytes body = {0x00, 20};
  for (uint8_t i = 0; i < 20; ++i) {
    for (const char c : std::string("WQUL-DT")) body.insert(body.end(), {0x00, static_cast<uint8_t>(c)});
    body.insert(body.end(), {0xF0, 0x1C, i, 0x04, 0, 0, 0, 0, 0x04, 0x51, 0, i, 0x0D, 0xC2, 0, i, 0xFC, 0});
  }
  body.insert(body.end(), {0xFC, 0x00});
  return test::long_section(0xC8, body);
}

Bytes atsc_eit_section() {
  Bytes body = {0x00, 8};
  for (uint8_t i = 0; i < 8; ++i) {
    body.insert(body.end(), {0xC0, i, 0x45, 0x00, 0x00, 0x10, 0x0E, 0x10, 20});
    body.insert(body.end(), 20, 'a');
    body.insert(body.end(), {0xF0, 0x00});
  }
  return test::long_section(0xCB, body);
}

Bytes ett_section() {
  Bytes body = {0x00, 0x12, 0x34, 0x56, 0x78, 0x01, 'e', 'n', 'g', 0x01, 0x00, 0x00, 200};
  body.insert(body.end(), 200, 'a');
  return test::long_section(0xCC, body);
}

struct PatSection {
  using Table = Pat;
  static Bytes make() { return bench::pat_section(1); }
};
struct PmtSection {
  using Table = PmtDVB;
  static Bytes make() { return bench::pmt_section(1, 1); }
};
struct SdtSection {
  using Table = Sdt;
  static Bytes make() { return bench::sdt_section(1); }
};
struct NitSection {
  using Table = Nit;
  static Bytes make() { return bench::nit_section(1); }
};
struct EitSection {
  using Table = Eit;
  static Bytes make() { return bench::eit_section(1, 0x50, 1, 1, 1); }
};
struct MgtSection {
  using Table = AtscMGT;
  static Bytes make() { return mgt_section(); }
};
struct TvctSection {
  using Table = AtscTVCT;
  static Bytes make() { return tvct_section(); }
};
struct AtscEitSection {
  using Table = AtscEIT;
  static Bytes make() { return atsc_eit_section(); }
};
struct EttSection {
  using Table = AtscETT;
  static Bytes make() { return ett_section(); }
};

template <class Section>
void parse(benchmark::State& state) {
  const Bytes bytes = Section::make();
  for (auto _ : state) {
    typename Section::Table table;
    table.Parse(bytes.data(), bytes.size(), false);
    benchmark::DoNotOptimize(table);
  }
  state.SetItemsProcessed(state.iterations());
  state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(bytes.size()));
}

template <class Section>
void report(benchmark::State& state) {
  const Bytes bytes = Section::make();
  typename Section::Table table;
  table.Parse(bytes.data(), bytes.size(), false);
  std::ostringstream text;
  for (auto _ : state) {
    text.str({});
    table.dump_state(text);
  }
  state.SetItemsProcessed(state.iterations());
}

template <class Section>
void save(benchmark::State& state) {
  const Bytes bytes = Section::make();
  typename Section::Table table;
  table.Parse(bytes.data(), bytes.size(), false);
  for (auto _ : state) {
    xml::Document document;
    table.SaveSection(document.dom(), document.create_root("table"));
  }
  state.SetItemsProcessed(state.iterations());
}

template <class Section>
void load(benchmark::State& state) {
  const Bytes bytes = Section::make();
  typename Section::Table table;
  table.Parse(bytes.data(), bytes.size(), false);
  xml::Document document;
  table.SaveSection(document.dom(), document.create_root("table"));
  for (auto _ : state) {
    typename Section::Table again;
    again.ParseDOM(document.root());
    benchmark::DoNotOptimize(again);
  }
  state.SetItemsProcessed(state.iterations());
}

#define QUILLON_BENCH(Section) \
  BENCHMARK(parse<Section>);   \
  BENCHMARK(report<Section>);  \
  BENCHMARK(save<Section>);    \
  BENCHMARK(load<Section>)
QUILLON_BENCH(PatSection);
QUILLON_BENCH(PmtSection);
QUILLON_BENCH(SdtSection);
QUILLON_BENCH(NitSection);
QUILLON_BENCH(EitSection);
#undef QUILLON_BENCH
// The tables of ATSC save their header alone.
BENCHMARK(parse<MgtSection>);
BENCHMARK(parse<TvctSection>);
BENCHMARK(parse<AtscEitSection>);
BENCHMARK(parse<EttSection>);
BENCHMARK(report<MgtSection>);
BENCHMARK(report<TvctSection>);

// A section of a growing size, descriptor by descriptor: cost per byte stays the same.
Bytes sized_section(size_t size) {
  Bytes body = {0x00, 0x01, 0x23, 0x3A, 0x00, 0x50, 0x00, 0x01, 0xED,
                0x04, 0x12, 0x30, 0x00, 0x01, 0x00, 0x00, 0x80, 0x00};
  const size_t loop = body.size();
  while (body.size() + 14 + 12 <= size)  // with the section's header and CRC
    body.insert(body.end(), {0x4D, 10, 'e', 'n', 'g', 5, 'q', 'u', 'i', 'l', 'l', 0});
  const size_t length = body.size() - loop;
  body[loop - 2] = static_cast<uint8_t>(0x80 | length >> 8);
  body[loop - 1] = static_cast<uint8_t>(length);
  return test::long_section(0x50, body);
}

void parse_sized(benchmark::State& state) {
  const Bytes bytes = sized_section(static_cast<size_t>(state.range(0)));
  for (auto _ : state) {
    Eit table;
    table.Parse(bytes.data(), bytes.size(), false);
    benchmark::DoNotOptimize(table);
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(parse_sized)->RangeMultiplier(2)->Range(64, 4096);

void check_sized(benchmark::State& state) {
  const Bytes bytes = sized_section(static_cast<size_t>(state.range(0)));
  for (auto _ : state) benchmark::DoNotOptimize(section_crc(bytes.data(), bytes.size()));
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(check_sized)->RangeMultiplier(2)->Range(64, 4096);

// Documents of a growing number of elements: cost per element stays the same.
std::string document_of(int64_t elements) {
  std::string text = "<transport_stream>";
  for (int64_t i = 0; i < elements; ++i) text += "<program_info sid=\"1\" pmtpid=\"256\"/>";
  return text + "</transport_stream>";
}

void load_document(benchmark::State& state) {
  const std::string text = document_of(state.range(0));
  for (auto _ : state) benchmark::DoNotOptimize(xml::Document::from_text(text));
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(load_document)->RangeMultiplier(10)->Range(10, 100000);

void save_document(benchmark::State& state) {
  const xml::Document document = xml::Document::from_text(document_of(state.range(0)));
  for (auto _ : state) benchmark::DoNotOptimize(document.to_text());
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(save_document)->RangeMultiplier(10)->Range(10, 100000);

void walk_document(benchmark::State& state) {
  const xml::Document document = xml::Document::from_text(document_of(state.range(0)));
  xml::Ref<IXMLDOMNodeList> list;
  static_cast<IXMLDOMNode*>(document.root())->get_childNodes(list.out());
  for (auto _ : state) {
    for (long i = 0; i < state.range(0); ++i) {
      xml::Ref<IXMLDOMNode> item;
      list->get_item(i, item.out());
      benchmark::DoNotOptimize(item.get());
    }
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(walk_document)->RangeMultiplier(10)->Range(10, 100000);

}  // namespace

BENCHMARK_MAIN();
