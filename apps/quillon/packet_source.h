#pragma once

#include <cstddef>
#include <cstdint>
#include <istream>
#include <vector>

namespace quillon::app {

// Whole 188-byte packets out of a byte stream that need not be clean: packets of 188, 192 or 204 bytes,
// garbage in front of them, between them and after them. It locks where sync bytes are a packet apart, and
// locks anew after damage.
class PacketSource {
 public:
  // Reads `buffer_size` bytes at a time, at least 2048 of them.
  explicit PacketSource(std::istream& in, size_t buffer_size = size_t{1} << 19);

  // The next packet, good until the next call; null at the end of the input.
  uint8_t* next();

  // Packets given out.
  uint64_t packets() const { return packets_; }
  // Bytes that belonged to no packet, those of the current gap included.
  uint64_t skipped() const { return skipped_; }
  // The input's bytes given out or passed over.
  uint64_t position() const { return consumed_ + at_; }
  // Bytes from one packet to the next; 0 before the first lock.
  size_t stride() const { return stride_; }

 private:
  // Makes `size` bytes available from at_ on, as far as the input has them; false if it has fewer.
  bool fill(size_t size);
  bool lock();
  size_t confirmations(size_t offset, size_t stride) const;

  std::istream& in_;
  std::vector<uint8_t> buffer_;
  size_t at_ = 0;   // of the next byte in the buffer
  size_t end_ = 0;  // of the bytes in the buffer
  size_t stride_ = 0;
  bool locked_ = false;
  uint64_t consumed_ = 0;  // bytes dropped from the front of the buffer
  uint64_t packets_ = 0;
  uint64_t skipped_ = 0;
};

}  // namespace quillon::app
