// The page of a stream, as the program writes it.

#include "tests/app/program.h"
#include "tests/support/packets.h"
#include "tests/support/sample.h"

#include <regex>
#include <set>

using namespace quillon::test;

namespace {

// A program whose service bears the names.
Bytes stream_with(const std::string& provider, const std::string& name) {
  const Bytes pat = long_section(0x00, Bytes{0x00, 0x07, 0xE3, 0x00}, {.extension = 1});
  const Bytes map = long_section(0x02, Bytes{0xE1, 0x01, 0xF0, 0x00}, {.extension = 7});
  const Bytes service = descriptor(0x48, joined({Bytes{0x01}, counted(provider), counted(name)}));
  const Bytes row = joined({Bytes{0x00, 0x07, 0xFC, 0x80, static_cast<uint8_t>(service.size())}, service});
  const Bytes sdt = long_section(0x42, joined({Bytes{0x00, 0x02, 0xFF}, row}), {.extension = 1});
  return joined({packets({pat}, {.pid = 0}), packets({map}, {.pid = 0x300}), packets({sdt}, {.pid = 0x11})});
}

// The value of the first attribute of that name.
std::string attribute(const std::string& page, const std::string& name) {
  std::smatch match;
  return std::regex_search(page, match, std::regex(" " + name + "=\"([^\"]*)\"")) ? match[1].str() : "";
}

// What is between the script's tags and those of the style is the page's own.
std::string without_own(std::string page) {
  for (const std::string element : {"style", "script"}) {
    const size_t begin = page.find("<" + element + ">");
    page.erase(begin, page.find("</" + element + ">") - begin);
  }
  return page;
}

}  // namespace

TEST_F(Program, MakesAPage) {
  file("s.ts", sample_stream());
  const Result result = run("html s.ts -o s.html");
  EXPECT_EQ(result.code, 0);
  EXPECT_EQ(result.out + result.messages, "");
  const std::string page = whole(folder_ / "s.html");
  EXPECT_TRUE(page.starts_with("<!DOCTYPE html>\n"));
  EXPECT_TRUE(page.ends_with("</html>\n"));
  EXPECT_NE(page.find("<bdi>Quill One</bdi>"), std::string::npos);
  EXPECT_EQ(run("html s.ts").out, page);
  EXPECT_EQ(run("html s.ts -o -").out, page);
}

TEST_F(Program, CountsInAPageWhatJsonCounts) {
  file("s.ts", sample_stream());
  const std::string json = run("json s.ts").out;
  const std::string page = run("html s.ts").out;
  EXPECT_NE(page.find("data-sections=\"" + std::to_string(count(json, "\n")) + "\""), std::string::npos);
  for (const int table_id : {0x00, 0x02, 0x40, 0x42, 0x4E})
    EXPECT_NE(page.find("data-table=\"" + std::to_string(table_id) + "\" data-sections=\"" +
                        std::to_string(count(json, "\"table_id\":" + std::to_string(table_id) + ",")) + "\""),
              std::string::npos)
        << table_id;
  // Each of them is there, and nothing of it is broken.
  EXPECT_EQ(count(page, "<details class=\"section\">"), count(json, "\n"));
  EXPECT_EQ(count(page, "<details class=\"section broken\">"), 0);
}

TEST_F(Program, LetsAPageFetchNothing) {
  file("s.ts", sample_stream());
  const std::string page = run("html s.ts").out;
  EXPECT_NE(page.find("http-equiv=\"Content-Security-Policy\" content=\"default-src 'none'; "),
            std::string::npos);
  const std::string text = without_own(page);
  for (const std::regex& pattern : {std::regex(" (href)=\"([^\"]*)\""), std::regex(" (src)=\"([^\"]*)\"")})
    for (std::sregex_iterator at(text.begin(), text.end(), pattern), end; at != end; ++at)
      EXPECT_TRUE((*at)[2].str().starts_with("#") || (*at)[2] == "data:,") << (*at)[0];
  EXPECT_EQ(page.find("url("), std::string::npos);
  EXPECT_EQ(page.find("@import"), std::string::npos);
}

TEST_F(Program, LinksWithinAPage) {
  file("s.ts", stream_with("p", "n"));
  const std::string page = run("html s.ts s.ts").out;
  std::set<std::string> ids;
  const std::regex id(" id=\"([^\"]*)\"");
  for (std::sregex_iterator at(page.begin(), page.end(), id), end; at != end; ++at)
    EXPECT_TRUE(ids.insert((*at)[1]).second) << (*at)[1];
  const std::regex link(" href=\"#([^\"]*)\"");
  for (std::sregex_iterator at(page.begin(), page.end(), link), end; at != end; ++at)
    EXPECT_TRUE(ids.contains((*at)[1])) << (*at)[1];
  EXPECT_EQ(count(page, "<article"), 2);
}

