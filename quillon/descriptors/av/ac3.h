#pragma once

#include <quillon/descriptors/descriptor_base.h>

namespace quillon {

// An AC-3 stream (EN 300 468, D.3). Each of the four flags announces the byte of its name; the bytes that are
// there follow one another, and those that are not are 0.
class QUILLON_API DescriptorAC3 final : public DescriptorBase {
 public:
  DescriptorAC3() = default;
  explicit DescriptorAC3(ByteView d);

  int component_type_flag = 0;
  int bsid_flag = 0;
  int mainid_flag = 0;
  int asvc_flag = 0;
  int AC_3_type = 0;  // with component_type_flag
  int bsid = 0;
  int mainid = 0;
  int asvc = 0;
  std::vector<uint8_t> additional_info;

  QUILLON_FACES(additional_info);
};

// An enhanced AC-3 stream (EN 300 468, D.5). As above; mixinfoexists announces no byte.
class QUILLON_API DescriptorEnhancedAC3 final : public DescriptorBase {
 public:
  DescriptorEnhancedAC3() = default;
  explicit DescriptorEnhancedAC3(ByteView d);

  int component_type_flag = 0;
  int bsid_flag = 0;
  int mainid_flag = 0;
  int asvc_flag = 0;
  int mixinfoexists = 0;
  int substream1_flag = 0;
  int substream2_flag = 0;
  int substream3_flag = 0;
  int component_type = 0;
  int bsid = 0;
  int mainid = 0;
  int asvc = 0;
  int substream1 = 0;
  int substream2 = 0;
  int substream3 = 0;
  std::vector<uint8_t> additional_info;

  QUILLON_FACES(additional_info);
};

}  // namespace quillon
