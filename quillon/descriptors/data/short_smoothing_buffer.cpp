#include <quillon/descriptors/data/short_smoothing_buffer.h>
#include <quillon/faces/internal/describe.h>

namespace quillon {

template <class V, class S>
void DescriptorShortSmoothingBuffer::describe(V& v, S& s) {
  v.field("sb_size", s.sb_size);
  v.field("sb_leak_rate", s.sb_leak_rate);
  v.block("DVB_reserved", s.DVB_reserved);
}
QUILLON_FACES_OF(DescriptorShortSmoothingBuffer, "short_smoothing_buffer_descriptor")

}  // namespace quillon
