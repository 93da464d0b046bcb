#include <algorithm>
#include <charconv>
#include <new>

#include <quillon/platform/code_page.h>
#include <quillon/platform/utf8.h>
#include <quillon/xml/document.h>
#include <quillon/xml/internal/bstr.h>
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

}  // namespace

void Arena::grow(size_t size) {
  // Blocks grow with the store: a small document stays small, a large one takes few blocks.
  const size_t room = std::max(size, blocks_.empty() ? kBlockSize / 8 : kBlockSize);
  blocks_.push_back(std::make_unique_for_overwrite<std::byte[]>(room));
  next_ = blocks_.back().get();
  left_ = room;
}

// Names

wide_view Name::wide() const {
  return reinterpret_cast<const uint16_t*>(text_ + sizeof wide_mark);
}

bool Name::is(wide_view name) const {
  if (is_wide()) return wide() == name;
  size_t i = 0;
  while (i < name.size() && text_[i] && name[i] == static_cast<unsigned char>(text_[i])) ++i;
  return i == name.size() && !text_[i];
}

BSTR Name::bstr() const {
  if (is_wide()) return try_make_text(wide().data(), wide().size());
  const std::string_view ascii(text_);
  BSTR const out = try_make_text(ascii.size());
  if (out) std::copy(ascii.begin(), ascii.end(), out);
  return out;
}

std::string Name::utf8() const {
  return is_wide() ? platform::to_utf8(wide()) : text_;
}

template <class Accept>
Name NameTable::intern_key(std::string_view key, Accept accept) {
  const auto place = names_.lower_bound(key);
  if (place != names_.end() && *place == key) return Name(place->data());
  if (!accept()) return {};
  auto* const made = static_cast<char*>(arena_.allocate(key.size() + sizeof(uint16_t)));
  key.copy(made, key.size());
  std::fill_n(made + key.size(), sizeof(uint16_t), '\0');
  names_.emplace_hint(place, made, key.size());
  return Name(made);
}

template <class Accept>
Name NameTable::intern(wide_view name, Accept accept) {
  std::string key;
  if (std::all_of(name.begin(), name.end(), [](uint16_t unit) { return unit < 0x80; })) {
    key.assign(name.begin(), name.end());
  } else {
    key.assign(Name::wide_mark, sizeof Name::wide_mark);
    key.append(reinterpret_cast<const char*>(name.data()), name.size() * sizeof(uint16_t));
  }
  return intern_key(key, [&] { return accept(name); });
}

Name NameTable::intern_parsed(std::string_view name) {
  const auto accept = [](auto&&...) { return true; };
  return platform::is_ascii(name) ? intern_key(name, accept) : intern(platform::to_utf16(name), accept);
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
  *out = name_.bstr();
  return *out ? S_OK : E_OUTOFMEMORY;
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
  char* const stored = set_ascii(ascii.size());
  if (stored) ascii.copy(stored, ascii.size());
  return stored;
}

char* TreeAttribute::set_ascii(size_t units) {
  if (units > Document::max_attribute) return nullptr;
  auto* const stored = static_cast<char*>(document_.arena().allocate(units));
  kind_ = Kind::ascii;
  ascii_ = stored;
  units_ = static_cast<uint32_t>(units);
  return stored;
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
  *out = name_.bstr();
  return *out ? S_OK : E_OUTOFMEMORY;
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
    if (children_[i]->name_.is(wanted)) {
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
  for (; old && !(old->name_ == attribute->name_); old = old->next_) before = old;
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
    if (attribute->name_.is(wanted)) {
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
  if (!root_ || !root_->name_.is(view_of(name))) return *out = nullptr, S_FALSE;
  AddRef();
  return *out = root_, S_OK;
}

HRESULT TreeDocument::createElement(BSTR name, IXMLDOMElement** out) {
  *out = nullptr;
  return with_memory([&] {
    const Name known = intern(view_of(name));
    if (!known) return E_INVALIDARG;
    *out = make_element(known);
    AddRef();
    return S_OK;
  });
}

HRESULT TreeDocument::createAttribute(BSTR name, IXMLDOMAttribute** out) {
  *out = nullptr;
  return with_memory([&] {
    const Name known = intern(view_of(name));
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

TreeElement* TreeDocument::make_element(Name name) {
  return new (arena_.allocate(sizeof(TreeElement))) TreeElement(*this, name);
}

TreeAttribute* TreeDocument::make_attribute(Name name) {
  return new (arena_.allocate(sizeof(TreeAttribute))) TreeAttribute(*this, name);
}

Name TreeDocument::intern(wide_view name) {
  return names_.intern(name, is_xml_name);
}

// What the XML form asks

backend::Tree* backend::Tree::of(IXMLDOMDocument* document, IXMLDOMElement* element) {
  auto* const found = own<TreeElement>(IID_TreeElement, element);
  if (!found || static_cast<IXMLDOMDocument*>(&found->document()) != document) return nullptr;
  return &found->document();
}

Name TreeDocument::name_of(const XmlName& name) {
  const char* const literal = LiteralName::place_of(name);
  return literal ? Name(literal) : intern(view_of(name.get()));
}

template <class Value>
bool TreeDocument::set(IXMLDOMElement* element, const XmlName& name, Value value) {
  const Name known = name_of(name);
  if (!known) return false;
  TreeAttribute* const attribute = make_attribute(known);
  if (!attribute->set(value)) return false;
  static_cast<TreeElement*>(element)->attach(attribute);
  return true;
}

bool TreeDocument::set_attribute(IXMLDOMElement* element, const XmlName& name, int32_t value) {
  return set(element, name, value);
}
bool TreeDocument::set_attribute(IXMLDOMElement* element, const XmlName& name, double value) {
  return set(element, name, value);
}
bool TreeDocument::set_attribute(IXMLDOMElement* element, const XmlName& name, wide_view text) {
  return set(element, name, text);
}
bool TreeDocument::set_attribute(IXMLDOMElement* element, const XmlName& name, std::string_view ascii) {
  return set(element, name, ascii);
}

char* TreeDocument::set_ascii(IXMLDOMElement* element, const XmlName& name, size_t units) {
  const Name known = name_of(name);
  if (!known) return nullptr;
  TreeAttribute* const attribute = make_attribute(known);
  char* const out = attribute->set_ascii(units);
  if (out) static_cast<TreeElement*>(element)->attach(attribute);
  return out;
}

IXMLDOMElement* TreeDocument::make_element(const XmlName& name) {
  const Name known = name_of(name);
  return known ? make_element(known) : nullptr;
}

void TreeDocument::append(IXMLDOMElement* parent, IXMLDOMElement* child) {
  static_cast<TreeElement*>(parent)->add_child(static_cast<TreeElement*>(child));
}

bool backend::is_own(IXMLDOMNode* node) {
  return own<TreeAttribute>(IID_TreeAttribute, node) || own<TreeElement>(IID_TreeElement, node);
}

}  // namespace quillon::xml
