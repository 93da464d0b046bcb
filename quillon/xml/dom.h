#pragma once

// The DOM operations that the XML form needs. On Windows they are the system's own; elsewhere these
// interfaces have the same names and rules, and any DOM that implements them carries the XML form: a negative
// result is a failure, S_FALSE with a null node means that there is no such attribute or child, and a
// reference that is handed out is the caller's to release.

#if defined(_WIN32)

#include <comdef.h>
#include <msxml.h>
#include <oleauto.h>

#else

#include <cstdint>

#include <quillon/platform/api.h>

namespace quillon {

using HRESULT = long;
inline constexpr HRESULT S_OK = 0;
inline constexpr HRESULT S_FALSE = 1;
inline constexpr HRESULT E_FAIL = -2147467259;         // 0x80004005
inline constexpr HRESULT E_NOINTERFACE = -2147467262;  // 0x80004002
inline constexpr HRESULT E_POINTER = -2147467261;      // 0x80004003
inline constexpr HRESULT E_INVALIDARG = -2147024809;   // 0x80070057
inline constexpr HRESULT E_OUTOFMEMORY = -2147024882;  // 0x8007000E
inline constexpr HRESULT DISP_E_BADVARTYPE = -2147352568;

// UTF-16 text with its length in bytes in the four bytes before it, and a NUL after it. Null is an empty one.
using BSTR = uint16_t*;

// Null where memory runs out or the text is too long, and from a null text.
QUILLON_API BSTR SysAllocString(const uint16_t* text);
// A null text leaves the units to be filled in.
QUILLON_API BSTR SysAllocStringLen(const uint16_t* text, unsigned units);
QUILLON_API void SysFreeString(BSTR text);
QUILLON_API unsigned SysStringLen(BSTR text);  // units

enum VARENUM : uint16_t { VT_EMPTY = 0, VT_NULL = 1, VT_I4 = 3, VT_R8 = 5, VT_BSTR = 8 };

struct VARIANT {
  uint16_t vt;
  union {
    int32_t lVal;
    double dblVal;
    BSTR bstrVal;
  };
};

// Neither takes null.
QUILLON_API void VariantInit(VARIANT* value);
// Releases what the value holds. DISP_E_BADVARTYPE for a type that is not one of VARENUM.
QUILLON_API HRESULT VariantClear(VARIANT* value);

// A failure of the COM support itself, such as out of memory. The library throws it only as part of what is
// also error or std::bad_alloc.
class QUILLON_API _com_error {
 public:
  explicit _com_error(HRESULT result) : result_(result) {}
  HRESULT Error() const { return result_; }

 private:
  HRESULT result_;
};

// Names an interface for QueryInterface.
enum class IID { Unknown, Node, Document, Element, Attribute, NodeList, NamedNodeMap };
using REFIID = IID;
inline constexpr IID IID_IUnknown = IID::Unknown;
inline constexpr IID IID_IXMLDOMNode = IID::Node;
inline constexpr IID IID_IXMLDOMDocument = IID::Document;
inline constexpr IID IID_IXMLDOMElement = IID::Element;
inline constexpr IID IID_IXMLDOMAttribute = IID::Attribute;
inline constexpr IID IID_IXMLDOMNodeList = IID::NodeList;
inline constexpr IID IID_IXMLDOMNamedNodeMap = IID::NamedNodeMap;

// The order of the virtual functions is fixed, here and in the interfaces below: programs built against
// another version call them by their place.
class IUnknown {
 public:
  virtual HRESULT QueryInterface(IID id, void** out) = 0;
  virtual unsigned long AddRef() = 0;
  virtual unsigned long Release() = 0;

 protected:
  ~IUnknown() = default;
};

class IXMLDOMNodeList;
class IXMLDOMNamedNodeMap;

// The order of the virtual functions is fixed (IUnknown).
class IXMLDOMNode : public IUnknown {
 public:
  virtual HRESULT get_nodeName(BSTR* out) = 0;
  // The text of an attribute, as VT_BSTR.
  virtual HRESULT get_nodeValue(VARIANT* out) = 0;
  // Stores the value as text: VT_I4 as signed decimal, VT_R8 with up to 15 digits, VT_BSTR as it is.
  virtual HRESULT put_nodeValue(VARIANT value) = 0;
  // S_FALSE and null for a node that is not an element.
  virtual HRESULT get_attributes(IXMLDOMNamedNodeMap** out) = 0;
  // The children, in document order.
  virtual HRESULT get_childNodes(IXMLDOMNodeList** out) = 0;
  // Attaches a node of the same document as the last child; `out` may be null.
  virtual HRESULT appendChild(IXMLDOMNode* child, IXMLDOMNode** out) = 0;
  // The first child element of that plain name.
  virtual HRESULT selectSingleNode(BSTR name, IXMLDOMNode** out) = 0;

 protected:
  ~IXMLDOMNode() = default;
};

class IXMLDOMAttribute : public IXMLDOMNode {
 protected:
  ~IXMLDOMAttribute() = default;
};

// The order of the virtual functions is fixed (IUnknown).
class IXMLDOMElement : public IXMLDOMNode {
 public:
  // Attaches the attribute, in the place of one of the same name, which `out` then receives.
  virtual HRESULT setAttributeNode(IXMLDOMAttribute* attribute, IXMLDOMAttribute** out) = 0;

 protected:
  ~IXMLDOMElement() = default;
};

// The order of the virtual functions is fixed (IUnknown).
class IXMLDOMDocument : public IXMLDOMNode {
 public:
  virtual HRESULT createElement(BSTR name, IXMLDOMElement** out) = 0;
  virtual HRESULT createAttribute(BSTR name, IXMLDOMAttribute** out) = 0;

 protected:
  ~IXMLDOMDocument() = default;
};

// The order of the virtual functions is fixed (IUnknown).
class IXMLDOMNodeList : public IUnknown {
 public:
  virtual HRESULT get_length(long* out) = 0;
  // From 0; S_FALSE and null past the last.
  virtual HRESULT get_item(long index, IXMLDOMNode** out) = 0;

 protected:
  ~IXMLDOMNodeList() = default;
};

// The order of the virtual functions is fixed (IUnknown).
class IXMLDOMNamedNodeMap : public IUnknown {
 public:
  virtual HRESULT getNamedItem(BSTR name, IXMLDOMNode** out) = 0;

 protected:
  ~IXMLDOMNamedNodeMap() = default;
};

}  // namespace quillon

#endif
