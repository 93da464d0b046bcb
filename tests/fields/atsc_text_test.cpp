#include "tests/support/huffman_encoder.h"

#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>
#include <map>
#include <optional>
#include <random>
#include <string>
#include <string_view>

#include <quillon/fields/internal/atsc_text.h>

using namespace quillon::detail;
using quillon::wide_string;
using quillon::test::Bytes;
using Encoder = quillon::test::HuffmanEncoder;
using quillon::test::joined;
using quillon::test::packed_bits;

namespace {

constexpr int kEnd = Encoder::end;
constexpr int kEscape = Encoder::escape;

std::u16string utf16(const wide_string& text) {
  return std::u16string(text.begin(), text.end());
}

std::u16string scsu(const Bytes& bytes) {
  return utf16(scsu_text(bytes));
}

std::string one(int symbol) {
  return std::string(1, static_cast<char>(symbol));
}

// With an encoder for the compression type.
class HuffmanText : public testing::TestWithParam<int> {
 protected:
  void SetUp() override {
    if (!std::getenv("QUILLON_DATA")) GTEST_SKIP() << "QUILLON_DATA is not set";
    encoder_.emplace(std::filesystem::path(std::getenv("QUILLON_DATA")) / "atsc_text", GetParam());
  }

  std::string decoded(const Bytes& bytes) const { return huffman_text(GetParam(), bytes); }
  std::string decoded(const std::string& bits) const { return decoded(packed_bits(bits)); }

  std::optional<Encoder> encoder_;
};

INSTANTIATE_TEST_SUITE_P(AtscText, HuffmanText, testing::Values(1, 2),
                         [](const auto& test) { return test.param == 1 ? "Titles" : "Descriptions"; });

}  // namespace

TEST(AtscText, HuffmanVectors) {
  EXPECT_EQ(huffman_text(1, Bytes{0x43, 0x28, 0xDC, 0x84, 0xD4}), "The next");
  EXPECT_EQ(huffman_text(1, Bytes{0xA7, 0xA7, 0xF1, 0x54, 0xF1, 0x49, 0x3A, 0x81, 0x26, 0x8E, 0x48, 0x60}),
            "MythTV is cool!");
  EXPECT_EQ(huffman_text(2, Bytes{0xFD, 0x3C, 0xA9, 0xD0, 0xB8, 0xA9, 0x15, 0x6A, 0x76, 0x8A, 0x48}),
            "MythTV is cool.");
  EXPECT_EQ(huffman_text(1, Bytes{0xE9, 0x6C, 0xD2, 0x90, 0xB0, 0x29, 0x24}), "Lorem ipsum");
  EXPECT_EQ(huffman_text(2, Bytes{0x9C, 0xEC, 0xFE, 0xA3, 0x33, 0x2F, 0xF5, 0x80}), "Lorem ipsum.");
  EXPECT_EQ(huffman_text(1, Bytes{0xB9, 0x5B, 0xE7, 0xA4, 0x81, 0xBC, 0x73, 0xD2, 0x41, 0x29, 0xC0, 0x41,
                                  0x22, 0xEB, 0x64, 0x90, 0xC8}),
            "Caf\xE9 Ol\xE9 \xE0 la Carte");
  EXPECT_EQ(huffman_text(2, Bytes{0x5D, 0x1F, 0xF3, 0x7B, 0xDD, 0xBE, 0x7F, 0xBB, 0xEE, 0x75,
                                  0xFF, 0xB3, 0x09, 0x45, 0x44, 0x41, 0xFA, 0x9B, 0xBD, 0xD4,
                                  0xC8, 0xA2, 0xCF, 0x36, 0xE7, 0xE2, 0xDE, 0xE7, 0xC0, 0x00}),
            "A na\xEFve chef: 50\xA2\xA2 \"no\", se\xF1or");
}

TEST(AtscText, OtherCompressionTypesHaveNoTable) {
  for (const int type : {-1, 0, 3, 175, 255}) EXPECT_EQ(huffman_text(type, Bytes{0x43, 0x28}), "") << type;
}

TEST_P(HuffmanText, EveryCodeOfEveryContext) {
  for (int context = 0; context < 128; ++context)
    for (int symbol = 1; symbol < 256; ++symbol) {
      const std::string text = context == 0 ? one(symbol) : one(context) + one(symbol);
      EXPECT_EQ(decoded(encoder_->ended(text)), text) << context << ", " << symbol;
    }
}

