#pragma once

#include <quillon/descriptors/av/teletext.h>

namespace quillon {

// The services in the data lines of a VBI stream (EN 300 468, 6.2.47).
class QUILLON_API DescriptorVBIData final : public DescriptorBase {
 public:
  // A service in the vertical blanking, with its lines.
  class QUILLON_API VBIServiceData {
   public:
    VBIServiceData() = default;
    // `length` is not looked at; `consumed` becomes data_service_descriptor_length plus 2.
    VBIServiceData(ByteView service, int /*length*/, int& consumed)
        : data_service_id(service[0]),
          data_service_descriptor_length(service[1]),
          data(service.bytes(2, data_service_descriptor_length)) {
      consumed = data_service_descriptor_length + 2;
    }

    int data_service_id = 0;
    int data_service_descriptor_length = 0;
    std::vector<uint8_t> data;

    QUILLON_RECORD_FACES;
  };

  DescriptorVBIData() = default;
  // Throws error(error::bad_value) unless the last service ends with the descriptor.
  explicit DescriptorVBIData(ByteView d);

  std::vector<VBIServiceData> vbi_service_data;

  QUILLON_FACES(vbi_service_data);
};

// The pages of a teletext stream that is meant for the VBI (EN 300 468, 6.2.48).
class QUILLON_API DescriptorVBITeletext final : public DescriptorBase {
 public:
  // A page of teletext, in one language.
  class QUILLON_API VBITeleTextData : public TeletextPage {
   public:
    VBITeleTextData() = default;
    explicit VBITeleTextData(ByteView page) : TeletextPage(page) {}

    QUILLON_RECORD_FACES;
  };

  DescriptorVBITeletext() = default;
  // Throws error(error::bad_loop_unit) unless the length is a multiple of 5.
  explicit DescriptorVBITeletext(ByteView d);

  std::vector<VBITeleTextData> vbi_teletext_data;

  QUILLON_FACES(vbi_teletext_data);
};

}  // namespace quillon
