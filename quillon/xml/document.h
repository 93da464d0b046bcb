#pragma once

#include <cstddef>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <quillon/platform/api.h>
#include <quillon/sections/dom_handles.h>

namespace quillon::xml {

// An XML document for those who do not write COM. The pointers that it hands out are good as long as it
// lives.
//
//   quillon::xml::Document d;
//   pat.SaveSection(d, d.add_root("pat"));
//   d.to_file("pat.xml");
//   ...
//   pat.ParseDOM(quillon::xml::Document::from_file("pat.xml").root_element());
//
// The order of attributes is kept, and text between elements is dropped, since attributes carry all data. The
// tree holds any UTF-16; XML 1.0 has no place for most control characters. Such a character is written as
// U+E000 plus its code, and a real U+E000 to U+E01F has a U+E000 before it; U+0000 is written as U+E000 and
// U+E020. Reading reverses that. U+FFFE, U+FFFF and halves of surrogate pairs are written as U+FFFD.
//
// On Windows the tree is the system's own and so is the parser, but for document type declarations: a text
// that is set ends at U+0000, depth and length are limited by the system, and a prefix before a colon must be
// declared.
//
// Out of memory throws std::bad_alloc, every other failure error with a text alone (code -1). A document that
// was moved from may only be assigned to or destroyed.
//
// For threads the rule of the tables holds (PsiBase1). The pointers that the document hands out share one
// reference count: what is done with them, a load included, is one thread's at a time.
class QUILLON_API Document {
 public:
  // The limits of a document. A longer attribute is refused both where it is read and where it is set.
  static constexpr size_t max_text = 0x7FFFFFFF;             // bytes
  static constexpr size_t max_attribute = size_t{16} << 20;  // UTF-16 units

  Document();
  ~Document();
  Document(Document&&) noexcept;
  Document& operator=(Document&&) noexcept;

  // Throws error for what is not well-formed XML 1.0, with line and column, and for a text of more than
  // max_text bytes. A document type declaration is skipped, but refused if it has declarations of its own:
  // there are no entities but the five of XML.
  static Document from_text(std::string_view text);
  // As from_text; the error names the file.
  static Document from_file(const std::filesystem::path& file);

  // UTF-8, indented by two blanks a level. Throws error for more than max_text bytes.
  std::string to_text() const;
  // The file is written whole or not at all: if it can't be, throws error, naming it, and a file that was
  // there before is as it was. A pipe or a device, which can't be replaced, is written to directly.
  void to_file(const std::filesystem::path& file) const;

  // For SaveSection.
  operator DomDocument() const { return DomDocument(dom()); }
  // Makes the root; throws error if there is one, and for what is not a name in UTF-8.
  DomElement add_root(std::string_view name) { return DomElement(create_root(name)); }
  // Makes a child element of `parent`; throws error for what is not a name. Here as below, what is null or
  // not an element of this document throws error.
  DomElement append_element(DomElement parent, std::string_view name) {
    return DomElement(append_element(parent.get(), name));
  }
  // For ParseDOM; null if there is none.
  DomElement root_element() const { return DomElement(root()); }
  // The child elements of an element, in document order.
  std::vector<DomElement> children(DomElement element) const {
    const std::vector<void*> nodes = children(element.get());
    return std::vector<DomElement>(nodes.begin(), nodes.end());
  }
  std::string name(DomElement element) const { return name(element.get()); }

  // The same without types: an IXMLDOMDocument*, IXMLDOMElement*s that are made, and IXMLDOMNode*s of
  // elements that are there.
  void* dom() const;
  void* create_root(std::string_view name);
  void* append_element(void* parent, std::string_view name);
  void* root() const;
  std::vector<void*> children(void* node) const;
  std::string name(void* node) const;

 private:
  struct Impl;
  std::unique_ptr<Impl> impl_;
};

}  // namespace quillon::xml
