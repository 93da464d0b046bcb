// The log: files beside the running executable, removed when a test is done.

#include "tests/support/log_file.h"
#include "tests/support/process.h"

#include <algorithm>
#include <chrono>
#include <climits>
#include <ctime>
#include <gtest/gtest.h>
#include <map>
#include <string_view>
#include <thread>

#include <quillon/sections/log.h>

using namespace quillon;
using namespace quillon::test;

namespace {

using Texts = std::vector<std::string>;

constexpr int kAllColumns = log_thread_id | log_process_id | log_type | log_level;
constexpr std::string_view kTime = "####.##.##,##:##:##,###,";
constexpr std::string_view kId = "\"0x????????\",";

// True if the text has the pattern's characters, # standing for a digit, ? for a hexadecimal one.
bool is_like(std::string_view text, std::string_view pattern) {
  constexpr std::string_view digits = "0123456789abcdef";
  return std::equal(text.begin(), text.end(), pattern.begin(), pattern.end(), [&](char c, char p) {
    const size_t digit = digits.find(c);
    return p == '#' ? digit < 10 : p == '?' ? digit < 16 : c == p;
  });
}

// What follows date, time and milliseconds in each line.
Texts tails(const TemporaryLog& log) {
  Texts out;
  for (const std::string& line : log.lines())
    out.push_back(is_like(line.substr(0, kTime.size()), kTime) ? line.substr(kTime.size())
                                                               : "not a record: " + line);
  return out;
}

std::string hexadecimal(unsigned value) {
  char text[16];
  std::snprintf(text, sizeof text, "\"0x%08x\"", value);
  return text;
}

}  // namespace

TEST(Log, WritesNothingBeforeItIsOpened) {
  // In a process of its own: in this one other tests may have opened it.
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EXIT(
      {
        const bool wants = log_wants(1);
        const int result = log_write(1, "unheard") + log_write(3, "unheard") + log_write(100, "unheard");
        std::exit(wants || result != 0 ? 1 : 0);
      },
      testing::ExitedWithCode(0), "");
}

TEST(Log, AlwaysGivesZero) {
  TemporaryLog log("log_results.csv");
  EXPECT_EQ(log.open(0, 5), 0);
  EXPECT_EQ(log_write(1, "x"), 0);
  EXPECT_EQ(log_write(0, "x"), 0);
  EXPECT_EQ(log_close(), 0);
  EXPECT_EQ(log_close(), 0);
  EXPECT_EQ(log_write(1, "x"), 0);
  EXPECT_EQ(log_open(0, 5, "no such folder/log.csv"), 0);
  EXPECT_EQ(log_write(1, "x"), 0);
}

TEST(Log, WritesRecordsUpToItsLevel) {
  const TemporaryLog log("log_levels.csv", log_create_always, 3);
  for (const int level : {INT_MIN, -1, 0, 1, 2, 3, 4, 100, INT_MAX}) log_write(level, "level %d", level);
  EXPECT_EQ(log.messages(), (Texts{"level 1", "level 2", "level 3"}));
  for (const int level : {1, 2, 3}) EXPECT_TRUE(log_wants(level));
  EXPECT_FALSE(log_wants(4));
}

TEST(Log, WritesNothingAtLevelZeroOrBelow) {
  for (const int level : {0, -1}) {
    const TemporaryLog log("log_zero.csv", log_create_always, level);
    for (const int record : {-2, -1, 0, 1}) log_write(record, "x");
    EXPECT_EQ(log.text(), "");
  }
}

TEST(Log, WritesNothingOnceItIsClosedUntilItIsOpenedAgain) {
  TemporaryLog log("log_closed.csv", 0, 3);
  log_write(1, "one");
  log_close();
  log_write(1, "two");
  log.open(0, 3);
  log_write(1, "three");
  EXPECT_EQ(log.messages(), (Texts{"one", "three"}));
}

TEST(Log, WritesNothingWhereItCannotBeOpened) {
  const TemporaryLog log("log_before.csv", 0, 3);
  log_open(0, 3, "no such folder/log.csv");
  log_write(1, "x");
  EXPECT_EQ(log.text(), "");  // the one open before is not the log any more
}

TEST(Log, HoldsOneFile) {
  TemporaryLog log("log_reopened.csv", 0, 3);
  const auto before = open_files();
  for (int i = 0; i < 5; ++i) log.open(0, 3);
  EXPECT_EQ(open_files(), before);
  log_close();
  EXPECT_EQ(open_files(), before - 1);
}

