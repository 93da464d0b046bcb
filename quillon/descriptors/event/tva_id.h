#pragma once

#include <quillon/descriptors/descriptor_base.h>

namespace quillon {

// The running status of TV-Anytime programmes, by their identifiers (TS 102 323, 11.2.4).
class QUILLON_API DescriptorTVAId final : public DescriptorBase {
 public:
  // A TVA_id, and whether its event is on.
  class QUILLON_API TVAIdInfo {
   public:
    TVAIdInfo() = default;
    explicit TVAIdInfo(ByteView p) : tva_id_(p.u16(0)), running_status_(p.bits(2, 2, 3)) {}

    const char* get_running_status_cstr() const;
    // In the edition in force.
    static const char* standard_running_status_text(int running_status);

    QUILLON_FIELD(int, tva_id, get_tva_id);
    QUILLON_FIELD(int, running_status, get_running_status);

    QUILLON_RECORD_FACES;
  };

  DescriptorTVAId() = default;
  // Throws error("invalid descriptor size") unless the length is a multiple of 3.
  explicit DescriptorTVAId(ByteView d);

  QUILLON_FIELD(std::vector<TVAIdInfo>, tvaidinfo, get_tvaidinfo);

  QUILLON_FACES(tvaidinfo_);
};

}  // namespace quillon
