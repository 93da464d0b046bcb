// The headers of long and short sections, their parse and their report.

#include "tests/sections/psi_tables.h"
#include "tests/support/faces.h"

#include <algorithm>
#include <climits>
#include <functional>
#include <iomanip>
#include <optional>
#include <sstream>

#include <quillon/sections/crc.h>

using namespace quillon;
using namespace quillon::test;

namespace {

template <class Action>
std::optional<error> caught(Action action) {
  try {
    action();
  } catch (const error& e) {
    return e;
  }
  return std::nullopt;
}

// A wrong header bit: code 2, no text, and the low 32 bits of the byte's address.
template <class Action>
void expect_wrong_bit(const uint8_t* where, Action action) {
  const auto failure = caught(action);
  ASSERT_TRUE(failure);
  EXPECT_EQ(failure->get_code(), 2);
  EXPECT_STREQ(failure->what(), "");
  EXPECT_EQ(failure->get_extra(), static_cast<uint32_t>(reinterpret_cast<uintptr_t>(where)));
}

}  // namespace

TEST(PsiTableBase, ReadsItsHeader) {
  const Bytes section = sample_section();
  LongTable table;
  EXPECT_FALSE(table.is_parsed());
  table.Parse(section.data(), false);
  EXPECT_EQ(table.steps, "syntax indicator 1\nreserved 2\ntable id 66\nparse\n");
  EXPECT_TRUE(table.is_parsed());
  EXPECT_EQ(table.get_table_id(), 0x42);
  EXPECT_EQ(table.get_section_length(), 14);
  EXPECT_EQ(table.get_context_id(), 0xFEDC);
  EXPECT_EQ(table.get_version_number(), 0x15);
  EXPECT_EQ(table.get_current_next_indicator(), 0);
  EXPECT_EQ(table.get_section_number(), 0x5A);
  EXPECT_EQ(table.get_last_section_number(), 0xA5);
  EXPECT_EQ(table.get_crc32(), ByteView(section.data()).u32(13));
  EXPECT_EQ(table.get_section_end(), section.data() + 17);
  EXPECT_EQ(table.body_size(), 5);
  EXPECT_EQ(table.body, section.data() + 8);
  EXPECT_EQ(table.body_bytes, 5 + 4);
  EXPECT_TRUE(table.get_section_raw_bytes().empty());
  EXPECT_EQ(table.get_section_ptr_by_desc_pos(0), nullptr);
}

TEST(PsiTableBase, TakesEachHeaderBitForItsField) {
  for (size_t bit = 24; bit < 64; ++bit)
    for (const uint8_t ground : Bytes{0x00, 0xFF}) {
      Bytes section = sample_section();
      std::fill(section.begin() + 3, section.begin() + 8, ground);
      section[bit / 8] = static_cast<uint8_t>(section[bit / 8] ^ 0x80 >> bit % 8);
      repair_crc(section);
      LongTable table;
      table.Parse(section.data(), false);
      EXPECT_EQ(table.get_context_id(), section[3] << 8 | section[4]) << bit;
      EXPECT_EQ(table.get_version_number(), section[5] >> 1 & 0x1F) << bit;
      EXPECT_EQ(table.get_current_next_indicator(), section[5] & 1) << bit;
      EXPECT_EQ(table.get_section_number(), section[6]) << bit;
      EXPECT_EQ(table.get_last_section_number(), section[7]) << bit;
    }
}

TEST(PsiTableBase, KeepsTheWholeSectionWhenToldTo) {
  Bytes section = sample_section();
  const Bytes original = section;
  LongTable table;
  table.Parse(section.data(), true);
  EXPECT_EQ(table.steps, "syntax indicator 1\nreserved 2\ntable id 66\nparse and keep\n");
  section.assign(section.size(), 0);
  EXPECT_EQ(table.get_section_raw_bytes(), original);
  const uint8_t* const raw = table.get_section_raw_bytes().data();
  EXPECT_EQ(table.get_section_ptr_by_desc_pos(0), raw + 8);
  EXPECT_EQ(table.get_section_ptr_by_desc_pos(8), raw + 16);
  for (const int outside : {9, INT_MAX, -9, INT_MIN})
    EXPECT_EQ(table.get_section_ptr_by_desc_pos(outside), nullptr) << outside;
}

