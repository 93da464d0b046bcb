#pragma once

#include <cstdint>
#include <iosfwd>
#include <map>
#include <set>
#include <utility>
#include <vector>

#include <quillon/platform/api.h>

namespace quillon {

// Takes a transport stream apart (ISO/IEC 13818-1, 2.4.3): reads packets through read_buf, routes the PIDs
// that were requested, and hands each complete section to on_psi_section. It does framing alone: no
// continuity check, no filtering of repeats, no CRC test.
//
// Derive from it, supply read_buf, override the hooks of interest. Hooks run nested in start, on the caller's
// thread. From inside any hook handlers may be added and removed, and reset be called: what is in use is
// released when the packet is done.
//
// The constructor and add_psi_handler throw std::bad_alloc when memory runs out; packets take none, and start
// throws only what a hook does. A hook that throws leaves the demultiplexer usable; the section in progress
// stays in its buffer. For threads the rule of the tables holds (PsiBase1): stop is for hooks alone.
class QUILLON_API Demux {
 public:
  static constexpr int packet_size = 188;
  static constexpr uint8_t sync_byte = 0x47;

  // The four header bytes of a packet, which may not be null.
  class QUILLON_API TSHeader {
   public:
    // Throws error("TS syncbyte expected"), code -1, unless the packet begins with 0x47.
    explicit TSHeader(const uint8_t* packet) : bytes_{packet[1], packet[2], packet[3]} {
      if (packet[0] != sync_byte) no_sync_byte();
    }

    int get_transport_error_indicator() const { return bytes_[0] >> 7; }
    int get_payload_unit_start_indicator() const { return bytes_[0] >> 6 & 1; }
    int get_transport_priority() const { return bytes_[0] >> 5 & 1; }
    int get_pid() const { return (bytes_[0] & 0x1F) << 8 | bytes_[1]; }
    int get_transport_scrambling_control() const { return bytes_[2] >> 6; }
    int get_adaption_field_control() const { return bytes_[2] >> 4 & 3; }
    int get_continuity_counter() const { return bytes_[2] & 0x0F; }

    // Leaves the stream in hexadecimal.
    void dump_state(std::ostream& stream) const;

   private:
    [[noreturn]] static void no_sync_byte();

    uint8_t bytes_[3];  // after the sync byte
  };

  // Measures an adaptation field: `length` becomes its bytes, 1 to 256, the length byte included.
  class AdaptionFieldHeader {
   public:
    AdaptionFieldHeader(const uint8_t* field, int& length) { length = field[0] + 1; }
  };

  // A receiver of payload bytes.
  //
  // The order of the virtual functions is fixed: programs built against another version call them by their
  // place.
  class BaseHandler {
   public:
    virtual void parse(const TSHeader& header, bool start, const uint8_t* data, int length) = 0;
    virtual void dump_state(std::ostream&) const {}

   protected:
    BaseHandler() = default;
    ~BaseHandler() = default;
  };

  class PidHandler;

 private:
  // The section under assembly, from its table_id on.
  class SectionBuffer {
   public:
    void begin(const uint8_t* data, int length);
    // False, and the bytes are dropped, if no section is in progress.
    bool append(const uint8_t* data, int length);
    bool complete() const { return size_ >= full_size(); }
    int full_size() const { return ((bytes_[1] & 0x0F) << 8 | bytes_[2]) + 3; }
    void drop() { size_ = 0; }
    void finish() {
      size_ = 0;
      started_ = false;
    }
    uint8_t* bytes() { return bytes_; }
    const uint8_t* bytes() const { return bytes_; }

    // Twice the largest section and a packet.
    static constexpr int capacity = 8192;

   private:
    uint8_t bytes_[capacity] = {};
    int size_ = 0;
    bool started_ = false;
  };

