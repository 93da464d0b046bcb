#pragma once

#include <cstdint>
#include <ostream>
#include <string>

#include <quillon/platform/api.h>
#include <quillon/sections/byte_view.h>

namespace quillon {

// An Ethernet MAC address. The wire fills it in the standard reading alone: else only an XML load gives it a
// value. Here and in the other addresses get_addr gives all `size` bytes, in the order of the wire; they are
// zero until they are filled.
class QUILLON_API MACAddress {
 public:
  static constexpr int size = 6;
  void parse(ByteView bytes);
  // "00:a0:c9:12:34:ab"
  std::string text() const;
  uint8_t* get_addr() { return bytes_; }
  const uint8_t* get_addr() const { return bytes_; }

 private:
  uint8_t bytes_[size] = {};
};

// Four bytes of an IPv4 address, zero where the section ends before them. Any value is accepted.
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

// The same for the sixteen bytes of an IPv6 address.
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

// Their text.
inline std::ostream& operator<<(std::ostream& stream, const MACAddress& address) {
  return stream << address.text();
}
inline std::ostream& operator<<(std::ostream& stream, const IPv4Address& address) {
  return stream << address.text();
}
inline std::ostream& operator<<(std::ostream& stream, const IPv6Address& address) {
  return stream << address.text();
}

}  // namespace quillon
