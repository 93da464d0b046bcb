#include "fuzz/choices.h"
#include "fuzz/require.h"
#include "fuzz/targets.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <quillon/platform/utf8.h>
#include <quillon/sections/error.h>
#include <quillon/xml/attributes.h>
#include <quillon/xml/document.h>
#include <quillon/xml/internal/bstr.h>
#include <quillon/xml/internal/ref.h>

namespace quillon::fuzz {

namespace {

// Of one, two and three bytes, one that begins another, and what can be no name.
constexpr const char* kNames[] = {"a", "ab", "s\u00FCd", "\u661F", "x-1.y", "_", "1a", "a b", ""};
constexpr uint16_t kUnits[] = {0,      '\t',   '\n',   '\r',   '\1',   '\x1F', '&',    '<',
                               '>',    '"',    '\'',   ' ',    'a',    0x7F,   0xE4,   0xD83D,
                               0xDD8B, 0xE000, 0xE001, 0xE009, 0xE01F, 0xE020, 0xFFFE, 0xFFFF};

bool is_name(const std::string& name) {
  return !name.empty() && name != "1a" && name != "a b";
}

// A document as plain vectors: nodes are known by their places.
struct Model {
  static constexpr size_t kNone = SIZE_MAX;
  struct Attribute {
    std::string name;
    wide_string text = {};
    bool attached = false;
  };
  struct Element {
    std::string name;
    std::vector<size_t> attributes = {};
    std::vector<size_t> children = {};
    size_t parent = kNone;
  };
  std::vector<Attribute> attributes;
  std::vector<Element> elements;
  size_t root = kNone;

  bool can_append(size_t child, size_t parent) const {
    if (child == root || elements[child].parent != kNone) return false;
    for (size_t up = parent; up != kNone; up = elements[up].parent)
      if (up == child) return false;
    return true;
  }
  void append(size_t child, size_t parent) {
    elements[parent].children.push_back(child);
    elements[child].parent = parent;
  }
  // Gives the attribute whose place it takes.
  size_t attach(size_t attribute, size_t element) {
    attributes[attribute].attached = true;
    for (size_t& place : elements[element].attributes)
      if (attributes[place].name == attributes[attribute].name) {
        attributes[place].attached = false;
        return std::exchange(place, attribute);
      }
    elements[element].attributes.push_back(attribute);
    return kNone;
  }

  std::string text() const {
    std::string out = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";
    if (root != kNone) print(root, "", out);
    return out;
  }

 private:
  void print(size_t at, const std::string& indent, std::string& out) const {
    const Element& element = elements[at];
    out += indent + "<" + element.name;
    for (const size_t i : element.attributes)
      out += " " + attributes[i].name + "=\"" + escaped(attributes[i].text) + "\"";
    if (element.children.empty()) {
      out += " />\n";
      return;
    }
    out += ">\n";
    for (const size_t child : element.children) print(child, indent + "  ", out);
    out += indent + "</" + element.name + ">\n";
  }
  static std::string escaped(const wide_string& text) {
    std::string out;
    wide_string plain;
    const auto flush = [&] { out += platform::to_utf8(std::exchange(plain, {})); };
    for (const uint16_t unit : text) {
      static constexpr std::pair<uint16_t, const char*> kEscapes[] = {
          {'&', "&amp;"},  {'<', "&lt;"},   {'"', "&quot;"},     {'\t', "&#09;"},
          {'\n', "&#10;"}, {'\r', "&#13;"}, {0, "\uE000\uE020"},
      };
      const auto escape = std::find_if(std::begin(kEscapes), std::end(kEscapes),
                                       [unit](const auto& row) { return row.first == unit; });
      if (escape != std::end(kEscapes)) {
        flush();
        out += escape->second;
        continue;
      }
      if (unit >= 0xE000 && unit < 0xE020) plain += uint16_t{0xE000};
      plain += unit < 0x20 ? static_cast<uint16_t>(0xE000 + unit) : unit >= 0xFFFE ? uint16_t{0xFFFD} : unit;
    }
    flush();
    return out;
  }
};

// A text for the DOM, which is released with its holder.
struct Units {
  explicit Units(wide_view text) { value.bstrVal = xml::try_make_text(text.data(), text.size()); }
  explicit Units(const char* utf8) : Units(platform::to_utf16(utf8)) {}
  Units(const Units&) = delete;
  Units& operator=(const Units&) = delete;
  ~Units() { VariantClear(&value); }

