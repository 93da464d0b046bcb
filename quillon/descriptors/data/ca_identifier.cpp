#include <quillon/descriptors/data/ca_identifier.h>
#include <quillon/descriptors/internal/counted_bytes.h>
#include <quillon/faces/internal/describe.h>
#include <quillon/sections/internal/rows.h>

namespace quillon {

DescriptorCAIdentifier::DescriptorCAIdentifier(ByteView d) : DescriptorBase(d) {
  // Quirk: DescriptorCAIdentifier of odd length
  read_rows(ca_identifier_ids, d, 2, d.standard() ? descriptor_length & ~1 : descriptor_length, 2);
}

// A report opens with a label that nothing follows. Kept: readers of reports rely on it.
template <class V, class S>
void DescriptorCAIdentifier::describe(V& v, S& s) {
  if constexpr (V::dump) v.stream() << "CA_system_id: ";
  v.list("CA_system_id", "id", s.ca_identifier_ids);
}
QUILLON_FACES_OF(DescriptorCAIdentifier, "CA_system_id_descriptor")

template <class V, class S>
void DescriptorCAIdentifier::CAIdentifierID::describe(V& v, S& s) {
  v.coded("CA_system_id", s.CA_system_id, registry_kind::ca_system);
}
QUILLON_RECORD_FACES_OF(DescriptorCAIdentifier::CAIdentifierID)

DescriptorECMRepetitionRate::DescriptorECMRepetitionRate(ByteView d) : DescriptorBase(d) {
  if (descriptor_length < 4) throw error("descriptor length to small");
  CA_system_ID = d.u16(2);
  ECM_repetition_rate = d.u16(4);
  // Quirk: DescriptorTimeSliceFecIdentifier id_selector_byte, DescriptorECMRepetitionRate private bytes
  private_data = detail::counted_bytes(d, 6, descriptor_length - 4);
}

template <class V, class S>
void DescriptorECMRepetitionRate::describe(V& v, S& s) {
  v.coded("CA_system_ID", s.CA_system_ID, registry_kind::ca_system);
  v.field("ECM_repetition_rate", s.ECM_repetition_rate);
  v.bytes("private_data_byte", s.private_data);
}
QUILLON_SILENT_FACES_OF(DescriptorECMRepetitionRate, "ECM_repetition_rate_descriptor")

}  // namespace quillon
