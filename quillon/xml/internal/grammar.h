#pragma once

// The grammar of the tree that tables, records and descriptors share. For the library's own sources: every
// name is a literal.

#include <string>
#include <utility>

#include <quillon/sections/error.h>
#include <quillon/xml/attributes.h>
#include <quillon/xml/dom.h>
#include <quillon/xml/internal/element.h>
#include <quillon/xml/internal/literal_name.h>
#include <quillon/xml/internal/ref.h>

namespace quillon::xml {

// Writes attributes on one element until the first that fails; what was written stays.
class Writer {
 public:
  Writer(void* document, void* element) : element_(document, element) {}

  template <class Value>
  bool add(const char* name, const Value& value) {
    if (ok_) ok_ = element_.set(LiteralName(name), value);
    return ok_;
  }
  bool ok() const { return ok_; }
  bool fail() { return ok_ = false; }

  const Element& element() const { return element_; }

 private:
  Element element_;
  bool ok_ = true;
};

// The list of a table: list and items are attached before they are filled, and every failure ends the save.
template <class Rows>
bool save_table_list(const Element& parent, const char* list_name, const char* item_name, const Rows& rows) {
  const Element list = parent.make(list_name);
  if (!list || !parent.append(list)) return false;
  for (const auto& row : rows) {
    Element item = list.make(item_name);
    if (!item) return false;
    item = list.attach(std::move(item));
    if (!item || !row._save_stream_info(item.document(), item.get())) return false;
  }
  return true;
}

// The list of a descriptor: items and list are attached when they are filled, and the result of an item's own
// save is ignored.
template <class Rows>
bool save_list(const Element& parent, const char* list_name, const char* item_name, const Rows& rows) {
  const Element list = parent.make(list_name);
  if (!list) return false;
  for (const auto& row : rows) {
    const Element item = list.make(item_name);
    if (!item) return false;
    row.SaveSection(item.document(), item.get());
    if (!list.append(item)) return false;
  }
  return parent.append(list);
}

// Throws error(failure) if the map can't be had.
Ref<IXMLDOMNamedNodeMap> attributes_of(void* node, const char* failure);

// The child element of that name, null if there is none; throws error(failure) if it can't be had.
Ref<IXMLDOMNode> find_child(void* node, const XmlName& name, const std::string& failure);
// The same for a child that must be there: throws error(failure) if it is not.
Ref<IXMLDOMNode> child_of(void* node, const XmlName& name, const std::string& failure);

// The failure texts of a list's four steps.
struct ListFailures {
  std::string list;
  std::string children;
  std::string length;
  std::string item;
};

// The texts of the tables' lists, which name programs whatever they hold: kept, tools match on them.
ListFailures table_list_failures();
// Those of every other list, which end in its name.
ListFailures list_failures(const std::string& name);

// Calls `load(item)` with each child of a list element, whatever its name.
template <class Load>
void load_items(IXMLDOMNode* list, const ListFailures& failures, Load load) {
  Ref<IXMLDOMNodeList> children;
  if (list->get_childNodes(children.out()) < 0 || !children) throw error(failures.children.c_str());
  long length = 0;
  if (children->get_length(&length) < 0) throw error(failures.length.c_str());
  for (long i = 0; i < length; ++i) {
    Ref<IXMLDOMNode> item;
    if (children->get_item(i, item.out()) < 0 || !item) throw error(failures.item.c_str());
    load(static_cast<void*>(item.get()));
  }
}
template <class Load>
void load_list(void* node, const XmlName& name, const ListFailures& failures, Load load) {
  load_items(child_of(node, name, failures.list).get(), failures, load);
}

// Reads attributes of one element; a missing one throws error("failed"), a missing map error(`no_map`).
class Reader {
 public:
  explicit Reader(void* node, const char* no_map = "failed")
      : node_(static_cast<IXMLDOMNode*>(node)), attributes_(attributes_of(node, no_map)) {}

  // False, and no change, if it is missing.
  template <class Value>
  bool find(const XmlName& name, Value& value) {
    return GetAttributeValue(attributes_.get(), name, value) >= 0;
  }
  template <class Value>
  void get(const XmlName& name, Value& value, const char* failure = "failed") {
    if (!find(name, value)) throw error(failure);
  }
  void get(const XmlName& name, CodeCharacters& value, const char* failure = "failed") {
    if (GetAttributeValue(attributes_.get(), name, value.data(), CodeCharacters::size) < 0)
      throw error(failure);
  }

 private:
  Ref<IXMLDOMNode> node_;
  Ref<IXMLDOMNamedNodeMap> attributes_;
};

}  // namespace quillon::xml
