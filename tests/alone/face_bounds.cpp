// What the worst section costs after its parse, in both readings: its walk, its JSON, its report, its
// document and the load of that. Bytes that come out, heap at the peak and blocks of code are counted, as for
// the parse.

#include "apps/quillon/json_fields.h"
#include "tests/alone/counted_heap.h"
#include "tests/alone/counted_operations.h"
#include "tests/alone/worst_sections.h"

#include <array>
#include <gtest/gtest.h>
#include <iostream>
#include <map>
#include <streambuf>

#include <quillon/descriptors/loop.h>
#include <quillon/xml/document.h>

using namespace quillon;
using namespace quillon::test;

namespace {

constexpr size_t kMiB = size_t{1} << 20;

// Counts what is printed.
class Counted final : private std::streambuf, public std::ostream {
 public:
  Counted() : std::ostream(static_cast<std::streambuf*>(this)) {}
  size_t size = 0;

 private:
  std::streamsize xsputn(const char*, std::streamsize more) override {
    size += static_cast<size_t>(more);
    return more;
  }
  std::streambuf::int_type overflow(std::streambuf::int_type c) override {
    ++size;
    return c;
  }
};

struct CountedFields final : FieldSink {
  size_t count = 0;
  void number(const char*, int64_t, const char*) override { ++count; }
  void real(const char*, double) override { ++count; }
  void text(const char*, std::string_view) override { ++count; }
  void bytes(const char*, const uint8_t*, size_t) override { ++count; }
  void time(const char*, const DateTime&) override { ++count; }
  void duration(const char*, const Duration&) override { ++count; }
  void begin(const char*, const char*) override { ++count; }
  void begin_list(const char*, size_t) override { ++count; }
};

size_t elements_in(const xml::Document& document, void* element) {
  size_t out = 1;
  for (void* const child : document.children(element)) out += elements_in(document, child);
  return out;
}

// The most that was seen of a quantity, and of what.
class Most {
 public:
  void see(const char* quantity, size_t value, const std::string& what) {
    auto& most = all_[quantity];
    if (value > most.first) most = {value, what};
  }
  void expect(const char* quantity, size_t bound) const {
    const auto& [value, what] = all_.at(quantity);
    std::cout << quantity << ": " << value << " (" << what << ")\n";
    EXPECT_LE(value, bound) << quantity << ": " << what;
    EXPECT_GT(value, bound / 8) << quantity << ": the bound says little";
  }

 private:
  std::map<std::string, std::pair<size_t, std::string>> all_;
};

// Runs one face, and sees what it costs.
template <class Face>
void see(Most& most, const std::string& face, const std::string& what, Face run) {
  const size_t before = live;
  peak = before;
  const uint64_t begun = operations();
  run();
  most.see((face + ", operations").c_str(), operations() - begun, what);
  most.see((face + ", heap").c_str(), peak - before, what);
}

// A parsed section, by how much it holds.
struct Candidate {
  const Bounded* bounded;
  Bytes section;
  Reading reading;
  std::string what;
  size_t fields = 0;
  size_t json = 0;

