// What goes with a delivery system: frequencies, cells and time slicing, by wire vectors.

#include "tests/support/cases.h"
#include "tests/support/expect.h"
#include "tests/support/faulty_dom.h"

#include <quillon/descriptors/delivery/cell.h>
#include <quillon/descriptors/delivery/frequency_list.h>
#include <quillon/descriptors/delivery/time_slice_fec.h>

using namespace quillon;
using namespace quillon::test;

namespace {

const Bytes kFrequencyList = descriptor(0x62, bits({{6, 0x3F, "reserved_future_use"},
                                                    {2, 3, "coding_type"},
                                                    {32, 0x02C99B80, "centre_frequency"},
                                                    {32, 0xFFFE0001, "centre_frequency"}}));

Bytes cell(uint64_t id, uint64_t loop_length) {
  return bits({{16, id, "cell_id"},
               {16, 0x8001, "cell_latitude"},
               {16, 0x7FFE, "cell_longitude"},
               {12, 0xABC, "cell_extend_of_latitude"},
               {12, 0x123, "cell_extend_of_longitude"},
               {8, loop_length, "subcell_info_loop_length"}});
}
const Bytes kSubcell = bits({{8, 0x81, "cell_id_extension"},
                             {16, 0x4002, "subcell_latitude"},
                             {16, 0xC003, "subcell_longitude"},
                             {12, 0x456, "subcell_extend_of_latitude"},
                             {12, 0xDEF, "subcell_extend_of_longitude"}});
const Bytes kCellList = descriptor(0x6C, joined({cell(0x1234, 16), kSubcell, Bytes(8), cell(0xFFFF, 0)}));

Bytes linked_cell(uint64_t id, uint64_t loop_length) {
  return bits(
      {{16, id, "cell_id"}, {32, 0xFEDCBA98, "frequency"}, {8, loop_length, "subcell_info_loop_length"}});
}
const Bytes kLinkedSubcell = bits({{8, 0x81, "cell_id_extension"}, {32, 0x80000001, "transposer_frequency"}});
const Bytes kCellFrequencyLink =
    descriptor(0x6D, joined({linked_cell(0x1234, 10), kLinkedSubcell, Bytes(5), linked_cell(0xFFFF, 0)}));

const Bytes kTimeSliceFec = descriptor(0x77, bits({{1, 1, "time_slicing"},
                                                   {2, 2, "mpe_fec"},
                                                   {2, 3, "reserved_future_use"},
                                                   {3, 3, "frame_size"},
                                                   {8, 0x9C, "max_burst_duration"},
                                                   {4, 7, "max_average_rate"},
                                                   {4, 1, "time_slice_fec_id"},
                                                   {8, 0x10, "id_selector_byte"},
                                                   {8, 0x77, "id_selector_byte"}}));

const Cases cases = {
    case_of<DescriptorFrequencyList>(
        "DescriptorFrequencyList, of which a load makes twice as many", Family::dvb, kFrequencyList,
        "descriptor_tag: 62 frequency_list_descriptor\n",
        R"(<d descriptor_id="98" descriptor_length="9" coding_type="3" centre_frequency="02c99b80fffe0001" />)",
        R"(<d descriptor_id="98" descriptor_length="9" coding_type="3")"
        R"( centre_frequency="000002c900009b800000fffe00000001" />)"),
    case_of<DescriptorCellList>(
        "DescriptorCellList", Family::dvb, kCellList, "descriptor_tag: 6c cell_list_descriptor\n",
        R"(<d descriptor_id="108" descriptor_length="36"><cell_list_data>)"
        R"(<data cell_id="4660" cell_latitude="32769" cell_longitude="32766" cell_extend_of_latitude="2748")"
        R"( cell_extend_of_longitude="291" subcell_info_length="16"><sub_cell_info>)"
        R"(<info cell_id_extension="129" cell_latitude="16386" cell_longitude="49155")"
        R"( cell_extend_of_latitude="1110" cell_extend_of_longitude="3567" />)"
        R"(<info cell_id_extension="0" cell_latitude="0" cell_longitude="0")"
        R"( cell_extend_of_latitude="0" cell_extend_of_longitude="0" /></sub_cell_info></data>)"
        R"(<data cell_id="65535" cell_latitude="32769" cell_longitude="32766" cell_extend_of_latitude="2748")"
        R"( cell_extend_of_longitude="291" subcell_info_length="0"><sub_cell_info /></data>)"
        R"(</cell_list_data></d>)"),
    case_of<DescriptorCellFrequncyLink>(
        "DescriptorCellFrequncyLink", Family::dvb, kCellFrequencyLink,
        "descriptor_tag: 6d cell_frequency_link_descriptor\n",
        R"(<d descriptor_id="109" descriptor_length="24"><cell_frequency_link_data>)"
        R"(<data cell_id="4660" frequency="-19088744" sub_cell_info_length="10"><sub_cell_info>)"
        R"(<info cell_id_extension="129" transposer_frequency="-2147483647" />)"
        R"(<info cell_id_extension="0" transposer_frequency="0" /></sub_cell_info></data>)"
        R"(<data cell_id="65535" frequency="-19088744" sub_cell_info_length="0"><sub_cell_info /></data>)"
        R"(</cell_frequency_link_data></d>)"),
    case_of<DescriptorTimeSliceFecIdentifier>(
        "DescriptorTimeSliceFecIdentifier", Family::dvb, kTimeSliceFec,
        "descriptor_tag: 77 time_slice_fec_identifier_descriptor\n",
        R"(<d descriptor_id="119" descriptor_length="5" time_slicing="1" mpe_fec="2" frame_size="3")"
        R"( max_burst_duration="156" max_average_rate="7" time_slice_fec_id="1" id_selector_byte="1011" />)"),
};

}  // namespace

