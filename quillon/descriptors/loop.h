#pragma once

#include <cstddef>
#include <iosfwd>
#include <utility>
#include <vector>

#include <quillon/descriptors/any_descriptor.h>
#include <quillon/platform/api.h>
#include <quillon/sections/byte_view.h>
#include <quillon/sections/psi_base.h>

namespace quillon {

class DescriptorGeneral;

// What a row needs to know of its table.
struct RowContext {
  ByteView body;                           // positions and the places of failures count from its first byte
  bool keep_raw = false;                   // the positions of the descriptors are kept
  DescriptorFailures* failures = nullptr;  // of a tolerant table
};

// The base of all that own a descriptor loop. Descriptors of one class are in wire order; a reference that an
// accessor gave while a class was absent stays the shared empty vector after a later parse.
class QUILLON_API DescriptorLoop {
 public:
  // All of them, in wire order.
  DescriptorRange descriptors() const& { return DescriptorRange(*this); }
  void descriptors() const&& = delete;  // they would end before the range

  // Below tag 128 those without a class, or whose class refused them.
  const std::vector<DescriptorGeneral>& get_general_descriptors() const;
  // From tag 128 up those without a class.
  const std::vector<DescriptorGeneral>& get_user_private_descriptors() const;
  // Where each descriptor lies in the table's body, in wire order, if Parse kept the section and the class
  // says no other.
  const std::vector<int>& get_descriptor_pos() const;

  // Writes the "descriptors" element under `parent`, kind by kind in the family's order. Always true: what
  // fails inside goes unseen.
  bool _save_descriptors(void* document, void* parent) const;
  // Reads the "descriptors" child of `node`, which may be absent; elements of other names are passed over.
  // Always true. Throws error.
  bool _parse_descriptors(void* node);
  // The list "descriptors" in wire order, each descriptor under its element's name.
  void _walk_descriptors(FieldSink& sink, Reading reading = Reading::kept) const;

 protected:
  explicit DescriptorLoop(const detail::Family& family) noexcept : family_(&family) {}
  DescriptorLoop(const DescriptorLoop& other);
  DescriptorLoop(DescriptorLoop&& other) noexcept
      : family_(other.family_), slots_(std::exchange(other.slots_, nullptr)) {}
  DescriptorLoop& operator=(const DescriptorLoop& other);
  DescriptorLoop& operator=(DescriptorLoop&& other) noexcept {
    std::swap(slots_, other.slots_);
    return *this;
  }
  ~DescriptorLoop() {
    if (slots_) clear_descriptors();
  }

  // Reads one descriptor, whose tag is the view's first byte.
  void parse_descriptor(ByteView descriptor) { parse_descriptor(descriptor, {descriptor}); }
  void parse_descriptor(ByteView descriptor, const RowContext& row);
  // Reads the descriptors from `begin` to `end`; true if the last one ended there, within the view.
  bool parse_descriptors(ByteView view, int begin, int end, const RowContext& row);
  // Keeps the place of a descriptor, for a loop that has `count` of them.
  void keep_position(ByteView descriptor, const RowContext& row, size_t count = 1);
  // Forgets the descriptors and their positions.
  void clear_descriptors();
  // Forgets those of the general vector.
  void clear_general_descriptors();
  // Makes the positions from the `first` on count from another place, which lies `distance` past the body.
  void shift_positions(size_t first, int distance);

  // Reports the descriptors in saving order, but for those of one tag.
  void dump_descriptors_without(int tag, std::ostream& stream) const;

  // The descriptors of a tag's class.
  template <class Descriptor>
  const std::vector<Descriptor>& vector_of(int tag) const;

 private:
  friend class DescriptorRange::iterator;

  const detail::Family* family_;
  detail::Slots* slots_ = nullptr;  // null where nothing is held
};

// What the headers of the families do with a row of their lists.
#define QUILLON_KIND_CLASS(tag, Class, accessor, element) class Class;
#define QUILLON_KIND_ACCESSOR(tag, Class, accessor, element) const std::vector<Class>& get_##accessor() const;

}  // namespace quillon
