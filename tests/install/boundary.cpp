// What an application does across the border of the library: it derives from the library's classes, catches
// what they throw, and uses what headers have inline, which calls what they haven't. Linked with the shared
// library it shows that enough is exported, and that an exception is of one type on both sides.

#include <cstring>
#include <exception>
#include <fstream>
#include <iostream>
#include <sstream>
#include <string>
#include <typeinfo>
#include <vector>

#include <quillon/quillon.h>

namespace {

int failures = 0;

void expect(bool holds, const char* what) {
  if (holds) return;
  ++failures;
  std::cerr << "not so: " << what << "\n";
}

// A table of the application's own, on the library's base.
class OwnTable : public quillon::PsiTableBase {
 public:
  const char* get_table_id_text() const override { return "own_section"; }
  int bytes() const { return bytes_; }

 private:
  void _reset() override { bytes_ = 0; }
  void _dump_state(std::ostream& stream) const override { stream << "bytes: " << bytes_ << std::endl; }
  void _parse(void*) override {}
  void _parse(quillon::ByteView, bool) override { bytes_ = body_size(); }
  bool _save_section(void*, void*) const override { return true; }
  bool is_valid_tablesid() const override { return get_table_id() == 0x00; }
  bool is_valid_syntax_indicator(int indicator) const override { return indicator == 1; }
  bool is_valid_reserved_header(int) const override { return true; }

  int bytes_ = 0;
};

// A table of the library's, with another name.
class NamedPat : public quillon::Pat {
 public:
  const char* get_table_id_text() const override { return "named"; }
};

// A loop of descriptors of the application's own.
class OwnLoop : public quillon::DvbLoop {
 public:
  bool read(const std::vector<uint8_t>& bytes) {
    const quillon::ByteView view(bytes.data(), bytes.size());
    return parse_descriptors(view, 0, static_cast<int>(bytes.size()), {view});
  }
};

class Stream : public quillon::DemuxIstream {
 public:
  explicit Stream(std::istream& stream) : DemuxIstream(stream) {
    add_psi_handler(0x00, 0x00);
    add_psi_handler(0x12, 0x4E);
  }
  std::vector<uint8_t> pat;
  std::vector<std::vector<uint8_t>> eits;

 private:
  void on_psi_section(int, int table_id, int, const uint8_t* section) override {
    const std::vector<uint8_t> bytes(section, section + 3 + ((section[1] & 0x0F) << 8 | section[2]));
    if (table_id == 0x00)
      pat = bytes;
    else
      eits.push_back(bytes);
  }
};

template <class Table>
std::string report(const Table& table) {
  std::ostringstream stream;
  table.dump_state(stream);
  return stream.str();
}

template <class Caught>
std::string caught(const std::vector<uint8_t>& section) {
  OwnTable table;
  try {
    table.Parse(section.data(), section.size(), false);
  } catch (const Caught& e) {
    expect(typeid(e) == typeid(quillon::error), "an exception is of the library's type");
    return e.what();
  }
  return "nothing";
}

void tables(const Stream& stream) {
  OwnTable own;
  own.Parse(stream.pat.data(), stream.pat.size(), true);
  expect(own.bytes() == static_cast<int>(stream.pat.size()) - 12, "a derived table reads its body");
  expect(report(own).find("table name: own_section") != std::string::npos, "a derived table is reported");
  NamedPat named;
  named.Parse(stream.pat.data(), false);
  expect(named.get_program_info().size() > 1, "a derived PAT has programs");
  expect(report(named).find("table name: named") != std::string::npos,
         "a derived PAT is reported by its own name");

  std::vector<uint8_t> broken = stream.pat;
  broken.back() ^= 1;
  expect(caught<quillon::error>(broken) == "crc error", "an error is caught as one");
  expect(caught<std::exception>(broken) == "crc error", "an error is caught as a standard exception");
}

void loops(const Stream& stream) {
  expect(!stream.eits.empty(), "the stream has events");
  for (const std::vector<uint8_t>& section : stream.eits) {
    quillon::Eit eit;
    eit.Parse(section.data(), section.size(), true);
    for (const auto& event : eit.get_eventinfo()) {
      expect(!event.get_short_event_descriptors().empty(), "an event has a short event descriptor");
      size_t events = 0;
      for (const quillon::AnyDescriptor& d : event.descriptors())
        d.visit([&events](const quillon::DescriptorShortEvent&) { ++events; });
      expect(events == event.get_short_event_descriptors().size(),
             "a loop's descriptors are visited by type");
      const quillon::Eit::EventInfo copy = event;
      expect(report(copy) == report(event), "a copied row has its descriptors");

      quillon::xml::Document document;
      expect(event._save_descriptors(document.dom(), document.create_root("event")), "a loop is saved");
      OwnLoop again;
      again._parse_descriptors(document.root());
      expect(again.get_short_event_descriptors().size() == event.get_short_event_descriptors().size(),
             "a loop is loaded");
    }
  }
  OwnLoop loop;
  expect(loop.read({0x52, 1, 7}), "a derived loop is walked");
  expect(loop.get_stream_identifier_descriptors().size() == 1, "a derived loop has its descriptor");
  expect(loop.get_CA_descriptors().empty(), "a derived loop has no other");
  const quillon::DescriptorStreamIdentifier none;
  std::ostringstream out;
  loop.get_stream_identifier_descriptors()[0].dump_state(out);
  expect(!out.str().empty() && out.str() != report(none), "descriptors are reported");
}

}  // namespace

int main(int, char** argv) {
  expect(std::strcmp(quillon::version(), QUILLON_VERSION_STRING) == 0, "the library is that of the headers");
  std::ifstream file(argv[1], std::ios::binary);
  Stream stream(file);
  stream.start();
  tables(stream);
  loops(stream);
  return failures == 0 ? 0 : 1;
}