TEST(DescriptorFrequencyList, ReadsItsMembers) {
  DescriptorFrequencyList d(kFrequencyList.data());
  EXPECT_EQ(d.get_descriptor_tag(), 0x62);
  EXPECT_EQ(d.get_descriptor_length(), 9);
  EXPECT_EQ(d.coding_type, 3);
  EXPECT_STREQ(d.get_coding_type_text(), "terrestrial");
  EXPECT_EQ(d.centre_frequency, (std::vector<unsigned long>{0x02C99B80, 0xFFFE0001}));

  d.reset();
  EXPECT_TRUE(d.centre_frequency.empty());
  EXPECT_EQ(d.coding_type, 3);
}

TEST(DescriptorFrequencyList, ReadsItsCodingTypeFromTheLowestBits) {
  for (int i = 0; i < 8; ++i)
    EXPECT_EQ(DescriptorFrequencyList(descriptor(0x62, {static_cast<uint8_t>(1 << i)}).data()).coding_type,
              1 << i & 3)
        << i;
}

TEST(DescriptorFrequencyList, RefusesALengthThatHoldsAPartOfAFrequency) {
  for (const size_t size : {0u, 2u, 3u, 4u, 6u, 7u, 8u}) {
    const Bytes bytes = descriptor(0x62, Bytes(size));
    EXPECT_EQ(failure([&] { DescriptorFrequencyList(view(bytes)); }), "0: ") << size;
  }
  EXPECT_EQ(DescriptorFrequencyList(descriptor(0x62, Bytes(1)).data()).centre_frequency.size(), 0u);
  EXPECT_EQ(DescriptorFrequencyList(descriptor(0x62, Bytes(5)).data()).centre_frequency.size(), 1u);
}

TEST(DescriptorFrequencyList, LoadsEachFrequencyAsItsTwoHalves) {
  EXPECT_EQ(
      loaded<DescriptorFrequencyList>(saved(DescriptorFrequencyList(kFrequencyList.data()))).centre_frequency,
      (std::vector<unsigned long>{0x02C9, 0x9B80, 0xFFFE, 0x0001}));
}

