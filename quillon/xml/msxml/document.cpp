#include <system_error>

#include <quillon/platform/internal/file.h>
#include <quillon/platform/utf8.h>
#include <quillon/sections/error.h>
#include <quillon/xml/document.h>
#include <quillon/xml/internal/attribute_text.h>
#include <quillon/xml/internal/bstr.h>
#include <quillon/xml/internal/com_failure.h>
#include <quillon/xml/internal/ref.h>

namespace quillon::xml {

namespace {

constexpr size_t kPiece = size_t{64} * 1024;
const char kTooLong[] = "the text is longer than 2147483647 bytes";

// Throws error on a failure of the system.
void expect(const std::error_code& failed, const char* what, const std::filesystem::path& file) {
  if (failed) throw error((what + platform::name_of(file) + ": " + failed.message()).c_str());
}

// A BSTR that is freed.
class Name {
 public:
  Name() = default;
  explicit Name(std::string_view utf8) {
    const wide_string units = platform::to_utf16(utf8);
    text_ = make_text(units.size());
    std::copy(units.begin(), units.end(), text_);
  }
  Name(const Name&) = delete;
  Name& operator=(const Name&) = delete;
  ~Name() { SysFreeString(text_); }

  BSTR get() const { return text_; }
  BSTR* out() { return &text_; }
  wide_string units() const { return wide_string(units_of(text_)); }

 private:
  BSTR text_ = nullptr;
};

template <class To>
Ref<To> as(IUnknown* object, REFIID id) {
  Ref<To> out;
  if (object) object->QueryInterface(id, reinterpret_cast<void**>(out.out()));
  return out;
}

Ref<IXMLDOMElement> element_of(IXMLDOMNode* node) {
  return as<IXMLDOMElement>(node, IID_IXMLDOMElement);
}

std::vector<Ref<IXMLDOMElement>> elements_in(IXMLDOMNode* node) {
  std::vector<Ref<IXMLDOMElement>> out;
  Ref<IXMLDOMNode> child;
  node->get_firstChild(child.out());
  while (child) {
    if (Ref<IXMLDOMElement> element = element_of(child.get())) out.push_back(std::move(element));
    Ref<IXMLDOMNode> next;
    child->get_nextSibling(next.out());
    child = std::move(next);
  }
  return out;
}

// Calls `action` with the name and the node of each attribute.
template <class Action>
void each_attribute(IXMLDOMNode* element, Action action) {
  Ref<IXMLDOMNamedNodeMap> map;
  if (FAILED(element->get_attributes(map.out())) || !map) return;
  long count = 0;
  map->get_length(&count);
  for (long i = 0; i < count; ++i) {
    Ref<IXMLDOMNode> attribute;
    if (FAILED(map->get_item(i, attribute.out())) || !attribute) continue;
    Name name;
    attribute->get_nodeName(name.out());
    action(name.units(), *attribute.get());
  }
}

wide_string value_of(IXMLDOMNode& attribute) {
  VARIANT value;
  VariantInit(&value);
  wide_string out;
  if (SUCCEEDED(attribute.get_nodeValue(&value)) && value.vt == VT_BSTR) out = units_of(value.bstrVal);
  VariantClear(&value);
  return out;
}

void set_value(IXMLDOMNode& attribute, const wide_string& text) {
  VARIANT value;
  VariantInit(&value);
  value.vt = VT_BSTR;
  value.bstrVal = make_text(text.size());
  std::copy(text.begin(), text.end(), value.bstrVal);
  attribute.put_nodeValue(value);
  VariantClear(&value);
}

// Calls `begin` with each element, its depth and whether it has children, `end` with those that have. Without
// recursion: documents may be of any depth.
template <class Begin, class End>
void walk(Ref<IXMLDOMElement> root, Begin begin, End end) {
  struct Step {
    Ref<IXMLDOMElement> element;
    std::vector<Ref<IXMLDOMElement>> children;
    size_t next = 0;
  };
  std::vector<Step> path;
  const auto enter = [&](Ref<IXMLDOMElement> element) {
    std::vector<Ref<IXMLDOMElement>> children = elements_in(element.get());
    begin(*element.get(), path.size(), !children.empty());
    if (!children.empty()) path.push_back({std::move(element), std::move(children)});
  };
  enter(std::move(root));
  while (!path.empty()) {
    Step& step = path.back();
    if (step.next < step.children.size()) {
      enter(std::move(step.children[step.next++]));
      continue;
    }
    const Ref<IXMLDOMElement> done = std::move(step.element);
    path.pop_back();
    end(*done.get(), path.size());
  }
}

// Whether a document type declaration has declarations of its own, whose entities could make a long text of a
// short one. NULs are passed over: the text may be UTF-16.
bool has_declarations(std::string_view text) {
  size_t at = 0;
  const auto next = [&]() -> char {
    while (at < text.size() && text[at] == '\0') ++at;
    return at < text.size() ? text[at++] : '\0';
  };
  const auto skip_past = [&](std::string_view end) {
    size_t matched = 0;
    for (char c; matched < end.size() && (c = next());)
      matched = c == end[matched] ? matched + 1 : c == end[0] ? (matched == 2 ? 2 : 1) : 0;
  };
  for (char c; (c = next());) {
    if (c != '<') continue;
    c = next();
    if (c == '?') {
      skip_past("?>");
    } else if (c == '!' && (c = next()) == '-') {
      skip_past("-->");
    } else if (c == 'D') {
      for (char quote = '\0'; (c = next()) && (quote || c != '>');) {
        if (quote ? c == quote : c == '"' || c == '\'') quote = quote ? '\0' : c;
        if (!quote && c == '[') return true;
      }
    } else {
      return false;
    }
  }
  return false;
}

// The system takes more than names for a name; what it reads as one is one.
bool is_name(std::string_view name) {
  const auto is_plain = [](char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_';
  };
  if (name.empty() || name.find('\0') != name.npos) return false;
  if (std::all_of(name.begin(), name.end(), is_plain) && (name[0] < '0' || name[0] > '9')) return true;
  try {
    const Document read = Document::from_text(std::string("<").append(name).append("/>"));
    return read.name(read.root()) == name;
  } catch (const error&) {
    return false;
  }
}

std::string name_of(IXMLDOMElement& element) {
  Name name;
  element.get_nodeName(name.out());
  return platform::to_utf8(name.units());
}

}  // namespace

struct QUILLON_LOCAL Document::Impl {
  // COM, for as long as the document lives and on whatever threads.
  class Com {
   public:
    Com() { CoIncrementMTAUsage(&use_); }
    Com(const Com&) = delete;
    Com& operator=(const Com&) = delete;
    ~Com() { CoDecrementMTAUsage(use_); }

