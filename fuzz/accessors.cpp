#include "fuzz/accessors.h"

#include "apps/quillon/atsc_details.h"

#include <climits>
#include <concepts>
#include <cstdlib>
#include <iterator>
#include <sstream>
#include <type_traits>

#include <quillon/appsignal/ait.h>
#include <quillon/appsignal/ait_classes.h>
#include <quillon/appsignal/ait_loop.h>
#include <quillon/appsignal/dsmcc.h>
#include <quillon/appsignal/int.h>
#include <quillon/appsignal/int_classes.h>
#include <quillon/appsignal/int_loop.h>
#include <quillon/atsc/atsc_classes.h>
#include <quillon/atsc/atsc_loop.h>
#include <quillon/atsc/cvct.h>
#include <quillon/atsc/dccsct.h>
#include <quillon/atsc/dcct.h>
#include <quillon/atsc/eit_atsc.h>
#include <quillon/atsc/ett.h>
#include <quillon/atsc/mgt.h>
#include <quillon/atsc/pmt_atsc.h>
#include <quillon/atsc/rrt.h>
#include <quillon/atsc/stt.h>
#include <quillon/atsc/tvct.h>
#include <quillon/descriptors/dvb_classes.h>
#include <quillon/descriptors/dvb_loop.h>
#include <quillon/sections/pat.h>
#include <quillon/tables/bat.h>
#include <quillon/tables/cat.h>
#include <quillon/tables/eit.h>
#include <quillon/tables/nit.h>
#include <quillon/tables/pmt.h>
#include <quillon/tables/rst.h>
#include <quillon/tables/sdt.h>
#include <quillon/tables/tdt.h>
#include <quillon/tables/tot.h>
#include <quillon/xml/document.h>

namespace quillon::fuzz {

namespace {

// Keeps the reads from being optimized away.
volatile uint64_t sink;

template <class T>
void visit(const T& value);

template <class Unit>
void read(const Unit* text) {
  if (!text) std::abort();
  uint64_t sum = 0;
  while (*text) sum += static_cast<uint64_t>(*text++);
  sink = sum;
}

// What an accessor gave. Bytes behind a pointer are read by those who know their number.
template <class T>
void visit_result(const T& value) {
  if constexpr (std::is_arithmetic_v<T> || std::is_enum_v<T>)
    sink = static_cast<uint64_t>(value);
  else if constexpr (std::is_same_v<T, const char*> || std::is_same_v<T, const uint16_t*>)
    read(value);
  else if constexpr (requires { std::begin(value); })
    for (const auto& element : value) visit_result(element);
  else if constexpr (std::is_class_v<T>)
    visit(value);
}

// The text of a code that a class is asked for by its number.
template <class Text>
void each_code(Text text) {
  for (int code = -1; code <= 0x100; ++code) read(text(code));
  for (const int code : {INT_MIN, 0xFFF, 0xFFFF, INT_MAX}) read(text(code));
}

template <class T>
void visit_codes() {
  static bool done = false;
  if (done) return;
  done = true;
#define QUILLON_NAME(name)                                     \
  if constexpr (requires {                                     \
                  { T::name(0) } -> std::same_as<const char*>; \
                })                                             \
    each_code([](int code) { return T::name(static_cast<uint8_t>(code)); });
#include "fuzz/accessor_names.inc"
#undef QUILLON_NAME
}

// Everything of a class that has one of the library's names. A vector of its descriptors is found by the
// loop.
template <class T>
void visit(const T& value) {
  if constexpr (std::is_base_of_v<DvbLoop, T>) walk(static_cast<const DvbLoop&>(value));
  if constexpr (std::is_base_of_v<AtscLoop, T>) walk(static_cast<const AtscLoop&>(value));
  if constexpr (std::is_base_of_v<AitLoop, T>) walk(static_cast<const AitLoop&>(value));
  if constexpr (std::is_base_of_v<IntLoop, T>) walk(static_cast<const IntLoop&>(value));
#define QUILLON_NAME(name)                     \
  if constexpr (requires { value.name(); })    \
    visit_result(value.name());                \
  else if constexpr (requires { value.name; }) \
    visit_result(value.name);
#include "fuzz/accessor_names.inc"
#undef QUILLON_NAME
  visit_codes<T>();
}

// What is left of each class, which takes an argument.
template <class T>
void ask_table(const T& table) {
  for (const int position : {INT_MIN, -9, -8, 0, table.get_section_length(), INT_MAX})
    if constexpr (requires { table.get_section_ptr_by_desc_pos(position); })
      if (const uint8_t* const at = table.get_section_ptr_by_desc_pos(position)) sink = *at;
  if constexpr (requires {
                  table.get_descriptor_pos();
                  table.get_section_ptr_by_desc_pos(0);
                })
    for (const int position : table.get_descriptor_pos())
      if (const uint8_t* const at = table.get_section_ptr_by_desc_pos(position)) sink = *at;
  if constexpr (requires { table.get_pid_from_program_number(0); }) {
    for (const auto& program : table.get_program_info())
      sink = static_cast<uint64_t>(table.get_pid_from_program_number(program.get_program_number()));
    sink = static_cast<uint64_t>(table.get_pid_from_program_number(-1));
  }
  if constexpr (std::is_same_v<T, PmtATSC>) {
    std::vector<DescriptorCa> found;
    table.get_all_ca_descriptors(found);
    visit_result(found);
  }
  if constexpr (requires { app::details_of(table); }) visit_result(app::details_of(table));
}

template <class T>
class TableOf final : public Table {
 public:
  void set_tolerant(bool on) override { table_.set_tolerant(on); }
  void parse(const std::vector<uint8_t>& section, bool keep_raw) override {
    table_.Parse(section.data(), section.size(), keep_raw);
  }
  void load(void* node) override { table_.ParseDOM(node); }
  std::string report() const override {
    std::ostringstream text;
    table_.dump_state(text);
    return text.str();
  }
  std::string save() const override {
    xml::Document document;
    table_.SaveSection(document.dom(), document.create_root("t"));
    return document.to_text();
  }
  const DescriptorFailures& failures() const override { return table_.get_descriptor_failures(); }
  void reset() override { table_.reset(); }
  void walk() const override {
    visit(table_);
    ask_table(table_);
  }

