#pragma once

#include "apps/quillon/html/field_tree.h"

#include <cstdint>
#include <span>

namespace quillon::app::html {

// States which bytes of a section its fields are: those of the headers of sections and rows, rows and
// descriptors as a whole. Each is found by the lengths in the bytes, and a descriptor is taken for the one of
// the walk only if tag and length are those that the walk gives.
void place_bytes(Field& section, std::span<const uint8_t> bytes);

}  // namespace quillon::app::html
