#include <algorithm>
#include <ostream>

#include <quillon/descriptors/internal/family.h>
#include <quillon/faces/field_sink.h>
#include <quillon/sections/internal/rows.h>
#include <quillon/xml/internal/bstr.h>
#include <quillon/xml/internal/com_failure.h>
#include <quillon/xml/internal/grammar.h>

namespace quillon {

namespace detail {

namespace {

// What is kept of a loop beside its descriptors, as if it were a kind of them: most loops have neither.
constexpr Kind kPositions{nullptr, nullptr, &storage_ops<int>, false};
// The kind of each descriptor, in wire order. As long as each kind comes in one run, the slots are in that
// order too; it is written down from the first descriptor on that comes out of turn.
constexpr Kind kArrivals{nullptr, nullptr, &storage_ops<uint8_t>, false};

bool holds_descriptors(const Slots::Slot& slot) {
  return slot.kind->ops->size != nullptr;
}

}  // namespace

Slots* Slots::make(size_t room) {
  return new (::operator new(sizeof(Slots) + room * sizeof(Slot))) Slots(room);
}

void Slots::destroy(Slots* slots) {
  for (Slot& slot : *slots) slot.kind->ops->destroy(slot.vector);
  ::operator delete(slots);
}

Slots* Slots::copy_of(const Slots& other) {
  Slots* out = make(other.size_);
  try {
    for (const Slot& slot : other) {
      Slot& copy = *out->end();
      copy.kind = slot.kind;
      slot.kind->ops->copy(copy.vector, slot.vector);
      ++out->size_;
    }
  } catch (...) {
    destroy(out);
    throw;
  }
  return out;
}

void Slots::reserve(Slots*& slots, size_t room) {
  if (slots && slots->room_ >= room) return;
  Slots* const larger = make(room);
  if (slots) {
    for (Slot& slot : *slots) {
      Slot& moved = *larger->end();
      moved.kind = slot.kind;
      slot.kind->ops->move(moved.vector, slot.vector);
      ++larger->size_;
    }
    destroy(slots);
  }
  slots = larger;
}

size_t Slots::place_of(Slots*& slots, const Kind& kind, size_t room) {
  const size_t size = slots ? slots->size_ : 0;
  for (size_t i = 0; i < size; ++i)
    if ((*slots)[i].kind == &kind) return i;
  if (!slots || size == slots->room_) reserve(slots, size + std::max<size_t>(size, 1));
  Slot& added = *slots->end();
  added.kind = &kind;
  kind.ops->create(added.vector, room);
  ++slots->size_;
  return size;
}

void Slots::erase(Slot* slot) {
  slot->kind->ops->destroy(slot->vector);
  for (Slot* next = slot + 1; next != end(); ++next) {
    next[-1].kind = next->kind;
    next->kind->ops->move(next[-1].vector, next->vector);
    next->kind->ops->destroy(next->vector);
  }
  --size_;
}

namespace {

// Adds descriptors to a loop and keeps their order.
class Arrivals {
 public:
  Arrivals(const Family& family, Slots*& slots) : family_(family), slots_(slots) {
    const size_t size = slots ? slots->size() : 0;
    for (size_t i = 0; i < size; ++i) {
      const Slots::Slot& slot = (*slots)[i];
      if (slot.kind == &kArrivals) written_ = true;
      if (holds_descriptors(slot) && slot.kind->ops->size(slot.vector) > 0) last_ = i;
    }
  }

  // Throws error if the descriptor's class refuses it, in the kept reading of a table that is not tolerant.
  void parse(ByteView descriptor, const RowContext& row, size_t place) {
    const bool standard = descriptor.standard();
    if (!row.failures && !family_.catches_failures && !standard) return parse(descriptor, place);
    try {
      parse(descriptor, place);
    } catch (const error& failure) {
      // Quirk: a descriptor that its class refuses, in ATSC loops
      const bool by_tag = family_.catches_failures && standard && descriptor[0] >= 128;
      const Kind& kind = by_tag ? family_.user_private_kind() : family_.general_kind();
      parse(descriptor, Slots::place_of(slots_, kind, 1));
      // Quirk: Ait tags 0x06, 0x07 whose length is no multiple of 11, 35
      const bool is_another =
          standard && family_.has_reused_tags && (descriptor[0] == 6 || descriptor[0] == 7);
      if (row.failures && !is_another)
        row.failures->push_back({descriptor[0], static_cast<int>(descriptor.offset_from(row.body)),
                                 failure.what(), failure.get_code()});
    }
  }
  void load(void* node, const Kind& kind) {
    const size_t place = Slots::place_of(slots_, kind, 1);
    kind.ops->append_loaded((*slots_)[place].vector, node);
    came(place);
  }

