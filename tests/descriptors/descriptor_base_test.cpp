// What all descriptors have, and the classes that keep a descriptor as bytes.

#include "tests/support/cases.h"
#include "tests/support/expect.h"
#include "tests/support/faulty_dom.h"

#include <cstddef>
#include <iomanip>
#include <map>
#include <string>
#include <type_traits>

#include <quillon/descriptors/general.h>

using namespace quillon;
using namespace quillon::test;

namespace {

// The names of tags in reports; the misspelt ones are hierachy, streeam, smootihing and inkage.
const std::map<int, std::string> kTagTexts = {
    {0x00, "Reserved"},
    {0x01, "Reserved"},
    {0x02, "video_stream_descriptor"},
    {0x03, "audio_stream_descriptor"},
    {0x04, "hierachy_descriptor"},
    {0x05, "registration_descriptor"},
    {0x06, "data_streeam_descriptor"},
    {0x07, "target_background_grid_descriptor"},
    {0x08, "video_window_descriptor"},
    {0x09, "CA_descriptor"},
    {0x0A, "ISO_639_language_descriptor"},
    {0x0B, "system_clock_descriptor"},
    {0x0C, "multiplex_buffer_utilization_descriptor"},
    {0x0D, "copyright_descriptor"},
    {0x0E, "maximum_bitrate_descriptor"},
    {0x0F, "private_data_indicator_descriptor"},
    {0x10, "smootihing_descriptor"},
    {0x11, "STD_descriptor"},
    {0x12, "IBP_descriptor"},
    {0x40, "network_name_descriptor"},
    {0x41, "service_list_descriptor"},
    {0x42, "stuffing_descriptor"},
    {0x43, "satellite_delivery_system_descriptor"},
    {0x44, "cable_delivery_system_descriptor"},
    {0x45, "VBI_data_descriptor"},
    {0x46, "VBI_teletext_descriptor"},
    {0x47, "bouquet_name_descriptor"},
    {0x48, "service_descriptor"},
    {0x49, "country_availability_descriptor"},
    {0x4A, "inkage_descriptor"},
    {0x4B, "NVOD_reference_descriptor"},
    {0x4C, "time_shifted_service_descriptor"},
    {0x4D, "short_event_descriptor"},
    {0x4E, "extended_event_descriptor"},
    {0x4F, "time_shifted_event_descriptor"},
    {0x50, "component_descriptor"},
    {0x51, "mosaic_descriptor"},
    {0x52, "stream_identifier_descriptor"},
    {0x53, "CA_identifier_descriptor"},
    {0x54, "content_descriptor"},
    {0x55, "parental_rating_descriptor"},
    {0x56, "teletext_descriptor"},
    {0x57, "telephone_descriptor"},
    {0x58, "local_time_offset_descriptor"},
    {0x59, "subtitling_descriptor"},
    {0x5A, "terrestrial_delivery_system_descriptor"},
    {0x5B, "multilingual_network_name_descriptor"},
    {0x5C, "multilingual_bouquet_name_descriptor"},
    {0x5D, "multilingual_service_name_descriptor"},
    {0x5E, "multilingual_component_descriptor"},
    {0x5F, "private_data_specifier_descriptor"},
    {0x60, "service_move_descriptor"},
    {0x61, "short_smoothing_buffer_descriptor"},
    {0x62, "frequency_list_descriptor"},
    {0x63, "partial_transport_stream_descriptor"},
    {0x64, "data_broadcast_descriptor"},
    {0x65, "reserved for future use"},
    {0x66, "data_broadcast_id_descriptor"},
    {0x67, "transport_stream_descriptor"},
    {0x68, "DSNG_descriptor"},
    {0x69, "PDC_descriptor"},
    {0x6A, "AC-3_descriptor"},
    {0x6B, "ancillary_data_descriptor"},
    {0x6C, "cell_list_descriptor"},
    {0x6D, "cell_frequency_link_descriptor"},
    {0x6E, "announcement_support_descriptor"},
    {0x6F, "application_signalling_descriptor"},
    {0x70, "adaptation_field_data_descriptor"},
    {0x71, "service_identifier_descriptor"},
    {0x72, "service_availability_descriptor"},
    {0x73, "default_authority_descriptor"},
    {0x74, "related_content_descriptor"},
    {0x75, "TVA_id_descriptor"},
    {0x76, "content_identifier_descriptor"},
    {0x77, "time_slice_fec_identifier_descriptor"},
    {0x78, "ECM_repetition_rate_descriptor"},
    {0x79, "S2_satellite_delivery_system_descriptor"},
    {0x7A, "enhanced_AC-3_descriptor"},
    {0x7B, "DTS descriptor"},
    {0x7C, "AAC descriptor"},
};

const Bytes kSeventeenBytes = text("General 42: \xE9\xFFxyz");
const Bytes kGeneral = descriptor(0xA1, kSeventeenBytes);
const Bytes kStuffing = descriptor(0x42, {0xFF, 0x00, 0x0A});

const Cases cases = {
    case_of<DescriptorGeneral>("DescriptorGeneral", Family::dvb, kGeneral,
                               "descriptor_tag: a1 User Private\n"
                               "data:\n"
                               "47 65 6e 65 72 61 6c 20 34 32 3a 20 e9 ff 78 79  : General.......xy\n"
                               "7a                                               : z\n",
                               R"(<d descriptor_id="161" descriptor_length="17")"
                               R"( private_data="47656e6572616c2034323a20e9ff78797a" />)"),
    case_of<DescriptorGeneral>("DescriptorGeneral of 16 bytes", Family::dvb,
                               descriptor(0x13, text("sixteen letters!")),
                               "descriptor_tag: 13 Reserved\n"
                               "data:\n"
                               "73 69 78 74 65 65 6e 20 6c 65 74 74 65 72 73 21  : sixteen.letters.\n",
                               R"(<d descriptor_id="19" descriptor_length="16")"
                               R"( private_data="7369787465656e206c65747465727321" />)"),
    case_of<DescriptorGeneral>("DescriptorGeneral without bytes", Family::dvb, descriptor(0x09, {}),
                               "descriptor_tag: 09 CA_descriptor\n"
                               "data:\n",
                               R"(<d descriptor_id="9" descriptor_length="0" private_data="" />)"),
    case_of<DescriptorStuffing>("DescriptorStuffing", Family::dvb, kStuffing,
                                "descriptor_tag: 42 stuffing_descriptor\n"
                                "stuffing_byte:\n"
                                "ff 00 0a                                         : ...\n",
                                R"(<d descriptor_id="66" descriptor_length="3" stuffing_byte="ff000a" />)"),
    case_of<DescriptorStuffing>("DescriptorStuffing without bytes", Family::dvb, descriptor(0x42, {}),
                                "descriptor_tag: 42 stuffing_descriptor\n",
                                R"(<d descriptor_id="66" descriptor_length="0" stuffing_byte="" />)"),
};

// A descriptor of a family of its own, whose body notes what is asked of it.
template <class Base>
class Sample : public Base {
 public:
  using Base::Base;
  const char* get_tag_text() const override { return "sample"; }

