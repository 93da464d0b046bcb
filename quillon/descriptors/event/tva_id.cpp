#include <quillon/descriptors/event/tva_id.h>
#include <quillon/descriptors/internal/code_text.h>
#include <quillon/faces/internal/describe.h>
#include <quillon/sections/internal/rows.h>

namespace quillon {

namespace {

const char* running_status_text(int status) {
  return detail::text_of(
      status,
      {"Reserved", "Not yet running", "Starts (or restarts) shortly", "Paused", "Running", "Cancelled"},
      "Reserved");
}

}  // namespace

const char* DescriptorTVAId::TVAIdInfo::get_running_status_cstr() const {
  return running_status_text(running_status_);
}

// Quirk: TVA running_status texts
const char* DescriptorTVAId::TVAIdInfo::standard_running_status_text(int running_status) {
  return running_status == 6 ? "Completed" : running_status_text(running_status);
}

template <class V, class S>
void DescriptorTVAId::TVAIdInfo::describe(V& v, S& s) {
  v.field("TVA_id", s.tva_id_);
  v.coded("running_status", s.running_status_, {running_status_text, standard_running_status_text});
}
QUILLON_SILENT_RECORD_FACES_OF(DescriptorTVAId::TVAIdInfo)

DescriptorTVAId::DescriptorTVAId(ByteView d) : DescriptorBase(d) {
  if (descriptor_length % 3 != 0) throw error("invalid descriptor size");
  read_rows(tvaidinfo_, d, 2, descriptor_length, 3);
}

template <class V, class S>
void DescriptorTVAId::describe(V& v, S& s) {
  v.list("tvaidinfo", "tvaidinfo", s.tvaidinfo_);
}
QUILLON_SILENT_FACES_OF(DescriptorTVAId, "TVA_id_descriptor")

}  // namespace quillon
