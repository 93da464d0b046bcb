#pragma once

// How a loop holds descriptors of many classes, and how a family of loops is put together from the rows of
// its list. For the library's own sources.

#include <array>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <new>
#include <utility>
#include <vector>

#include <quillon/descriptors/general.h>
#include <quillon/descriptors/loop.h>
#include <quillon/faces/internal/class_name.h>

namespace quillon {

class DescriptorCarouselId;

namespace detail {

template <class T>
std::vector<T>& as_vector(void* vector) {
  return *std::launder(static_cast<std::vector<T>*>(vector));
}
template <class T>
const std::vector<T>& as_vector(const void* vector) {
  return *std::launder(static_cast<const std::vector<T>*>(vector));
}

// What can be done with a std::vector whose type is not known; from `size` on, with one of descriptors.
struct VectorOps {
  void (*move)(void* to, void* from) = nullptr;
  void (*copy)(void* to, const void* from) = nullptr;
  void (*destroy)(void* vector) = nullptr;
  void (*create)(void* to, size_t room) = nullptr;
  size_t (*size)(const void* vector) = nullptr;
  const DescriptorBase& (*at)(const void* vector, size_t i) = nullptr;
  void (*append_parsed)(void* vector, ByteView descriptor) = nullptr;
  void (*append_loaded)(void* vector, void* node) = nullptr;
  void (*walk)(const DescriptorBase& descriptor, FieldSink& sink, Reading reading) = nullptr;
  const char* class_name = nullptr;
};

template <class T>
inline constexpr VectorOps storage_ops = {
    .move = [](void* to, void* from) { new (to) std::vector<T>(std::move(as_vector<T>(from))); },
    .copy = [](void* to, const void* from) { new (to) std::vector<T>(as_vector<T>(from)); },
    .destroy = [](void* vector) { as_vector<T>(vector).~vector(); },
    .create = [](void* to, size_t room) { (new (to) std::vector<T>)->reserve(room); },
};

template <class T>
consteval VectorOps make_descriptor_ops() {
  VectorOps out = storage_ops<T>;
  out.size = [](const void* vector) { return as_vector<T>(vector).size(); };
  out.at = [](const void* vector, size_t i) -> const DescriptorBase& { return as_vector<T>(vector)[i]; };
  out.append_parsed = [](void* vector, ByteView descriptor) {
    as_vector<T>(vector).emplace_back(descriptor);
  };
  out.append_loaded = [](void* vector, void* node) {
    T loaded;
    loaded.Parse(node);
    as_vector<T>(vector).push_back(std::move(loaded));
  };
  out.walk = [](const DescriptorBase& descriptor, FieldSink& sink, Reading reading) {
    static_cast<const T&>(descriptor).walk(sink, reading);
  };
  out.class_name = faces::class_name<T>;
  return out;
}
template <class T>
inline constexpr VectorOps descriptor_ops = make_descriptor_ops<T>();

// One kind of descriptor in a family of loops: what its element is called, and its class.
struct Kind {
  const char* saved;
  const char* loaded;
  const VectorOps* ops;
  bool is_saved;
};

// A family of loops: its kinds in the order in which a save writes them, and which tag goes to which.
struct Family {
  static constexpr size_t max_kinds = DescriptorRange::max_kinds;

  std::array<Kind, max_kinds> kinds{};
  size_t kind_count = 0;
  std::array<uint8_t, 256> kind_of_tag{};
  uint8_t general = 0;
  uint8_t user_private = 0;
  bool catches_failures = false;  // always, or only in a tolerant table
  bool has_reused_tags = false;   // a body that routing descriptors refuse is that of another descriptor

