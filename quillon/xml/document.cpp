#include <algorithm>
#include <fstream>
#include <pugixml.hpp>
#include <sstream>

#include <quillon/platform/code_page.h>
#include <quillon/platform/utf8.h>
#include <quillon/sections/error.h>
#include <quillon/xml/document.h>
#include <quillon/xml/internal/dom_tree.h>

namespace quillon::xml {

namespace {

[[noreturn]] void refuse(std::string_view text, ptrdiff_t offset, const std::string& what) {
  const std::string_view before = text.substr(0, static_cast<size_t>(std::max<ptrdiff_t>(offset, 0)));
  const auto line = std::count(before.begin(), before.end(), '\n') + 1;
  const size_t line_start = before.rfind('\n') + 1;  // npos + 1 is 0
  std::ostringstream message;
  message << "malformed XML, line " << line << ", column " << before.size() - line_start + 1 << ": " << what;
  throw error(message.str().c_str());
}

// False if an attribute stands there twice.
bool copy_attributes(TreeDocument& tree, TreeElement& to, pugi::xml_node from) {
  std::vector<const Name*> names;
  for (const pugi::xml_attribute attribute : from.attributes()) {
    TreeAttribute* const made = tree.make_attribute(tree.intern(platform::to_utf16(attribute.name())));
    const std::string_view value(attribute.value());
    platform::is_ascii(value) ? made->set(value) : made->set(platform::to_utf16(value));
    to.add_attribute(made);
    names.push_back(made->name());
  }
  std::sort(names.begin(), names.end());
  return std::adjacent_find(names.begin(), names.end()) == names.end();
}

// The next node in document order behind `node` within `root`, `up` being called for each step upwards.
template <class Up>
pugi::xml_node next_in_order(pugi::xml_node node, pugi::xml_node root, Up up) {
  if (node.first_child()) return node.first_child();
  while (node != root && !node.next_sibling()) {
    node = node.parent();
    up();
  }
  return node == root ? pugi::xml_node() : node.next_sibling();
}

}  // namespace

struct Document::Impl {
  TreeDocument* tree = TreeDocument::create();

  Impl() = default;
  Impl(const Impl&) = delete;
  Impl& operator=(const Impl&) = delete;
  ~Impl() { tree->Release(); }
};

Document::Document() : impl_(std::make_unique<Impl>()) {}
Document::~Document() = default;
Document::Document(Document&&) noexcept = default;
Document& Document::operator=(Document&&) noexcept = default;

Document Document::from_text(std::string_view utf8) {
  pugi::xml_document parsed;
  // White space in attribute values stays as it stands: it came from a text that held it.
  const pugi::xml_parse_result result = parsed.load_buffer(
      utf8.data(), utf8.size(), pugi::parse_escapes | pugi::parse_eol, pugi::encoding_auto);
  if (!result) refuse(utf8, result.offset, result.description());
  const pugi::xml_node root = parsed.document_element();
  for (pugi::xml_node other = root.next_sibling(); other; other = other.next_sibling())
    if (other.type() == pugi::node_element) refuse(utf8, other.offset_debug(), "a second root element");

  Document out;
  TreeDocument& tree = *out.impl_->tree;
  TreeElement* parent = nullptr;
  // Walked without recursion: the depth of a document is its author's choice.
  for (pugi::xml_node node = root; node;) {
    TreeElement* made = parent;
    if (node.type() == pugi::node_element) {
      made = tree.make_element(tree.intern(platform::to_utf16(node.name())));
      if (!copy_attributes(tree, *made, node)) refuse(utf8, node.offset_debug(), "an attribute stands twice");
      parent ? parent->add_child(made) : tree.set_root(made);
    }
    if (node.first_child()) parent = made;
    node = next_in_order(node, root, [&parent] { parent = parent->parent(); });
  }
  return out;
}

Document Document::from_file(const std::filesystem::path& file) {
  std::ifstream in(file, std::ios::binary);
  if (!in) throw error(("can't read " + file.string()).c_str());
  std::string text;
  char block[4096];
  while (in.read(block, sizeof block), in.gcount() > 0) text.append(block, static_cast<size_t>(in.gcount()));
  if (in.bad()) throw error(("can't read " + file.string()).c_str());
  return from_text(text);
}

std::string Document::to_text() const {
  pugi::xml_document printed;
  pugi::xml_node declaration = printed.append_child(pugi::node_declaration);
  declaration.append_attribute("version") = "1.0";
  declaration.append_attribute("encoding") = "UTF-8";

  struct Step {
    const TreeElement* element;
    pugi::xml_node node;
    size_t next_child;
  };
  const auto open = [](const TreeElement* element, pugi::xml_node parent) {
    pugi::xml_node node = parent.append_child(platform::to_utf8(element->name()->view()).c_str());
    for (const TreeAttribute* a = element->first_attribute(); a; a = TreeElement::next(a))
      node.append_attribute(platform::to_utf8(a->name()->view()).c_str()) =
          platform::to_utf8(a->text()).c_str();
    return Step{element, node, 0};
  };
  std::vector<Step> path;
  if (const TreeElement* root = impl_->tree->root()) path.push_back(open(root, printed));
  while (!path.empty()) {
    Step& step = path.back();
    if (step.next_child == step.element->child_count()) {
      path.pop_back();
      continue;
    }
    const TreeElement* const child = step.element->child(step.next_child++);
    path.push_back(open(child, step.node));
  }
  std::ostringstream text;
  printed.save(text, "  ", pugi::format_indent, pugi::encoding_utf8);
  return text.str();
}

void Document::to_file(const std::filesystem::path& file) const {
  std::ofstream out(file, std::ios::binary);
  out << to_text();
  out.close();
  if (!out) throw error(("can't write " + file.string()).c_str());
}

void* Document::dom() const {
  return static_cast<IXMLDOMDocument*>(impl_->tree);
}

void* Document::create_root(std::string_view name) {
  if (impl_->tree->root()) throw error("the document has a root element");
  TreeElement* const made = impl_->tree->make_element(impl_->tree->intern(platform::to_utf16(name)));
  impl_->tree->set_root(made);
  return static_cast<IXMLDOMElement*>(made);
}

void* Document::append_element(void* parent, std::string_view name) {
  auto* const to = static_cast<TreeElement*>(static_cast<IXMLDOMElement*>(parent));
  TreeElement* const made = impl_->tree->make_element(impl_->tree->intern(platform::to_utf16(name)));
  to->add_child(made);
  return static_cast<IXMLDOMElement*>(made);
}

void* Document::root() const {
  TreeElement* const root = impl_->tree->root();
  return root ? static_cast<IXMLDOMNode*>(static_cast<IXMLDOMElement*>(root)) : nullptr;
}

std::vector<void*> Document::children(void* node) const {
  const auto* const parent =
      static_cast<TreeElement*>(static_cast<IXMLDOMElement*>(static_cast<IXMLDOMNode*>(node)));
  std::vector<void*> out;
  for (size_t i = 0; i < parent->child_count(); ++i)
    out.push_back(static_cast<IXMLDOMNode*>(static_cast<IXMLDOMElement*>(parent->child(i))));
  return out;
}

std::string Document::name(void* node) const {
  const auto* const element =
      static_cast<TreeElement*>(static_cast<IXMLDOMElement*>(static_cast<IXMLDOMNode*>(node)));
  return platform::to_utf8(element->name()->view());
}

}  // namespace quillon::xml