TEST(DescriptorFrequencyList, NamesItsCodingTypes) {
  expect_texts(
      [](int code) {
        DescriptorFrequencyList d;
        d.coding_type = code;
        return d.get_coding_type_text();
      },
      {"undefined", "satellite", "cable", "terrestrial"}, "undefined");
}

TEST(DescriptorCellList, ReadsItsMembers) {
  DescriptorCellList d(kCellList.data());
  EXPECT_EQ(d.get_descriptor_tag(), 0x6C);
  EXPECT_EQ(d.get_descriptor_length(), 36);
  ASSERT_EQ(d.cell_list_data.size(), 2u);
  const auto& first = d.cell_list_data[0];
  EXPECT_EQ(first.cell_id, 0x1234);
  EXPECT_EQ(first.cell_latitude, 0x8001);
  EXPECT_EQ(first.cell_longitude, 0x7FFE);
  EXPECT_EQ(first.cell_extend_of_latitude, 0xABC);
  EXPECT_EQ(first.cell_extend_of_longitude, 0x123);
  EXPECT_EQ(first.subcell_info_loop_length, 16);
  ASSERT_EQ(first.subcells.size(), 2u);
  EXPECT_EQ(first.subcells[0].cell_id_extension, 0x81);
  EXPECT_EQ(first.subcells[0].subcell_latitude, 0x4002);
  EXPECT_EQ(first.subcells[0].subcell_longitude, 0xC003);
  EXPECT_EQ(first.subcells[0].subcell_extend_of_latitude, 0x456);
  EXPECT_EQ(first.subcells[0].subcell_extend_of_longitude, 0xDEF);
  EXPECT_EQ(first.subcells[1].cell_id_extension, 0);
  EXPECT_EQ(d.cell_list_data[1].cell_id, 0xFFFF);
  EXPECT_EQ(d.cell_list_data[1].subcell_info_loop_length, 0);
  EXPECT_TRUE(d.cell_list_data[1].subcells.empty());

  d.reset();
  EXPECT_TRUE(d.cell_list_data.empty());
}

TEST(DescriptorCellList, ReadsACellWhateverIsOffered) {
  const Bytes bytes = joined({cell(7, 8), kSubcell});
  int consumed = 0;
  const DescriptorCellList::CellListData data(bytes.data(), 3, consumed);
  EXPECT_EQ(consumed, 18);
  ASSERT_EQ(data.subcells.size(), 1u);
  const DescriptorCellList::CellListData::SubCellInfo alone(kSubcell.data());
  EXPECT_EQ(alone.subcell_longitude, data.subcells[0].subcell_longitude);
}

TEST(DescriptorCellList, RefusesPartsOfSubcellsAndOfCells) {
  const auto refused = [](const Bytes& bytes) { return failure([&] { DescriptorCellList(view(bytes)); }); };
  EXPECT_EQ(refused(descriptor(0x6C, {})), "nothing");
  EXPECT_EQ(refused(descriptor(0x6C, joined({cell(1, 4), Bytes(4)}))), "0: ");
  EXPECT_EQ(refused(descriptor(0x6C, joined({cell(1, 0), Bytes(1)}))), "2: ");
  EXPECT_EQ(refused(joined({descriptor(0x6C, joined({cell(1, 8), Bytes(7)})), Bytes(4)})), "2: ");
  EXPECT_EQ(refused(descriptor_claiming(0x6C, 20, cell(1, 0))), "2: ");  // the section ends first
}

TEST(DescriptorCellFrequncyLink, ReadsItsMembers) {
  DescriptorCellFrequncyLink d(kCellFrequencyLink.data());
  EXPECT_EQ(d.get_descriptor_tag(), 0x6D);
  EXPECT_EQ(d.get_descriptor_length(), 24);
  ASSERT_EQ(d.cell_frequency_link_data.size(), 2u);
  const auto& first = d.cell_frequency_link_data[0];
  EXPECT_EQ(first.cell_id, 0x1234);
  EXPECT_EQ(first.frequency, 0xFEDCBA98u);
  EXPECT_EQ(first.subcell_info_loop_length, 10);
  ASSERT_EQ(first.subcells.size(), 2u);
  EXPECT_EQ(first.subcells[0].cell_id_extension, 0x81);
  EXPECT_EQ(first.subcells[0].transposer_frequency, 0x80000001u);
  EXPECT_EQ(first.subcells[1].transposer_frequency, 0u);
  EXPECT_EQ(d.cell_frequency_link_data[1].cell_id, 0xFFFF);
  EXPECT_TRUE(d.cell_frequency_link_data[1].subcells.empty());

  d.reset();
  EXPECT_TRUE(d.cell_frequency_link_data.empty());
}

