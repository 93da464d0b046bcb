#pragma once

#include <cstdint>
#include <iterator>

namespace quillon::detail {

// The files of codes, in the order of compression_type, the first of which is 1.
inline constexpr const char* huffman_lists[] = {"title", "description"};

inline constexpr int huffman_contexts = 128;
inline constexpr uint8_t huffman_leaf = 0x80;

// What a 0 and a 1 lead to: a symbol with `huffman_leaf` added, or the number of a node in the same context.
struct HuffmanNode {
  uint8_t next[2];
};

struct HuffmanTable {
  const HuffmanNode* nodes;          // those of one context after those of another
  uint16_t first[huffman_contexts];  // the place of each context's root
};

// Made from data/atsc_text by the build.
extern const HuffmanTable huffman_tables[std::size(huffman_lists)];

}  // namespace quillon::detail
