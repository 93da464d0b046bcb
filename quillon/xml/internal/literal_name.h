#pragma once

#include <quillon/xml/attributes.h>

namespace quillon::xml {

// A name that is there, and the same, as long as the program runs: a document need not look at it twice.
class LiteralName : public XmlName {
 public:
  explicit LiteralName(const char* name) : XmlName(name) { is_literal_ = true; }

  // Where the literal is; null for any other name.
  static const char* place_of(const XmlName& name) { return name.is_literal_ ? name.ascii_ : nullptr; }
};

}  // namespace quillon::xml
