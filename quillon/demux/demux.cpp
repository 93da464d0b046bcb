#include <algorithm>
#include <memory>
#include <ostream>

#include <quillon/demux/demux.h>
#include <quillon/sections/error.h>
#include <quillon/sections/log.h>

namespace quillon {

namespace {

constexpr int kHeaderSize = 4;

// Pointers in log records show their low 32 bits.
unsigned low_bits(const void* pointer) {
  return static_cast<unsigned>(reinterpret_cast<uintptr_t>(pointer));
}

}  // namespace

// What hooks remove while a packet is in progress is released when the outermost packet is done.
class QUILLON_LOCAL Demux::PacketScope {
 public:
  explicit PacketScope(Demux& demux) : demux_(demux) { ++demux_.packets_in_progress_; }
  ~PacketScope() {
    if (--demux_.packets_in_progress_ > 0) return;
    demux_.removed_handlers_.release();
    demux_.removed_pids_.release();
  }
  PacketScope(const PacketScope&) = delete;
  PacketScope& operator=(const PacketScope&) = delete;

 private:
  Demux& demux_;
};

void Demux::TSHeader::no_sync_byte() {
  throw error("TS syncbyte expected");
}

void Demux::TSHeader::dump_state(std::ostream& stream) const {
  stream << "tei: " << get_transport_error_indicator() << " pusi: " << get_payload_unit_start_indicator()
         << " tp: " << get_transport_priority() << std::hex << " pid: " << get_pid()
         << " tsc: " << get_transport_scrambling_control() << " afc: " << get_adaption_field_control()
         << " cc: " << get_continuity_counter() << std::endl;
}

void Demux::SectionBuffer::begin(const uint8_t* data, int length) {
  size_ = std::min(length, capacity);
  std::copy_n(data, size_, bytes_);
  started_ = true;
}

bool Demux::SectionBuffer::append(const uint8_t* data, int length) {
  if (!started_ || size_ < 1) return false;
  const int taken = std::min(length, capacity - size_);
  std::copy_n(data, taken, bytes_ + size_);
  size_ += taken;
  return true;
}

void Demux::PSIHandler::parse(const TSHeader& header, bool start, const uint8_t* data, int length) {
  if (start)
    buffer_.begin(data, length);
  else if (!buffer_.append(data, length))
    return;
  if (!buffer_.complete()) return;
  demux_.on_psi_section(header.get_pid(), table_id_, buffer_.bytes()[6], buffer_.bytes());
  buffer_.finish();
}

void Demux::PSIHandler::dump_state(std::ostream& stream) const {
  stream << "table_id: " << table_id_ << std::endl;
}

void Demux::PSIFilterHandler::parse(const TSHeader&, bool start, const uint8_t* data, int length) {
  if (log_wants(3))
    log_write(3, "Demux::PSIFilterHandler::parse(TSHeader,%d,%#x,%d)", start, low_bits(data), length);
  if (start)
    buffer_.begin(data, length);
  else if (!buffer_.append(data, length))
    return;
  if (!buffer_.complete()) return;
  if (filter_match()) demux_.on_psi_section(key_, buffer_.full_size(), buffer_.bytes());
  buffer_.finish();
}

bool Demux::PSIFilterHandler::filter_match() const {
  if (length_ > SectionBuffer::capacity) return false;
  for (int i = 0; i < length_; ++i)
    if ((buffer_.bytes()[i] & mask_[i]) != data_[i]) return false;
  return true;
}

Demux::PidHandler::~PidHandler() {
  for (const auto& [table_id, handler] : psi_handlers_) delete handler;
  for (PSIFilterHandler* handler : filter_handlers_) delete handler;
}

void Demux::PidHandler::AddPsiHandler(int table_id) {
  if (psi_handlers_.contains(table_id)) return;
  auto handler = std::make_unique<PSIHandler>(demux_, table_id);
  psi_handlers_.emplace(table_id, handler.get());
  handler.release();
}

void Demux::PidHandler::AddPsiHandler(const uint8_t* data, const uint8_t* mask, int length,
                                      unsigned long key) {
  if (log_wants(3))
    log_write(3, "Demux::PidHandler::AddPsiHandler(%#x,%#x,%d,%#x)", low_bits(data), low_bits(mask), length,
              static_cast<unsigned>(key));
  auto handler = std::make_unique<PSIFilterHandler>(demux_, data, mask, length, key);
  handler->number_ = filters_made_;
  filter_handlers_.insert(handler.get());
  handler.release();
  ++filters_made_;
}

void Demux::PidHandler::RemovePsiHandler(int table_id) {
  const auto place = psi_handlers_.find(table_id);
  if (place == psi_handlers_.end()) return;
  PSIHandler* const handler = place->second;
  handler->removed_ = true;
  if (current_handler_ == handler) current_handler_ = nullptr;
  demux_.removed_handlers_.keep(psi_handlers_.extract(place));
  if (demux_.packets_in_progress_ == 0) demux_.removed_handlers_.release();
}

void Demux::PidHandler::parse(TSHeader& header, const uint8_t* data, int length) {
  if (log_wants(3)) log_write(3, "Demux::PidHandler::parse()");
  const PacketScope scope(demux_);
  if (header.get_payload_unit_start_indicator() != 1) {
    feed_tail(header, data, std::max(length, 0));
    return;
  }
  if (length < 1) return;

  const int pointer_field = data[0];
  if (pointer_field != 0) {
    feed_tail(header, data + 1, std::min(pointer_field, length - 1));
    if (removed_) return;
  } else if (length >= 4 && data[1] == 0x00 && data[2] == 0x00 && data[3] == 0x01) {
    return;  // the start code of a PES packet: no section
  }

  int at = pointer_field + 1;
  if (at >= length) {
    current_handler_ = nullptr;
    return;
  }
  if (!demux_.every_section_) {
    feed_start(header, data + at, length - at);
    return;
  }
  do {
    const int left = length - at;
    const int size = left < 3 ? left : std::min(left, ((data[at + 1] & 0x0F) << 8 | data[at + 2]) + 3);
    feed_start(header, data + at, size);
    at += size;
  } while (!removed_ && at < length && data[at] != 0xFF);
}

void Demux::PidHandler::feed_tail(const TSHeader& header, const uint8_t* data, int length) {
  if (current_handler_) current_handler_->parse(header, false, data, length);
  feed_filters(header, false, data, length);
}

void Demux::PidHandler::feed_start(const TSHeader& header, const uint8_t* data, int length) {
  const auto place = psi_handlers_.find(data[0]);
  if (place == psi_handlers_.end()) {
    current_handler_ = nullptr;
  } else {
    PSIHandler* const handler = place->second;
    handler->parse(header, true, data, length);
    current_handler_ = handler->removed_ ? nullptr : handler;
  }
  feed_filters(header, true, data, length);
}

void Demux::PidHandler::feed_filters(const TSHeader& header, bool start, const uint8_t* data, int length) {
  if (log_wants(3)) log_write(3, "checking %d psifilter handlers", static_cast<int>(filter_handlers_.size()));
  // One that a hook adds meanwhile waits for the next: a hook that adds one each time would never end.
  const size_t made = filters_made_;
  for (PSIFilterHandler* handler : filter_handlers_) {
    if (removed_) return;
    if (handler->number_ < made) handler->parse(header, start, data, length);
  }
}

void Demux::PidHandler::invalidate() {
  for (const auto& [table_id, handler] : psi_handlers_) handler->invalidate();
}

void Demux::PidHandler::dump_state(std::ostream& stream) const {
  for (const auto& [table_id, handler] : psi_handlers_) handler->dump_state(stream);
}

Demux::Demux() : index_(0x2000, nullptr) {}

Demux::~Demux() {
  reset();
}

int Demux::start() {
  uint8_t packet[packet_size];
  for (;;) {
    int bytes_read = 0;
    if (!read_buf(packet, packet_size, bytes_read)) return stop_result_;
    if (bytes_read != packet_size || stopped_) return stop_result_;
    on_raw_ts_packet(packet);
    if (packet[0] != sync_byte) return 2;
    process(packet, packet);
  }
}

template <class PidOf>
void Demux::process_for(const uint8_t* packet, const uint8_t* hook_base, PidOf pid_of) {
  TSHeader header(packet);
  on_ts_packet(header, packet + kHeaderSize);
  int skip = 0;
  if (header.get_adaption_field_control() >= 2) {
    const AdaptionFieldHeader field(packet + kHeaderSize, skip);
    on_adaption_field_header_(field, hook_base + std::min(kHeaderSize + skip, packet_size));
  }
  PidHandler* const handler = find(pid_of(header));
  const int size = packet_size - kHeaderSize - skip;
  if (handler) handler->parse(header, packet + packet_size - std::max(size, 0), size);
}

void Demux::process(const uint8_t* packet, const uint8_t* hook_base) {
  process_for(packet, hook_base, [](const TSHeader& header) { return header.get_pid(); });
}

void Demux::process_as(int pid, const uint8_t* packet) {
  process_for(packet, packet, [pid](const TSHeader&) { return pid; });
}

void Demux::add_psi_handler(int pid, int table_id) {
  add_to(pid, [&](PidHandler& handler) { handler.AddPsiHandler(table_id); });
}

void Demux::add_psi_handler(int pid, const uint8_t* data, const uint8_t* mask, int length,
                            unsigned long key) {
  add_to(pid, [&](PidHandler& handler) { handler.AddPsiHandler(data, mask, length, key); });
}

template <class Add>
void Demux::add_to(int pid, Add add) {
  if (PidHandler* const there = find(pid)) return add(*there);
  auto handler = std::make_unique<PidHandler>(*this);
  add(*handler);
  pid_handlers_.emplace(pid, handler.get());
  if (PidHandler** const place = place_in_index(pid)) *place = handler.get();
  handler.release();
}

Demux::PidHandler* Demux::find_in_map(int pid) const {
  const auto place = pid_handlers_.find(pid);
  return place == pid_handlers_.end() ? nullptr : place->second;
}

void Demux::remove_psi_handler(int pid, int table_id) {
  const auto place = pid_handlers_.find(pid);
  if (place == pid_handlers_.end()) return;
  place->second->RemovePsiHandler(table_id);
  if (place->second->psi_handlers_.empty()) remove_pid(place);
}

void Demux::remove_pid(std::map<int, PidHandler*>::iterator place) {
  place->second->removed_ = true;
  if (PidHandler** const indexed = place_in_index(place->first)) *indexed = nullptr;
  removed_pids_.keep(pid_handlers_.extract(place));
  if (packets_in_progress_ == 0) removed_pids_.release();
}

void Demux::reset() {
  while (!pid_handlers_.empty()) remove_pid(pid_handlers_.begin());
}

void Demux::stop(int result) {
  stopped_ = true;
  stop_result_ = result;
}

void Demux::dump_state(std::ostream& stream) const {
  for (const auto& [pid, handler] : pid_handlers_) {
    stream << "pid: " << std::hex << pid << std::endl;
    handler->dump_state(stream);
  }
}

}  // namespace quillon
