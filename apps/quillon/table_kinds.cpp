#include "apps/quillon/table_kinds.h"

#include "apps/quillon/atsc_details.h"

#include <ostream>

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
#include <quillon/tables/bat.h>
#include <quillon/tables/cat.h>
#include <quillon/tables/eit.h>
#include <quillon/tables/nit.h>
#include <quillon/tables/pmt.h>
#include <quillon/tables/rst.h>
#include <quillon/tables/sdt.h>
#include <quillon/tables/tdt.h>
#include <quillon/tables/tot.h>

namespace quillon::app {

namespace {

template <class T>
class TableOf final : public Table {
 public:
  TableOf() { table_.set_tolerant(true); }
  void parse(const uint8_t* section, size_t size) override { table_.Parse(section, size, false); }
  void load(void* node) override { table_.ParseDOM(node); }
  void report(std::ostream& stream) const override { table_.dump_state(stream); }
  bool save(void* document, void* element) const override { return table_.SaveSection(document, element); }
  const DescriptorFailures& failures() const override { return table_.get_descriptor_failures(); }
  std::string details() const override {
    if constexpr (requires { details_of(table_); })
      return details_of(table_);
    else
      return {};
  }

 private:
  T table_;
};

template <class T>
std::unique_ptr<Table> make() {
  return std::make_unique<TableOf<T>>();
}

// The table ids of each kind, from and to, and the streams in which they mean it.
enum class In { both, dvb, atsc };
struct Row {
  int first;
  int last;
  In in;
  TableKind kind;
};

constexpr Row kRows[] = {
    {0x00, 0x00, In::both, {"pat", make<Pat>}},
    {0x01, 0x01, In::both, {"cat", make<Cat>}},
    {0x02, 0x02, In::dvb, {"pmt", make<PmtDVB>}},
    {0x02, 0x02, In::atsc, {"atsc_pmt", make<PmtATSC>}},
    {0x3B, 0x3C, In::both, {"dsmcc", make<DsmCC>}},
    {0x40, 0x41, In::both, {"nit", make<Nit>}},
    {0x42, 0x42, In::both, {"sdt", make<Sdt>}},
    {0x46, 0x46, In::both, {"sdt", make<Sdt>}},
    {0x4A, 0x4A, In::both, {"bat", make<Bat>}},
    {0x4C, 0x4C, In::both, {"int", make<Int>}},
    {0x4E, 0x6F, In::both, {"eit", make<Eit>}},
    {0x70, 0x70, In::both, {"tdt", make<Tdt>}},
    {0x71, 0x71, In::both, {"rst", make<Rst>}},
    {0x73, 0x73, In::both, {"tot", make<Tot>}},
    {0x74, 0x74, In::both, {"ait", make<Ait>}},
    {0xC7, 0xC7, In::atsc, {"atsc_mgt", make<AtscMGT>}},
    {0xC8, 0xC8, In::atsc, {"atsc_tvct", make<AtscTVCT>}},
    {0xC9, 0xC9, In::atsc, {"atsc_cvct", make<AtscCVCT>}},
    {0xCA, 0xCA, In::atsc, {"atsc_rrt", make<AtscRRT>}},
    {0xCB, 0xCB, In::atsc, {"atsc_eit", make<AtscEIT>}},
    {0xCC, 0xCC, In::atsc, {"atsc_ett", make<AtscETT>}},
    {0xCD, 0xCD, In::atsc, {"atsc_stt", make<AtscSTT>}},
    {0xD3, 0xD3, In::atsc, {"atsc_dcct", make<AtscDCCT>}},
    {0xD4, 0xD4, In::atsc, {"atsc_dccsct", make<AtscDCCSCT>}},
};

}  // namespace

const TableKind* kind_of_table_id(int table_id, Standard standard) {
  for (const Row& row : kRows) {
    const bool here = row.in == In::both || (row.in == In::atsc) == (standard == Standard::atsc);
    if (here && table_id >= row.first && table_id <= row.last) return &row.kind;
  }
  return nullptr;
}

const TableKind* kind_of_element(std::string_view name) {
  for (const Row& row : kRows)
    if (name == row.kind.element) return &row.kind;
  return nullptr;
}

}  // namespace quillon::app