TEST_P(HuffmanText, RandomTexts) {
  std::mt19937 random(6);
  for (int i = 0; i < 5000; ++i) {
    std::string text;
    // Letters, so that short codes come in a row; all of ASCII; all there is.
    const unsigned first = i % 3 == 0 ? 'a' : 1;
    const unsigned count = i % 3 == 0 ? 26 : i % 3 == 1 ? 127 : 255;
    for (size_t left = random() % 60; left > 0; --left) text += static_cast<char>(first + random() % count);
    EXPECT_EQ(decoded(encoder_->ended(text)), text);
  }
}

TEST_P(HuffmanText, EndAsACodeOrPlain) {
  for (int context = 1; context < 256; ++context) {
    const std::string bits = encoder_->unended(one(context));
    const std::string after = Encoder::plain('x') + Encoder::plain('y');
    if (context > 127) {
      EXPECT_EQ(decoded(bits + Encoder::plain(kEnd) + after), one(context)) << context;
      continue;
    }
    EXPECT_EQ(decoded(bits + encoder_->code(context, kEscape) + Encoder::plain(kEnd) + after), one(context))
        << context;
    if (encoder_->has_code(context, kEnd)) {
      EXPECT_EQ(decoded(bits + encoder_->code(context, kEnd) + after), one(context)) << context;
    }
  }
}

TEST_P(HuffmanText, EscapeOfACharacterThatHasACode) {
  ASSERT_TRUE(encoder_->has_code(0, 'T'));
  EXPECT_EQ(decoded(encoder_->code(0, kEscape) + Encoder::plain('T') + encoder_->character('T', 'h') +
                    encoder_->character('h', kEnd)),
            "Th");
}

TEST_P(HuffmanText, EitherBitIsTheEscapeWhereThereIsNoOtherSymbol) {
  const std::string tilde = encoder_->unended("~");
  for (const char* const escape : {"0", "1"})
    EXPECT_EQ(decoded(tilde + escape + Encoder::plain('a') + encoder_->character('a', kEnd)), "~a");
}

TEST_P(HuffmanText, PlainCharactersAfterOneAbove127) {
  EXPECT_EQ(decoded(encoder_->character(0, 'S') + encoder_->code('S', kEscape) + Encoder::plain(0xE9) +
                    Encoder::plain(0xFF) + Encoder::plain(0x80) + Encoder::plain('t') +
                    encoder_->character('t', 'h') + encoder_->character('h', kEnd)),
            "S\xE9\xFF\x80th");
}

TEST_P(HuffmanText, APlainEscapeIsACharacter) {
  const std::string escaped = encoder_->code(0, kEscape) + Encoder::plain(kEscape);
  EXPECT_EQ(decoded(escaped + encoder_->character(kEscape, 'T') + encoder_->character('T', kEnd)), "\x1BT");
  EXPECT_EQ(decoded(encoder_->unended("\xE9") + Encoder::plain(kEscape) + encoder_->character(kEscape, 'T') +
                    encoder_->character('T', kEnd)),
            "\xE9\x1BT");
}

TEST_P(HuffmanText, Empty) {
  EXPECT_EQ(decoded(Bytes{}), "");
  EXPECT_EQ(decoded(encoder_->ended("")), "");
}

TEST_P(HuffmanText, BytesAfterTheEndAreIgnored) {
  EXPECT_EQ(decoded(joined({packed_bits(encoder_->ended("The next")), {0x43, 0x28, 0xDC, 0xFF}})),
            "The next");
}

// The filler of the last byte may be read as further characters, and never as fewer.
TEST_P(HuffmanText, WithoutAnEndTheBytesAreTheLimit) {
  const std::string text = "The n\xE9\xE8xt";
  const std::string bits = encoder_->unended(text);
  for (size_t cut = 0; cut <= bits.size(); cut += 8) {
    const std::string start = decoded(packed_bits(bits.substr(0, cut)));
    EXPECT_EQ(start, text.substr(0, start.size()));
    // One more character would not have been whole.
    if (start != text) {
      EXPECT_GT(encoder_->unended(text.substr(0, start.size() + 1)).size(), cut);
    }
  }
  for (const char filler : {'0', '1'}) EXPECT_TRUE(decoded(packed_bits(bits, filler)).starts_with(text));
}

