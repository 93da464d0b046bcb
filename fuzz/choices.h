#pragma once

// Choices that a target takes from its bytes, so that a mutation of the input is another course of events.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <span>

namespace quillon::fuzz {

class Choices {
 public:
  Choices(const uint8_t* data, size_t size) : left_(data, size) {}

  bool empty() const { return left_.empty(); }
  // 0 where no bytes are left.
  uint8_t byte() {
    const auto taken = bytes(1);
    return taken.empty() ? uint8_t{0} : taken.front();
  }
  // One of `count` numbers from 0 on.
  size_t below(size_t count) { return byte() % count; }
  template <class List>
  auto of(const List& list) {
    return list[below(std::size(list))];
  }
  // As many bytes, or those that are left.
  std::span<const uint8_t> bytes(size_t count) {
    const auto taken = left_.first(std::min(count, left_.size()));
    left_ = left_.subspan(taken.size());
    return taken;
  }
  std::span<const uint8_t> rest() { return bytes(left_.size()); }

 private:
  std::span<const uint8_t> left_;
};

}  // namespace quillon::fuzz
