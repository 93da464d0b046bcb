#pragma once

#include <cstdint>
#include <string>

#include <quillon/platform/api.h>
#include <quillon/sections/byte_view.h>

namespace quillon {

// An Ethernet MAC address. The wire never fills it: parse takes nothing, only an XML load gives it a value.
class QUILLON_API MACAddress {
 public:
  static constexpr int size = 6;
  void parse(ByteView) {}
  // "00:a0:c9:12:34:ab"
  std::string text() const;
  uint8_t* get_addr() { return bytes_; }
  const uint8_t* get_addr() const { return bytes_; }

 private:
  uint8_t bytes_[size] = {};
};

class QUILLON_API IPv4Address {
 public:
  static constexpr int size = 4;
  void parse(ByteView bytes);
  // "192.168.0.1"
  std::string text() const;
  uint8_t* get_addr() { return bytes_; }
  const uint8_t* get_addr() const { return bytes_; }

 private:
  uint8_t bytes_[size] = {};
};

class QUILLON_API IPv6Address {
 public:
  static constexpr int size = 16;
  void parse(ByteView bytes);
  // Eight groups of four digits, none left out.
  std::string text() const;
  uint8_t* get_addr() { return bytes_; }
  const uint8_t* get_addr() const { return bytes_; }

 private:
  uint8_t bytes_[size] = {};
};

}  // namespace quillon
