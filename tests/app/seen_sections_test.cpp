// The sections that the program has met, against streams made to make its look-ups slow.

#include "apps/quillon/seen_sections.h"

#include "tests/support/bytes.h"

#include <cstring>
#include <functional>
#include <set>

using namespace quillon;
using namespace quillon::test;

namespace {

bool add(app::SeenSections& seen, int pid, const Bytes& bytes) {
  return seen.add({pid, 1, bytes.data(), bytes.size()});
}

// The steps of the hash without a key that standard libraries have for strings (MurmurHash64A), and back.
constexpr uint64_t kFactor = 0xC6A4A7935BD1E995;

constexpr uint64_t inverse(uint64_t odd) {
  uint64_t out = odd;
  for (int i = 0; i < 6; ++i) out *= 2 - odd * out;
  return out;
}

uint64_t mixed(uint64_t word) {
  word *= kFactor;
  word ^= word >> 47;
  return word * kFactor;
}
uint64_t unmixed(uint64_t word) {
  word *= inverse(kFactor);
  word ^= word >> 47;
  return word * inverse(kFactor);
}

// Texts "256:" and a section of 20 bytes, all of one hash without a key: of the three words the second is
// free, and the third makes up for it.
std::vector<std::string> colliding_texts(size_t count) {
  constexpr uint64_t kSeed = 0xC70F6907;
  uint64_t words[3];
  std::memcpy(&words[0], "256:\x4E\xF0\x11\x00", sizeof words[0]);
  const uint64_t start = ((kSeed ^ sizeof words * kFactor) ^ mixed(words[0])) * kFactor;
  const uint64_t end = 0x0123456789ABCDEF;
  std::vector<std::string> out;
  for (uint64_t i = 0; i < count; ++i) {
    words[1] = i;
    const uint64_t state = (start ^ mixed(words[1])) * kFactor;
    words[2] = unmixed(state ^ end);
    out.emplace_back(reinterpret_cast<const char*>(words), sizeof words);
  }
  return out;
}

}  // namespace

TEST(SeenSections, KnowsWhatItHasMet) {
  app::SeenSections seen;
  const Bytes one = long_section(0x42, Bytes(20, 1));
  const Bytes other = long_section(0x42, Bytes(20, 2));
  EXPECT_TRUE(add(seen, 0x11, one));
  EXPECT_FALSE(add(seen, 0x11, one));
  EXPECT_TRUE(add(seen, 0x11, other));
  EXPECT_TRUE(add(seen, 0x12, one));
  EXPECT_TRUE(add(seen, -1, one));
  for (const int pid : {0x11, 0x12, -1}) EXPECT_FALSE(add(seen, pid, one));
  EXPECT_TRUE(add(seen, 0x11, {}));
  EXPECT_FALSE(add(seen, 0x11, {}));
}

TEST(SeenSections, AreFoundQuicklyWhateverTheyHold) {
  const std::vector<std::string> texts = colliding_texts(4000);
#if defined(__GLIBCXX__)
  std::set<size_t> hashes;
  for (const std::string& text : texts) hashes.insert(std::hash<std::string>()(text));
  EXPECT_EQ(hashes.size(), 1u);  // the attack is one
#endif
  app::SeenSections seen;
  for (const std::string& text : texts) EXPECT_TRUE(add(seen, 256, Bytes(text.begin() + 4, text.end())));
  for (const std::string& text : texts) EXPECT_FALSE(add(seen, 256, Bytes(text.begin() + 4, text.end())));
  EXPECT_GE(seen.longest_search(), 1u);
  EXPECT_LE(seen.longest_search(), 16u);
}