  VARIANT value{VT_BSTR, {}};
};

wide_string taken(VARIANT value) {
  require(value.vt == VT_BSTR);
  const wide_string out(xml::units_of(value.bstrVal));
  VariantClear(&value);
  return out;
}

std::string name_of(IXMLDOMNode* node) {
  VARIANT name{VT_BSTR, {}};
  require(node->get_nodeName(&name.bstrVal) == S_OK);
  return platform::to_utf8(taken(name));
}

wide_string text_of(IXMLDOMNode* attribute) {
  VARIANT value;
  require(attribute->get_nodeValue(&value) == S_OK);
  return taken(value);
}

// What of a text is there again once it was written and read.
wide_string read_back(wide_string text) {
  for (uint16_t& unit : text)
    if (unit >= 0xFFFE) unit = 0xFFFD;
  return platform::to_utf16(platform::to_utf8(text));
}

// A document, whether its handle is there or not, with all nodes that were ever made in it.
class Tree {
 public:
  void step(Choices& choices, Tree& other) {
    switch (choices.below(12)) {
      case 0:
      case 1: {
        const char* const name = choices.of(kNames);
        xml::Ref<IXMLDOMElement> made;
        const bool done = dom_->createElement(Units(name).value.bstrVal, made.out()) == S_OK;
        require(done == is_name(name) && done == bool(made));
        if (done) keep(std::move(made), name);
        break;
      }
      case 2: {
        const char* const name = choices.of(kNames);
        xml::Ref<IXMLDOMAttribute> made;
        const bool done = dom_->createAttribute(Units(name).value.bstrVal, made.out()) == S_OK;
        require(done == is_name(name) && done == bool(made));
        if (!done) break;
        model_.attributes.push_back({name});
        attributes_.push_back(std::move(made));
        break;
      }
      case 3:
        if (!attributes_.empty()) put(choices.below(attributes_.size()), choices);
        break;
      case 4:
      case 5:
        append(choices, other);
        break;
      case 6:
        set_attribute(choices, other);
        break;
      case 7: {
        if (elements_.empty()) break;
        const size_t at = choices.below(elements_.size());
        const int value = static_cast<int8_t>(choices.byte()) * 1000;
        require(AddAttribute(dom_.get(), elements_[at].get(), "number", value) == 0);
        // It has no place among those that were made by hand.
        xml::Ref<IXMLDOMNamedNodeMap> map;
        xml::Ref<IXMLDOMNode> node;
        require(elements_[at]->get_attributes(map.out()) == S_OK);
        require(map->getNamedItem(Units("number").value.bstrVal, node.out()) == S_OK);
        const std::string digits = std::to_string(value);
        model_.attributes.push_back({"number", wide_string(digits.begin(), digits.end())});
        attributes_.emplace_back(static_cast<IXMLDOMAttribute*>(node.get()));
        model_.attach(attributes_.size() - 1, at);
        break;
      }
      case 8:
        if (handle_) append_by_handle(choices);
        break;
      case 9:
        look();
        break;
      case 10:
        print();
        break;
      default:
        // The nodes stay where their handle moves or goes.
        if (handle_ && choices.below(8) == 0)
          handle_.reset();
        else if (handle_)
          handle_ = xml::Document(std::move(*handle_));
    }
  }

  // Every node is what the model says.
  void look() const {
    for (size_t i = 0; i < elements_.size(); ++i) {
      require(name_of(elements_[i].get()) == model_.elements[i].name);
      expect_same(elements_[i].get(), model_, i, false, false);
    }
    for (size_t i = 0; i < attributes_.size(); ++i)
      require(text_of(attributes_[i].get()) == model_.attributes[i].text);
  }
  // So is the text, and what is read from it.
  void print() const {
    if (!handle_) return;
    const std::string text = handle_->to_text();
    require(text == model_.text());
    if (model_.root == Model::kNone) return;
    const xml::Document again = xml::Document::from_text(text);
    require(again.to_text() == text);
    expect_same(static_cast<IXMLDOMNode*>(again.root()), model_, model_.root, true, true);
  }

 private:
  static void expect_same(IXMLDOMNode* node, const Model& model, size_t at, bool was_read, bool deep) {
    const Model::Element& element = model.elements[at];
    require(name_of(node) == element.name);
    xml::Ref<IXMLDOMNamedNodeMap> map;
    require(node->get_attributes(map.out()) == S_OK);
    for (const size_t i : element.attributes) {
      const auto& [name, text, attached] = model.attributes[i];
      xml::Ref<IXMLDOMNode> attribute;
      require(attached && map->getNamedItem(Units(name.c_str()).value.bstrVal, attribute.out()) == S_OK);
      require(text_of(attribute.get()) == (was_read ? read_back(text) : text));
    }
    xml::Ref<IXMLDOMNodeList> children;
    require(node->get_childNodes(children.out()) == S_OK);
    long count = -1;
    require(children->get_length(&count) == S_OK && count == static_cast<long>(element.children.size()));
    for (const long past : {-1L, count}) {
      xml::Ref<IXMLDOMNode> none;
      require(children->get_item(past, none.out()) == S_FALSE && !none);
    }
    for (long i = 0; i < count; ++i) {
      xml::Ref<IXMLDOMNode> child;
      require(children->get_item(i, child.out()) == S_OK);
      const size_t place = element.children[static_cast<size_t>(i)];
      require(name_of(child.get()) == model.elements[place].name);
      if (deep) expect_same(child.get(), model, place, was_read, deep);
    }
    for (const char* const name : kNames) {
      const auto first = std::find_if(element.children.begin(), element.children.end(),
                                      [&](size_t child) { return model.elements[child].name == name; });
      xml::Ref<IXMLDOMNode> found;
      const HRESULT result = node->selectSingleNode(Units(name).value.bstrVal, found.out());
      require(result == (first == element.children.end() ? S_FALSE : S_OK) &&
              bool(found) == (result == S_OK));
    }
  }

