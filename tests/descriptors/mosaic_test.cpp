// The mosaic descriptor and its cells, by wire vectors. Class, texts and attributes say mosiac.

#include "tests/support/cases.h"
#include "tests/support/expect.h"
#include "tests/support/faulty_dom.h"

#include <quillon/descriptors/linkage/mosaic.h>

using namespace quillon;
using namespace quillon::test;

namespace {

using CellInfo = DescriptorMosiac::CellInfo;

Bytes cell(uint64_t linkage_info, const Bytes& link, const Bytes& ids = {}) {
  return joined({bits({{6, 0x2A, "logical_cell_id"},
                       {7, 0x7F, "reserved_future_use"},
                       {3, 5, "logical_cell_presentation_info"},
                       {8, ids.size(), "elementary_cell_field_length"}}),
                 ids, bits({{8, linkage_info, "cell_linkage_info"}}), link});
}
Bytes mosaic(const Bytes& cells) {
  return descriptor(0x51, joined({bits({{1, 1, "mosaic_entry_point"},
                                        {3, 2, "number_of_horizontal_elementary_cells"},
                                        {1, 1, "reserved_future_use"},
                                        {3, 5, "number_of_vertical_elementary_cells"}}),
                                  cells}));
}

const Bytes kBouquet = bits({{16, 0x1001, "bouquet_id"}});
const Bytes kService = bits(
    {{16, 0x2002, "original_network_id"}, {16, 0x3003, "transport_stream_id"}, {16, 0xFFFE, "service_id"}});
const Bytes kEvent = joined({kService, bits({{16, 0x5005, "event_id"}})});

const Bytes kMosaic = mosaic(joined(
    {cell(1, kBouquet, {0x01, 0xFF, 0xC0}), cell(2, kService), cell(3, kService, {0x3F}), cell(4, kEvent)}));

std::string cell_lines(const std::string& length, const std::string& linkage_info) {
  return "DescriptorMosiac::CellInfo::logical_cell_id: 2a\n"
         "DescriptorMosiac::CellInfo::logical_call_presentation_info: 5\n"
         "DescriptorMosiac::CellInfo::elementary_cell_field_length: " +
         length +
         "\n"
         "DescriptorMosiac::CellInfo::cell_linkage_info: " +
         linkage_info + "\n";
}
const std::string kServiceLines =
    "ServiceInfo::original_network_id: 2002\n"
    "ServiceInfo::transport_stream_id: 3003\n"
    "ServiceInfo::service_id: fffe\n";

const std::string kInfo = R"(<info logical_cell_id="42" logical_call_presentation_info="5")";
const std::string kNoBouquet = R"(<bouquetinfo bouquet_id="0" />)";
const std::string kThreeZeros = R"( original_network_id="0" transport_stream_id="0" service_id="0")";
const std::string kThreeIds = R"( original_network_id="8194" transport_stream_id="12291" service_id="65534")";
const std::string kNoService = "<serviceinfo" + kThreeZeros + " />";
const std::string kNoService2 = "<serviceinfo2" + kThreeZeros + " />";
const std::string kNoEvent = "<eventinfo" + kThreeZeros + R"( event_id="0" />)";

const Cases cases = {
    case_of<DescriptorMosiac>(
        "DescriptorMosiac", Family::dvb, kMosaic,
        "descriptor_tag: 51 mosiac_descriptor\n"
        "mosiac_entry_point: 1\n"
        "number_of_horizontal_elementary_cells: 2\n"
        "number_of_vertical_elementary_cells: 5\n" +
            cell_lines("3", "1") + "BouquetInfo::bouquet_id: 1001\n" +  //
            cell_lines("0", "2") + kServiceLines +                      //
            cell_lines("1", "3") + kServiceLines +                      //
            cell_lines("0", "4") +
            "EventInfo::original_network_id: 2002\n"
            "EventInfo::transport_stream_id: 3003\n"
            "EventInfo::service_id: fffe\n"
            "EventInfo::event_id: 5005\n",
        R"(<d descriptor_id="81" descriptor_length="43" mosiac_entry_point="1")"
        R"( number_of_horizontal_elementary_cells="2" number_of_vertical_elementary_cells="5"><cellinfo>)" +
            kInfo +
            R"( elementary_cell_field_length="3" cell_linkage_info="1" elementary_cell_id="013f00">)" +
            R"(<bouquetinfo bouquet_id="4097" />)" + kNoService + kNoService2 + kNoEvent + "</info>" +  //
            kInfo + R"( elementary_cell_field_length="0" cell_linkage_info="2" elementary_cell_id="">)" +
            kNoBouquet + "<serviceinfo" + kThreeIds + " />" + kNoService2 + kNoEvent + "</info>" +  //
            kInfo + R"( elementary_cell_field_length="1" cell_linkage_info="3" elementary_cell_id="3f">)" +
            kNoBouquet + kNoService + "<serviceinfo2" + kThreeIds + " />" + kNoEvent + "</info>" +  //
            kInfo + R"( elementary_cell_field_length="0" cell_linkage_info="4" elementary_cell_id="">)" +
            kNoBouquet + kNoService + kNoService2 + "<eventinfo" + kThreeIds + R"( event_id="20485" />)" +
            "</info></cellinfo></d>"),
};

std::string refused(const Bytes& bytes) {
  return failure([&] { DescriptorMosiac(view(bytes)); });
}

}  // namespace

