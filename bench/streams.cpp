#include "bench/streams.h"

#include <algorithm>
#include <boost/crc.hpp>
#include <deque>
#include <string>

namespace quillon::bench {

namespace {

constexpr size_t kPacket = 188;
constexpr size_t kRoom = 184;

using Bytes = std::vector<uint8_t>;

// A small generator of numbers: the same on every machine.
class Numbers {
 public:
  explicit Numbers(uint32_t seed) : state_(seed * 2654435761u + 1) {}
  uint32_t next() {
    state_ ^= state_ << 13;
    state_ ^= state_ >> 17;
    return state_ ^= state_ << 5;
  }
  int below(int limit) { return static_cast<int>(next() % static_cast<uint32_t>(limit)); }

 private:
  uint32_t state_;
};

void put(Bytes& out, int bytes, uint32_t value) {
  for (int shift = 8 * (bytes - 1); shift >= 0; shift -= 8)
    out.push_back(static_cast<uint8_t>(value >> shift));
}

void put(Bytes& out, const Bytes& more) {
  out.insert(out.end(), more.begin(), more.end());
}

// A text with its length; every fourth selects ISO 8859-5 or -9 and uses its upper half.
void put_text(Bytes& out, Numbers& numbers, int length) {
  static const std::string kWords =
      "the quill is mightier than the sword and lighter on the hand of a scribe ";
  const int selection = numbers.below(4) == 0 ? (numbers.below(2) ? 0x01 : 0x05) : 0;
  Bytes text;
  if (selection) text.push_back(static_cast<uint8_t>(selection));
  size_t at = static_cast<size_t>(numbers.below(static_cast<int>(kWords.size())));
  while (static_cast<int>(text.size()) < length) {
    uint8_t c = static_cast<uint8_t>(kWords[at++ % kWords.size()]);
    if (selection && c != ' ') c = static_cast<uint8_t>(c + 0x60);
    text.push_back(c);
  }
  put(out, 1, static_cast<uint32_t>(text.size()));
  put(out, text);
}

template <class Body>
void put_descriptor(Bytes& out, int tag, Body body) {
  put(out, 1, static_cast<uint32_t>(tag));
  const size_t at = out.size();
  out.push_back(0);
  body(out);
  out[at] = static_cast<uint8_t>(out.size() - at - 1);
}

// Behind the bytes from `at` on, the 12-bit length that belongs in the two bytes in front of them.
void set_length(Bytes& out, size_t at, uint32_t upper) {
  const size_t length = out.size() - at;
  out[at - 2] = static_cast<uint8_t>(upper << 4 | length >> 8);
  out[at - 1] = static_cast<uint8_t>(length);
}

Bytes begin_section(int table_id, int extension, int version, int section) {
  Bytes out;
  put(out, 1, static_cast<uint32_t>(table_id));
  put(out, 2, 0xF000);
  put(out, 2, static_cast<uint32_t>(extension));
  put(out, 1, 0xC1u | static_cast<uint32_t>(version & 0x1F) << 1);
  put(out, 1, static_cast<uint32_t>(section));
  put(out, 1, 0xFF);
  return out;
}

Bytes end_section(Bytes out) {
  const size_t length = out.size() + 4 - 3;
  out[1] = static_cast<uint8_t>(0xF0 | length >> 8);
  out[2] = static_cast<uint8_t>(length);
  boost::crc_optimal<32, 0x04C11DB7, 0xFFFFFFFF, 0, false, false> crc;
  crc.process_bytes(out.data(), out.size());
  put(out, 4, crc.checksum());
  return out;
}

constexpr int kEventDescriptors = 7;

void put_event(Bytes& out, Numbers& numbers, int id) {
  put(out, 2, static_cast<uint32_t>(id));
  put(out, 2, 60676);
  put(out, 3, 0x123000);
  put(out, 3, 0x004500);
  put(out, 2, 0);
  const size_t at = out.size();
  put_descriptor(out, 0x4D, [&](Bytes& d) {
    put(d, {'e', 'n', 'g'});
    put_text(d, numbers, 18 + numbers.below(12));
    put_text(d, numbers, 50 + numbers.below(70));
  });
  put_descriptor(out, 0x4E, [&](Bytes& d) {
    put(d, {0x00, 'e', 'n', 'g'});
    Bytes items;
    for (int i = 0; i < 2; ++i) {
      put_text(items, numbers, 8);
      put_text(items, numbers, 14 + numbers.below(10));
    }
    put(d, 1, static_cast<uint32_t>(items.size()));
    put(d, items);
    put_text(d, numbers, 90 + numbers.below(40));
  });
  put_descriptor(out, 0x50, [](Bytes& d) { put(d, {0xF1, 0x03, 0x01, 'e', 'n', 'g'}); });
  put_descriptor(out, 0x50, [](Bytes& d) { put(d, {0xF2, 0x03, 0x02, 'e', 'n', 'g', 's', 't', 'e', 'r'}); });
  put_descriptor(out, 0x54,
                 [&](Bytes& d) { put(d, 2, static_cast<uint32_t>(0x1000 + 0x100 * numbers.below(150))); });
  put_descriptor(out, 0x55, [&](Bytes& d) {
    put(d, {'G', 'B', 'R', static_cast<uint8_t>(numbers.below(15))});
    put(d, {'D', 'E', 'U', static_cast<uint8_t>(numbers.below(15))});
  });
  put_descriptor(out, 0x76, [&](Bytes& d) {
    for (const uint8_t type : {uint8_t{0x04}, uint8_t{0x08}}) {
      put(d, 1, type);
      Bytes crid = {'/'};
      for (int i = 0; i < 12; ++i) crid.push_back(static_cast<uint8_t>('A' + numbers.below(26)));
      put(d, 1, static_cast<uint32_t>(crid.size()));
      put(d, crid);
    }
  });
  set_length(out, at, 0x8);
}

constexpr int kSdtDescriptors = kServices;
constexpr int kNitDescriptors = 1 + 4 * 2;
constexpr int kPmtDescriptors = 1 + 3;

// Cuts sections into the packets of one PID: each begins where the one before it ended, but no packet begins
// two.
class Packetiser {
 public:
  explicit Packetiser(int pid) : pid_(pid) {}

