#include <algorithm>
#include <charconv>
#include <cstring>
#include <new>
#include <utility>

#include <quillon/xml/document.h>
#include <quillon/xml/internal/backend.h>
#include <quillon/xml/internal/com_failure.h>
#include <quillon/xml/internal/literal_name.h>
#include <quillon/xml/internal/real_text.h>
#include <quillon/xml/tree/dom_tree.h>
#include <quillon/xml/tree/xml_parser.h>

namespace quillon::xml {

namespace {

// Below the size at which freeing a block makes the common allocators join their free ones.
constexpr size_t kBlockSize = size_t{32} * 1024;

// Null for an object of another DOM.
template <class Own, class Interface>
Own* own(IID id, Interface* object) {
  void* answer = nullptr;
  const HRESULT result = object ? object->QueryInterface(id, &answer) : E_POINTER;
  if (result == kOwn) return answer == object ? static_cast<Own*>(object) : nullptr;
  // Another DOM may answer to any IID.
  if (result >= 0 && answer) static_cast<IUnknown*>(answer)->Release();
  return nullptr;
}

// For an operation of COM that takes memory: it gives a result, and throws nothing.
template <class Operation>
HRESULT with_memory(Operation operation) {
  try {
    return operation();
  } catch (const std::bad_alloc&) {
    return E_OUTOFMEMORY;
  }
}

HRESULT copy(wide_view text, BSTR* out) {
  *out = try_make_text(text.data(), text.size());
  return *out ? S_OK : E_OUTOFMEMORY;
}

HRESULT set_null(VARIANT* out) {
  VariantInit(out);
  out->vt = VT_NULL;
  return S_FALSE;
}

wide_view view_of(BSTR text) {
  return {text, SysStringLen(text)};
}

bool same(wide_view a, wide_view b) {
  return a.size() == b.size() &&
         (a.empty() || std::memcmp(a.data(), b.data(), a.size() * sizeof(uint16_t)) == 0);
}

}  // namespace

void Arena::grow(size_t size) {
  // Blocks grow with the store: a small document stays small, a large one takes few blocks.
  const size_t room = std::max(size, blocks_.empty() ? kBlockSize / 8 : kBlockSize);
  blocks_.push_back(std::make_unique_for_overwrite<std::byte[]>(room));
  next_ = blocks_.back().get();
  left_ = room;
}

// Any order will do: four units at a time, as one number.
bool NameTable::Less::less(wide_view a, wide_view b) {
  if (a.size() != b.size()) return a.size() < b.size();
  size_t i = 0;
  for (; i + 4 <= a.size(); i += 4) {
    uint64_t left;
    uint64_t right;
    std::memcpy(&left, a.data() + i, sizeof left);
    std::memcpy(&right, b.data() + i, sizeof right);
    if (left != right) return left < right;
  }
  for (; i < a.size(); ++i)
    if (a[i] != b[i]) return a[i] < b[i];
  return false;
}

const Name* NameTable::make(wide_view name) {
  auto* const out = static_cast<Name*>(arena_.allocate(sizeof(Name) + name.size() * sizeof(uint16_t)));
  out->units = name.size();
  wide_traits::copy(reinterpret_cast<uint16_t*>(out + 1), name.data(), name.size());
  return out;
}

// Attributes

HRESULT TreeAttribute::QueryInterface(IID id, void** out) {
  if (id == IID_TreeAttribute) return *out = static_cast<IXMLDOMAttribute*>(this), kOwn;
  switch (id) {
    case IID_IUnknown:
    case IID_IXMLDOMNode:
    case IID_IXMLDOMAttribute:
      AddRef();
      return *out = static_cast<IXMLDOMAttribute*>(this), S_OK;
    default:
      return *out = nullptr, E_NOINTERFACE;
  }
}

unsigned long TreeAttribute::AddRef() {
  return document_.AddRef();
}
unsigned long TreeAttribute::Release() {
  return document_.Release();
}
HRESULT TreeAttribute::get_nodeName(BSTR* out) {
  return copy(name_->view(), out);
}

HRESULT TreeAttribute::get_nodeValue(VARIANT* out) {
  VariantInit(out);
  const HRESULT result = with_memory([&] {
    return copy(kind_ == Kind::text ? wide_view(text_, units_) : wide_view(text()), &out->bstrVal);
  });
  if (result == S_OK) out->vt = VT_BSTR;
  return result;
}

wide_string TreeAttribute::text() const {
  if (kind_ == Kind::text) return wide_string(text_, units_);
  if (kind_ == Kind::ascii) return wide_string(ascii_, ascii_ + units_);
  char digits[real_room];
  const char* const last = kind_ == Kind::integer ? std::to_chars(digits, digits + real_room, integer_).ptr
                                                  : write_real(digits, real_);
  return wide_string(static_cast<const char*>(digits), last);
}

HRESULT TreeAttribute::put_nodeValue(VARIANT value) {
  switch (value.vt) {
    case VT_I4:
      return set(value.lVal), S_OK;
    case VT_R8:
      return set(value.dblVal), S_OK;
    case VT_BSTR:
      return with_memory([&] { return set(view_of(value.bstrVal)) ? S_OK : E_INVALIDARG; });
    default:
      return E_INVALIDARG;
  }
}

bool TreeAttribute::set(wide_view text) {
  if (text.size() > Document::max_attribute) return false;
  auto* const stored = static_cast<uint16_t*>(document_.arena().allocate(text.size() * sizeof(uint16_t)));
  wide_traits::copy(stored, text.data(), text.size());
  kind_ = Kind::text;
  text_ = stored;
  units_ = static_cast<uint32_t>(text.size());
  return true;
}

bool TreeAttribute::set(std::string_view ascii) {
  if (ascii.size() > Document::max_attribute) return false;
  auto* const stored = static_cast<char*>(document_.arena().allocate(ascii.size()));
  std::copy(ascii.begin(), ascii.end(), stored);
  kind_ = Kind::ascii;
  ascii_ = stored;
  units_ = static_cast<uint32_t>(ascii.size());
  return true;
}

bool TreeAttribute::set(int32_t value) {
  kind_ = Kind::integer;
  integer_ = value;
  return true;
}

bool TreeAttribute::set(double value) {
  kind_ = Kind::real;
  real_ = value;
  return true;
}

HRESULT TreeAttribute::get_attributes(IXMLDOMNamedNodeMap** out) {
  return *out = nullptr, S_FALSE;
}
HRESULT TreeAttribute::get_childNodes(IXMLDOMNodeList** out) {
  return *out = nullptr, E_FAIL;
}
HRESULT TreeAttribute::appendChild(IXMLDOMNode*, IXMLDOMNode** out) {
  if (out) *out = nullptr;
  return E_FAIL;
}
HRESULT TreeAttribute::selectSingleNode(BSTR, IXMLDOMNode** out) {
  return *out = nullptr, S_FALSE;
}

// Elements

TreeElement* TreeElement::from(const TreeDocument& document, IXMLDOMNode* node) {
  auto* const found = own<TreeElement>(IID_TreeElement, node);
  return found && &found->document_ == &document ? found : nullptr;
}

HRESULT TreeElement::QueryInterface(IID id, void** out) {
  if (id == IID_TreeElement) return *out = static_cast<IXMLDOMElement*>(this), kOwn;
  switch (id) {
    case IID_IUnknown:
    case IID_IXMLDOMNode:
    case IID_IXMLDOMElement:
      *out = static_cast<IXMLDOMElement*>(this);
      break;
    case IID_IXMLDOMNamedNodeMap:
      *out = static_cast<IXMLDOMNamedNodeMap*>(this);
      break;
    case IID_IXMLDOMNodeList:
      *out = static_cast<IXMLDOMNodeList*>(this);
      break;
    default:
      return *out = nullptr, E_NOINTERFACE;
  }
  AddRef();
  return S_OK;
}

unsigned long TreeElement::AddRef() {
  return document_.AddRef();
}
unsigned long TreeElement::Release() {
  return document_.Release();
}
HRESULT TreeElement::get_nodeName(BSTR* out) {
  return copy(name_->view(), out);
}
HRESULT TreeElement::get_nodeValue(VARIANT* out) {
  return set_null(out);
}
HRESULT TreeElement::put_nodeValue(VARIANT) {
  return E_FAIL;
}

HRESULT TreeElement::get_attributes(IXMLDOMNamedNodeMap** out) {
  AddRef();
  return *out = this, S_OK;
}

HRESULT TreeElement::get_childNodes(IXMLDOMNodeList** out) {
  AddRef();
  return *out = this, S_OK;
}

HRESULT TreeElement::appendChild(IXMLDOMNode* node, IXMLDOMNode** out) {
  if (out) *out = nullptr;
  TreeElement* const child = TreeElement::from(document_, node);
  if (!child || child->parent_ || child->is_root_) return E_FAIL;
  // No cycles. A node without children, the usual case, can only be its own parent.
  for (const TreeElement* up = this; up; up = child->child_count_ ? up->parent_ : nullptr)
    if (up == child) return E_FAIL;
  return with_memory([&] {
    add_child(child);
    if (out) {
      AddRef();
      *out = child;
    }
    return S_OK;
  });
}

void TreeElement::add_child(TreeElement* child) {
  if (child_count_ == child_room_) {
    const uint32_t room = child_room_ ? child_room_ * 2 : 4;
    auto** const bigger = static_cast<TreeElement**>(document_.arena().allocate(room * sizeof(TreeElement*)));
    std::copy_n(children_, child_count_, bigger);
    children_ = bigger;
    child_room_ = room;
  }
  children_[child_count_++] = child;
  child->parent_ = this;
}

HRESULT TreeElement::selectSingleNode(BSTR name, IXMLDOMNode** out) {
  const wide_view wanted = view_of(name);
  for (uint32_t i = 0; i < child_count_; ++i)
    if (same(children_[i]->name_->view(), wanted)) {
      AddRef();
      return *out = children_[i], S_OK;
    }
  return *out = nullptr, S_FALSE;
}

HRESULT TreeElement::setAttributeNode(IXMLDOMAttribute* node, IXMLDOMAttribute** out) {
  if (out) *out = nullptr;
  auto* const attribute = own<TreeAttribute>(IID_TreeAttribute, node);
  if (!attribute || &attribute->document() != &document_ || attribute->attached_) return E_FAIL;
  TreeAttribute* const old = attach(attribute);
  if (old && out) {
    AddRef();
    *out = old;
  }
  return S_OK;
}

TreeAttribute* TreeElement::attach(TreeAttribute* attribute) {
  TreeAttribute* before = nullptr;
  TreeAttribute* old = first_attribute_;
  for (; old && old->name_ != attribute->name_; old = old->next_) before = old;
  if (!old) {
    add_attribute(attribute);
    return nullptr;
  }
  attribute->next_ = old->next_;
  attribute->attached_ = true;
  (before ? before->next_ : first_attribute_) = attribute;
  if (last_attribute_ == old) last_attribute_ = attribute;
  old->next_ = nullptr;
  old->attached_ = false;
  return old;
}

void TreeElement::add_attribute(TreeAttribute* attribute) {
  (last_attribute_ ? last_attribute_->next_ : first_attribute_) = attribute;
  last_attribute_ = attribute;
  attribute->attached_ = true;
}

HRESULT TreeElement::getNamedItem(BSTR name, IXMLDOMNode** out) {
  const wide_view wanted = view_of(name);
  for (TreeAttribute* attribute = first_attribute_; attribute; attribute = attribute->next_)
    if (same(attribute->name_->view(), wanted)) {
      AddRef();
      return *out = attribute, S_OK;
    }
  return *out = nullptr, S_FALSE;
}

HRESULT TreeElement::get_length(long* out) {
  return *out = child_count_, S_OK;
}

HRESULT TreeElement::get_item(long index, IXMLDOMNode** out) {
  if (index < 0 || index >= static_cast<long>(child_count_)) return *out = nullptr, S_FALSE;
  AddRef();
  return *out = children_[index], S_OK;
}

// Documents

HRESULT TreeDocument::QueryInterface(IID id, void** out) {
  if (id == IID_TreeDocument) return *out = static_cast<IXMLDOMDocument*>(this), kOwn;
  switch (id) {
    case IID_IUnknown:
    case IID_IXMLDOMNode:
    case IID_IXMLDOMDocument:
      *out = static_cast<IXMLDOMDocument*>(this);
      break;
    case IID_IXMLDOMNodeList:
      *out = static_cast<IXMLDOMNodeList*>(this);
      break;
    default:
      return *out = nullptr, E_NOINTERFACE;
  }
  AddRef();
  return S_OK;
}

unsigned long TreeDocument::Release() {
  const unsigned long left = --references_;
  if (left == 0) delete this;
  return left;
}

HRESULT TreeDocument::get_nodeName(BSTR* out) {
  return copy("#document"_w, out);
}
HRESULT TreeDocument::get_nodeValue(VARIANT* out) {
  return set_null(out);
}
HRESULT TreeDocument::put_nodeValue(VARIANT) {
  return E_FAIL;
}
HRESULT TreeDocument::get_attributes(IXMLDOMNamedNodeMap** out) {
  return *out = nullptr, S_FALSE;
}

HRESULT TreeDocument::get_childNodes(IXMLDOMNodeList** out) {
  AddRef();
  return *out = this, S_OK;
}

HRESULT TreeDocument::appendChild(IXMLDOMNode* node, IXMLDOMNode** out) {
  if (out) *out = nullptr;
  TreeElement* const element = TreeElement::from(*this, node);
  if (!element || element->parent_ || root_) return E_FAIL;
  set_root(element);
  if (out) {
    AddRef();
    *out = element;
  }
  return S_OK;
}

void TreeDocument::set_root(TreeElement* element) {
  root_ = element;
  element->is_root_ = true;
}

HRESULT TreeDocument::selectSingleNode(BSTR name, IXMLDOMNode** out) {
  if (!root_ || !same(root_->name_->view(), view_of(name))) return *out = nullptr, S_FALSE;
  AddRef();
  return *out = root_, S_OK;
}

HRESULT TreeDocument::createElement(BSTR name, IXMLDOMElement** out) {
  *out = nullptr;
  return with_memory([&] {
    const Name* const known = intern(view_of(name));
    if (!known) return E_INVALIDARG;
    *out = make_element(known);
    AddRef();
    return S_OK;
  });
}

HRESULT TreeDocument::createAttribute(BSTR name, IXMLDOMAttribute** out) {
  *out = nullptr;
  return with_memory([&] {
    const Name* const known = intern(view_of(name));
    if (!known) return E_INVALIDARG;
    *out = make_attribute(known);
    AddRef();
    return S_OK;
  });
}

HRESULT TreeDocument::get_length(long* out) {
  return *out = root_ ? 1 : 0, S_OK;
}

HRESULT TreeDocument::get_item(long index, IXMLDOMNode** out) {
  if (index != 0 || !root_) return *out = nullptr, S_FALSE;
  AddRef();
  return *out = root_, S_OK;
}

TreeElement* TreeDocument::make_element(const Name* name) {
  return new (arena_.allocate(sizeof(TreeElement))) TreeElement(*this, name);
}

TreeAttribute* TreeDocument::make_attribute(const Name* name) {
  return new (arena_.allocate(sizeof(TreeAttribute))) TreeAttribute(*this, name);
}

const Name* TreeDocument::intern(wide_view name) {
  return names_.intern(name, is_xml_name);
}

const Name* TreeDocument::intern_parsed(wide_view name) {
  return names_.intern(name, [](wide_view) { return true; });
}

const Name* TreeDocument::intern(const XmlName& name) {
  const char* const place = LiteralName::place_of(name);
  if (!place) return intern(view_of(name.get()));
  const uint64_t mixed = reinterpret_cast<uintptr_t>(place) * uint64_t{0x9E3779B97F4A7C15};
  auto& [recent, older] = literals_[(mixed >> 32) % literals_.size()];
  if (recent.place == place) return recent.name;
  if (older.place != place) older = {place, intern(view_of(name.get()))};
  std::swap(recent, older);
  return recent.name;
}

// What the XML form asks

namespace {

template <class Value>
HRESULT set(IXMLDOMDocument* document, IXMLDOMElement* node, const XmlName& name, Value value) {
  auto* const element = own<TreeElement>(IID_TreeElement, node);
  if (!element || &element->document() != document) return S_FALSE;
  const Name* const known = element->document().intern(name);
  if (!known) return E_FAIL;
  TreeAttribute* const attribute = element->document().make_attribute(known);
  if (!attribute->set(value)) return E_FAIL;
  element->attach(attribute);
  return S_OK;
}

}  // namespace

HRESULT backend::make_element(IXMLDOMDocument* document, const XmlName& name, IXMLDOMElement** out) {
  auto* const tree = own<TreeDocument>(IID_TreeDocument, document);
  if (!tree) return S_FALSE;
  const Name* const known = tree->intern(name);
  if (!known) return E_FAIL;
  *out = tree->make_element(known);
  tree->AddRef();
  return S_OK;
}

HRESULT backend::set_attribute(IXMLDOMDocument* document, IXMLDOMElement* element, const XmlName& name,
                               int32_t value) {
  return set(document, element, name, value);
}
HRESULT backend::set_attribute(IXMLDOMDocument* document, IXMLDOMElement* element, const XmlName& name,
                               double value) {
  return set(document, element, name, value);
}
HRESULT backend::set_attribute(IXMLDOMDocument* document, IXMLDOMElement* element, const XmlName& name,
                               wide_view text) {
  return set(document, element, name, text);
}
HRESULT backend::set_attribute(IXMLDOMDocument* document, IXMLDOMElement* element, const XmlName& name,
                               std::string_view ascii) {
  return set(document, element, name, ascii);
}

bool backend::is_own(IXMLDOMNode* node) {
  return own<TreeAttribute>(IID_TreeAttribute, node) || own<TreeElement>(IID_TreeElement, node);
}

}  // namespace quillon::xml
