#include <cstdlib>
#include <cstring>

#include <quillon/platform/wide_string.h>
#include <quillon/xml/dom.h>
#include <quillon/xml/internal/com_failure.h>

namespace quillon {

namespace {

constexpr size_t kPrefix = sizeof(uint64_t);  // the length is its upper half; keeps the text aligned

}  // namespace

BSTR SysAllocString(const uint16_t* text) {
  return text ? xml::try_make_text(text, wide_traits::length(text)) : nullptr;
}

BSTR SysAllocStringLen(const uint16_t* text, unsigned units) {
  if (units > UINT32_MAX / sizeof(uint16_t)) return nullptr;
  const uint32_t size = units * uint32_t{sizeof(uint16_t)};
  char* const memory = static_cast<char*>(std::malloc(kPrefix + size_t{size} + sizeof(uint16_t)));
  if (!memory) return nullptr;
  std::memcpy(memory + kPrefix - sizeof size, &size, sizeof size);
  BSTR const out = reinterpret_cast<BSTR>(memory + kPrefix);
  if (text && units) std::memcpy(out, text, size);
  out[units] = 0;
  return out;
}

void SysFreeString(BSTR text) {
  if (text) std::free(reinterpret_cast<char*>(text) - kPrefix);
}

unsigned SysStringLen(BSTR text) {
  if (!text) return 0;
  uint32_t size;
  std::memcpy(&size, reinterpret_cast<char*>(text) - sizeof size, sizeof size);
  return static_cast<unsigned>(size / sizeof(uint16_t));
}

void VariantInit(VARIANT* value) {
  *value = VARIANT{VT_EMPTY, {}};
}

HRESULT VariantClear(VARIANT* value) {
  switch (value->vt) {
    case VT_BSTR:
      SysFreeString(value->bstrVal);
      break;
    case VT_EMPTY:
    case VT_NULL:
    case VT_I4:
    case VT_R8:
      break;
    default:
      return DISP_E_BADVARTYPE;
  }
  VariantInit(value);
  return S_OK;
}

}  // namespace quillon
