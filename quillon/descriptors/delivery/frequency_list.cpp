#include <quillon/descriptors/delivery/frequency_list.h>
#include <quillon/descriptors/internal/code_text.h>
#include <quillon/faces/internal/describe.h>
#include <quillon/sections/internal/rows.h>

namespace quillon {

namespace {

const char* coding_type_text(int type) {
  return detail::text_of(type, {"undefined", "satellite", "cable", "terrestrial"}, "undefined");
}

}  // namespace

DescriptorFrequencyList::DescriptorFrequencyList(ByteView d)
    : DescriptorBase(d), coding_type(d.bits(2, 1, 2)) {
  if ((descriptor_length - 1) % 4 != 0) throw error(error::bad_loop_unit);
  centre_frequency.reserve(static_cast<size_t>(descriptor_length) / 4);
  each_row(d, 3, 2 + descriptor_length, [this](ByteView at, int) {
    centre_frequency.push_back(at.u32(0));
    return 4;
  });
}

template <class V, class S>
void DescriptorFrequencyList::describe(V& v, S& s) {
  v.coded("coding_type", s.coding_type, coding_type_text);
  v.bytes("centre_frequency", s.centre_frequency);
}
QUILLON_SILENT_FACES_OF(DescriptorFrequencyList, "frequency_list_descriptor")

const char* DescriptorFrequencyList::get_coding_type_text() const {
  return coding_type_text(coding_type);
}

}  // namespace quillon