TEST(DescriptorMosiac, ReadsItsMembers) {
  DescriptorMosiac d(kMosaic.data());
  EXPECT_EQ(d.get_descriptor_tag(), 0x51);
  EXPECT_EQ(d.get_descriptor_length(), 43);
  EXPECT_EQ(d.get_mosaic_entry_point(), 1);
  EXPECT_EQ(d.get_number_of_horizontal_elementary_cells(), 2);
  EXPECT_EQ(d.get_number_of_vertical_elementary_cells(), 5);
  ASSERT_EQ(d.get_cellinfo().size(), 4u);

  const CellInfo& first = d.get_cellinfo()[0];
  EXPECT_EQ(first.get_logical_cell_id(), 0x2A);
  EXPECT_EQ(first.get_logical_cell_presentation_info(), 5);
  EXPECT_EQ(first.get_elementary_cell_field_length(), 3);
  EXPECT_EQ(first.get_elementary_cell_id(), (Bytes{0x01, 0x3F, 0x00}));
  EXPECT_EQ(first.get_cell_linkage_info(), 1);
  EXPECT_EQ(first.get_bouquetinfo().get_bouquet_id(), 0x1001);
  EXPECT_EQ(first.get_serviceinfo().get_service_id(), 0);

  const CellInfo::ServiceInfo& service = d.get_cellinfo()[1].get_serviceinfo();
  EXPECT_EQ(service.get_original_network_id(), 0x2002);
  EXPECT_EQ(service.get_transport_stream_id(), 0x3003);
  EXPECT_EQ(service.get_service_id(), 0xFFFE);
  const CellInfo::ServiceInfo2& service2 = d.get_cellinfo()[2].get_serviceinfo2();
  EXPECT_EQ(service2.get_original_network_id(), 0x2002);
  EXPECT_EQ(service2.get_transport_stream_id(), 0x3003);
  EXPECT_EQ(service2.get_service_id(), 0xFFFE);
  EXPECT_EQ(d.get_cellinfo()[2].get_serviceinfo().get_service_id(), 0);
  const CellInfo::EventInfo& event = d.get_cellinfo()[3].get_eventinfo();
  EXPECT_EQ(event.get_original_network_id(), 0x2002);
  EXPECT_EQ(event.get_transport_stream_id(), 0x3003);
  EXPECT_EQ(event.get_service_id(), 0xFFFE);
  EXPECT_EQ(event.get_event_id(), 0x5005);

  d.reset();
  EXPECT_TRUE(d.get_cellinfo().empty());
  EXPECT_EQ(d.get_mosaic_entry_point(), 1);
}

TEST(DescriptorMosiac, ReadsFieldsToTheirBits) {
  for (int i = 0; i < 8; ++i) {
    const Bytes bytes = {0x51, 1, static_cast<uint8_t>(1 << i)};
    const DescriptorMosiac d(bytes.data());
    EXPECT_EQ(d.get_mosaic_entry_point(), (1 << i) >> 7) << i;
    EXPECT_EQ(d.get_number_of_horizontal_elementary_cells(), (1 << i & 0x70) >> 4) << i;
    EXPECT_EQ(d.get_number_of_vertical_elementary_cells(), 1 << i & 0x07) << i;
  }
}

TEST(DescriptorMosiac, CountsTheBytesOfEachKindOfCellWhateverIsOffered) {
  const auto consumed = [](const Bytes& bytes) {
    int used = 0;
    CellInfo(view(bytes), 1, used);
    return used;
  };
  EXPECT_EQ(consumed(cell(1, kBouquet)), 6);
  EXPECT_EQ(consumed(cell(2, kService)), 10);
  EXPECT_EQ(consumed(cell(3, kService)), 10);
  EXPECT_EQ(consumed(cell(4, kEvent)), 12);
  EXPECT_EQ(consumed(cell(4, kEvent, Bytes(255))), 267);
}

