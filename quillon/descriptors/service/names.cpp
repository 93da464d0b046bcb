#include <quillon/descriptors/service/names.h>
#include <quillon/faces/internal/describe.h>
#include <quillon/sections/internal/rows.h>

namespace quillon {

template <class V, class S>
void DescriptorNetworkName::describe(V& v, S& s) {
  v.field("network_name", s.network_name_);
}
QUILLON_FACES_OF(DescriptorNetworkName, "network_name_descriptor")

template <class V, class S>
void DescriptorBouquetName::describe(V& v, S& s) {
  v.field("bouquet_name", s.bouquet_name_);
}
QUILLON_FACES_OF(DescriptorBouquetName, "bouquet_name_descriptor")

DescriptorMultilingualNetworkName::DescriptorMultilingualNetworkName(ByteView d) : DescriptorBase(d) {
  if (!read_uneven_rows(nameinfo_, d, 2, descriptor_length)) throw error(error::bad_value);
}

template <class V, class S>
void DescriptorMultilingualNetworkName::describe(V& v, S& s) {
  v.list("nameinfo", "info", s.nameinfo_);
}
QUILLON_FACES_OF(DescriptorMultilingualNetworkName, "multilingual_network_name_descriptor")

DescriptorMultilingualBouquetName::DescriptorMultilingualBouquetName(ByteView d) : DescriptorBase(d) {
  if (!read_uneven_rows(nameinfo_, d, 2, descriptor_length)) throw error(error::bad_value);
}

template <class V, class S>
void DescriptorMultilingualBouquetName::describe(V& v, S& s) {
  v.list("nameinfo", "info", s.nameinfo_);
}
QUILLON_FACES_OF(DescriptorMultilingualBouquetName, "multilingual_bouquet_name_descriptor")

DescriptorMultilingualServiceName::DescriptorMultilingualServiceName(ByteView d) : DescriptorBase(d) {
  if (!read_uneven_rows(servicenameinfo_, d, 2, descriptor_length)) throw error(error::bad_value);
}

template <class V, class S>
void DescriptorMultilingualServiceName::describe(V& v, S& s) {
  v.list("servicenameinfo", "info", s.servicenameinfo_);
}
QUILLON_FACES_OF(DescriptorMultilingualServiceName, "multilingual_service_name_descriptor")

DescriptorMultilingualServiceName::MultilingualServiceNameInfo::MultilingualServiceNameInfo(ByteView bytes,
                                                                                            int available,
                                                                                            int& consumed) {
  if (available < 5) throw error(error::length_mismatch, "multilingual_service_name_info_descriptor");
  iso_639_language_code_ = CodeCharacters(bytes);
  const int provider_length = bytes[3];
  if (available < provider_length + 5)
    throw error(error::length_mismatch, "multilingual_service_name_info_descriptor:2");
  provider_name_.parse(provider_length, bytes.from(4));
  const int service_length = bytes[4 + provider_length];
  // One byte too few passes: which failure a stream meets depends on it.
  // Quirk: DescriptorMultilingualServiceName rows
  if (available < provider_length + service_length + (bytes.standard() ? 5 : 4))
    throw error(error::length_mismatch, "multilingual_service_name_info_descriptor:3");
  service_name_.parse(service_length, bytes.from(5 + provider_length));
  consumed = provider_length + service_length + 5;
}

template <class V, class S>
void DescriptorMultilingualServiceName::MultilingualServiceNameInfo::describe(V& v, S& s) {
  v.labels("DescriptorMultilingualServiceName::MultilingualServiceNameInfo::", ": ");
  if constexpr (!V::xml) {
    v.field("ISO_639_language_code", s.iso_639_language_code_);
    v.field("provider_len", s.provider_name_.get_text_len());
  }
  v.field("providername", s.provider_name_);
  if constexpr (!V::xml) v.field("service_len", s.service_name_.get_text_len());
  v.field("servicename", s.service_name_);
  if constexpr (V::xml) v.field("ISO_639_language_code", s.iso_639_language_code_);
}
QUILLON_RECORD_FACES_OF(DescriptorMultilingualServiceName::MultilingualServiceNameInfo)

}  // namespace quillon
