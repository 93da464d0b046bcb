#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <quillon/platform/api.h>

namespace quillon::xml {

// An XML document for those who do not write COM. The pointers that it hands out are good as long as it
// lives.
//
//   quillon::xml::Document d;
//   pat.SaveSection(d.dom(), d.create_root("pat"));
//   d.to_file("pat.xml");
//
// Attribute order is kept, text between elements is dropped, since attributes carry all data, and a control
// character stands as a character reference that is read back.
class QUILLON_API Document {
 public:
  Document();
  ~Document();
  Document(Document&&) noexcept;
  Document& operator=(Document&&) noexcept;

  // Throws error on malformed XML, with line and column. There is no DTD or entity expansion.
  static Document from_text(std::string_view utf8);
  // As from_text; throws error, naming the file, if it can't be read.
  static Document from_file(const std::filesystem::path& file);

  // UTF-8, indented by two blanks.
  std::string to_text() const;
  // Throws error, naming the file, if it can't be written.
  void to_file(const std::filesystem::path& file) const;

  // The IXMLDOMDocument*, for SaveSection.
  void* dom() const;
  // Makes the root, an IXMLDOMElement*; throws error if there is one.
  void* create_root(std::string_view name);
  // Makes a child element of `parent`, an IXMLDOMElement*.
  void* append_element(void* parent, std::string_view name);
  // The root element as a node, for ParseDOM; null if there is none.
  void* root() const;
  // The child elements of a node, in document order.
  std::vector<void*> children(void* node) const;
  std::string name(void* node) const;

 private:
  struct Impl;
  std::unique_ptr<Impl> impl_;
};

}  // namespace quillon::xml
