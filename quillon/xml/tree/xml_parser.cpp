#include <algorithm>
#include <array>
#include <climits>
#include <cstdlib>
#include <expat.h>
#include <new>

#include <quillon/platform/code_page.h>
#include <quillon/platform/utf8.h>
#include <quillon/sections/error.h>
#include <quillon/xml/document.h>
#include <quillon/xml/internal/attribute_text.h>
#include <quillon/xml/tree/xml_parser.h>

namespace quillon::xml {

namespace {

// Ours rather than Expat's own: a program that replaces this library's allocator replaces the parser's too.
void* take(size_t size) {
  return std::malloc(size);
}
void* retake(void* memory, size_t size) {
  return std::realloc(memory, size);
}
void release(void* memory) {
  std::free(memory);
}

XML_Parser make_parser(const char* encoding) {
  const XML_Memory_Handling_Suite memory = {take, retake, release};
  XML_Parser const made = XML_ParserCreate_MM(encoding, &memory, nullptr);
  if (!made) throw std::bad_alloc();
  return made;
}

bool is_predefined(std::string_view entity) {
  constexpr std::string_view names[] = {"amp", "lt", "gt", "quot", "apos"};
  return std::find(std::begin(names), std::end(names), entity) != std::end(names);
}

// The characters of a name, as far as ASCII goes.
constexpr std::array<bool, 0x80> set_of(std::string_view characters) {
  std::array<bool, 0x80> out{};
  for (const char c : characters) out[static_cast<unsigned char>(c)] = true;
  return out;
}
constexpr auto kMayBegin = set_of("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz_:");
constexpr auto kMayFollow = set_of("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz_:0123456789-.");

}  // namespace

// No exception may pass through Expat: it is kept, and the parser stopped. Some handlers are called after
// that.
struct XmlParser::Handlers {
  template <class Action>
  static void guard(void* of, Action action) {
    XmlParser& self = *static_cast<XmlParser*>(of);
    if (self.thrown_) return;
    try {
      action(self);
    } catch (...) {
      self.thrown_ = std::current_exception();
      XML_StopParser(self.parser_.get(), XML_FALSE);
    }
  }

  static void start(void* of, const char* name, const char** attributes) {
    guard(of, [&](XmlParser& self) { self.start(name, attributes); });
  }
  static void end(void* of, const char*) {
    guard(of, [](XmlParser& self) { self.parent_ = self.parent_->parent(); });
  }
  static void doctype(void* of, const char*, const char* system, const char*, int has_declarations) {
    guard(of, [&](XmlParser& self) {
      if (has_declarations) self.refuse("a document type declaration with declarations of its own");
      self.declared_outside_ = system != nullptr;
    });
  }
  static void skipped_entity(void* of, const char*, int) {
    guard(of, [](XmlParser& self) { self.refuse("a reference to an entity that is not known"); });
  }
  static void text(void* of, const char* text, int size) {
    guard(of, [&](XmlParser& self) { self.tag_.append(text, static_cast<size_t>(size)); });
  }
};

void XmlParser::Free::operator()(XML_Parser parser) const {
  XML_ParserFree(parser);
}

XmlParser::XmlParser(TreeDocument& tree) : parser_(make_parser(nullptr)), tree_(tree) {
  XML_SetUserData(parser_.get(), this);
  XML_SetElementHandler(parser_.get(), Handlers::start, Handlers::end);
  XML_SetStartDoctypeDeclHandler(parser_.get(), Handlers::doctype);
  XML_SetSkippedEntityHandler(parser_.get(), Handlers::skipped_entity);
}

void XmlParser::parse(std::string_view whole) {
  check(XML_Parse(parser_.get(), whole.data(), static_cast<int>(whole.size()), XML_TRUE));
}

XmlParser::Room XmlParser::room(size_t least) {
  const XML_Index parsed = std::max(XML_GetCurrentByteIndex(parser_.get()), XML_Index{0});
  const size_t size = std::min<size_t>(std::max(least, taken_ - static_cast<size_t>(parsed)), INT_MAX / 4);
  void* const place = XML_GetBuffer(parser_.get(), static_cast<int>(size));
  if (!place) throw std::bad_alloc();
  return {static_cast<char*>(place), size};
}

void XmlParser::parse_room(size_t size, bool last) {
  taken_ += size;
  check(XML_ParseBuffer(parser_.get(), static_cast<int>(size), last));
}

void XmlParser::check(int status) {
  if (thrown_) std::rethrow_exception(thrown_);
  if (status == XML_STATUS_OK) return;
  const XML_Error code = XML_GetErrorCode(parser_.get());
  if (code == XML_ERROR_NO_MEMORY) throw std::bad_alloc();
  refuse(XML_ErrorString(code));
}

void XmlParser::refuse(const std::string& what) const {
  const std::string text = "malformed XML, line " + std::to_string(XML_GetCurrentLineNumber(parser_.get())) +
                           ", column " + std::to_string(XML_GetCurrentColumnNumber(parser_.get()) + 1) +
                           ": " + what;
  throw error(text.c_str());
}

void XmlParser::start(const char* name, const char** attributes) {
  if (declared_outside_) refuse_entities();
  TreeElement* const made = tree_.make_element(tree_.intern_parsed(name));
  for (; *attributes; attributes += 2) {
    TreeAttribute* const attribute = tree_.make_attribute(tree_.intern_parsed(attributes[0]));
    const std::string_view value(attributes[1]);
    if (!(platform::is_ascii(value) ? attribute->set(value) : attribute->set(attribute_text(value))))
      refuse("an attribute of more than " + std::to_string(Document::max_attribute) + " characters");
    made->add_attribute(attribute);
  }
  parent_ ? parent_->add_child(made) : tree_.set_root(made);
  parent_ = made;
}

// Expat assumes that an entity it does not know is declared in the file that is not read, and silently drops
// it from an attribute.
void XmlParser::refuse_entities() {
  tag_.clear();
  XML_SetDefaultHandler(parser_.get(), Handlers::text);
  XML_DefaultCurrent(parser_.get());
  XML_SetDefaultHandler(parser_.get(), nullptr);
  for (size_t at = tag_.find('&'); at != std::string::npos; at = tag_.find('&', at + 1)) {
    const std::string_view name = std::string_view(tag_).substr(at + 1, tag_.find(';', at) - at - 1);
    if (name[0] != '#' && !is_predefined(name)) refuse("a reference to an entity that is not known");
  }
}

bool is_xml_name(wide_view name) {
  if (name.empty() || name.size() > Document::max_attribute) return false;
  unsigned all = 0;
  bool good = true;
  for (const uint16_t unit : name) {
    all |= unit;
    good &= unit >= 0x80 || kMayFollow[unit];
  }
  if (!good || (name[0] < 0x80 && !kMayBegin[name[0]])) return false;
  if (all < 0x80) return true;
  // Beyond ASCII a name is what the parser reads as one.
  std::string element(1, '<');
  element.append(platform::to_utf8(name)).append("/>");
  const std::unique_ptr<XML_ParserStruct, void (*)(XML_Parser)> parser(make_parser("UTF-8"), XML_ParserFree);
  const XML_Status status =
      XML_Parse(parser.get(), element.data(), static_cast<int>(element.size()), XML_TRUE);
  if (XML_GetErrorCode(parser.get()) == XML_ERROR_NO_MEMORY) throw std::bad_alloc();
  return status == XML_STATUS_OK;
}

}  // namespace quillon::xml
