// Each operation with its first, second, ... allocation failing: it says so, leaks nothing, and what it
// worked on stays usable. A program of its own, as it makes allocations fail. The case tables are those of
// the unit tests.

#include "apps/quillon/json_fields.h"
#include "tests/alone/failing_heap.h"
#include "tests/support/cases.h"
#include "tests/support/huffman_encoder.h"
#include "tests/support/log_file.h"
#include "tests/support/packets.h"
#include "tests/support/sample.h"
#include "tests/support/table_cases.h"

#include <array>
#include <cstddef>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <gtest/gtest.h>
#include <new>
#include <optional>
#include <set>
#include <string>
#include <type_traits>
#include <vector>

#include <quillon/quillon.h>
#include <quillon/xml/attributes.h>
#include <quillon/xml/document.h>

namespace quillon {
namespace {

using namespace test;

// Demultiplexers

constexpr int kPid = 0x100;
constexpr int kTable = 0x42;
constexpr uint8_t kData[] = {kTable};
constexpr uint8_t kMask[] = {0xFF};

struct TestDemux final : DemuxPush {
  int tables = 0;
  int filtered = 0;
  std::function<void()> then = [] {};

  void on_psi_section(unsigned long, int, uint8_t*) override { ++filtered; }
  void on_psi_section(int, int, int, const uint8_t*) override {
    ++tables;
    then();
  }
  // The packets of one section on a PID.
  void push_section(int pid, int table_id) {
    Bytes stream = packets({section_of(table_id, 300)}, {.pid = pid});
    EXPECT_EQ(push_data(stream.data(), static_cast<int>(stream.size())), 0);
  }
  std::string state() const { return test::report(*this); }
};

std::unique_ptr<TestDemux> demux_with(std::initializer_list<int> table_ids) {
  auto out = std::make_unique<TestDemux>();
  for (const int table_id : table_ids) out->add_psi_handler(kPid, table_id);
  return out;
}

// What is there works, and nothing else is there; adding goes on.
void expect_usable(TestDemux& demux, bool has_table, bool has_filter) {
  demux.tables = demux.filtered = 0;
  demux.then = [] {};
  demux.push_section(kPid, kTable);
  EXPECT_EQ(demux.tables, has_table);
  EXPECT_EQ(demux.filtered, has_filter);
  demux.add_psi_handler(kPid, 0x50);
  demux.add_psi_handler(kPid, kTable);
  demux.push_section(kPid, kTable);
  EXPECT_EQ(demux.tables, has_table + 1);
  demux.remove_psi_handler(kPid, 0x50);
  demux.remove_psi_handler(kPid, kTable);
  EXPECT_EQ(demux.state(), "");
}

TEST(AllocationFailures, OfADemultiplexersMaking) {
  EXPECT_GE(fail_each([] { return std::optional<TestDemux>(); }, [](auto& demux) { demux.emplace(); },
                      [](auto& demux) {
                        if (demux) expect_usable(*demux, false, false);
                      }),
            1u);
}

TEST(AllocationFailures, OfTheFirstHandlerOfAPid) {
  EXPECT_GE(
      fail_each([] { return demux_with({}); }, [](auto& demux) { demux->add_psi_handler(kPid, kTable); },
                [](auto& demux) {
                  EXPECT_EQ(demux->state(), has_failed ? "" : "pid: 100\ntable_id: 42\n");
                  expect_usable(*demux, !has_failed, false);
                }),
      4u);
}

TEST(AllocationFailures, OfAFurtherHandlerOfAPid) {
  EXPECT_GE(
      fail_each([] { return demux_with({0x40}); }, [](auto& demux) { demux->add_psi_handler(kPid, kTable); },
                [](auto& demux) {
                  demux->remove_psi_handler(kPid, 0x40);
                  expect_usable(*demux, !has_failed, false);
                }),
      2u);
}

TEST(AllocationFailures, OfAFilter) {
  for (const bool first : {false, true})
    EXPECT_GE(fail_each([&] { return first ? demux_with({}) : demux_with({kTable}); },
                        [](auto& demux) { demux->add_psi_handler(kPid, kData, kMask, 1, 7); },
                        [&](auto& demux) { expect_usable(*demux, !first, !has_failed); }),
              2u);
}

TEST(AllocationFailures, NeverOfARemoval) {
  for (const int table_id : {0x40, kTable})
    EXPECT_EQ(fail_each(
                  [] {
                    return demux_with({0x40, kTable});
                  },
                  [&](auto& demux) { demux->remove_psi_handler(kPid, table_id); },
                  [&](auto& demux) {
                    demux->remove_psi_handler(kPid, 0x40);
                    expect_usable(*demux, table_id == 0x40, false);
                  }),
              0u);
  EXPECT_EQ(
      fail_each(
          [] {
            return demux_with({0x40, kTable});
          },
          [](auto& demux) { demux->reset(); }, [](auto& demux) { expect_usable(*demux, false, false); }),
      0u);
}

TEST(AllocationFailures, NeverOfARemovalInAHookNorOfPackets) {
  const std::vector<std::function<void(TestDemux&)>> removals = {
      [](TestDemux&) {},
      [](TestDemux& demux) { demux.remove_psi_handler(kPid, kTable); },
      [](TestDemux& demux) { demux.remove_psi_handler(kPid, 0x40); },
      [](TestDemux& demux) {
        for (const int table_id : {0x40, kTable}) demux.remove_psi_handler(kPid, table_id);
      },
      [](TestDemux& demux) { demux.reset(); },
  };
  Bytes stream = packets({section_of(kTable, 300), section_of(0x40, 50), section_of(kTable, 20)});
  for (const auto& removal : removals) {
    EXPECT_EQ(fail_each(
                  [&] {
                    auto out = demux_with({0x40, kTable});
                    out->then = [&removal, demux = out.get()] { removal(*demux); };
                    return out;
                  },
                  [&](auto& demux) { demux->push_data(stream.data(), static_cast<int>(stream.size())); },
                  [](auto& demux) {
                    EXPECT_GE(demux->tables, 1);
                    demux->reset();
                    expect_usable(*demux, false, false);
                  }),
              0u);
  }
}

TEST(AllocationFailures, OfAHandlerThatAHookAdds) {
  Bytes stream = packets({section_of(kTable, 20)});
  EXPECT_GE(fail_each(
                [] {
                  auto out = demux_with({kTable});
                  out->then = [demux = out.get()] {
                    demux->remove_psi_handler(kPid, kTable);
                    demux->add_psi_handler(kPid, 0x40);
                    demux->add_psi_handler(0x200, 0x40);
                  };
                  return out;
                },
                [&](auto& demux) { demux->push_data(stream.data(), static_cast<int>(stream.size())); },
                [](auto& demux) {
                  EXPECT_EQ(demux->tables, 1);
                  demux->reset();
                  expect_usable(*demux, false, false);
                }),
            4u);
}

// Tables

// The report of a good parse, and of one more on the same object after a reset: some tables keep something.
struct Known {
  std::string fresh;
  std::string again;
};

Known known(const TableCase& c, bool tolerant, Reading reading = Reading::kept) {
  const auto table = c.make();
  table->set_tolerant(tolerant);
  table->set_reading(reading);
  table->Parse(c.section.data(), c.section.size(), true);
  const std::string fresh = test::report(*table);
  table->reset();
  table->Parse(c.section.data(), c.section.size(), true);
  return {fresh, test::report(*table)};
}

std::unique_ptr<AnyTable> parsed(const TableCase& c, Reading reading = Reading::kept) {
  auto out = c.make();
  out->set_reading(reading);
  out->Parse(c.section.data(), c.section.size(), true);
  return out;
}

// Whether the section is for this reading.
bool is_taken(const TableCase& c, Reading reading) {
  try {
    parsed(c, reading);
  } catch (const error&) {
    return false;
  }
  return true;
}

// Calls `use` with each case and reading.
template <class Use>
void with_each_case(Use use) {
  size_t taken = 0;
  for (const Reading reading : {Reading::kept, Reading::standard})
    for (const TableCase& c : TableCases::all()) {
      SCOPED_TRACE(c.name + (reading == Reading::standard ? ", standard" : ""));
      if (!is_taken(c, reading)) continue;
      ++taken;
      use(c, reading);
    }
  EXPECT_GT(taken, TableCases::all().size() * 3 / 2);
}

void parse_with_failures(const TableCase& c, bool tolerant, Reading reading) {
  const Known reports = known(c, tolerant, reading);
  fail_each(
      [&] {
        auto out = c.make();
        out->set_tolerant(tolerant);
        out->set_reading(reading);
        return out;
      },
      [&](auto& table) { table->Parse(c.section.data(), c.section.size(), true); },
      [&](auto& table) {
        EXPECT_EQ(table->is_parsed(), !has_failed);
        if (!has_failed) {
          EXPECT_EQ(test::report(*table), reports.fresh);
          return;
        }
        test::report(*table);  // of what was read
        walked(*table);
        table->reset();
        table->Parse(c.section.data(), c.section.size(), true);
        EXPECT_TRUE(table->is_parsed());
        if (reports.again == reports.fresh) {
          EXPECT_EQ(test::report(*table), reports.fresh);
        }
      });
}

TEST(AllocationFailures, OfAParse) {
  with_each_case([](const TableCase& c, Reading reading) {
    for (const bool tolerant : {false, true}) parse_with_failures(c, tolerant, reading);
  });
}

TEST(AllocationFailures, OfACopy) {
  for (const TableCase& c : TableCases::all()) {
    SCOPED_TRACE(c.name);
    const std::string fresh = known(c, false).fresh;
    fail_each([&] { return parsed(c); }, [&](auto& table) { c.report_of_moved(*table); },
              [&](auto& table) {
                if (!has_failed) {
                  EXPECT_EQ(test::report(*table), fresh);
                }
                table->reset();
                table->Parse(c.section.data(), c.section.size(), true);
              });
  }
}

TEST(AllocationFailures, OfAReport) {
  with_each_case([](const TableCase& c, Reading reading) {
    const std::string fresh = known(c, false, reading).fresh;
    fail_each([&] { return parsed(c, reading); }, [](auto& table) { test::report(*table); },
              [&](auto& table) { EXPECT_EQ(test::report(*table), fresh); });
  });
}

// A stream that takes no heap.
class Page : private std::streambuf, public std::ostream {
 public:
  Page() : std::ostream(static_cast<std::streambuf*>(this)) {
    setp(place_.data(), place_.data() + place_.size());
  }
  std::string_view text() const { return {pbase(), static_cast<size_t>(pptr() - pbase())}; }

