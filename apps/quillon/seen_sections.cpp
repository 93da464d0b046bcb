#include "apps/quillon/seen_sections.h"

#include <algorithm>
#include <cstring>

namespace quillon::app {

bool SeenSections::add(const Section& section) {
  input_.resize(sizeof section.pid + section.size);
  std::memcpy(input_.data(), &section.pid, sizeof section.pid);
  std::copy_n(section.bytes, section.size, input_.data() + sizeof section.pid);
  return digests_.insert(digest_.of(input_.data(), input_.size())).second;
}

size_t SeenSections::longest_search() const {
  size_t out = 0;
  for (size_t i = 0; i < digests_.bucket_count(); ++i) out = std::max(out, digests_.bucket_size(i));
  return out;
}

}  // namespace quillon::app
