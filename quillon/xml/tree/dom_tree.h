#pragma once

// The DOM of Document on systems that bring none. A document and all its nodes, attached or not, live in one
// store and share one reference count: they go together when the last reference to any of them is released.

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <set>
#include <string_view>
#include <vector>

#include <quillon/platform/wide_string.h>
#include <quillon/xml/attributes.h>
#include <quillon/xml/dom.h>

namespace quillon::xml {

class TreeDocument;

// For QueryInterface: whether an object is of this tree. Type information can't say so, since other DOMs may
// have none. The answer is kOwn, which no other DOM gives, with the very object that was asked, since a
// wrapper of ours may pass the question on; it adds no reference.
inline constexpr IID IID_TreeDocument{0x51540001};
inline constexpr IID IID_TreeElement{0x51540002};
inline constexpr IID IID_TreeAttribute{0x51540003};
inline constexpr HRESULT kOwn = 0x5154;

// Memory that is handed out piece by piece and released as a whole.
class Arena {
 public:
  void* allocate(size_t size) {
    size = (size + 7) & ~size_t{7};
    if (size > left_) grow(size);
    void* const out = next_;
    next_ += size;
    left_ -= size;
    return out;
  }

 private:
  void grow(size_t size);

  std::vector<std::unique_ptr<std::byte[]>> blocks_;
  std::byte* next_ = nullptr;
  size_t left_ = 0;
};

// A name in the store; equal names are one object.
struct Name {
  size_t units;  // the text follows

  wide_view view() const { return {reinterpret_cast<const uint16_t*>(this + 1), units}; }
};

template <class T>
struct ArenaAllocator {
  using value_type = T;

  explicit ArenaAllocator(Arena& store) : arena(&store) {}
  template <class U>
  ArenaAllocator(const ArenaAllocator<U>& other) : arena(other.arena) {}
  T* allocate(size_t count) { return static_cast<T*>(arena->allocate(count * sizeof(T))); }
  void deallocate(T*, size_t) {}
  friend bool operator==(const ArenaAllocator&, const ArenaAllocator&) = default;

  Arena* arena;
};

// The names of a document. Sorted rather than hashed, so that no choice of names makes it slow.
class NameTable {
 public:
  explicit NameTable(Arena& arena) : arena_(arena), names_(ArenaAllocator<const Name*>(arena)) {}

  // A new name is made if `accept` takes it; null otherwise.
  template <class Accept>
  const Name* intern(wide_view name, Accept accept) {
    const auto place = names_.lower_bound(name);
    if (place != names_.end() && !Less()(name, *place)) return *place;
    return accept(name) ? *names_.insert(place, make(name)) : nullptr;
  }

 private:
  struct Less {
    using is_transparent = void;
    bool operator()(const Name* a, const Name* b) const { return less(a->view(), b->view()); }
    bool operator()(const Name* a, wide_view b) const { return less(a->view(), b); }
    bool operator()(wide_view a, const Name* b) const { return less(a, b->view()); }
    static bool less(wide_view a, wide_view b);
  };

  const Name* make(wide_view name);

  Arena& arena_;
  std::set<const Name*, Less, ArenaAllocator<const Name*>> names_;
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
  // False, and no change, for more than Document::max_attribute units.
  bool set(wide_view text);
  bool set(std::string_view ascii);
  bool set(int32_t value);
  bool set(double value);

 private:
  friend class TreeElement;
  friend class TreeDocument;

  // ASCII is widened, and numbers become text, when they are read: most never are.
  enum class Kind : uint8_t { text, ascii, integer, real };

  TreeDocument& document_;
  const Name* name_;
  TreeAttribute* next_ = nullptr;
  union {
    const uint16_t* text_ = nullptr;
    const char* ascii_;
    int32_t integer_;
    double real_;
  };
  uint32_t units_ = 0;
  Kind kind_ = Kind::text;
  bool attached_ = false;
};

class TreeElement final : public IXMLDOMElement, public IXMLDOMNamedNodeMap, public IXMLDOMNodeList {
 public:
  // Null for what is not an element of the document.
  static TreeElement* from(const TreeDocument& document, IXMLDOMNode* node);

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

  // For an attribute whose name the element does not have yet.
  void add_attribute(TreeAttribute* attribute);
  // For any attribute: gives that of the same name whose place it takes, if there is one.
  TreeAttribute* attach(TreeAttribute* attribute);
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
  TreeElement* make_element(const Name* name);
  TreeAttribute* make_attribute(const Name* name);
  // Null for what can't name an element or attribute. Only a name that is new is checked.
  const Name* intern(wide_view name);
  const Name* intern(const XmlName& name);
  // For what a parser has accepted as a name.
  const Name* intern_parsed(wide_view name);
  Arena& arena() { return arena_; }

 private:
  TreeDocument() = default;
  ~TreeDocument() = default;

  // Most names are literals, and are known by their place.
  struct Literal {
    const char* place;
    const Name* name;
  };
  struct LiteralPair {
    Literal recent;
    Literal older;
  };

  Arena arena_;
  NameTable names_{arena_};
  std::array<LiteralPair, 256> literals_{};
  TreeElement* root_ = nullptr;
  unsigned long references_ = 1;
};

}  // namespace quillon::xml