TEST(PsiTableBase, TestsTheCrcBeforeAllElse) {
  Bytes section = sample_section();
  section[0] = 0x43;
  section[1] = static_cast<uint8_t>(section[1] & 0x7F);
  LongTable table;
  table.refuses = {"table id 67"};
  EXPECT_EQ(failure([&] { table.Parse(section.data(), true); }), "-1: crc error");
  EXPECT_EQ(table.steps, "");
  EXPECT_EQ(table.get_section_length(), 14);
  EXPECT_EQ(table.get_table_id(), 0);
  EXPECT_EQ(table.get_section_end(), nullptr);
  EXPECT_TRUE(table.get_section_raw_bytes().empty());
  EXPECT_FALSE(table.is_parsed());
}

TEST(PsiTableBase, NeedsTheSyntaxIndicatorWhateverThePredicateSays) {
  Bytes section = sample_section();
  section[1] = static_cast<uint8_t>(section[1] & 0x7F);
  repair_crc(section);
  LongTable table;
  expect_wrong_bit(section.data(), [&] { table.Parse(section.data(), true); });
  EXPECT_EQ(table.steps, "");
  EXPECT_EQ(table.get_section_raw_bytes(), section);
  EXPECT_EQ(table.get_section_end(), section.data() + section.size());
  EXPECT_EQ(table.get_table_id(), 0);
  EXPECT_FALSE(table.is_parsed());
}

TEST(PsiTableBase, AsksThePredicatesOneAfterTheOther) {
  const Bytes section = sample_section();
  LongTable table;
  table.refuses = {"syntax indicator 1", "reserved 2", "table id 66", "parse"};
  expect_wrong_bit(section.data() + 1, [&] { table.Parse(section.data(), true); });
  EXPECT_EQ(table.steps, "syntax indicator 1\n");
  EXPECT_EQ(table.get_section_raw_bytes(), section);

  table.refuses.erase("syntax indicator 1");
  table.steps.clear();
  expect_wrong_bit(section.data() + 1, [&] { table.Parse(section.data(), true); });
  EXPECT_EQ(table.steps, "syntax indicator 1\nreserved 2\n");
  EXPECT_EQ(table.get_table_id(), 0);

  table.refuses.erase("reserved 2");
  table.steps.clear();
  EXPECT_EQ(failure([&] { table.Parse(section.data(), true); }), "-1: invalid table id");
  EXPECT_EQ(table.steps, "syntax indicator 1\nreserved 2\ntable id 66\n");
  EXPECT_EQ(table.get_table_id(), 0x42);
  EXPECT_EQ(table.get_context_id(), 0);
  EXPECT_EQ(table.get_crc32(), 0U);

  table.refuses.erase("table id 66");
  table.steps.clear();
  EXPECT_EQ(failure([&] { table.Parse(section.data(), false); }), "0: ");
  EXPECT_EQ(table.steps, "syntax indicator 1\nreserved 2\ntable id 66\nparse\n");
  EXPECT_EQ(table.get_context_id(), 0xFEDC);
  EXPECT_EQ(table.get_crc32(), ByteView(section.data()).u32(13));
  EXPECT_FALSE(table.is_parsed());
}

TEST(PsiTableBase, HandsTheReservedBitsOver) {
  for (int reserved = 0; reserved < 4; ++reserved) {
    LongTable table;
    table.Parse(sample_section(reserved).data(), false);
    EXPECT_NE(table.steps.find("reserved " + std::to_string(reserved) + "\n"), std::string::npos);
  }
}

TEST(PsiTableBase, StaysParsedWhenALaterParseFails) {
  LongTable table;
  table.Parse(sample_section().data(), true);
  Bytes bad = sample_section();
  bad.back() ^= 0x80;
  EXPECT_EQ(failure([&] { table.Parse(bad.data(), false); }), "-1: crc error");
  EXPECT_TRUE(table.is_parsed());
  EXPECT_EQ(table.get_section_raw_bytes(), sample_section());
  table.steps.clear();
  table.reset();
  EXPECT_EQ(table.steps, "reset\n");
  EXPECT_FALSE(table.is_parsed());
  EXPECT_EQ(table.get_table_id(), 0x42);
}

