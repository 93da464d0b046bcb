#include <quillon/descriptors/event/local_time_offset.h>
#include <quillon/faces/internal/describe.h>
#include <quillon/report/internal/line.h>
#include <quillon/sections/internal/rows.h>

namespace quillon {

template <class V, class S>
void DescriptorLocalTimeOffset::LocalTime::describe(V& v, S& s) {
  v.field("country_region_id", s.country_region_id_);
  v.field("local_time_offset_polarity", s.local_time_offset_polarity_);
  v.field("country_code", s.country_code_);
  v.child("local_time_offset", s.local_time_offset_);
  v.child("time_of_change", s.time_of_change_);
  v.child("next_time_offset", s.next_time_offset_);
}
QUILLON_XML_RECORD_FACES_OF(DescriptorLocalTimeOffset::LocalTime)

// In decimal from the first line on, and the stream stays so.
void DescriptorLocalTimeOffset::LocalTime::dump_state(std::ostream& stream) const {
  stream << std::dec;
  report::line(stream, "country_code: ", country_code_.c_str());
  stream << "country_region_id: " << country_region_id_ << std::endl;
  stream << "local_time_offset_polarity: " << local_time_offset_polarity_ << std::endl;
  stream << "local_time_offset: " << local_time_offset_ << std::endl;
  stream << "time_of_change: " << time_of_change_ << std::endl;
  stream << "next_time_offset: " << next_time_offset_ << std::endl;
}

DescriptorLocalTimeOffset::DescriptorLocalTimeOffset(ByteView d) : DescriptorBase(d) {
  if (!read_rows(localtime_, d, 2, descriptor_length, 13)) throw error("descriptor start end mismatch");
}

template <class V, class S>
void DescriptorLocalTimeOffset::describe(V& v, S& s) {
  v.list("localtime", "time", s.localtime_);
}
QUILLON_FACES_OF(DescriptorLocalTimeOffset, "local_time_offset_descriptor")

}  // namespace quillon
