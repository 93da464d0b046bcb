#pragma once

#include <quillon/descriptors/descriptor_base.h>
#include <quillon/fields/address.h>

namespace quillon {

// The descriptors below name the receivers that a notification is for by IP addresses in slash notation (EN
// 301 192, 8.4.5): address and number of leading bits. A length that does not suit the rows of a class throws
// error("descriptor size mismatch").

// IPv4 networks of receivers (EN 301 192, 8.4.5).
class QUILLON_API DescriptorIntTargetIPSlash final : public DescriptorIntBase {
 public:
  // A network: address and length of the prefix in bits.
  class QUILLON_API IPSlash {
   public:
    IPSlash() = default;
    explicit IPSlash(ByteView p) : ipv4_slash_mask_(p[4]) { ipv4_addr_.parse(p); }

    QUILLON_FIELD(IPv4Address, ipv4_addr, get_ipv4_addr);
    QUILLON_FIELD(int, ipv4_slash_mask, get_ipv4_slash_mask);

    QUILLON_RECORD_FACES;
  };

  DescriptorIntTargetIPSlash() = default;
  explicit DescriptorIntTargetIPSlash(ByteView d);

  QUILLON_FIELD(std::vector<IPSlash>, slash, get_slash);

  QUILLON_FACES(slash_);
};

// A row of 10 bytes every 8: rows overlap by 2 bytes, and the last one ends 2 bytes past the descriptor.
// Kept: readers of saved documents rely on it. In the standard reading there is one every 10.
class QUILLON_API DescriptorIntTargetIPSourceSlash final : public DescriptorIntBase {
 public:
  // A network of senders and one of receivers.
  class QUILLON_API IPSourceSlash {
   public:
    IPSourceSlash() = default;
    explicit IPSourceSlash(ByteView p) : ipv4_source_slash_mask_(p[4]), ipv4_dest_slash_mask_(p[9]) {
      ipv4_source_addr_.parse(p);
      ipv4_dest_addr_.parse(p.from(5));
    }

    QUILLON_FIELD(IPv4Address, ipv4_source_addr, get_ipv4_source_addr);
    QUILLON_FIELD(int, ipv4_source_slash_mask, get_ipv4_source_slash_mask);
    QUILLON_FIELD(IPv4Address, ipv4_dest_addr, get_ipv4_dest_addr);
    QUILLON_FIELD(int, ipv4_dest_slash_mask, get_ipv4_dest_slash_mask);

    QUILLON_RECORD_FACES;
  };

  DescriptorIntTargetIPSourceSlash() = default;
  explicit DescriptorIntTargetIPSourceSlash(ByteView d);

  QUILLON_FIELD(std::vector<IPSourceSlash>, slash, get_slash);

  QUILLON_FACES(slash_);
};

// IPv6 networks of receivers (EN 301 192, 8.4.5).
class QUILLON_API DescriptorIntTargetIPv6Slash final : public DescriptorIntBase {
 public:
  // A network: address and length of the prefix in bits.
  class QUILLON_API IPSlash {
   public:
    IPSlash() = default;
    explicit IPSlash(ByteView p) : ipv6_slash_mask_(p[16]) { ipv6_addr_.parse(p); }

    QUILLON_FIELD(IPv6Address, ipv6_addr, get_ipv6_addr);
    QUILLON_FIELD(int, ipv6_slash_mask, get_ipv6_slash_mask);

    QUILLON_RECORD_FACES;
  };

  DescriptorIntTargetIPv6Slash() = default;
  explicit DescriptorIntTargetIPv6Slash(ByteView d);

  QUILLON_FIELD(std::vector<IPSlash>, slash, get_slash);

  QUILLON_FACES(slash_);
};

// IPv6 networks of senders and receivers (EN 301 192, 8.4.5).
class QUILLON_API DescriptorIntTargetIPv6SourceSlash final : public DescriptorIntBase {
 public:
  // A network of senders and one of receivers.
  class QUILLON_API IPSourceSlash {
   public:
    IPSourceSlash() = default;
    explicit IPSourceSlash(ByteView p) : ipv6_source_slash_mask_(p[16]), ipv6_dest_slash_mask_(p[33]) {
      ipv6_source_addr_.parse(p);
      ipv6_dest_addr_.parse(p.from(17));
    }

    QUILLON_FIELD(IPv6Address, ipv6_source_addr, get_ipv6_source_addr);
    QUILLON_FIELD(int, ipv6_source_slash_mask, get_ipv6_source_slash_mask);
    QUILLON_FIELD(IPv6Address, ipv6_dest_addr, get_ipv6_dest_addr);
    QUILLON_FIELD(int, ipv6_dest_slash_mask, get_ipv6_dest_slash_mask);

    QUILLON_RECORD_FACES;
  };

  DescriptorIntTargetIPv6SourceSlash() = default;
  explicit DescriptorIntTargetIPv6SourceSlash(ByteView d);

  QUILLON_FIELD(std::vector<IPSourceSlash>, slash, get_slash);

  QUILLON_FACES(slash_);
};

}  // namespace quillon