TEST(PsiTableBase, ReadsNothingBehindTheSizeItIsGiven) {
  const Bytes section = sample_section();
  for (size_t size = 0; size < section.size(); ++size) {
    const Bytes cut(section.begin(), section.begin() + static_cast<ptrdiff_t>(size));
    LongTable table;
    EXPECT_EQ(failure([&] { table.Parse(cut.data(), cut.size(), true); }),
              "-1: section is shorter than its section_length");
    EXPECT_EQ(table.get_section_length(), 0);
    EXPECT_EQ(table.steps, "");
  }
  LongTable table;
  table.Parse(section.data(), section.size(), true);
  EXPECT_EQ(table.get_section_raw_bytes(), section);
  Bytes longer = section;
  longer.push_back(0xFF);
  table.Parse(longer.data(), longer.size(), true);
  EXPECT_EQ(table.get_section_raw_bytes(), section);
}

// A right CRC can be where the header is, though not where the length does: there is none in up to two
// bytes after the length, by chance one in three, always one in four and more.
TEST(PsiTableBase, ReadsSectionsThatAreShorterThanTheirHeader) {
  int right = 0;
  for (int length = 0; length <= 3; ++length)
    for (int table_id = 0; table_id <= 255; ++table_id)
      for (int flags = 0; flags < 16; ++flags) {
        Bytes section = bits({{8, static_cast<uint64_t>(table_id), "table_id"},
                              {4, static_cast<uint64_t>(flags), "flags"},
                              {12, static_cast<uint64_t>(length), "section_length"}});
        section.resize(static_cast<size_t>(length) + 3);
        const Bytes unrepaired = section;
        repair_crc(section);
        // What repair_crc writes over the length is only of use where it writes the same.
        const bool same_head = std::equal(unrepaired.begin(), unrepaired.begin() + 3, section.begin());
        const bool good = section_crc(section.data(), section.size()) == good_section_crc;
        if (!same_head || !good) {
          LongTable table;
          EXPECT_EQ(failure([&] { table.Parse(unrepaired.data(), unrepaired.size(), true); }),
                    "-1: crc error");
          continue;
        }
        ++right;
        EXPECT_EQ(length, 3);
        LongTable table;
        const std::string expected = flags & 8 ? "nothing" : "2: ";
        EXPECT_EQ(failure([&] { table.Parse(section.data(), section.size(), true); }), expected);
        EXPECT_EQ(table.get_section_raw_bytes(), section);
      }
  EXPECT_EQ(right, 16);

  // The header's fields are read as far as there are bytes; the CRC begins at byte section_length - 1.
  const Bytes whole = {0x9B, 0x80, 0x03, 0xC5, 0xDB, 0x99};
  LongTable three;
  three.Parse(whole.data(), whole.size(), true);
  EXPECT_EQ(three.get_table_id(), 0x9B);
  EXPECT_EQ(three.get_context_id(), 0xC5DB);
  EXPECT_EQ(three.get_version_number(), 0x99 >> 1 & 0x1F);
  EXPECT_EQ(three.get_current_next_indicator(), 1);
  EXPECT_EQ(three.get_section_number(), 0);
  EXPECT_EQ(three.get_last_section_number(), 0);
  EXPECT_EQ(three.get_crc32(), 0x03C5DB99U);
  EXPECT_EQ(three.body_bytes, 0);
  EXPECT_EQ(three.body_size(), -6);
  EXPECT_EQ(three.get_section_ptr_by_desc_pos(0), nullptr);
  EXPECT_EQ(three.get_section_ptr_by_desc_pos(-3), three.get_section_raw_bytes().data() + 5);

  for (int length = 4; length <= 12; ++length) {
    Bytes section = sample_section();
    section[2] = static_cast<uint8_t>(length);
    section.resize(static_cast<size_t>(length) + 3);
    repair_crc(section);
    const auto byte = [&section](size_t i) { return i < section.size() ? section[i] : 0; };
    LongTable table;
    table.Parse(section.data(), section.size(), true);
    EXPECT_EQ(table.get_context_id(), byte(3) << 8 | byte(4)) << length;
    EXPECT_EQ(table.get_version_number(), byte(5) >> 1 & 0x1F) << length;
    EXPECT_EQ(table.get_section_number(), byte(6)) << length;
    EXPECT_EQ(table.get_last_section_number(), byte(7)) << length;
    EXPECT_EQ(table.get_crc32(), ByteView(section.data()).u32(length - 1)) << length;
    EXPECT_EQ(table.body_bytes, length > 5 ? length - 5 : 0) << length;
    EXPECT_EQ(table.get_section_end(), section.data() + length + 3) << length;
  }
}