  std::unique_ptr<AnyTable> parsed() const {
    auto out = bounded->table.make();
    out->set_tolerant(true);
    out->set_reading(reading);
    out->Parse(section.data(), section.size(), true);
    return out;
  }
};

void see_all(Most& most, const Candidate& candidate) {
  const std::string& what = candidate.what;
  std::unique_ptr<AnyTable> table;
  see(most, "parse", what, [&] { table = candidate.parsed(); });
  see(most, "walk", what, [&] {
    CountedFields fields;
    table->walk(fields);
    most.see("walk, fields", fields.count, what);
  });
  see(most, "JSON", what, [&] {
    app::JsonFields fields;
    table->walk(fields);
    most.see("JSON, bytes", fields.take().size(), what);
  });
  see(most, "report", what, [&] {
    Counted page;
    table->dump_state(page);
    most.see("report, bytes", page.size, what);
  });
  // A document is of the kept reading.
  if (candidate.reading != Reading::kept) return;
  xml::Document document;
  see(most, "save", what,
      [&] { table->SaveSection(document.dom(), document.create_root(table->element())); });
  most.see("document, elements", elements_in(document, document.root()), what);
  const std::string text = document.to_text();
  most.see("document, bytes", text.size(), what);
  see(most, "load", what, [&] {
    const xml::Document read = xml::Document::from_text(text);
    try {
      AnyTable::for_element(table->element())->ParseDOM(read.root());
    } catch (const error&) {  // what was read from damage need not be loaded
    }
  });
}

// Those that are parsed, of descriptors of one tag, of many rows, and of texts.
std::vector<Candidate> candidates() {
  std::vector<Candidate> out;
  const auto look_at = [&](const Bounded& bounded, const Bytes& section, const std::string& what) {
    for (const Reading reading : {Reading::kept, Reading::standard}) {
      const bool is_kept = reading == Reading::kept;
      Candidate candidate{&bounded, section, reading,
                          bounded.table.name + ", " + what + (is_kept ? "" : ", standard")};
      try {
        const auto table = candidate.parsed();
        CountedFields fields;
        table->walk(fields);
        candidate.fields = fields.count;
        app::JsonFields json;
        table->walk(json);
        candidate.json = json.take().size();
      } catch (const error&) {
        continue;
      }
      out.push_back(std::move(candidate));
    }
  };
  struct Tags {
    const char* table;
    int first;
    int last;
  };
  for (const Tags& tags : {Tags{"PmtDVB", 0x00, 0x7F}, Tags{"AtscMGT", 0x80, 0xBF}, Tags{"Ait", 0x00, 0x1F},
                           Tags{"Int", 0x00, 0x1F}}) {
    const auto b = std::find_if(tables().begin(), tables().end(),
                                [&](const Bounded& each) { return each.table.name == tags.table; });
    for (int tag = tags.first; tag <= tags.last; ++tag)
      for (const size_t size : {size_t{0}, size_t{1}, size_t{255}})
        for (const uint8_t value : size == 0 ? Bytes{0} : Bytes{0x01, 0xFF}) {
          const Fill fill =
              descriptors("", [=](std::mt19937&) { return quick_descriptor(tag, size, value); });
          look_at(
              *b, section_of(*b, b->ids[0], b->shapes.front().body(fill.make)),
              "tag " + std::to_string(tag) + ", " + std::to_string(size) + " of " + std::to_string(value));
        }
  }
  for (const Bounded& b : tables())
    for (const Shape& shape : b.shapes)
      for (size_t i = 0; i < general_fills().size(); i += 4)
        look_at(b, section_of(b, b.ids[0], shape.body(general_fills()[i].make)),
                shape.name + ", " + general_fills()[i].name);
  return out;
}

}  // namespace

TEST(FaceBounds, HoldForTheWorstSections) {
  std::vector<Candidate> all = candidates();
  EXPECT_GT(all.size(), 1000u);
  Most most;
  const auto see_first = [&](auto quantity) {
    std::sort(all.begin(), all.end(),
              [&](const Candidate& a, const Candidate& b) { return a.*quantity > b.*quantity; });
    for (size_t i = 0; i < 15; ++i) see_all(most, all[i]);
  };
  see_first(&Candidate::fields);
  see_first(&Candidate::json);
  // An operation is counted as for the parse: 13 million are 10 ms.
  most.expect("parse, operations", 13'000'000);
  most.expect("parse, heap", 8 * kMiB);
  most.expect("walk, operations", 13'000'000);
  most.expect("walk, heap", 8 * kMiB);
  most.expect("walk, fields", 400'000);
  most.expect("JSON, operations", 26'000'000);
  most.expect("JSON, heap", 16 * kMiB);
  most.expect("JSON, bytes", 8 * kMiB);
  most.expect("report, operations", 26'000'000);
  most.expect("report, heap", 1024);
  most.expect("report, bytes", 8 * kMiB);
  most.expect("save, operations", 26'000'000);
  most.expect("save, heap", 32 * kMiB);
  most.expect("document, elements", 100'000);
  most.expect("document, bytes", 8 * kMiB);
  most.expect("load, operations", 130'000'000);
  most.expect("load, heap", 32 * kMiB);
}
