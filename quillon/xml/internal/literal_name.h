#pragma once

#include <quillon/xml/attributes.h>

namespace quillon::xml {

// A name whose text stays in its place, unchanged, as long as the program runs: a document refers to it, and
// does not ask whether it is one.
class LiteralName : public XmlName {
 public:
  explicit LiteralName(const char* name) : XmlName(name) { is_literal_ = true; }

  // Where the literal is; null for any other name.
  static const char* place_of(const XmlName& name) { return name.is_literal_ ? name.ascii_ : nullptr; }
};

}  // namespace quillon::xml
