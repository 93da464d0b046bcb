#include "fuzz/tables.h"

#include "fuzz/require.h"

#include <climits>
#include <sstream>

#include <quillon/appsignal/ait.h>
#include <quillon/appsignal/int.h>
#include <quillon/atsc/pmt_atsc.h>
#include <quillon/descriptors/event/extended_text.h>
#include <quillon/descriptors/mpeg2/ca.h>
#include <quillon/fields/time.h>
#include <quillon/sections/pat.h>
#include <quillon/tables/cat.h>
#include <quillon/tables/eit.h>
#include <quillon/tables/nit.h>
#include <quillon/tables/pmt.h>
#include <quillon/xml/document.h>

namespace quillon::fuzz {

namespace {

// Keeps the reads from being optimized away.
volatile uint64_t seen;

void read(std::string_view text) {
  uint64_t sum = 0;
  for (const char c : text) sum += static_cast<unsigned char>(c);
  seen = sum;
}

void read(const uint8_t* byte) {
  if (byte) seen = *byte;
}

// The places of the table's own descriptors, and others.
template <class Table>
void ask_positions(const AnyTable& any) {
  const Table* const table = any.as<Table>();
  if (!table) return;
  for (const int position : table->get_descriptor_pos()) read(table->get_section_ptr_by_desc_pos(position));
  for (const int position : {INT_MIN, -9, -8, 0, table->get_section_length(), INT_MAX})
    read(table->get_section_ptr_by_desc_pos(position));
}

}  // namespace

std::vector<std::string> elements_for(int table_id) {
  std::vector<std::string> out;
  for (const Standard standard : {Standard::dvb, Standard::atsc})
    if (const auto table = AnyTable::for_table_id(table_id, standard))
      if (out.empty() || out.back() != table->element()) out.push_back(table->element());
  return out;
}

std::string report_of(const AnyTable& table) {
  std::ostringstream text;
  table.dump_state(text);
  return text.str();
}

std::string saved(const AnyTable& table) {
  xml::Document document;
  table.SaveSection(document.dom(), document.create_root("t"));
  return document.to_text();
}

void walk(const AnyTable& table) {
  Reader reader;
  table.walk(reader);
}

void ask(const AnyTable& table) {
  ask_positions<Cat>(table);
  ask_positions<PmtDVB>(table);
  ask_positions<PmtATSC>(table);
  ask_positions<Nit>(table);
  ask_positions<Int>(table);
  ask_positions<Ait>(table);
  if (const Pat* const pat = table.as<Pat>()) {
    for (const auto& program : pat->get_program_info())
      seen = static_cast<uint64_t>(pat->get_pid_from_program_number(program.get_program_number()));
    require(pat->get_pid_from_program_number(-1) == 0x1FFF);
  }
  if (const Eit* const eit = table.as<Eit>())
    for (const Eit::EventInfo& event : eit->get_eventinfo())
      for (const ExtendedText& text : extended_texts(event.get_extended_event_descriptors())) read(text.text);
  if (const PmtATSC* const pmt = table.as<PmtATSC>()) {
    std::vector<DescriptorCa> found;
    pmt->get_all_ca_descriptors(found);
    seen = found.size();
  }
}

Reader::~Reader() {
  require(open_.empty() || std::uncaught_exceptions() > 0);
}

void Reader::item(const char* name) {
  read(name);
  if (open_.empty() || open_.back() == kRecord) return;
  require(open_.back() > 0);
  --open_.back();
}

void Reader::number(const char* name, int64_t value, const char* meaning) {
  item(name);
  seen = static_cast<uint64_t>(value);
  if (meaning) read(meaning);
}
void Reader::real(const char* name, double value) {
  item(name);
  seen = static_cast<uint64_t>(value != 0);
}
void Reader::text(const char* name, std::string_view utf8) {
  item(name);
  read(utf8);
}
void Reader::bytes(const char* name, const uint8_t* data, size_t size) {
  item(name);
  read({reinterpret_cast<const char*>(data), size});
}
void Reader::time(const char* name, const DateTime& utc) {
  item(name);
  read(utc.get_date_as_text());
}
void Reader::duration(const char* name, const Duration& value) {
  item(name);
  read(value.get_time_as_text());
}
void Reader::begin(const char* name, const char* kind) {
  item(name);
  read(kind);
  open_.push_back(kRecord);
}
void Reader::begin_list(const char* name, size_t size) {
  item(name);
  open_.push_back(size);
}
void Reader::end() {
  require(!open_.empty() && (open_.back() == kRecord || open_.back() == 0));
  open_.pop_back();
}

}  // namespace quillon::fuzz
