// What parsed rows take: bytes in all, and allocations.

#include "tests/alone/counted_heap.h"
#include "tests/support/bytes.h"

#include <gtest/gtest.h>

#include <quillon/descriptors/dvb_classes.h>
#include <quillon/tables/eit.h>
#include <quillon/tables/sdt.h>

using namespace quillon;
using namespace quillon::test;

namespace {

// What `action` takes from the heap.
template <class Action>
size_t heap_of(Action action) {
  const size_t before = allocated;
  action();
  return allocated - before;
}

Bytes short_event() {
  return descriptor(0x4D, joined({text("eng"), Bytes{20}, text("An evening programme"), Bytes{60},
                                  text("It begins when the sun has gone and ends when it is morning.")}));
}

Bytes event(const Bytes& descriptors) {
  return joined({bits({{16, 1, "event_id"},
                       {40, 0xED04123000, "start_time"},
                       {24, 0x010000, "duration"},
                       {3, 4, "running_status"},
                       {1, 0, "free_CA_mode"},
                       {12, descriptors.size(), "descriptors_loop_length"}}),
                 descriptors});
}

Bytes eit(const std::vector<Bytes>& events) {
  Bytes body =
      bits({{16, 1, "transport_stream_id"}, {16, 1, "original_network_id"}, {16, 0x0050, "segment, last"}});
  for (const Bytes& e : events) body.insert(body.end(), e.begin(), e.end());
  return long_section(0x50, body);
}

template <class Table>
size_t heap_of_parse(const Bytes& section) {
  Table table;
  return heap_of([&] { table.Parse(section.data(), section.size(), false); });
}

}  // namespace

TEST(RowMemory, AnEventWithTwoDescriptorsTakesUnderAKibibyte) {
  const Bytes content = descriptor(0x54, Bytes{0x10, 0x00});
  const size_t one = heap_of_parse<Eit>(eit({event(joined({short_event(), content}))}));
  std::cout << "an event with two descriptors: " << one << " bytes\n";
  EXPECT_LT(one, 1024u);
  const size_t two = heap_of_parse<Eit>(
      eit({event(joined({short_event(), content})), event(joined({short_event(), content}))}));
  EXPECT_EQ(two, 2 * one);
}

TEST(RowMemory, AServiceWithTwoDescriptorsTakesUnderAKibibyte) {
  const Bytes descriptors = joined({descriptor(0x48, joined({Bytes{1, 16}, text("Feather and Quil"),
                                                             Bytes{16}, text("The First Servic")})),
                                    descriptor(0x5F, Bytes{0, 0, 0, 1})});
  const Bytes section =
      long_section(0x42, joined({bits({{16, 1, "original_network_id"},
                                       {8, 0xFF, "reserved"},
                                       {16, 7, "service_id"},
                                       {8, 0xFF, "flags"},
                                       {4, 8, "running_status, free_CA_mode"},
                                       {12, descriptors.size(), "descriptors_loop_length"}}),
                                 descriptors}));
  EXPECT_LT(heap_of_parse<Sdt>(section), 1024u);
}

TEST(RowMemory, AnEmptyRowTakesNothingOfItsOwn) {
  const size_t without = heap_of_parse<Eit>(eit({event({})}));
  EXPECT_EQ(without, sizeof(Eit::EventInfo));
}

TEST(RowMemory, GoingThroughDescriptorsTakesNone) {
  const Bytes content = descriptor(0x54, Bytes{0x10, 0x00});
  const Bytes section = eit({event(joined({content, short_event(), content}))});
  Eit table;
  table.Parse(section);
  size_t events = 0;
  const auto count = [&events](const DescriptorShortEvent&) { ++events; };
  EXPECT_EQ(heap_of([&] {
              for (const AnyDescriptor& d : table.get_eventinfo()[0].descriptors()) d.visit(count);
            }),
            0u);
  EXPECT_EQ(events, 1u);
}