 private:
  void parse(ByteView descriptor, size_t place) {
    Slots::Slot& slot = (*slots_)[place];
    slot.kind->ops->append_parsed(slot.vector, descriptor);
    came(place);
  }
  void came(size_t place) {
    if (!written_ && place >= last_)
      last_ = place;
    else
      write_down(place);
  }
  void write_down(size_t place) {
    const size_t record = Slots::place_of(slots_, kArrivals, 16);
    auto& arrivals = as_vector<uint8_t>((*slots_)[record].vector);
    if (!written_)
      for (size_t i = 0; i < slots_->size(); ++i) {
        const Slots::Slot& slot = (*slots_)[i];
        if (!holds_descriptors(slot)) continue;
        const size_t before = slot.kind->ops->size(slot.vector) - (i == place ? 1 : 0);
        arrivals.insert(arrivals.end(), before, kind_in(slot));
      }
    written_ = true;
    arrivals.push_back(kind_in((*slots_)[place]));
  }
  uint8_t kind_in(const Slots::Slot& slot) const {
    return static_cast<uint8_t>(family_.place_of(*slot.kind));
  }

  const Family& family_;
  Slots*& slots_;
  size_t last_ = 0;       // of the slots that hold descriptors
  bool written_ = false;  // the order is
};

// The slots that a save writes, in their order; null past the last.
using SavedSlots = std::array<const Slots::Slot*, Family::max_kinds + 1>;
SavedSlots in_saving_order(const Slots* slots) {
  SavedSlots out;
  size_t count = 0;
  // Few kinds occur: each goes to its place among those before it.
  if (slots)
    for (const Slots::Slot& slot : *slots) {
      if (!slot.kind->is_saved) continue;
      size_t place = count++;
      for (; place > 0 && out[place - 1]->kind > slot.kind; --place) out[place] = out[place - 1];
      out[place] = &slot;
    }
  out[count] = nullptr;
  return out;
}

}  // namespace

}  // namespace detail

using detail::Family;
using detail::Kind;
using detail::Slots;

DescriptorLoop::DescriptorLoop(const DescriptorLoop& other)
    : family_(other.family_), slots_(other.slots_ ? Slots::copy_of(*other.slots_) : nullptr) {}

DescriptorLoop& DescriptorLoop::operator=(const DescriptorLoop& other) {
  DescriptorLoop copy(other);
  std::swap(slots_, copy.slots_);
  return *this;
}

void DescriptorLoop::clear_descriptors() {
  if (slots_) Slots::destroy(slots_);
  slots_ = nullptr;
}

void DescriptorLoop::clear_general_descriptors() {
  if (!slots_) return;
  for (Slots::Slot& slot : *slots_)
    if (slot.kind == &detail::kArrivals)
      std::erase(detail::as_vector<uint8_t>(slot.vector), family_->general);
  for (Slots::Slot& slot : *slots_)
    if (slot.kind == &family_->general_kind()) return slots_->erase(&slot);
}

const std::vector<DescriptorGeneral>& DescriptorLoop::get_general_descriptors() const {
  return detail::vector_in<DescriptorGeneral>(slots_, family_->general_kind());
}
const std::vector<DescriptorGeneral>& DescriptorLoop::get_user_private_descriptors() const {
  return detail::vector_in<DescriptorGeneral>(slots_, family_->user_private_kind());
}
const std::vector<int>& DescriptorLoop::get_descriptor_pos() const {
  return detail::vector_in<int>(slots_, detail::kPositions);
}

void DescriptorLoop::keep_position(ByteView descriptor, const RowContext& row, size_t count) {
  const size_t place = Slots::place_of(slots_, detail::kPositions, count);
  detail::as_vector<int>((*slots_)[place].vector)
      .push_back(static_cast<int>(descriptor.offset_from(row.body)));
}

void DescriptorLoop::shift_positions(size_t first, int distance) {
  if (!slots_) return;
  for (Slots::Slot& slot : *slots_) {
    if (slot.kind != &detail::kPositions) continue;
    auto& positions = detail::as_vector<int>(slot.vector);
    for (size_t i = first; i < positions.size(); ++i) positions[i] -= distance;
  }
}

void DescriptorLoop::parse_descriptor(ByteView descriptor, const RowContext& row) {
  const size_t place = Slots::place_of(slots_, family_->kind_for_tag(descriptor[0]), 1);
  detail::Arrivals(*family_, slots_).parse(descriptor, row, place);
}

bool DescriptorLoop::parse_descriptors(ByteView view, int begin, int end, const RowContext& row) {
  // Counted first, so that each vector is made once and in its full size.
  struct Found {
    uint8_t kind;
    uint16_t count;
    size_t place;
  };
  std::array<Found, Family::max_kinds> found;
  std::array<uint8_t, Family::max_kinds> found_as{};  // by kind, from 1
  size_t kinds = 0;
  size_t all = 0;
  const Family& family = *family_;
  each_row(view, begin, end, [&](ByteView descriptor, int) {
    uint8_t& as = found_as[family.kind_of_tag[descriptor[0]]];
    if (as == 0) {
      found[kinds] = {family.kind_of_tag[descriptor[0]], 0, 0};
      as = static_cast<uint8_t>(++kinds);
    }
    ++found[as - size_t{1}].count;
    ++all;
    return descriptor[1] + 2;
  });
  if (kinds > 0) {
    Slots::reserve(slots_, (slots_ ? slots_->size() : 0) + kinds + (row.keep_raw ? 1 : 0));
    for (size_t i = 0; i < kinds; ++i)
      found[i].place = Slots::place_of(slots_, family.kinds[found[i].kind], found[i].count);
  }
  detail::Arrivals arrivals(family, slots_);
  return each_row(view, begin, end, [&](ByteView descriptor, int) {
    if (row.keep_raw) keep_position(descriptor, row, all);
    const uint8_t as = found_as[family.kind_of_tag[descriptor[0]]];
    arrivals.parse(descriptor, row, found[as - size_t{1}].place);
    return descriptor[1] + 2;
  });
}

bool DescriptorLoop::_save_descriptors(void* document, void* parent) const {
  const xml::Element to(document, parent);
  const xml::Element list = to.make("descriptors");
  if (list)
    for (const Slots::Slot* slot : detail::in_saving_order(slots_)) {
      if (!slot) break;
      const Kind& kind = *slot->kind;
      for (size_t i = 0; i < kind.ops->size(slot->vector); ++i) {
        const xml::Element element = list.make(kind.saved);
        if (!element) continue;
        kind.ops->at(slot->vector, i).SaveSection(document, element.get());
        list.append(element);
      }
    }
  to.append(list);
  return true;
}

bool DescriptorLoop::_parse_descriptors(void* node) {
  static const xml::ListFailures failures = {
      "failed to get descriptors node", "failed to get descriptors node list",
      "failed to get descriptors node list length", "failed to get item"};
  const xml::Ref<IXMLDOMNode> held(static_cast<IXMLDOMNode*>(node));
  const xml::Ref<IXMLDOMNode> list = xml::find_child(node, "descriptors", failures.list);
  if (!list) return true;
  detail::Arrivals arrivals(*family_, slots_);
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
    const auto units = xml::units_of(name.text);
    const wide_view wanted(units);
    for (size_t i = 0; i < family_->kind_count; ++i) {
      const Kind& kind = family_->kinds[i];
      const std::string_view loaded = kind.loaded;
      if (loaded.size() != wanted.size() || !std::equal(loaded.begin(), loaded.end(), wanted.begin()))
        continue;
      arrivals.load(item, kind);
      break;
    }
  });
  return true;
}

