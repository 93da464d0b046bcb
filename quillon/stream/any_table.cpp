#include <quillon/appsignal/ait.h>
#include <quillon/appsignal/dsmcc.h>
#include <quillon/appsignal/int.h>
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
#include <quillon/sections/pat.h>
#include <quillon/stream/any_table.h>
#include <quillon/stream/table_kinds.h>
#include <quillon/tables/bat.h>
#include <quillon/tables/cat.h>
#include <quillon/tables/eit.h>
#include <quillon/tables/nit.h>
#include <quillon/tables/pmt.h>
#include <quillon/tables/rst.h>
#include <quillon/tables/sdt.h>
#include <quillon/tables/tdt.h>
#include <quillon/tables/tot.h>

namespace quillon {

namespace {

template <class Table>
class TableOf final : public AnyTable {
 public:
  explicit TableOf(const char* element) : element_(element) {}
  std::unique_ptr<AnyTable> copy() const override { return std::make_unique<TableOf>(*this); }

  const char* element() const override { return element_; }

  void set_tolerant(bool on) override { table_.set_tolerant(on); }
  void set_reading(Reading reading) override { table_.set_reading(reading); }
  void Parse(const uint8_t* section, size_t size, bool keep_raw) override {
    table_.Parse(section, size, keep_raw);
  }
  void ParseDOM(void* node) override { table_.ParseDOM(node); }
  bool SaveSection(void* document, void* node) const override { return table_.SaveSection(document, node); }
  void dump_state(std::ostream& stream) const override { table_.dump_state(stream); }
  void walk(FieldSink& sink) const override { table_.walk(sink); }
  void reset() override { table_.reset(); }
  int get_table_id() const override { return table_.get_table_id(); }
  const char* get_table_id_text() const override { return table_.get_table_id_text(); }
  bool is_parsed() const override { return table_.is_parsed(); }
  const DescriptorFailures& get_descriptor_failures() const override {
    return table_.get_descriptor_failures();
  }

 private:
  const void* object_of(const std::type_info& type) const override {
    return type == typeid(Table) ? &table_ : nullptr;
  }

  const char* element_;
  Table table_;
};

template <class Table>
std::unique_ptr<AnyTable> make(const char* element) {
  return std::make_unique<TableOf<Table>>(element);
}

enum class In { any, dvb, atsc };

struct Row {
  int first;
  int last;
  In in;
  const char* element;
  std::unique_ptr<AnyTable> (*make)(const char* element);
};

constexpr Row kRows[] = {
#define QUILLON_ROW(first, last, in, Class, element) {first, last, In::in, element, make<Class>},
    QUILLON_TABLE_KINDS(QUILLON_ROW)
#undef QUILLON_ROW
};

}  // namespace

AnyTable::~AnyTable() = default;

std::unique_ptr<AnyTable> AnyTable::for_table_id(int table_id, Standard standard) {
  const In other = standard == Standard::dvb ? In::atsc : In::dvb;
  for (const Row& row : kRows)
    if (row.in != other && table_id >= row.first && table_id <= row.last) return row.make(row.element);
  return nullptr;
}

std::unique_ptr<AnyTable> AnyTable::for_element(std::string_view name) {
  for (const Row& row : kRows)
    if (name == row.element) return row.make(row.element);
  return nullptr;
}

}  // namespace quillon