TEST(PsiTableBase, ReadsTheLongestSection) {
  const Bytes section = long_section(0x42, Bytes(4095 - 9, 0x77));
  LongTable table;
  table.Parse(section.data(), section.size(), true);
  EXPECT_EQ(table.get_section_length(), 4095);
  EXPECT_EQ(table.get_section_raw_bytes().size(), 4098U);
  EXPECT_EQ(table.get_section_ptr_by_desc_pos(4089), &table.get_section_raw_bytes().back());
}

TEST(PsiTableBase, PrintsItsHeaderAndLeavesTheStreamAsItsTablesLikeIt) {
  Header header;
  header.version = 9;
  header.section_number = 5;
  header.last_section_number = 5;
  LongTable table;
  table.Parse(long_section(0x42, {}, header).data(), false);
  std::string expected =
      "table name: long table\n"
      "table_id 42\n"
      "section_length 0009\n"
      "context_id 1234\n"
      "version_number 09\n"
      "section_number 05\n"
      "last_section_number 5\n"
      "current_next_indicator 01\n"
      "crc32 CRC\n"
      "AF00A\n";
  std::ostringstream crc;
  crc << std::hex << std::uppercase << std::setfill('0') << std::setw(8) << table.get_crc32();
  expected.replace(expected.find("CRC"), 3, crc.str());
  EXPECT_EQ(report(table), expected);

  std::ostringstream stream;
  stream << std::oct << std::left << std::showbase << std::setfill('*');
  stream << std::noshowbase;
  table.dump_state(stream);
  EXPECT_EQ(stream.str(), expected);
  EXPECT_EQ(stream.flags() & std::ios_base::basefield, std::ios_base::hex);
  EXPECT_EQ(stream.flags() & std::ios_base::adjustfield, std::ios_base::right);
  EXPECT_TRUE(stream.flags() & std::ios_base::uppercase);
  EXPECT_TRUE(stream.flags() & std::ios_base::unitbuf);
  EXPECT_EQ(stream.fill(), '0');
}

namespace {

// Prints by a function.
class Printing final : public PsiBase {
 public:
  explicit Printing(std::function<void(std::ostream&)> print) : print_(std::move(print)) {}
  const char* get_table_id_text() const override { return "printing"; }

 private:
  bool is_syntax_indicator_valid(int) const override { return true; }
  void _reset() override {}
  void _dump_state(std::ostream& stream) const override { print_(stream); }
  void _parse(void*) override {}
  void _parse(ByteView, bool) override {}
  bool _save_section(void*, void*) const override { return true; }
  bool is_valid_tablesid() const override { return true; }

  std::function<void(std::ostream&)> print_;
};

// Counts what a stream does with it, and takes no more bytes than it is told.
class CountingBuffer : public std::stringbuf {
 public:
  explicit CountingBuffer(size_t most = std::string::npos) : most_(most) {}
  int insertions = 0;
  int flushes = 0;

 private:
  std::streamsize xsputn(const char* text, std::streamsize size) override {
    ++insertions;
    if (view().size() + static_cast<size_t>(size) > most_) return 0;
    return std::stringbuf::xsputn(text, size);
  }
  int sync() override { return ++flushes, 0; }

  size_t most_;
};

std::string lines(int count) {
  std::string out;
  for (int i = 0; i < count; ++i) out += "line " + std::to_string(i) + "\n";
  return out;
}

void print_lines(std::ostream& stream, int count) {
  for (int i = 0; i < count; ++i) stream << "line " << i << std::endl;
}

}  // namespace

TEST(TableReport, IsInsertedAndFlushedAtOnce) {
  CountingBuffer buffer;
  std::ostream stream(&buffer);
  Printing([](std::ostream& inner) { print_lines(inner, 100); }).dump_state(stream);
  EXPECT_EQ(buffer.str(), lines(100));
  EXPECT_EQ(buffer.insertions, 1);
  EXPECT_EQ(buffer.flushes, 1);
}

