// What holds for every case of every descriptor class.

#include "tests/support/cases.h"

using namespace quillon;
using namespace quillon::test;

TEST(DescriptorCases, HaveTheirFaces) {
  for (const DescriptorCase& c : Cases::all()) {
    SCOPED_TRACE(c.name);
    const ByteView view = test::view(c.bytes);
    EXPECT_EQ(c.report_of(view), c.report);
    EXPECT_EQ(c.saved_of(view), c.xml);
    EXPECT_EQ(c.resaved_of(c.xml), c.reloaded);
  }
}

TEST(DescriptorCases, SurviveBeingCutAtEachLength) {
  for (const DescriptorCase& c : Cases::all()) {
    SCOPED_TRACE(c.name);
    for (size_t size = 0; size <= c.bytes.size(); ++size) {
      const Bytes cut(c.bytes.begin(),
                      c.bytes.begin() + static_cast<ptrdiff_t>(size));  // its own end, watched
      failure([&] { c.exercise(view(cut)); });
    }
  }
}

TEST(DescriptorCases, SurviveEachByteBeingDamaged) {
  for (const DescriptorCase& c : Cases::all()) {
    SCOPED_TRACE(c.name);
    for (size_t i = 0; i < c.bytes.size(); ++i)
      for (const uint8_t value : Bytes{0x00, 0x01, 0x7F, 0x80, 0xFF}) {
        Bytes damaged = c.bytes;
        damaged[i] = value;
        failure([&] { c.exercise(view(damaged)); });
      }
  }
}

TEST(DescriptorCases, SurviveAnyLengthAtEachPlace) {
  for (const DescriptorCase& c : Cases::all()) {
    SCOPED_TRACE(c.name);
    for (size_t at = 0; at + 1 < c.bytes.size(); ++at) {
      const int told = (c.bytes[at] & 0x0F) << 8 | c.bytes[at + 1];
      for (const int value : {0, 1, told - 1, told + 1, 4095}) {
        Bytes damaged = c.bytes;
        set_length(damaged, at, value);
        failure([&] { c.exercise(view(damaged)); });
      }
    }
  }
}
