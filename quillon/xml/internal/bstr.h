#pragma once

// A BSTR has units of the system's own type, which are UTF-16 like all wide text here: this is where one is
// made of the other. For the library's own sources.

#include <algorithm>
#include <climits>

#include <quillon/platform/wide_string.h>
#include <quillon/xml/dom.h>

namespace quillon::xml {

inline wide_view units_of(const uint16_t* text, size_t units) {
  return {text, units};
}
inline wide_string units_of(const wchar_t* text, size_t units) {
  return wide_string(text, text + units);
}
// A wide_view, or a wide_string where the units are of another type.
inline auto units_of(BSTR text) {
  return units_of(text, SysStringLen(text));
}

// With units to be filled in. Null where memory runs out, and for more than a BSTR can hold.
inline BSTR try_make_text(size_t units) {
  return units <= UINT_MAX ? SysAllocStringLen(nullptr, static_cast<unsigned>(units)) : nullptr;
}
inline BSTR try_make_text(const uint16_t* text, size_t units) {
  BSTR const out = try_make_text(units);
  if (out) std::copy_n(text, units, out);
  return out;
}

}  // namespace quillon::xml
