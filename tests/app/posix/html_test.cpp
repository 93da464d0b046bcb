// The page of a large input, where memory is limited.

#include "tests/app/program.h"
#include "tests/support/packets.h"

using namespace quillon::test;

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool sanitized = true;
#elif defined(__has_feature)
constexpr bool sanitized = __has_feature(address_sanitizer) || __has_feature(thread_sanitizer);
#else
constexpr bool sanitized = false;
#endif

TEST_F(Program, MakesAPageOfALargeInputInLittleMemory) {
  if (sanitized) GTEST_SKIP() << "the memory of a sanitizer takes more than the limit";
  // Twelve megabytes of events, of 3,000 services that no table names.
  Bytes stream;
  for (int service = 0; service < 3000; ++service) {
    const auto low = static_cast<uint8_t>(service);
    Bytes body = {static_cast<uint8_t>(service >> 8), low, 0x00, 0x01, 0x00, 0x50};
    for (int event = 0; event < 90; ++event) {
      const Bytes title = descriptor(0x4D, joined({text("eng"), counted("An event"), counted("")}));
      const Bytes row = {
          static_cast<uint8_t>(event),       low, 0xEB, 0x11, 0x12, 0x30, 0x00, 0x00, 0x30, 0x00, 0x80,
          static_cast<uint8_t>(title.size())};
      body.insert(body.end(), row.begin(), row.end());
      body.insert(body.end(), title.begin(), title.end());
    }
    const Bytes more = packets({long_section(0x50, body, {.extension = service})}, {.pid = 0x12});
    stream.insert(stream.end(), more.begin(), more.end());
  }
  file("s.ts", stream);
  const Result result = run("html s.ts -o s.html", "ulimit -v 250000 && ");
  EXPECT_EQ(result.code, 0) << result.messages;
  const std::string page = whole(folder_ / "s.html");
  EXPECT_LT(page.size(), 5'000'000u);
  EXPECT_NE(page.find("are left out."), std::string::npos);
}
