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

std::array<const DescriptorStore::Slot*, Family::max_kinds + 1> DescriptorStore::in_saving_order(
    const Family& family) const {
  std::array<const Slot*, Family::max_kinds + 1> out;
  size_t count = 0;
  // Few kinds occur: each goes to its place among those before it.
  for (const Slot& slot : slots_) {
    const size_t rank = family.rank_of(*slot.kind);
    if (rank == 0) continue;
    size_t place = count++;
    for (; place > 0 && family.rank_of(*out[place - 1]->kind) > rank; --place) out[place] = out[place - 1];
    out[place] = &slot;
  }
  out[count] = nullptr;
  return out;
}

bool DescriptorStore::save(const Family& family, void* document, void* parent) const {
  auto* const dom = static_cast<IXMLDOMDocument*>(document);
  const xml::Ref<IXMLDOMElement> list = xml::create_element(dom, "descriptors");
  if (list)
    for (const Slot* slot : in_saving_order(family)) {
      if (!slot) break;
      const Kind& kind = *slot->kind;
      const XmlName name(kind.saved);
      for (size_t i = 0; i < kind.ops->size(slot->vector); ++i) {
        const xml::Ref<IXMLDOMElement> element = xml::create_element(dom, name);
        if (!element) continue;
        kind.ops->at(slot->vector, i).SaveSection(document, element.get());
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
  for (const Slot* slot : in_saving_order(family)) {
    if (!slot) break;
    if (slot->kind == &left_out) continue;
    for (size_t i = 0; i < slot->kind->ops->size(slot->vector); ++i)
      slot->kind->ops->at(slot->vector, i).dump_state(stream);
  }
}

}  // namespace quillon::detail
