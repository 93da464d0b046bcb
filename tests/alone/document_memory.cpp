// Documents when memory runs out, at each allocation in turn, the parser's included: what was asked for is
// there whole, or std::bad_alloc. And what many names and children cost: counted, not timed.

#include "tests/alone/failing_heap.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <sstream>
#include <string>
#include <unistd.h>
#include <utility>
#include <vector>

#include <quillon/sections/error.h>
#include <quillon/xml/attributes.h>
#include <quillon/xml/document.h>
#include <quillon/xml/internal/ref.h>
#include <quillon/xml/tree/dom_tree.h>

#if defined(__clang__)
#define QUILLON_NOT_COUNTED __attribute__((no_sanitize("coverage")))
#else
#define QUILLON_NOT_COUNTED __attribute__((no_sanitize_coverage))
#endif

namespace {

uint64_t blocks = 0;  // of code that the tree entered

}  // namespace

extern "C" {
QUILLON_NOT_COUNTED void __sanitizer_cov_trace_pc() {
  ++blocks;
}
}

using namespace quillon;
using namespace quillon::test;
using quillon::xml::Document;
using quillon::xml::Ref;
namespace fs = std::filesystem;

namespace {

// Runs an action with memory for ever more allocations, until it has enough. `check` looks at what is left
// after each time, and is given whether the action was done.
template <class Action, class Check>
void with_ever_more_memory(Action action, Check check) {
  for (const bool stays_out : {true, false})
    EXPECT_GT(fail_each([] { return 0; }, [&](int) { action(); },
                        [&](int) {
                          EXPECT_EQ(has_failed, failures > 0);
                          check(!has_failed);
                        },
                        stays_out),
              3u);
}

const std::string& text() {
  static const std::string text = [] {
    std::ostringstream out;
    out << "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<root";
    for (int i = 0; i < 40; ++i) out << " a" << i << "=\"" << std::string(100, 'v') << '"';
    out << " long=\"" << std::string(20000, 'l') << "\" wide=\"\u20AC\uE005\">\n";
    const auto indent = [](int depth) { return std::string(static_cast<size_t>(2 * depth), ' '); };
    for (int i = 1; i <= 30; ++i) out << indent(i) << "<e" << i << ">\n";
    out << indent(31) << "<tr\u00E4ger />\n";
    for (int i = 30; i >= 1; --i) out << indent(i) << "</e" << i << ">\n";
    out << "</root>\n";
    return out.str();
  }();
  return text;
}

struct Folder {
  fs::path path = fs::temp_directory_path() / ("quillon-memory-" + std::to_string(getpid()));
  Folder() { fs::create_directories(path); }
  ~Folder() { fs::remove_all(path); }
  std::string content(const char* name) const {
    std::ifstream in(path / name, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), {});
  }
  size_t files() const {
    return static_cast<size_t>(std::distance(fs::directory_iterator(path), fs::directory_iterator()));
  }
};

size_t open_files() {
  return static_cast<size_t>(
      std::distance(fs::directory_iterator("/proc/self/fd"), fs::directory_iterator()));
}

}  // namespace

TEST(OutOfMemory, ReadsATextWholeOrNotAtAll) {
  ASSERT_EQ(Document::from_text(text()).to_text(), text());
  with_ever_more_memory([] { const Document document = Document::from_text(text()); }, [](bool) {});
}

TEST(OutOfMemory, IsTheParsersToo) {
  // What the library takes for itself is in operator new; the rest is asked for on the parser's behalf.
  const size_t before = allocations;
  constexpr size_t never = 1000000;
  until_failure = never;
  { const Document document = Document::from_text(text()); }
  const size_t all = never - std::exchange(until_failure, 0);
  EXPECT_GT(all, allocations - before + 10);
}

TEST(OutOfMemory, ReadsAFileWholeOrNotAtAll) {
  const Folder folder;
  const fs::path file = folder.path / "d.xml";
  std::ofstream(file, std::ios::binary) << text();
  const size_t open = open_files();
  with_ever_more_memory([&] { const Document document = Document::from_file(file); },
                        [&](bool) { EXPECT_EQ(open_files(), open); });
}

TEST(OutOfMemory, PrintsWholeOrNotAtAll) {
  const Document document = Document::from_text(text());
  with_ever_more_memory([&] { const std::string printed = document.to_text(); }, [](bool) {});
}

TEST(OutOfMemory, LeavesAFileAsItWas) {
  const Folder folder;
  const fs::path file = folder.path / "d.xml";
  const Document document = Document::from_text(text());
  const size_t open = open_files();
  std::ofstream(file) << "old";
  with_ever_more_memory([&] { document.to_file(file); },
                        [&](bool done) {
                          EXPECT_EQ(folder.content("d.xml"), done ? text() : "old");
                          EXPECT_EQ(folder.files(), 1u);
                          EXPECT_EQ(open_files(), open);
                          if (done) std::ofstream(file) << "old";
                        });
}

