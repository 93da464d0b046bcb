#include "fuzz/accessors.h"
#include "fuzz/structure.h"
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

void look_at(const Table& table) {
  table.walk();
  table.report();
}

// The faces of each descriptor of a loop by itself.
template <class Descriptor>
void look_at_all(const std::vector<Descriptor>& descriptors) {
  std::ostringstream text;
  for (const Descriptor& descriptor : descriptors) {
    descriptor.dump_state(text);
    xml::Document document;
    descriptor.SaveSection(document.dom(), document.create_root("d"));
    Descriptor copy = descriptor;
    accepted([&] { copy.Parse(document.root()); });
    copy.reset();
  }
}

#define QUILLON_KIND(tag, Class, accessor, element, rank) look_at_all(loop.get_##accessor());
#define QUILLON_KIND_LOADED_AS(tag, Class, accessor, saved, loaded, rank) look_at_all(loop.get_##accessor());
void look_at_loop(const DvbLoop& loop) {
#include <quillon/descriptors/dvb_kinds.inc>
#include <quillon/descriptors/mpeg2_kinds.inc>
}
void look_at_loop(const AitLoop& loop) {
#include <quillon/appsignal/ait_kinds.inc>
}
void look_at_loop(const IntLoop& loop) {
#include <quillon/appsignal/int_kinds.inc>
#include <quillon/descriptors/dvb_kinds.inc>
}
void look_at_loop(const AtscLoop& loop) {
#include <quillon/atsc/atsc_kinds.inc>
}
#undef QUILLON_KIND
#undef QUILLON_KIND_LOADED_AS

// A loop of its own, outside any table.
template <class Loop>
class Owner : public Loop {
 public:
  void take(ByteView view) { this->parse_descriptor(view, {view}); }
};

template <class Loop>
void take(const Bytes& descriptor) {
  Owner<Loop> owner;
  accepted([&] { owner.take(ByteView(descriptor.data(), descriptor.size())); });
  walk(owner);
  look_at_loop(owner);
  look_at_all(owner.get_general_descriptors());
  look_at_all(owner.get_user_private_descriptors());
  xml::Document document;
  owner._save_descriptors(document.dom(), document.create_root("t"));
  Owner<Loop> again;
  accepted([&] { again._parse_descriptors(document.root()); });
  walk(again);
}

}  // namespace

void section(const uint8_t* data, size_t size) {
  if (size < 1) return;
  Bytes bytes(data, data + size);
  repair(bytes);
  for (const MakeTable make : classes_of(bytes[0])) {
    const auto table = make();
    if (!accepted([&] { table->parse(bytes, true); })) {
      // What was read until then can be looked at too.
      look_at(*table);
      table->save();
      table->reset();
      table->set_tolerant(true);
      accepted([&] { table->parse(bytes, true); });
    }
    look_at(*table);

    const auto loaded = make();
    const xml::Document document = xml::Document::from_text(table->save());
    accepted([&] { loaded->load(document.root()); });
    look_at(*loaded);

    // A second parse adds to the first.
    accepted([&] { table->parse(bytes, false); });
    table->walk();
  }
}

void descriptor(const uint8_t* data, size_t size) {
  if (size < 2) return;
  const Bytes bytes(data, data + size);  // its own end, watched
  take<DvbLoop>(bytes);
  take<AtscLoop>(bytes);
  take<AitLoop>(bytes);
  take<IntLoop>(bytes);
}

void document(const uint8_t* data, size_t size) {
  accepted([&] {
    const xml::Document document = xml::Document::from_text({reinterpret_cast<const char*>(data), size});
    const std::string text = document.to_text();
    if (xml::Document::from_text(text).to_text() != text) std::abort();
    const auto table = table_of_element(document.name(document.root()));
    if (!table) return;
    // A failed load leaves what was read until then.
    accepted([&] { table->load(document.root()); });
    look_at(*table);
    table->save();
  });
}

}  // namespace quillon::fuzz
