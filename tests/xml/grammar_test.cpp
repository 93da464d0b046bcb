// The grammar that the documents of all tables share: which element holds what, in which order it is written,
// what of a failing document reaches the caller, and what a load looks at.

#include "tests/tables/tables.h"

#include <map>
#include <type_traits>
#include <typeindex>
#include <utility>

#include <quillon/descriptors/dvb_classes.h>
#include <quillon/sections/pat.h>
#include <quillon/tables/bat.h>
#include <quillon/tables/cat.h>
#include <quillon/tables/eit.h>
#include <quillon/tables/nit.h>
#include <quillon/tables/pmt.h>
#include <quillon/tables/rst.h>
#include <quillon/tables/sdt.h>
#include <quillon/tables/tdt.h>
#include <quillon/tables/tot.h>

using namespace quillon;
using namespace quillon::test;

namespace {

const Bytes kStuffing = descriptor(0x42, {0xFF});
const Bytes kServiceList = descriptor(0x41, {0, 1, 2});

// A table of which each loop holds one descriptor, and each list two rows.
template <class T>
T full();

template <>
Pat full() {
  return parsed_table<Pat>(long_section(0x00, {0, 1, 0xE1, 0, 0, 2, 0xE2, 0}));
}
template <>
Cat full() {
  return parsed_table<Cat>(long_section(0x01, descriptor(0x09, {0, 1, 0xE0, 2})));
}
template <>
PmtDVB full() {
  const Bytes row = joined({{2, 0xE0, 0x21}, loop(kStuffing)});
  return parsed_table<PmtDVB>(long_section(0x02, joined({{0xE1, 0}, loop(kServiceList), row, row})));
}
Bytes two_streams() {
  const Bytes row = joined({{0, 1, 0, 2}, loop(kStuffing)});
  return joined({loop(kServiceList), loop(joined({row, row}))});
}
template <>
Nit full() {
  return parsed_table<Nit>(long_section(0x40, two_streams()));
}
template <>
Bat full() {
  return parsed_table<Bat>(long_section(0x4A, two_streams()));
}
template <>
Sdt full() {
  const Bytes row = joined({{0, 1, 0xFC}, loop(kStuffing)});
  return parsed_table<Sdt>(long_section(0x42, joined({{0, 1, 0xFF}, row, row})));
}
template <>
Eit full() {
  const Bytes row = joined({Bytes(10), loop(kStuffing)});
  return parsed_table<Eit>(long_section(0x4E, joined({Bytes(6), row, row})));
}
template <>
Tdt full() {
  return parsed_table<Tdt>(short_section(0x70, Bytes(5)));
}
template <>
Tot full() {
  return parsed_table<Tot>(short_section(0x73, joined({Bytes(5), loop(kServiceList), Bytes(4)})));
}
template <>
Rst full() {
  return parsed_table<Rst>(short_section(0x71, Bytes(18)));
}

template <class T>
class Grammar : public testing::Test {};
using AllTables = testing::Types<Pat, Cat, PmtDVB, Nit, Bat, Sdt, Eit, Tdt, Tot, Rst>;
TYPED_TEST_SUITE(Grammar, AllTables);

template <class T>
constexpr bool is_long = std::is_base_of_v<PsiTableBase, T>;

// The document's text after the header attributes.
template <class T>
std::string body_of(const std::string& xml) {
  const std::string last = is_long<T> ? " crc32=\"" : " section_length=\"";
  const size_t at = xml.find(last) + last.size();
  return xml.substr(xml.find('"', at) + 1);
}

}  // namespace

TYPED_TEST(Grammar, SavesATableThatWasNeverParsed) {
  const std::string xml = saved(TypeParam());
  const std::string header = is_long<TypeParam>
                                 ? R"(<d table_id="0" syntax_indicator="0" section_length="0" context_id="0")"
                                   R"( version_number="0" section_number="0" last_section_number="0")"
                                   R"( current_next_indicator="0" crc32="0")"
                                 : R"(<d table_id="0" section_length="0")";
  ASSERT_EQ(xml.substr(0, header.size()), header);
  const std::map<std::type_index, std::string> bodies = {
      {typeid(Pat), "><program_infos /></d>"},
      {typeid(Cat), "><descriptors /></d>"},
      {typeid(PmtDVB), R"( pcr="0"><stream_infos /><descriptors /></d>)"},
      {typeid(Nit), "><stream_infos /><descriptors /></d>"},
      {typeid(Bat), "><infos /><descriptors /></d>"},
      {typeid(Sdt), R"( original_network_id="0"><service_infos /></d>)"},
      {typeid(Eit), R"( transport_stream_id="0" original_network_id="0" segment_last_section_number="0")"
                    R"( last_table_id="0"><event_infos /></d>)"},
      {typeid(Tdt), R"( UTC_time="1 1 1 1 1 1" />)"},
      {typeid(Tot), R"( UTC_time="1 1 1 1 1 1" crc32="0"><descriptors /></d>)"},
      {typeid(Rst), "><status_infos /></d>"},
  };
  EXPECT_EQ(body_of<TypeParam>(xml), bodies.at(typeid(TypeParam)));
}

