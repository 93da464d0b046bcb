#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <vector>

namespace quillon::app {

// What the first bytes of an input are.
enum class Content { packets, sections, unknown };

// Packets by their sync bytes, sections without packets around them by a right CRC, or by being a time or a
// running status: other short ones look like anything. The first section may be broken. Unknown: more bytes
// are needed, if there are more.
Content content_of(std::span<const uint8_t> first);

// Cuts a chain of bare sections that comes in pieces. One that is damaged is one if another follows it; where
// none can be, the next one with a right CRC is sought.
class ChainReader {
 public:
  using Sink = std::function<void(const uint8_t*, size_t)>;

  // Hands each section that is whole to `sink`.
  void push(std::span<const uint8_t> piece, const Sink& sink);
  // Those at the end of the input that wait for more: bytes of a section, or in search of one.
  void finish(const Sink& sink);

  // Bytes that are no section, those left at the end included once it was finished.
  uint64_t skipped() const { return skipped_; }
  // Bytes since the last section: a device can give zeros for ever.
  uint64_t since_section() const { return since_section_; }

 private:
  enum class Verdict { section, none, more };

  Verdict judge(std::span<const uint8_t> bytes, bool is_end) const;
  void cut(const Sink& sink, bool is_end);

  std::vector<uint8_t> held_;
  bool lost_ = false;  // looks for a section
  uint64_t skipped_ = 0;
  uint64_t since_section_ = 0;
};

}  // namespace quillon::app
