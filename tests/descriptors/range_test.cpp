// A loop's descriptors as a range: in wire order, each with its class.

#include "tests/descriptors/dvb_loops.h"
#include "tests/support/cases.h"

#include <algorithm>
#include <iterator>
#include <sstream>

#include <quillon/appsignal/ait.h>
#include <quillon/appsignal/ait_classes.h>
#include <quillon/appsignal/int_classes.h>
#include <quillon/appsignal/int_loop.h>
#include <quillon/atsc/atsc_classes.h>
#include <quillon/atsc/atsc_loop.h>

using namespace quillon;
using namespace quillon::test;

static_assert(std::ranges::forward_range<DescriptorRange>);
static_assert(std::is_nothrow_copy_constructible_v<DescriptorRange::iterator>);

namespace {

template <class Loop>
concept HasRange = requires(Loop loop) {
  std::forward<Loop>(loop).descriptors().begin();
};
// A loop that ends before its range does not compile.
static_assert(HasRange<DvbLoop&> && HasRange<const DvbLoop&> && !HasRange<DvbLoop> &&
              !HasRange<const DvbLoop>);

// A loop of a family, read from bytes.
template <class Loop>
struct Open : Loop {
  void read(const Bytes& bytes) {
    EXPECT_TRUE(this->parse_descriptors(view(bytes), 0, static_cast<int>(bytes.size()), {view(bytes)}));
  }
};

template <class Loop>
std::vector<int> tags_of(const Loop& loop) {
  std::vector<int> out;
  for (const AnyDescriptor& d : loop.descriptors()) out.push_back(d.tag());
  return out;
}

DvbLoop loop_of_tags(const std::vector<int>& tags) {
  Bytes bytes;
  for (const int tag : tags) {
    const Bytes one = descriptor(tag, tag == 0x52 ? Bytes{7} : Bytes{});
    bytes.insert(bytes.end(), one.begin(), one.end());
  }
  return loop_of(bytes);
}

// The cases of a family, in an order in which no class comes in one run: each twice, with others between.
std::vector<const DescriptorCase*> mixed_cases(Family family) {
  std::vector<const DescriptorCase*> all;
  for (const DescriptorCase& c : Cases::all())
    if (c.family == family && c.bytes.size() == c.bytes[1] + size_t{2}) all.push_back(&c);
  std::vector<const DescriptorCase*> out(all.rbegin(), all.rend());
  out.insert(out.end(), all.begin(), all.end());
  return out;
}

std::string walk_of(const DescriptorCase& c, ByteView place) {
  WalkText text;
  c.walk_to(place, text);
  return text.take();
}

// Each descriptor is that of its place on the wire, with the report and the fields that its class has there.
template <class Loop>
void expect_cases_in_order(Family family, size_t at_least) {
  const auto cases = mixed_cases(family);
  Bytes bytes;
  for (const DescriptorCase* const c : cases) bytes.insert(bytes.end(), c->bytes.begin(), c->bytes.end());
  Open<Loop> loop;
  loop.read(bytes);
  const DescriptorRange range = loop.descriptors();
  ASSERT_EQ(range.size(), cases.size());
  size_t of_their_class = 0;
  size_t i = 0;
  ByteView next = view(bytes);
  for (const AnyDescriptor& d : range) {
    const DescriptorCase& c = *cases[i++];
    const ByteView place = next;
    next = next.from(static_cast<ptrdiff_t>(c.bytes.size()));
    SCOPED_TRACE(c.name);
    EXPECT_EQ(d.tag(), c.bytes[0]);
    EXPECT_EQ(d.base().get_descriptor_length(), c.bytes[1]);
    const std::string name = d.class_name();
    if (c.name != name && !c.name.starts_with(name + " ") && !c.name.starts_with(name + ",")) continue;
    ++of_their_class;
    EXPECT_EQ(report(d.base()), c.report_of(place));
    EXPECT_EQ(walked(d), walk_of(c, place));
  }
  EXPECT_EQ(i, cases.size());
  EXPECT_GE(of_their_class, at_least) << "of " << cases.size();

  // What a walk of the loop says, in the same order.
  std::string names;
  for (const AnyDescriptor& d : range)
    names += std::string("  ") + d.element() + ": " + d.class_name() + "\n";
  std::string walked_names;
  std::istringstream lines(walked_loop(loop));
  for (std::string line; std::getline(lines, line);)
    if (line.starts_with("  ") && line[2] != ' ') walked_names += line + "\n";
  EXPECT_EQ(names, walked_names);

  const Open<Loop> copy = loop;
  EXPECT_EQ(tags_of(copy), tags_of(loop));
  Open<Loop> assigned;
  assigned = loop;
  EXPECT_EQ(tags_of(assigned), tags_of(loop));
  const std::vector<int> before = tags_of(loop);
  const Open<Loop> moved = std::move(loop);
  EXPECT_EQ(tags_of(moved), before);
}

}  // namespace

