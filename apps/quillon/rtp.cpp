#include "apps/quillon/rtp.h"

#include <algorithm>

namespace quillon::app {

namespace {

// Numbers this far ahead or behind are those of a sender that has begun anew (RFC 3550, A.1).
constexpr int kFarAhead = 3000;
constexpr int kFarBehind = 100;

constexpr size_t kHeader = 12;

size_t word(const uint8_t* bytes) {
  return size_t{bytes[0]} << 8 | bytes[1];
}

void append(RtpOrder::Bytes& out, const uint8_t* bytes, size_t size) {
  out.insert(out.end(), bytes, bytes + size);
}

std::string count(uint64_t number, const std::string& one, const std::string& rest) {
  return std::to_string(number) + " " + one + (number == 1 ? "" : "s") + rest;
}

}  // namespace

std::optional<RtpOrder::Packet> RtpOrder::parse(const uint8_t* datagram, size_t size) {
  if (size < kHeader || datagram[0] >> 6 != 2) return std::nullopt;
  size_t begin = kHeader + 4 * size_t{datagram[0] & 0x0FU};
  if (datagram[0] & 0x10) {
    if (size < begin + 4) return std::nullopt;
    begin += 4 + 4 * word(datagram + begin + 2);
  }
  if (size < begin) return std::nullopt;
  size_t payload = size - begin;
  if (datagram[0] & 0x20) {
    const size_t padding = datagram[size - 1];  // counts itself
    if (padding == 0 || padding > payload) return std::nullopt;
    payload -= padding;
  }
  return Packet{static_cast<uint32_t>(word(datagram + 8) << 16 | word(datagram + 10)),
                static_cast<uint16_t>(word(datagram + 2)), datagram + begin, payload};
}

// Where a packet belongs in the stream; nowhere, if it is another sender's or its number is far away.
std::optional<int64_t> RtpOrder::place_of(const Packet& packet) const {
  const auto ahead = static_cast<int16_t>(packet.number - static_cast<uint16_t>(next_));
  if (!begun_ || packet.sender != sender_ || ahead > kFarAhead || ahead < -kFarBehind) return std::nullopt;
  return next_ + ahead;
}

void RtpOrder::begin_anew(const Packet& packet, Bytes& out) {
  flush(out);
  if (stray_) append(out, stray_->payload.data(), stray_->payload.size());
  begun_ = true;
  sender_ = packet.sender;
  next_ = packet.number;
}

void RtpOrder::push(const uint8_t* datagram, size_t size, Time now, Bytes& out) {
  const std::optional<Packet> packet = parse(datagram, size);
  if (!packet) {
    ++not_rtp_;
    return;
  }
  std::optional<int64_t> place = place_of(*packet);
  if (!place) {
    const bool in_sequence = stray_ && stray_->sender == packet->sender && stray_->next == packet->number;
    if (begun_ && !in_sequence) {
      strays_ += stray_.has_value();
      stray_ = {packet->sender, static_cast<uint16_t>(packet->number + 1),
                Bytes(packet->payload, packet->payload + packet->size)};
      return;
    }
    begin_anew(*packet, out);
    place = next_;
  } else {
    strays_ += stray_.has_value();
  }
  stray_.reset();
  if (*place < next_ || held_.contains(*place)) return;
  if (!held_.empty() && *place < held_.rbegin()->first) ++reordered_;
  if (*place == next_) {
    append(out, packet->payload, packet->size);
    ++next_;
  } else {
    held_[*place] = {now, Bytes(packet->payload, packet->payload + packet->size)};
  }
  release(out);
}

// Those that are in order, and those for which too many wait.
void RtpOrder::release(Bytes& out) {
  while (!held_.empty() && (held_.begin()->first == next_ || held_.size() >= window)) {
    const auto first = held_.begin();
    lost_ += static_cast<uint64_t>(first->first - next_);
    next_ = first->first + 1;
    append(out, first->second.payload.data(), first->second.payload.size());
    held_.erase(first);
  }
}

std::optional<RtpOrder::Time> RtpOrder::due() const {
  const auto oldest = std::min_element(held_.begin(), held_.end(), [](const auto& a, const auto& b) {
    return a.second.since < b.second.since;
  });
  if (oldest == held_.end()) return std::nullopt;
  return oldest->second.since + patience;
}

void RtpOrder::give_up(Time now, Bytes& out) {
  for (auto when = due(); when && *when <= now; when = due()) {
    lost_ += static_cast<uint64_t>(held_.begin()->first - next_);
    next_ = held_.begin()->first;
    release(out);
  }
}

void RtpOrder::flush(Bytes& out) {
  give_up(Time::max(), out);
}

std::string RtpOrder::trouble() const {
  std::string text;
  const auto add = [&text](const std::string& more) { text += (text.empty() ? "" : ", ") + more; };
  if (lost_ > 0) add(count(lost_, "RTP packet", " lost"));
  if (reordered_ > 0)
    add(lost_ > 0 ? std::to_string(reordered_) + " out of order"
                  : count(reordered_, "RTP packet", " out of order"));
  if (strays_ > 0) add(count(strays_, "RTP packet", " of another sender"));
  if (not_rtp_ > 0) add(count(not_rtp_, "datagram", " without RTP, for which there is udp://"));
  return text;
}

}  // namespace quillon::app
