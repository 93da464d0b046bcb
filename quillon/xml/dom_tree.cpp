#include <algorithm>
#include <charconv>
#include <cstring>
#include <new>

#include <quillon/xml/dom_tree.h>

namespace quillon::xml {

namespace {

// Below the size at which a freed block makes the common allocators tidy up.
constexpr size_t kBlockSize = 32 * 1024;

// Asks a node whether it is one of ours; answered without a reference, and only by the classes below.
constexpr IID kTreeElement = static_cast<IID>(100);
constexpr IID kTreeAttribute = static_cast<IID>(101);

// Null for a node of another document, or of another DOM.
template <class Node>
Node* own(IXMLDOMNode* node, IID id, const TreeDocument& document) {
  void* out = nullptr;
  if (!node || node->QueryInterface(id, &out) != S_OK) return nullptr;
  Node* const found = static_cast<Node*>(out);
  return &found->document() == &document ? found : nullptr;
}

BSTR copy(wide_view text) {
  BSTR const out = SysAllocStringLen(text.data(), static_cast<unsigned>(text.size()));
  if (!out) throw _com_error(E_OUTOFMEMORY);
  return out;
}

HRESULT set_null(VARIANT* out) {
  VariantInit(out);
  out->vt = VT_NULL;
  return S_FALSE;
}

std::string_view bytes_of(wide_view text) {
  return {reinterpret_cast<const char*>(text.data()), text.size() * sizeof(uint16_t)};
}

wide_view view_of(BSTR text) {
  return {text, SysStringLen(text)};
}

bool same(wide_view a, wide_view b) {
  return a.size() == b.size() &&
         (a.empty() || std::memcmp(a.data(), b.data(), a.size() * sizeof(uint16_t)) == 0);
}

// The place of a name among the recent ones: from its length, its ends and its middle, which few names share.
size_t slot_of(wide_view name, size_t slots) {
  if (name.size() < 4) return name.empty() ? 0 : name[0] % slots;
  const auto word = [&name](size_t at) {
    uint64_t out;
    std::memcpy(&out, name.data() + at, sizeof out);
    return out;
  };
  const uint64_t mixed =
      word(0) * 3 + word(name.size() - 4) * 5 + word((name.size() - 4) / 2) * 7 + name.size();
  return static_cast<size_t>((mixed * 0x9E3779B97F4A7C15u) >> 48) % slots;
}

}  // namespace

void Arena::grow(size_t size) {
  // Blocks grow with the store: a small document stays small, a large one takes few blocks.
  const size_t room = std::max(size, blocks_.empty() ? kBlockSize / 8 : kBlockSize);
  blocks_.push_back(std::make_unique_for_overwrite<std::byte[]>(room));
  next_ = blocks_.back().get();
  left_ = room;
}

// Attributes

HRESULT TreeAttribute::QueryInterface(IID id, void** out) {
  if (id == kTreeAttribute) return *out = this, S_OK;
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
  return *out = copy(name_->view()), S_OK;
}

HRESULT TreeAttribute::get_nodeValue(VARIANT* out) {
  VariantInit(out);
  out->bstrVal = kind_ == Kind::text ? copy({text_, units_}) : copy(text());
  out->vt = VT_BSTR;
  return S_OK;
}

wide_string TreeAttribute::text() const {
  if (kind_ == Kind::text) return wide_string(text_, units_);
  char digits[32];
  char* const end = digits + sizeof digits;
  const char* const last = kind_ == Kind::integer
                               ? std::to_chars(digits, end, integer_).ptr
                               : std::to_chars(digits, end, real_, std::chars_format::general, 15).ptr;
  return wide_string(static_cast<const char*>(digits), last);
}

HRESULT TreeAttribute::put_nodeValue(VARIANT value) {
  switch (value.vt) {
    case VT_I4:
      kind_ = Kind::integer;
      integer_ = value.lVal;
      return S_OK;
    case VT_R8:
      kind_ = Kind::real;
      real_ = value.dblVal;
      return S_OK;
    case VT_BSTR:
      set_text(view_of(value.bstrVal));
      return S_OK;
    default:
      return E_INVALIDARG;
  }
}

void TreeAttribute::set_text(wide_view text) {
  kind_ = Kind::text;
  text_ = document_.store(text);
  units_ = static_cast<uint32_t>(text.size());
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

HRESULT TreeElement::QueryInterface(IID id, void** out) {
  if (id == kTreeElement) return *out = this, S_OK;
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
  return *out = copy(name_->view()), S_OK;
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
  TreeElement* const child = own<TreeElement>(node, kTreeElement, document_);
  if (!child || child->parent_ || child->is_root_) return E_FAIL;
  // No circles. A node without children, the usual case, can only be in its own way.
  for (const TreeElement* up = this; up; up = child->child_count_ ? up->parent_ : nullptr)
    if (up == child) return E_FAIL;
  add_child(child);
  if (out) {
    AddRef();
    *out = child;
  }
  return S_OK;
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
  TreeAttribute* const attribute = own<TreeAttribute>(node, kTreeAttribute, document_);
  if (!attribute || attribute->attached_) return E_FAIL;
  TreeAttribute* before = nullptr;
  for (TreeAttribute* old = first_attribute_; old; before = old, old = old->next_) {
    if (old->name_ != attribute->name_) continue;
    attribute->next_ = old->next_;
    attribute->attached_ = true;
    (before ? before->next_ : first_attribute_) = attribute;
    if (last_attribute_ == old) last_attribute_ = attribute;
    old->next_ = nullptr;
    old->attached_ = false;
    if (out) {
      AddRef();
      *out = old;
    }
    return S_OK;
  }
  add_attribute(attribute);
  return S_OK;
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
  return *out = copy("#document"_w), S_OK;
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
  TreeElement* const element = own<TreeElement>(node, kTreeElement, *this);
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
  *out = make_element(view_of(name));
  AddRef();
  return S_OK;
}

HRESULT TreeDocument::createAttribute(BSTR name, IXMLDOMAttribute** out) {
  *out = make_attribute(view_of(name));
  AddRef();
  return S_OK;
}

HRESULT TreeDocument::get_length(long* out) {
  return *out = root_ ? 1 : 0, S_OK;
}

HRESULT TreeDocument::get_item(long index, IXMLDOMNode** out) {
  if (index != 0 || !root_) return *out = nullptr, S_FALSE;
  AddRef();
  return *out = root_, S_OK;
}

TreeElement* TreeDocument::make_element(wide_view name) {
  return new (arena_.allocate(sizeof(TreeElement))) TreeElement(*this, intern(name));
}

TreeAttribute* TreeDocument::make_attribute(wide_view name) {
  return new (arena_.allocate(sizeof(TreeAttribute))) TreeAttribute(*this, intern(name));
}

const uint16_t* TreeDocument::store(wide_view text) {
  auto* const out = static_cast<uint16_t*>(arena_.allocate(text.size() * sizeof(uint16_t)));
  wide_traits::copy(out, text.data(), text.size());
  return out;
}

const Name* TreeDocument::intern(wide_view name) {
  const Name*& recent = recent_names_[slot_of(name, recent_names_.size())];
  if (recent && same(recent->view(), name)) return recent;
  const auto found = names_.find(bytes_of(name));
  if (found != names_.end()) return recent = found->second;
  auto* const made = static_cast<Name*>(arena_.allocate(sizeof(Name) + name.size() * sizeof(uint16_t)));
  made->units = name.size();
  wide_traits::copy(reinterpret_cast<uint16_t*>(made + 1), name.data(), name.size());
  names_.emplace(bytes_of(made->view()), made);
  return recent = made;
}

}  // namespace quillon::xml