  bool saves = true;
  mutable int body_saves = 0;
  int loads = 0;
  int resets = 0;

 private:
  bool _save_section(void*, void*) const override { return ++body_saves, saves; }
  void _dump_state(std::ostream& stream) const override { stream << 255 << std::setw(3) << 7 << "\n"; }
  void _reset() override { ++resets; }
  void _parse(void*) override { ++loads; }
};

template <class Base>
class DescriptorFamily : public testing::Test {};
using Bases = testing::Types<DescriptorBase, DescriptorAtscBase, DescriptorIntBase, DescriptorAitBase>;
TYPED_TEST_SUITE(DescriptorFamily, Bases);

template <class T>
std::string failure_of_load(const std::string& text) {
  return failure([&] { loaded<T>(text); });
}

}  // namespace

TEST(DescriptorBase, NamesEveryTag) {
  EXPECT_EQ(kTagTexts.size(), 80U);
  for (int tag = 0; tag <= 255; ++tag) {
    const auto found = kTagTexts.find(tag);
    EXPECT_EQ(DescriptorBase::get_tag_text(static_cast<unsigned char>(tag)),
              found == kTagTexts.end() ? "Unknown" : found->second)
        << tag;
  }
}

TEST(DescriptorBase, HasAWireHeadOfTwoBytes) {
  EXPECT_EQ(sizeof(descriptor_base), 2U);
  EXPECT_EQ(offsetof(descriptor_base, descriptor_tag), 0U);
  EXPECT_EQ(offsetof(descriptor_base, descriptor_length), 1U);
  EXPECT_FALSE(std::has_virtual_destructor_v<DescriptorBase>);
}

