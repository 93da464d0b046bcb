#include "tests/xml/foreign_dom.h"

#include "tests/support/dom_base.h"

#include <algorithm>
#include <charconv>
#include <cstring>
#include <string>
#include <vector>

#include <quillon/xml/internal/bstr.h>

namespace quillon::test {

namespace {

using Units = std::basic_string<char16_t>;

BSTR bstr_of(const Units& text) {
  return xml::try_make_text(wide_string(text.begin(), text.end()).c_str(), text.size());
}

Units units_of(BSTR text) {
  return Units(text, text + SysStringLen(text));
}

struct Shared {
  UnknownInterface unknown;
  IUnknown* other;
  long references = 0;
};

// What all of its nodes have in common.
template <class Interface, class... Others>
class ForeignNode : public DomBase<Interface, Others...> {
 public:
  ForeignNode(Shared& shared, Units name) : shared_(shared), name_(std::move(name)) {}

  HRESULT QueryInterface(REFIID id, void** out) override {
    *out = find(id);
    if (!*out && shared_.unknown == UnknownInterface::pass_on) return shared_.other->QueryInterface(id, out);
    if (!*out && shared_.unknown == UnknownInterface::answer_with_itself)
      *out = static_cast<Interface*>(this);
    if (!*out) return E_NOINTERFACE;
    AddRef();
    return S_OK;
  }
  unsigned long AddRef() override { return static_cast<unsigned long>(++shared_.references); }
  unsigned long Release() override { return static_cast<unsigned long>(--shared_.references); }
  HRESULT get_nodeName(BSTR* out) override {
    *out = bstr_of(name_);
    return S_OK;
  }
  HRESULT get_nodeValue(VARIANT* out) override {
    out->vt = VT_NULL;
    return S_FALSE;
  }
  HRESULT put_nodeValue(VARIANT) override { return E_FAIL; }
  HRESULT get_attributes(IXMLDOMNamedNodeMap** out) override { return *out = nullptr, S_FALSE; }
  HRESULT get_childNodes(IXMLDOMNodeList** out) override { return *out = nullptr, E_FAIL; }
  HRESULT appendChild(IXMLDOMNode*, IXMLDOMNode**) override { return E_FAIL; }
  HRESULT selectSingleNode(BSTR, IXMLDOMNode** out) override { return *out = nullptr, S_FALSE; }

  const Units& name() const { return name_; }

 protected:
  ~ForeignNode() = default;
  virtual void* find(REFIID id) {
    return id == IID_IUnknown || id == IID_IXMLDOMNode ? static_cast<Interface*>(this) : nullptr;
  }

  Shared& shared_;
  Units name_;
};

class ForeignAttribute final : public ForeignNode<IXMLDOMAttribute> {
 public:
  using ForeignNode::ForeignNode;

  HRESULT get_nodeValue(VARIANT* out) override {
    out->vt = VT_BSTR;
    out->bstrVal = bstr_of(value_);
    return S_OK;
  }
  HRESULT put_nodeValue(VARIANT value) override {
    char digits[32];
    switch (value.vt) {
      case VT_BSTR:
        value_ = units_of(value.bstrVal);
        return S_OK;
      case VT_I4:
        value_.assign(static_cast<const char*>(digits),
                      static_cast<const char*>(std::to_chars(digits, std::end(digits), value.lVal).ptr));
        return S_OK;
      case VT_R8:
        value_.assign(static_cast<const char*>(digits),
                      static_cast<const char*>(std::to_chars(digits, std::end(digits), value.dblVal).ptr));
        return S_OK;
      default:
        return E_INVALIDARG;
    }
  }

 private:
  Units value_;
};

class ForeignElement final : public ForeignNode<IXMLDOMElement, IXMLDOMNamedNodeMap, IXMLDOMNodeList> {
 public:
  using ForeignNode::ForeignNode;