   private:
    CO_MTA_USAGE_COOKIE use_ = nullptr;
  };

  Com com;
  Ref<IXMLDOMDocument> dom;
  // What was handed out, as the system keeps no node that nobody holds.
  std::vector<Ref<IXMLDOMNode>> held;

  Impl() {
    if (FAILED(CoCreateInstance(CLSID_DOMDocument, nullptr, CLSCTX_INPROC_SERVER, IID_IXMLDOMDocument,
                                reinterpret_cast<void**>(dom.out()))) ||
        !dom)
      throw error("the system has no XML parser");
    dom->put_async(VARIANT_FALSE);
    dom->put_validateOnParse(VARIANT_FALSE);
    dom->put_resolveExternals(VARIANT_FALSE);
  }

  template <class Pointer>
  void* handed_out(Pointer* node) {
    held.emplace_back(node);
    return node;
  }

  Ref<IXMLDOMElement> root() const {
    Ref<IXMLDOMElement> out;
    dom->get_documentElement(out.out());
    return out;
  }

  // Several objects may stand for one document: what is set of one then shows in the other.
  bool is_own(IXMLDOMDocument* other) const {
    const auto one = as<IUnknown>(other, IID_IUnknown);
    const auto own = as<IUnknown>(dom.get(), IID_IUnknown);
    if (!one || one.get() == own.get()) return one.get() != nullptr;
    int seen = 0;
    for (const VARIANT_BOOL set : {VARIANT_TRUE, VARIANT_FALSE}) {
      VARIANT_BOOL shown = set == VARIANT_TRUE ? VARIANT_FALSE : VARIANT_TRUE;
      dom->put_preserveWhiteSpace(set);
      if (SUCCEEDED(other->get_preserveWhiteSpace(&shown)) && shown == set) ++seen;
    }
    return seen == 2;
  }
  Ref<IXMLDOMElement> element(void* node) const {
    Ref<IXMLDOMElement> found = element_of(static_cast<IXMLDOMNode*>(node));
    Ref<IXMLDOMDocument> owner;
    if (found) found->get_ownerDocument(owner.out());
    if (!found || !is_own(owner.get())) throw error("not an element of the document");
    return found;
  }
  void* make_in(IXMLDOMNode* parent, std::string_view name) {
    Ref<IXMLDOMElement> made;
    if (!is_name(name) || FAILED(dom->createElement(Name(name).get(), made.out())) || !made)
      throw error("not the name of an element");
    if (FAILED(parent->appendChild(made.get(), nullptr))) throw error("an element can't be attached");
    return handed_out(made.get());
  }

