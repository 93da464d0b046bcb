#pragma once

// The DOM of Document on systems that bring none. A document and all its nodes, attached or not, live in one
// store and share one reference count: they go together when the last reference to any of them is released.

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include <quillon/platform/wide_string.h>
#include <quillon/xml/attributes.h>
#include <quillon/xml/dom.h>
#include <quillon/xml/internal/backend.h>

namespace quillon::xml {

class TreeDocument;

// For QueryInterface: whether an object is of this tree. Type information can't say so, since other DOMs may
// have none. The answer is kOwn, which no other DOM gives, with the very object that was asked, since a
// wrapper of ours may pass the question on; it adds no reference.
inline constexpr IID IID_TreeElement{0x51540001};
inline constexpr IID IID_TreeAttribute{0x51540002};
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

// The name of an element or attribute: ASCII up to a NUL, in the store of the document or, from a literal,
// where that is. Any other name is in the store, as UTF-16 up to a NUL after a mark that begins no ASCII
// name.
class Name {
 public:
  static constexpr char wide_mark[2] = {1, 0};

  Name() = default;  // none
  explicit Name(const char* text) : text_(text) {}
  explicit operator bool() const { return text_; }
  // Of names of one document.
  friend bool operator==(Name a, Name b) {
    return a.text_ == b.text_ || (*a.text_ == *b.text_ && !a.is_wide() && std::strcmp(a.text_, b.text_) == 0);
  }

  bool is(wide_view name) const;
  // Null where memory runs out.
  BSTR bstr() const;
  std::string utf8() const;

 private:
  bool is_wide() const { return *text_ == *wide_mark; }
  wide_view wide() const;

  const char* text_ = nullptr;
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

// The names in the store of a document, each once. Sorted rather than hashed, so that no choice of names
// makes it slow.
class NameTable {
 public:
  explicit NameTable(Arena& arena) : arena_(arena), names_(ArenaAllocator<std::string_view>(arena)) {}

  // A new name is made if `accept` takes it; none otherwise.
  template <class Accept>
  Name intern(wide_view name, Accept accept);
  // For a name in UTF-8 that a parser has accepted.
  Name intern_parsed(std::string_view name);

 private:
  // `key` is the name as the store has it, but for its NUL.
  template <class Accept>
  Name intern_key(std::string_view key, Accept accept);

  Arena& arena_;
  std::set<std::string_view, std::less<>, ArenaAllocator<std::string_view>> names_;
};

class TreeAttribute final : public IXMLDOMAttribute {
 public:
  TreeAttribute(TreeDocument& document, Name name) : document_(document), name_(name) {}

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
  Name name() const { return name_; }
  wide_string text() const;
  // False, and no change, for more than Document::max_attribute units.
  bool set(wide_view text);
  bool set(std::string_view ascii);
  // The same with a text to be filled in; null for one that is too long.
  char* set_ascii(size_t units);
  bool set(int32_t value);
  bool set(double value);

 private:
  friend class TreeElement;
  friend class TreeDocument;

  // ASCII is widened, and numbers become text, when they are read: most never are.
  enum class Kind : uint8_t { text, ascii, integer, real };

  TreeDocument& document_;
  Name name_;
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

  TreeElement(TreeDocument& document, Name name) : document_(document), name_(name) {}

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
  Name name() const { return name_; }
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
  Name name_;
  TreeElement* parent_ = nullptr;
  TreeAttribute* first_attribute_ = nullptr;
  TreeAttribute* last_attribute_ = nullptr;
  TreeElement** children_ = nullptr;
  uint32_t child_count_ = 0;
  uint32_t child_room_ = 0;
  bool is_root_ = false;
};

class TreeDocument final : public IXMLDOMDocument, public IXMLDOMNodeList, public backend::Tree {
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

  bool set_attribute(IXMLDOMElement* element, const XmlName& name, int32_t value) override;
  bool set_attribute(IXMLDOMElement* element, const XmlName& name, double value) override;
  bool set_attribute(IXMLDOMElement* element, const XmlName& name, wide_view text) override;
  bool set_attribute(IXMLDOMElement* element, const XmlName& name, std::string_view ascii) override;
  char* set_ascii(IXMLDOMElement* element, const XmlName& name, size_t units) override;
  IXMLDOMElement* make_element(const XmlName& name) override;
  void append(IXMLDOMElement* parent, IXMLDOMElement* child) override;

  TreeElement* root() const { return root_; }
  void set_root(TreeElement* element);
  TreeElement* make_element(Name name);
  TreeAttribute* make_attribute(Name name);
  // None for what can't name an element or attribute. Only a name that is new is checked.
  Name intern(wide_view name);
  // For what a parser has accepted as a name, in UTF-8.
  Name intern_parsed(std::string_view name) { return names_.intern_parsed(name); }
  Arena& arena() { return arena_; }

 private:
  TreeDocument() = default;
  ~TreeDocument() = default;

  // A literal is a name where it is.
  Name name_of(const XmlName& name);
  template <class Value>
  bool set(IXMLDOMElement* element, const XmlName& name, Value value);

  Arena arena_;
  NameTable names_{arena_};
  TreeElement* root_ = nullptr;
  unsigned long references_ = 1;
};

}  // namespace quillon::xml
