#include "fuzz/structure.h"

#include <algorithm>

#include <quillon/sections/crc.h>

namespace quillon::fuzz {

namespace {

constexpr size_t kHeader = 8;
constexpr size_t kCrc = 4;
constexpr size_t kLargest = 4098;

// Where a table has its loops: the first byte after the fixed fields, whether a loop of descriptors is
// there, whether a length of all rows follows, and the bytes of a row in front of its loops.
struct Layout {
  uint8_t first;
  uint8_t last;
  uint8_t begin;
  bool descriptors;
  bool rows_length;
  uint8_t row = 0;
  uint8_t loops = 0;  // a row
  uint8_t count = 0;  // place of the byte that counts the rows
  uint8_t mask = 0x0F;
  uint8_t title = 0;  // place in a row of the length of a text after its fixed bytes
};

// clang-format off
constexpr Layout kLayouts[] = {
    {.first = 0x02, .last = 0x02, .begin = 10, .descriptors = true, .rows_length = false, .row = 3, .loops = 1},
    {.first = 0x40, .last = 0x41, .begin = 8, .descriptors = true, .rows_length = true, .row = 4, .loops = 1},
    {.first = 0x42, .last = 0x46, .begin = 11, .descriptors = false, .rows_length = false, .row = 3, .loops = 1},
    {.first = 0x4A, .last = 0x4A, .begin = 8, .descriptors = true, .rows_length = true, .row = 4, .loops = 1},
    {.first = 0x4C, .last = 0x4C, .begin = 12, .descriptors = true, .rows_length = false, .row = 0, .loops = 2},
    {.first = 0x4E, .last = 0x6F, .begin = 14, .descriptors = false, .rows_length = false, .row = 10, .loops = 1},
    {.first = 0x73, .last = 0x73, .begin = 8, .descriptors = true, .rows_length = false},
    {.first = 0x74, .last = 0x74, .begin = 8, .descriptors = true, .rows_length = true, .row = 7, .loops = 1},
    {.first = 0xC7, .last = 0xC7, .begin = 11, .descriptors = false, .rows_length = false, .row = 9, .loops = 1, .count = 10},
    {.first = 0xC8, .last = 0xC9, .begin = 10, .descriptors = false, .rows_length = false, .row = 30, .loops = 1, .count = 9, .mask = 0x03},
    {.first = 0xCB, .last = 0xCB, .begin = 10, .descriptors = false, .rows_length = false, .row = 10, .loops = 1, .count = 9, .title = 9},
};
// clang-format on

class Scan {
 public:
  Scan(const Bytes& section, Structure& found) : section_(section), found_(found) {}

  size_t length_at(size_t at) const {
    return static_cast<size_t>((section_[at] & found_.mask) << 8 | section_[at + 1]);
  }

  void descriptors(size_t begin, size_t end, const std::vector<size_t>& lengths) {
    found_.loops.push_back({begin, end - begin, lengths});
    for (size_t at = begin; at + 2 <= end;) {
      const size_t size = std::min<size_t>(section_[at + 1] + size_t{2}, end - at);
      found_.descriptors.push_back({at, size, lengths});
      at += size;
    }
  }
  // A loop with its length in front; the place after it.
  size_t loop(size_t at, size_t end, std::vector<size_t> lengths) {
    if (at + 2 > end) return end;
    const size_t loop_end = std::min(end, at + 2 + length_at(at));
    lengths.push_back(at);
    descriptors(at + 2, loop_end, lengths);
    return loop_end;
  }
  void rows(const Layout& layout, size_t at, size_t end, const std::vector<size_t>& lengths) {
    while (at + layout.row + 2 <= end) {
      size_t behind = at + layout.row;
      if (layout.title) behind += section_[at + layout.title];
      for (int i = 0; i < layout.loops; ++i) behind = loop(behind, end, lengths);
      behind = std::min(behind, end);
      found_.rows.push_back({at, behind - at, lengths});
      at = behind;
    }
  }

 private:
  const Bytes& section_;
  Structure& found_;
};

class Random {
 public:
  explicit Random(uint32_t seed) : state_(seed * 2654435761u | 1) {}
  uint32_t next() {
    state_ ^= state_ << 13;
    state_ ^= state_ >> 17;
    return state_ ^= state_ << 5;
  }
  size_t below(size_t n) { return next() % n; }
  template <class T>
  const T& of(const std::vector<T>& all) {
    return all[below(all.size())];
  }

