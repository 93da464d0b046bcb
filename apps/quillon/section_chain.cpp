#include "apps/quillon/section_chain.h"

#include <algorithm>

#include <quillon/sections/crc.h>
#include <quillon/sections/section_size.h>
#include <quillon/stream/packet_reader.h>

namespace quillon::app {

namespace {

constexpr size_t kHeader = 3;
constexpr size_t kSmallestLong = 12;
constexpr size_t kLargest = 4098;
// So much is looked at, at most, to tell what an input is.
constexpr size_t kEnough = size_t{1} << 16;
constexpr uint8_t kSync = 0x47;

constexpr int kTime = 0x70;
constexpr int kRunningStatus = 0x71;
constexpr int kTimeOffset = 0x73;

bool is_long(const uint8_t* section) {
  return section[1] & 0x80;
}

// By its header alone.
bool can_be(const uint8_t* section) {
  return section_size(section) >= (is_long(section) ? kSmallestLong : kHeader + 1);
}

bool is_good(std::span<const uint8_t> bytes) {
  if (bytes.size() < kHeader || !can_be(bytes.data())) return false;
  if (!is_long(bytes.data()) && bytes[0] != kTimeOffset) return false;
  const size_t size = section_size(bytes.data());
  return size <= bytes.size() && section_crc(bytes.data(), size) == good_section_crc;
}

// Those without a CRC have few forms that they can take.
bool is_good_short(const uint8_t* section) {
  if ((section[1] & 0xF0) != 0x70) return false;
  const size_t body = section_size(section) - kHeader;
  return (section[0] == kTime && body == 5) || (section[0] == kRunningStatus && body > 0 && body % 9 == 0);
}

// Reserved bits are set, and the section is none after the last: so sought, garbage costs few CRCs and is
// hardly ever taken for a section.
bool is_usual(const uint8_t* section) {
  if ((section[1] & 0x30) != 0x30) return false;
  return !is_long(section) || ((section[5] & 0xC0) == 0xC0 && section[6] <= section[7]);
}

bool has_packets(std::span<const uint8_t> bytes) {
  for (size_t at = 0; at + TsPacket::size < bytes.size(); ++at) {
    if (bytes[at] != kSync) continue;
    for (const size_t stride : {188u, 192u, 204u, 208u})
      if (at + 2 * stride < bytes.size() && bytes[at + stride] == kSync && bytes[at + 2 * stride] == kSync)
        return true;
  }
  return false;
}

// As far as one can see; too little to tell.
bool may_be_packets(std::span<const uint8_t> bytes) {
  const auto begin_with_sync = [bytes](size_t first, size_t stride) {
    if (bytes.size() > first + 2 * stride) return false;
    for (size_t at = first; at < bytes.size(); at += stride)
      if (bytes[at] != kSync) return false;
    return bytes.size() > first;
  };
  return begin_with_sync(0, 188) || begin_with_sync(0, 204) || begin_with_sync(0, 208) ||
         begin_with_sync(4, 192);
}

bool has_section(std::span<const uint8_t> bytes) {
  for (size_t at = 0; bytes.size() - at >= kHeader; at += section_size(bytes.data() + at)) {
    if (section_size(bytes.data() + at) > bytes.size() - at || !can_be(bytes.data() + at)) break;
    if (is_good(bytes.subspan(at)) || is_good_short(bytes.data() + at)) return true;
  }
  // The length of the first may be what is broken.
  for (size_t at = 1; at < std::min(bytes.size(), kLargest); ++at)
    if (is_good(bytes.subspan(at))) return true;
  return false;
}

}  // namespace

Content content_of(std::span<const uint8_t> first) {
  if (has_packets(first)) return Content::packets;
  if (may_be_packets(first)) return Content::unknown;
  if (has_section(first)) return Content::sections;
  return first.size() < kEnough ? Content::unknown : Content::packets;
}

void ChainReader::push(std::span<const uint8_t> piece, const Sink& sink) {
  held_.insert(held_.end(), piece.begin(), piece.end());
  cut(sink, false);
}

void ChainReader::finish(const Sink& sink) {
  cut(sink, true);
  skipped_ += held_.size();
  held_.clear();
}

// Whether a section begins there.
ChainReader::Verdict ChainReader::judge(std::span<const uint8_t> bytes, bool is_end) const {
  if (bytes.size() < kHeader) return Verdict::more;
  if (!can_be(bytes.data())) return Verdict::none;
  const size_t size = section_size(bytes.data());
  if (size > bytes.size()) return is_end ? Verdict::none : Verdict::more;
  if (lost_ && !is_usual(bytes.data())) return Verdict::none;
  if (is_good(bytes)) return Verdict::section;
  if (lost_) return Verdict::none;
  if (is_good_short(bytes.data())) return Verdict::section;
  // It is damaged, or says nothing of itself: what comes next tells.
  const std::span<const uint8_t> next = bytes.subspan(size);
  if (next.size() < kHeader) return is_end ? Verdict::section : Verdict::more;
  if (!can_be(next.data())) return Verdict::none;
  const bool are_alike = (next[0] | 1) == (bytes[0] | 1);  // ECMs have two ids in turn
  if (!is_long(bytes.data()) && !is_long(next.data()) && are_alike) return Verdict::section;
  if (section_size(next.data()) > next.size()) return is_end ? Verdict::section : Verdict::more;
  return is_good(next) || is_good_short(next.data()) ? Verdict::section : Verdict::none;
}

void ChainReader::cut(const Sink& sink, bool is_end) {
  std::span<const uint8_t> left = held_;
  for (;;) {
    const Verdict verdict = judge(left, is_end);
    if (verdict == Verdict::more) break;
    lost_ = verdict == Verdict::none;
    const size_t size = lost_ ? 1 : section_size(left.data());
    if (lost_) {
      ++skipped_;
      ++since_section_;
    } else {
      sink(left.data(), size);
      since_section_ = 0;
    }
    left = left.subspan(size);
  }
  held_.erase(held_.begin(), held_.end() - static_cast<ptrdiff_t>(left.size()));
}

}  // namespace quillon::app