const char* AnyDescriptor::element() const {
  return kind_->saved;
}
const char* AnyDescriptor::class_name() const {
  return kind_->ops->class_name;
}
void AnyDescriptor::walk(FieldSink& sink, Reading reading) const {
  kind_->ops->walk(*descriptor_, sink, reading);
}

DescriptorRange::iterator::iterator(const DescriptorLoop& loop) : family_(loop.family_), slots_(loop.slots_) {
  if (!slots_) return;
  for (const Slots::Slot& slot : *slots_) {
    if (detail::holds_descriptors(slot)) left_ += slot.kind->ops->size(slot.vector);
    if (slot.kind == &detail::kArrivals)
      arrivals_ = &detail::as_vector<uint8_t>(static_cast<const void*>(slot.vector));
  }
  if (left_ > 0) find();
}

DescriptorRange::iterator& DescriptorRange::iterator::operator++() {
  if (--left_ > 0) find();
  return *this;
}

void DescriptorRange::iterator::find() {
  const auto give = [this](const Slots::Slot& slot) {
    kind_ = slot.kind;
    descriptor_ = &kind_->ops->at(slot.vector, given_[family_->place_of(*kind_)]++);
  };
  while (arrivals_ && arrival_ < arrivals_->size())
    if (const Slots::Slot* const slot = slots_->find(family_->kinds[(*arrivals_)[arrival_++]]))
      return give(*slot);
  for (;; ++slot_) {
    const Slots::Slot& slot = slots_->begin()[slot_];
    if (detail::holds_descriptors(slot) &&
        given_[family_->place_of(*slot.kind)] < slot.kind->ops->size(slot.vector))
      return give(slot);
  }
}

void DescriptorLoop::_walk_descriptors(FieldSink& sink, Reading reading) const {
  DescriptorRange::iterator at = descriptors().begin();
  sink.begin_list("descriptors", at.left_);
  for (; at != std::default_sentinel; ++at) {
    sink.begin((*at).element(), (*at).class_name());
    (*at).walk(sink, reading);
    sink.end();
  }
  sink.end();
}

void DescriptorLoop::dump_descriptors_without(int tag, std::ostream& stream) const {
  for (const Slots::Slot* slot : detail::in_saving_order(slots_)) {
    if (!slot) break;
    if (slot->kind == &family_->kind_for_tag(tag)) continue;
    for (size_t i = 0; i < slot->kind->ops->size(slot->vector); ++i)
      slot->kind->ops->at(slot->vector, i).dump_state(stream);
  }
}

}  // namespace quillon
