#include "apps/quillon/table_kinds.h"
#include "fuzz/targets.h"

#include <algorithm>
#include <cstdlib>
#include <sstream>
#include <string>

#include <quillon/appsignal/ait_classes.h>
#include <quillon/appsignal/ait_loop.h>
#include <quillon/appsignal/int_classes.h>
#include <quillon/appsignal/int_loop.h>
#include <quillon/atsc/atsc_classes.h>
#include <quillon/atsc/atsc_loop.h>
#include <quillon/descriptors/dvb_classes.h>
#include <quillon/descriptors/dvb_loop.h>
#include <quillon/sections/crc.h>

namespace quillon::fuzz {

namespace {

using Bytes = std::vector<uint8_t>;

std::string xml_of(const app::Table& table) {
  xml::Document document;
  table.save(document.dom(), document.create_root("t"));
  return document.to_text();
}

// What a save of `text` loaded gives; empty if it does not load.
std::string resaved(const app::TableKind& kind, const std::string& text) {
  const xml::Document document = xml::Document::from_text(text);
  const auto table = kind.make();
  try {
    table->load(document.root());
  } catch (const error&) {
    return {};
  }
  return xml_of(*table);
}

// Vectors of integers come back twice as long: kept, see the attribute layer.
bool grows(const std::string& text) {
  return text.find("<service_availability_descriptor ") != std::string::npos ||
         text.find("<frequency_list_descriptor ") != std::string::npos;
}

void look_at(const app::TableKind& kind, const Bytes& section) {
  const auto table = kind.make();
  try {
    table->parse(section.data(), section.size());
  } catch (const error&) {
    return;
  }
  std::ostringstream text;
  table->report(text);
  table->details();
  const std::string saved = xml_of(*table);
  const std::string once = resaved(kind, saved);
  if (once.empty() || grows(saved)) return;
  if (resaved(kind, once) != once) std::abort();
}

// Every accessor of a loop, with a report and a save of what it holds.
template <class Vector>
void look_at_all(const Vector& descriptors) {
  std::ostringstream text;
  for (const auto& descriptor : descriptors) {
    descriptor.dump_state(text);
    xml::Document document;
    descriptor.SaveSection(document.dom(), document.create_root("d"));
    auto copy = descriptor;
    try {
      copy.Parse(document.root());
    } catch (const error&) {
    }
    copy.reset();
  }
}

void look_at_loop(const DvbLoop& loop) {
#define QUILLON_KIND(tag, Class, accessor, element, rank) look_at_all(loop.get_##accessor());
#define QUILLON_KIND_LOADED_AS(tag, Class, accessor, saved, loaded, rank) look_at_all(loop.get_##accessor());
#include <quillon/descriptors/dvb_kinds.inc>
#include <quillon/descriptors/mpeg2_kinds.inc>
#undef QUILLON_KIND
#undef QUILLON_KIND_LOADED_AS
  look_at_all(loop.get_general_descriptors());
  look_at_all(loop.get_user_private_descriptors());
}

void look_at_loop(const AtscLoop& loop) {
#define QUILLON_KIND(tag, Class, accessor, element, rank) look_at_all(loop.get_##accessor());
#include <quillon/atsc/atsc_kinds.inc>
#undef QUILLON_KIND
  look_at_all(loop.get_general_descriptors());
  look_at_all(loop.get_user_private_descriptors());
}

void look_at_loop(const AitLoop& loop) {
#define QUILLON_KIND(tag, Class, accessor, element, rank) look_at_all(loop.get_##accessor());
#include <quillon/appsignal/ait_kinds.inc>
#undef QUILLON_KIND
  look_at_all(loop.get_general_descriptors());
  look_at_all(loop.get_user_private_descriptors());
}

void look_at_loop(const IntLoop& loop) {
#define QUILLON_KIND(tag, Class, accessor, element, rank) look_at_all(loop.get_##accessor());
#include <quillon/appsignal/int_kinds.inc>
#include <quillon/descriptors/dvb_kinds.inc>
#undef QUILLON_KIND
  look_at_all(loop.get_general_descriptors());
  look_at_all(loop.get_user_private_descriptors());
}

// A loop of its own, outside any table.
template <class Loop>
class Owner : public Loop {
 public:
  void take(ByteView view) { this->parse_descriptor(view, {view}); }
};

template <class Loop>
void take(const uint8_t* data, size_t size) {
  Owner<Loop> owner;
  try {
    owner.take(ByteView(data, size));
  } catch (const error&) {
  }
  look_at_loop(owner);
  xml::Document document;
  void* const root = document.create_root("t");
  owner._save_descriptors(document.dom(), root);
  Owner<Loop> again;
  try {
    again._parse_descriptors(document.root());
  } catch (const error&) {
  }
}

}  // namespace

void repair(Bytes& section) {
  if (section.size() < 12) section.resize(12);
  if (section.size() > 4098) section.resize(4098);
  const size_t length = section.size() - 3;
  const bool is_short = section[0] >= 0x70 && section[0] <= 0x73;
  section[1] = static_cast<uint8_t>((is_short ? 0x70 : 0xF0) | length >> 8);
  if (is_short) {
    section.resize(std::min<size_t>(section.size(), 1026));  // the two top bits of the length must be 0
    section[1] = static_cast<uint8_t>(0x70 | (section.size() - 3) >> 8);
  }
  section[2] = static_cast<uint8_t>(section.size() - 3);
  for (size_t i = 1; i <= 4; ++i) section[section.size() - i] = 0;
  // section_crc gives the register inverted; CRC_32 is the register itself.
  const uint32_t crc = ~section_crc(section.data(), section.size() - 4);
  for (size_t i = 0; i < 4; ++i) section[section.size() - 4 + i] = static_cast<uint8_t>(crc >> (24 - 8 * i));
}

void section(const uint8_t* data, size_t size) {
  if (size < 1) return;
  Bytes bytes(data, data + size);
  repair(bytes);
  for (const app::Standard standard : {app::Standard::dvb, app::Standard::atsc})
    if (const app::TableKind* const kind = app::kind_of_table_id(bytes[0], standard)) look_at(*kind, bytes);
}

void descriptor(const uint8_t* data, size_t size) {
  if (size < 2) return;
  const Bytes bytes(data, data + size);  // its own end, watched
  take<DvbLoop>(bytes.data(), size);
  take<AtscLoop>(bytes.data(), size);
  take<AitLoop>(bytes.data(), size);
  take<IntLoop>(bytes.data(), size);
}

void document(const uint8_t* data, size_t size) {
  try {
    const xml::Document document = xml::Document::from_text({reinterpret_cast<const char*>(data), size});
    const std::string text = document.to_text();
    if (xml::Document::from_text(text).to_text() != text) std::abort();
    const app::TableKind* const kind = app::kind_of_element(document.name(document.root()));
    if (!kind) return;
    const auto table = kind->make();
    table->load(document.root());
    std::ostringstream report;
    table->report(report);
    xml_of(*table);
  } catch (const error&) {
  }
}

void mutate_structure(Bytes& section, uint32_t seed) {
  if (section.size() < 16) return;
  const auto at = [&](uint32_t shift) { return 8 + (seed >> shift) % (section.size() - 12); };
  const auto place = [&section](size_t i) { return section.begin() + static_cast<ptrdiff_t>(i); };
  switch (seed % 6) {
    case 0:  // a length one more or one less
      section[at(8)] = static_cast<uint8_t>(section[at(8)] + (seed & 0x80000000 ? 1 : -1));
      break;
    case 1:  // a length at an end of its range
      section[at(8)] = seed & 0x40000000 ? 0xFF : 0x00;
      break;
    case 2: {  // a descriptor taken out
      const size_t i = at(8);
      const size_t n = std::min<size_t>(section[i + 1] + size_t{2}, section.size() - 4 - i);
      section.erase(place(i), place(i + n));
      break;
    }
    case 3: {  // a descriptor put in once more, elsewhere
      const size_t i = at(8);
      const size_t n = std::min<size_t>(section[i + 1] + size_t{2}, section.size() - 4 - i);
      const Bytes copy(place(i), place(i + n));
      section.insert(place(at(16)), copy.begin(), copy.end());
      break;
    }
    case 4:  // another tag
      section[at(8)] = static_cast<uint8_t>(seed >> 20);
      break;
    default:  // another table id
      section[0] = static_cast<uint8_t>(seed >> 12);
      break;
  }
}

}  // namespace quillon::fuzz