TEST(DescriptorCellFrequncyLink, ReadsACellWhateverIsOffered) {
  const Bytes bytes = joined({linked_cell(7, 5), kLinkedSubcell});
  int consumed = 0;
  const DescriptorCellFrequncyLink::CellFrequencyLinkData data(bytes.data(), 3, consumed);
  EXPECT_EQ(consumed, 12);
  EXPECT_EQ(data.subcells.size(), 1u);
}

TEST(DescriptorCellFrequncyLink, RefusesPartsOfSubcellsAndOfCells) {
  const auto refused = [](const Bytes& bytes) {
    return failure([&] { DescriptorCellFrequncyLink(view(bytes)); });
  };
  EXPECT_EQ(refused(descriptor(0x6D, {})), "nothing");
  EXPECT_EQ(refused(descriptor(0x6D, joined({linked_cell(1, 4), Bytes(4)}))), "0: ");
  EXPECT_EQ(refused(descriptor(0x6D, joined({linked_cell(1, 8), Bytes(8)}))), "0: ");
  EXPECT_EQ(refused(descriptor(0x6D, joined({linked_cell(1, 0), Bytes(1)}))), "2: ");
  EXPECT_EQ(refused(descriptor_claiming(0x6D, 14, linked_cell(1, 0))), "2: ");
}

TEST(DescriptorTimeSliceFecIdentifier, ReadsItsMembers) {
  DescriptorTimeSliceFecIdentifier d(kTimeSliceFec.data());
  EXPECT_EQ(d.get_descriptor_tag(), 0x77);
  EXPECT_EQ(d.get_descriptor_length(), 5);
  EXPECT_EQ(d.time_slicing, 1);
  EXPECT_EQ(d.mpe_fec, 2);
  EXPECT_EQ(d.frame_size, 3);
  EXPECT_EQ(d.max_burst_duration, 0x9C);
  EXPECT_EQ(d.max_average_rate, 7);
  EXPECT_EQ(d.time_slice_fec_id, 1);
  EXPECT_EQ(d.id_selector_byte, (Bytes{0x10, 0x11}));

  d.reset();
  EXPECT_TRUE(d.id_selector_byte.empty());
  EXPECT_EQ(d.frame_size, 3);
}

TEST(DescriptorTimeSliceFecIdentifier, ReadsItsFieldsToTheirBits) {
  for (int i = 0; i < 24; ++i) {
    Bytes bytes = descriptor(0x77, Bytes(4));
    bytes[static_cast<size_t>(4 - i / 8)] = static_cast<uint8_t>(1 << i % 8);
    const DescriptorTimeSliceFecIdentifier d(bytes.data());
    EXPECT_EQ(d.time_slicing << 23 | d.mpe_fec << 21 | d.frame_size << 16 | d.max_burst_duration << 8 |
                  d.max_average_rate << 4 | d.time_slice_fec_id,
              1 << i & ~(3 << 19))
        << i;
  }
}

TEST(DescriptorTimeSliceFecIdentifier, CountsItsSelectorUpFromItsFirstByteInEightBits) {
  const Bytes bytes = descriptor(0x77, {0, 0, 0, 0xFE, 1, 2, 3});
  EXPECT_EQ(DescriptorTimeSliceFecIdentifier(bytes.data()).id_selector_byte, (Bytes{0xFE, 0xFF, 0x00, 0x01}));
}

