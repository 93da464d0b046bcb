#include <quillon/xml/internal/grammar.h>

namespace quillon::xml {

Ref<IXMLDOMNamedNodeMap> attributes_of(void* node, const char* failure) {
  Ref<IXMLDOMNamedNodeMap> out;
  if (static_cast<IXMLDOMNode*>(node)->get_attributes(out.out()) < 0 || !out) throw error(failure);
  return out;
}

Ref<IXMLDOMNode> find_child(void* node, const XmlName& name, const std::string& failure) {
  Ref<IXMLDOMNode> out;
  if (static_cast<IXMLDOMNode*>(node)->selectSingleNode(name.get(), out.out()) < 0)
    throw error(failure.c_str());
  return out;
}

Ref<IXMLDOMNode> child_of(void* node, const XmlName& name, const std::string& failure) {
  Ref<IXMLDOMNode> out = find_child(node, name, failure);
  if (!out) throw error(failure.c_str());
  return out;
}

ListFailures table_list_failures() {
  return {"failed to get program_infos node", "failed to get program_info list", "failed to get length",
          "failed to get program_info node"};
}

ListFailures list_failures(const std::string& name) {
  return {"failed to get " + name, "failed to get program_info list " + name, "failed to get length " + name,
          "failed to get program_info node " + name};
}

}  // namespace quillon::xml
