// The forms of a table: fields, report and document, in either reading.
#include <cstdint>
#include <iostream>
#include <vector>

#include <quillon/quillon.h>

// A present/following section with one event in French.
const std::vector<uint8_t> section = {
    0x4E, 0xF0, 0x35, 0x10, 0x01, 0xC7, 0x00, 0x01, 0x04, 0x51, 0x23, 0x3A, 0x01,  //
    0x4E, 0x01, 0x07, 0xEF, 0xB6, 0x12, 0x30, 0x00, 0x01, 0x00, 0x00, 0x80, 0x1A,  //
    0x4D, 0x18, 0x66, 0x72, 0x61, 0x08, 0x4C, 0x65, 0x20, 0x63, 0x61, 0x66, 0xC2,  //
    0x65, 0x0B, 0x55, 0x6E, 0x20, 0x62, 0x69, 0x73, 0x74, 0x72, 0x6F, 0x74, 0x2E,  //
    0x06, 0x47, 0x34, 0x07};

void print_report(const quillon::Eit& eit) {
  eit.dump_state(std::cout);
}

void save(const quillon::Eit& eit, const char* file) {
  quillon::xml::Document document;
  if (eit.SaveSection(document, document.add_root("eit"))) document.to_file(file);
}

void load(quillon::Eit& eit, const char* file) {
  const auto document = quillon::xml::Document::from_file(file);
  eit.ParseDOM(document.root_element());
}

void print_titles(const quillon::Eit& eit) {
  for (const auto& event : eit.get_eventinfo())
    for (const auto& text : event.get_short_event_descriptors())
      std::cout << text.get_iso_639_language_code().c_str() << ": " << text.get_event_name().utf8() << "\n";
}

int main(int argc, char** argv) try {
  const char* const file = argc > 1 ? argv[1] : "eit.xml";

  quillon::Eit kept;
  kept.Parse(section);
  print_report(kept);
  save(kept, file);

  quillon::Eit loaded;
  load(loaded, file);
  print_titles(loaded);

  quillon::Eit eit;
  eit.set_reading(quillon::Reading::standard);
  eit.Parse(section);
  print_titles(eit);
} catch (const quillon::error& e) {
  std::cerr << e.what() << "\n";
  return 1;
}