 public:
  // Assembles the sections of one table id.
  class QUILLON_API PSIHandler final : public BaseHandler {
   public:
    PSIHandler(Demux& demux, int table_id) : demux_(demux), table_id_(table_id) {}
    void parse(const TSHeader& header, bool start, const uint8_t* data, int length) override;
    void dump_state(std::ostream& stream) const override;
    // Drops the section in progress; the next start of a section begins anew.
    void invalidate() { buffer_.drop(); }

   private:
    friend class Demux;
    friend class PidHandler;

    Demux& demux_;
    int table_id_;
    bool removed_ = false;
    SectionBuffer buffer_;
  };

  // Assembles all sections of a PID and reports those that match a byte filter. `data` and `mask` are not
  // copied and must outlive the handler; for a length below 1 they may be null.
  class QUILLON_API PSIFilterHandler final : public BaseHandler {
   public:
    PSIFilterHandler(Demux& demux, const uint8_t* data, const uint8_t* mask, int length, unsigned long key)
        : demux_(demux), mask_(mask), data_(data), length_(length), key_(key) {}
    void parse(const TSHeader& header, bool start, const uint8_t* data, int length) override;

   private:
    friend class PidHandler;

    bool filter_match() const;

    Demux& demux_;
    const uint8_t* mask_;
    const uint8_t* data_;
    int length_;
    unsigned long key_;
    size_t number_ = 0;  // among those that its PID was ever given
    SectionBuffer buffer_;
  };

  // All handlers of one PID, and the routing among them.
  class QUILLON_API PidHandler {
   public:
    explicit PidHandler(Demux& demux) : demux_(demux) {}
    ~PidHandler();
    PidHandler(const PidHandler&) = delete;
    PidHandler& operator=(const PidHandler&) = delete;

    // Does nothing if the table id has a handler.
    void AddPsiHandler(int table_id);
    void AddPsiHandler(const uint8_t* data, const uint8_t* mask, int length, unsigned long key);
    void RemovePsiHandler(int table_id);
    // Takes `length` bytes of payload, and before them the packet's `header`. A length below 1 is no bytes.
    void parse(TSHeader& header, const uint8_t* data, int length);
    // Drops the sections in progress of all table ids; filters keep theirs.
    void invalidate();
    const std::map<int, PSIHandler*>& get_psihandler() const { return psi_handlers_; }
    void dump_state(std::ostream& stream) const;

   private:
    friend class Demux;

    void feed_tail(const TSHeader& header, const uint8_t* data, int length);
    void feed_start(const TSHeader& header, const uint8_t* data, int length);
    void feed_filters(const TSHeader& header, bool start, const uint8_t* data, int length);

    std::map<int, PSIHandler*> psi_handlers_;
    std::set<PSIFilterHandler*> filter_handlers_;
    size_t filters_made_ = 0;
    Demux& demux_;
    PSIHandler* current_handler_ = nullptr;
    bool removed_ = false;
  };

  Demux();
  Demux(const Demux&) = delete;
  Demux& operator=(const Demux&) = delete;

  // Reads packets until the input ends (gives 1), a packet does not begin with the sync byte (2), or stop was
  // called (its value, after one more read_buf).
  int start();

  // Sections of `table_id` on `pid` go to on_psi_section(pid, ...). Where this or the other form throws
  // std::bad_alloc, nothing has changed. No packet carries a PID outside 0 to 0x1FFF or a table id outside 0
  // to 0xFF: such a handler is kept like any other, and gets no sections. Only the PIDs of a Demux2 are its
  // device's.
  void add_psi_handler(int pid, int table_id);
  // Sections on `pid` of which each byte i below `length` satisfies (byte AND mask[i]) == data[i] go to
  // on_psi_section(key, ...); the first byte is the table_id. A length below 1 takes every section, and
  // the two may then be null; one above 8192 takes none. `data` and `mask` are not copied: they must last as
  // long as the handler.
  void add_psi_handler(int pid, const uint8_t* data, const uint8_t* mask, int length, unsigned long key);
  // A PID that has no table id afterwards loses its filters too. One that was never added is left alone.
  // Neither this nor reset can fail.
  void remove_psi_handler(int pid, int table_id);
  // Removes all handlers. A stopped demultiplexer stays stopped.
  void reset();
  // The PIDs and their table ids. Leaves the stream in hexadecimal.
  void dump_state(std::ostream& stream) const;

