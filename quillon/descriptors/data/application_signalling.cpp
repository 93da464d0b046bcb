#include <quillon/descriptors/data/application_signalling.h>
#include <quillon/descriptors/internal/code_text.h>
#include <quillon/faces/internal/describe.h>
#include <quillon/sections/internal/rows.h>

namespace quillon {

DescriptorApplicationSignalling::DescriptorApplicationSignalling(ByteView d) : DescriptorBase(d) {
  if (descriptor_length % 3 != 0) throw error("");
  read_rows(application_infos, d, 2, descriptor_length, 3);
}

template <class V, class S>
void DescriptorApplicationSignalling::describe(V& v, S& s) {
  v.list("application_info", "info", s.application_infos);
}
QUILLON_SILENT_FACES_OF(DescriptorApplicationSignalling, "application_signalling_descriptor")

template <class V, class S>
void DescriptorApplicationSignalling::ApplicationInfo::describe(V& v, S& s) {
  v.coded("application_type", s.application_type,
          {detail::application_type_text, detail::standard_application_type_text});
  v.field("AIT_version_number", s.AIT_version_number);
}
QUILLON_SILENT_RECORD_FACES_OF(DescriptorApplicationSignalling::ApplicationInfo)

const char* DescriptorApplicationSignalling::ApplicationInfo::get_application_type_text() const {
  return detail::application_type_text(application_type);
}

}  // namespace quillon
