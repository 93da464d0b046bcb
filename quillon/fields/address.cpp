#include <cstdio>

#include <quillon/fields/address.h>

namespace quillon {

void MACAddress::parse(ByteView bytes) {
  // Quirk: MACAddress
  if (!bytes.standard()) return;
  for (int i = 0; i < size; ++i) bytes_[i] = bytes[i];
}

std::string MACAddress::text() const {
  char out[20];
  std::snprintf(out, sizeof out, "%02x:%02x:%02x:%02x:%02x:%02x", bytes_[0], bytes_[1], bytes_[2], bytes_[3],
                bytes_[4], bytes_[5]);
  return out;
}

void IPv4Address::parse(ByteView bytes) {
  for (int i = 0; i < size; ++i) bytes_[i] = bytes[i];
}

std::string IPv4Address::text() const {
  char out[20];
  std::snprintf(out, sizeof out, "%u.%u.%u.%u", bytes_[0], bytes_[1], bytes_[2], bytes_[3]);
  return out;
}

void IPv6Address::parse(ByteView bytes) {
  for (int i = 0; i < size; ++i) bytes_[i] = bytes[i];
}

std::string IPv6Address::text() const {
  std::string out;
  for (int i = 0; i < size; i += 2) {
    char group[8];
    std::snprintf(group, sizeof group, i ? ":%02x%02x" : "%02x%02x", bytes_[i], bytes_[i + 1]);
    out += group;
  }
  return out;
}

}  // namespace quillon
