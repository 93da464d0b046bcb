#pragma once

#include <quillon/platform/api.h>

namespace quillon::xml {

// A document of any DOM: an IXMLDOMDocument*, which is not owned. This and DomElement are the typed form of
// the void* that saves and loads take, so that the two can't be swapped.
class DomDocument {
 public:
  explicit DomDocument(void* document) : document_(document) {}
  void* get() const { return document_; }

 private:
  void* document_;
};

// An element of it: an IXMLDOMElement* as a save takes it, which is also the IXMLDOMNode* that a load takes.
class DomElement {
 public:
  DomElement() = default;
  explicit DomElement(void* element) : element_(element) {}
  void* get() const { return element_; }
  explicit operator bool() const { return element_ != nullptr; }
  // Of the pointers. A DOM may have several to one element, as MSXML does.
  bool operator==(const DomElement&) const = default;

 private:
  void* element_ = nullptr;
};

}  // namespace quillon::xml
