// Each kind of each family of loops: its accessor gives what its tag and its element bring.

#include "tests/support/bytes.h"
#include "tests/support/faces.h"
#include "tests/support/walk.h"

#include <quillon/appsignal/ait_classes.h>
#include <quillon/appsignal/ait_loop.h>
#include <quillon/appsignal/int_classes.h>
#include <quillon/appsignal/int_loop.h>
#include <quillon/atsc/atsc_classes.h>
#include <quillon/atsc/atsc_loop.h>
#include <quillon/descriptors/dvb_classes.h>
#include <quillon/descriptors/dvb_loop.h>

using namespace quillon;
using namespace quillon::test;

namespace {

// A loop that belongs to no table.
template <class Family>
class Loop : public Family {
 public:
  void read(const Bytes& descriptor) { this->parse_descriptor(view(descriptor)); }
};

struct Kind {
  int tag;
  std::string element;
  bool is_loaded = true;
};

// Reads a descriptor of the tag, unless its class refuses it, and one that is loaded from its element, and
// counts what `size` finds after each.
template <class Family, class Class, class Size>
void expect_accessor(const Kind& kind, Size size) {
  SCOPED_TRACE(kind.element);
  // Without a body, in front of zeros.
  Loop<Family> read;
  const bool refused =
      failure([&] { read.read(descriptor_claiming(kind.tag, 0, Bytes(24))); }) != "nothing" ||
      !read.get_general_descriptors().empty();
  EXPECT_EQ(size(read), refused ? 0u : 1u);

  xml::Document document;
  void* const list = document.append_element(document.create_root("d"), "descriptors");
  EXPECT_TRUE(Class().SaveSection(document.dom(), document.append_element(list, kind.element)));
  Loop<Family> loaded;
  loaded._parse_descriptors(document.root());
  EXPECT_EQ(size(loaded), kind.is_loaded ? 1u : 0u);
  if (!kind.is_loaded) return;
  EXPECT_EQ(saved_names(loaded), std::vector<std::string>{kind.element});
  EXPECT_NE(walked_loop(loaded).find("\n  " + kind.element + ": "), std::string::npos);

  Loop<Family> other = loaded;
  EXPECT_EQ(size(other), 1u);
  other = Loop<Family>();
  EXPECT_EQ(size(other), 0u);
}

#define QUILLON_EXPECT(tag, Class, accessor, element)                                              \
  expect_accessor<Family, Class>({tag, element, std::string(element) != "carousel_id_descriptor"}, \
                                 [](const Family& loop) { return loop.get_##accessor().size(); });
#define QUILLON_EXPECT_ATSC(tag, Class, accessor, element)                                                 \
  expect_accessor<Family, Class>({tag, "atsc_" element, std::string(element) != "carousel_id_descriptor"}, \
                                 [](const Family& loop) { return loop.get_atsc_##accessor().size(); });

}  // namespace

TEST(Accessors, OfDvbLoops) {
  using Family = DvbLoop;
  QUILLON_MPEG2_KINDS(QUILLON_EXPECT)
  QUILLON_DVB_KINDS(QUILLON_EXPECT)
}

TEST(Accessors, OfAtscLoops) {
  using Family = AtscLoop;
  QUILLON_ATSC_KINDS(QUILLON_EXPECT)
  QUILLON_MPEG2_KINDS(QUILLON_EXPECT_ATSC)
}

TEST(Accessors, OfApplicationLoops) {
  using Family = AitLoop;
  QUILLON_AIT_KINDS(QUILLON_EXPECT)
}

TEST(Accessors, OfNotificationLoops) {
  using Family = IntLoop;
  QUILLON_INT_KINDS(QUILLON_EXPECT)
  QUILLON_DVB_KINDS(QUILLON_EXPECT)
}
