#pragma once

// For the library's own sources.

#include <iosfwd>
#include <vector>

namespace quillon {

// Reports each descriptor of some vectors, in this order.
template <class... Descriptors>
void dump_descriptors(std::ostream& stream, const std::vector<Descriptors>&... vectors) {
  const auto dump_all = [&stream](const auto& vector) {
    for (const auto& descriptor : vector) descriptor.dump_state(stream);
  };
  (dump_all(vectors), ...);
}

}  // namespace quillon