TEST_F(Program, TakesNamesForText) {
  const std::string name = "<script>alert(1)</script>\" onload='x' & </style><!--";
  file("s.ts", stream_with("</script><img src=x>", name));
  const std::string page = run("html s.ts").out;
  EXPECT_GE(count(page, "&lt;script&gt;alert(1)&lt;/script&gt;&quot; onload='x' &amp; &lt;/style&gt;&lt;!--"),
            2);
  EXPECT_EQ(page.find("<script>alert"), std::string::npos);
  EXPECT_EQ(page.find("<img"), std::string::npos);
  EXPECT_EQ(page.find("<!--"), std::string::npos);
  EXPECT_EQ(count(page, "<script>"), 1);
  EXPECT_EQ(count(page, "</script>"), 1);
  EXPECT_EQ(count(page, "</style>"), 1);
}

TEST_F(Program, LetsNoNameSteerAPage) {
  // In UTF-8, as the first byte says: a control character, a line end, an override of the direction.
  file("s.ts", stream_with("p",
                           "\x15"
                           "a\x1B\xC2\x9B"
                           "b\nc\xE2\x80\xAE"
                           "d"));
  const std::string page = run("html s.ts").out;
  EXPECT_EQ(page.find('\x1B'), std::string::npos);
  EXPECT_EQ(page.find("\xC2\x9B"), std::string::npos);
  EXPECT_EQ(page.find("\xE2\x80\xAE"), std::string::npos);
  EXPECT_NE(page.find("\\u202Ed"), std::string::npos);
}

TEST_F(Program, HasRoomForLongNames) {
  // Of the two hundred letters that a descriptor holds, in each of fifty services; and in the file's own.
  const std::string name(200, 'W');
  file(name + ".ts", stream_with(name, name));
  const Result result = run("html " + name + ".ts -o s.html");
  EXPECT_EQ(result.code, 0);
  const std::string page = whole(folder_ / "s.html");
  EXPECT_EQ(attribute(page, "lang"), "en");
  EXPECT_GE(count(page, name), 4);
}

TEST_F(Program, SamplesTheSectionsOfALargeInput) {
  Bytes stream = sample_stream();
  for (int number = 0; number < 3000; ++number) {
    const auto high = static_cast<uint8_t>(number >> 8);
    const auto low = static_cast<uint8_t>(number);
    Bytes body = {high, low, 0x00, 0x01, 0x00, 0x4E};
    for (int event = 0; event < 60; ++event)
      body.insert(body.end(), {static_cast<uint8_t>(event), low, 0xEB, 0x11, 0x12, 0x30, 0x00, 0x00, 0x30,
                               0x00, 0x80, 0x00});
    const Bytes section = long_section(0x4E, body, {.extension = number});
    const Bytes more = packets({section}, {.pid = 0x12});
    stream.insert(stream.end(), more.begin(), more.end());
  }
  file("s.ts", stream);
  EXPECT_EQ(run("html s.ts -o s.html").code, 0);
  const std::string page = whole(folder_ / "s.html");
  EXPECT_LT(page.size(), 5'000'000u);
  std::smatch match;
  ASSERT_TRUE(
      std::regex_search(page, match, std::regex("A sample: ([0-9,]+) of ([0-9,]+) distinct sections")));
  std::string shown = match[1];
  std::erase(shown, ',');
  EXPECT_EQ(count(page, "<details class=\"section\">"), std::stoi(shown));
  EXPECT_GT(std::stoi(shown), 50);
}

TEST_F(Program, ListsWhatIsDamagedInAPage) {
  Bytes bad = long_section(0x42, Bytes{0x00, 0x02, 0xFF}, {.extension = 9});
  bad.back() ^= 1;
  file("s.ts", joined({sample_stream(), packets({bad}, {.pid = 0x11, .counter = 9})}));
  const std::string page = run("html s.ts").out;
  EXPECT_EQ(count(page, "id=\"wrong-crcs\""), 1);
  EXPECT_NE(page.find("href=\"#wrong-crcs\"><strong>1</strong>"), std::string::npos);
  EXPECT_NE(page.find("SDT (table 0x42): the CRC is wrong"), std::string::npos);
  EXPECT_EQ(count(page, "<details class=\"section broken\">"), 1);
}

TEST_F(Program, StatesWhichBytesAFieldIs) {
  file("s.ts", stream_with("p", "n"));
  const std::string page = run("html s.ts --table 0x42").out;
  EXPECT_NE(page.find("<li data-b=\"1 2\"><b>section_length</b> "), std::string::npos);
  // A row of five bytes before its descriptor of seven, and the fields of each.
  EXPECT_NE(page.find("<li data-b=\"11 12\"><b>"), std::string::npos);
  EXPECT_NE(page.find("<li data-b=\"11 2\"><b>service_id</b> 7"), std::string::npos);
  EXPECT_NE(page.find("<li data-b=\"16 7\"><b>service_descriptor</b>"), std::string::npos);
  EXPECT_NE(page.find("<li data-b=\"16 1\"><b>descriptor_id</b> 72"), std::string::npos);
  EXPECT_NE(page.find("<li data-b=\"23 4\"><b>crc32</b> "), std::string::npos);
}

TEST_F(Program, LeavesAPageAsItWasWhereNoInputCanBeRead) {
  file("s.html", text("old"));
  const Result result = run("html missing.ts -o s.html");
  EXPECT_EQ(result.code, 1);
  EXPECT_EQ(whole(folder_ / "s.html"), "old");
}