  size_t place_of(const Kind& kind) const { return static_cast<size_t>(&kind - kinds.data()); }
  const Kind& kind_for_tag(int tag) const { return kinds[kind_of_tag[static_cast<size_t>(tag)]]; }
  const Kind& general_kind() const { return kinds[general]; }
  const Kind& user_private_kind() const { return kinds[user_private]; }
};

// In the place of a tag: the two kinds of DescriptorGeneral.
inline constexpr int kGeneral = -1;
inline constexpr int kUserPrivate = -2;

struct KindRow {
  int tag;
  const char* saved;
  const char* loaded;
  const VectorOps* ops;
  bool is_saved;
};

consteval Family make_family(std::initializer_list<KindRow> rows, bool catches_failures,
                             bool has_reused_tags = false) {
  Family out;
  out.catches_failures = catches_failures;
  out.has_reused_tags = has_reused_tags;
  for (const KindRow& row : rows) {
    if (row.tag == kGeneral) out.general = static_cast<uint8_t>(out.kind_count);
    if (row.tag == kUserPrivate) out.user_private = static_cast<uint8_t>(out.kind_count);
    out.kinds[out.kind_count++] = {row.saved, row.loaded, row.ops, row.is_saved};
  }
  for (size_t tag = 0; tag < 256; ++tag) out.kind_of_tag[tag] = tag < 128 ? out.general : out.user_private;
  uint8_t kind = 0;
  std::array<bool, 256> taken{};
  for (const KindRow& row : rows) {
    if (row.tag >= 0) {
      const auto tag = static_cast<size_t>(row.tag);
      if (taken[tag]) throw "a tag has two classes";
      taken[tag] = true;
      out.kind_of_tag[tag] = kind;
    }
    ++kind;
  }
  return out;
}

// What a load looks for. A carousel id is saved under one name and sought under another, so that a load loses
// it: kept, readers of saved documents rely on it.
template <class Class>
consteval const char* loaded_name(const char* saved, const char*) {
  return saved;
}
template <>
consteval const char* loaded_name<DescriptorCarouselId>(const char*, const char* plural) {
  return plural;
}

#define QUILLON_KIND_ROW(tag, Class, accessor, element) \
  {tag, element, loaded_name<Class>(element, element "s"), &descriptor_ops<Class>, true},
#define QUILLON_GENERAL_ROW(is_saved) \
  { kGeneral, "general_descriptor", "general_descriptor", &descriptor_ops<DescriptorGeneral>, is_saved }
#define QUILLON_USER_PRIVATE_ROW(is_saved)                                                                  \
  {                                                                                                         \
    kUserPrivate, "user_private_descriptor", "user_private_descriptor", &descriptor_ops<DescriptorGeneral>, \
        is_saved                                                                                            \
  }

// The vectors of one loop, for those kinds only that occur, in one block.
class Slots {
 public:
  struct Slot {
    const Kind* kind;
    alignas(std::vector<int>) std::byte vector[sizeof(std::vector<int>)];
  };

  static Slots* copy_of(const Slots& other);
  static void destroy(Slots* slots);

  // Makes place for `room` slots, which may move the block.
  static void reserve(Slots*& slots, size_t room);
  // The place of a kind's slot, made with room for that many if it is not there.
  static size_t place_of(Slots*& slots, const Kind& kind, size_t room);

  void erase(Slot* slot);

  Slot* begin() { return reinterpret_cast<Slot*>(this + 1); }
  Slot* end() { return begin() + size_; }
  const Slot* begin() const { return reinterpret_cast<const Slot*>(this + 1); }
  const Slot* end() const { return begin() + size_; }
  size_t size() const { return size_; }
  Slot& operator[](size_t i) { return begin()[i]; }
  const Slot* find(const Kind& kind) const {
    for (const Slot& slot : *this)
      if (slot.kind == &kind) return &slot;
    return nullptr;
  }

 private:
  explicit Slots(size_t room) : room_(static_cast<uint32_t>(room)) {}
  static Slots* make(size_t room);

  uint32_t size_ = 0;
  uint32_t room_;
};

template <class T>
const std::vector<T>& vector_in(const Slots* slots, const Kind& kind) {
  static const std::vector<T> absent;
  const Slots::Slot* const slot = slots ? slots->find(kind) : nullptr;
  return slot ? as_vector<T>(static_cast<const void*>(slot->vector)) : absent;
}

}  // namespace detail

template <class Descriptor>
const std::vector<Descriptor>& DescriptorLoop::vector_of(int tag) const {
  return detail::vector_in<Descriptor>(slots_, family_->kind_for_tag(tag));
}

}  // namespace quillon
