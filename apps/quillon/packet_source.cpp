#include "apps/quillon/packet_source.h"

#include <algorithm>
#include <cstring>

namespace quillon::app {

namespace {

constexpr size_t kPacket = 188;
constexpr uint8_t kSync = 0x47;
constexpr size_t kStrides[] = {188, 192, 204};
constexpr size_t kConfirmed = 5;  // sync bytes in a row that make a lock certain

}  // namespace

PacketSource::PacketSource(std::istream& in, size_t buffer_size)
    : in_(in), buffer_(std::max<size_t>(buffer_size, 2048)) {}

bool PacketSource::fill(size_t size) {
  if (end_ - at_ >= size) return true;
  std::memmove(buffer_.data(), buffer_.data() + at_, end_ - at_);
  consumed_ += at_;
  end_ -= at_;
  at_ = 0;
  while (end_ < size && in_) {
    in_.read(reinterpret_cast<char*>(buffer_.data() + end_),
             static_cast<std::streamsize>(buffer_.size() - end_));
    end_ += static_cast<size_t>(in_.gcount());
  }
  return end_ >= size;
}

uint8_t* PacketSource::next() {
  for (;;) {
    if (!locked_ && !lock()) return nullptr;
    fill(stride_);
    if (end_ - at_ < kPacket) {
      skipped_ += end_ - at_;
      at_ = end_;
      return nullptr;
    }
    uint8_t* const packet = buffer_.data() + at_;
    if (*packet != kSync) {
      locked_ = false;
      continue;
    }
    // What follows a packet in a longer stride is a time stamp or parity, and no gap.
    at_ += std::min(stride_, end_ - at_);
    ++packets_;
    return packet;
  }
}

// Sync bytes a stride apart from `offset` on, at most kConfirmed; 0 if no whole packet is there.
size_t PacketSource::confirmations(size_t offset, size_t stride) const {
  if (offset + kPacket > end_) return 0;
  size_t count = 0;
  for (; count < kConfirmed && offset < end_ && buffer_[offset] == kSync; offset += stride) ++count;
  // Where the input ends, a run up to the end is as good as any, and so is one packet that fills the rest.
  if (in_ || offset < end_) return count;
  const bool fits = offset == end_ || offset - stride + kPacket == end_;
  return count > 1 || (count == 1 && fits) ? kConfirmed : 0;
}

bool PacketSource::lock() {
  for (;;) {
    fill(kConfirmed * kStrides[2] + 1);
    if (end_ - at_ < kPacket) {
      skipped_ += end_ - at_;
      at_ = end_;
      return false;
    }
    const bool last = !in_;
    const size_t limit = last ? end_ : end_ - kConfirmed * kStrides[2];
    for (; at_ < limit; ++at_, ++skipped_) {
      if (buffer_[at_] != kSync) continue;
      for (const size_t stride : kStrides)
        if (confirmations(at_, stride) == kConfirmed) {
          stride_ = stride;
          // The four bytes of time stamp in front of a 192-byte packet are part of it.
          if (stride == 192) skipped_ -= std::min<uint64_t>(skipped_, 4);
          return locked_ = true;
        }
    }
    if (last) return false;
  }
}

}  // namespace quillon::app
