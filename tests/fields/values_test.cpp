// Times, addresses and identifiers.

#include "tests/support/bytes.h"
#include "tests/support/faces.h"

#include <climits>
#include <iomanip>

#include <quillon/fields/address.h>
#include <quillon/fields/identifier.h>
#include <quillon/fields/multiple_string.h>
#include <quillon/fields/time.h>
#include <quillon/xml/attributes.h>

using namespace quillon;
using namespace quillon::test;

namespace {

Bytes time_bytes(int mjd, int hour = 0, int minute = 0, int second = 0) {
  return bits({{16, static_cast<uint64_t>(mjd), "MJD"},
               {8, static_cast<uint64_t>(hour), "hour"},
               {8, static_cast<uint64_t>(minute), "minute"},
               {8, static_cast<uint64_t>(second), "second"}});
}

std::string date(int mjd) {
  const DateTime t(time_bytes(mjd).data());
  return std::to_string(t.day) + " " + std::to_string(t.month) + " " + std::to_string(t.year);
}

template <class T>
std::string printed(const T& value, std::ios_base& (*base)(std::ios_base&) = std::dec) {
  std::ostringstream stream;
  stream << base << value << "|" << 255;
  return stream.str();
}

template <class T>
std::string dumped(const T& value, std::ios_base& (*base)(std::ios_base&) = std::dec) {
  std::ostringstream stream;
  stream << base;
  value.dump_state(stream);
  stream << 255;
  return stream.str();
}

// Loads with each attribute missing in turn: every one is a failure, and those in front of it are read.
template <class T>
void expect_each_attribute_needed(const std::string& element) {
  size_t attributes = 0;
  for (size_t at = element.find("=\""); at != std::string::npos; at = element.find("=\"", at + 2)) {
    const size_t name = element.rfind(' ', at);
    const size_t end = element.find('"', at + 2) + 1;
    std::string without = element;
    without.erase(name, end - name);
    EXPECT_EQ(failure([&] { loaded<T>(without); }), "-1: failed") << without;
    ++attributes;
  }
  EXPECT_GT(attributes, 1u);
}

}  // namespace

// DateTime

TEST(DateTime, IsAllOnesAtFirst) {
  const DateTime t;
  EXPECT_EQ(report(t), "1/1-1 1:1:1\n");
  EXPECT_EQ(t.get_date_as_text(), "1 1 1 1 1 1");
}

TEST(DateTime, DecodesModifiedJulianDateAndBcd) {
  const DateTime t(time_bytes(45218, 0x12, 0x45, 0x00).data());
  EXPECT_EQ(t.day, 6);
  EXPECT_EQ(t.month, 9);
  EXPECT_EQ(t.year, 1982);
  EXPECT_EQ(t.hour, 12);
  EXPECT_EQ(t.minute, 45);
  EXPECT_EQ(t.second, 0);
  EXPECT_EQ(date(51544), "1 1 2000");
  EXPECT_EQ(date(51603), "29 2 2000");
  EXPECT_EQ(date(51604), "1 3 2000");
}