TEST(AtscText, ScsuSamples) {
  EXPECT_EQ(scsu({0xD6, 0x6C, 0x20, 0x66, 0x6C, 0x69, 0x65, 0xDF, 0x74}), u"Öl fließt");
  EXPECT_EQ(scsu({0x12, 0x9C, 0xBE, 0xC1, 0xBA, 0xB2, 0xB0}), u"Москва");
  EXPECT_EQ(
      scsu({0x08, 0x00, 0x1B, 0x4C, 0xEA, 0x16, 0xCA, 0xD3, 0x94, 0x0F, 0x53, 0xEF, 0x61, 0x1B, 0xE5,
            0x84, 0xC4, 0x0F, 0x53, 0xEF, 0x61, 0x1B, 0xE5, 0x84, 0xC4, 0x16, 0xCA, 0xD3, 0x94, 0x08,
            0x02, 0x0F, 0x53, 0x4A, 0x4E, 0x16, 0x7D, 0x00, 0x30, 0x82, 0x52, 0x4D, 0x30, 0x6B, 0x6D,
            0x41, 0x88, 0x4C, 0xE5, 0x97, 0x9F, 0x08, 0x0C, 0x16, 0xCA, 0xD3, 0x94, 0x15, 0xAE, 0x0E,
            0x6B, 0x4C, 0x08, 0x0D, 0x8C, 0xB4, 0xA3, 0x9F, 0xCA, 0x99, 0xCB, 0x8B, 0xC2, 0x97, 0xCC,
            0xAA, 0x84, 0x08, 0x02, 0x0E, 0x7C, 0x73, 0xE2, 0x16, 0xA3, 0xB7, 0xCB, 0x93, 0xD3, 0xB4,
            0xC5, 0xDC, 0x9F, 0x0E, 0x79, 0x3E, 0x06, 0xAE, 0xB1, 0x9D, 0x93, 0xD3, 0x08, 0x0C, 0xBE,
            0xA3, 0x8F, 0x08, 0x88, 0xBE, 0xA3, 0x8D, 0xD3, 0xA8, 0xA3, 0x97, 0xC5, 0x17, 0x89, 0x08,
            0x0D, 0x15, 0xD2, 0x08, 0x01, 0x93, 0xC8, 0xAA, 0x8F, 0x0E, 0x61, 0x1B, 0x99, 0xCB, 0x0E,
            0x4E, 0xBA, 0x9F, 0xA1, 0xAE, 0x93, 0xA8, 0xA0, 0x08, 0x02, 0x08, 0x0C, 0xE2, 0x16, 0xA3,
            0xB7, 0xCB, 0x0F, 0x4F, 0xE1, 0x80, 0x05, 0xEC, 0x60, 0x8D, 0xEA, 0x06, 0xD3, 0xE6, 0x0F,
            0x8A, 0x00, 0x30, 0x44, 0x65, 0xB9, 0xE4, 0xFE, 0xE7, 0xC2, 0x06, 0xCB, 0x82}),
      u"　♪リンゴ可愛いや可愛いやリンゴ。半世紀も前に流行した「リンゴの歌」がぴったりするかもしれない。"
      u"米アップルコンピュータ社のパソコン「マック（マッキントッシュ）」を、こよなく愛する人たちのことだ。"
      u"「アップル信者」なんて言い方まである。");
  EXPECT_EQ(scsu({0x41, 0xDF, 0x12, 0x81, 0x03, 0x5F, 0x10, 0xDF, 0x1B, 0x03, 0xDF, 0x1C,
                  0x88, 0x80, 0x0B, 0xBF, 0xFF, 0xFF, 0x0D, 0x0A, 0x41, 0x10, 0xDF, 0x12,
                  0x81, 0x03, 0x5F, 0x10, 0xDF, 0x13, 0xDF, 0x14, 0x80, 0x15, 0xFF}),
            u"A\u00DF\u0401\u015F\u00DF\u01DF\uF000\U0010FFFF\r\nA\u00DF\u0401\u015F\u00DF\u01DF\uF000"
            u"\U0010FFFF");
}

