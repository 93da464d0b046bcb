#include <quillon/faces/internal/describe.h>
#include <quillon/sections/internal/rows.h>
#include <quillon/tables/cat.h>

namespace quillon {

void Cat::_parse(ByteView body, bool keep_raw) {
  const RowContext context{body, keep_raw, tolerance()};
  each_row(body, 0, body_size(), [&](ByteView descriptor, int left) {
    if (keep_raw) keep_position(descriptor, context);
    const int size = descriptor[1] + 2;
    if (size > left) throw error("invalid descriptor size");
    // Quirk: Cat descriptors
    if (descriptor[0] != 0x09 && !standard()) throw error("invalid descriptor tag");
    parse_descriptor(descriptor, context);
    return size;
  });
}

void Cat::_reset() {
  clear_descriptors();
}

template <class V, class S>
void Cat::describe(V& v, S& s) {
  v.descriptors(s);
}
QUILLON_SAVE_OF(Cat, _save_section)
QUILLON_TABLE_WALK_OF(Cat)

// The table's own attributes are not asked for: only the header has some.
void Cat::_parse(void* node) {
  _parse_descriptors(node);
}

}  // namespace quillon