TEST(Log, ClosesTheOneThatWasOpen) {
  const TemporaryLog one("log_one.csv", 0, 3);
  const TemporaryLog two("log_two.csv", 0, 3);
  log_write(1, "x");
  EXPECT_EQ(one.text(), "");
  EXPECT_EQ(two.messages(), (Texts{"x"}));
}

// Header

TEST(Log, GivesANewFileNoHeader) {
  const TemporaryLog log("log_new.csv", log_header, 3);
  EXPECT_EQ(log.text(), "");
  log_write(1, "x");
  EXPECT_EQ(log.messages(), (Texts{"x"}));
  EXPECT_EQ(log.lines().size(), 1u);

  const TemporaryLog other("log_new_emptied.csv", log_header | log_create_always, 3);
  EXPECT_TRUE(other.exists());
  EXPECT_EQ(other.text(), "");
}

TEST(Log, WritesTheHeaderOverTheStartOfAFileThatWasThere) {
  TemporaryLog log("log_old.csv", log_header, 3);
  log_write(1, "first run");
  log_close();
  const std::string old = log.text() + std::string(200, '#');
  log.put(old);
  log.open(log_header, 3);
  const std::string header = "Date,Time,Milliseconds,Description\r\n\r\n";
  EXPECT_EQ(log.text(), header + old.substr(header.size()));
  log_write(1, "second run");
  const std::string text = log.text();
  EXPECT_EQ(text.size(), old.size());  // written over what was there
  const std::string record = std::string(kTime) + "\"second run\"\r\n";
  EXPECT_TRUE(is_like(text.substr(header.size(), record.size()), record)) << text;
  EXPECT_EQ(text.substr(text.size() - 100), std::string(100, '#'));
}

TEST(Log, WritesTheHeaderIntoAFileThatIsEmptied) {
  TemporaryLog log("log_emptied.csv");
  log.put(std::string(1000, '#'));
  log.open(log_header | log_create_always, 3);
  EXPECT_EQ(log.text(), "Date,Time,Milliseconds,Description\r\n\r\n");
  log_write(2, "x");
  EXPECT_EQ(log.lines().size(), 3u);
  EXPECT_EQ(log.messages(), (Texts{"x"}));
}

TEST(Log, EmptiesAFileWithoutWritingAHeader) {
  TemporaryLog log("log_emptied_only.csv");
  log.put("what was there");
  log.open(log_create_always, 3);
  EXPECT_EQ(log.text(), "");
}

TEST(Log, AddsToAFileThatWasThere) {
  TemporaryLog log("log_added.csv");
  log.put("what was there\r\n");
  log.open(0, 3);
  log_write(1, "one");
  log_close();
  log.open(kAllColumns & ~log_thread_id, 3);
  log_write(1, "two");
  const Texts lines = log.lines();
  ASSERT_EQ(lines.size(), 3u);
  EXPECT_EQ(lines[0], "what was there");
}

TEST(Log, NamesItsColumnsInTheirOrder) {
  const struct {
    int flags;
    const char* header;
  } rows[] = {
      {0, "Date,Time,Milliseconds,Description"},
      {log_process_id, "Date,Time,Milliseconds,Process ID,Description"},
      {log_thread_id, "Date,Time,Milliseconds,Thread ID,Description"},
      {log_level, "Date,Time,Milliseconds,Log level,Description"},
      {log_type, "Date,Time,Milliseconds,Log type,Description"},
      {log_type | log_level, "Date,Time,Milliseconds,Log level,Log type,Description"},
      {kAllColumns, "Date,Time,Milliseconds,Process ID,Thread ID,Log level,Log type,Description"},
      {0x01 | 0x10 | 0x20 | 0x200 | 0x4000, "Date,Time,Milliseconds,Description"},  // no meaning
  };
  for (const auto& row : rows) {
    TemporaryLog log("log_columns.csv");
    log.put("");
    log.open(row.flags | log_header, 3);
    EXPECT_EQ(log.text(), std::string(row.header) + "\r\n\r\n");
  }
}

// Records

TEST(Log, HasTheColumnsThatItsFlagsAskFor) {
  const std::string process = hexadecimal(platform::process_id()) + ",";
  const std::string thread = hexadecimal(platform::thread_id()) + ",";
  const struct {
    int flags;
    std::string tail;
  } rows[] = {
      {0, "\"a 5\""},
      {log_process_id, process + "\"a 5\""},
      {log_thread_id, thread + "\"a 5\""},
      {log_level, "2,\"a 5\""},
      {log_type, "\"warning\",\"a 5\""},
      {log_process_id | log_level, process + "2,\"a 5\""},
      {kAllColumns, process + thread + "2,\"warning\",\"a 5\""},
  };
  for (const auto& row : rows) {
    const TemporaryLog log("log_record.csv", row.flags | log_create_always, 3);
    log_write(2, "%c %d", 'a', 5);
    EXPECT_EQ(tails(log), Texts{row.tail}) << row.flags;
    EXPECT_EQ(log.text().substr(log.text().size() - 2), "\r\n");
  }
}

