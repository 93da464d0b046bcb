#include <quillon/descriptors/internal/code_text.h>
#include <quillon/descriptors/mpeg2/video.h>
#include <quillon/faces/internal/describe.h>

namespace quillon {

namespace {

const char* alignment_type_text(int type) {
  return detail::text_of(
      type, {"reserved", "Slice, or video access unit", "video access unit", "GOP, or SEQ", "SEQ"},
      "reserved");
}

}  // namespace

template <class V, class S>
void DescriptorVideoStream::describe(V& v, S& s) {
  v.field("multiple_frame_rate_flag", s.multiple_frame_rate_flag_);
  v.field("frame_rate_code", s.frame_rate_code_);
  v.field("MPEG_1_only_flag", s.mpeg_1_only_flag_);
  v.field("constrained_parameter_flag", s.constrained_parameter_flag_);
  v.field("still_picture_flag", s.still_picture_flag_);
  v.field("profile_and_level_indication", s.profile_and_level_indication_);
  v.field("chroma_format", s.chroma_format_);
  v.field("frame_rate_extension_flag", s.frame_rate_extension_flag_);
  v.field("reserved", s.reserved_);
}
QUILLON_XML_FACES_OF(DescriptorVideoStream, "video_stream_descriptor")

// Kept: readers of reports rely on the line.
void DescriptorVideoStream::_dump_state(std::ostream& stream) const {
  stream << "TO IMPLEMENT!!!" << std::endl;
}

template <class V, class S>
void DescriptorTargetBackgroundGrid::describe(V& v, S& s) {
  v.field("horizontal_size", s.horizontal_size_);
  v.field("vertical_size", s.vertical_size_);
  v.field("aspect_ratio_information", s.aspect_ratio_information_);
}
QUILLON_SILENT_FACES_OF(DescriptorTargetBackgroundGrid, "target_background_grid_descriptor")

template <class V, class S>
void DescriptorVideoWindow::describe(V& v, S& s) {
  v.field("horizonal_offset", s.horizontal_offset_);  // sic: saved documents have this name
  v.field("vertical_offset", s.vertical_offset_);
  v.field("window_priority", s.window_priority_);
}
QUILLON_SILENT_FACES_OF(DescriptorVideoWindow, "video_window_descriptor")

template <class V, class S>
void DescriptorDataStreamAlignment::describe(V& v, S& s) {
  v.coded("alignment_type", s.alignment_type_, alignment_type_text);
}
QUILLON_SILENT_FACES_OF(DescriptorDataStreamAlignment, "data_stream_alignment_descriptor")

const char* DescriptorDataStreamAlignment::get_alignment_type_string() const {
  return alignment_type_text(alignment_type_);
}

template <class V, class S>
void DescriptorIBP::describe(V& v, S& s) {
  v.field("closed_gop_flag", s.closed_gop_flag_);
  v.field("identical_gop_flag", s.identical_gop_flag_);
  v.field("max_gop_length", s.max_gop_length_);
}
QUILLON_SILENT_FACES_OF(DescriptorIBP, "IBP_descriptor")

}  // namespace quillon