  void add(const Bytes& section) { waiting_.push_back(section); }
  bool empty() const { return waiting_.empty(); }

  void put_packet(Bytes& out) {
    const size_t tail = waiting_.front().size() - at_;
    // A section may begin here if it is the first, or if the one in progress leaves room after its end.
    const bool start = at_ == 0 || (tail + 2 <= kRoom && waiting_.size() > 1);
    const size_t from = out.size();
    put(out, 1, 0x47);
    put(out, 2, (start ? 0x4000u : 0u) | static_cast<uint32_t>(pid_));
    put(out, 1, 0x10u | (counter_++ & 0x0F));
    if (start) put(out, 1, at_ == 0 ? 0 : static_cast<uint32_t>(tail));
    if (at_ != 0) take(out, from);
    if (start) take(out, from);
    out.resize(from + kPacket, 0xFF);
  }

 private:
  void take(Bytes& out, size_t from) {
    const Bytes& section = waiting_.front();
    const size_t room = from + kPacket - out.size();
    const size_t size = std::min(room, section.size() - at_);
    const auto begin = section.begin() + static_cast<ptrdiff_t>(at_);
    out.insert(out.end(), begin, begin + static_cast<ptrdiff_t>(size));
    at_ += size;
    if (at_ < section.size()) return;
    waiting_.pop_front();
    at_ = 0;
  }

  int pid_;
  uint32_t counter_ = 0;
  std::deque<Bytes> waiting_;
  size_t at_ = 0;
};

// Service information round by round, a packet at a time.
class Information {
 public:
  explicit Information(int schedule_sections) : schedule_sections_(schedule_sections) {}

  // Adds one packet to the stream; a new round of all tables, in a new version, begins where the last ended.
  void put_packet(Stream& out) {
    while (order_.empty()) begin_round(out);
    Packetiser& next = *order_.front();
    next.put_packet(out.bytes);
    ++out.holds.packets;
    order_.pop_front();
    if (!next.empty()) order_.push_back(&next);
  }
  bool between_rounds() const { return order_.empty(); }

 private:
  void add(Stream& out, int pid, const Bytes& section, int events, int descriptors) {
    Packetiser& to = packetisers_.try_emplace(pid, pid).first->second;
    to.add(section);
    ++out.holds.sections[section[0]];
    out.holds.events += static_cast<uint64_t>(events);
    out.holds.descriptors += static_cast<uint64_t>(descriptors);
    put(out.section_bytes, section);
    out.section_sizes.push_back(static_cast<uint32_t>(section.size()));
  }

  void begin_round(Stream& out) {
    const int version = static_cast<int>(round_ & 0x1F);
    add(out, 0x0000, pat_section(version), 0, 0);
    add(out, 0x0010, nit_section(version), 0, kNitDescriptors);
    add(out, 0x0011, sdt_section(version), 0, kSdtDescriptors);
    for (int service = 0; service < kServices; ++service) {
      add(out, kFirstMapPid + service, pmt_section(service, version), 0, kPmtDescriptors);
      for (int section = 0; section < schedule_sections_; ++section) {
        const Bytes made = eit_section(service, section < 2 ? 0x4E : 0x50, section, version,
                                       round_ * 1000003u + static_cast<uint32_t>(service * 100 + section));
        const int events = events_in(made);
        add(out, kEitPid, made, events, events * kEventDescriptors);
      }
    }
    ++round_;
    for (auto& [pid, packetiser] : packetisers_) order_.push_back(&packetiser);
  }

  static int events_in(const Bytes& section) {
    int count = 0;
    for (size_t at = 14; at + 4 < section.size(); ++count)
      at += 12 + ((section[at + 10] & 0x0Fu) << 8 | section[at + 11]);
    return count;
  }