TEST(Log, PadsTheWordOfALevel) {
  const TemporaryLog log("log_words.csv", log_create_always | log_type, 5);
  for (const int level : {1, 2, 3, 4, 5}) log_write(level, "x");
  EXPECT_EQ(tails(log), (Texts{"\"error  \",\"x\"", "\"warning\",\"x\"", "\"info   \",\"x\"",
                               "\"info   \",\"x\"", "\"info   \",\"x\""}));
}

TEST(Log, PrintsALevelAsABareDecimal) {
  const TemporaryLog log("log_numbers.csv", log_create_always | log_level, 1000);
  log_write(1, "x");
  log_write(1000, "x");
  EXPECT_EQ(tails(log), (Texts{"1,\"x\"", "1000,\"x\""}));
}

TEST(Log, TellsTheLocalTime) {
  using Clock = std::chrono::system_clock;
  const TemporaryLog log("log_time.csv", log_create_always, 3);
  const auto before = std::chrono::floor<std::chrono::milliseconds>(Clock::now());
  log_write(1, "x");
  const auto after = Clock::now();
  std::tm t{};
  int milliseconds = -1;
  ASSERT_EQ(std::sscanf(log.text().c_str(), "%4d.%2d.%2d,%2d:%2d:%2d,%3d,\"x\"", &t.tm_year, &t.tm_mon,
                        &t.tm_mday, &t.tm_hour, &t.tm_min, &t.tm_sec, &milliseconds),
            7);
  t.tm_year -= 1900;
  t.tm_mon -= 1;
  t.tm_isdst = -1;
  const auto told = Clock::from_time_t(std::mktime(&t)) + std::chrono::milliseconds(milliseconds);
  EXPECT_LE(before, told);
  EXPECT_LE(told, after);
}

TEST(Log, DoesNotEscapeQuotes) {
  const TemporaryLog log("log_quotes.csv", log_create_always, 3);
  log_write(1, "say \"%s\", 100%%", "a,b");
  EXPECT_EQ(tails(log), (Texts{"\"say \"a,b\", 100%\""}));
}

TEST(Log, WritesAnEmptyMessage) {
  const TemporaryLog log("log_empty.csv", log_create_always, 3);
  log_write(1, "%s", "");
  EXPECT_EQ(tails(log), (Texts{"\"\""}));
}

TEST(Log, CutsALongMessageAndKeepsTheQuoteAndTheLineEnd) {
  const TemporaryLog log("log_long.csv", log_create_always, 3);
  const size_t prefix = kTime.size() + 1;
  const size_t room = 4095 - prefix - 3;
  size_t written = 0;
  for (const size_t size :
       {room - 1, room, room + 1, room + 2, room + 3, room + 4, size_t{4096}, size_t{5000}, size_t{100000}}) {
    log_write(1, "%s", std::string(size, 'm').c_str());
    const std::string all = log.text();
    const std::string record = all.substr(written);
    written = all.size();
    ASSERT_EQ(record.size(), prefix + std::min(size, room) + 3) << size;
    EXPECT_EQ(record.substr(prefix), std::string(std::min(size, room), 'm') + "\"\r\n") << size;
  }
}

TEST(Log, KeepsTheRecordsOfSeveralThreadsWhole) {
  const TemporaryLog log("log_threads.csv", log_create_always | log_thread_id, 3);
  std::vector<std::thread> threads;
  for (int i = 0; i < 4; ++i)
    threads.emplace_back([i] {
      for (int k = 0; k < 200; ++k) log_write(1, "thread %d record %d of them", i, k);
    });
  for (std::thread& thread : threads) thread.join();
  // Each thread's records are there, whole and in their order.
  std::map<std::string, int> next;
  for (const std::string& line : tails(log)) {
    const size_t text = kId.size();
    ASSERT_TRUE(is_like(line.substr(0, text), kId)) << line;
    int thread = -1;
    int number = -1;
    ASSERT_EQ(std::sscanf(line.c_str() + text, "\"thread %d record %d of them\"", &thread, &number), 2)
        << line;
    EXPECT_EQ(next[line.substr(0, text) + std::to_string(thread)]++, number);
  }
  EXPECT_EQ(next.size(), 4u);
  for (const auto& [id, records] : next) EXPECT_EQ(records, 200);
}
