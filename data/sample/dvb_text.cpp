#include "data/sample/dvb_text.h"

#include <algorithm>
#include <stdexcept>

#include <quillon/platform/utf8.h>

namespace quillon::sample {

using test::Bytes;

namespace {

// The parts of ISO 8859 have the characters of their script in the order of ISO 10646.
struct Script {
  TextTable table;
  Bytes selection;
  int first;
  int last;
  int shift;  // from the character's number to its byte
};
const Script kScripts[] = {
    {TextTable::cyrillic, {0x01}, 0x401, 0x45F, 0x360},
    {TextTable::arabic, {0x02}, 0x60C, 0x652, 0x560},
    {TextTable::greek, {0x03}, 0x384, 0x3CE, 0x2D0},
    {TextTable::hebrew, {0x04}, 0x5D0, 0x5EA, 0x4F0},
    {TextTable::latin_5, {0x05}, 0xA0, 0xFF, 0},
    {TextTable::latin_1, {0x10, 0x00, 0x01}, 0xA0, 0xFF, 0},
};

// A letter of ISO 6937 with the mark in front of it, or one byte.
struct Letter {
  char16_t character;
  Bytes bytes;
};
const Letter kLetters[] = {
    {u'£', {0xA3}},      {u'À', {0xC1, 'A'}}, {u'à', {0xC1, 'a'}}, {u'è', {0xC1, 'e'}}, {u'é', {0xC2, 'e'}},
    {u'î', {0xC3, 'i'}}, {u'ù', {0xC1, 'u'}}, {u'û', {0xC3, 'u'}}, {u'’', {0xB9}},
};

std::invalid_argument missing(std::string_view text) {
  return std::invalid_argument("a character is not in the table: " + std::string(text));
}

}  // namespace

Bytes dvb_text(TextTable table, std::string_view utf8) {
  if (table == TextTable::utf_8) return test::joined({{0x15}, test::text(utf8)});
  const auto script = std::ranges::find(kScripts, table, &Script::table);
  Bytes out;
  if (table == TextTable::utf_16) out = {0x11};
  if (script != std::end(kScripts)) out = script->selection;
  for (const uint16_t character : platform::to_utf16(utf8)) {
    if (table == TextTable::utf_16) {
      out.push_back(static_cast<uint8_t>(character >> 8));
      out.push_back(static_cast<uint8_t>(character));
    } else if (character < 0x80) {
      out.push_back(static_cast<uint8_t>(character));
    } else if (table == TextTable::iso_6937) {
      const auto letter = std::ranges::find(kLetters, character, &Letter::character);
      if (letter == std::end(kLetters)) throw missing(utf8);
      out.insert(out.end(), letter->bytes.begin(), letter->bytes.end());
    } else {
      if (character < script->first || character > script->last) throw missing(utf8);
      out.push_back(static_cast<uint8_t>(character - script->shift));
    }
  }
  return out;
}

}  // namespace quillon::sample
