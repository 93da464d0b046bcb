// The XML form of the section headers.

#include <string>

#include <quillon/sections/psi_base.h>
#include <quillon/xml/internal/grammar.h>

namespace quillon {

namespace {

int load_number(IXMLDOMNamedNodeMap* attributes, const char* name) {
  int value = 0;
  if (GetAttributeValue(attributes, name, value) < 0)
    throw error((std::string("failed to get ") + name).c_str());
  return value;
}

}  // namespace

template <class Self, class Field>
void PsiTableBase::each_header_field(Self& self, Field&& field) {
  field("table_id", self.table_id_);
  field("syntax_indicator", self.syntax_indicator_);
  field("section_length", self.section_length_);
  field("context_id", self.context_id_);
  field("version_number", self.version_number_);
  field("section_number", self.section_number_);
  field("last_section_number", self.last_section_number_);
  field("current_next_indicator", self.current_next_indicator_);
  field("crc32", self.crc_);
}

template <class Self, class Field>
void PsiBase::each_header_field(Self& self, Field&& field) {
  field("table_id", self.table_id_);
  field("section_length", self.section_length_);
}

bool PsiTableBase::SaveSection(void* document, void* node) const {
  xml::Writer out(document, node);
  each_header_field(*this, [&](const char* name, auto value) { out.add(name, static_cast<int>(value)); });
  return out.ok() && _save_section(document, node);
}

void PsiTableBase::ParseDOM(void* node) {
  const xml::Ref<IXMLDOMNode> held(static_cast<IXMLDOMNode*>(node));
  const auto attributes = xml::attributes_of(node, "failed to get attribute map");
  each_header_field(*this, [&](const char* name, auto& field) {
    field = static_cast<std::decay_t<decltype(field)>>(load_number(attributes.get(), name));
  });
  _parse(node);
  parsed_ = true;
}

bool PsiBase::SaveSection(void* document, void* node) const {
  xml::Writer out(document, node);
  each_header_field(*this, [&](const char* name, int value) { out.add(name, value); });
  return out.ok() && _save_section(document, node);
}

void PsiBase::ParseDOM(void* node) {
  const xml::Ref<IXMLDOMNode> held(static_cast<IXMLDOMNode*>(node));
  const auto attributes = xml::attributes_of(node, "failed to get attribute map");
  each_header_field(*this,
                    [&](const char* name, int& field) { field = load_number(attributes.get(), name); });
  _parse(node);
  parsed_ = true;
}

}  // namespace quillon
