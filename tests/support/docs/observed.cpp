#include "tests/support/docs/observed.h"

#include "tests/support/cases.h"
#include "tests/support/table_cases.h"

#include <algorithm>
#include <bit>
#include <functional>
#include <initializer_list>
#include <optional>
#include <utility>

#include <quillon/appsignal/ait_kinds.h>
#include <quillon/appsignal/int_kinds.h>
#include <quillon/atsc/atsc_kinds.h>
#include <quillon/descriptors/dvb_kinds.h>
#include <quillon/descriptors/mpeg2_kinds.h>
#include <quillon/report/registries.h>
#include <quillon/stream/table_kinds.h>

namespace quillon::test {

const std::vector<DescriptorFamily>& descriptor_families() {
#define QUILLON_ROW(tag, Class, accessor, element) {tag, #Class, #accessor, element},
#define QUILLON_ATSC_ROW(tag, Class, accessor, element) {tag, #Class, "atsc_" #accessor, "atsc_" element},
  // The kinds of DescriptorGeneral are loaded by a loop of ATSC, and never saved.
  const auto with_general = [](std::vector<DescriptorKind> kinds, bool is_saved = true) {
    for (const DescriptorKind& kind : {kGeneralKind, kUserPrivateKind}) {
      kinds.push_back(kind);
      kinds.back().is_saved = is_saved;
    }
    return kinds;
  };
  static const std::vector<DescriptorFamily> families = {
      {"mpeg2", "MPEG-2", {QUILLON_MPEG2_KINDS(QUILLON_ROW)}, {}},
      {"dvb_own", "DVB", {QUILLON_DVB_KINDS(QUILLON_ROW)}, {}},
      {"dvb", "", with_general({}), {"mpeg2", "dvb_own"}},
      {"ait", "Application signalling", with_general({QUILLON_AIT_KINDS(QUILLON_ROW)}), {}},
      {"int", "IP/MAC notification", with_general({QUILLON_INT_KINDS(QUILLON_ROW)}), {"dvb_own"}},
      {"mpeg2_in_atsc", "", {QUILLON_MPEG2_KINDS(QUILLON_ATSC_ROW)}, {}},
      {"atsc", "ATSC", with_general({QUILLON_ATSC_KINDS(QUILLON_ROW)}, false), {"mpeg2_in_atsc"}},
  };
#undef QUILLON_ROW
#undef QUILLON_ATSC_ROW
  return families;
}

const std::vector<TableKind>& table_kinds() {
  static const std::vector<TableKind> kinds = [] {
#define QUILLON_ROW(first, last, streams, Class, element) {first, last, #streams, #Class, element, "dvb"},
    std::vector<TableKind> out = {QUILLON_TABLE_KINDS(QUILLON_ROW)};
#undef QUILLON_ROW
    for (TableKind& kind : out) {
      if (kind.streams == "atsc") kind.family = "atsc";
      if (kind.class_name == "Ait") kind.family = "ait";
      if (kind.class_name == "Int") kind.family = "int";
    }
    return out;
  }();
  return kinds;
}

namespace {

// What can be done with the bytes of a class. Whatever the class refuses throws error.
struct Subject {
  std::string class_name;
  Bytes bytes;
  size_t first_bit;  // those before it say what the bytes are
  bool is_kept;      // the kept reading takes them too
  std::function<Value(const Bytes&, Reading)> walk;
  std::function<std::string(const Bytes&)> report;
  std::function<std::string(const Bytes&)> document;
  std::function<std::string(const std::string& document)> report_of_document;
};

struct Leaf {
  std::string path;  // without the numbers of items
  const Value* value;
};
using Leaves = std::map<std::string, Leaf>;  // by the path with them

void collect(const Value& value, const std::string& place, const std::string& path, Leaves& out) {
  size_t number = 0;
  for (const Value& item : value.items) {
    const std::string here = place + (value.kind == Kind::list ? std::to_string(number++) : "") + item.name;
    out[here] = {path + item.name, &item};
    if (item.name != "descriptors") collect(item, here + "/", path + item.name + "/", out);
  }
}

Leaves leaves_of(const Value& root) {
  Leaves out;
  collect(root, "", "", out);
  return out;
}

// The bits of numbers: at which place of the wire the lowest one is, by what a flipped bit adds or takes
// away.
class Widths {
 public:
  void look(const Leaves& before, const Leaves& after, size_t bit) {
    for (const auto& [place, leaf] : before) {
      const auto now = after.find(place);
      if (leaf.value->kind != Kind::number || now == after.end()) continue;
      const auto change = static_cast<uint64_t>(leaf.value->number ^ now->second.value->number) & 0xFFFFFFFF;
      if (!std::has_single_bit(change)) continue;
      const size_t power = static_cast<size_t>(std::countr_zero(change));
      found_[place][bit + power].insert(power);
    }
  }
  // A bit that can't be tried, as a length that is too large is refused.
  void refuse(size_t bit) { refused_.insert(bit); }

