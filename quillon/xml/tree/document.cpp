#include <system_error>

#include <quillon/platform/internal/file.h>
#include <quillon/platform/utf8.h>
#include <quillon/sections/error.h>
#include <quillon/xml/document.h>
#include <quillon/xml/internal/attribute_text.h>
#include <quillon/xml/tree/dom_tree.h>
#include <quillon/xml/tree/xml_parser.h>

namespace quillon::xml {

namespace {

constexpr size_t kPiece = size_t{64} * 1024;

// Throws error on a failure of the system.
void expect(const std::error_code& failed, const char* what, const std::filesystem::path& file) {
  if (failed) throw error((what + platform::name_of(file) + ": " + failed.message()).c_str());
}

const char kTooLong[] = "the text is longer than 2147483647 bytes";

// Appends lines; throws error where they get too long for a reader.
class Printer {
 public:
  explicit Printer(std::string& out) : out_(out) {}

  void begin(const TreeElement& element, size_t depth) {
    indent(depth);
    out_ += '<';
    out_ += element.name().utf8();
    for (const TreeAttribute* a = element.first_attribute(); a; a = TreeElement::next(a)) {
      out_ += ' ';
      out_ += a->name().utf8();
      out_ += "=\"";
      append_attribute_text(a->text(), out_);
      out_ += '"';
      limit();
    }
    out_ += element.child_count() ? ">\n" : " />\n";
  }
  void end(const TreeElement& element, size_t depth) {
    indent(depth);
    out_ += "</";
    out_ += element.name().utf8();
    out_ += ">\n";
  }

 private:
  void indent(size_t depth) {
    out_.append(2 * depth, ' ');
    limit();
  }
  void limit() const {
    if (out_.size() > Document::max_text) throw error(kTooLong);
  }

  std::string& out_;
};

// Calls `begin` and `end` with each element, `end` with those that have children, and its depth. Without
// recursion: documents may be of any depth.
template <class Begin, class End>
void walk(const TreeElement& root, Begin begin, End end) {
  struct Step {
    const TreeElement* element;
    size_t next_child;
  };
  std::vector<Step> path;
  const auto enter = [&](const TreeElement& element) {
    begin(element, path.size());
    if (element.child_count()) path.push_back({&element, 0});
  };
  enter(root);
  while (!path.empty()) {
    Step& step = path.back();
    if (step.next_child < step.element->child_count()) {
      enter(*step.element->child(step.next_child++));
      continue;
    }
    const TreeElement* const done = step.element;
    path.pop_back();
    end(*done, path.size());
  }
}

}  // namespace

struct QUILLON_LOCAL Document::Impl {
  TreeDocument* tree = TreeDocument::create();

  Impl() = default;
  Impl(const Impl&) = delete;
  Impl& operator=(const Impl&) = delete;
  ~Impl() { tree->Release(); }

  // An element is the same pointer as element and as node.
  TreeElement& element(void* node) const {
    TreeElement* const found = TreeElement::from(*tree, static_cast<IXMLDOMNode*>(node));
    if (!found) throw error("not an element of the document");
    return *found;
  }
  TreeElement* make(std::string_view name) const {
    const Name known = tree->intern(platform::to_utf16(name));
    if (!known) throw error("not the name of an element");
    return tree->make_element(known);
  }
};

Document::Document() : impl_(std::make_unique<Impl>()) {}
Document::~Document() = default;
Document::Document(Document&&) noexcept = default;
Document& Document::operator=(Document&&) noexcept = default;

Document Document::from_text(std::string_view text) {
  if (text.size() > max_text) throw error(kTooLong);
  Document out;
  XmlParser(*out.impl_->tree).parse(text);
  return out;
}

Document Document::from_file(const std::filesystem::path& file) {
  platform::InputFile in;
  expect(in.open(file), "can't read ", file);
  Document out;
  XmlParser parser(*out.impl_->tree);
  size_t taken = 0;
  for (bool last = false; !last;) {
    const XmlParser::Room room = parser.room(kPiece);
    size_t got = 0;
    expect(in.read(room.place, room.size, got), "can't read ", file);
    last = got < room.size;
    taken += got;
    try {
      if (taken > max_text) throw error(kTooLong);
      parser.parse_room(got, last);
    } catch (const error& e) {
      throw error((platform::name_of(file) + ": " + e.what()).c_str());
    }
  }
  return out;
}

std::string Document::to_text() const {
  std::string text = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";
  const TreeElement* const root = impl_->tree->root();
  if (!root) return text;
  // In a deep tree the text is mostly blanks: they are counted before they take memory.
  uint64_t blanks = 0;
  walk(
      *root, [&](const TreeElement&, size_t depth) { blanks += 2 * depth; },
      [](const TreeElement&, size_t) {});
  if (blanks > max_text) throw error(kTooLong);
  Printer printer(text);
  walk(
      *root, [&](const TreeElement& element, size_t depth) { printer.begin(element, depth); },
      [&](const TreeElement& element, size_t depth) { printer.end(element, depth); });
  return text;
}

void Document::to_file(const std::filesystem::path& file) const {
  expect(platform::write_whole(file, to_text()), "can't write ", file);
}

void* Document::dom() const {
  return static_cast<IXMLDOMDocument*>(impl_->tree);
}

void* Document::create_root(std::string_view name) {
  if (impl_->tree->root()) throw error("the document has a root element");
  TreeElement* const made = impl_->make(name);
  impl_->tree->set_root(made);
  return static_cast<IXMLDOMElement*>(made);
}

void* Document::append_element(void* parent, std::string_view name) {
  TreeElement& to = impl_->element(parent);
  TreeElement* const made = impl_->make(name);
  to.add_child(made);
  return static_cast<IXMLDOMElement*>(made);
}

void* Document::root() const {
  TreeElement* const root = impl_->tree->root();
  return root ? static_cast<IXMLDOMNode*>(static_cast<IXMLDOMElement*>(root)) : nullptr;
}

std::vector<void*> Document::children(void* node) const {
  const TreeElement& parent = impl_->element(node);
  std::vector<void*> out;
  out.reserve(parent.child_count());
  for (size_t i = 0; i < parent.child_count(); ++i)
    out.push_back(static_cast<IXMLDOMNode*>(static_cast<IXMLDOMElement*>(parent.child(i))));
  return out;
}

std::string Document::name(void* node) const {
  return impl_->element(node).name().utf8();
}

}  // namespace quillon::xml
