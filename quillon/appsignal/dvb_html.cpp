#include <quillon/appsignal/dvb_html.h>
#include <quillon/faces/internal/describe.h>
#include <quillon/sections/internal/rows.h>

namespace quillon {

namespace {

// Reads the first string and returns what follows it.
WireText read_strings(ByteView d, int descriptor_length, LengthPrefixedString& first) {
  int size = 0;
  first = LengthPrefixedString(d.from(2), descriptor_length, size);
  // Quirk: texts of an Ait but application_name
  return WireText(d.present(2 + size, descriptor_length - size), d.reading());
}

}  // namespace

DescriptorDVB_HTML_Application::DescriptorDVB_HTML_Application(ByteView d) : DescriptorAitBase(d) {
  parameter_ = read_strings(d, descriptor_length, application_id_);
  // Quirk: DescriptorDVB_HTML_Application ids
  if (!d.standard()) return;
  int size = 0;
  application_id_ = LengthPrefixedString(d.from(2).upto(1), descriptor_length, size);  // no string
  each_row(d.upto(2 + descriptor_length), 3, 3 + (application_id_.get_length() & ~1),
           [this](ByteView at, int) {
             application_ids_.push_back(at.u16(0));
             return 2;
           });
}

template <class V, class S>
void DescriptorDVB_HTML_Application::describe(V& v, S& s) {
  if constexpr (V::dump) s.application_id_.dump_state("application_id", v.stream());
  v.standard("application_ids", s.application_ids_);
  v.field("parameter", s.parameter_);
  if constexpr (!V::dump) v.child("application_id", s.application_id_);
}
QUILLON_FACES_OF(DescriptorDVB_HTML_Application, "DVB-HTML_application_descriptor")

DescriptorDVB_HTML_ApplicationLocation::DescriptorDVB_HTML_ApplicationLocation(ByteView d)
    : DescriptorAitBase(d) {
  initial_path_ = read_strings(d, descriptor_length, physical_root_);
}

template <class V, class S>
void DescriptorDVB_HTML_ApplicationLocation::describe(V& v, S& s) {
  if constexpr (V::dump) s.physical_root_.dump_state("physical_root", v.stream());
  v.field("initial_path", s.initial_path_);
  if constexpr (!V::dump) v.child("physical_root", s.physical_root_);
}
QUILLON_FACES_OF(DescriptorDVB_HTML_ApplicationLocation, "DVB-HTML_application_location")

DescriptorDVB_HTML_ApplicationLocationBoundary::DescriptorDVB_HTML_ApplicationLocationBoundary(ByteView d)
    : DescriptorAitBase(d) {
  regular_expression_ = read_strings(d, descriptor_length, label_);
}

template <class V, class S>
void DescriptorDVB_HTML_ApplicationLocationBoundary::describe(V& v, S& s) {
  if constexpr (V::dump) s.label_.dump_state("label", v.stream());
  v.field("regular_expression", s.regular_expression_);
  if constexpr (!V::dump) v.child("label", s.label_);
}
QUILLON_FACES_OF(DescriptorDVB_HTML_ApplicationLocationBoundary, "DVB-HTML_application_boundary")

}  // namespace quillon