TYPED_TEST(Grammar, LoadsWhatItSaved) {
  const std::string xml = saved(full<TypeParam>());
  const auto again = loaded_table<TypeParam>(xml);
  EXPECT_TRUE(again.is_parsed());
  EXPECT_EQ(saved(again), xml);
  EXPECT_EQ(report(again), report(full<TypeParam>()));
  EXPECT_TRUE(again.get_section_raw_bytes().empty());
}

TYPED_TEST(Grammar, LeavesNameAndPlaceOfTheTablesElementToTheCaller) {
  xml::Document document;
  void* const root = document.create_root("tables");
  const auto table = full<TypeParam>();
  void* const place = document.append_element(root, "any_name");
  EXPECT_TRUE(table.SaveSection(document.dom(), place));
  EXPECT_EQ(plain(document), "<tables>" + saved(table, "any_name") + "</tables>");
  TypeParam again;
  again.ParseDOM(document.children(document.root()).at(0));
  EXPECT_EQ(saved(again), saved(table));
}

TYPED_TEST(Grammar, TestsNothingOfTheHeaderOnALoad) {
  std::string xml = saved(full<TypeParam>());
  for (const char* const attribute :
       {" table_id=\"", " syntax_indicator=\"", " section_length=\"", " crc32=\""}) {
    const size_t at = xml.find(attribute);
    if (at == std::string::npos) continue;
    const size_t begin = at + std::string(attribute).size();
    xml.replace(begin, xml.find('"', begin) - begin, "-7");
  }
  const auto table = loaded_table<TypeParam>(xml);
  EXPECT_EQ(table.get_table_id(), -7);
  EXPECT_EQ(table.get_section_length(), -7);
  EXPECT_EQ(saved(table), xml);
}

TYPED_TEST(Grammar, AddsALoadToWhatTheTableHolds) {
  const auto document = xml::Document::from_text(saved(full<TypeParam>()));
  TypeParam table;
  table.ParseDOM(document.root());
  table.ParseDOM(document.root());
  const std::string twice = saved(table);
  const std::string once = saved(full<TypeParam>());
  const auto count = [](const std::string& text, const std::string& part) {
    size_t out = 0;
    for (size_t at = 0; (at = text.find(part, at)) != std::string::npos; ++at) ++out;
    return out;
  };
  // Rows and the descriptors of the table are doubled, those within a row are not.
  for (const char* const part :
       {"<program_info ", "<stream ", "<stream_info ", "<service_info ", "<event ", "<status_info ",
        "<stuffing_descriptor ", "<CA_descriptor ", "<service_list_descriptor "})
    EXPECT_EQ(count(twice, part), 2 * count(once, part)) << part;
  EXPECT_EQ(count(twice, " table_id="), 1u);
}

TYPED_TEST(Grammar, PassesOverTheNamesOfItemsAndOtherChildren) {
  const std::string xml = saved(full<TypeParam>());
  std::string other = xml;
  for (const char* const item :
       {"program_info", "stream", "stream_info", "service_info", "event", "status_info"})
    for (const std::string& bracket : {std::string("<"), std::string("</")})
      for (const char* const end : {" ", ">"}) {
        const std::string from = bracket + item + end;
        for (size_t at; (at = other.find(from)) != std::string::npos;)
          other.replace(at, from.size(), bracket + "x" + end);
      }
  const size_t close = other.rfind("</d>");
  if (close != std::string::npos) {
    other.insert(close, "<other a='1'><b/></other>");
    other.insert(other.find('>') + 1, "<other/>");
  }
  EXPECT_EQ(saved(loaded_table<TypeParam>(other)), xml);
}

// Whatever call of a load fails, nothing is left referenced; what fails is stated, with nothing else thrown.
TYPED_TEST(Grammar, LeavesNoReferenceBehindALoadThatFails) {
  for (const char* const operation : {"get_attributes", "getNamedItem", "get_nodeValue", "selectSingleNode",
                                      "get_childNodes", "get_length", "get_item", "get_nodeName"}) {
    FaultyDom counting;
    TypeParam().ParseDOM(counting.node());
    const int calls = counting.calls(operation);
    for (int nth = 1; nth <= calls; ++nth)
      EXPECT_EQ(failure_of_step<TypeParam>(operation, nth).substr(0, 10), "-1: failed") << operation << nth;
    EXPECT_EQ(failure_of_step<TypeParam>(operation, calls + 1), "nothing");
  }
}

