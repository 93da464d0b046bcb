// Each operation with its first, second, ... allocation failing: it says so, leaks nothing, and what it
// worked on stays usable. A program of its own, as it makes allocations fail: those of operator new and of
// malloc, which the linker sends here. The case tables are those of the unit tests.

#include "tests/support/cases.h"
#include "tests/support/log_file.h"
#include "tests/support/packets.h"
#include "tests/support/sample.h"
#include "tests/support/table_cases.h"

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

namespace {

// The program has one thread.
size_t until_failure = 0;  // allocations up to and with the one that fails; 0 for none
bool allocation_failed = false;
size_t live_blocks = 0;

}  // namespace

extern "C" {

void* __real_malloc(size_t size);
void __real_free(void* memory);

void* __wrap_malloc(size_t size) {
  if (until_failure > 0 && --until_failure == 0) {
    allocation_failed = true;
    return nullptr;
  }
  void* const out = __real_malloc(size);
  if (out) ++live_blocks;
  return out;
}

void __wrap_free(void* memory) {
  if (memory) --live_blocks;
  __real_free(memory);
}

}  // extern "C"

// Not inlined: a compiler that sees malloc inside new takes free inside delete for a mistake.
[[gnu::noinline]] void* operator new(size_t size) {
  void* const out = std::malloc(size > 0 ? size : 1);
  if (!out) throw std::bad_alloc();
  return out;
}
[[gnu::noinline]] void* operator new[](size_t size) {
  return operator new(size);
}
[[gnu::noinline]] void operator delete(void* memory) noexcept {
  std::free(memory);
}
[[gnu::noinline]] void operator delete[](void* memory) noexcept {
  std::free(memory);
}
[[gnu::noinline]] void operator delete(void* memory, size_t) noexcept {
  std::free(memory);
}
[[gnu::noinline]] void operator delete[](void* memory, size_t) noexcept {
  std::free(memory);
}

namespace quillon {
namespace {

using namespace test;

// Whether the operation whose outcome is checked said that it failed.
bool has_failed = false;

// What an operation says when it runs out of memory; "" if it says nothing.
template <class Operation>
std::string said_by(Operation operation) {
  try {
    operation();
  } catch (const std::bad_alloc&) {
    return "no memory";
  } catch (const _com_error& failure) {
    return failure.Error() == E_OUTOFMEMORY ? "no memory" : "another COM failure";
  } catch (const error& failure) {
    return std::string("error: ") + failure.what();
  }
  return "";
}

// Calls `operation` on what `make` gives, anew each time, with the first, second, ... allocation failing
// until none fails, and `check` on the same each time. Gives the number of failures.
template <class Make, class Operation, class Check>
size_t fail_each(Make make, Operation operation, Check check) {
  {
    // What is made once and stays is made here.
    auto subject = make();
    operation(subject);
  }
  for (size_t n = 1;; ++n) {
    const size_t before = live_blocks;
    bool fell = false;
    {
      auto subject = make();
      until_failure = n;
      const std::string said = said_by([&] {
        struct Disarmed {
          ~Disarmed() { until_failure = 0; }
        } const disarmed;
        operation(subject);
      });
      fell = allocation_failed;
      allocation_failed = false;
      // What says nothing has to be right all the same, as if nothing had failed.
      has_failed = !said.empty();
      EXPECT_EQ(said, has_failed ? "no memory" : "") << "allocation " << n;
      EXPECT_TRUE(fell || !has_failed);
      check(subject);
    }
    if (testing::Test::HasFailure()) {
      ADD_FAILURE() << "at the failure of allocation " << n;
      return n;
    }
    EXPECT_EQ(live_blocks, before) << "after the failure of allocation " << n;
    if (!fell) return n - 1;
  }
}

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

Known known(const TableCase& c, bool tolerant) {
  const auto table = c.make();
  table->set_tolerant(tolerant);
  table->Parse(c.section.data(), c.section.size(), true);
  const std::string fresh = test::report(*table);
  table->reset();
  table->Parse(c.section.data(), c.section.size(), true);
  return {fresh, test::report(*table)};
}

std::unique_ptr<AnyTable> parsed(const TableCase& c) {
  auto out = c.make();
  out->Parse(c.section.data(), c.section.size(), true);
  return out;
}

TEST(AllocationFailures, OfAParse) {
  for (const bool tolerant : {false, true})
    for (const TableCase& c : TableCases::all()) {
      SCOPED_TRACE(c.name);
      const Known reports = known(c, tolerant);
      fail_each(
          [&] {
            auto out = c.make();
            out->set_tolerant(tolerant);
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
  for (const TableCase& c : TableCases::all()) {
    SCOPED_TRACE(c.name);
    const std::string fresh = known(c, false).fresh;
    fail_each([&] { return parsed(c); }, [](auto& table) { test::report(*table); },
              [&](auto& table) { EXPECT_EQ(test::report(*table), fresh); });
  }
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