TEST(DescriptorRange, HasEachCaseOfItsFamilyInWireOrder) {
  expect_cases_in_order<DvbLoop>(Family::dvb, 100);
  expect_cases_in_order<AtscLoop>(Family::atsc, 20);
  expect_cases_in_order<AitLoop>(Family::appsignal, 20);
  expect_cases_in_order<IntLoop>(Family::notification, 20);
}

TEST(DescriptorRange, IsInWireOrderInEachTable) {
  const std::vector<int> wire = {0x52, 0x90, 0x52, 0x42, 0x7F, 0x90, 0x42, 0x52};
  Bytes bytes;
  for (const int tag : wire) {
    const Bytes one = descriptor(tag, {7});
    bytes.insert(bytes.end(), one.begin(), one.end());
  }
  for (const Owner& owner : owners())
    EXPECT_EQ(tags_of(owner.loop(owner.section(bytes), nullptr)), wire) << owner.name;
}

TEST(DescriptorRange, IsEmptyWhereThereIsNone) {
  const DvbLoop none;
  EXPECT_TRUE(none.descriptors().empty());
  EXPECT_EQ(none.descriptors().size(), 0u);
  EXPECT_TRUE(none.descriptors().begin() == none.descriptors().end());
  EXPECT_TRUE(loop_of({}).get_general_descriptors().empty());
  const DvbLoop of_section = loop_of({});
  EXPECT_TRUE(of_section.descriptors().empty());
  // Kept positions are none either.
  Nit nit = parsed_table<Nit>(long_section(0x40, joined({loop(descriptor(0x52, {7})), loop({})})), true);
  EXPECT_EQ(nit.descriptors().size(), 1u);
}

TEST(DescriptorRange, ForgetsWithItsLoop) {
  struct Table : Ait {
    void read(int tag) { ParseDescriptorAit(view(descriptor(tag, {1, 2, 3, 4}))); }
  };
  Table ait;
  for (const int tag : {0x5F, 0x20, 0x5F, 0x90, 0x20}) ait.read(tag);
  EXPECT_EQ(tags_of(ait), (std::vector<int>{0x5F, 0x20, 0x5F, 0x90, 0x20}));
  ait.reset();
  EXPECT_EQ(tags_of(ait), (std::vector<int>{0x5F, 0x5F, 0x90}));
  ait.read(0x20);
  EXPECT_EQ(tags_of(ait), (std::vector<int>{0x5F, 0x5F, 0x90, 0x20}));
  Eit eit;
  eit.Parse(long_section(0x4E, joined({Bytes(16), loop(descriptor(0x52, {7}))})));
  EXPECT_EQ(tags_of(eit.get_eventinfo().at(0)), std::vector<int>{0x52});
  eit.reset();
  EXPECT_TRUE(eit.get_eventinfo().empty());
}

TEST(DescriptorRange, IsInTheOrderOfADocument) {
  const auto document = xml::Document::from_text(
      "<d><descriptors>"
      "<stream_identifier_descriptor descriptor_id=\"82\" descriptor_length=\"1\" component_tag=\"1\"/>"
      "<CA_system_descriptor/>"
      "<general_descriptor descriptor_id=\"127\" descriptor_length=\"0\" private_data=\"\"/>"
      "<stream_identifier_descriptor descriptor_id=\"82\" descriptor_length=\"1\" component_tag=\"2\"/>"
      "</descriptors></d>");
  DvbLoop loop;
  loop._parse_descriptors(document.root());
  EXPECT_EQ(tags_of(loop), (std::vector<int>{0x52, 0x7F, 0x52}));
}

