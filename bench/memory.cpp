// What objects take from the heap: bytes in all, per event and per document element.

#include "bench/streams.h"
#include "tests/alone/counted_heap.h"

#include <cstdio>

#include <quillon/quillon.h>

using namespace quillon;
using test::allocated;

int main() {
  size_t events = 0;
  size_t taken = 0;
  for (int section = 0; section < 100; ++section) {
    const auto bytes = bench::eit_section(1, 0x50, section, 1, static_cast<uint32_t>(section));
    const size_t before = allocated;
    Eit eit;
    eit.Parse(bytes.data(), bytes.size(), false);
    taken += allocated - before;
    events += eit.get_eventinfo().size();
  }
  std::printf("event with seven descriptors: %zu bytes\n", taken / events);

  std::string text = "<transport_stream>";
  const size_t elements = 100000;
  for (size_t i = 0; i < elements; ++i) text += "<program_info sid=\"1\" pmtpid=\"256\"/>";
  text += "</transport_stream>";
  size_t before = allocated;
  const xml::Document loaded = xml::Document::from_text(text);
  std::printf("document element with two attributes, loaded: %zu bytes\n", (allocated - before) / elements);

  Pat pat;
  const auto section = bench::pat_section(1);
  pat.Parse(section.data(), section.size(), false);
  before = allocated;
  xml::Document document;
  std::printf("empty document: %zu bytes\n", allocated - before);
  void* const root = document.create_root("tables");
  before = allocated;
  const size_t saves = 1000;
  for (size_t i = 0; i < saves; ++i) pat.SaveSection(document.dom(), document.append_element(root, "pat"));
  const size_t saved = saves * (pat.get_program_info().size() + 2);
  std::printf("document element of a saved program association: %zu bytes\n", (allocated - before) / saved);
}
