#pragma once

// Failures of the COM support itself, for handlers of _com_error and, as all else that the library throws, of
// std::exception.

#include <cstddef>
#include <new>

#include <quillon/sections/error.h>
#include <quillon/xml/dom.h>
#include <quillon/xml/internal/backend.h>
#include <quillon/xml/internal/bstr.h>

namespace quillon::xml {

class ComFailure final : public error, public _com_error {
 public:
  ComFailure(HRESULT result, const char* text) : error(text), _com_error(result) {}
};

class ComOutOfMemory final : public std::bad_alloc, public _com_error {
 public:
  ComOutOfMemory() : _com_error(E_OUTOFMEMORY) {}
};

// Throws ComOutOfMemory where `result` says that a node of Document's own DOM ran out of memory. What another
// DOM says is a failure like any other.
inline void expect_memory(HRESULT result, IXMLDOMNode* node) {
  if (result == E_OUTOFMEMORY && backend::is_own(node)) throw ComOutOfMemory();
}

// With units to be filled in.
inline BSTR make_text(size_t units) {
  BSTR const out = try_make_text(units);
  if (!out) throw ComOutOfMemory();
  return out;
}

}  // namespace quillon::xml
