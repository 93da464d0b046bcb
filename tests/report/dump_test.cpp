// Raw bytes in a report.

#include "tests/support/bytes.h"

#include <cctype>
#include <climits>
#include <functional>
#include <gtest/gtest.h>
#include <iomanip>
#include <locale>
#include <sstream>
#include <string>

#include <quillon/report/dump.h>
#include <quillon/report/internal/line.h>
#include <quillon/tables/sdt.h>

using namespace quillon;
using namespace quillon::test;

namespace {

std::string block(
    const Bytes& bytes, const std::function<void(std::ostream&)>& prepare = [](std::ostream&) {}) {
  std::ostringstream stream;
  prepare(stream);
  dump_block(stream, bytes.data(), static_cast<int>(bytes.size()));
  return stream.str();
}

std::string repeated(const std::string& text, int times) {
  std::string out;
  for (int i = 0; i < times; ++i) out += text;
  return out;
}

void zero_fill(std::ostream& stream) {
  stream << std::setfill('0');
}

}  // namespace

TEST(DumpBlock, PrintsNothingForNoBytes) {
  std::ostringstream stream;
  dump_block(stream, nullptr, 0);
  EXPECT_EQ(stream.str(), "");
  stream << 255;
  EXPECT_EQ(stream.str(), "255");  // and leaves the base
}

TEST(DumpBlock, PrintsSixteenBytesARow) {
  Bytes bytes;
  for (int i = 0; i < 16; ++i) bytes.push_back(static_cast<uint8_t>(0x41 + i * 7));
  EXPECT_EQ(block(bytes), "41 48 4f 56 5d 64 6b 72 79 80 87 8e 95 9c a3 aa  : AHOV.dkry.......\n");
  const Bytes two_rows = joined({bytes, bytes});
  EXPECT_EQ(block(two_rows), block(bytes) + block(bytes));
}

TEST(DumpBlock, FillsTheRowOfATail) {
  const Bytes row(16, 'z');
  const std::string full = repeated("7a ", 16) + " : " + std::string(16, 'z') + "\n";
  EXPECT_EQ(block(row), full);
  EXPECT_EQ(block(joined({row, {'Q'}})), full + "51 " + repeated("   ", 15) + " : Q\n");
  EXPECT_EQ(block(joined({row, {'5'}})), full + "35 " + repeated("   ", 15) + " : .\n");
  EXPECT_EQ(block({'Q'}), "51 " + repeated("   ", 15) + " : Q\n");
  EXPECT_EQ(block(Bytes(15, 'z')), repeated("7a ", 15) + "    : " + std::string(15, 'z') + "\n");
}

TEST(DumpBlock, HasTheColonAtTheSamePlaceInEveryRow) {
  for (size_t size = 1; size <= 48; ++size) {
    std::istringstream rows(block(Bytes(size, 0x80)));
    std::string row;
    size_t count = 0;
    for (; std::getline(rows, row); ++count) EXPECT_EQ(row.find(" : "), 48u) << size;
    EXPECT_EQ(count, (size + 15) / 16);
  }
}

TEST(DumpBlock, PrintsALineWithoutBytesForANegativeSize) {
  // Only a size of exactly 0 is no block: kept, as are the more than sixteen groups.
  const uint8_t byte = 0xAA;
  for (const int size : {-1, -2, -15}) {
    std::ostringstream stream;
    dump_block(stream, &byte, size);
    EXPECT_EQ(stream.str(), repeated("   ", 16 - size) + " : \n") << size;
  }
  std::ostringstream more;
  dump_block(more, &byte, -17);
  EXPECT_EQ(more.str(), repeated("   ", 17) + " : \n");
  std::ostringstream row;
  dump_block(row, &byte, -16);  // no tail
  EXPECT_EQ(row.str(), "");
}

TEST(DumpBlock, ShowsLettersAlone) {
  EXPECT_EQ(block(text("A1 b")), "41 31 20 62 " + repeated("   ", 12) + " : A..b\n");
  for (int byte = 0; byte < 256; ++byte) {
    const std::string row = block({static_cast<uint8_t>(byte)});
    const char shown = row[row.size() - 2];
    EXPECT_EQ(shown, std::isalpha(byte) ? static_cast<char>(byte) : '.') << byte;
  }
}

TEST(DumpBlock, PadsWithTheStreamsFill) {
  const std::string tail = repeated("   ", 14) + " : ..\n";
  EXPECT_EQ(block({0x0A, 0x00}), " a  0 " + tail);
  EXPECT_EQ(block({0x0A, 0x00}, zero_fill), "0a 00 " + tail);
  EXPECT_EQ(block({0x0A, 0x00}, [](std::ostream& s) { s << std::setfill('#'); }), "#a #0 " + tail);
}