TEST(DescriptorMosiac, RefusesCellsThatLeadNowhere) {
  for (int info = 0; info < 256; ++info)
    EXPECT_EQ(refused(mosaic(cell(static_cast<uint64_t>(info), Bytes(info == 1   ? 2
                                                                     : info == 4 ? 8
                                                                                 : 6)))),
              info >= 1 && info <= 4 ? "nothing" : "2: ")
        << info;
}

TEST(DescriptorMosiac, RefusesCellsThatDoNotEndWithIt) {
  EXPECT_EQ(refused(mosaic({})), "nothing");
  EXPECT_EQ(refused(descriptor_claiming(0x51, 0, Bytes(4))), "3: mosiac_descriptor");
  // In the middle of a cell; what the cell lacks comes from the bytes after it.
  EXPECT_EQ(refused(joined({mosaic(cell(2, {})), Bytes(8)})), "3: mosiac_descriptor");
  EXPECT_EQ(refused(joined({mosaic({0xA8, 0x05}), Bytes{0, 1}, Bytes(8)})), "3: mosiac_descriptor");
  EXPECT_EQ(refused(joined({mosaic(joined({cell(1, kBouquet), Bytes(1)})), Bytes{0, 0, 1, 0, 0}})),
            "3: mosiac_descriptor");
  // The section ends with the first of the two cells announced.
  EXPECT_EQ(refused(descriptor_claiming(0x51, 13, joined({Bytes(1), cell(1, kBouquet)}))),
            "3: mosiac_descriptor");
}

TEST(DescriptorMosiac, PrintsALinkRecordByItself) {
  std::ostringstream stream;
  CellInfo::BouquetInfo(kBouquet.data())._dump_state(stream);
  CellInfo::ServiceInfo2(kService.data())._dump_state(stream);
  EXPECT_EQ(stream.str(),
            "BouquetInfo::bouquet_id: 4097\n"
            "ServiceInfo::original_network_id: 8194\n"
            "ServiceInfo::transport_stream_id: 12291\n"
            "ServiceInfo::service_id: 65534\n");
}

TEST(DescriptorMosiac, StartsLinkRecordsAtZero) {
  EXPECT_EQ(saved(CellInfo::BouquetInfo(), "bouquetinfo"), kNoBouquet);
  EXPECT_EQ(saved(CellInfo::ServiceInfo(), "serviceinfo"), kNoService);
  EXPECT_EQ(saved(CellInfo::ServiceInfo2(), "serviceinfo2"), kNoService2);
  EXPECT_EQ(saved(CellInfo::EventInfo(), "eventinfo"), kNoEvent);
}

TEST(DescriptorMosiac, LoadsOnlyWithAllItsAttributesAndChildren) {
  const std::string xml = saved(DescriptorMosiac(kMosaic.data()));
  expect_each_attribute_needed<DescriptorMosiac>(xml);

  for (const std::string child : {"bouquetinfo", "serviceinfo", "serviceinfo2", "eventinfo"}) {
    const size_t begin = xml.find("<" + child + " ");
    const size_t end = xml.find("/>", begin) + 2;
    EXPECT_EQ(failure([&] { loaded<DescriptorMosiac>(std::string(xml).erase(begin, end - begin)); }),
              "-1: failed to get " + child);
  }
  EXPECT_EQ(failure([] {
              loaded<DescriptorMosiac>(
                  R"(<d descriptor_id="81" descriptor_length="1" mosiac_entry_point="0")"
                  R"( number_of_horizontal_elementary_cells="0" number_of_vertical_elementary_cells="0" />)");
            }),
            "-1: failed to get cellinfo");
}

TEST(DescriptorMosiac, TellsEachStepOfALoadThatFails) {
  const auto failed = [](const char* operation, int nth) {
    FaultyDom dom(operation, nth);
    return failure([&] {
      DescriptorMosiac d;
      d.Parse(dom.node());
    });
  };
  EXPECT_EQ(failed("selectSingleNode", 1), "-1: failed to get cellinfo");
  EXPECT_EQ(failed("get_childNodes", 1), "-1: failed to get program_info list cellinfo");
  EXPECT_EQ(failed("get_length", 1), "-1: failed to get length cellinfo");
  EXPECT_EQ(failed("get_item", 1), "-1: failed to get program_info node cellinfo");
  EXPECT_EQ(failed("selectSingleNode", 2), "-1: failed to get bouquetinfo");
  EXPECT_EQ(failed("selectSingleNode", 3), "-1: failed to get serviceinfo");
  EXPECT_EQ(failed("selectSingleNode", 4), "-1: failed to get serviceinfo2");
  EXPECT_EQ(failed("selectSingleNode", 5), "-1: failed to get eventinfo");
  EXPECT_EQ(failed("selectSingleNode", 6), "nothing");
}