TEST(TableReport, HasNoGreatestSize) {
  CountingBuffer buffer;
  std::ostream stream(&buffer);
  const std::string text(20000, 'x');
  Printing([&](std::ostream& inner) {
    print_lines(inner, 5000);
    inner << text;
    inner.put('y');
    print_lines(inner, 3);
  }).dump_state(stream);
  EXPECT_EQ(buffer.str(), lines(5000) + text + "y" + lines(3));
  EXPECT_LT(buffer.insertions, 12);
}

TEST(TableReport, TakesTheFormatOfItsStreamAndLeavesItsOwn) {
  std::ostringstream tied;
  std::ostringstream stream;
  stream << std::hex << std::showbase << std::setfill('*') << std::setw(6);
  stream.tie(&tied);
  stream.precision(3);
  Printing([](std::ostream& inner) {
    inner << 255 << " " << 1.23456 << "\n";
    inner << std::dec << std::noshowbase << std::left << std::setprecision(5) << std::setfill('-');
  }).dump_state(stream);
  EXPECT_EQ(stream.str(), "**0xff 1.23\n");
  EXPECT_EQ(stream.width(), 0);
  EXPECT_EQ(stream.tie(), &tied);
  EXPECT_EQ(stream.flags() & std::ios_base::unitbuf, 0);
  stream << std::setw(4) << 10 << 1.23456;
  EXPECT_EQ(stream.str(), "**0xff 1.23\n10--1.2346");
}

TEST(TableReport, MayHoldAnother) {
  std::ostringstream stream;
  const Printing inner([](std::ostream& at) { print_lines(at, 2); });
  Printing([&](std::ostream& outer) {
    outer << "before\n" << std::hex;
    inner.dump_state(outer);
    outer << 255 << "\n";
  }).dump_state(stream);
  EXPECT_EQ(stream.str(), "before\n" + lines(2) + "ff\n");
}

TEST(TableReport, IsThereUntilItsFailure) {
  std::ostringstream stream;
  const Printing table([](std::ostream& inner) {
    print_lines(inner, 2);
    throw error("printing failed");
  });
  EXPECT_EQ(std::string(caught([&] { table.dump_state(stream); })->what()), "printing failed");
  EXPECT_EQ(stream.str(), lines(2));
}

TEST(TableReport, TellsTheFirstOfTwoFailures) {
  const Printing table([](std::ostream& inner) {
    print_lines(inner, 2);
    throw error("printing failed");
  });
  CountingBuffer full(0);
  std::ostream stream(&full);
  stream.exceptions(std::ios::badbit);
  EXPECT_EQ(std::string(caught([&] { table.dump_state(stream); })->what()), "printing failed");
}

