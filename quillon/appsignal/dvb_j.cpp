#include <quillon/appsignal/dvb_j.h>
#include <quillon/faces/internal/describe.h>
#include <quillon/sections/internal/rows.h>

namespace quillon {

DescriptorDVB_J_Application::DescriptorDVB_J_Application(ByteView d) : DescriptorAitBase(d) {
  read_uneven_rows(parameter_infos_, d, 2, descriptor_length);
}

template <class V, class S>
void DescriptorDVB_J_Application::describe(V& v, S& s) {
  if constexpr (V::dump)
    for (const LengthPrefixedString& parameter : s.parameter_infos_)
      parameter.dump_state("parameter_info", v.stream());
  else
    v.list("parameter_infos", "info", s.parameter_infos_);
}
QUILLON_FACES_OF(DescriptorDVB_J_Application, "DVB-J_application_descriptor")

DescriptorDVB_J_ApplicationLocation::DescriptorDVB_J_ApplicationLocation(ByteView d) : DescriptorAitBase(d) {
  const int end = 2 + descriptor_length;
  int pos = 2;
  int size = 0;
  base_directory_ = LengthPrefixedString(d.from(pos), end - pos, size);
  pos += size;
  classpath_extension_ = LengthPrefixedString(d.from(pos), end - pos, size);
  pos += size;
  // Quirk: texts of an Ait but application_name
  initial_class_ = WireText(d.present(pos, end - pos), d.reading());
}

template <class V, class S>
void DescriptorDVB_J_ApplicationLocation::describe(V& v, S& s) {
  if constexpr (V::dump) {
    s.base_directory_.dump_state("base_directory", v.stream());
    s.classpath_extension_.dump_state("classpath_extension", v.stream());
  }
  v.field("initial_class", s.initial_class_);
  if constexpr (!V::dump) {
    v.child("base_directory", s.base_directory_);
    v.child("classpath_extension", s.classpath_extension_);
  }
}
QUILLON_FACES_OF(DescriptorDVB_J_ApplicationLocation, "DVB-J_application_location_descriptor")

}  // namespace quillon