 private:
  T table_;
};

template <class T>
std::unique_ptr<Table> make() {
  return std::make_unique<TableOf<T>>();
}

struct Class {
  int first;
  int last;
  const char* element;
  MakeTable make;
};

constexpr Class kClasses[] = {
    {0x00, 0x00, "pat", make<Pat>},
    {0x01, 0x01, "cat", make<Cat>},
    {0x02, 0x02, "pmt", make<PmtDVB>},
    {0x02, 0x02, "atsc_pmt", make<PmtATSC>},
    {0x3B, 0x3C, "dsmcc", make<DsmCC>},
    {0x40, 0x41, "nit", make<Nit>},
    {0x42, 0x42, "sdt", make<Sdt>},
    {0x46, 0x46, "sdt", make<Sdt>},
    {0x4A, 0x4A, "bat", make<Bat>},
    {0x4C, 0x4C, "int", make<Int>},
    {0x4E, 0x6F, "eit", make<Eit>},
    {0x70, 0x70, "tdt", make<Tdt>},
    {0x71, 0x71, "rst", make<Rst>},
    {0x73, 0x73, "tot", make<Tot>},
    {0x74, 0x74, "ait", make<Ait>},
    {0xC7, 0xC7, "atsc_mgt", make<AtscMGT>},
    {0xC8, 0xC8, "atsc_tvct", make<AtscTVCT>},
    {0xC9, 0xC9, "atsc_cvct", make<AtscCVCT>},
    {0xCA, 0xCA, "atsc_rrt", make<AtscRRT>},
    {0xCB, 0xCB, "atsc_eit", make<AtscEIT>},
    {0xCC, 0xCC, "atsc_ett", make<AtscETT>},
    {0xCD, 0xCD, "atsc_stt", make<AtscSTT>},
    {0xD3, 0xD3, "atsc_dcct", make<AtscDCCT>},
    {0xD4, 0xD4, "atsc_dccsct", make<AtscDCCSCT>},
};

}  // namespace

std::vector<MakeTable> classes_of(int table_id) {
  std::vector<MakeTable> classes;
  for (const Class& row : kClasses)
    if (table_id >= row.first && table_id <= row.last) classes.push_back(row.make);
  return classes;
}

std::unique_ptr<Table> table_of_element(std::string_view name) {
  for (const Class& row : kClasses)
    if (name == row.element) return row.make();
  return nullptr;
}

#define QUILLON_KIND(tag, Class, accessor, element, rank) visit_result(loop.get_##accessor());
#define QUILLON_KIND_LOADED_AS(tag, Class, accessor, saved, loaded, rank) visit_result(loop.get_##accessor());
void walk(const DvbLoop& loop) {
#include <quillon/descriptors/dvb_kinds.inc>
#include <quillon/descriptors/mpeg2_kinds.inc>
  visit_result(loop.get_general_descriptors());
  visit_result(loop.get_user_private_descriptors());
}
void walk(const AitLoop& loop) {
#include <quillon/appsignal/ait_kinds.inc>
  visit_result(loop.get_general_descriptors());
  visit_result(loop.get_user_private_descriptors());
}
void walk(const IntLoop& loop) {
#include <quillon/appsignal/int_kinds.inc>
#include <quillon/descriptors/dvb_kinds.inc>
  visit_result(loop.get_general_descriptors());
  visit_result(loop.get_user_private_descriptors());
}
void walk(const AtscLoop& loop) {
#include <quillon/atsc/atsc_kinds.inc>
#undef QUILLON_KIND
#undef QUILLON_KIND_LOADED_AS
#define QUILLON_KIND(tag, Class, accessor, element, rank) visit_result(loop.get_atsc_##accessor());
#define QUILLON_KIND_LOADED_AS(tag, Class, accessor, saved, loaded, rank) \
  visit_result(loop.get_atsc_##accessor());
#include <quillon/descriptors/mpeg2_kinds.inc>
  visit_result(loop.get_general_descriptors());
  visit_result(loop.get_user_private_descriptors());
}
#undef QUILLON_KIND
#undef QUILLON_KIND_LOADED_AS

}  // namespace quillon::fuzz
