#pragma once

#include <quillon/descriptors/store.h>

namespace quillon {

// The base of all that own a descriptor loop. Descriptors of one class stand in wire order; a reference that
// an accessor gave while a class was absent stays the shared empty vector after a later parse.
template <const detail::Family& family>
class DescriptorLoop {
 public:
  // Writes the "descriptors" element under `parent`, kind by kind in the family's order. Always true: what
  // fails inside goes unseen.
  bool _save_descriptors(void* document, void* parent) const { return store_.save(family, document, parent); }
  // Reads the "descriptors" child of `node`, which may be absent; elements of other names are passed over.
  // Always true. Throws error.
  bool _parse_descriptors(void* node) { return store_.load(family, node); }

 protected:
  void parse_descriptor(ByteView descriptor, const detail::LoopContext& context) {
    store_.parse(family, descriptor, context);
  }
  // True if the last descriptor ended exactly on `end`.
  bool walk_descriptors(ByteView view, int begin, int end, const detail::LoopContext& context) {
    return store_.walk(family, view, begin, end, context);
  }

  detail::DescriptorStore store_;
};

// Reports each descriptor of some vectors, in this order.
template <class... Descriptors>
void dump_descriptors(std::ostream& stream, const std::vector<Descriptors>&... vectors) {
  const auto dump_all = [&stream](const auto& vector) {
    for (const auto& descriptor : vector) descriptor.dump_state(stream);
  };
  (dump_all(vectors), ...);
}

}  // namespace quillon
