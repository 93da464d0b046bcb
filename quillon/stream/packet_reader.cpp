#include <algorithm>
#include <cstring>

#include <quillon/sections/error.h>
#include <quillon/stream/packet_reader.h>

namespace quillon {

namespace {

constexpr size_t kStrides[] = {188, 192, 204, 208};
constexpr size_t kTimeStamp = 4;  // in front of a packet, where the stride is 192
constexpr int kRun = 5;           // sync bytes a stride apart that make a stride certain

// Whether a byte begins a packet is decided with so many bytes from it on, whatever the pieces: one that
// begins within its packet is looked at with the run that follows, and its header.
constexpr size_t kAhead = 1024;
static_assert(kAhead >= TsPacket::size - 1 + size_t{kRun - 1} * 208 + 4);
// What is looked at again once the stride is known.
constexpr size_t kBefore = size_t{16} * 208;
constexpr size_t kHeld = kBefore + 2 * kAhead;

// Evidence that a packet begins at a byte 0x47, in bits: about the negative logarithm of the odds that bytes
// at random give it.
constexpr int kFollower = 8;  // another 0x47 a stride on
constexpr int kKnownPid = 8;
constexpr int kCounter = 4;  // the packet counts on from the last of its PID
constexpr int kInLine = 7;   // a whole number of strides from the last packet
constexpr int kCertain = 12;

}  // namespace

PacketReader::PacketReader() {
  held_.reserve(kHeld);
}

void PacketReader::feed(const uint8_t* data, size_t size) {
  if (finished_) throw error("the input was finished");
  if (piece_size_) throw error("the last piece was not read to its end");
  piece_ = data;
  piece_size_ = size;
  if (carried_) return;
  window_ = data;
  end_ = size;
}

bool PacketReader::search(TsPacket& packet) {
  for (;;) {
    switch (stride_ ? find_packet(packet) : find_stride(packet)) {
      case Step::given:
        return true;
      case Step::ended:
        return false;
      case Step::more:
        if (!more()) return false;
    }
  }
}

bool PacketReader::at_end() const {
  return finished_ && (carried_ == 0 || held_.size() - carried_ == piece_size_);
}

size_t PacketReader::tries_end() const {
  const size_t needed = at_end() ? TsPacket::size : kAhead;
  return end_ < needed ? 0 : end_ - needed + 1;
}

bool PacketReader::find_sync(size_t tries_end) {
  if (scan_ >= tries_end) return false;
  const void* const found = std::memchr(window_ + scan_, kSync, tries_end - scan_);
  scan_ = found ? static_cast<size_t>(static_cast<const uint8_t*>(found) - window_) : tries_end;
  return found;
}

PacketReader::Step PacketReader::no_packet() {
  if (!at_end()) return Step::more;
  scan_ = end_;
  skip_to(end_);
  return Step::ended;
}

void PacketReader::skip_to(size_t at) {
  const auto to = static_cast<int64_t>(at);
  if (to <= next_) return;
  skipped_ += static_cast<uint64_t>(to - next_);
  next_ = to;
}

PacketReader::Step PacketReader::find_stride(TsPacket& packet) {
  for (const size_t tries = tries_end(); find_sync(tries); ++scan_)
    for (const size_t stride : kStrides) {
      if (!is_certain_run(scan_, stride)) continue;
      stride_ = stride;
      run_ = base_ + scan_;
      scan_ -= std::min(scan_, kBefore);
      next_ = static_cast<int64_t>(stride == 192 ? kTimeStamp : 0) - static_cast<int64_t>(base_);
      return find_packet(packet);
    }
  return no_packet();
}

PacketReader::Step PacketReader::find_packet(TsPacket& packet) {
  if (follows_at_two_strides()) {
    give(static_cast<size_t>(next_), packet);
    return Step::given;
  }
  for (const size_t tries = tries_end(); find_sync(tries);) {
    const size_t at = scan_;
    const int64_t past = static_cast<int64_t>(at) - next_;
    if (past != 0 && !is_packet(at)) {
      ++scan_;
      continue;
    }
    const int follow = followers(at);
    const size_t inner = begins_within(at, follow);
    if (inner && header_evidence(inner) > 0) {
      scan_ = inner;
      continue;
    }
    in_step_ = past == 0 || (packets_ == 0 && past < 0);
    if (!in_step_ && packets_ > 0) ++sync_losses_;
    skip_to(at);
    // A header that nothing confirms says nothing about those to come.
    uint8_t& header = last_header(at);
    const bool believed = header || follow > 0;
    give(at, packet);
    if (!believed) header = 0;
    // Where the other is of a PID that was not met, it may be chance: both are given. So may a last byte 0x47
    // be the sync byte of the next, or its own where that is lost.
    if (inner)
      scan_ = inner;
    else if (follow == 0)
      --scan_;
    return Step::given;
  }
  if (static_cast<int64_t>(scan_) > next_) in_step_ = false;
  return no_packet();
}

// Whether the byte 0x47 at `at`, where none is due, begins a packet.
bool PacketReader::is_packet(size_t at) {
  if (base_ + at == run_) return true;
  const int follow = followers(at);
  if (follow == 0)
    for (const size_t stride : kStrides)
      if (run(at, stride) == kRun) {
        stride_ = stride;
        return true;
      }
  const bool in_line = (static_cast<int64_t>(at) - next_) % static_cast<int64_t>(stride_) == 0;
  return evidence(at, follow) + (in_line ? kInLine : 0) >= kCertain;
}

// Where within this packet, but for its last byte, another begins for certain, against what says that the
// next one follows it; 0 if none does.
size_t PacketReader::begins_within(size_t at, int follow) const {
  const int against = follow > 0 ? kFollower * follow + header_evidence(at + stride_) : 0;
  for (size_t inner = at + 1; inner < at + TsPacket::size - 1; ++inner)
    if (sync(inner) && evidence(inner, followers(inner)) >= kCertain + against) return inner;
  return 0;
}

int PacketReader::evidence(size_t at, int follow) const {
  if (!has_plausible_header(at)) return 0;
  const size_t next = at + stride_;
  int following = 0;
  if (follow > 0) {
    // However sure the next packet is, a stray 0x47 may be a stride in front of it.
    const bool of_this_pid =
        next + 4 <= end_ && pid_at(next) == pid_at(at) && counts_on(window_[at + 3], next);
    following = of_this_pid ? kCertain : std::min(kCertain, kFollower * follow + header_evidence(next));
  } else if (at + 3 * stride_ < end_ && sync(at + 2 * stride_) && sync(at + 3 * stride_)) {
    following = kFollower;  // two sync bytes after a missing one make up for it
  }
  return header_evidence(at) + following;
}

// That of a header whose PID was met.
int PacketReader::header_evidence(size_t at) const {
  if (at + 4 > end_ || window_[at + 1] & 0x80) return 0;
  const uint8_t last = last_header(at);
  if (last == 0) return 0;
  return kKnownPid + (counts_on(last, at) ? kCounter : 0);
}

// Whether the packet at `at` is next after one of its PID whose header ends with `last`. One without payload
// does not count, those of the null PID need not.
bool PacketReader::counts_on(uint8_t last, size_t at) const {
  const int step = window_[at + 3] & 0x10 ? 1 : 0;
  return pid_at(at) == TsPacket::null_pid || ((last + step - window_[at + 3]) & 0x0F) == 0;
}

bool PacketReader::has_plausible_header(size_t at) const {
  if (at + 5 > end_) return false;
  const uint8_t control = window_[at + 3] & 0x30;
  return control == 0x10 || (control & 0x20 && window_[at + 4] <= (control == 0x30 ? 182 : 183));
}

// The sync bytes that follow at whole strides without a miss, at most kRun - 1. The end of the input is as
// good as one where it is in its place.
int PacketReader::followers(size_t at) const {
  int count = 0;
  for (size_t next = at + stride_; count < kRun - 1; next += stride_) {
    if (next >= end_) return count + (next == end_ || next - stride_ + TsPacket::size == end_);
    if (!sync(next)) break;
    ++count;
  }
  return count;
}

// Headers a stride apart, from the one at `at` on, at most kRun.
int PacketReader::run(size_t at, size_t stride) const {
  int count = 0;
  while (count < kRun && at + 5 <= end_ && sync(at) && has_plausible_header(at)) {
    ++count;
    at += stride;
  }
  return count;
}

// Where the input ends, a run up to the end is as good as any, and so is one packet that fills it.
bool PacketReader::is_certain_run(size_t at, size_t stride) const {
  const int count = run(at, stride);
  const size_t after = at + static_cast<size_t>(count) * stride;
  if (count == kRun || after + 5 <= end_) return count == kRun;
  return count > 1 || (count == 1 && (after == end_ || at + TsPacket::size == end_));
}

// Brings more bytes of the piece into the window; false, with the rest of the piece held, if it has no more.
bool PacketReader::more() {
  const size_t kept = scan_ - (stride_ ? 0 : std::min(scan_, kBefore));
  if (carried_ > 0 && kept >= carried_) {
    drop_front(carried_);
    held_.clear();
    carried_ = 0;
    window_ = piece_;
    end_ = piece_size_;
    return true;
  }
  const size_t copied = carried_ > 0 ? held_.size() - carried_ : piece_size_;
  if (carried_ == 0) {
    held_.assign(window_ + kept, window_ + end_);
  } else {
    const size_t taken = std::min(kAhead, piece_size_ - copied);
    held_.erase(held_.begin(), held_.begin() + static_cast<ptrdiff_t>(kept));
    held_.insert(held_.end(), piece_ + copied, piece_ + copied + taken);
    carried_ -= kept;
  }
  drop_front(kept);
  window_ = held_.data();
  end_ = held_.size();
  if (copied < piece_size_) return true;
  carried_ = held_.size();
  piece_size_ = 0;
  return false;
}

void PacketReader::drop_front(size_t size) {
  base_ += size;
  scan_ -= size;
  next_ -= static_cast<int64_t>(size);
}

}  // namespace quillon
