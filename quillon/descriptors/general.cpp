#include <quillon/descriptors/general.h>
#include <quillon/faces/internal/describe.h>

namespace quillon {

template <class V, class S>
void DescriptorGeneral::describe(V& v, S& s) {
  if constexpr (V::dump) {
    v.stream() << "data:" << std::endl;  // also where there are no bytes
    report::block(v.stream(), s.private_data_);
  } else {
    v.bytes("private_data", s.private_data_);
  }
}
QUILLON_DUMP_OF(DescriptorGeneral, _dump_state)
QUILLON_SAVE_OF(DescriptorGeneral, _save_section)
QUILLON_LOAD_OF(void DescriptorGeneral::_parse)
QUILLON_WALK_OF(DescriptorGeneral)

const char* DescriptorGeneral::get_tag_text() const {
  if (descriptor_tag > 0x3F) return "User Private";
  if (descriptor_tag > 0x12 || descriptor_tag < 0x02) return "Reserved";
  return DescriptorBase::get_tag_text(static_cast<unsigned char>(descriptor_tag));
}

template <class V, class S>
void DescriptorStuffing::describe(V& v, S& s) {
  v.block("stuffing_byte", s.stuffing_byte_);
}
QUILLON_FACES_OF(DescriptorStuffing, "stuffing_descriptor")

}  // namespace quillon
