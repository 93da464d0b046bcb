#include <quillon/descriptors/data/application_signalling.h>
#include <quillon/descriptors/internal/describe.h>

namespace quillon {

DescriptorApplicationSignalling::DescriptorApplicationSignalling(ByteView d) : DescriptorBase(d) {
  if (descriptor_length % 3 != 0) throw error("");
  application_infos.reserve(static_cast<size_t>(descriptor_length) / 3);
  walk(d, 2, 2 + descriptor_length, [this](ByteView at, int) {
    application_infos.emplace_back(at);
    return 3;
  });
}

template <class V, class S>
void DescriptorApplicationSignalling::describe(V& v, S& s) {
  v.list("application_info", "info", s.application_infos);
}
QUILLON_SILENT_FACES_OF(DescriptorApplicationSignalling, "application_signalling_descriptor")

template <class V, class S>
void DescriptorApplicationSignalling::ApplicationInfo::describe(V& v, S& s) {
  v.field("application_type", s.application_type);
  v.field("AIT_version_number", s.AIT_version_number);
}
QUILLON_SILENT_RECORD_FACES_OF(DescriptorApplicationSignalling::ApplicationInfo)

const char* DescriptorApplicationSignalling::ApplicationInfo::get_application_type_text() const {
  switch (application_type) {
    case 0:
      return "reserved_future_use";
    case 1:
      return "DVB-J application";
    case 2:
      return "DVB-HTML application";
    default:
      return "subject to registration with DVB";
  }
}

}  // namespace quillon