TYPED_TEST(DescriptorFamily, IsMadeEmptyOfNumbersOrOfBytes) {
  EXPECT_TRUE((std::is_base_of_v<DescriptorBase, TypeParam>));
  EXPECT_EQ(sizeof(TypeParam), sizeof(DescriptorBase));
  const Sample<TypeParam> empty;
  EXPECT_EQ(empty.get_descriptor_tag(), 0);
  EXPECT_EQ(empty.get_descriptor_length(), 0);
  const Sample<TypeParam> numbers(-1, 70000);
  EXPECT_EQ(numbers.get_descriptor_tag(), -1);
  EXPECT_EQ(numbers.get_descriptor_length(), 70000);
  const Bytes bytes = descriptor_claiming(0xFE, 0x81, {});
  const Sample<TypeParam> wire(bytes.data());
  EXPECT_EQ(wire.get_descriptor_tag(), 0xFE);
  EXPECT_EQ(wire.get_descriptor_length(), 0x81);

  Sample<TypeParam> copy(numbers);
  EXPECT_EQ(copy.get_descriptor_tag(), -1);
  copy = wire;
  EXPECT_EQ(copy.get_descriptor_tag(), 0xFE);
  EXPECT_EQ(copy.get_descriptor_length(), 0x81);
}

TYPED_TEST(DescriptorFamily, HasTheFacesOfItsClass) {
  Sample<TypeParam> d(0x4A, 2);
  EXPECT_EQ(report(d), "descriptor_tag: 4a sample\nff007\n");
  EXPECT_EQ(saved(d), R"(<d descriptor_id="74" descriptor_length="2" />)");
  EXPECT_EQ(d.body_saves, 1);
  d.reset();
  EXPECT_EQ(d.resets, 1);
  EXPECT_EQ(d.get_descriptor_tag(), 0x4A);
  const auto again = loaded<Sample<TypeParam>>(R"(<d descriptor_id="200" descriptor_length="-5" />)");
  EXPECT_EQ(again.get_descriptor_tag(), 200);
  EXPECT_EQ(again.get_descriptor_length(), -5);
  EXPECT_EQ(again.loads, 1);
}

TEST(DescriptorBase, PrintsItsTagInTheCaseOfTheStream) {
  const DescriptorStuffing d(descriptor(0x4A, {}).data());
  std::ostringstream stream;
  d.dump_state(stream);
  stream << std::uppercase;
  d.dump_state(stream);
  stream << std::nouppercase;
  d.dump_state(stream);
  EXPECT_EQ(stream.str(),
            "descriptor_tag: 4a stuffing_descriptor\n"
            "descriptor_tag: 4A stuffing_descriptor\n"
            "descriptor_tag: 4a stuffing_descriptor\n");
}

TEST(DescriptorBase, LeavesTheStreamInHexadecimalFilledWithZeros) {
  for (const auto flags : {std::ios_base::fmtflags{}, std::ios_base::uppercase, std::ios_base::unitbuf}) {
    std::ostringstream stream;
    stream.flags(flags | std::ios_base::dec);
    stream.fill('*');
    DescriptorGeneral(descriptor(0x01, {}).data()).dump_state(stream);
    EXPECT_EQ(stream.flags(), flags | std::ios_base::hex);
    EXPECT_EQ(stream.fill(), '0');
    EXPECT_EQ(stream.width(), 0);
  }
}

TEST(DescriptorBase, LeavesTheAdjustmentToTheStream) {
  std::ostringstream stream;
  stream << std::left;
  Sample<DescriptorBase>(4, 0).dump_state(stream);
  Sample<DescriptorBase>(-1, 0).dump_state(stream);
  EXPECT_EQ(stream.str(), "descriptor_tag: 40 sample\nff700\ndescriptor_tag: ffffffff sample\nff700\n");
}

TEST(DescriptorBase, SaysWhichPartOfItsHeaderCanNotBeLoaded) {
  using D = Sample<DescriptorBase>;
  EXPECT_EQ(failure_of_load<D>(R"(<d descriptor_length="1" />)"), "-1: failed to get descriptor_id");
  EXPECT_EQ(failure_of_load<D>(R"(<d descriptor_id="1" />)"), "-1: failed to get descriptor_length");
  EXPECT_EQ(failure_of_load<D>("<d />"), "-1: failed to get descriptor_id");

  D d(3, 4);
  const xml::Document document = xml::Document::from_text(R"(<d descriptor_id="1" />)");
  failure([&] { d.Parse(document.root()); });
  EXPECT_EQ(d.get_descriptor_tag(), 1);
  EXPECT_EQ(d.get_descriptor_length(), 4);
  EXPECT_EQ(d.loads, 0);
}

