#pragma once

#include <quillon/descriptors/descriptor_base.h>

namespace quillon {

// The standard that a transport stream complies with, as characters (EN 300 468, 6.2.46).
class QUILLON_API DescriptorTransportStream final : public DescriptorBase {
 public:
  DescriptorTransportStream() = default;
  explicit DescriptorTransportStream(ByteView d) : DescriptorBase(d), data(d.bytes(2, descriptor_length)) {}

  std::vector<uint8_t> data;

  QUILLON_FACES(data);
};

// Marks the stream of a digital satellite news gathering, as characters (EN 300 468, 6.2.14).
class QUILLON_API DescriptorDSNG final : public DescriptorBase {
 public:
  DescriptorDSNG() = default;
  explicit DescriptorDSNG(ByteView d) : DescriptorBase(d), data(d.bytes(2, descriptor_length)) {}

  std::vector<uint8_t> data;

  QUILLON_FACES(data);
};

// Marks a stream that was cut out of another (EN 300 468, 7.2.1). Its body is read in the standard reading,
// and walked then; tag and length alone are saved and loaded. Rates are in units of 400 bit/s, the buffer's
// size is in bytes; all bits one, of the last two, is undefined.
class QUILLON_API DescriptorPartialTransportStream final : public DescriptorBase {
 public:
  DescriptorPartialTransportStream() = default;
  explicit DescriptorPartialTransportStream(ByteView d) : DescriptorBase(d) {
    // Quirk: DescriptorPartialTransportStream body
    if (!d.standard()) return;
    peak_rate_ = d.bits(2, 5, 22);
    minimum_overall_smoothing_rate_ = d.bits(5, 5, 22);
    maximum_overall_smoothing_buffer_ = d.bits(8, 5, 14);
  }

  QUILLON_FIELD(int, peak_rate, get_peak_rate);
  QUILLON_FIELD(int, minimum_overall_smoothing_rate, get_minimum_overall_smoothing_rate);
  QUILLON_FIELD(int, maximum_overall_smoothing_buffer, get_maximum_overall_smoothing_buffer);

 public:
  const char* get_tag_text() const override { return "partial_transport_descriptor"; }

  QUILLON_WALK;

 private:
  void _reset() override {}
  void _dump_state(std::ostream&) const override {}
  bool _save_section(void*, void*) const override { return true; }
  void _parse(void*) override {}
};

// The kinds of private data in the adaptation fields, a bit each (EN 300 468, 6.2.1).
class QUILLON_API DescriptorAdaptationFieldData final : public DescriptorBase {
 public:
  DescriptorAdaptationFieldData() = default;
  explicit DescriptorAdaptationFieldData(ByteView d)
      : DescriptorBase(d), adaptation_field_data_identifier(d[2]) {}

  int adaptation_field_data_identifier = 0;

  QUILLON_FACES();
};

}  // namespace quillon