 private:
  uint32_t state_;
};

ptrdiff_t offset(size_t at) {
  return static_cast<ptrdiff_t>(at);
}

Bytes copy_of(const Bytes& section, const Part& part) {
  return Bytes(section.begin() + offset(part.at), section.begin() + offset(part.at + part.size));
}

void tell(Bytes& section, const std::vector<size_t>& lengths, size_t change, uint8_t mask) {
  for (const size_t at : lengths) {
    const size_t length = static_cast<size_t>((section[at] & mask) << 8 | section[at + 1]) + change;
    section[at] = static_cast<uint8_t>((section[at] & ~mask) | (length >> 8 & mask));
    section[at + 1] = static_cast<uint8_t>(length);
  }
}

void put_in(Bytes& section, size_t at, const Bytes& bytes, const std::vector<size_t>& lengths, uint8_t mask) {
  if (section.size() + bytes.size() > kLargest) return;
  section.insert(section.begin() + offset(at), bytes.begin(), bytes.end());
  tell(section, lengths, bytes.size(), mask);
}
void take_out(Bytes& section, const Part& part, uint8_t mask) {
  section.erase(section.begin() + offset(part.at), section.begin() + offset(part.at + part.size));
  tell(section, part.lengths, size_t{0} - part.size, mask);
}

// In front of a descriptor of the loop, or at its end.
size_t place_in(const Part& loop, const Structure& structure, Random& random) {
  std::vector<size_t> places = {loop.at + loop.size};
  for (const Part& descriptor : structure.descriptors)
    if (descriptor.at >= loop.at && descriptor.at < loop.at + loop.size) places.push_back(descriptor.at);
  return random.of(places);
}

void put_into_a_loop(Bytes& section, const Bytes& descriptor, Random& random) {
  const Structure structure = structure_of(section);
  if (structure.loops.empty()) return;
  const Part& loop = random.of(structure.loops);
  put_in(section, place_in(loop, structure, random), descriptor, loop.lengths, structure.mask);
}

void put_row(Bytes& section, const Bytes& row, Random& random) {
  const Structure structure = structure_of(section);
  if (structure.rows.empty()) return;
  const Part& before = random.of(structure.rows);
  put_in(section, before.at, row, before.lengths, structure.mask);
  if (structure.count) ++section[structure.count];
}

// A byte more or less in a descriptor, of which one of its bytes may be a length that is corrected too.
void resize_descriptor(Bytes& section, const Part& descriptor, uint8_t mask, Random& random) {
  const bool more = random.below(2) || descriptor.size < 4;
  const size_t n = more ? 1 + random.below(8) : 1 + random.below(std::min<size_t>(descriptor.size - 3, 8));
  if (more && descriptor.size + n > 257) return;
  const size_t at = descriptor.at + 2 + (descriptor.size > 2 ? random.below(descriptor.size - 2) : 0);
  const size_t change = more ? n : size_t{0} - n;
  if (random.below(2) && descriptor.size > 2) {
    const size_t inner = descriptor.at + 2 + random.below(descriptor.size - 2);
    section[inner] = static_cast<uint8_t>(section[inner] + change);
  }
  section[descriptor.at + 1] = static_cast<uint8_t>(section[descriptor.at + 1] + change);
  if (more) {
    Bytes bytes(n);
    for (uint8_t& byte : bytes) byte = static_cast<uint8_t>(random.next() >> 8);
    put_in(section, at, bytes, descriptor.lengths, mask);
  } else {
    const size_t from = std::min(at, descriptor.at + descriptor.size - n);
    take_out(section, {from, n, descriptor.lengths}, mask);
  }
}

// A length that is wrong, a tag or table id that is another.
void disturb(Bytes& section, const Structure& structure, Random& random) {
  const size_t anywhere = kHeader + random.below(section.size() - kHeader - kCrc);
  size_t at = anywhere;
  if (!structure.descriptors.empty() && random.below(2))
    at = random.of(structure.descriptors).at + random.below(2);
  switch (random.below(4)) {
    case 0:
      section[at] = static_cast<uint8_t>(section[at] + (random.below(2) ? 1 : -1));
      break;
    case 1:
      section[at] = random.below(2) ? 0xFF : 0x00;
      break;
    case 2:
      section[at] = static_cast<uint8_t>(random.next() >> 8);
      break;
    default: {
      static const uint8_t kIds[] = {0x00, 0x01, 0x02, 0x3B, 0x3C, 0x40, 0x41, 0x42, 0x46,
                                     0x4A, 0x4C, 0x4E, 0x50, 0x6F, 0x70, 0x71, 0x73, 0x74,
                                     0xC7, 0xC8, 0xC9, 0xCA, 0xCB, 0xCC, 0xCD, 0xD3, 0xD4};
      section[0] = kIds[random.below(std::size(kIds))];
    }
  }
}

}  // namespace

Structure structure_of(const Bytes& section) {
  Structure found;
  if (section.size() < kHeader + kCrc) return found;
  Scan scan(section, found);
  const size_t end = section.size() - kCrc;
  for (const Layout& layout : kLayouts) {
    if (section[0] < layout.first || section[0] > layout.last || layout.begin > end) continue;
    found.mask = layout.mask;
    found.count = layout.count;
    size_t at = layout.begin;
    if (layout.descriptors) at = scan.loop(at, end, {});
    std::vector<size_t> lengths;
    size_t rows_end = end;
    if (layout.rows_length) {
      if (at + 2 > end) return found;
      rows_end = std::min(end, at + 2 + scan.length_at(at));
      lengths = {at};
      at += 2;
    }
    if (layout.loops) scan.rows(layout, at, rows_end, lengths);
    return found;
  }
  scan.descriptors(kHeader, end, {});
  return found;
}

void repair(Bytes& section) {
  section.resize(std::clamp(section.size(), kHeader + kCrc, kLargest));
  const bool is_short = section[0] >= 0x70 && section[0] <= 0x73;
  if (is_short) section.resize(std::min<size_t>(section.size(), 1026));  // the length has two top bits of 0
  const size_t length = section.size() - 3;
  section[1] = static_cast<uint8_t>((is_short ? 0x70 : 0xF0) | length >> 8);
  section[2] = static_cast<uint8_t>(length);
  // section_crc gives the register inverted; CRC_32 is the register itself.
  const uint32_t crc = ~section_crc(section.data(), section.size() - kCrc);
  for (size_t i = 0; i < kCrc; ++i)
    section[section.size() - kCrc + i] = static_cast<uint8_t>(crc >> (24 - 8 * i));
}

void mutate_structure(Bytes& section, uint32_t seed) {
  if (section.size() <= kHeader + kCrc) return;
  Random random(seed);
  const Structure structure = structure_of(section);
  const bool has_descriptors = !structure.descriptors.empty();
  const bool has_rows = !structure.rows.empty();
  switch (random.below(8)) {
    case 0:
      if (has_descriptors) return take_out(section, random.of(structure.descriptors), structure.mask);
      break;
    case 1:
      if (has_descriptors)
        return put_into_a_loop(section, copy_of(section, random.of(structure.descriptors)), random);
      break;
    case 2:  // moved
      if (has_descriptors) {
        const Part& part = random.of(structure.descriptors);
        const Bytes descriptor = copy_of(section, part);
        take_out(section, part, structure.mask);
        return put_into_a_loop(section, descriptor, random);
      }
      break;
    case 3: {  // a new one
      Bytes descriptor(2 + random.below(24));
      for (uint8_t& byte : descriptor) byte = static_cast<uint8_t>(random.next() >> 8);
      descriptor[1] = static_cast<uint8_t>(descriptor.size() - 2);
      return put_into_a_loop(section, descriptor, random);
    }
    case 4:
      if (has_descriptors)
        return resize_descriptor(section, random.of(structure.descriptors), structure.mask, random);
      break;
    case 5:
      if (has_rows && random.below(2)) {
        take_out(section, random.of(structure.rows), structure.mask);
        if (structure.count) --section[structure.count];
        return;
      }
      if (has_rows) return put_row(section, copy_of(section, random.of(structure.rows)), random);
      break;
    default:
      break;
  }
  disturb(section, structure, random);
}

void splice(Bytes& section, const Bytes& other, uint32_t seed) {
  Random random(seed);
  const Structure from = structure_of(other);
  if (!from.rows.empty() && section.size() > 0 && section[0] == other[0] && random.below(3) == 0)
    put_row(section, copy_of(other, random.of(from.rows)), random);
  else if (!from.descriptors.empty())
    put_into_a_loop(section, copy_of(other, random.of(from.descriptors)), random);
}

}  // namespace quillon::fuzz