TEST(TableReport, TakesSingleCharacters) {
  std::ostringstream stream;
  Printing([](std::ostream& inner) {
    for (int i = 0; i < 100'000; ++i) inner.put(static_cast<char>('a' + i % 26));
    inner << 'c' << std::endl;
  }).dump_state(stream);
  const std::string printed = stream.str();
  ASSERT_EQ(printed.size(), 100'002u);
  EXPECT_EQ(printed.substr(51 * 26, 26), "abcdefghijklmnopqrstuvwxyz");
  EXPECT_EQ(printed.substr(100'000), "c\n");
}

TEST(TableReport, TellsThatItsStreamIsFull) {
  const Printing table([](std::ostream& inner) { print_lines(inner, 5000); });
  CountingBuffer small(100);
  std::ostream stream(&small);
  table.dump_state(stream);
  EXPECT_TRUE(stream.bad());

  CountingBuffer other(100);
  std::ostream throwing(&other);
  throwing.exceptions(std::ios::badbit);
  EXPECT_THROW(table.dump_state(throwing), std::ios_base::failure);
  EXPECT_EQ(throwing.exceptions(), std::ios::badbit);
}

TEST(PsiBase, ReadsItsHeader) {
  const Bytes section = short_section(0x70, kBody);
  ShortTable table;
  EXPECT_FALSE(table.is_parsed());
  table.Parse(section.data(), false);
  EXPECT_EQ(table.steps, "syntax indicator 0\ntable id 112\nparse\n");
  EXPECT_TRUE(table.is_parsed());
  EXPECT_EQ(table.get_table_id(), 0x70);
  EXPECT_EQ(table.get_section_length(), 5);
  EXPECT_EQ(table.body, section.data() + 3);
  EXPECT_EQ(table.body_bytes, 5);
  EXPECT_TRUE(table.get_section_raw_bytes().empty());
  table.Parse(section.data(), true);
  EXPECT_EQ(table.get_section_raw_bytes(), section);
  table.steps.clear();
  table.reset();
  EXPECT_EQ(table.steps, "reset\n");
  EXPECT_FALSE(table.is_parsed());
  EXPECT_EQ(table.get_section_length(), 5);
}

TEST(PsiBase, LeavesTheSyntaxIndicatorToItsPredicate) {
  const Bytes section = short_section(0x70, kBody, 1);
  ShortTable table;
  table.Parse(section.data(), true);
  EXPECT_EQ(table.steps, "syntax indicator 1\ntable id 112\nparse and keep\n");
  ShortTable strict;
  strict.refuses = {"syntax indicator 1"};
  expect_wrong_bit(section.data(), [&] { strict.Parse(section.data(), true); });
  EXPECT_EQ(strict.steps, "syntax indicator 1\n");
  EXPECT_EQ(strict.get_table_id(), 0);
  EXPECT_TRUE(strict.get_section_raw_bytes().empty());
}

TEST(PsiBase, HasALengthOfTenBits) {
  for (const int length : {0, 1, 255, 256, 1023}) {
    const Bytes section = short_section(0x70, Bytes(static_cast<size_t>(length), 0x33));
    ShortTable table;
    table.Parse(section.data(), section.size(), true);
    EXPECT_EQ(table.get_section_length(), length);
    EXPECT_EQ(table.get_section_raw_bytes(), section);
    EXPECT_EQ(table.body_bytes, length);
  }
  for (const int length : {1024, 2048, 4095}) {
    const Bytes section = short_section(0x70, Bytes(static_cast<size_t>(length)));
    ShortTable table;
    expect_wrong_bit(section.data() + 1, [&] { table.Parse(section.data(), section.size(), true); });
    EXPECT_EQ(table.steps, "syntax indicator 0\n");
    EXPECT_EQ(table.get_table_id(), 0);
    EXPECT_EQ(table.get_section_length(), 0);
    EXPECT_TRUE(table.get_section_raw_bytes().empty());
  }
}

TEST(PsiBase, AsksForTheTableIdBeforeItStoresTheLength) {
  const Bytes section = short_section(0x71, kBody);
  ShortTable table;
  table.refuses = {"table id 113"};
  EXPECT_EQ(failure([&] { table.Parse(section.data(), true); }), "-1: invalid table id");
  EXPECT_EQ(table.get_table_id(), 0x71);
  EXPECT_EQ(table.get_section_length(), 0);
  EXPECT_TRUE(table.get_section_raw_bytes().empty());
  EXPECT_FALSE(table.is_parsed());

  table.refuses = {"parse and keep"};
  EXPECT_EQ(failure([&] { table.Parse(section.data(), true); }), "0: ");
  EXPECT_EQ(table.get_section_raw_bytes(), section);
  EXPECT_FALSE(table.is_parsed());
}

TEST(PsiBase, ReadsNothingBehindTheSizeItIsGiven) {
  const Bytes section = short_section(0x70, kBody);
  for (size_t size = 0; size < section.size(); ++size) {
    const Bytes cut(section.begin(), section.begin() + static_cast<ptrdiff_t>(size));
    ShortTable table;
    EXPECT_EQ(failure([&] { table.Parse(cut.data(), cut.size(), false); }),
              "-1: section is shorter than its section_length");
    EXPECT_EQ(table.steps, "");
  }
}

TEST(PsiBase, PrintsItsLinesInTheStateOfTheStream) {
  ShortTable table;
  table.Parse(short_section(0x70, Bytes(26)).data(), false);
  EXPECT_EQ(report(table), "table_id: 112\nsection_length: 26\n");
  std::ostringstream stream;
  stream << std::hex << std::uppercase;
  const auto flags = stream.flags();
  table.dump_state(stream);
  EXPECT_EQ(stream.str(), "table_id: 70\nsection_length: 1A\n");
  EXPECT_EQ(stream.flags(), flags);
  EXPECT_EQ(stream.fill(), ' ');
}
