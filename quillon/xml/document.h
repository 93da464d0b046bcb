#pragma once

#include <cstddef>
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
// Attribute order is kept, and text between elements is dropped, since attributes carry all data. The tree
// holds any UTF-16; XML 1.0 has no place for most control characters. Such a one is written as U+E000 plus
// its code, and a real U+E000 to U+E01F has a U+E000 in front; U+0000 is written as U+E000 and U+E020.
// Reading reverses that. U+FFFE, U+FFFF and halves of surrogate pairs are written as U+FFFD.
//
// Out of memory is std::bad_alloc, all else that can go wrong is error.
//
// For threads the rule of the tables holds (PsiBase1). The pointers that it hands out share one reference
// count: what is done with them, a load included, is one thread's at a time.
class QUILLON_API Document {
 public:
  // What a document takes at most. A longer attribute is refused where it is set too.
  static constexpr size_t max_text = 0x7FFFFFFF;             // bytes
  static constexpr size_t max_attribute = size_t{16} << 20;  // UTF-16 units

  Document();
  ~Document();
  Document(Document&&) noexcept;
  Document& operator=(Document&&) noexcept;

  // Throws error on what is no well-formed XML 1.0, with line and column. A document type declaration is
  // passed over, but refused if it has declarations of its own: there are no entities but the five of XML.
  static Document from_text(std::string_view text);
  // As from_text; the error names the file.
  static Document from_file(const std::filesystem::path& file);

  // UTF-8, indented by two blanks.
  std::string to_text() const;
  // The file is written whole or not at all: if it can't be, throws error, naming it, and a file that was
  // there before is as it was. What is no regular file, a pipe or a device, is written to directly.
  void to_file(const std::filesystem::path& file) const;

  // The IXMLDOMDocument*, for SaveSection.
  void* dom() const;
  // Makes the root, an IXMLDOMElement*; throws error if there is one, and for what is no name in UTF-8.
  void* create_root(std::string_view name);
  // Makes a child element of `parent`, an IXMLDOMElement*. Here as below, throws error for what is null or no
  // element of this document.
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
