#include <quillon/tables/cat.h>

namespace quillon {

void Cat::_parse(ByteView body, bool keep_raw) {
  const detail::LoopContext context{body, positions_if(keep_raw), tolerance()};
  walk(body, 0, body_size(), [&](ByteView descriptor, int left) {
    if (context.positions) context.positions->push_back(static_cast<int>(descriptor.offset_from(body)));
    const int size = descriptor[1] + 2;
    if (size > left) throw error("invalid descriptor size");
    if (descriptor[0] != 0x09) throw error("invalid descriptor tag");
    parse_descriptor(descriptor, context);
    return size;
  });
}

void Cat::_reset() {
  store_.clear();
  positions_if(true)->clear();
}

bool Cat::_save_section(void* document, void* node) const {
  return _save_descriptors(document, node);
}
void Cat::_parse(void* node) {
  _parse_descriptors(node);
}

}  // namespace quillon
