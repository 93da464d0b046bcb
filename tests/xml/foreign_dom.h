#pragma once

// A whole DOM of another maker, compiled without type information.

#include <memory>

#include <quillon/xml/dom.h>

namespace quillon::test {

// What it does with a question for an interface that it does not know.
enum class UnknownInterface { refuse, answer_with_itself, pass_on };

class ForeignDocument;

class ForeignDom {
 public:
  // `other` is whom it passes questions on to.
  explicit ForeignDom(UnknownInterface unknown = UnknownInterface::refuse, IUnknown* other = nullptr);
  ~ForeignDom();

  IXMLDOMDocument* document() const;
  IXMLDOMElement* make_element(const char* name) const;
  IXMLDOMAttribute* make_attribute(const char* name) const;
  // References that were handed out and not released.
  long references() const;

 private:
  std::unique_ptr<ForeignDocument> document_;
};

}  // namespace quillon::test