TEST(DescriptorBase, ReturnsWhatTheSaveOfItsBodyReturns) {
  Sample<DescriptorBase> d(1, 2);
  d.saves = false;
  xml::Document document;
  EXPECT_FALSE(d.SaveSection(document.dom(), document.create_root("d")));
  EXPECT_EQ(plain(document), R"(<d descriptor_id="1" descriptor_length="2" />)");
}

TEST(DescriptorBase, StopsAtTheFirstAttributeThatCanNotBeAdded) {
  for (const char* const step : {"createAttribute", "put_nodeValue", "setAttributeNode"}) {
    const Sample<DescriptorBase> d(1, 2);
    FaultyDom first(step, 1);
    EXPECT_FALSE(d.SaveSection(first.document(), first.node())) << step;
    EXPECT_EQ(first.steps(), "createAttribute descriptor_id\n") << step;
    FaultyDom second(step, 2);
    EXPECT_FALSE(d.SaveSection(second.document(), second.node())) << step;
    EXPECT_EQ(second.steps(), "createAttribute descriptor_id\ncreateAttribute descriptor_length\n") << step;
    EXPECT_EQ(d.body_saves, 0) << step;
    EXPECT_EQ(first.references() + second.references(), 0) << step;
  }
}

TEST(DescriptorBase, SaysWhichStepOfItsLoadFails) {
  const auto load = [](const char* operation, int nth = 1, HRESULT result = E_FAIL) {
    FaultyDom dom(operation, nth, result);
    DescriptorGeneral d;
    const std::string text = failure([&] { d.Parse(dom.node()); });
    EXPECT_EQ(dom.references(), 0);
    return text;
  };
  EXPECT_EQ(load("get_attributes"), "-1: failed to get attribute map");
  EXPECT_EQ(load("getNamedItem", 1), "-1: failed to get descriptor_id");
  EXPECT_EQ(load("getNamedItem", 2, S_FALSE), "-1: failed to get descriptor_length");
  EXPECT_EQ(load("get_nodeValue", 1, S_FALSE), "-1: failed to get descriptor_id");
  EXPECT_EQ(load("get_nodeValue", 2), "-1: failed to get descriptor_length");
  EXPECT_EQ(load("get_attributes", 2), "-1: failed");
  EXPECT_EQ(load("getNamedItem", 3), "-1: failed");
  EXPECT_EQ(load("none"), "nothing");
}

TEST(DescriptorGeneral, NamesEveryTagInItsOwnWay) {
  for (int tag = 0; tag <= 255; ++tag) {
    const std::string expected = tag > 0x3F                  ? "User Private"
                                 : tag < 0x02 || tag >= 0x13 ? "Reserved"
                                                             : kTagTexts.at(tag);
    EXPECT_EQ(DescriptorGeneral(tag, nullptr, 0).get_tag_text(), expected) << tag;
  }
  EXPECT_STREQ(DescriptorGeneral(300, nullptr, 0).get_tag_text(), "User Private");
}

TEST(DescriptorGeneral, IsMadeFromAHeadOrAView) {
  Bytes bytes = kGeneral;
  const DescriptorGeneral from_head(reinterpret_cast<descriptor_base*>(bytes.data()));
  const DescriptorGeneral from_bytes(bytes.data());
  for (const DescriptorGeneral* d : {&from_head, &from_bytes}) {
    EXPECT_EQ(d->get_descriptor_tag(), 0xA1);
    EXPECT_EQ(d->get_descriptor_length(), 17);
    EXPECT_EQ(d->get_private_data(), kSeventeenBytes);
  }
  bytes.assign(bytes.size(), 0);
  EXPECT_EQ(from_head.get_private_data(), kSeventeenBytes);

  const DescriptorGeneral cut(ByteView(kGeneral.data(), 5));
  EXPECT_EQ(cut.get_descriptor_length(), 17);
  EXPECT_EQ(cut.get_private_data(), joined({text("Gen"), Bytes(14)}));
  const DescriptorGeneral longest(descriptor(0x00, Bytes(255, 0x5A)).data());
  EXPECT_EQ(longest.get_private_data(), Bytes(255, 0x5A));
}