TEST(DescriptorRange, IsGoneThroughAgainAndByAlgorithms) {
  const DvbLoop loop = loop_of_tags({0x52, 0x90, 0x52, 0x91});
  const DescriptorRange range = loop.descriptors();
  EXPECT_EQ(std::ranges::distance(range), 4);
  EXPECT_EQ(std::ranges::count_if(range, [](AnyDescriptor d) { return d.tag() >= 0x80; }), 2);
  auto one = range.begin();
  const auto before = one++;
  EXPECT_EQ((*before).tag(), 0x52);
  EXPECT_EQ((*one).tag(), 0x90);
  EXPECT_FALSE(one == before);
  EXPECT_TRUE(std::next(before) == one);
}

TEST(AnyDescriptor, IsTheDescriptorOfItsClass) {
  const DvbLoop loop = loop_of_tags({0x52, 0x90, 0x7F});
  auto at = loop.descriptors().begin();
  const AnyDescriptor identifier = *at;
  EXPECT_EQ(identifier.as<DescriptorStreamIdentifier>(), &loop.get_stream_identifier_descriptors()[0]);
  EXPECT_EQ(identifier.as<DescriptorGeneral>(), nullptr);
  EXPECT_EQ(&identifier.base(), identifier.as<DescriptorStreamIdentifier>());
  EXPECT_STREQ(identifier.element(), "stream_identifier_descriptor");
  EXPECT_STREQ(identifier.class_name(), "DescriptorStreamIdentifier");
  const AnyDescriptor user_private = *++at;
  EXPECT_EQ(user_private.as<DescriptorGeneral>(), &loop.get_user_private_descriptors()[0]);
  EXPECT_STREQ(user_private.element(), "user_private_descriptor");
  const AnyDescriptor general = *++at;
  EXPECT_EQ(general.as<DescriptorGeneral>(), &loop.get_general_descriptors()[0]);
  EXPECT_STREQ(general.element(), "general_descriptor");
  EXPECT_STREQ(general.class_name(), "DescriptorGeneral");
}

TEST(AnyDescriptor, IsVisitedByType) {
  const DvbLoop loop = loop_of_tags({0x52, 0x90, 0x48 /* refused */, 0x52});
  std::string said;
  const auto identifier = [&said](const DescriptorStreamIdentifier& d) noexcept {
    said += "identifier " + std::to_string(d.component_tag) + "\n";
  };
  auto bytes = [&said](const DescriptorGeneral& d) mutable {
    said += "bytes " + std::to_string(d.get_descriptor_tag()) + "\n";
  };
  std::vector<bool> results;
  for (const AnyDescriptor& d : loop.descriptors()) results.push_back(d.visit(identifier, bytes));
  EXPECT_EQ(said.substr(0, said.find('\n')), "identifier 7");
  EXPECT_EQ(results.size(), 4u);

  // The first that fits is called, and no other.
  said.clear();
  for (const AnyDescriptor& d : loop.descriptors())
    d.visit(
        identifier,
        [&](const DescriptorBase& other) { said += std::to_string(other.get_descriptor_tag()) + "\n"; },
        [&](AnyDescriptor) { said += "never\n"; });
  EXPECT_EQ(said, "identifier 7\n144\n72\nidentifier 7\n");
  said.clear();
  for (const AnyDescriptor& d : loop.descriptors())
    d.visit([&](AnyDescriptor any) { said += std::string(any.element()) + "\n"; });
  EXPECT_EQ(std::count(said.begin(), said.end(), '\n'), 4);
  EXPECT_FALSE((*loop.descriptors().begin()).visit());
  EXPECT_FALSE((*loop.descriptors().begin()).visit([](const DescriptorContent&) { FAIL(); }));
}