  void load(std::string_view text) {
    if (has_declarations(text))
      throw error("malformed XML: a document type declaration with declarations of its own");
    VARIANT bytes;
    VariantInit(&bytes);
    bytes.vt = VT_ARRAY | VT_UI1;
    bytes.parray = SafeArrayCreateVector(VT_UI1, 0, static_cast<ULONG>(text.size()));
    if (!bytes.parray) throw std::bad_alloc();
    void* place = nullptr;
    SafeArrayAccessData(bytes.parray, &place);
    std::copy(text.begin(), text.end(), static_cast<char*>(place));
    SafeArrayUnaccessData(bytes.parray);
    VARIANT_BOOL good = VARIANT_FALSE;
    const HRESULT result = dom->load(bytes, &good);
    VariantClear(&bytes);
    if (SUCCEEDED(result) && good == VARIANT_TRUE) return take_values();
    Ref<IXMLDOMParseError> failure;
    dom->get_parseError(failure.out());
    long line = 0;
    long column = 0;
    Name reason;
    if (failure) {
      failure->get_line(&line);
      failure->get_linepos(&column);
      failure->get_reason(reason.out());
    }
    std::string what = platform::to_utf8(reason.units());
    while (!what.empty() && static_cast<unsigned char>(what.back()) <= ' ') what.pop_back();
    throw error(
        ("malformed XML, line " + std::to_string(line) + ", column " + std::to_string(column) + ": " + what)
            .c_str());
  }

  // Each attribute gets the characters that its text stands for.
  void take_values() {
    walk(
        root(),
        [](IXMLDOMElement& element, size_t, bool) {
          each_attribute(&element, [](const wide_string&, IXMLDOMNode& attribute) {
            const wide_string written = value_of(attribute);
            const wide_string meant = attribute_text(platform::to_utf8(written));
            if (meant != written) set_value(attribute, meant);
          });
        },
        [](IXMLDOMElement&, size_t) {});
  }
};

Document::Document() : impl_(std::make_unique<Impl>()) {}
Document::~Document() = default;
Document::Document(Document&&) noexcept = default;
Document& Document::operator=(Document&&) noexcept = default;

Document Document::from_text(std::string_view text) {
  if (text.size() > max_text) throw error(kTooLong);
  Document out;
  out.impl_->load(text);
  return out;
}

Document Document::from_file(const std::filesystem::path& file) {
  platform::InputFile in;
  expect(in.open(file), "can't read ", file);
  std::string text;
  for (bool last = false; !last;) {
    const size_t before = text.size();
    text.resize(before + kPiece);
    size_t got = 0;
    expect(in.read(text.data() + before, kPiece, got), "can't read ", file);
    text.resize(before + got);
    last = got < kPiece;
    if (text.size() > max_text) break;
  }
  try {
    return from_text(text);
  } catch (const error& e) {
    throw error((platform::name_of(file) + ": " + e.what()).c_str());
  }
}

std::string Document::to_text() const {
  std::string out = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";
  const auto limit = [&out] {
    if (out.size() > max_text) throw error(kTooLong);
  };
  Ref<IXMLDOMElement> root = impl_->root();
  if (!root) return out;
  walk(
      std::move(root),
      [&](IXMLDOMElement& element, size_t depth, bool has_children) {
        out.append(2 * depth, ' ').append("<").append(name_of(element));
        each_attribute(&element, [&](const wide_string& name, IXMLDOMNode& attribute) {
          out.append(" ").append(platform::to_utf8(name)).append("=\"");
          append_attribute_text(value_of(attribute), out);
          out += '"';
          limit();
        });
        out += has_children ? ">\n" : " />\n";
        limit();
      },
      [&](IXMLDOMElement& element, size_t depth) {
        out.append(2 * depth, ' ').append("</").append(name_of(element)).append(">\n");
        limit();
      });
  return out;
}

void Document::to_file(const std::filesystem::path& file) const {
  expect(platform::write_whole(file, to_text()), "can't write ", file);
}

void* Document::dom() const {
  return impl_->dom.get();
}

void* Document::create_root(std::string_view name) {
  if (impl_->root()) throw error("the document has a root element");
  return impl_->make_in(impl_->dom.get(), name);
}

void* Document::append_element(void* parent, std::string_view name) {
  const Ref<IXMLDOMElement> to = impl_->element(parent);
  return impl_->make_in(to.get(), name);
}

void* Document::root() const {
  const Ref<IXMLDOMElement> root = impl_->root();
  return root ? impl_->handed_out(static_cast<IXMLDOMNode*>(root.get())) : nullptr;
}

std::vector<void*> Document::children(void* node) const {
  std::vector<void*> out;
  for (const Ref<IXMLDOMElement>& element : elements_in(impl_->element(node).get()))
    out.push_back(impl_->handed_out(static_cast<IXMLDOMNode*>(element.get())));
  return out;
}

std::string Document::name(void* node) const {
  return name_of(*impl_->element(node).get());
}

}  // namespace quillon::xml
