#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <vector>

namespace quillon::app {

// True if the bytes, the first of an input, are those of a chain of whole sections without packets around
// them.
bool is_section_chain(const std::vector<uint8_t>& bytes);
// Calls `each(bytes, size)` for the sections of a chain; the bytes left after the last whole one.
size_t walk_section_chain(const std::vector<uint8_t>& bytes,
                          const std::function<void(const uint8_t*, size_t)>& each);

}  // namespace quillon::app