  void keep(xml::Ref<IXMLDOMElement> element, const char* name) {
    model_.elements.push_back({name});
    elements_.push_back(std::move(element));
  }

  void put(size_t at, Choices& choices) {
    wide_string& text = model_.attributes[at].text;
    IXMLDOMAttribute* const attribute = attributes_[at].get();
    VARIANT number{VT_I4, {}};
    std::string digits;
    switch (choices.below(4)) {
      case 0:
        number.lVal = static_cast<int8_t>(choices.byte()) * 16'000'000;
        digits = std::to_string(number.lVal);
        break;
      case 1:
        number.vt = VT_R8;
        number.dblVal = choices.byte() + 0.5;
        digits = std::to_string(static_cast<int>(number.dblVal)) + ".5";
        break;
      case 2: {
        number.vt = VT_NULL;
        require(attribute->put_nodeValue(number) == E_INVALIDARG);
        return;
      }
      default: {
        wide_string units(choices.below(16), 0);
        for (uint16_t& unit : units) unit = choices.of(kUnits);
        require(attribute->put_nodeValue(Units(units).value) == S_OK);
        text = units;
        return;
      }
    }
    require(attribute->put_nodeValue(number) == S_OK);
    text.assign(digits.begin(), digits.end());
  }

  // One of this document or of another one, to an element or to the document.
  void append(Choices& choices, Tree& other) {
    Tree& from = choices.below(8) == 0 ? other : *this;
    if (from.elements_.empty()) return;
    const size_t child = choices.below(from.elements_.size());
    const bool is_own = &from == this;
    xml::Ref<IXMLDOMNode> out;
    if (elements_.empty() || choices.below(4) == 0) {
      const bool can = is_own && model_.root == Model::kNone && model_.elements[child].parent == Model::kNone;
      const HRESULT result = dom_->appendChild(from.elements_[child].get(), out.out());
      require((result == S_OK) == can && bool(out) == can);
      if (can) model_.root = child;
      return;
    }
    const size_t parent = choices.below(elements_.size());
    const bool can = is_own && model_.can_append(child, parent);
    const HRESULT result = elements_[parent]->appendChild(from.elements_[child].get(), out.out());
    require((result == S_OK) == can && bool(out) == can);
    if (can) model_.append(child, parent);
  }

  void set_attribute(Choices& choices, Tree& other) {
    Tree& from = choices.below(8) == 0 ? other : *this;
    if (from.attributes_.empty() || elements_.empty()) return;
    const size_t attribute = choices.below(from.attributes_.size());
    const size_t element = choices.below(elements_.size());
    const bool can = &from == this && !model_.attributes[attribute].attached;
    xml::Ref<IXMLDOMAttribute> old;
    const HRESULT result = elements_[element]->setAttributeNode(from.attributes_[attribute].get(), old.out());
    require((result == S_OK) == can);
    const size_t replaced = can ? model_.attach(attribute, element) : Model::kNone;
    require(old.get() == (replaced == Model::kNone ? nullptr : attributes_[replaced].get()));
  }

  void append_by_handle(Choices& choices) {
    const char* const name = choices.of(kNames);
    const size_t parent = elements_.empty() ? 0 : choices.below(elements_.size() + 1);
    const bool is_root = parent >= elements_.size();
    void* made = nullptr;
    try {
      made = is_root ? handle_->create_root(name) : handle_->append_element(elements_[parent].get(), name);
    } catch (const error&) {
    }
    require((made != nullptr) == (is_name(name) && (!is_root || model_.root == Model::kNone)));
    if (!made) return;
    keep(xml::Ref<IXMLDOMElement>(static_cast<IXMLDOMElement*>(made)), name);
    if (is_root)
      model_.root = elements_.size() - 1;
    else
      model_.append(elements_.size() - 1, parent);
  }

  std::optional<xml::Document> handle_ = xml::Document();
  xml::Ref<IXMLDOMDocument> dom_{static_cast<IXMLDOMDocument*>(handle_->dom())};
  std::vector<xml::Ref<IXMLDOMElement>> elements_;
  std::vector<xml::Ref<IXMLDOMAttribute>> attributes_;
  Model model_;
};

}  // namespace

void tree(const uint8_t* data, size_t size) {
  Choices choices(data, size);
  std::array<Tree, 3> trees;
  while (!choices.empty()) {
    const size_t at = choices.below(trees.size());
    trees[at].step(choices, trees[(at + 1) % trees.size()]);
  }
  for (const Tree& tree : trees) {
    tree.look();
    tree.print();
  }
}

}  // namespace quillon::fuzz