TEST(DumpBlock, TakesCaseAndSideFromTheStream) {
  const std::string tail = repeated("   ", 14) + " : ..\n";
  EXPECT_EQ(block({0x0A, 0xBC}, [](std::ostream& s) { s << std::uppercase << std::setfill('0'); }),
            "0A BC " + tail);
  EXPECT_EQ(block({0x0A, 0xBC}, [](std::ostream& s) { s << std::left; }), "a  bc " + tail);
}

TEST(DumpBlock, SetsHexadecimalForItselfAndForWhatFollows) {
  for (std::ios_base& (*base)(std::ios_base&) : {std::dec, std::oct, std::hex}) {
    std::ostringstream stream;
    stream << base;
    const uint8_t byte = 0xFE;
    dump_block(stream, &byte, 1);
    stream << 255;
    EXPECT_EQ(stream.str(), "fe " + repeated("   ", 15) + " : .\nff");
  }
}

TEST(DumpBlock, LeavesAWidthForNobody) {
  std::ostringstream stream;
  const uint8_t byte = 0x41;
  dump_block(stream, &byte, 1);
  EXPECT_EQ(stream.width(), 0);
}

TEST(DumpBlock, TakesAStreamThatFailed) {
  std::ostringstream stream;
  stream.setstate(std::ios::badbit);
  const uint8_t byte = 0x41;
  dump_block(stream, &byte, 1);
  EXPECT_EQ(stream.str(), "");
}

TEST(TextsOnOneLine, EscapesTheControlCharactersOfTextsAlone) {
  const std::string name = "a\nb\rc\td\x1B[31me\x7F\\f";
  const Bytes service = descriptor(0x48, joined({Bytes{0x01}, counted("p\nq"), counted(name)}));
  const Bytes section = long_section(0x42, joined({{0x00, 0x01, 0xFF, 0x00, 0x07, 0xFC, 0x80},
                                                   Bytes{static_cast<uint8_t>(service.size())},
                                                   service}));
  Sdt table;
  table.Parse(section.data(), section.size());
  const auto printed = [&table](const std::function<void(std::ostream&)>& prepare) {
    std::ostringstream stream;
    prepare(stream);
    table.dump_state(stream);
    return stream.str();
  };
  const std::string plain = printed([](std::ostream&) {});
  const std::string on_one_line = printed([](std::ostream& s) { s << texts_on_one_line; });
  const auto replaced = [](std::string text, const std::string& part, const std::string& by) {
    EXPECT_NE(text.find(part), std::string::npos) << text;
    return text.replace(text.find(part), part.size(), by);
  };
  // The lines of the report are its own.
  EXPECT_EQ(on_one_line, replaced(replaced(plain, name, R"(a\nb\rc\td\x1B[31me\x7F\f)"), "p\nq", R"(p\nq)"));
  // Whatever else the stream's state holds.
  const std::string with_base = printed([](std::ostream& s) { s << texts_on_one_line << std::showbase; });
  EXPECT_NE(with_base.find("\nprovider_name p\\nq\n"), std::string::npos) << with_base;
  // It is asked of a stream, not of all.
  EXPECT_EQ(printed([](std::ostream&) {}), plain);
}

TEST(ReportLine, PrintsLabelValueAndLineEndAsTheStreamDoes) {
  std::ostringstream stream;
  report::line(stream, "a: ", 255);
  report::line(stream, "b: ", uint32_t{0xFFFFFFFF});
  report::line(stream, "c: ", 0.5);
  report::line(stream, "d: ", "text");
  report::line(stream, "e: ", std::string("a\0b", 3));
  stream << std::hex;
  report::line(stream, "f: ", -1);
  report::block(stream, {});
  report::block(stream, {0x41});
  EXPECT_EQ(stream.str(), "a: 255\nb: 4294967295\nc: 0.5\nd: text\n" + std::string("e: a\0b\n", 7) +
                              "f: ffffffff\n41 " + repeated("   ", 15) + " : A\n");
}

