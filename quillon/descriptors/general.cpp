#include <quillon/descriptors/general.h>
#include <quillon/descriptors/internal/describe.h>

namespace quillon {

template <class V, class S>
void DescriptorGeneral::describe(V& v, S& s) {
  v.field("private_data", s.private_data_);
}

// The label stands also where there are no bytes.
void DescriptorGeneral::_dump_state(std::ostream& stream) const {
  stream << "data:" << std::endl;
  report::block(stream, private_data_);
}

bool DescriptorGeneral::_save_section(void* document, void* node) const {
  faces::Save v(document, node);
  describe(v, *this);
  return v.ok();
}

void DescriptorGeneral::_parse(void* node) {
  faces::Load v(node);
  describe(v, *this);
}

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