  // On: sections that begin after the end of another in the same packet are delivered too; 0xFF stuffing
  // ends the search. Off, the default: one section start is served a packet.
  void serve_every_section(bool on) { every_section_ = on; }

 protected:
  ~Demux();

  // The order of the virtual functions is fixed: programs built against another version call them by their
  // place.

  // Reads up to `size` bytes of the next packet; false, or fewer than 188 bytes, ends the input.
  virtual bool read_buf(uint8_t* buffer, int size, int& bytes_read) = 0;
  virtual void idle() {}
  // Every packet, before any look at its bytes.
  virtual void on_raw_ts_packet(const uint8_t* /*packet*/) {}
  // `data` is the first byte after the header.
  virtual void on_ts_packet(const TSHeader& /*header*/, const uint8_t* /*data*/) {}
  // `data` is the first byte after the adaptation field.
  virtual void on_adaption_field_header_(const AdaptionFieldHeader& /*header*/, const uint8_t* /*data*/) {}
  // A section that matched the filter of `key`. The pointer is good during the call.
  virtual void on_psi_section(unsigned long /*key*/, int /*section_size*/, uint8_t* /*section*/) {}
  // A section of a table id that was requested. Its size is in the section; the pointer is good during the
  // call. The section number is byte 6, also of a short section.
  virtual void on_psi_section(int /*pid*/, int /*table_id*/, int /*section_number*/,
                              const uint8_t* /*section*/) {}

  // For hooks: ends `start` with `result` at its next packet. Nothing clears the stop again.
  void stop(int result);

 private:
  friend class DemuxPush;
  friend class Demux2;

  PidHandler* find(int pid) const {
    return static_cast<unsigned>(pid) < index_.size() ? index_[static_cast<unsigned>(pid)] : find_in_map(pid);
  }
  PidHandler* find_in_map(int pid) const;
  // Where packets find the handler of a PID; null for one that no packet carries.
  PidHandler** place_in_index(int pid) {
    return static_cast<unsigned>(pid) < index_.size() ? &index_[static_cast<unsigned>(pid)] : nullptr;
  }
  // Calls `add` with the handler of a PID, made if there is none.
  template <class Add>
  void add_to(int pid, Add add);
  void remove_pid(std::map<int, PidHandler*>::iterator place);
  // One packet with a right sync byte. The adaptation hook's pointer counts from `hook_base`.
  void process(const uint8_t* packet, const uint8_t* hook_base);
  // The same for a device that states the PID of the packet.
  void process_as(int pid, const uint8_t* packet);
  template <class PidOf>
  void process_for(const uint8_t* packet, const uint8_t* hook_base, PidOf pid_of);

  class PacketScope;

  // Handlers that were removed while in use. They come in the nodes of their maps, so that no removal fails.
  template <class Handler>
  class Removed {
   public:
    Removed() = default;
    Removed(const Removed&) = delete;
    Removed& operator=(const Removed&) = delete;
    ~Removed() { release(); }

    void keep(typename std::map<int, Handler*>::node_type handler) { handlers_.insert(std::move(handler)); }
    void release() {
      if (handlers_.empty()) return;
      for (const auto& [id, handler] : handlers_) delete handler;
      handlers_.clear();
    }

   private:
    std::multimap<int, Handler*> handlers_;
  };

  std::map<int, PidHandler*> pid_handlers_;
  bool stopped_ = false;
  int stop_result_ = 1;
  bool every_section_ = false;

  std::vector<PidHandler*> index_;  // the handlers of pid_handlers_ by PID
  int packets_in_progress_ = 0;
  Removed<PidHandler> removed_pids_;
  Removed<PSIHandler> removed_handlers_;
};

}  // namespace quillon
