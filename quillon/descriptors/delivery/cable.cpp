#include <quillon/descriptors/delivery/cable.h>
#include <quillon/descriptors/internal/bcd.h>
#include <quillon/descriptors/internal/code_text.h>
#include <quillon/faces/internal/describe.h>

namespace quillon {

using detail::text_of;

DescriptorCableDeliverySystem::DescriptorCableDeliverySystem(ByteView d)
    : DescriptorBase(d),
      // The last of the eight digits has no weight: kept, tools compare the printed value.
      // Quirk: DescriptorSatelliteDeliverySystem, DescriptorCableDeliverySystem frequency
      frequency(d.standard() ? detail::bcd_number(d, 2) / 1e4
                             : detail::bcd_sum(d, 2, {1000, 100, 10, 1, 0.1, 0.01, 0.001})),
      FEC_outer(d.bits(7, 3, 4)),
      modulation(d[8]),
      symbol_rate(detail::symbol_rate(d, 9)),
      FEC_inner(d.bits(12, 3, 4)) {}

template <class V, class S>
void DescriptorCableDeliverySystem::describe(V& v, S& s) {
  v.field("frequency", s.frequency);
  v.coded("FEC_outer", s.FEC_outer, get_FEC_outer_text);
  v.coded("modulation", s.modulation, get_modulation_text);
  v.field("symbol_rate", s.symbol_rate);
  v.coded("FEC_inner", s.FEC_inner, get_FEC_inner_text);
}
QUILLON_FACES_OF(DescriptorCableDeliverySystem, "cable_delivery_system_descriptor")

const char* DescriptorCableDeliverySystem::get_FEC_outer_text(int FEC_outer) {
  return text_of(FEC_outer, {"not defined", "no outer FEC coding", "RS(204/188)"}, "reserved for future use");
}

const char* DescriptorCableDeliverySystem::get_modulation_text(int modulation) {
  return text_of(modulation, {"not defined", "16-QAM", "32-QAM", "64-QAM", "128-QAM", "256-QAM"},
                 "reserved for future use");
}

const char* DescriptorCableDeliverySystem::get_FEC_inner_text(int FEC_inner) {
  if (FEC_inner == 15) return "no conv. Coding";
  return text_of(FEC_inner,
                 {"not defined", "1/2 conv. code rate", "2/3 conv. code rate", "3/4 conv. code rate",
                  "5/6 conv. code rate", "7/8 conv. code rate", "8/9 conv. code rate", "3/5 conv. code rate",
                  "4/5 conv. code rate", "9/10 conv. code rate"},
                 "reserved for future use");
}

}  // namespace quillon
