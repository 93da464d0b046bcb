#include "bench/workloads.h"

#include "apps/quillon/json_fields.h"
#include "bench/tables.h"

#include <algorithm>
#include <boost/crc.hpp>
#include <cstring>
#include <sstream>
#include <tuple>

#include <quillon/sections/crc.h>
#include <quillon/sections/section_size.h>
#include <quillon/stream/section_reader.h>

namespace quillon::bench {

namespace {

// Counts by table id in an array: a map would be measured with the rest.
class Counter {
 public:
  void count(int table_id) { ++sections_[table_id]; }
  Counts counts(uint64_t packets) const {
    Counts out;
    out.packets = packets;
    for (int id = 0; id < 256; ++id)
      if (sections_[id]) out.sections[id] = sections_[id];
    out.events = events;
    out.descriptors = descriptors;
    return out;
  }

  uint64_t events = 0;
  uint64_t descriptors = 0;

 private:
  uint64_t sections_[256] = {};
};

template <class Base>
class Assembler : public Base {
 public:
  Assembler() { add_handlers(*this); }
  Counter counter;

 private:
  using Base::on_psi_section;
  void on_psi_section(int, int table_id, int, const uint8_t* section) override {
    if (section_crc(section, section_size(section)) == good_section_crc) counter.count(table_id);
  }
};

class MemorySource : public Demux {
 public:
  ~MemorySource() = default;
  void set(const std::vector<uint8_t>& bytes) { bytes_ = &bytes; }

 private:
  bool read_buf(uint8_t* buffer, int size, int& bytes_read) override {
    const size_t left = std::min(static_cast<size_t>(size), bytes_->size() - at_);
    std::memcpy(buffer, bytes_->data() + at_, left);
    at_ += left;
    bytes_read = static_cast<int>(left);
    return left > 0;
  }

  const std::vector<uint8_t>* bytes_ = nullptr;
  size_t at_ = 0;
};

uint64_t descriptors_of(const DvbLoop& loop) {
  return loop.get_short_event_descriptors().size() + loop.get_extended_event_descriptors().size() +
         loop.get_component_descriptors().size() + loop.get_content_descriptors().size() +
         loop.get_parental_rating_descriptors().size() + loop.get_content_identifier_descriptors().size() +
         loop.get_service_descriptors().size() + loop.get_network_name_descriptors().size() +
         loop.get_satellite_delivery_system_descriptors().size() +
         loop.get_service_list_descriptors().size() + loop.get_CA_descriptors().size() +
         loop.get_stream_identifier_descriptors().size();
}

void count_rows(Counter&, const Pat&) {}
void count_rows(Counter& counter, const Nit& nit) {
  counter.descriptors += descriptors_of(nit);
  for (const auto& row : nit.get_stream_infos()) counter.descriptors += descriptors_of(row);
}
void count_rows(Counter& counter, const Sdt& sdt) {
  for (const auto& row : sdt.get_service_infos()) counter.descriptors += descriptors_of(row);
}
void count_rows(Counter& counter, const Eit& eit) {
  counter.events += eit.get_eventinfo().size();
  for (const auto& row : eit.get_eventinfo()) counter.descriptors += descriptors_of(row);
}
void count_rows(Counter& counter, const PmtDVB& pmt) {
  counter.descriptors += descriptors_of(pmt);
  for (const auto& row : pmt.get_pmt_stream_info()) counter.descriptors += descriptors_of(row);
}

// The tables that sections are parsed into: each a new one, or one of its class again.
class NewTables {
 public:
  template <class Table, class Use>
  void with(Use use) {
    Table table;
    use(table);
  }
};
class SameTables {
 public:
  template <class Table, class Use>
  void with(Use use) {
    Table& table = std::get<Table>(tables_);
    if constexpr (std::is_same_v<Table, Nit>)
      table = Nit();
    else
      table.reset();
    use(table);
  }

 private:
  std::tuple<Pat, PmtDVB, Nit, Sdt, Eit> tables_;
};

// Parses every section and hands the object to `use`.
template <class Tables, class Use>
class Parser : public DemuxPush {
 public:
  explicit Parser(Use use) : use_(use) { add_handlers(*this); }
  Counter counter;

 private:
  using DemuxPush::on_psi_section;
  void on_psi_section(int, int table_id, int, const uint8_t* section) override {
    with_class_of(table_id, [&](auto table) { take<typename decltype(table)::type>(section); });
  }

  template <class Table>
  void take(const uint8_t* section) {
    tables_.template with<Table>([&](Table& table) {
      table.Parse(section, false);
      counter.count(section[0]);
      count_rows(counter, table);
      use_(table);
    });
  }

  Tables tables_;
  Use use_;
};

Counts pushed(DemuxPush& demux, Counter& counter, const Stream& stream) {
  // The library takes mutable packets and leaves them as they are.
  demux.push_data(const_cast<uint8_t*>(stream.bytes.data()), static_cast<int>(stream.bytes.size()));
  return counter.counts(stream.bytes.size() / Demux::packet_size);
}

template <class Tables = NewTables, class Use>
Counts parsed(const Stream& stream, Use use) {
  Parser<Tables, Use> parser(use);
  return pushed(parser, parser.counter, stream);
}

}  // namespace

Counts assemble_pushed(const Stream& stream) {
  Assembler<DemuxPush> demux;
  return pushed(demux, demux.counter, stream);
}

Counts assemble_pulled(const Stream& stream) {
  Assembler<MemorySource> demux;
  demux.set(stream.bytes);
  demux.start();
  return demux.counter.counts(stream.bytes.size() / Demux::packet_size);
}

Counts assemble_found(const Stream& stream) {
  Counter counter;
  SectionReader sections([&](const StreamSection& section) {
    if (section.crc_ok) counter.count(section.table_id());
  });
  PacketReader packets;
  packets.feed(stream.bytes.data(), stream.bytes.size());
  packets.finish();
  TsPacket packet;
  while (packets.next(packet)) sections.push(packet);
  return counter.counts(packets.packets());
}

Counts parse_all(const Stream& stream) {
  return parsed(stream, [](const auto&) {});
}

Counts parse_again(const Stream& stream) {
  return parsed<SameTables>(stream, [](const auto&) {});
}

Counts report_all(const Stream& stream) {
  std::ostringstream text;
  return parsed(stream, [&text](const auto& table) {
    text.str({});
    table.dump_state(text);
  });
}

Counts save_all(const Stream& stream) {
  return parsed(stream, [](const auto& table) {
    xml::Document document;
    table.SaveSection(document.dom(), document.create_root("table"));
  });
}

Counts walk_all(const Stream& stream) {
  app::JsonFields fields;
  return parsed(stream, [&fields](const auto& table) {
    table.walk(fields);
    fields.take();
  });
}

uint64_t yardstick(const Stream& stream) {
  uint64_t right = 0;
  const uint8_t* at = stream.section_bytes.data();
  for (const uint32_t size : stream.section_sizes) {
    boost::crc_optimal<32, 0x04C11DB7, 0xFFFFFFFF, 0xFFFFFFFF, false, false> crc;
    crc.process_block(at, at + size);
    right += crc.checksum() == 0xFFFFFFFF;
    at += size;
  }
  return right;
}

}  // namespace quillon::bench