TEST(OutOfMemory, IsAResultOfTheTree) {
  // Its operations are COM's, which throw nothing. A fresh tree takes memory for all that it makes.
  const auto say = [](HRESULT result) {
    if (result == E_OUTOFMEMORY) throw std::bad_alloc();
    EXPECT_EQ(result, S_OK);
  };
  const XmlName name("name");
  const XmlName wide(u"tr\u00E4ger");
  BSTR const long_text = SysAllocStringLen(nullptr, 100000);
  std::fill_n(long_text, 100000, uint16_t{'x'});
  ASSERT_TRUE(name.get() && wide.get());
  const auto run = [&] {
    const Document document;
    auto* const dom = static_cast<IXMLDOMDocument*>(document.dom());
    try {
      for (const XmlName* const each : {&name, &wide}) {
        Ref<IXMLDOMElement> parent;
        say(dom->createElement(each->get(), parent.out()));
        Ref<IXMLDOMAttribute> attribute;
        say(dom->createAttribute(each->get(), attribute.out()));
        VARIANT value;
        VariantInit(&value);
        value.vt = VT_BSTR;
        value.bstrVal = long_text;
        say(attribute->put_nodeValue(value));
        VariantInit(&value);
        const HRESULT told = attribute->get_nodeValue(&value);
        VariantClear(&value);
        say(told);
        BSTR text = nullptr;
        const HRESULT named = parent->get_nodeName(&text);
        SysFreeString(text);
        say(named);
        for (int i = 0; i < 600; ++i) {
          Ref<IXMLDOMElement> child;
          say(dom->createElement(each->get(), child.out()));
          say(parent->appendChild(child.get(), nullptr));
        }
      }
    } catch (const std::bad_alloc&) {
      EXPECT_GT(failures, 0u);
      throw;
    }
  };
  with_ever_more_memory(run, [](bool) {});
  SysFreeString(long_text);
}

// What the support of COM itself wants.
TEST(OutOfMemory, IsCaughtAsEither) {
  const std::string long_name(100, 'n');
  bool com = false;
  bool memory = false;
  const auto attempt = [&] {
    const XmlName name(long_name.c_str());
    until_failure = 1;
    name.get();
  };
  try {
    attempt();
  } catch (const _com_error& e) {
    com = e.Error() == E_OUTOFMEMORY;
  }
  try {
    attempt();
  } catch (const std::bad_alloc&) {
    memory = true;
  }
  EXPECT_TRUE(com && memory);
}

// What names cost

namespace {

// As names were once spread over a table, for anyone to see.
size_t unkeyed_hash(const std::string& name) {
  uint64_t hash = name.size();
  for (size_t at = 0; at < name.size(); at += 4) {
    uint64_t word = 0;
    for (size_t i = 0; i < 4 && at + i < name.size(); ++i)
      word |= static_cast<uint64_t>(static_cast<unsigned char>(name[at + i])) << 16 * i;
    hash = (hash ^ word) * 0x9E3779B97F4A7C15u;
    hash ^= hash >> 32;
  }
  return static_cast<size_t>(hash);
}

std::vector<std::string> colliding_names(size_t count) {
  std::vector<std::string> out;
  for (uint64_t i = 0; out.size() < count; ++i) {
    std::string name = "n";
    for (uint64_t rest = i; rest; rest /= 26) name += static_cast<char>('a' + rest % 26);
    if (unkeyed_hash(name) % 8192 == 0) out.push_back(name);
  }
  return out;
}

uint64_t blocks_to_read(const std::vector<std::string>& names) {
  std::string text = "<d>";
  for (const std::string& name : names) text.append("<").append(name).append("/>");
  text += "</d>";
  const uint64_t begun = blocks;
  const Document document = Document::from_text(text);
  EXPECT_EQ(document.children(document.root()).size(), names.size());
  return blocks - begun;
}

}  // namespace

TEST(Names, CostLittleWhoeverChoseThem) {
  const std::vector<std::string> bad = colliding_names(4000);
  const uint64_t few = blocks_to_read({bad.begin(), bad.begin() + 2000});
  const uint64_t many = blocks_to_read(bad);
  EXPECT_GT(few, 2000u);         // it is counted
  EXPECT_LT(many, few * 5 / 2);  // not by the square
  EXPECT_LT(many, 4000u * 500);
}

TEST(Names, MayBeManyThousands) {
  std::vector<std::string> names;
  for (int i = 0; i < 40000; ++i) names.push_back(std::to_string(i).insert(0, 1, 'n'));
  EXPECT_LT(blocks_to_read(names), 40000u * 500);
}

TEST(Children, CostInProportion) {
  const auto blocks_for = [](size_t count) {
    const uint64_t begun = blocks;
    Document document;
    void* const root = document.create_root("a");
    for (size_t i = 0; i < count; ++i) document.append_element(root, "item");
    const Document back = Document::from_text(document.to_text());
    EXPECT_EQ(back.children(back.root()).size(), count);
    return blocks - begun;
  };
  const uint64_t few = blocks_for(2000);
  EXPECT_GT(few, 2000u);
  EXPECT_LT(blocks_for(20000), few * 12);
}