TEST(DescriptorTimeSliceFecIdentifier, RefusesALengthBelowThree) {
  for (size_t size = 0; size < 3; ++size) {
    const Bytes bytes = joined({descriptor(0x77, Bytes(size)), Bytes(4)});
    EXPECT_EQ(failure([&] { DescriptorTimeSliceFecIdentifier(view(bytes)); }),
              "-1: descriptor length to small")
        << size;
  }
  const Bytes shortest = joined({descriptor(0x77, Bytes(3)), Bytes(4)});
  EXPECT_TRUE(DescriptorTimeSliceFecIdentifier(shortest.data()).id_selector_byte.empty());
}

TEST(DescriptorTimeSliceFecIdentifier, NamesItsCodes) {
  expect_texts(
      [](int code) {
        DescriptorTimeSliceFecIdentifier d;
        d.frame_size = code;
        return d.get_frame_size_cstr();
      },
      {"512 kbits", "1024 kbits", "1536 kbits", "2 048 kbits"}, "reserved for future use");
  expect_texts(
      [](int code) {
        DescriptorTimeSliceFecIdentifier d;
        d.max_average_rate = code;
        return d.get_max_average_rate_cstr();
      },
      {"16 kbps", "32 kbps", "64 kbps", "128 kbps", "256 kbps", "512 kbps", "1024 kbps", "2048 kbps"},
      "reserved for future use");
}

TEST(DeliveryParameters, LoadOnlyWithAllTheirAttributes) {
  expect_each_attribute_needed<DescriptorFrequencyList>(
      saved(DescriptorFrequencyList(kFrequencyList.data())));
  expect_each_attribute_needed<DescriptorCellList>(saved(DescriptorCellList(kCellList.data())));
  expect_each_attribute_needed<DescriptorCellFrequncyLink>(
      saved(DescriptorCellFrequncyLink(kCellFrequencyLink.data())));
  expect_each_attribute_needed<DescriptorTimeSliceFecIdentifier>(
      saved(DescriptorTimeSliceFecIdentifier(kTimeSliceFec.data())));
}

TEST(DeliveryParameters, NameTheListThatALoadMisses) {
  EXPECT_EQ(failure([] { loaded<DescriptorCellList>(R"(<d descriptor_id="0" descriptor_length="0" />)"); }),
            "-1: failed to get cell_list_data");
  EXPECT_EQ(
      failure([] { loaded<DescriptorCellFrequncyLink>(R"(<d descriptor_id="0" descriptor_length="0" />)"); }),
      "-1: failed to get cell_frequency_link_data");
  EXPECT_EQ(
      failure([] {
        loaded<DescriptorCellFrequncyLink>(
            R"(<d descriptor_id="0" descriptor_length="0"><cell_frequency_link_data>)"
            R"(<data cell_id="1" frequency="2" sub_cell_info_length="0" /></cell_frequency_link_data></d>)");
      }),
      "-1: failed to get sub_cell_info");
}

TEST(DeliveryParameters, TellEachStepOfAListThatFails) {
  const auto failed = [](const char* operation, int nth) {
    FaultyDom dom(operation, nth);
    return failure([&] {
      DescriptorCellList d;
      d.Parse(dom.node());
    });
  };
  EXPECT_EQ(failed("selectSingleNode", 1), "-1: failed to get cell_list_data");
  EXPECT_EQ(failed("get_childNodes", 1), "-1: failed to get program_info list cell_list_data");
  EXPECT_EQ(failed("get_length", 1), "-1: failed to get length cell_list_data");
  EXPECT_EQ(failed("get_item", 1), "-1: failed to get program_info node cell_list_data");
  EXPECT_EQ(failed("selectSingleNode", 2), "-1: failed to get sub_cell_info");
  EXPECT_EQ(failed("get_childNodes", 2), "-1: failed to get program_info list sub_cell_info");
  EXPECT_EQ(failed("get_length", 2), "-1: failed to get length sub_cell_info");
  EXPECT_EQ(failed("get_item", 2), "-1: failed to get program_info node sub_cell_info");
}
