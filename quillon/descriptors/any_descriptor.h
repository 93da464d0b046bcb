#pragma once

#include <array>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <type_traits>
#include <typeinfo>
#include <vector>

#include <quillon/descriptors/descriptor_base.h>
#include <quillon/platform/api.h>

namespace quillon {

class DescriptorLoop;

namespace detail {

struct Family;
struct Kind;
class Slots;

// The parameter of a function object.
template <class Result, class Function, class Argument>
Argument parameter_of(Result (Function::*)(Argument) const);
template <class Result, class Function, class Argument>
Argument parameter_of(Result (Function::*)(Argument));
template <class Function>
using Parameter = std::remove_cvref_t<decltype(parameter_of(&Function::operator()))>;

}  // namespace detail

// A descriptor of whatever class, where its loop holds it: good as long as the loop is there and does not
// change.
class QUILLON_API AnyDescriptor {
 public:
  int tag() const { return base().get_descriptor_tag(); }
  // The name of its element, "short_event_descriptor"; "general_descriptor" or "user_private_descriptor" of
  // one that has no class, or that its class refused.
  const char* element() const;
  // "DescriptorShortEvent".
  const char* class_name() const;
  // Length, report and XML form.
  const DescriptorBase& base() const { return *descriptor_; }

  // The descriptor itself, if it is of that class: `if (const auto* event = d.as<DescriptorShortEvent>())`.
  template <std::derived_from<DescriptorBase> Descriptor>
  const Descriptor* as() const {
    return typeid(*descriptor_) == typeid(Descriptor) ? static_cast<const Descriptor*>(descriptor_) : nullptr;
  }

  // Calls the first of these functions whose parameter is of the descriptor's class, DescriptorBase or
  // AnyDescriptor; false if there is none.
  //
  //   d.visit([](const DescriptorShortEvent& event) { std::cout << event.get_event_name() << "\n"; },
  //           [](const DescriptorBase& other) { std::cout << other.get_tag_text() << "\n"; });
  template <class... Functions>
  bool visit(Functions&&... functions) const {
    return (try_one(functions) || ...);
  }

  // Hands all fields to a sink, as the `walk` of the class does.
  void walk(FieldSink& sink, Reading reading = Reading::kept) const;

 private:
  friend class DescriptorRange;

  AnyDescriptor(const detail::Kind& kind, const DescriptorBase& descriptor)
      : kind_(&kind), descriptor_(&descriptor) {}

  template <class Function>
  bool try_one(Function& function) const {
    using Wanted = detail::Parameter<std::remove_reference_t<Function>>;
    if constexpr (std::is_same_v<Wanted, AnyDescriptor>) {
      function(*this);
    } else if constexpr (std::is_same_v<Wanted, DescriptorBase>) {
      function(base());
    } else {
      const Wanted* const found = as<Wanted>();
      if (!found) return false;
      function(*found);
    }
    return true;
  }

  const detail::Kind* kind_;
  const DescriptorBase* descriptor_;
};

// The descriptors of a loop in wire order; those that were loaded come in the order of their document.
//
//   for (const AnyDescriptor& d : event.descriptors()) std::cout << d.tag() << " " << d.element() << "\n";
//
// A forward range of C++20, which takes no heap. Its iterators end with each change of the loop.
class DescriptorRange {
 public:
  static constexpr size_t max_kinds = 96;

  // Goes from descriptor to descriptor in the order of the wire.
  class QUILLON_API iterator {
   public:
    using value_type = AnyDescriptor;
    using difference_type = ptrdiff_t;
    using iterator_concept = std::forward_iterator_tag;
    using iterator_category = std::input_iterator_tag;

    iterator() = default;
    AnyDescriptor operator*() const { return AnyDescriptor(*kind_, *descriptor_); }
    iterator& operator++();
    iterator operator++(int) {
      const iterator before = *this;
      ++*this;
      return before;
    }
    // Of two in one range.
    bool operator==(const iterator& other) const { return left_ == other.left_; }
    bool operator==(std::default_sentinel_t) const { return left_ == 0; }

   private:
    friend class DescriptorLoop;
    friend class DescriptorRange;

    explicit iterator(const DescriptorLoop& loop);
    void find();

    const detail::Family* family_ = nullptr;
    const detail::Slots* slots_ = nullptr;
    const std::vector<uint8_t>* arrivals_ = nullptr;  // the kinds in wire order, where the slots have another
    size_t arrival_ = 0;                              // the next of them
    size_t slot_ = 0;
    size_t left_ = 0;                          // descriptors from this one on
    std::array<uint32_t, max_kinds> given_{};  // of each kind
    const detail::Kind* kind_ = nullptr;
    const DescriptorBase* descriptor_ = nullptr;
  };

  explicit DescriptorRange(const DescriptorLoop& loop) : loop_(&loop) {}

  iterator begin() const { return iterator(*loop_); }
  std::default_sentinel_t end() const { return {}; }
  size_t size() const { return begin().left_; }
  bool empty() const { return size() == 0; }

 private:
  const DescriptorLoop* loop_;
};

}  // namespace quillon
