#include <ostream>

#include <quillon/descriptors/store.h>
#include <quillon/xml/internal/com_failure.h>
#include <quillon/xml/internal/grammar.h>

namespace quillon::detail {

size_t DescriptorStore::place_of(const Kind& kind, size_t room) {
  for (size_t i = 0; i < slots_.size(); ++i)
    if (slots_[i].kind == &kind) return i;
  slots_.emplace_back(kind, room);
  return slots_.size() - 1;
}

void DescriptorStore::clear(const Kind& kind) {
  std::erase_if(slots_, [&kind](const Slot& slot) { return slot.kind == &kind; });
}

void DescriptorStore::parse(const Family& family, ByteView descriptor, const LoopContext& context) {
  parse(family, descriptor, context, place_of(family.kind_for_tag(descriptor[0]), 1));
}

void DescriptorStore::parse(const Family& family, ByteView descriptor, const LoopContext& context,
                            size_t place) {
  const auto append_to = [&](Slot& slot) { slot.kind->ops->append_parsed(slot.vector, descriptor); };
  if (!context.failures && !family.catches_failures) return append_to(slots_[place]);
  try {
    append_to(slots_[place]);
  } catch (const error& failure) {
    append_to(slots_[place_of(family.general_kind(), 1)]);
    if (context.failures)
      context.failures->push_back({descriptor[0], static_cast<int>(descriptor.offset_from(context.body)),
                                   failure.what(), failure.get_code()});
  }
}

bool DescriptorStore::walk(const Family& family, ByteView view, int begin, int end,
                           const LoopContext& context) {
  // Counted first, so that each vector is made once and in its full size.
  struct Found {
    uint8_t kind;
    uint16_t count;
    size_t place;
  };
  std::array<Found, Family::max_kinds> found;
  std::array<uint8_t, Family::max_kinds> found_as{};  // by kind, from 1
  size_t kinds = 0;
  quillon::walk(view, begin, end, [&](ByteView descriptor, int) {
    uint8_t& as = found_as[family.kind_of_tag[descriptor[0]]];
    if (as == 0) {
      found[kinds] = {family.kind_of_tag[descriptor[0]], 0, 0};
      as = static_cast<uint8_t>(++kinds);
    }
    ++found[as - size_t{1}].count;
    return descriptor[1] + 2;
  });
  slots_.reserve(slots_.size() + kinds);
  for (size_t i = 0; i < kinds; ++i) found[i].place = place_of(family.kinds[found[i].kind], found[i].count);
  return quillon::walk(view, begin, end, [&](ByteView descriptor, int) {
    if (context.positions)
      context.positions->push_back(static_cast<int>(descriptor.offset_from(context.body)));
    const uint8_t as = found_as[family.kind_of_tag[descriptor[0]]];
    parse(family, descriptor, context, found[as - size_t{1}].place);
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
  const xml::Ref<IXMLDOMDocument> held_document(dom);
  const xml::Ref<IXMLDOMElement> held_parent(static_cast<IXMLDOMElement*>(parent));
  const xml::Ref<IXMLDOMElement> list = xml::create_element(dom, "descriptors");
  if (list)
    for (const Slot* slot : in_saving_order(family)) {
      if (!slot) break;
      const Kind& kind = *slot->kind;
      for (size_t i = 0; i < kind.ops->size(slot->vector); ++i) {
        const xml::Ref<IXMLDOMElement> element = xml::create_element(dom, kind.saved);
        if (!element) continue;
        kind.ops->at(slot->vector, i).SaveSection(document, element.get());
        list->appendChild(element.get(), nullptr);
      }
    }
  held_parent->appendChild(list.get(), nullptr);
  return true;
}

bool DescriptorStore::load(const Family& family, void* node) {
  static const xml::ListFailures failures = {
      "failed to get descriptors node", "failed to get descriptors node list",
      "failed to get descriptors node list length", "failed to get item"};
  const xml::Ref<IXMLDOMNode> held(static_cast<IXMLDOMNode*>(node));
  const xml::Ref<IXMLDOMNode> list = xml::find_child(node, "descriptors", failures.list);
  if (!list) return true;
  xml::load_items(list.get(), failures, [&](void* item) {
    struct Name {
      BSTR text = nullptr;
      ~Name() { SysFreeString(text); }
    } name;
    auto* const element = static_cast<IXMLDOMNode*>(item);
    if (const HRESULT result = element->get_nodeName(&name.text); result < 0) {
      xml::expect_memory(result, element);
      throw error("failed to get node name");
    }
    const wide_view wanted(name.text, SysStringLen(name.text));
    for (size_t i = 0; i < family.kind_count; ++i) {
      const Kind& kind = family.kinds[i];
      const std::string_view loaded = kind.loaded ? kind.loaded : "";
      if (loaded.size() != wanted.size() || !std::equal(loaded.begin(), loaded.end(), wanted.begin()))
        continue;
      kind.ops->append_loaded(slots_[place_of(kind, 1)].vector, item);
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
