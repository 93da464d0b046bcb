#include <quillon/descriptors/delivery/frequency_list.h>
#include <quillon/descriptors/internal/code_text.h>
#include <quillon/descriptors/internal/describe.h>

namespace quillon {

DescriptorFrequencyList::DescriptorFrequencyList(ByteView d)
    : DescriptorBase(d), coding_type(d.bits(2, 1, 2)) {
  if ((descriptor_length - 1) % 4 != 0) throw error(error::bad_loop_unit);
  centre_frequency.reserve(static_cast<size_t>(descriptor_length) / 4);
  walk(d, 3, 2 + descriptor_length, [this](ByteView at, int) {
    centre_frequency.push_back(at.u32(0));
    return 4;
  });
}

template <class V, class S>
void DescriptorFrequencyList::describe(V& v, S& s) {
  v.field("coding_type", s.coding_type);
  v.bytes("centre_frequency", s.centre_frequency);
}
QUILLON_SILENT_FACES_OF(DescriptorFrequencyList, "frequency_list_descriptor")

const char* DescriptorFrequencyList::get_coding_type_text() const {
  return detail::text_of(coding_type, {"undefined", "satellite", "cable", "terrestrial"}, "undefined");
}

}  // namespace quillon