  // Of the places that a number may have, it has the one of which most bits were seen.
  void tell(const Leaves& leaves, std::map<std::string, FieldFacts>& fields, bool is_kept) const {
    for (const auto& [place, by_end] : found_) {
      const auto best = std::max_element(by_end.begin(), by_end.end(), [](const auto& a, const auto& b) {
        return a.second.size() < b.second.size();
      });
      const size_t bits = *best->second.rbegin() + 1;
      if (best->first >= bits && refused_.contains(best->first - bits)) continue;
      FieldFacts& facts = fields[leaves.at(place).path];
      int& width = is_kept ? facts.kept_width : facts.width;
      width = std::max(width, static_cast<int>(bits));
    }
  }

 private:
  std::map<std::string, std::map<size_t, std::set<size_t>>> found_;
  std::set<size_t> refused_;
};

// The one path at which two walks differ; none if they differ at more, or in which fields there are.
std::optional<std::string> only_change(const Leaves& before, const Leaves& after) {
  if (before.size() != after.size()) return std::nullopt;
  std::set<std::string> changed;
  for (auto a = before.begin(), b = after.begin(); a != before.end(); ++a, ++b) {
    if (a->first != b->first) return std::nullopt;
    if (a->second.value->text != b->second.value->text) changed.insert(a->second.path);
  }
  return changed.size() == 1 ? std::optional(*changed.begin()) : std::nullopt;
}

// The paths whose attributes the report of a loaded document follows.
void look_at_document(const Subject& subject, const std::string& document, ClassFacts& facts) {
  std::string before;
  try {
    before = subject.report_of_document(document);
  } catch (const error&) {
    return;
  }
  std::vector<std::string> around;
  for (size_t at = document.find('<'); at != std::string::npos; at = document.find('<', at + 1)) {
    if (document[at + 1] == '/') {
      around.pop_back();
      continue;
    }
    const size_t end = document.find('>', at);
    const std::string name = document.substr(at + 1, document.find_first_of(" />", at + 1) - at - 1);
    around.push_back(around.empty() ? "" : around.back() + name + "/");
    for (size_t quote = document.find("=\"", at); quote < end; quote = document.find("=\"", quote + 2)) {
      const size_t begin = document.rfind(' ', quote) + 1;
      const size_t close = document.find('"', quote + 2);
      std::string changed = document;
      if (close == quote + 2)
        changed.insert(close, "01");
      else
        changed[close - 1] = static_cast<char>(changed[close - 1] ^ 1);
      try {
        if (subject.report_of_document(changed) != before)
          facts.fields[around.back() + document.substr(begin, quote - begin)].is_reported = true;
      } catch (const error&) {
      }
    }
    if (document[end - 1] == '/') around.pop_back();
  }
}

// What becomes of each walk when a bit is another, which `look` is shown if it is still taken.
template <class Look>
void flip_bits(const Subject& subject, Reading reading, ClassFacts& facts, Look look) {
  const bool is_kept = reading == Reading::kept;
  Shape& shape = is_kept ? facts.kept : facts.standard;
  Value whole;
  try {
    whole = subject.walk(subject.bytes, reading);
  } catch (const error&) {
    return;  // of what the other reading alone takes
  }
  shape.add(whole);
  const Leaves before = leaves_of(whole);
  Widths widths;
  for (size_t bit = subject.first_bit; bit < subject.bytes.size() * 8; ++bit) {
    Bytes flipped = subject.bytes;
    flipped[bit / 8] ^= static_cast<uint8_t>(0x80 >> bit % 8);
    try {
      const Value value = subject.walk(flipped, reading);
      shape.add(value);
      const Leaves after = leaves_of(value);
      widths.look(before, after, bit);
      look(flipped, only_change(before, after));
    } catch (const error&) {
      widths.refuse(bit);
    }
  }
  widths.tell(before, facts.fields, is_kept);
}

// Small numbers at each place: the ids that have names are among them.
void put_small_numbers(const Subject& subject, ClassFacts& facts) {
  constexpr size_t width = 4;
  for (size_t at = subject.first_bit / 8; at + width <= subject.bytes.size(); ++at)
    for (const uint8_t number : Bytes{1, 2, 3, 4, 5, 6}) {
      Bytes changed = subject.bytes;
      std::fill_n(changed.begin() + static_cast<ptrdiff_t>(at), width - 1, uint8_t{0});
      changed[at + width - 1] = number;
      try {
        facts.standard.add(subject.walk(changed, Reading::standard));
      } catch (const error&) {
      }
    }
}

void look_at(const Subject& subject, ClassFacts& facts) {
  flip_bits(subject, Reading::standard, facts, [](const Bytes&, const auto&) {});
  put_small_numbers(subject, facts);
  if (!subject.is_kept) return;
  const std::string report = subject.report(subject.bytes);
  const std::string document = subject.document(subject.bytes);
  facts.document.add(element_of(document));
  look_at_document(subject, document, facts);
  flip_bits(subject, Reading::kept, facts, [&](const Bytes& flipped, const std::optional<std::string>& path) {
    facts.document.add(element_of(subject.document(flipped)));
    if (path && subject.report(flipped) != report) facts.fields[*path].is_reported = true;
  });
}

Subject subject_of(const DescriptorCase& c) {
  return {c.name.substr(0, c.name.find_first_of(" ,")),
          c.bytes,
          8,
          true,
          [&c](const Bytes& bytes, Reading reading) {
            ValueSink sink;
            c.walk_to(ByteView(bytes.data(), bytes.size(), reading), sink);
            return sink.take();
          },
          [&c](const Bytes& bytes) { return c.report_of(view(bytes)); },
          [&c](const Bytes& bytes) { return c.saved_of(view(bytes)); },
          [&c](const std::string& document) { return c.report_of_loaded(document); }};
}

Subject subject_of(const TableCase& c, const Bytes& section, bool is_kept) {
  // The TOT has a CRC in the short form, which the standard reading looks at.
  const bool ends_with_crc = c.has_crc || c.element == "tot";
  const auto parsed = [&c, ends_with_crc](Bytes bytes, Reading reading) {
    if (ends_with_crc) repair_crc(bytes);
    auto table = c.make();
    table->set_reading(reading);
    table->Parse(bytes.data(), bytes.size(), false);
    return table;
  };
  std::string class_name;
  for (const TableKind& kind : table_kinds())
    if (kind.element == c.element) class_name = kind.class_name;
  return {class_name,
          section,
          24,
          is_kept,
          [parsed](const Bytes& bytes, Reading reading) {
            ValueSink sink;
            parsed(bytes, reading)->walk(sink);
            return sink.take();
          },
          [parsed](const Bytes& bytes) { return test::report(*parsed(bytes, Reading::kept)); },
          [&c, parsed](const Bytes& bytes) {
            xml::Document document;
            // A table that has no document saves its header.
            parsed(bytes, Reading::kept)->SaveSection(document.dom(), document.create_root(c.element));
            return plain(document);
          },
          [&c](const std::string& text) {
            const xml::Document document = xml::Document::from_text(text);
            const auto table = c.make();
            table->ParseDOM(document.root());
            return test::report(*table);
          }};
}

}  // namespace

const std::map<std::string, ClassFacts>& observed() {
  static const std::map<std::string, ClassFacts> facts = [] {
    std::map<std::string, ClassFacts> out;
    const auto look = [&out](const Subject& subject) { look_at(subject, out[subject.class_name]); };
    init();  // identifiers have their names
    std::map<std::string, const TableCase*> by_element;
    for (const TableCase& c : TableCases::all()) {
      by_element[c.element] = &c;
      look(subject_of(c, c.section, true));
    }
    for (const StandardSection& s : StandardSections::all())
      look(subject_of(*by_element.at(s.element), s.section, false));
    for (const DescriptorCase& c : Cases::all()) look(subject_of(c));
    return out;
  }();
  return facts;
}

}  // namespace quillon::test
