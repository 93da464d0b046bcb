#pragma once

#include "apps/quillon/keyed_digest.h"
#include "apps/quillon/section_input.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <unordered_set>
#include <vector>

namespace quillon::app {

// The sections that were met, each by a digest of its PID and bytes. The digest has a key of this run's own:
// no stream can be made whose sections collide, neither to be taken for each other nor to slow the look-up
// down.
class SeenSections {
 public:
  // True for a section that was not there.
  bool add(const Section& section);
  // The most digests that one look-up may have to compare.
  size_t longest_search() const;

 private:
  using Digest = std::array<uint64_t, 2>;
  struct Hash {
    size_t operator()(const Digest& digest) const noexcept { return static_cast<size_t>(digest[0]); }
  };

  KeyedDigest digest_;
  std::vector<uint8_t> input_;
  std::unordered_set<Digest, Hash> digests_;
};

}  // namespace quillon::app
