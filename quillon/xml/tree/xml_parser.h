#pragma once

#include <cstddef>
#include <exception>
#include <memory>
#include <string>
#include <string_view>

#include <quillon/platform/wide_string.h>
#include <quillon/xml/tree/dom_tree.h>

struct XML_ParserStruct;

namespace quillon::xml {

// Builds a tree from the text of a document, which is handed over whole or in pieces. What is not well-formed
// XML 1.0, and every document type declaration with declarations of its own, throws error with line and
// column; the tree then holds what was read until there, and the parser can't be used again. Throws
// std::bad_alloc when memory runs out.
class XmlParser {
 public:
  explicit XmlParser(TreeDocument& tree);
  XmlParser(const XmlParser&) = delete;
  XmlParser& operator=(const XmlParser&) = delete;

  void parse(std::string_view whole);

  // Room for the next piece: at least `least` bytes, and as many as the token that is not yet complete has,
  // so that the time grows with the length of the text however long a token is.
  struct Room {
    char* place;
    size_t size;
  };
  Room room(size_t least);
  // The first `size` bytes of the room are filled; no more come when `last`.
  void parse_room(size_t size, bool last);

 private:
  struct Handlers;  // what Expat calls

  void check(int status);
  [[noreturn]] void refuse(const std::string& what) const;
  void start(const char* name, const char** attributes);
  void refuse_entities();

  struct Free {
    void operator()(XML_ParserStruct* parser) const;
  };
  std::unique_ptr<XML_ParserStruct, Free> parser_;
  TreeDocument& tree_;
  TreeElement* parent_ = nullptr;
  std::exception_ptr thrown_;      // in a handler
  bool declared_outside_ = false;  // in a file that is not read: entities, for example
  std::string tag_;                // a start tag as it is written, when that matters
  size_t taken_ = 0;
};

// Whether an element or attribute may have that name.
bool is_xml_name(wide_view name);

}  // namespace quillon::xml
