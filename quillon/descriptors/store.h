#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <new>
#include <utility>
#include <vector>

#include <quillon/descriptors/descriptor_base.h>
#include <quillon/platform/api.h>
#include <quillon/sections/psi_base.h>

namespace quillon::detail {

// What can be done with a std::vector of one descriptor class whose type is not known.
struct VectorOps {
  void (*move)(void* to, void* from);
  void (*copy)(void* to, const void* from);
  void (*destroy)(void* vector);
  void (*create)(void* to, size_t room);
  size_t (*size)(const void* vector);
  const DescriptorBase& (*at)(const void* vector, size_t i);
  void (*append_parsed)(void* vector, ByteView descriptor);
  void (*append_loaded)(void* vector, void* node);
};

template <class T>
std::vector<T>& as_vector(void* vector) {
  return *std::launder(static_cast<std::vector<T>*>(vector));
}
template <class T>
const std::vector<T>& as_vector(const void* vector) {
  return *std::launder(static_cast<const std::vector<T>*>(vector));
}

template <class T>
inline constexpr VectorOps vector_ops = {
    [](void* to, void* from) { new (to) std::vector<T>(std::move(as_vector<T>(from))); },
    [](void* to, const void* from) { new (to) std::vector<T>(as_vector<T>(from)); },
    [](void* vector) { as_vector<T>(vector).~vector(); },
    [](void* to, size_t room) { (new (to) std::vector<T>)->reserve(room); },
    [](const void* vector) { return as_vector<T>(vector).size(); },
    [](const void* vector, size_t i) -> const DescriptorBase& { return as_vector<T>(vector)[i]; },
    [](void* vector, ByteView descriptor) { as_vector<T>(vector).emplace_back(descriptor); },
    [](void* vector, void* node) {
      T loaded;
      loaded.Parse(node);
      as_vector<T>(vector).push_back(std::move(loaded));
    },
};

// One kind of descriptor in a family of loops: what its element is called, and its class.
struct Kind {
  const char* saved;
  const char* loaded;  // null if a load does not know it
  const VectorOps* ops;
};

// A family of loops: which tag goes to which kind, and the order in which a save writes the kinds.
struct Family {
  static constexpr size_t max_kinds = 96;

  std::array<Kind, max_kinds> kinds{};
  size_t kind_count = 0;
  std::array<uint8_t, 256> kind_of_tag{};
  std::array<uint8_t, max_kinds> rank{};  // place in the saving order, from 1; 0 for a kind that is not saved
  uint8_t general = 0;  // the kind of a descriptor that its class refused; user private ones follow it
  bool catches_failures = false;  // always, or only in a tolerant table

  size_t rank_of(const Kind& kind) const { return rank[static_cast<size_t>(&kind - kinds.data())]; }
  const Kind& kind_for_tag(int tag) const { return kinds[kind_of_tag[static_cast<size_t>(tag)]]; }
  const Kind& general_kind() const { return kinds[general]; }
  const Kind& user_private_kind() const { return kinds[general + size_t{1}]; }
};

// Where a loop stands in its section, and what is kept of its walk.
struct LoopContext {
  ByteView body;                           // positions count from its first byte
  std::vector<int>* positions = nullptr;   // receives the place of each descriptor, if there is one
  DescriptorFailures* failures = nullptr;  // the loop is tolerant, if there is one
};

// The descriptors of one loop: a vector a kind, for those kinds only that occur.
class QUILLON_API DescriptorStore {
 public:
  template <class T>
  const std::vector<T>& get(const Kind& kind) const {
    static const std::vector<T> absent;
    const Slot* const slot = find(kind);
    return slot ? as_vector<T>(static_cast<const void*>(slot->vector)) : absent;
  }
  void clear() { slots_.clear(); }
  void clear(const Kind& kind);

  // Reads one descriptor into the vector of its tag.
  void parse(const Family& family, ByteView descriptor, const LoopContext& context);
  // Reads the descriptors from `begin` to `end`; true if the last one ended there, within the view.
  bool walk(const Family& family, ByteView view, int begin, int end, const LoopContext& context);

  // The "descriptors" element under `parent`, whose failures go unseen. Always true.
  bool save(const Family& family, void* document, void* parent) const;
  // Always true; a "descriptors" element that is absent is an empty loop, and names that the family does not
  // know are passed over. Throws error.
  bool load(const Family& family, void* node);
  // Reports the kinds in saving order, but for one.
  void dump(const Family& family, std::ostream& stream, const Kind& left_out) const;

 private:
  class QUILLON_API Slot {
   public:
    Slot(const Kind& k, size_t room) : kind(&k) { kind->ops->create(vector, room); }
    Slot(Slot&& other) noexcept : kind(other.kind) { kind->ops->move(vector, other.vector); }
    Slot(const Slot& other) : kind(other.kind) { kind->ops->copy(vector, other.vector); }
    Slot& operator=(Slot other) noexcept {
      kind->ops->destroy(vector);
      kind = other.kind;
      kind->ops->move(vector, other.vector);
      return *this;
    }
    ~Slot() { kind->ops->destroy(vector); }

    const Kind* kind;
    alignas(std::vector<int>) std::byte vector[sizeof(std::vector<int>)];
  };

  const Slot* find(const Kind& kind) const {
    for (const Slot& slot : slots_)
      if (slot.kind == &kind) return &slot;
    return nullptr;
  }
  // The slots that are saved, in their order; null behind the last.
  std::array<const Slot*, Family::max_kinds + 1> in_saving_order(const Family& family) const;
  // The place of a kind's slot, made with that room if it is not there.
  size_t place_of(const Kind& kind, size_t room);
  // Reads one descriptor into the slot at `place`.
  void parse(const Family& family, ByteView descriptor, const LoopContext& context, size_t place);

  std::vector<Slot> slots_;
};

}  // namespace quillon::detail
