#pragma once

// The DOM of quillon::xml::Document off Windows. A document and all its nodes, attached or not, live in one
// store and share one reference count: they go together when the last reference to any of them is released.

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>
#include <unordered_map>
#include <vector>

#include <quillon/platform/wide_string.h>
#include <quillon/xml/dom.h>

namespace quillon::xml {

class TreeDocument;

// Memory that is given out piece by piece and released as a whole.
class Arena {
 public:
  void* allocate(size_t size) {
    size = (size + 7) & ~size_t{7};
    if (size > left_) grow(size);
    void* const out = next_;
    next_ += size;
    left_ -= size;
    used_ += size;
    return out;
  }
  size_t used() const { return used_; }

 private:
  void grow(size_t size);

  std::vector<std::unique_ptr<std::byte[]>> blocks_;
  std::byte* next_ = nullptr;
  size_t left_ = 0;
  size_t used_ = 0;
};

// A name in the store; equal names are one object.
struct Name {
  size_t units;  // the text follows

  wide_view view() const { return {reinterpret_cast<const uint16_t*>(this + 1), units}; }
};

class TreeAttribute final : public IXMLDOMAttribute {
 public:
  TreeAttribute(TreeDocument& document, const Name* name) : document_(document), name_(name) {}

  HRESULT QueryInterface(IID id, void** out) override;
  unsigned long AddRef() override;
  unsigned long Release() override;
  HRESULT get_nodeName(BSTR* out) override;
  HRESULT get_nodeValue(VARIANT* out) override;
  HRESULT put_nodeValue(VARIANT value) override;
  HRESULT get_attributes(IXMLDOMNamedNodeMap** out) override;
  HRESULT get_childNodes(IXMLDOMNodeList** out) override;
  HRESULT appendChild(IXMLDOMNode* child, IXMLDOMNode** out) override;
  HRESULT selectSingleNode(BSTR name, IXMLDOMNode** out) override;

  TreeDocument& document() { return document_; }
  const Name* name() const { return name_; }
  wide_string text() const;
  void set_text(wide_view text);

 private:
  friend class TreeElement;
  friend class TreeDocument;

  // Numbers become text when they are read: most never are.
  enum class Kind : uint8_t { text, integer, real };

  TreeDocument& document_;
  const Name* name_;
  TreeAttribute* next_ = nullptr;
  union {
    const uint16_t* text_ = nullptr;
    int32_t integer_;
    double real_;
  };
  uint32_t units_ = 0;
  Kind kind_ = Kind::text;
  bool attached_ = false;
};

class TreeElement final : public IXMLDOMElement, public IXMLDOMNamedNodeMap, public IXMLDOMNodeList {
 public:
  TreeElement(TreeDocument& document, const Name* name) : document_(document), name_(name) {}

  HRESULT QueryInterface(IID id, void** out) override;
  unsigned long AddRef() override;
  unsigned long Release() override;
  HRESULT get_nodeName(BSTR* out) override;
  HRESULT get_nodeValue(VARIANT* out) override;
  HRESULT put_nodeValue(VARIANT value) override;
  HRESULT get_attributes(IXMLDOMNamedNodeMap** out) override;
  HRESULT get_childNodes(IXMLDOMNodeList** out) override;
  HRESULT appendChild(IXMLDOMNode* child, IXMLDOMNode** out) override;
  HRESULT selectSingleNode(BSTR name, IXMLDOMNode** out) override;
  HRESULT setAttributeNode(IXMLDOMAttribute* attribute, IXMLDOMAttribute** out) override;
  HRESULT getNamedItem(BSTR name, IXMLDOMNode** out) override;
  HRESULT get_length(long* out) override;
  HRESULT get_item(long index, IXMLDOMNode** out) override;

  TreeDocument& document() { return document_; }
  const Name* name() const { return name_; }
  TreeElement* parent() const { return parent_; }
  const TreeAttribute* first_attribute() const { return first_attribute_; }
  static const TreeAttribute* next(const TreeAttribute* attribute) { return attribute->next_; }
  size_t child_count() const { return child_count_; }
  TreeElement* child(size_t i) const { return children_[i]; }

  void add_attribute(TreeAttribute* attribute);
  void add_child(TreeElement* child);

 private:
  friend class TreeDocument;

  TreeDocument& document_;
  const Name* name_;
  TreeElement* parent_ = nullptr;
  TreeAttribute* first_attribute_ = nullptr;
  TreeAttribute* last_attribute_ = nullptr;
  TreeElement** children_ = nullptr;
  uint32_t child_count_ = 0;
  uint32_t child_room_ = 0;
  bool is_root_ = false;
};

class TreeDocument final : public IXMLDOMDocument, public IXMLDOMNodeList {
 public:
  // With one reference, the caller's.
  static TreeDocument* create() { return new TreeDocument; }

  HRESULT QueryInterface(IID id, void** out) override;
  unsigned long AddRef() override { return ++references_; }
  unsigned long Release() override;
  HRESULT get_nodeName(BSTR* out) override;
  HRESULT get_nodeValue(VARIANT* out) override;
  HRESULT put_nodeValue(VARIANT value) override;
  HRESULT get_attributes(IXMLDOMNamedNodeMap** out) override;
  HRESULT get_childNodes(IXMLDOMNodeList** out) override;
  HRESULT appendChild(IXMLDOMNode* child, IXMLDOMNode** out) override;
  HRESULT selectSingleNode(BSTR name, IXMLDOMNode** out) override;
  HRESULT createElement(BSTR name, IXMLDOMElement** out) override;
  HRESULT createAttribute(BSTR name, IXMLDOMAttribute** out) override;
  HRESULT get_length(long* out) override;
  HRESULT get_item(long index, IXMLDOMNode** out) override;

  TreeElement* root() const { return root_; }
  void set_root(TreeElement* element);
  TreeElement* make_element(wide_view name);
  TreeAttribute* make_attribute(wide_view name);
  Arena& arena() { return arena_; }
  const uint16_t* store(wide_view text);

 private:
  TreeDocument() : recent_names_(256, nullptr) {}
  ~TreeDocument() = default;
  const Name* intern(wide_view name);

  Arena arena_;
  std::unordered_map<std::string_view, const Name*> names_;  // by their bytes
  std::vector<const Name*> recent_names_;
  TreeElement* root_ = nullptr;
  unsigned long references_ = 1;
};

}  // namespace quillon::xml