TEST(AtscText, ScsuSingleBytes) {
  EXPECT_EQ(scsu({}), u"");
  EXPECT_EQ(scsu({0x00, 0x09, 0x0A, 0x0D}), (std::u16string{0, 9, 10, 13}));
  for (unsigned byte = 0x20; byte <= 0xFF; ++byte)
    EXPECT_EQ(scsu({static_cast<uint8_t>(byte)}), std::u16string(1, static_cast<char16_t>(byte))) << byte;
}

TEST(AtscText, ScsuWindows) {
  constexpr char16_t fixed[] = {0x0000, 0x0080, 0x0100, 0x0300, 0x2000, 0x2080, 0x2100, 0x3000};
  constexpr char16_t initial[] = {0x0080, 0x00C0, 0x0400, 0x0600, 0x0900, 0x3040, 0x30A0, 0xFF00};
  for (uint8_t n = 0; n < 8; ++n) {
    const auto sq = static_cast<uint8_t>(0x01 + n);
    const auto sc = static_cast<uint8_t>(0x10 + n);
    const auto sd = static_cast<uint8_t>(0x18 + n);
    const auto uc = static_cast<uint8_t>(0xE0 + n);
    const auto ud = static_cast<uint8_t>(0xE8 + n);
    const auto in_fixed = [&](int i) { return static_cast<char16_t>(fixed[n] + i); };
    const auto in_initial = [&](int i) { return static_cast<char16_t>(initial[n] + i); };
    // A quotation is of one character, and selects nothing.
    EXPECT_EQ(scsu({sq, 0x00, sq, 0x7F, sq, 0x80, sq, 0xFF, 0xE9}),
              (std::u16string{in_fixed(0), in_fixed(0x7F), in_initial(0), in_initial(0x7F), 0xE9}));
    EXPECT_EQ(scsu({sc, 0x80, 0x41, 0xFF}), (std::u16string{in_initial(0), 'A', in_initial(0x7F)}));
    EXPECT_EQ(scsu({0x0F, uc, 0x80, 0x41, 0xFF}), (std::u16string{in_initial(0), 'A', in_initial(0x7F)}));
    // A definition lasts.
    EXPECT_EQ(scsu({sd, 0x1C, 0x80, 0xFF, 0x10, 0x41, sc, 0x81, sq, 0x82}),
              u"\x0E00\x0E7F\x0041\x0E01\x0E02");
    EXPECT_EQ(scsu({0x0F, ud, 0x1C, 0x80, 0x0F, uc, 0x81}), u"\x0E00\x0E01");
    // Supplementary characters: the second window that there may be, and the last.
    const auto high = static_cast<uint8_t>(n << 5);
    EXPECT_EQ(scsu({0x0B, high, 0x01, 0x80, 0xFF, 0x10, sc, 0x81, sq, 0x82}),
              u"\U00010080\U000100FF\U00010081\U00010082");
    EXPECT_EQ(scsu({0x0F, 0xF1, static_cast<uint8_t>(high | 0x1F), 0xFF, 0x80, 0xFF}),
              u"\U0010FF80\U0010FFFF");
  }
}

TEST(AtscText, ScsuWindowOffsets) {
  const std::map<unsigned, char16_t> special = {{0xF9, 0x00C0}, {0xFA, 0x0250}, {0xFB, 0x0370},
                                                {0xFC, 0x0530}, {0xFD, 0x3040}, {0xFE, 0x30A0},
                                                {0xFF, 0xFF60}};
  for (unsigned byte = 0; byte < 256; ++byte) {
    const auto x = static_cast<uint8_t>(byte);
    std::u16string expected = u"\xFFFD\x0905";  // reserved: the window has the offset that it had
    if (special.contains(byte))
      expected = static_cast<char16_t>(special.at(byte) + 5);
    else if (byte >= 0x68 && byte <= 0xA7)
      expected = static_cast<char16_t>(0xE000 + (byte - 0x68) * 0x80 + 5);
    else if (byte >= 0x01 && byte <= 0x67)
      expected = static_cast<char16_t>(byte * 0x80 + 5);
    EXPECT_EQ(scsu({0x1C, x, 0x85}), expected) << byte;
    EXPECT_EQ(scsu({0x0F, 0xEC, x, 0x85}), expected) << byte;
  }
}