  HRESULT get_attributes(IXMLDOMNamedNodeMap** out) override { return give(this, out); }
  HRESULT get_childNodes(IXMLDOMNodeList** out) override { return give(this, out); }
  HRESULT appendChild(IXMLDOMNode* child, IXMLDOMNode** out) override {
    children_.push_back(static_cast<ForeignElement*>(static_cast<IXMLDOMElement*>(child)));
    return out ? give(children_.back(), out) : S_OK;
  }
  HRESULT selectSingleNode(BSTR name, IXMLDOMNode** out) override { return give_named(children_, name, out); }
  HRESULT setAttributeNode(IXMLDOMAttribute* attribute, IXMLDOMAttribute** out) override {
    attributes_.push_back(static_cast<ForeignAttribute*>(attribute));
    return *out = nullptr, S_OK;
  }
  HRESULT getNamedItem(BSTR name, IXMLDOMNode** out) override { return give_named(attributes_, name, out); }
  HRESULT get_length(long* out) override { return *out = static_cast<long>(children_.size()), S_OK; }
  HRESULT get_item(long index, IXMLDOMNode** out) override {
    return give(children_.at(static_cast<size_t>(index)), out);
  }

 private:
  template <class From, class To>
  HRESULT give(From* from, To** out) {
    AddRef();
    if constexpr (std::is_same_v<To, IXMLDOMNode>)
      *out = static_cast<NodeOf<From>*>(from);
    else
      *out = from;
    return S_OK;
  }
  template <class From>
  HRESULT give_named(const std::vector<From*>& nodes, BSTR name, IXMLDOMNode** out) {
    for (From* const node : nodes)
      if (node->name() == units_of(name)) return give(node, out);
    return *out = nullptr, S_FALSE;
  }
  template <class Node>
  using NodeOf = std::conditional_t<std::is_same_v<Node, ForeignAttribute>, IXMLDOMAttribute, IXMLDOMElement>;

  void* find(REFIID id) override {
    return id == IID_IXMLDOMElement ? static_cast<IXMLDOMElement*>(this) : ForeignNode::find(id);
  }

  std::vector<ForeignAttribute*> attributes_;
  std::vector<ForeignElement*> children_;
};

}  // namespace

class ForeignDocument final : private Shared, public ForeignNode<IXMLDOMDocument> {
 public:
  ForeignDocument(UnknownInterface unknown, IUnknown* other)
      : Shared{unknown, other}, ForeignNode(*this, u"#document") {}

  HRESULT createElement(BSTR name, IXMLDOMElement** out) override { return make(elements_, name, out); }
  HRESULT createAttribute(BSTR name, IXMLDOMAttribute** out) override { return make(attributes_, name, out); }
  long references() const { return Shared::references; }

 private:
  template <class Node, class Interface>
  HRESULT make(std::vector<std::unique_ptr<Node>>& nodes, BSTR name, Interface** out) {
    nodes.push_back(std::make_unique<Node>(static_cast<Shared&>(*this), units_of(name)));
    AddRef();
    return *out = nodes.back().get(), S_OK;
  }

  std::vector<std::unique_ptr<ForeignElement>> elements_;
  std::vector<std::unique_ptr<ForeignAttribute>> attributes_;
};

namespace {

// Made for good: without a reference of the caller's.
template <class Interface>
Interface* made(IXMLDOMDocument* document, const char* name,
                HRESULT (IXMLDOMDocument::*make)(BSTR, Interface**)) {
  const std::basic_string<char16_t> units(name, name + std::strlen(name));
  BSTR text = bstr_of(units);
  Interface* out = nullptr;
  (document->*make)(text, &out);
  SysFreeString(text);
  out->Release();
  return out;
}

}  // namespace

ForeignDom::ForeignDom(UnknownInterface unknown, IUnknown* other)
    : document_(std::make_unique<ForeignDocument>(unknown, other)) {}
ForeignDom::~ForeignDom() = default;

IXMLDOMDocument* ForeignDom::document() const {
  return document_.get();
}
IXMLDOMElement* ForeignDom::make_element(const char* name) const {
  return made(document(), name, &IXMLDOMDocument::createElement);
}
IXMLDOMAttribute* ForeignDom::make_attribute(const char* name) const {
  return made(document(), name, &IXMLDOMDocument::createAttribute);
}
long ForeignDom::references() const {
  return document_->references();
}

}  // namespace quillon::test
