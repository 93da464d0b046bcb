#include <algorithm>
#include <utility>

#include <quillon/platform/code_page.h>
#include <quillon/xml/internal/com_failure.h>
#include <quillon/xml/internal/element.h>
#include <quillon/xml/internal/hex.h>
#include <quillon/xml/internal/literal_name.h>
#include <quillon/xml/internal/real_text.h>

namespace quillon::xml {

namespace {

// A value on its way through the interfaces.
struct Value : VARIANT {
  explicit Value(int32_t value) {
    VariantInit(this);
    vt = VT_I4;
    lVal = value;
  }
  explicit Value(double value) {
    VariantInit(this);
    vt = VT_R8;
    dblVal = value;
  }
  // UTF-16 or ASCII.
  template <class Unit, class Traits>
  explicit Value(std::basic_string_view<Unit, Traits> text) {
    VariantInit(this);
    bstrVal = make_text(text.size());
    vt = VT_BSTR;
    std::copy(text.begin(), text.end(), bstrVal);
  }
  Value(const Value&) = delete;
  Value& operator=(const Value&) = delete;
  ~Value() { VariantClear(this); }
};

bool add(const Element& to, const XmlName& name, const VARIANT& value) {
  if (name.is_null()) return false;
  Ref<IXMLDOMAttribute> attribute;
  if (to.document()->createAttribute(name.get(), attribute.out()) < 0 || !attribute) return false;
  if (attribute->put_nodeValue(value) < 0) return false;
  Ref<IXMLDOMAttribute> replaced;
  return to.get()->setAttributeNode(attribute.get(), replaced.out()) >= 0;
}

}  // namespace

Element::Element(void* document, void* element)
    : document_(static_cast<IXMLDOMDocument*>(document)), element_(static_cast<IXMLDOMElement*>(element)) {
  tree_ = backend::Tree::of(document_, element_);
  if (tree_) return;
  held_document_ = Ref<IXMLDOMDocument>(document_);
  held_element_ = Ref<IXMLDOMElement>(element_);
}

bool Element::put(const XmlName& name, int32_t value) const {
  return tree_ ? tree_->set_attribute(element_, name, value) : add(*this, name, Value(value));
}

bool Element::put(const XmlName& name, double value) const {
  if (tree_) return tree_->set_attribute(element_, name, value);
  if (backend::takes_reals) return add(*this, name, Value(value));
  char digits[real_room];
  return put(name, std::string_view(digits, static_cast<size_t>(write_real(digits, value) - digits)));
}

bool Element::put(const XmlName& name, wide_view text) const {
  return tree_ ? tree_->set_attribute(element_, name, text) : add(*this, name, Value(text));
}

bool Element::put(const XmlName& name, std::string_view ascii) const {
  return tree_ ? tree_->set_attribute(element_, name, ascii) : add(*this, name, Value(ascii));
}

bool Element::put(const XmlName& name, const VARIANT& value) const {
  return value.vt == VT_R8 ? put(name, value.dblVal) : add(*this, name, value);
}

bool Element::put_narrow(const XmlName& name, const char* text) const {
  const std::string_view narrow(text);
  if (platform::is_ascii(narrow)) return put(name, narrow);
  wide_string wide;
  platform::decode(0, narrow, wide);
  return put(name, wide_view(wide));
}

template <class Number>
bool Element::put_hex(const XmlName& name, const Number* values, size_t count) const {
  const size_t units = count * hex_digits<Number>;
  if (tree_) {
    char* const out = tree_->set_ascii(element_, name, units);
    if (out) write_hex(values, count, out);
    return out;
  }
  std::string digits(units, '0');
  write_hex(values, count, digits.data());
  return put(name, std::string_view(digits));
}

bool Element::set_bytes(const XmlName& name, const uint8_t* bytes, size_t size) const {
  return put_hex(name, bytes, size);
}
bool Element::put_integers(const XmlName& name, const std::vector<int>& values) const {
  return put_hex(name, values.data(), values.size());
}
bool Element::put_integers(const XmlName& name, const std::vector<unsigned long>& values) const {
  return put_hex(name, values.data(), values.size());
}

Element Element::make(const char* literal) const {
  const LiteralName name(literal);
  Element out;
  out.tree_ = tree_;
  out.document_ = document_;
  if (tree_) {
    out.element_ = tree_->make_element(name);
  } else if (document_->createElement(name.get(), out.held_element_.out()) >= 0) {
    out.element_ = out.held_element_.get();
  }
  return out;
}

bool Element::append(const Element& child) const {
  if (!tree_) return element_->appendChild(child.element_, nullptr) >= 0;
  tree_->append(element_, child.element_);
  return true;
}

Element Element::attach(Element child) const {
  if (tree_) {
    tree_->append(element_, child.element_);
    return child;
  }
  Ref<IXMLDOMNode> node;
  if (element_->appendChild(child.element_, node.out()) < 0 || !node) return {};
  Ref<IXMLDOMElement> attached;
  if (node->QueryInterface(IID_IXMLDOMElement, reinterpret_cast<void**>(attached.out())) < 0) return {};
  child.element_ = attached.get();
  child.held_element_ = std::move(attached);
  return child;
}

}  // namespace quillon::xml
