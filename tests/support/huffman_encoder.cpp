#include "tests/support/huffman_encoder.h"

#include <bitset>
#include <fstream>
#include <stdexcept>

namespace quillon::test {

HuffmanEncoder::HuffmanEncoder(const std::filesystem::path& folder, int compression_type) {
  const std::filesystem::path list = folder / (compression_type == 1 ? "title.tsv" : "description.tsv");
  std::ifstream in(list);
  std::string heading;
  if (!std::getline(in, heading) || heading != "context\tcode\tsymbol")
    throw std::runtime_error(list.string() + ": no list of codes");
  int context = 0;
  int symbol = 0;
  // Where the escape has two codes, an encoder takes the later.
  for (std::string code; in >> context >> code >> symbol;) codes_[{context, symbol}] = code;
}

std::string HuffmanEncoder::character(int context, int symbol) const {
  if (context > 127) return plain(symbol);
  if (symbol != escape && has_code(context, symbol)) return code(context, symbol);
  return code(context, escape) + plain(symbol);
}

std::string HuffmanEncoder::unended(std::string_view text) const {
  std::string bits;
  int context = 0;
  for (const char c : text) {
    const int symbol = static_cast<unsigned char>(c);
    bits += character(context, symbol);
    context = symbol;
  }
  return bits;
}

std::string HuffmanEncoder::ended(std::string_view text) const {
  return unended(text) + character(text.empty() ? 0 : static_cast<unsigned char>(text.back()), end);
}

std::string HuffmanEncoder::plain(int symbol) {
  return std::bitset<8>(static_cast<unsigned>(symbol)).to_string();
}

Bytes packed_bits(std::string bits, char filler) {
  while (bits.size() % 8 != 0) bits += filler;
  Bytes bytes;
  for (size_t i = 0; i < bits.size(); i += 8)
    bytes.push_back(static_cast<uint8_t>(std::bitset<8>(bits, i, 8).to_ulong()));
  return bytes;
}

}  // namespace quillon::test