TEST(AtscText, ScsuUnits) {
  EXPECT_EQ(scsu({0x0E, 0x4E, 0xBA, 0x41}), u"人A");
  EXPECT_EQ(scsu({0x0F, 0x4E, 0xBA, 0x00, 0x41, 0xF0, 0xE0, 0x12, 0xF0, 0x00, 0x42, 0xF3, 0x34, 0xFF, 0x01}),
            u"人A\xE012\x0042\xF334\xFF01");
  for (unsigned high = 0; high < 256; ++high) {
    const auto unit = static_cast<char16_t>(high << 8 | 0x21);
    const auto byte = static_cast<uint8_t>(high);
    EXPECT_EQ(scsu({0x0E, byte, 0x21}), std::u16string(1, unit));
    EXPECT_EQ(scsu({0x0F, 0xF0, byte, 0x21, 0x00, 0x41}), (std::u16string{unit, 'A'}));
    if (high < 0xE0 || high > 0xF2) {
      EXPECT_EQ(scsu({0x0F, byte, 0x21, 0x00, 0x41}), (std::u16string{unit, 'A'}));
    }
  }
  EXPECT_EQ(scsu({0x0F, 0xD8, 0x3D, 0xDE, 0x00}), u"\U0001F600");
  EXPECT_EQ(scsu({0x0E, 0xD8, 0x3D, 0x0E, 0xDE, 0x00}), u"\U0001F600");
}

TEST(AtscText, ScsuReservedCodes) {
  EXPECT_EQ(scsu({0x41, 0x0C, 0x12, 0x9C, 0x0C, 0xBE}), u"A\xFFFDМ\xFFFDо");
  EXPECT_EQ(scsu({0x0F, 0xF2, 0x4E, 0xBA, 0xF2, 0xE2, 0x9C}), u"\xFFFD人\xFFFDМ");
}

TEST(AtscText, ScsuCutSequences) {
  const Bytes single[] = {{0x01, 0x20}, {0x08, 0x80},       {0x18, 0x1C},
                          {0x1F, 0x1C}, {0x0B, 0x00, 0x01}, {0x0E, 0x4E, 0xBA}};
  const Bytes unicode[] = {{0x4E, 0xBA}, {0xFF, 0x01},       {0xE8, 0x1C},
                           {0xEF, 0x1C}, {0xF0, 0x4E, 0xBA}, {0xF1, 0x00, 0x01}};
  const auto expect_replaced = [](const Bytes& before, const Bytes& sequence) {
    for (size_t size = 1; size < sequence.size(); ++size)
      EXPECT_EQ(
          scsu(joined({before, Bytes(sequence.begin(), sequence.begin() + static_cast<ptrdiff_t>(size))})),
          u"A\xFFFD")
          << int{sequence[0]} << ", " << size;
    EXPECT_EQ(scsu(joined({before, sequence})).find(u'\xFFFD'), std::u16string::npos) << int{sequence[0]};
  };
  for (const Bytes& sequence : single) expect_replaced({0x41}, sequence);
  for (const Bytes& sequence : unicode) expect_replaced({0x41, 0x0F}, sequence);
}

TEST(AtscText, Utf16) {
  EXPECT_EQ(utf16(utf16be_text(Bytes{})), u"");
  EXPECT_EQ(utf16(utf16be_text(Bytes{0x4E, 0xBA, 0xD8, 0x3D, 0xDE, 0x00})), u"人\U0001F600");
  EXPECT_EQ(utf16(utf16be_text(Bytes{0x00, 0x41, 0x00})), u"A\xFFFD");
  EXPECT_EQ(utf16(utf16be_text(Bytes{0x41})), u"\xFFFD");
}

TEST(AtscText, AnyBytesAreTaken) {
  std::mt19937 random(9);
  for (int i = 0; i < 20000; ++i) {
    Bytes bytes(random() % 40);
    // Low bytes are most of the codes of SCSU.
    for (uint8_t& byte : bytes) byte = static_cast<uint8_t>(random() % (i % 2 ? 256 : 40));
    for (const int type : {1, 2}) EXPECT_LE(huffman_text(type, bytes).size(), bytes.size() * 8);
    EXPECT_LE(scsu_text(bytes).size(), bytes.size() * 2);
    EXPECT_EQ(utf16be_text(bytes).size(), (bytes.size() + 1) / 2);
  }
}
