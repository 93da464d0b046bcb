#include "fuzz/structure.h"
#include "fuzz/tables.h"
#include "fuzz/targets.h"

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
#include <quillon/xml/document.h>

namespace quillon::fuzz {

namespace {

constexpr Reading kReadings[] = {Reading::kept, Reading::standard};

// True unless the library refuses.
template <class Action>
bool accepted(Action action) {
  try {
    action();
  } catch (const error&) {
    return false;
  }
  return true;
}

void parse(AnyTable& table, const Bytes& section, bool keep_raw) {
  table.Parse(section.data(), section.size(), keep_raw);
}

void look_at(const AnyTable& table) {
  walk(table);
  ask(table);
  report_of(table);
}

// The faces of each descriptor of a loop by itself, found by its accessor.
template <class Descriptor>
void look_at_all(const std::vector<Descriptor>& descriptors) {
  std::ostringstream text;
  for (const Descriptor& descriptor : descriptors) {
    descriptor.dump_state(text);
    xml::Document document;
    descriptor.SaveSection(document.dom(), document.create_root("d"));
    Descriptor copy = descriptor;
    accepted([&] { copy.Parse(document.root()); });
    for (const Reading reading : kReadings) {
      Reader reader;
      copy.walk(reader, reading);
    }
    copy.reset();
  }
}

#define QUILLON_LOOK(tag, Class, accessor, element) look_at_all(loop.get_##accessor());
#define QUILLON_LOOK_ATSC(tag, Class, accessor, element) look_at_all(loop.get_atsc_##accessor());
void look_at_loop(const DvbLoop& loop) {
  QUILLON_DVB_KINDS(QUILLON_LOOK)
  QUILLON_MPEG2_KINDS(QUILLON_LOOK)
}
void look_at_loop(const AitLoop& loop) {
  QUILLON_AIT_KINDS(QUILLON_LOOK)
}
void look_at_loop(const IntLoop& loop) {
  QUILLON_INT_KINDS(QUILLON_LOOK)
  QUILLON_DVB_KINDS(QUILLON_LOOK)
}
void look_at_loop(const AtscLoop& loop) {
  QUILLON_ATSC_KINDS(QUILLON_LOOK)
  QUILLON_MPEG2_KINDS(QUILLON_LOOK_ATSC)
}

// A loop of its own, outside any table.
template <class Loop>
class Owner : public Loop {
 public:
  void take(ByteView view) { this->parse_descriptor(view); }
};

void walk_loop(const DescriptorLoop& loop) {
  for (const Reading reading : kReadings) {
    Reader reader;
    loop._walk_descriptors(reader, reading);
  }
}

template <class Loop>
void take(const Bytes& descriptor, Reading reading) {
  Owner<Loop> owner;
  accepted([&] { owner.take(ByteView(descriptor.data(), descriptor.size(), reading)); });
  walk_loop(owner);
  look_at_loop(owner);
  look_at_all(owner.get_general_descriptors());
  look_at_all(owner.get_user_private_descriptors());
  xml::Document document;
  owner._save_descriptors(document.dom(), document.create_root("t"));
  Owner<Loop> again;
  accepted([&] { again._parse_descriptors(document.root()); });
  walk_loop(again);
}

// All that is done with a section.
void section(const Bytes& bytes, const std::string& element, Reading reading) {
  const auto table = AnyTable::for_element(element);
  table->set_reading(reading);
  if (!accepted([&] { parse(*table, bytes, true); })) {
    // What was read until then can be looked at too.
    look_at(*table);
    saved(*table);
    table->reset();
    table->set_tolerant(true);
    accepted([&] { parse(*table, bytes, true); });
  }
  look_at(*table);

  const auto loaded = AnyTable::for_element(element);
  const xml::Document document = xml::Document::from_text(saved(*table));
  accepted([&] { loaded->ParseDOM(document.root()); });
  look_at(*loaded);

  // A second parse adds to the first.
  accepted([&] { parse(*table, bytes, false); });
  look_at(*table);
}

}  // namespace

void section(const uint8_t* data, size_t size) {
  if (size < 1) return;
  Bytes bytes(data, data + size);
  repair(bytes);
  for (const std::string& element : elements_for(bytes[0]))
    for (const Reading reading : kReadings) section(bytes, element, reading);
}

void descriptor(const uint8_t* data, size_t size) {
  if (size < 2) return;
  const Bytes bytes(data, data + size);  // its own end, watched
  for (const Reading reading : kReadings) {
    take<DvbLoop>(bytes, reading);
    take<AtscLoop>(bytes, reading);
    take<AitLoop>(bytes, reading);
    take<IntLoop>(bytes, reading);
  }
}

void document(const uint8_t* data, size_t size) {
  accepted([&] {
    const xml::Document document = xml::Document::from_text({reinterpret_cast<const char*>(data), size});
    const std::string text = document.to_text();
    if (xml::Document::from_text(text).to_text() != text) std::abort();
    const auto table = AnyTable::for_element(document.name(document.root()));
    if (!table) return;
    // A failed load leaves what was read until then.
    accepted([&] { table->ParseDOM(document.root()); });
    look_at(*table);
    saved(*table);
  });
}

}  // namespace quillon::fuzz
