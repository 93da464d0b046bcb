#include <quillon/descriptors/event/tva_id.h>
#include <quillon/descriptors/internal/describe.h>

namespace quillon {

const char* DescriptorTVAId::TVAIdInfo::get_running_status_cstr() const {
  switch (running_status_) {
    case 1:
      return "Not yet running";
    case 2:
      return "Starts (or restarts) shortly";
    case 3:
      return "Paused";
    case 4:
      return "Running";
    case 5:
      return "Cancelled";
    default:
      return "Reserved";
  }
}

template <class V, class S>
void DescriptorTVAId::TVAIdInfo::describe(V& v, S& s) {
  v.field("TVA_id", s.tva_id_);
  v.field("running_status", s.running_status_);
}
QUILLON_SILENT_RECORD_FACES_OF(DescriptorTVAId::TVAIdInfo)

DescriptorTVAId::DescriptorTVAId(ByteView d) : DescriptorBase(d) {
  if (descriptor_length % 3 != 0) throw error("invalid descriptor size");
  tvaidinfo_.reserve(static_cast<size_t>(descriptor_length) / 3);
  walk(d, 2, 2 + descriptor_length, [this](ByteView at, int) {
    tvaidinfo_.emplace_back(at);
    return 3;
  });
}

template <class V, class S>
void DescriptorTVAId::describe(V& v, S& s) {
  v.list("tvaidinfo", "tvaidinfo", s.tvaidinfo_);
}
QUILLON_SILENT_FACES_OF(DescriptorTVAId, "TVA_id_descriptor")

}  // namespace quillon