TEST(DateTime, IsRightOnEachDayFromMarch1900On) {
  // By counting days.
  int day = 1;
  int month = 3;
  int year = 1900;
  for (int mjd = 15079; mjd <= 0xFFFF; ++mjd) {
    ASSERT_EQ(date(mjd), std::to_string(day) + " " + std::to_string(month) + " " + std::to_string(year))
        << mjd;
    const bool leap = year % 4 == 0 && year != 1900;
    const int days[] = {31, leap ? 29 : 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    if (++day > days[month - 1]) {
      day = 1;
      if (++month > 12) {
        month = 1;
        ++year;
      }
    }
  }
  EXPECT_EQ(day, 23);  // the day after the last that the field can hold
  EXPECT_EQ(month, 4);
  EXPECT_EQ(year, 2038);
}

TEST(DateTime, RunsOutOfItsFormulaBeforeMarch1900) {
  EXPECT_EQ(date(15079), "1 3 1900");
  EXPECT_EQ(date(15078), "31 2 1900");
  EXPECT_EQ(date(0), "19 -1 1859");
}

TEST(DateTime, DecodesAnUndefinedTimeLikeAnyOther) {
  const DateTime t(time_bytes(0xFFFF, 0xFF, 0xFF, 0xFF).data());
  EXPECT_EQ(report(t), "22/4-2038 165:165:165\n");
}

TEST(DateTime, TakesAnyBcd) {
  for (int byte = 0; byte < 256; ++byte) {
    const DateTime t(time_bytes(51544, byte, 255 - byte, byte ^ 0x55).data());
    EXPECT_EQ(t.hour, byte / 16 * 10 + byte % 16);
    EXPECT_EQ(t.minute, (255 - byte) / 16 * 10 + (255 - byte) % 16);
    EXPECT_EQ(t.second, (byte ^ 0x55) / 16 * 10 + (byte ^ 0x55) % 16);
  }
  EXPECT_EQ(DateTime(time_bytes(0, 0x1A).data()).hour, 20);
}

TEST(DateTime, ReadsZerosBehindTheView) {
  const Bytes bytes{0xC9, 0x58, 0x12};
  EXPECT_EQ(DateTime(view(bytes)).get_date_as_text(), "1 1 2000 12 0 0");
  EXPECT_EQ(DateTime(ByteView(bytes.data(), size_t{0})).get_date_as_text(), "19 -1 1859 0 0 0");
}

TEST(DateTime, ReportsInTheStreamsBaseAndPrintsInDecimal) {
  const DateTime t(time_bytes(53801, 0x09, 0x05, 0x00).data());
  EXPECT_EQ(dumped(t), "7/3-2006 9:5:0\n255");
  EXPECT_EQ(dumped(t, std::hex), "7/3-7d6 9:5:0\nff");
  EXPECT_EQ(printed(t), "7/3-2006 9:5:0|255");
  EXPECT_EQ(printed(t, std::hex), "7/3-2006 9:5:0|255");  // decimal stays set
  std::ostringstream padded;
  padded << std::setfill('0') << t;
  EXPECT_EQ(padded.str(), "7/3-2006 9:5:0");
}

TEST(DateTime, GoesThroughText) {
  DateTime t(time_bytes(53801, 0x23, 0x59, 0x58).data());
  EXPECT_EQ(t.get_date_as_text(), "7 3 2006 23 59 58");
  DateTime back;
  EXPECT_TRUE(back.set_date_from_text("7 3 2006 23 59 58"));
  EXPECT_EQ(report(back), report(t));
  EXPECT_TRUE(back.set_date_from_text("  -1\t+2 03"));
  EXPECT_EQ(back.get_date_as_text(), "-1 2 3 23 59 58");
  for (const char* text : {"", "x", " ", "- 1"}) {
    EXPECT_TRUE(back.set_date_from_text(text));
    EXPECT_EQ(back.get_date_as_text(), "-1 2 3 23 59 58");
  }
  EXPECT_TRUE(back.set_date_from_text("9 x 8"));
  EXPECT_EQ(back.get_date_as_text(), "9 2 3 23 59 58");
  back.day = back.month = back.year = back.hour = back.minute = back.second = INT_MIN;
  EXPECT_EQ(back.get_date_as_text(),
            "-2147483648 -2147483648 -2147483648 -2147483648 -2147483648 -2147483648");
}

TEST(DateTime, GoesThroughXml) {
  const std::string element = R"(<d day="7" month="3" year="2006" hour="9" minute="5" second="-1" />)";
  DateTime t = loaded<DateTime>(element);
  EXPECT_EQ(t.get_date_as_text(), "7 3 2006 9 5 -1");
  EXPECT_EQ(saved(t), element);
  expect_each_attribute_needed<DateTime>(element);

  // Those in front of the one that is missing are read.
  const xml::Document part = xml::Document::from_text(R"(<d day="4" month="5" second="6"/>)");
  EXPECT_EQ(failure([&] { t.Parse(part.root()); }), "-1: failed");
  EXPECT_EQ(t.get_date_as_text(), "4 5 2006 9 5 -1");
}

// Duration and offset

TEST(Duration, DecodesBcd) {
  const Duration none;
  EXPECT_EQ(none.get_time_as_text(), "0 0 0");
  const Duration d(Bytes{0x01, 0x30, 0x59}.data());
  EXPECT_EQ(d.get_hours(), 1);
  EXPECT_EQ(d.get_minutes(), 30);
  EXPECT_EQ(d.get_seconds(), 59);
  EXPECT_EQ(Duration(Bytes{0x99, 0x99, 0x99}.data()).get_time_as_text(), "99 99 99");
  EXPECT_EQ(Duration(Bytes{0xFF, 0xFF, 0xFF}.data()).get_time_as_text(), "165 165 165");
  EXPECT_EQ(Duration(view({0x12})).get_time_as_text(), "12 0 0");
}

TEST(Duration, ReportsInTheStreamsBaseAndPrintsInDecimal) {
  const Duration d(Bytes{0x10, 0x30, 0x59}.data());
  EXPECT_EQ(dumped(d), "10:30:59\n255");
  EXPECT_EQ(dumped(d, std::hex), "a:1e:3b\nff");
  EXPECT_EQ(printed(d, std::hex), "10:30:59|255");
}

TEST(Duration, GoesThroughText) {
  Duration d;
  EXPECT_TRUE(d.set_time_from_text("1 30 0"));
  EXPECT_EQ(d.get_time_as_text(), "1 30 0");
  EXPECT_TRUE(d.set_time_from_text("2"));
  EXPECT_EQ(d.get_time_as_text(), "2 30 0");
  EXPECT_TRUE(d.set_time_from_text("none"));
  EXPECT_EQ(d.get_time_as_text(), "2 30 0");
}

TEST(TimeOffset, DecodesBcdAndPrintsInDecimal) {
  const TimeOffset none;
  EXPECT_EQ(none.get_hours(), 0);
  EXPECT_EQ(none.get_minutes(), 0);
  const TimeOffset t(Bytes{0x12, 0x45}.data());
  EXPECT_EQ(t.get_hours(), 12);
  EXPECT_EQ(t.get_minutes(), 45);
  EXPECT_EQ(printed(t), "12:45|255");
  EXPECT_EQ(printed(t, std::hex), "12:45|255");
  EXPECT_EQ(printed(TimeOffset(Bytes{0xFF, 0x1A}.data())), "165:20|255");
  EXPECT_EQ(printed(TimeOffset(view({0x01}))), "1:0|255");
}

TEST(TimeOffset, GoesThroughXml) {
  const std::string element = R"(<d hour="12" minute="-45" />)";
  EXPECT_EQ(saved(loaded<TimeOffset>(element)), element);
  expect_each_attribute_needed<TimeOffset>(element);
}

// Addresses

TEST(MACAddress, TakesNothingOffTheWire) {
  MACAddress address;
  address.parse(Bytes{1, 2, 3, 4, 5, 6}.data());
  EXPECT_EQ(address.text(), "00:00:00:00:00:00");
  const Bytes bytes{0x00, 0xA0, 0xC9, 0x12, 0x34, 0xAB};
  std::copy(bytes.begin(), bytes.end(), address.get_addr());
  address.parse(Bytes{1, 2, 3, 4, 5, 6}.data());
  EXPECT_EQ(address.text(), "00:a0:c9:12:34:ab");
  EXPECT_EQ(std::as_const(address).get_addr()[1], 0xA0);
}

TEST(IPv4Address, KeepsTheBytesOfTheWire) {
  IPv4Address address;
  EXPECT_EQ(address.text(), "0.0.0.0");
  address.parse(Bytes{192, 168, 0, 1}.data());
  EXPECT_EQ(address.text(), "192.168.0.1");
  EXPECT_EQ(std::as_const(address).get_addr()[0], 192);
  address.parse(Bytes(4, 0xFF).data());
  EXPECT_EQ(address.text(), "255.255.255.255");
  address.parse(view({10, 9}));
  EXPECT_EQ(address.text(), "10.9.0.0");
}

TEST(IPv6Address, ShowsAllItsGroups) {
  IPv6Address address;
  EXPECT_EQ(address.text(), "0000:0000:0000:0000:0000:0000:0000:0000");
  Bytes bytes;
  for (int i = 0; i < 16; ++i) bytes.push_back(static_cast<uint8_t>(i * 17));
  address.parse(bytes.data());
  EXPECT_EQ(address.text(), "0011:2233:4455:6677:8899:aabb:ccdd:eeff");
  EXPECT_EQ(std::as_const(address).get_addr()[15], 0xFF);
  address.parse(view({0x20, 0x01, 0x0D}));
  EXPECT_EQ(address.text(), "2001:0d00:0000:0000:0000:0000:0000:0000");
}

// Application identifier

TEST(ApplicationIdentifier, ReadsSixBytes) {
  const ApplicationIdentifier none;
  EXPECT_EQ(none.application_identifier_as_text(), "00000000 0000");
  const ApplicationIdentifier id(Bytes{0x89, 0xAB, 0xCD, 0xEF, 0xFE, 0xDC}.data());
  EXPECT_EQ(id.organisation_id, 0x89ABCDEF);
  EXPECT_EQ(id.application_id, 0xFEDC);
  EXPECT_EQ(id.application_identifier_as_text(), "89ABCDEF FEDC");
  EXPECT_EQ(dumped(id), "organisation_id: 2309737967\napplication_id: 65244\n255");
  EXPECT_EQ(dumped(id, std::hex), "organisation_id: 89abcdef\napplication_id: fedc\nff");
  EXPECT_EQ(ApplicationIdentifier(view({0, 0, 0, 0x2A, 0x12})).application_identifier_as_text(),
            "0000002A 1200");
}

TEST(ApplicationIdentifier, IsReadFromHexadecimalText) {
  ApplicationIdentifier id;
  for (const char* text : {"2A 1", "0000002A 0001", "  0x2a\t0X1"}) {
    id = {};
    EXPECT_TRUE(id.set_application_identifier_from_text(text));
    EXPECT_EQ(id.organisation_id, 42u);
    EXPECT_EQ(id.application_id, 1);
  }
  EXPECT_TRUE(id.set_application_identifier_from_text("FFFFFFFF"));
  EXPECT_EQ(id.application_identifier_as_text(), "FFFFFFFF 0001");
  for (const char* text : {"", "x", " "}) {
    EXPECT_TRUE(id.set_application_identifier_from_text(text));
    EXPECT_EQ(id.application_identifier_as_text(), "FFFFFFFF 0001");
  }
  EXPECT_TRUE(id.set_application_identifier_from_text("0 FFFFFFFF"));
  EXPECT_EQ(id.application_id, -1);
  EXPECT_EQ(id.application_identifier_as_text(), "00000000 FFFFFFFF");
  EXPECT_EQ(dumped(id), "organisation_id: 0\napplication_id: -1\n255");
}

TEST(ApplicationIdentifier, GoesThroughXml) {
  const std::string element = R"(<d organisation_id="-2" application_id="-1" />)";
  const ApplicationIdentifier id = loaded<ApplicationIdentifier>(element);
  EXPECT_EQ(id.organisation_id, 0xFFFFFFFE);
  EXPECT_EQ(id.application_id, -1);
  EXPECT_EQ(saved(id), element);
  expect_each_attribute_needed<ApplicationIdentifier>(element);
}

// Length-prefixed string

TEST(LengthPrefixedString, KeepsItsBytesAsTheyStand) {
  const LengthPrefixedString none;
  EXPECT_EQ(none.get_length(), 0);
  EXPECT_EQ(none.get_value(), "");
  int consumed = -1;
  const LengthPrefixedString s(Bytes{4, 'a', 0x00, 0xE4, 'b', 'c'}.data(), 2, consumed);
  EXPECT_EQ(consumed, 5);
  EXPECT_EQ(s.get_length(), 4);
  EXPECT_EQ(s.get_value(), std::string("a\0\xE4"
                                       "b",
                                       4));
  std::ostringstream stream;
  s.dump_state("initial_class", stream);
  EXPECT_EQ(stream.str(), "initial_class_length: 4\ninitial_class: a\n");
}

TEST(LengthPrefixedString, ReportsItsLengthInTheStreamsBase) {
  int consumed = -1;
  const LengthPrefixedString s(joined({{17}, Bytes(17, 'x')}).data(), 0, consumed);
  std::ostringstream stream;
  stream << std::hex;
  s.dump_state("path", stream);
  EXPECT_EQ(stream.str(), "path_length: 11\npath: xxxxxxxxxxxxxxxxx\n");
}

TEST(LengthPrefixedString, OfNoLengthIsEmpty) {
  int consumed = -1;
  const LengthPrefixedString s(Bytes{0, 'x'}.data(), 100, consumed);
  EXPECT_EQ(consumed, 1);
  EXPECT_EQ(s.get_value(), "");
}

TEST(LengthPrefixedString, StopsAtTheEndOfTheView) {
  int consumed = -1;
  const LengthPrefixedString s(view({200, 'a', 'b'}), 3, consumed);
  EXPECT_EQ(consumed, 201);
  EXPECT_EQ(s.get_length(), 200);
  EXPECT_EQ(s.get_value(), "ab");
  const LengthPrefixedString nothing(ByteView(nullptr, 0), 3, consumed);
  EXPECT_EQ(consumed, 1);
  EXPECT_EQ(nothing.get_value(), "");
}

TEST(LengthPrefixedString, GoesThroughXmlWithoutItsLengthBeingHeldAgainstItsValue) {
  const std::string element = R"(<d length="100" value="abc" />)";
  const LengthPrefixedString s = loaded<LengthPrefixedString>(element);
  EXPECT_EQ(s.get_length(), 100);
  EXPECT_EQ(s.get_value(), "abc");
  EXPECT_EQ(saved(s), element);
  expect_each_attribute_needed<LengthPrefixedString>(element);
}

TEST(LengthPrefixedString, LosesWhatLiesBehindANulInXml) {
  int consumed = -1;
  const LengthPrefixedString s(Bytes{3, 'a', 0x00, 'b'}.data(), 0, consumed);
  EXPECT_EQ(saved(s), R"(<d length="3" value="a" />)");
}

// Multilingual name

TEST(MultilingualNameInfo, ReadsCodeAndName) {
  const Bytes bytes{'g', 'r', 'e', 3, 0x03, 0xC1, 'x', 0xEE};
  int consumed = -1;
  const MultilingualNameInfo info(bytes.data(), 7, consumed);
  EXPECT_EQ(consumed, 7);
  EXPECT_STREQ(info.get_iso_639_language_code(), "gre");
  EXPECT_EQ(info.get_name().get_text_len(), 3u);
  EXPECT_EQ(info.get_name().get_textA(), "?x");
  std::ostringstream stream;
  info._dump_state(stream);
  EXPECT_EQ(stream.str(),
            "MultilingualNameInfo::ISO_639_language_code: gre\nMultilingualNameInfo::name: ?x\n");
}

TEST(MultilingualNameInfo, NeedsFourBytesAndItsName) {
  const Bytes bytes{'e', 'n', 'g', 2, 'a', 'b'};
  int consumed = -1;
  for (const int available : {-1, 0, 3})
    EXPECT_EQ(failure([&] { MultilingualNameInfo(bytes.data(), available, consumed); }),
              "3: multilingual_name_info_descriptor");
  for (const int available : {4, 5})
    EXPECT_EQ(failure([&] { MultilingualNameInfo(bytes.data(), available, consumed); }),
              "3: multilingual_name_info_descriptor:2");
  EXPECT_EQ(consumed, -1);
  EXPECT_STREQ(MultilingualNameInfo(bytes.data(), 6, consumed).get_name().c_strA(), "ab");
  EXPECT_STREQ(MultilingualNameInfo(bytes.data(), 100, consumed).get_name().c_strA(), "ab");
}

TEST(MultilingualNameInfo, MayHaveAnEmptyName) {
  int consumed = -1;
  const MultilingualNameInfo info(Bytes{'e', 'n', 'g', 0}.data(), 4, consumed);
  EXPECT_EQ(consumed, 4);
  EXPECT_STREQ(info.get_name().c_strA(), "");
  EXPECT_STREQ(MultilingualNameInfo().get_iso_639_language_code(), "");
}

TEST(MultilingualNameInfo, ReadsNothingBehindTheView) {
  int consumed = -1;
  const MultilingualNameInfo info(view({'e', 'n', 'g', 50, 'a'}), 100, consumed);
  EXPECT_EQ(consumed, 54);
  EXPECT_STREQ(info.get_name().c_strA(), "a");
  EXPECT_EQ(info.get_name().get_text_len(), 50u);
}

TEST(MultilingualNameInfo, GoesThroughXml) {
  const std::string element = R"(<d name="αx" ISO_639_language_code="gre" />)";
  const MultilingualNameInfo info = loaded<MultilingualNameInfo>(element);
  EXPECT_EQ(info.get_name().get_char_set(), 1);
  EXPECT_EQ(info.get_name().get_text_len(), 0u);
  EXPECT_EQ(info.get_name().get_textA(), "?x");
  EXPECT_STREQ(info.get_iso_639_language_code(), "gre");
  EXPECT_EQ(saved(info), element);
  expect_each_attribute_needed<MultilingualNameInfo>(element);
  EXPECT_STREQ(loaded<MultilingualNameInfo>(R"(<d name="" ISO_639_language_code="greek"/>)")
                   .get_iso_639_language_code(),
               "gre");
}

// Whatever node is loaded from, one without attributes is a failure.
TEST(Values, NeedAnElement) {
  const xml::Document document;
  auto* const node = static_cast<IXMLDOMNode*>(static_cast<IXMLDOMDocument*>(document.dom()));
  EXPECT_EQ(failure([&] { DateTime().Parse(node); }), "-1: failed");
  EXPECT_EQ(failure([&] { TimeOffset().Parse(node); }), "-1: failed");
  EXPECT_EQ(failure([&] { ApplicationIdentifier().Parse(node); }), "-1: failed");
  EXPECT_EQ(failure([&] { LengthPrefixedString().Parse(node); }), "-1: failed");
  EXPECT_EQ(failure([&] { MultilingualNameInfo().Parse(node); }), "-1: failed");
}

// What is printed of the other values: their text, in any base, and in a field of the stream's width.
TEST(Values, ArePrintedAsTheirText) {
  const auto of_bytes = []<class Address>(Address address) {
    Bytes bytes(Address::size);
    for (size_t i = 0; i < bytes.size(); ++i) bytes[i] = static_cast<uint8_t>(0xA9 + i);
    address.parse(ByteView(bytes.data(), bytes.size(), Reading::standard));
    return address;
  };
  EXPECT_EQ(printed(of_bytes(MACAddress())), "a9:aa:ab:ac:ad:ae|255");
  EXPECT_EQ(printed(of_bytes(IPv4Address())), "169.170.171.172|255");
  EXPECT_EQ(printed(of_bytes(IPv4Address()), std::hex), "169.170.171.172|ff");
  EXPECT_EQ(printed(of_bytes(IPv6Address())), "a9aa:abac:adae:afb0:b1b2:b3b4:b5b6:b7b8|255");

  const Bytes latin5 = {0x01, 0xBF, 0xE0};  // Cyrillic
  EXPECT_EQ(printed(Text(3, view(latin5))), "\u041f\u0440|255");
  EXPECT_EQ(printed(Text()), "|255");
  std::ostringstream wide;
  wide << std::setw(5) << Text(2, view(text("Hi")));
  EXPECT_EQ(wide.str(), "   Hi");

  ISO639LanguageCode code;
  code.set_textA("deu");
  EXPECT_EQ(printed(code), "deu|255");
  EXPECT_EQ(printed(CodeCharacters(view(text("fra")))), "fra|255");

  ApplicationIdentifier application;
  application.organisation_id = 0x2A;
  application.application_id = 1;
  EXPECT_EQ(printed(application), "0000002A 0001|255");
  int consumed = 0;
  EXPECT_EQ(printed(LengthPrefixedString(view(counted("path")), 255, consumed)), "path|255");
  const Bytes name = joined({text("ell"), {4, 0x03, 0xC1, 0xE3, 0xDC}});
  EXPECT_EQ(printed(MultilingualNameInfo(view(name), static_cast<int>(name.size()), consumed)),
            "\u0391\u03b3\u03ac|255");

  const Bytes strings = joined({{1}, text("eng"), {1, 0x00, 0x04, 2, 0x1F, 0x20}});  // a page of Cyrillic
  ATSCMultipleStringStructure structure;
  int length = static_cast<int>(strings.size());
  structure.parse(view(strings), length);
  EXPECT_EQ(printed(structure.strings.at(0)), "\u041f\u0420|255");
}
