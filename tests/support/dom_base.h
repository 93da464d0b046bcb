#pragma once

// The base of a DOM of the tests' own: whatever a system asks of its interfaces and nobody here calls.

#include <quillon/xml/dom.h>

namespace quillon::test {

#if defined(_WIN32)

#define QUILLON_UNNEEDED(name, ...)                     \
  virtual HRESULT STDMETHODCALLTYPE name(__VA_ARGS__) { \
    return E_NOTIMPL;                                   \
  }

// Each operation is there for all, whichever of the interfaces has it.
template <class... Interfaces>
class DomBase : public Interfaces... {
 public:
  QUILLON_UNNEEDED(GetTypeInfoCount, UINT*)
  QUILLON_UNNEEDED(GetTypeInfo, UINT, LCID, ITypeInfo**)
  QUILLON_UNNEEDED(GetIDsOfNames, REFIID, LPOLESTR*, UINT, LCID, DISPID*)
  QUILLON_UNNEEDED(Invoke, DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*, UINT*)
  QUILLON_UNNEEDED(get_nodeType, DOMNodeType*)
  QUILLON_UNNEEDED(get_parentNode, IXMLDOMNode**)
  QUILLON_UNNEEDED(get_firstChild, IXMLDOMNode**)
  QUILLON_UNNEEDED(get_lastChild, IXMLDOMNode**)
  QUILLON_UNNEEDED(get_previousSibling, IXMLDOMNode**)
  QUILLON_UNNEEDED(get_nextSibling, IXMLDOMNode**)
  QUILLON_UNNEEDED(insertBefore, IXMLDOMNode*, VARIANT, IXMLDOMNode**)
  QUILLON_UNNEEDED(replaceChild, IXMLDOMNode*, IXMLDOMNode*, IXMLDOMNode**)
  QUILLON_UNNEEDED(removeChild, IXMLDOMNode*, IXMLDOMNode**)
  QUILLON_UNNEEDED(hasChildNodes, VARIANT_BOOL*)
  QUILLON_UNNEEDED(get_ownerDocument, IXMLDOMDocument**)
  QUILLON_UNNEEDED(cloneNode, VARIANT_BOOL, IXMLDOMNode**)
  QUILLON_UNNEEDED(get_nodeTypeString, BSTR*)
  QUILLON_UNNEEDED(get_text, BSTR*)
  QUILLON_UNNEEDED(put_text, BSTR)
  QUILLON_UNNEEDED(get_specified, VARIANT_BOOL*)
  QUILLON_UNNEEDED(get_definition, IXMLDOMNode**)
  QUILLON_UNNEEDED(get_nodeTypedValue, VARIANT*)
  QUILLON_UNNEEDED(put_nodeTypedValue, VARIANT)
  QUILLON_UNNEEDED(get_dataType, VARIANT*)
  QUILLON_UNNEEDED(put_dataType, BSTR)
  QUILLON_UNNEEDED(get_xml, BSTR*)
  QUILLON_UNNEEDED(transformNode, IXMLDOMNode*, BSTR*)
  QUILLON_UNNEEDED(selectNodes, BSTR, IXMLDOMNodeList**)
  QUILLON_UNNEEDED(get_parsed, VARIANT_BOOL*)
  QUILLON_UNNEEDED(get_namespaceURI, BSTR*)
  QUILLON_UNNEEDED(get_prefix, BSTR*)
  QUILLON_UNNEEDED(get_baseName, BSTR*)
  QUILLON_UNNEEDED(transformNodeToObject, IXMLDOMNode*, VARIANT)
  QUILLON_UNNEEDED(get_doctype, IXMLDOMDocumentType**)
  QUILLON_UNNEEDED(get_implementation, IXMLDOMImplementation**)
  QUILLON_UNNEEDED(get_documentElement, IXMLDOMElement**)
  QUILLON_UNNEEDED(putref_documentElement, IXMLDOMElement*)
  QUILLON_UNNEEDED(createDocumentFragment, IXMLDOMDocumentFragment**)
  QUILLON_UNNEEDED(createTextNode, BSTR, IXMLDOMText**)
  QUILLON_UNNEEDED(createComment, BSTR, IXMLDOMComment**)
  QUILLON_UNNEEDED(createCDATASection, BSTR, IXMLDOMCDATASection**)
  QUILLON_UNNEEDED(createProcessingInstruction, BSTR, BSTR, IXMLDOMProcessingInstruction**)
  QUILLON_UNNEEDED(createEntityReference, BSTR, IXMLDOMEntityReference**)
  QUILLON_UNNEEDED(getElementsByTagName, BSTR, IXMLDOMNodeList**)
  QUILLON_UNNEEDED(createNode, VARIANT, BSTR, BSTR, IXMLDOMNode**)
  QUILLON_UNNEEDED(nodeFromID, BSTR, IXMLDOMNode**)
  QUILLON_UNNEEDED(load, VARIANT, VARIANT_BOOL*)
  QUILLON_UNNEEDED(get_readyState, LONG*)
  QUILLON_UNNEEDED(get_parseError, IXMLDOMParseError**)
  QUILLON_UNNEEDED(get_url, BSTR*)
  QUILLON_UNNEEDED(get_async, VARIANT_BOOL*)
  QUILLON_UNNEEDED(put_async, VARIANT_BOOL)
  QUILLON_UNNEEDED(abort)
  QUILLON_UNNEEDED(loadXML, BSTR, VARIANT_BOOL*)
  QUILLON_UNNEEDED(save, VARIANT)
  QUILLON_UNNEEDED(get_validateOnParse, VARIANT_BOOL*)
  QUILLON_UNNEEDED(put_validateOnParse, VARIANT_BOOL)
  QUILLON_UNNEEDED(get_resolveExternals, VARIANT_BOOL*)
  QUILLON_UNNEEDED(put_resolveExternals, VARIANT_BOOL)
  QUILLON_UNNEEDED(get_preserveWhiteSpace, VARIANT_BOOL*)
  QUILLON_UNNEEDED(put_preserveWhiteSpace, VARIANT_BOOL)
  QUILLON_UNNEEDED(put_onreadystatechange, VARIANT)
  QUILLON_UNNEEDED(put_ondataavailable, VARIANT)
  QUILLON_UNNEEDED(put_ontransformnode, VARIANT)
  QUILLON_UNNEEDED(get_tagName, BSTR*)
  QUILLON_UNNEEDED(getAttribute, BSTR, VARIANT*)
  QUILLON_UNNEEDED(setAttribute, BSTR, VARIANT)
  QUILLON_UNNEEDED(removeAttribute, BSTR)
  QUILLON_UNNEEDED(getAttributeNode, BSTR, IXMLDOMAttribute**)
  QUILLON_UNNEEDED(removeAttributeNode, IXMLDOMAttribute*, IXMLDOMAttribute**)
  QUILLON_UNNEEDED(normalize)
  QUILLON_UNNEEDED(get_name, BSTR*)
  QUILLON_UNNEEDED(get_value, VARIANT*)
  QUILLON_UNNEEDED(put_value, VARIANT)
  QUILLON_UNNEEDED(get_item, long, IXMLDOMNode**)
  QUILLON_UNNEEDED(get_length, long*)
  QUILLON_UNNEEDED(nextNode, IXMLDOMNode**)
  QUILLON_UNNEEDED(reset)
  QUILLON_UNNEEDED(get__newEnum, IUnknown**)
  QUILLON_UNNEEDED(setNamedItem, IXMLDOMNode*, IXMLDOMNode**)
  QUILLON_UNNEEDED(removeNamedItem, BSTR, IXMLDOMNode**)
  QUILLON_UNNEEDED(getQualifiedItem, BSTR, BSTR, IXMLDOMNode**)
  QUILLON_UNNEEDED(removeQualifiedItem, BSTR, BSTR, IXMLDOMNode**)
 protected:
  ~DomBase() = default;
};

#undef QUILLON_UNNEEDED

#else

template <class... Interfaces>
class DomBase : public Interfaces... {
 protected:
  ~DomBase() = default;
};

#endif

}  // namespace quillon::test
