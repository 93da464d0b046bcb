#include "fuzz/targets.h"

#include <algorithm>
#include <cstdlib>
#include <map>
#include <vector>

#include <quillon/demux/sources.h>
#include <quillon/sections/error.h>

namespace quillon::fuzz {

namespace {

using Bytes = std::vector<uint8_t>;

// Writes down what comes out; now and then a hook changes the handlers it is called for.
template <class Source>
class Listener : public Source {
 public:
  // By receiver: which of two filters hears a section first is not laid down.
  std::map<long, Bytes> heard;

  void add_handlers(bool restless) {
    restless_ = restless;
    for (int pid = 0; pid < 4; ++pid) {
      this->add_psi_handler(pid, 0x00);
      this->add_psi_handler(pid, 0x02);
      this->add_psi_handler(pid, 0x4E);
      this->add_psi_handler(pid, nullptr, nullptr, 0, static_cast<unsigned long>(pid));
      static const uint8_t kData[] = {0x42}, kMask[] = {0xFE};
      this->add_psi_handler(pid, kData, kMask, 1, 100);
    }
  }

 private:
  void on_psi_section(unsigned long key, int size, uint8_t* section) override {
    take(static_cast<long>(key), section, size);
    restlessly(static_cast<int>(key) % 4, section[0]);
  }
  void on_psi_section(int pid, int table_id, int, const uint8_t* section) override {
    const int size = ((section[1] & 0x0F) << 8 | section[2]) + 3;
    take(-1 - pid, section, size);
    restlessly(pid, table_id);
  }
  void take(long receiver, const uint8_t* section, int size) {
    Bytes& to = heard[receiver];
    to.insert(to.end(), section, section + size);
    bytes_ += static_cast<size_t>(size);
  }
  void restlessly(int pid, int table_id) {
    if (!restless_) return;
    switch (bytes_ % 7) {
      case 0:
        this->remove_psi_handler(pid, table_id);
        break;
      case 1:
        this->add_psi_handler(pid, table_id);
        break;
      case 2:
        this->reset();
        add_handlers(true);
        break;
      case 3:
        throw error("a hook's own");
      default:
        break;
    }
  }

  bool restless_ = false;
  size_t bytes_ = 0;
};

class Pulled : public Demux {
 public:
  ~Pulled() = default;
  Bytes input;

 protected:
  bool read_buf(uint8_t* buffer, int size, int& bytes_read) override {
    const size_t taken = std::min(static_cast<size_t>(size), input.size() - at_);
    std::copy_n(input.begin() + static_cast<ptrdiff_t>(at_), taken, buffer);
    at_ += taken;
    bytes_read = static_cast<int>(taken);
    return taken > 0;
  }

 private:
  size_t at_ = 0;
};

class Apart : public Demux2 {
 public:
  ~Apart() = default;
  Bytes input;

 protected:
  bool at_end() override { return at_ >= input.size(); }
  bool read_packet(int, uint8_t* buffer, int size, int& bytes_read) override {
    const size_t taken = std::min(static_cast<size_t>(size), input.size() - at_);
    std::copy_n(input.begin() + static_cast<ptrdiff_t>(at_), taken, buffer);
    at_ += taken;
    bytes_read = static_cast<int>(taken);
    return taken > 0;
  }

 private:
  size_t at_ = 0;
};

template <class Action>
void tolerate(Action action) {
  try {
    action();
  } catch (const error&) {
  }
}

}  // namespace

void demux(const uint8_t* data, size_t size) {
  if (size < 1) return;
  const uint8_t choice = *data++;
  --size;
  // Sync bytes are put where they belong, and PIDs are few, so that the handlers are reached.
  Bytes stream(data, data + size);
  for (size_t at = 0; at < stream.size(); at += Demux::packet_size) {
    if (choice & 1) stream[at] = Demux::sync_byte;
    if (at + 2 < stream.size()) {
      stream[at + 1] &= 0xE0;
      stream[at + 2] &= 0x03;
    }
  }
  const size_t whole = stream.size() / Demux::packet_size * Demux::packet_size;

  Listener<DemuxPush> at_once;
  Listener<DemuxPush> split;
  for (auto* demux : {&at_once, &split}) {
    demux->serve_every_section(choice & 2);
    demux->add_handlers(false);
  }
  at_once.push_data(stream.data(), static_cast<int>(whole));
  size_t step = 1 + (choice >> 4);
  for (size_t at = 0; at < whole;) {
    const size_t taken = std::min(step * Demux::packet_size, whole - at);
    if (split.push_data(stream.data() + at, static_cast<int>(taken)) != 0) break;
    at += taken;
    step = step % 5 + 1;
  }
  if (at_once.heard != split.heard) std::abort();

  // One of the others: a demultiplexer's buffers cost more than most inputs.
  if (choice % 3 == 0) {
    Listener<DemuxPush> restless;
    restless.add_handlers(true);
    for (size_t at = 0; at < whole; at += Demux::packet_size)
      tolerate([&] { restless.push_data(stream.data() + at, Demux::packet_size); });
  } else if (choice % 3 == 1) {
    Listener<Pulled> pulled;
    pulled.add_handlers(false);
    pulled.serve_every_section(choice & 2);
    pulled.input = stream;
    tolerate([&] { pulled.start(); });
    if (pulled.heard != at_once.heard) std::abort();
  } else {
    Listener<Apart> apart;
    apart.add_handlers(choice & 4);
    apart.input = stream;
    tolerate([&] { apart.start(); });
  }
}

}  // namespace quillon::fuzz
