#pragma once

// Compressed text of ATSC as an encoder makes it, from the lists of codes in data/atsc_text.

#include "tests/support/bytes.h"

#include <filesystem>
#include <map>
#include <string>
#include <string_view>
#include <utility>

namespace quillon::test {

class HuffmanEncoder {
 public:
  static constexpr int end = 0;
  static constexpr int escape = 27;

  // For a title (1) or a description (2), from the folder of the lists. Throws std::runtime_error where the
  // list can't be read.
  HuffmanEncoder(const std::filesystem::path& folder, int compression_type);

  bool has_code(int context, int symbol) const { return codes_.contains({context, symbol}); }
  std::string code(int context, int symbol) const { return codes_.at({context, symbol}); }

  // The bits of a character by the shortest way.
  std::string character(int context, int symbol) const;
  // Those of a text, without and with its end.
  std::string unended(std::string_view text) const;
  std::string ended(std::string_view text) const;

  static std::string plain(int symbol);

 private:
  std::map<std::pair<int, int>, std::string> codes_;  // by context and symbol
};

// The bytes of bits; the last byte is filled up with `filler`.
Bytes packed_bits(std::string bits, char filler = '0');

}  // namespace quillon::test
