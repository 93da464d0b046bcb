#include <quillon/appsignal/internal/row_list.h>
#include <quillon/appsignal/slash.h>
#include <quillon/faces/internal/describe.h>

namespace quillon {

DescriptorIntTargetIPSlash::DescriptorIntTargetIPSlash(ByteView d) : DescriptorIntBase(d) {
  detail::read_whole_rows(slash_, d, 0, 5);
}

template <class V, class S>
void DescriptorIntTargetIPSlash::describe(V& v, S& s) {
  v.list("slash", "slash", s.slash_);
}
QUILLON_SILENT_FACES_OF(DescriptorIntTargetIPSlash, "target_IP_slash_descriptor")

template <class V, class S>
void DescriptorIntTargetIPSlash::IPSlash::describe(V& v, S& s) {
  v.field("IPv4_addr", s.ipv4_addr_);
  v.field("IPv4_slash_mask", s.ipv4_slash_mask_);
}
QUILLON_SILENT_RECORD_FACES_OF(DescriptorIntTargetIPSlash::IPSlash)

DescriptorIntTargetIPSourceSlash::DescriptorIntTargetIPSourceSlash(ByteView d) : DescriptorIntBase(d) {
  // Quirk: DescriptorIntTargetIPSourceSlash rows
  detail::read_whole_rows(slash_, d, 0, d.standard() ? 10 : 8, d.standard());
}

template <class V, class S>
void DescriptorIntTargetIPSourceSlash::describe(V& v, S& s) {
  v.list("slash", "slash", s.slash_);
}
QUILLON_SILENT_FACES_OF(DescriptorIntTargetIPSourceSlash, "target_IP_source_slash_descriptor")

template <class V, class S>
void DescriptorIntTargetIPSourceSlash::IPSourceSlash::describe(V& v, S& s) {
  v.field("IPv4_source_addr", s.ipv4_source_addr_);
  v.field("IPv4_source_slash_mask", s.ipv4_source_slash_mask_);
  v.field("IPv4_dest_addr", s.ipv4_dest_addr_);
  v.field("IPv4_dest_slash_mask", s.ipv4_dest_slash_mask_);
}
QUILLON_SILENT_RECORD_FACES_OF(DescriptorIntTargetIPSourceSlash::IPSourceSlash)

DescriptorIntTargetIPv6Slash::DescriptorIntTargetIPv6Slash(ByteView d) : DescriptorIntBase(d) {
  detail::read_whole_rows(slash_, d, 0, 17);
}

template <class V, class S>
void DescriptorIntTargetIPv6Slash::describe(V& v, S& s) {
  v.list("slash", "slash", s.slash_);
}
QUILLON_SILENT_FACES_OF(DescriptorIntTargetIPv6Slash, "target_IPv6_slash_descriptor")

template <class V, class S>
void DescriptorIntTargetIPv6Slash::IPSlash::describe(V& v, S& s) {
  v.field("IPv6_addr", s.ipv6_addr_);
  v.field("IPv6_slash_mask", s.ipv6_slash_mask_);
}
QUILLON_SILENT_RECORD_FACES_OF(DescriptorIntTargetIPv6Slash::IPSlash)

DescriptorIntTargetIPv6SourceSlash::DescriptorIntTargetIPv6SourceSlash(ByteView d) : DescriptorIntBase(d) {
  detail::read_whole_rows(slash_, d, 0, 34);
}

template <class V, class S>
void DescriptorIntTargetIPv6SourceSlash::describe(V& v, S& s) {
  v.list("slash", "slash", s.slash_);
}
QUILLON_SILENT_FACES_OF(DescriptorIntTargetIPv6SourceSlash, "target_IPv6_source_slash_descriptor")

template <class V, class S>
void DescriptorIntTargetIPv6SourceSlash::IPSourceSlash::describe(V& v, S& s) {
  v.field("IPv6_source_addr", s.ipv6_source_addr_);
  v.field("IPv6_source_slash_mask", s.ipv6_source_slash_mask_);
  v.field("IPv6_dest_addr", s.ipv6_dest_addr_);
  v.field("IPv6_dest_slash_mask", s.ipv6_dest_slash_mask_);
}
QUILLON_SILENT_RECORD_FACES_OF(DescriptorIntTargetIPv6SourceSlash::IPSourceSlash)

}  // namespace quillon
