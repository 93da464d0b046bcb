#pragma once

// Changes to sections that know where lengths and descriptors lie.

#include <cstddef>
#include <cstdint>
#include <vector>

namespace quillon::fuzz {

using Bytes = std::vector<uint8_t>;

// A stretch of a section, and the two-byte length fields that count its bytes, the outermost first. For a
// loop of descriptors its own length field is the last.
struct Part {
  size_t at;
  size_t size;
  std::vector<size_t> lengths;
};

struct Structure {
  std::vector<Part> loops;
  std::vector<Part> descriptors;
  std::vector<Part> rows;
  size_t count = 0;     // place of the byte that counts the rows; 0 if there is none
  uint8_t mask = 0x0F;  // the bits of a length field's first byte that belong to the length
};

// As far as the bytes make sense; of a table id that has no layout here the whole body is one loop.
Structure structure_of(const Bytes& section);

// Makes a section whole: section_length for its size, the bits of a long or short header, the right CRC.
void repair(Bytes& section);

// One change. Most keep all lengths right: a descriptor, row or byte comes, goes, moves or is doubled, and
// every length around it is corrected. The others make one length, tag or table id wrong.
void mutate_structure(Bytes& section, uint32_t seed);
// A descriptor or row of `other` comes into `section`, which keeps its lengths right.
void splice(Bytes& section, const Bytes& other, uint32_t seed);

}  // namespace quillon::fuzz
