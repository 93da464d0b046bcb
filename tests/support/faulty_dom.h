#pragma once

// A DOM of which one chosen call fails. It is a single object, document, element, attribute, list and map at
// once: every list holds it once, every attribute has the value "1", and whatever is asked of it is noted.

#include "tests/support/dom_base.h"

#include <algorithm>
#include <iterator>
#include <map>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include <quillon/xml/internal/bstr.h>

namespace quillon::test {

class FaultyDom final : public DomBase<IXMLDOMDocument, IXMLDOMElement, IXMLDOMAttribute, IXMLDOMNodeList,
                                       IXMLDOMNamedNodeMap> {
 public:
  // The `nth` call of an operation, from 1, gives `result` and nothing else; "" for a DOM without faults.
  explicit FaultyDom(std::string operation = {}, int nth = 1, HRESULT result = E_FAIL)
      : operation_(std::move(operation)), nth_(nth), result_(result) {}

  // For SaveSection(document(), node()), Parse(node()) and ParseDOM(node()).
  void* document() { return static_cast<IXMLDOMDocument*>(this); }
  void* node() { return static_cast<IXMLDOMElement*>(this); }

  // What has been made and attached, a step a line: "createElement program_infos", "appendChild".
  const std::string& steps() const { return steps_; }
  int calls(const std::string& operation) { return calls_[operation]; }
  // Every call, the one that failed included; that of a creation with its name.
  const std::vector<std::string>& trace() const { return trace_; }
  // References that were handed out or taken, and not released.
  long references() const { return references_; }
  // Those that the callers took themselves.
  int taken() const { return taken_; }

  HRESULT QueryInterface(REFIID id, void** out) override {
    // Another maker's private question is none of its operations.
    const auto is = [&](REFIID known) { return id == known; };
    if (std::none_of(std::begin(kInterfaces), std::end(kInterfaces), is))
      return *out = nullptr, E_NOINTERFACE;
    return give("QueryInterface", reinterpret_cast<IXMLDOMElement**>(out));
  }
  unsigned long AddRef() override {
    ++taken_;
    return static_cast<unsigned long>(++references_);
  }
  unsigned long Release() override { return static_cast<unsigned long>(--references_); }

  HRESULT get_nodeName(BSTR* out) override {
    *out = nullptr;
    const HRESULT result = count("get_nodeName");
    if (result == S_OK) *out = xml::try_make_text(kOne, 1);
    return result;
  }
  HRESULT get_nodeValue(VARIANT* out) override {
    const HRESULT result = count("get_nodeValue");
    if (result != S_OK) return result;
    out->vt = VT_BSTR;
    out->bstrVal = xml::try_make_text(kOne, 1);
    return S_OK;
  }
  HRESULT put_nodeValue(VARIANT) override { return count("put_nodeValue"); }
  HRESULT get_attributes(IXMLDOMNamedNodeMap** out) override { return give("get_attributes", out); }
  HRESULT get_childNodes(IXMLDOMNodeList** out) override { return give("get_childNodes", out); }
  HRESULT appendChild(IXMLDOMNode*, IXMLDOMNode** out) override {
    steps_ += "appendChild\n";
    return out ? give("appendChild", out) : count("appendChild");
  }
  HRESULT selectSingleNode(BSTR, IXMLDOMNode** out) override { return give("selectSingleNode", out); }
  HRESULT setAttributeNode(IXMLDOMAttribute*, IXMLDOMAttribute** out) override {
    *out = nullptr;
    return count("setAttributeNode");
  }
  HRESULT createElement(BSTR name, IXMLDOMElement** out) override { return make("createElement", name, out); }
  HRESULT createAttribute(BSTR name, IXMLDOMAttribute** out) override {
    return make("createAttribute", name, out);
  }
  HRESULT get_length(long* out) override {
    *out = 1;
    return count("get_length");
  }
  HRESULT get_item(long, IXMLDOMNode** out) override { return give("get_item", out); }
  HRESULT getNamedItem(BSTR, IXMLDOMNode** out) override { return give("getNamedItem", out); }

 private:
  static constexpr uint16_t kOne[] = {'1'};
  static inline const IID kInterfaces[] = {IID_IUnknown,           IID_IXMLDOMNode,      IID_IXMLDOMDocument,
                                           IID_IXMLDOMElement,     IID_IXMLDOMAttribute, IID_IXMLDOMNodeList,
                                           IID_IXMLDOMNamedNodeMap};

  HRESULT count(const char* operation, const std::string& name = {}) {
    trace_.push_back(name.empty() ? operation : operation + (" " + name));
    return ++calls_[operation] == nth_ && operation == operation_ ? result_ : S_OK;
  }
  template <class Interface>
  HRESULT give(const char* operation, Interface** out, const std::string& created = {}) {
    const HRESULT result = count(operation, created);
    *out = nullptr;
    if (result != S_OK) return result;
    ++references_;
    if constexpr (std::is_same_v<Interface, IXMLDOMNode>)
      *out = static_cast<IXMLDOMElement*>(this);
    else
      *out = this;
    return S_OK;
  }
  template <class Interface>
  HRESULT make(const char* operation, BSTR name, Interface** out) {
    const std::string created(name, name + SysStringLen(name));
    steps_ += std::string(operation) + " " + created + "\n";
    return give(operation, out, created);
  }

  std::string operation_;
  int nth_;
  HRESULT result_;
  std::map<std::string, int> calls_;
  std::vector<std::string> trace_;
  std::string steps_;
  long references_ = 0;
  int taken_ = 0;
};

}  // namespace quillon::test