TEST(ReportLine, FollowsTheStreamsState) {
  const auto printed = [](auto change) {
    std::ostringstream by_line;
    std::ostringstream by_operators;
    for (std::ostream* stream : {&by_line, &by_operators}) change(*stream);
    const auto both = [&](const char* label, const auto& value) {
      report::line(by_line, label, value);
      by_operators << label << value << std::endl;
    };
    both("a: ", 1234567);
    both("b: ", -255);
    both("c: ", INT_MIN);
    both("d: ", uint32_t{0xABCDEF01});
    both("e: ", 1234.5);
    both("f: ", "text");
    EXPECT_EQ(by_line.str(), by_operators.str());
    EXPECT_EQ(by_line.flags(), by_operators.flags());
    EXPECT_EQ(by_line.width(), 0);
    return by_line.str();
  };
  EXPECT_EQ(printed([](std::ostream&) {}),
            "a: 1234567\nb: -255\nc: -2147483648\nd: 2882400001\ne: 1234.5\nf: text\n");
  EXPECT_EQ(printed([](std::ostream& s) { s << std::hex << std::uppercase; }),
            "a: 12D687\nb: FFFFFF01\nc: 80000000\nd: ABCDEF01\ne: 1234.5\nf: text\n");
  printed([](std::ostream& s) { s << std::hex; });
  printed([](std::ostream& s) { s << std::oct; });
  printed([](std::ostream& s) { s.setf(std::ios::hex | std::ios::dec); });
  printed([](std::ostream& s) { s << std::hex << std::showbase; });
  printed([](std::ostream& s) { s << std::showpos; });
  printed([](std::ostream& s) { s << std::unitbuf; });
  EXPECT_EQ(printed([](std::ostream& s) { s.width(8); }).substr(0, 13), "     a: 12345");
  struct Grouped : std::numpunct<char> {
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
    char do_decimal_point() const override { return ','; }
  };
  const std::locale grouped(std::locale::classic(), new Grouped);
  EXPECT_EQ(printed([&](std::ostream& s) { s.imbue(grouped); }).substr(0, 13), "a: 1.234.567\n");
}

// Also where the lines are put together for a whole table.
TEST(ReportLine, FillsAWidthAsTheStreamDoes) {
  for (const auto base : {std::ios::dec, std::ios::hex, std::ios::oct})
    for (const auto adjust : {std::ios::fmtflags(), std::ios::right, std::ios::left, std::ios::internal})
      for (const int value : {0, 10, 0x1FFF, -5, INT_MIN})
        for (const int width : {0, 4, 12}) {
          std::ostringstream by_operators;
          std::ostringstream by_line;
          std::ostringstream composed;
          for (std::ostream* stream : {&by_operators, &by_line, &composed}) {
            stream->flags(base | adjust);
            stream->fill('*');
          }
          by_operators << "a: " << std::setw(width) << value << std::endl;
          report::line(by_line, "a: ", value, width);
          detail::compose(composed, [&](std::ostream& stream) { report::line(stream, "a: ", value, width); });
          EXPECT_EQ(by_line.str(), by_operators.str());
          EXPECT_EQ(composed.str(), by_operators.str());
        }
}

TEST(ReportLine, GoesIntoTheStreamThatItIsGiven) {
  std::ostringstream outer;
  std::ostringstream other;
  detail::compose(outer, [&](std::ostream& inner) {
    report::line(inner, "a: ", 1);
    other.copyfmt(inner);
    report::line(other, "b: ", 2);
  });
  report::line(other, "c: ", 3);
  EXPECT_EQ(outer.str(), "a: 1\n");
  EXPECT_EQ(other.str(), "b: 2\nc: 3\n");
}

TEST(ReportLine, GroupsDigitsInAReportToo) {
  struct Grouped : std::numpunct<char> {
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
  };
  const std::locale grouped(std::locale::classic(), new Grouped);
  std::ostringstream stream;
  stream.imbue(grouped);
  detail::compose(stream, [](std::ostream& inner) {
    report::line(inner, "a: ", 1234567);
    inner.imbue(std::locale::classic());
    report::line(inner, "b: ", 1234567);
  });
  EXPECT_EQ(stream.str(), "a: 1.234.567\nb: 1234567\n");
  EXPECT_EQ(stream.getloc(), std::locale::classic());
}

TEST(ReportLine, HasNoLongestText) {
  for (const size_t size : {505u, 508u, 509u, 512u, 513u, 5000u}) {
    std::ostringstream stream;
    const std::string text(size, 'x');
    report::line(stream, "a: ", text);
    EXPECT_EQ(stream.str(), "a: " + text + "\n");
  }
}

TEST(ReportLine, IsFlushed) {
  struct Counting : std::stringbuf {
    int syncs = 0;
    int sync() override { return ++syncs, 0; }
  } buffer;
  std::ostream stream(&buffer);
  report::line(stream, "a: ", 1);
  EXPECT_EQ(buffer.syncs, 1);
  EXPECT_EQ(buffer.str(), "a: 1\n");
  stream.setstate(std::ios::failbit);
  report::line(stream, "b: ", 1);
  EXPECT_EQ(buffer.str(), "a: 1\n");
}
