#include <ostream>

#include <quillon/descriptors/store.h>
#include <quillon/xml/grammar.h>

namespace quillon::detail {

void* DescriptorStore::vector_of(const Kind& kind, size_t room) {
  for (Slot& slot : slots_)
    if (slot.kind == &kind) return slot.vector;
  return slots_.emplace_back(kind, room).vector;
}

void DescriptorStore::clear(const Kind& kind) {
  std::erase_if(slots_, [&kind](const Slot& slot) { return slot.kind == &kind; });
}

void DescriptorStore::parse(const Family& family, ByteView descriptor, const LoopContext& context) {
  parse(family, descriptor, context, 1);
}

void DescriptorStore::parse(const Family& family, ByteView descriptor, const LoopContext& context,
                            size_t room) {
  const Kind& kind = family.kinds[family.kind_of_tag[descriptor[0]]];
  void* const vector = vector_of(kind, room);
  if (!context.failures && !family.catches_failures) return kind.ops->append_parsed(vector, descriptor);
  try {
    kind.ops->append_parsed(vector, descriptor);
  } catch (const error& failure) {
    const Kind& general = family.kinds[family.general];
    general.ops->append_parsed(vector_of(general, 1), descriptor);
    if (context.failures)
      context.failures->push_back({descriptor[0], static_cast<int>(descriptor.offset_from(context.body)),
                                   failure.what(), failure.get_code()});
  }
}

bool DescriptorStore::walk(const Family& family, ByteView view, int begin, int end,
                           const LoopContext& context) {
  // Counted first, so that each vector is made once and in its full size.
  std::array<uint16_t, Family::max_kinds> count{};
  size_t new_kinds = 0;
  quillon::walk(view, begin, end, [&](ByteView descriptor, int) {
    const uint8_t kind = family.kind_of_tag[descriptor[0]];
    if (count[kind]++ == 0 && !find(family.kinds[kind])) ++new_kinds;
    return descriptor[1] + 2;
  });
  slots_.reserve(slots_.size() + new_kinds);
  return quillon::walk(view, begin, end, [&](ByteView descriptor, int) {
    if (context.positions)
      context.positions->push_back(static_cast<int>(descriptor.offset_from(context.body)));
    parse(family, descriptor, context, count[family.kind_of_tag[descriptor[0]]]);
    return descriptor[1] + 2;
  });
}

bool DescriptorStore::save(const Family& family, void* document, void* parent) const {
  auto* const dom = static_cast<IXMLDOMDocument*>(document);
  const xml::Ref<IXMLDOMElement> list = xml::create_element(dom, "descriptors");
  for (size_t i = 0; list && i < family.saved_count; ++i) {
    const Kind& kind = family.kinds[family.saving_order[i]];
    const Slot* const slot = find(kind);
    const size_t count = slot ? kind.ops->size(slot->vector) : 0;
    for (size_t k = 0; k < count; ++k) {
      const xml::Ref<IXMLDOMElement> element = xml::create_element(dom, kind.saved);
      if (!element) continue;
      kind.ops->at(slot->vector, k).SaveSection(document, element.get());
      list->appendChild(element.get(), nullptr);
    }
  }
  static_cast<IXMLDOMElement*>(parent)->appendChild(list.get(), nullptr);
  return true;
}

bool DescriptorStore::load(const Family& family, void* node) {
  static const xml::ListFailures failures = {
      "failed to get descriptors node", "failed to get descriptors node list",
      "failed to get descriptors node list length", "failed to get item"};
  xml::load_list(node, "descriptors", failures, [&](void* item) {
    struct Name {
      BSTR text = nullptr;
      ~Name() { SysFreeString(text); }
    } name;
    if (static_cast<IXMLDOMNode*>(item)->get_nodeName(&name.text) < 0) throw error("failed to get node name");
    const wide_view wanted(name.text, SysStringLen(name.text));
    for (size_t i = 0; i < family.kind_count; ++i) {
      const Kind& kind = family.kinds[i];
      const std::string_view loaded = kind.loaded ? kind.loaded : "";
      if (loaded.size() != wanted.size() || !std::equal(loaded.begin(), loaded.end(), wanted.begin()))
        continue;
      kind.ops->append_loaded(vector_of(kind, 1), item);
      break;
    }
  });
  return true;
}

void DescriptorStore::dump(const Family& family, std::ostream& stream, const Kind& left_out) const {
  for (size_t i = 0; i < family.saved_count; ++i) {
    const Kind& kind = family.kinds[family.saving_order[i]];
    const Slot* const slot = &kind == &left_out ? nullptr : find(kind);
    if (!slot) continue;
    for (size_t k = 0; k < kind.ops->size(slot->vector); ++k)
      kind.ops->at(slot->vector, k).dump_state(stream);
  }
}

}  // namespace quillon::detail