namespace {

// Which calls of a save are honoured ('F': their failure ends the save) and which are not ('-').
struct Honoured {
  std::string elements;    // of createElement
  std::string attributes;  // of createAttribute, put_nodeValue and setAttributeNode
  std::string appended;    // of appendChild
  std::string queried;     // of QueryInterface
};

std::string lines(const std::vector<std::string>& steps) {
  std::string out;
  for (const std::string& step : steps) out += step + "\n";
  return out;
}

std::string times(int n, const std::string& text) {
  std::string out;
  for (int i = 0; i < n; ++i) out += text;
  return out;
}

// A loop with a stuffing descriptor: the list and the descriptor; tag, length and bytes; both are appended.
const std::string kStuffingElements = "--";
const std::string kStuffingAttributes = "---";
const std::string kStuffingAppended = "--";
// One with a service list of one service: the list of the services and the service too.
const std::string kServicesElements = "----";
const std::string kServicesAttributes = "----";
const std::string kServicesAppended = "----";

// Two rows, each with this many attributes and a loop with a stuffing descriptor.
Honoured rows(int own_attributes, int attributes_of_a_row) {
  return {"F" + times(2, "F" + kStuffingElements),
          times(own_attributes, "F") + times(2, times(attributes_of_a_row, "F") + kStuffingAttributes),
          "F" + times(2, "F" + kStuffingAppended), "FF"};
}
Honoured with_services(Honoured rows) {
  rows.elements += kServicesElements;
  rows.attributes += kServicesAttributes;
  rows.appended += kServicesAppended;
  return rows;
}

Honoured honoured(const Pat&) {
  return {"FFF", times(9 + 2 * 2, "F"), "FFF", "FF"};
}
Honoured honoured(const Cat&) {
  return {"--", times(9, "F") + "-----", "--", ""};
}
Honoured honoured(const PmtDVB&) {
  return with_services(rows(9 + 1, 3));
}
Honoured honoured(const Nit&) {
  return with_services(rows(9, 2));
}
Honoured honoured(const Bat&) {
  return with_services(rows(9, 2));
}
Honoured honoured(const Sdt&) {
  return rows(9 + 1, 5);
}
Honoured honoured(const Eit&) {
  return rows(9 + 4, 6);
}
Honoured honoured(const Tdt&) {
  return {"", "FFF", "", ""};
}
Honoured honoured(const Tot&) {
  return with_services({"", "FFFF", "", ""});
}
Honoured honoured(const Rst&) {
  return {"FFF", times(2 + 2 * 5, "F"), "FFF", "FF"};
}

}  // namespace

TYPED_TEST(Grammar, EndsASaveAtAFailureOfTheTableAndNotOfALoop) {
  const auto table = full<TypeParam>();
  FaultyDom sound;
  ASSERT_TRUE(table.SaveSection(sound.document(), sound.node()));
  EXPECT_EQ(sound.references(), 0);

  const Honoured expected = honoured(table);
  const std::pair<const char*, std::string> operations[] = {
      {"createElement", expected.elements},   {"createAttribute", expected.attributes},
      {"put_nodeValue", expected.attributes}, {"setAttributeNode", expected.attributes},
      {"appendChild", expected.appended},     {"QueryInterface", expected.queried}};
  for (const auto& [operation, calls] : operations) {
    EXPECT_EQ(sound.calls(operation), static_cast<int>(calls.size())) << operation;
    for (int nth = 1; nth <= static_cast<int>(calls.size()); ++nth) {
      SCOPED_TRACE(std::string(operation) + " " + std::to_string(nth));
      FaultyDom dom(operation, nth);
      const bool goes_on = calls[static_cast<size_t>(nth) - 1] == '-';
      EXPECT_EQ(table.SaveSection(dom.document(), dom.node()), goes_on);
      EXPECT_EQ(dom.references(), 0);
      // What was written until then stays, and nothing follows.
      if (goes_on) continue;
      EXPECT_EQ(dom.calls(operation), nth);
      EXPECT_EQ(dom.steps(), sound.steps().substr(0, dom.steps().size()));
    }
  }
}