  int schedule_sections_;
  uint32_t round_ = 0;
  std::map<int, Packetiser> packetisers_;
  std::deque<Packetiser*> order_;
};

}  // namespace

std::vector<uint8_t> pat_section(int version) {
  Bytes out = begin_section(0x00, 0x0451, version, 0);
  for (int service = 0; service < kServices; ++service) {
    put(out, 2, static_cast<uint32_t>(service + 1));
    put(out, 2, 0xE000u | static_cast<uint32_t>(kFirstMapPid + service));
  }
  return end_section(std::move(out));
}

std::vector<uint8_t> pmt_section(int service, int version) {
  Bytes out = begin_section(0x02, service + 1, version, 0);
  put(out, 2, 0xE200u + static_cast<uint32_t>(service));
  put(out, 2, 0);
  size_t at = out.size();
  put_descriptor(out, 0x09, [](Bytes& d) { put(d, {0x0B, 0x00, 0xE5, 0x00}); });
  set_length(out, at, 0xF);
  for (int stream = 0; stream < 3; ++stream) {
    put(out, 1, stream == 0 ? 0x02 : 0x04);
    put(out, 2, 0xE200u + static_cast<uint32_t>(service * 4 + stream));
    put(out, 2, 0);
    at = out.size();
    put_descriptor(out, 0x52, [stream](Bytes& d) { put(d, 1, static_cast<uint32_t>(stream)); });
    set_length(out, at, 0xF);
  }
  return end_section(std::move(out));
}

std::vector<uint8_t> sdt_section(int version) {
  Numbers numbers(7);
  Bytes out = begin_section(0x42, 0x0451, version, 0);
  put(out, 3, 0x233AFF);
  for (int service = 0; service < kServices; ++service) {
    put(out, 2, static_cast<uint32_t>(service + 1));
    put(out, 1, 0xFF);
    put(out, 2, 0);
    const size_t at = out.size();
    put_descriptor(out, 0x48, [&numbers](Bytes& d) {
      put(d, 1, 1);
      put_text(d, numbers, 8);
      put_text(d, numbers, 14);
    });
    set_length(out, at, 0x8);
  }
  return end_section(std::move(out));
}

std::vector<uint8_t> nit_section(int version) {
  Bytes out = begin_section(0x40, 0x233A, version, 0);
  put(out, 2, 0);
  size_t at = out.size();
  put_descriptor(out, 0x40, [](Bytes& d) { put(d, {'F', 'e', 'a', 't', 'h', 'e', 'r'}); });
  set_length(out, at, 0xF);
  put(out, 2, 0);
  const size_t loop = out.size();
  for (uint32_t row = 0; row < 4; ++row) {
    put(out, 2, 0x0451 + row);
    put(out, 2, 0x233A);
    put(out, 2, 0);
    at = out.size();
    put_descriptor(out, 0x43, [](Bytes& d) {
      put(d, {0x01, 0x17, 0x57, 0x25, 0x01, 0x92, 0x81, 0x02, 0x75, 0x00, 0x03});
    });
    put_descriptor(out, 0x41, [](Bytes& d) {
      for (uint32_t service = 1; service <= 10; ++service) put(d, 3, service << 8 | 1);
    });
    set_length(out, at, 0xF);
  }
  set_length(out, loop, 0xF);
  return end_section(std::move(out));
}

std::vector<uint8_t> eit_section(int service, int table_id, int section, int version, uint32_t seed) {
  Numbers numbers(seed);
  Bytes out = begin_section(table_id, service + 1, version, section);
  put(out, 2, 0x0451);
  put(out, 2, 0x233A);
  put(out, 2, 0xFF50);
  // Present and following have an event each; the schedule fills its sections.
  const size_t full = table_id == 0x4E ? 0 : 3500;
  int id = 0;
  do {
    put_event(out, numbers, id++);
  } while (out.size() < full);
  return end_section(std::move(out));
}

Stream si(size_t size) {
  Stream out;
  out.bytes.reserve(size + 65536);
  Information information(10);
  while (out.bytes.size() < size || !information.between_rounds()) information.put_packet(out);
  return out;
}

Stream mux(size_t size) {
  Stream out;
  out.bytes.reserve(size + (size_t{1} << 20));
  Information information(3);
  Numbers numbers(1);
  Bytes filling(kRoom);
  for (uint8_t& byte : filling) byte = static_cast<uint8_t>(numbers.next());
  uint32_t packet = 0;
  while (out.bytes.size() < size || !information.between_rounds()) {
    if (packet++ % 20 == 0) {
      information.put_packet(out);
      continue;
    }
    put(out.bytes, 1, 0x47);
    put(out.bytes, 2, 0x0200u + packet % 60);
    put(out.bytes, 1, 0x10u | (packet & 0x0F));
    put(out.bytes, filling);
    ++out.holds.packets;
  }
  return out;
}

}  // namespace quillon::bench