TEST(DescriptorGeneral, IsMadeFromATagAndBytes) {
  const Bytes data(600, 0x11);
  const DescriptorGeneral d(0xC0, data.data(), 600);
  EXPECT_EQ(d.get_descriptor_tag(), 0xC0);
  EXPECT_EQ(d.get_descriptor_length(), 600);
  EXPECT_EQ(d.get_private_data(), data);
  for (const int length : {0, -1, -256}) {
    const DescriptorGeneral none(0xC0, data.data(), length);
    EXPECT_EQ(none.get_descriptor_length(), length);
    EXPECT_TRUE(none.get_private_data().empty());
  }
}

TEST(DescriptorGeneral, IsEmptyAtFirstAndAfterReset) {
  DescriptorGeneral d;
  EXPECT_EQ(report(d), "descriptor_tag: 00 Reserved\ndata:\n");
  d = DescriptorGeneral(kGeneral.data());
  d.reset();
  EXPECT_EQ(saved(d), R"(<d descriptor_id="161" descriptor_length="17" private_data="" />)");
}

TEST(DescriptorGeneral, PrintsItsBytesInTheCaseOfTheStream) {
  std::ostringstream stream;
  stream << std::uppercase;
  DescriptorGeneral(descriptor(0xAB, {0xCD, 0x0E}).data()).dump_state(stream);
  EXPECT_EQ(stream.str(),
            "descriptor_tag: AB User Private\n"
            "data:\n"
            "CD 0E                                            : ..\n");
}

TEST(DescriptorGeneral, NeedsEachAttributeAndTakesItsTextAsItIs) {
  expect_each_attribute_needed<DescriptorGeneral>(saved(DescriptorGeneral(kGeneral.data())));
  // An odd number of digits gives no byte; the length is not held against the bytes.
  EXPECT_EQ(
      saved(loaded<DescriptorGeneral>(R"(<d descriptor_id="1" descriptor_length="9" private_data="abc" />)")),
      R"(<d descriptor_id="1" descriptor_length="9" private_data="" />)");
  EXPECT_EQ(saved(loaded<DescriptorGeneral>(
                R"(<d private_data="ABcd" descriptor_length="9" descriptor_id="1" />)")),
            R"(<d descriptor_id="1" descriptor_length="9" private_data="abcd" />)");
}

TEST(DescriptorGeneral, AddsTheBytesOfALoadToThoseItHas) {
  const xml::Document document =
      xml::Document::from_text(R"(<d descriptor_id="1" descriptor_length="2" private_data="0102" />)");
  DescriptorGeneral d;
  d.Parse(document.root());
  d.Parse(document.root());
  EXPECT_EQ(d.get_private_data(), (Bytes{1, 2, 1, 2}));
  d.reset();
  d.Parse(document.root());
  EXPECT_EQ(d.get_private_data(), (Bytes{1, 2}));
}

TEST(DescriptorStuffing, ReadsItsBytes) {
  const DescriptorStuffing d(kStuffing.data());
  EXPECT_EQ(d.get_descriptor_tag(), 0x42);
  EXPECT_EQ(d.get_descriptor_length(), 3);
  EXPECT_EQ(d.get_stuffing_byte(), (Bytes{0xFF, 0x00, 0x0A}));
  EXPECT_EQ(DescriptorStuffing(ByteView(kStuffing.data(), 3)).get_stuffing_byte(), (Bytes{0xFF, 0, 0}));
}

TEST(DescriptorStuffing, KeepsItsNameUnderAnotherTag) {
  const auto d =
      loaded<DescriptorStuffing>(R"(<d descriptor_id="200" descriptor_length="1" stuffing_byte="7f" />)");
  EXPECT_EQ(report(d),
            "descriptor_tag: c8 stuffing_descriptor\n"
            "stuffing_byte:\n"
            "7f                                               : .\n");
}

TEST(DescriptorStuffing, NeedsEachAttributeAndIsEmptiedByReset) {
  expect_each_attribute_needed<DescriptorStuffing>(saved(DescriptorStuffing(kStuffing.data())));
  DescriptorStuffing d(kStuffing.data());
  d.reset();
  EXPECT_EQ(saved(d), R"(<d descriptor_id="66" descriptor_length="3" stuffing_byte="" />)");
  EXPECT_EQ(report(d), "descriptor_tag: 42 stuffing_descriptor\n");
}
