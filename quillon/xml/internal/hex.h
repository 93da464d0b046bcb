#pragma once

#include <cstddef>
#include <cstdint>

namespace quillon::xml {

// Bytes have two lower-case hexadecimal digits each in documents, integers eight.
template <class Value>
inline constexpr size_t hex_digits = sizeof(Value) == 1 ? 2 : 8;

template <class Value>
void write_hex(const Value* values, size_t count, char* out) {
  for (const Value* value = values; value != values + count; ++value)
    for (size_t digit = hex_digits<Value>; digit-- > 0;)
      *out++ = "0123456789abcdef"[static_cast<uint32_t>(*value) >> 4 * digit & 0x0F];
}

}  // namespace quillon::xml