 private:
  std::array<char, 1 << 16> place_;
};

TEST(AllocationFailures, OfAReportLeavesWhatWasComposed) {
  struct Printing {
    std::unique_ptr<AnyTable> table;  // whose texts are decoded when they are printed first
    std::unique_ptr<Page> page = std::make_unique<Page>();
  };
  size_t cut = 0;
  with_each_case([&](const TableCase& c, Reading reading) {
    const std::string whole = "A report:\n" + test::report(*parsed(c, reading));
    fail_each([&] { return Printing{parsed(c, reading)}; },
              [&](Printing& p) {
                *p.page << "A report:\n";
                p.table->dump_state(*p.page);
              },
              [&](Printing& p) {
                EXPECT_TRUE(p.page->good());
                EXPECT_EQ(p.page->text(), has_failed ? whole.substr(0, p.page->text().size()) : whole);
                cut += has_failed && p.page->text().size() > 50;
              });
  });
  EXPECT_GE(cut, 1u);  // few reports take heap at all
}

struct Deaf final : FieldSink {};

TEST(AllocationFailures, OfAWalk) {
  with_each_case([](const TableCase& c, Reading reading) {
    const auto table = parsed(c, reading);
    const std::string whole = walked(*table);
    app::JsonFields fields;
    table->walk(fields);
    const std::string line(fields.take());
    // That of the walk itself, of one with a text, and of JSON.
    fail_each([] { return 0; },
              [&](int) {
                Deaf sink;
                table->walk(sink);
              },
              [&](int) { EXPECT_EQ(walked(*table), whole); });
    fail_each([] { return std::string(); }, [&](std::string& text) { text = walked(*table); },
              [&](std::string& text) { EXPECT_EQ(text, has_failed ? "" : whole); });
    fail_each([] { return std::make_unique<app::JsonFields>(); }, [&](auto& json) { table->walk(*json); },
              [&](auto& json) {
                if (!has_failed) {
                  EXPECT_EQ(json->take(), line);
                }
              });
  });
}

TEST(AllocationFailures, OfATableOfWhateverClass) {
  with_each_case([](const TableCase& c, Reading reading) {
    const auto table = parsed(c, reading);
    const std::string report = test::report(*table);
    using Made = std::unique_ptr<AnyTable>;
    const auto made = [&](auto make) {
      return fail_each([] { return Made(); }, make, [](Made& out) { EXPECT_EQ(out == nullptr, has_failed); });
    };
    EXPECT_GE(made([&](Made& out) { out = AnyTable::for_element(c.element); }), 1u);
    EXPECT_GE(made([&](Made& out) {
                const bool is_atsc = c.element.starts_with("atsc");
                out = AnyTable::for_table_id(c.section[0], is_atsc ? Standard::atsc : Standard::dvb);
              }),
              1u);
    EXPECT_GE(made([&](Made& out) { out = table->copy(); }), 1u);
    EXPECT_EQ(test::report(*table), report);
  });
}

TEST(AllocationFailures, NeverOfGoingThroughDescriptors) {
  Bytes loop;
  for (const DescriptorCase& c : Cases::all())
    if (c.family == Family::dvb && loop.size() + c.bytes.size() < 900) loop = joined({loop, c.bytes});
  const Bytes section = long_section(
      0x02,
      joined({{0xE1, 0x00, static_cast<uint8_t>(0xF0 | loop.size() >> 8), static_cast<uint8_t>(loop.size())},
              loop}));
  PmtDVB map;
  map.set_tolerant(true);
  map.Parse(section);
  size_t count = 0;
  EXPECT_EQ(fail_each([&] { return count = 0; },
                      [&](size_t) {
                        for (const AnyDescriptor& d : map.descriptors())
                          count += d.element() != nullptr && !d.as<DescriptorCa>() && d.base().get_tag_text();
                      },
                      [&](size_t) { EXPECT_GT(count, 10u); }),
            0u);
}

TEST(AllocationFailures, OfASave) {
  struct Saving {
    std::unique_ptr<AnyTable> table;
    xml::Document document;
    void* root = document.create_root("d");
  };
  for (const TableCase& c : TableCases::all()) {
    SCOPED_TRACE(c.name);
    const std::string whole = outcome_of(c, c.section, false).saved;
    fail_each(
        [&] {
          return Saving{parsed(c), {}};
        },
        [](Saving& saving) { saving.table->SaveSection(saving.document.dom(), saving.root); },
        [&](Saving& saving) {
          plain(saving.document);  // of what was saved
          xml::Document document;
          saving.table->SaveSection(document.dom(), document.create_root("d"));
          EXPECT_EQ(plain(document), whole);
        });
  }
}

TEST(AllocationFailures, OfALoad) {
  for (const TableCase& c : TableCases::all()) {
    if (c.back != Back::same) continue;
    SCOPED_TRACE(c.name);
    const xml::Document document = xml::Document::from_text(document_of(c));
    const auto load_again = [&](AnyTable& table) { table.ParseDOM(document.root()); };
    const auto reference = c.make();
    load_again(*reference);
    const std::string fresh = test::report(*reference);
    fail_each([&] { return c.make(); }, [&](auto& table) { load_again(*table); },
              [&](auto& table) {
                EXPECT_EQ(table->is_parsed(), !has_failed);
                if (!has_failed) {
                  EXPECT_EQ(test::report(*table), fresh);
                }
                table->reset();
                load_again(*table);
                EXPECT_TRUE(table->is_parsed());
              });
  }
}

TEST(AllocationFailures, LeavesProgramsAndTheirPidsInStep) {
  Bytes body;
  for (int program = 1; program <= 9; ++program)
    body = joined({body, bits({{16, static_cast<uint64_t>(program), "program_number"},
                               {3, 7, "reserved"},
                               {13, static_cast<uint64_t>(0x100 + program), "program_map_PID"}})});
  const Bytes section = long_section(0x00, body);
  Pat whole;
  whole.Parse(section.data(), section.size(), false);
  xml::Document document;
  EXPECT_TRUE(whole.SaveSection(document.dom(), document.create_root("pat")));
  const auto in_step = [](const Pat& pat) {
    std::set<int> listed;
    for (const Pat::program_info& program : pat.get_program_info())
      listed.insert(program.get_program_number());
    for (int program = 1; program <= 9; ++program)
      EXPECT_EQ(pat.get_pid_from_program_number(program),
                listed.contains(program) ? 0x100 + program : 0x1FFF);
  };
  const auto make = [] { return Pat(); };
  EXPECT_GE(fail_each(
                make, [&](Pat& pat) { pat.Parse(section.data(), section.size(), false); }, in_step),
            1u);
  EXPECT_GE(fail_each(
                make, [&](Pat& pat) { pat.ParseDOM(document.root()); }, in_step),
            1u);
}

TEST(AllocationFailures, OfDescriptors) {
  for (const DescriptorCase& c : Cases::all()) {
    SCOPED_TRACE(c.name);
    std::string shown;
    fail_each([] { return 0; }, [&](int) { shown = c.report_of(view(c.bytes)); },
              [&](int) {
                if (!has_failed) {
                  EXPECT_EQ(shown, c.report);
                }
              });
  }
}

struct Reader final : DemuxPush {
  int sections = 0;
  void on_psi_section(int, int table_id, int, const uint8_t* section) override {
    ++sections;
    if (table_id == 0x00) take<Pat>(section);
    if (table_id == 0x02) take<PmtDVB>(section);
    if (table_id == 0x42) take<Sdt>(section);
  }
  template <class Table>
  void take(const uint8_t* section) {
    Table table;
    table.set_tolerant(true);
    table.Parse(section, true);
    xml::Document document;
    EXPECT_TRUE(table.SaveSection(document.dom(), document.create_root("t")));
    Table loaded;
    loaded.ParseDOM(document.root());
  }
};

// A stream from packets to documents: all that a reader does.
TEST(AllocationFailures, OfAWholeReader) {
  Bytes stream = sample_stream();
  stream.resize(60 * kPacketSize);  // enough for its first tables
  int sections = 0;
  const size_t failures = fail_each(
      [] {
        auto out = std::make_unique<Reader>();
        out->add_psi_handler(0x00, 0x00);
        out->add_psi_handler(0x11, 0x42);
        for (const int pid : {0x100, 0x200}) out->add_psi_handler(pid, 0x02);
        return out;
      },
      [&](auto& reader) {
        Bytes bytes = stream;
        reader->push_data(bytes.data(), static_cast<int>(bytes.size()));
        sections = reader->sections;
      },
      [&](auto& reader) {
        // Sections that the hook left are begun anew.
        Bytes bytes = stream;
        reader->sections = 0;
        reader->push_data(bytes.data(), static_cast<int>(bytes.size()));
        EXPECT_GE(reader->sections, 4);
      });
  EXPECT_GE(sections, 4);
  EXPECT_GE(failures, 50u);
}

// Documents

TEST(AllocationFailures, OfADocumentsMaking) {
  EXPECT_GE(fail_each([] { return 0; },
                      [&](int) {
                        xml::Document document;
                        void* const root = document.create_root("root");
                        for (int i = 0; i < 140; ++i) {
                          const std::string name = "a_name_that_is_not_short_" + std::to_string(i);
                          auto* const element =
                              static_cast<IXMLDOMElement*>(document.append_element(root, name));
                          auto* const dom = static_cast<IXMLDOMDocument*>(document.dom());
                          EXPECT_EQ(AddAttribute(dom, element, name.c_str(), i), 0);
                          const std::string long_name(80, 'x');
                          EXPECT_EQ(AddAttribute(dom, element, long_name.c_str(), "text"), 0);
                        }
                      },
                      [](int) {}),
            140u);
}

TEST(AllocationFailures, OfElementsOfADocument) {
  struct Tree {
    xml::Document document;
    void* root = document.create_root("root");
  };
  const std::string name(3000, 'n');  // which needs a block of its own
  fail_each([] { return Tree(); }, [&](Tree& tree) { tree.document.append_element(tree.root, name); },
            [&](Tree& tree) {
              tree.document.append_element(tree.root, "child");
              EXPECT_EQ(plain(tree.document),
                        has_failed ? "<root><child /></root>" : "<root><" + name + " /><child /></root>");
            });
  fail_each([] { return xml::Document(); }, [&](xml::Document& document) { document.create_root(name); },
            [&](xml::Document& document) {
              if (!has_failed) return;
              EXPECT_EQ(document.root(), nullptr);
              document.create_root("root");
              EXPECT_EQ(plain(document), "<root />");
            });
}

TEST(AllocationFailures, OfADocumentsParser) {
  const std::string text =
      R"(<root a="1"><child b="two &amp; three" c="K&#xF6;ln"/><child><grandchild d=""/></child></root>)";
  EXPECT_GE(fail_each([] { return std::optional<xml::Document>(); },
                      [&](auto& document) { document = xml::Document::from_text(text); },
                      [](auto& document) { EXPECT_EQ(document.has_value(), !has_failed); }),
            3u);
}

TEST(AllocationFailures, OfADocumentsPrinter) {
  const xml::Document document = xml::Document::from_text(
      R"(<root a="1"><child b="two &amp; three" c="K&#xF6;ln"/><child><grandchild d=""/></child></root>)");
  const std::string whole = document.to_text();
  EXPECT_GE(fail_each([] { return std::string(); }, [&](std::string& text) { text = document.to_text(); },
                      [&](std::string& text) {
                        EXPECT_EQ(text, has_failed ? "" : whole);
                        EXPECT_EQ(document.to_text(), whole);
                      }),
            1u);
}

// Texts

TEST(AllocationFailures, OfATextsDecoding) {
  const Bytes bytes = joined({text("\x01"), Bytes(40, 0xDF)});
  const Text whole(static_cast<int>(bytes.size()), view(bytes));
  EXPECT_EQ(whole.get_textW().size(), 40u);  // decoded from here on
  const auto make = [&] { return Text(static_cast<int>(bytes.size()), view(bytes)); };
  const auto right = [&](const Text& t) {
    EXPECT_EQ(t.get_textA(), whole.get_textA());
    EXPECT_EQ(t.get_textW(), whole.get_textW());
  };
  EXPECT_GE(fail_each(
                make, [](const Text& t) { t.get_textA(); }, right),
            2u);
  EXPECT_GE(fail_each(
                make, [](const Text& t) { t.get_textW(); }, right),
            2u);
  EXPECT_GE(fail_each(
                make, [](const Text& t) { Text(t).get_textW(); }, right),
            2u);
  // What is set after a failure counts.
  const std::string narrow(50, 'n');
  fail_each(
      make, [&](Text& t) { t.set_textA(0, narrow.c_str()); },
      [&](Text& t) {
        t.set_textA(0, "x");
        EXPECT_EQ(t.get_textA(), "x");
        EXPECT_EQ(t.get_textW(), wide_string(1, 'x'));
      });
  fail_each(
      make, [&](Text& t) { t.parse(static_cast<int>(bytes.size()), view(bytes)); },
      [&](Text& t) {
        t.set_textW(0, u"x");
        EXPECT_EQ(t.get_textA(), "x");
        EXPECT_EQ(t.get_textW(), wide_string(1, 'x'));
      });
}

TEST(AllocationFailures, OfTextsInUtf8) {
  const auto told = [](const auto& object) {
    const std::string whole = object.utf8();
    EXPECT_GT(whole.size(), 20u);
    EXPECT_GE(fail_each([] { return std::string(); }, [&](std::string& text) { text = object.utf8(); },
                        [&](std::string& text) { EXPECT_EQ(text, has_failed ? "" : whole); }),
              1u);
    EXPECT_GE(fail_each([] { return std::make_unique<Page>(); }, [&](auto& page) { *page << object; },
                        [&](auto& page) { EXPECT_EQ(page->text(), has_failed ? "" : whole); }),
              1u);
  };
  // The default table, pages by number, two bytes a character, UTF-8; with an accent and a control of their
  // own.
  for (const char* const begin : {"", "\x01", "\x0B", "\x15", "\x86"}) {
    const Bytes bytes =
        joined({text(begin), text("A text that is too long for a string"), {0x8A}, text("\xC8o")});
    told(Text(static_cast<int>(bytes.size()), view(bytes)));
  }
  Bytes wide = {0x11};
  for (int i = 0; i < 40; ++i) wide = joined({wide, {0x4E, static_cast<uint8_t>(i)}});
  told(Text(static_cast<int>(wide.size()), view(wide)));

  const std::string characters = "A title that is too long for a string, and its text";
  const std::string codes = std::string(std::getenv("QUILLON_DATA")) + "/atsc_text";
  for (const int compression : {0, 1, 2}) {
    const Bytes coded = compression == 0 ? text(characters)
                                         : packed_bits(HuffmanEncoder(codes, compression).ended(characters));
    const Bytes strings = joined(
        {{1, 'e', 'n', 'g', 1, static_cast<uint8_t>(compression), 0, static_cast<uint8_t>(coded.size())},
         coded});
    ATSCMultipleStringStructure structure;
    int length = static_cast<int>(strings.size());
    structure.parse(view(strings), length);
    ASSERT_EQ(structure.strings.size(), 1u);
    EXPECT_EQ(structure.strings[0].utf8(), characters);
    told(structure.strings[0]);
  }
}

// Registries

std::string names() {
  return std::string(get_network_id(0x0001)) + get_ca_system_id(0x2300) + get_ca_system_id(0x0100) +
         get_private_data_id(0x00000001);
}

TEST(AllocationFailures, OfTheRegistriesIndexes) {
  init();
  const std::string before = names();
  EXPECT_GE(fail_each([] { return 0; }, [](int) { init(); }, [&](int) { EXPECT_EQ(names(), before); }), 7u);
  EXPECT_EQ(fail_each([] { return 0; }, [](int) { get_ca_system_id(0x2300); }, [](int) {}), 0u);
}

TEST(AllocationFailures, OfAnOverlay) {
  struct File {
    std::filesystem::path path;
    File(const char* name, const std::string& rows) : path(platform::executable_folder() + name) {
      std::ofstream(path, std::ios::binary) << "first_id\tlast_id\tname\n" << rows;
    }
    ~File() { std::filesystem::remove(path); }
  };
  const File before("overlay_before.tsv", "0x2300\t0x2300\tThe name that was there before the others\n");
  const File after("overlay_after.tsv",
                   "0x2300\t0x2300\tA name that is too long for a short string\n0x2302\t0x2309\tOther\n");
  const File none("overlay_none.tsv", "");
  const auto load = [](const File& file) { load_registry_overlay(registry_kind::ca_system, file.path); };
  init();
  for (const File* file : {&after, &before}) load(*file);  // their names stay from now on
  EXPECT_GE(fail_each(
                [&] {
                  load(before);
                  return 0;
                },
                [&](int) {
                  try {
                    load(after);
                  } catch (const error& failure) {
                    // A stream says no more than that it failed.
                    EXPECT_EQ(std::string(failure.what()), after.path.string() + ": can't be read");
                    throw std::bad_alloc();
                  }
                },
                [&](int) {
                  EXPECT_STREQ(get_ca_system_id(0x2300), has_failed
                                                             ? "The name that was there before the others"
                                                             : "A name that is too long for a short string");
                  EXPECT_EQ(std::string(get_ca_system_id(0x2305)) == "Other", !has_failed);
                  load(before);
                }),
            5u);
  load(none);
}

// The log

TEST(AllocationFailures, OfTheLog) {
  TemporaryLog log("allocation_failures_with_a_name_that_is_long.csv");
  const std::string other = "allocation_failures_of_another_log_with_a_long_name.csv";
  const TemporaryLog removed_at_the_end(other);
  EXPECT_GE(fail_each([&] { return log.open(log_create_always, 3); },
                      [&](int) { log_open(log_create_always | log_level, 2, other.c_str()); },
                      [&](int) {
                        // After a failure nothing has changed: the log is still open, on its level.
                        EXPECT_EQ(log_wants(3), has_failed);
                        log_write(1, "a record");
                        EXPECT_EQ(log.messages(), std::vector<std::string>(has_failed ? 1 : 0, "a record"));
                      }),
            1u);
  EXPECT_EQ(fail_each([] { return 0; }, [](int) { log_write(1, "%s, %d", "a record", 5); }, [](int) {}), 0u);
}

// A handler that takes an exception copies it.
static_assert(std::is_nothrow_copy_constructible_v<error>);

}  // namespace
}  // namespace quillon
