#include <iomanip>

#include <quillon/descriptors/mpeg2/ca.h>
#include <quillon/faces/internal/describe.h>

namespace quillon {

template <class V, class S>
void DescriptorCa::describe(V& v, S& s) {
  v.coded("sys_id", s.ca_system_id_, registry_kind::ca_system);
  v.field("pid", s.ca_pid_);
  v.bytes("private_bytes", s.private_data_byte_);
}
QUILLON_XML_FACES_OF(DescriptorCa, "CA_Descriptor")

void DescriptorCa::_dump_state(std::ostream& stream) const {
  stream << "sys_id: " << std::hex << std::setw(4) << ca_system_id_ << std::endl;
  stream << "pid: " << std::hex << std::setw(4) << ca_pid_ << std::endl;
  if (private_data_byte_.empty()) return;
  stream << "private data:" << std::endl;
  report::block(stream, private_data_byte_);
}

const char* DescriptorCa::get_ca_provider1() const {
  switch (ca_system_id_ >> 8) {
    case 0x01:
      return "Canal Plus";
    case 0x05:
      return "France Telecom";
    case 0x06:
      return "Irdeto";
    case 0x09:
      return "News Datacom";
    case 0x0B:
      return "Norwegian Telekom";
    case 0x0D:
      return "Philips";
    case 0x17:
      return "BetaTechnik";
    default:
      return "unknown provider";
  }
}

}  // namespace quillon