TEST(GrammarOfLists, AttachesThoseOfATableFirst) {
  FaultyDom dom;
  const auto table = parsed_table<PmtDVB>(
      long_section(0x02, joined({{0xE1, 0}, loop(kStuffing), {2, 0xE0, 0x21}, loop(kServiceList)})));
  EXPECT_TRUE(table.SaveSection(dom.document(), dom.node()));
  const std::string header = "createAttribute crc32\n";
  EXPECT_EQ(dom.steps().substr(dom.steps().find(header) + header.size()),
            lines({"createAttribute pcr",
                   "createElement stream_infos",
                   "appendChild",
                   "createElement stream",
                   "appendChild",
                   "createAttribute stream_type",
                   "createAttribute elementary_pid",
                   "createAttribute es_info_length",
                   "createElement descriptors",
                   "createElement service_list_descriptor",
                   "createAttribute descriptor_id",
                   "createAttribute descriptor_length",
                   "createElement servicelist",
                   "createElement service",
                   "createAttribute service_id",
                   "createAttribute service_type",
                   "appendChild",  // service
                   "appendChild",  // servicelist
                   "appendChild",  // service_list_descriptor
                   "appendChild",  // descriptors
                   "createElement descriptors",
                   "createElement stuffing_descriptor",
                   "createAttribute descriptor_id",
                   "createAttribute descriptor_length",
                   "createAttribute stuffing_byte",
                   "appendChild",
                   "appendChild"}));
}

TEST(GrammarOfLists, HonoursFailuresOfADescriptorButNotThoseWithinAnItem) {
  const DescriptorServiceList list(kServiceList.data());
  const auto save = [&list](const char* operation, int nth) {
    FaultyDom dom(operation, nth);
    const bool result = list.SaveSection(dom.document(), dom.node());
    EXPECT_EQ(dom.references(), 0);
    return result;
  };
  for (const char* const step : {"createAttribute", "put_nodeValue", "setAttributeNode"}) {
    EXPECT_FALSE(save(step, 1));  // descriptor_id
    EXPECT_FALSE(save(step, 2));  // descriptor_length
    EXPECT_TRUE(save(step, 3));   // service_id
    EXPECT_TRUE(save(step, 4));   // service_type
  }
  EXPECT_FALSE(save("createElement", 1));  // servicelist
  EXPECT_FALSE(save("createElement", 2));  // service
  EXPECT_FALSE(save("appendChild", 1));    // service
  EXPECT_FALSE(save("appendChild", 2));    // servicelist
  EXPECT_TRUE(save("none", 1));
}

TEST(GrammarOfLists, GoOnBehindWhatFailsInALoop) {
  const auto table = parsed_table<Tot>(
      short_section(0x73, joined({Bytes(5), loop(joined({kStuffing, kServiceList})), Bytes(4)})));
  const std::vector<std::string> all = {
      "createElement descriptors",              // 0
      "createElement service_list_descriptor",  // 1
      "createAttribute descriptor_id",          // 2
      "createAttribute descriptor_length",      // 3
      "createElement servicelist",              // 4
      "createElement service",                  // 5
      "createAttribute service_id",             // 6
      "createAttribute service_type",           // 7
      "appendChild",                            // 8, service
      "appendChild",                            // 9, servicelist
      "appendChild",                            // 10, service_list_descriptor
      "createElement stuffing_descriptor",      // 11
      "createAttribute descriptor_id",          // 12
      "createAttribute descriptor_length",      // 13
      "createAttribute stuffing_byte",          // 14
      "appendChild",                            // 15, stuffing_descriptor
      "appendChild",                            // 16, descriptors
  };
  struct Fault {
    const char* operation;
    int nth;
    int from;  // the steps that are left out
    int to;
  };
  const Fault faults[] = {
      {"createElement", 1, 1, 16},     {"createElement", 2, 2, 11},    {"createElement", 3, 5, 10},
      {"createElement", 4, 6, 10},     {"createElement", 5, 12, 16},   {"createAttribute", 1, 3, 10},
      {"createAttribute", 2, 4, 10},   {"createAttribute", 3, 7, 8},   {"createAttribute", 4, 8, 8},
      {"createAttribute", 5, 13, 15},  {"createAttribute", 6, 14, 15}, {"createAttribute", 7, 15, 15},
      {"put_nodeValue", 1, 3, 10},     {"put_nodeValue", 3, 7, 8},     {"setAttributeNode", 2, 4, 10},
      {"setAttributeNode", 6, 14, 15}, {"appendChild", 1, 9, 10},      {"appendChild", 2, 10, 10},
      {"appendChild", 3, 11, 11},      {"appendChild", 4, 16, 16},     {"appendChild", 5, 17, 17}};
  for (const Fault& fault : faults) {
    FaultyDom dom(fault.operation, fault.nth);
    EXPECT_TRUE(table._save_descriptors(dom.document(), dom.node()));
    std::vector<std::string> expected = all;
    expected.erase(expected.begin() + fault.from, expected.begin() + fault.to);
    EXPECT_EQ(dom.steps(), lines(expected)) << fault.operation << " " << fault.nth;
    EXPECT_EQ(dom.references(), 0);
  }
}
