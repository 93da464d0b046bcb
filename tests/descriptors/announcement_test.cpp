// The announcement support descriptor, by wire vectors.

#include "tests/support/cases.h"

#include <quillon/descriptors/service/announcement.h>

using namespace quillon;
using namespace quillon::test;

using AnnouncementData = DescriptorAnnouncementSupport::AnnouncementSupportData;

namespace {

Bytes announcement(int type, int reference_type) {
  return bits({{4, static_cast<uint64_t>(type), "announcement_type"},
               {1, 1, "reserved_future_use"},
               {3, static_cast<uint64_t>(reference_type), "reference_type"}});
}

const Bytes kReference = bits({{16, 0x0001, "original_network_id"},
                               {16, 0x0402, "transport_stream_id"},
                               {16, 0x1F03, "service_id"},
                               {8, 0x54, "component_tag"}});

const Bytes kAnnouncementSupport =
    descriptor(0x6E, joined({bits({{16, 0x80F1, "announcement_support_indicator"}}), announcement(2, 4),
                             announcement(3, 1), kReference, announcement(15, 0)}));

const Cases cases = {
    case_of<DescriptorAnnouncementSupport>(
        "DescriptorAnnouncementSupport", Family::dvb, kAnnouncementSupport,
        "descriptor_tag: 6e announcement_support_descriptor\n",
        R"(<d descriptor_id="110" descriptor_length="12" announcement_support_indicator="33009">)"
        R"(<announcement_support_data>)"
        R"(<data announcement_type="2" reference_type="4" original_network_id="0" transport_stream_id="0")"
        R"( service_id="0" component_tag="0" />)"
        R"(<data announcement_type="3" reference_type="1" original_network_id="1" transport_stream_id="1026")"
        R"( service_id="7939" component_tag="84" />)"
        R"(<data announcement_type="15" reference_type="0" original_network_id="1" transport_stream_id="1026")"
        R"( service_id="7939" component_tag="84" /></announcement_support_data></d>)"),
};

}  // namespace

TEST(DescriptorAnnouncementSupport, ReadsItsMembers) {
  DescriptorAnnouncementSupport d(kAnnouncementSupport.data());
  EXPECT_EQ(d.get_descriptor_tag(), 0x6E);
  EXPECT_EQ(d.get_descriptor_length(), 12);
  d.reset();
  EXPECT_EQ(d.get_announcement_support_indicator(), 0x80F1);
  ASSERT_EQ(d.get_announcement_support_data().size(), 3u);
  const AnnouncementData& data = d.get_announcement_support_data()[1];
  EXPECT_EQ(data.get_announcement_type(), 3);
  EXPECT_EQ(data.get_reference_type(), 1);
  EXPECT_EQ(data.get_original_network_id(), 0x0001);
  EXPECT_EQ(data.get_transport_stream_id(), 0x0402);
  EXPECT_EQ(data.get_service_id(), 0x1F03);
  EXPECT_EQ(data.get_component_tag(), 0x54);
  EXPECT_EQ(report(data), "");
}

TEST(DescriptorAnnouncementSupport, GivesAnItemWithoutAReferenceTheOneBefore) {
  const DescriptorAnnouncementSupport d(kAnnouncementSupport.data());
  const AnnouncementData& first = d.get_announcement_support_data()[0];
  EXPECT_EQ(first.get_announcement_type(), 2);
  EXPECT_EQ(first.get_reference_type(), 4);
  EXPECT_EQ(first.get_service_id(), 0);
  const AnnouncementData& last = d.get_announcement_support_data()[2];
  EXPECT_EQ(last.get_announcement_type(), 15);
  EXPECT_EQ(last.get_reference_type(), 0);
  EXPECT_EQ(last.get_original_network_id(), 0x0001);
  EXPECT_EQ(last.get_transport_stream_id(), 0x0402);
  EXPECT_EQ(last.get_service_id(), 0x1F03);
  EXPECT_EQ(last.get_component_tag(), 0x54);
}

TEST(DescriptorAnnouncementSupport, HasItemsWithAReferenceForTypesOneToThree) {
  for (int type = 0; type <= 7; ++type) {
    int consumed = 0;
    const AnnouncementData data(joined({announcement(5, type), kReference}).data(), 0, consumed);
    EXPECT_EQ(consumed, type >= 1 && type <= 3 ? 8 : 1) << type;
    EXPECT_EQ(data.get_announcement_type(), 5);
    EXPECT_EQ(data.get_reference_type(), type);
    EXPECT_EQ(data.get_component_tag(), type >= 1 && type <= 3 ? 0x54 : 0) << type;
  }
}

TEST(DescriptorAnnouncementSupport, RefusesItemsThatDoNotEndWithItsBody) {
  const Bytes item = joined({announcement(3, 1), kReference});
  const auto of_length = [&](int length) {
    return failure([&] {
      DescriptorAnnouncementSupport(
          ByteView(descriptor_claiming(0x6E, length, joined({Bytes(2), item, item})).data()));
    });
  };
  for (const int length : {0, 1, 3, 4, 5, 6, 7, 8, 9, 11, 17}) EXPECT_EQ(of_length(length), "2: ") << length;
  for (const int length : {2, 10, 18}) EXPECT_EQ(of_length(length), "nothing") << length;
  EXPECT_TRUE(DescriptorAnnouncementSupport(descriptor(0x6E, Bytes(2)).data())
                  .get_announcement_support_data()
                  .empty());
}

TEST(DescriptorAnnouncementSupport, RefusesABodyThatTheSectionDoesNotHold) {
  for (size_t size = 2; size < kAnnouncementSupport.size(); ++size)
    EXPECT_EQ(failure([&] { DescriptorAnnouncementSupport(ByteView(kAnnouncementSupport.data(), size)); }),
              "2: ")
        << size;
}

TEST(DescriptorAnnouncementSupport, FailsToLoadWithoutItsList) {
  EXPECT_EQ(failure([] {
              loaded<DescriptorAnnouncementSupport>(
                  R"(<d descriptor_id="110" descriptor_length="2" announcement_support_indicator="0" />)");
            }),
            "-1: failed to get announcement_support_data");
}
