#include "apps/quillon/html/byte_places.h"

#include <algorithm>
#include <string>

namespace quillon::app::html {

namespace {

using Bytes = std::span<const uint8_t>;

struct Place {
  const char* name;
  size_t offset;
  size_t size;
};

// How the descriptors of a section, and its rows, lie in it.
struct Layout {
  enum class Own { none, counted, counted_after_rows, to_the_end };

  int first_id;
  int last_id;
  std::span<const Place> fields;
  Own own = Own::none;  // the section's own descriptors
  size_t own_at = 0;    // or their length
  const char* rows = nullptr;
  size_t rows_at = 0;     // after the section's own descriptors, if these come first
  size_t row_header = 0;  // the last two bytes are the length of the row's descriptors, but of 4 bytes
  std::span<const Place> row_fields = {};
};

constexpr Place kHeader[] = {
    {"table_id", 0, 1},       {"syntax_indicator", 1, 1},    {"section_length", 1, 2},
    {"context_id", 3, 2},     {"version_number", 5, 1},      {"current_next_indicator", 5, 1},
    {"section_number", 6, 1}, {"last_section_number", 7, 1},
};
constexpr Place kDescriptor[] = {{"descriptor_id", 0, 1}, {"descriptor_length", 1, 1}};

constexpr Place kPat[] = {{"transport_stream_id", 3, 2}};
constexpr Place kProgram[] = {{"sid", 0, 2}, {"pmtpid", 2, 2}};
constexpr Place kPmt[] = {{"program_number", 3, 2}, {"pcr", 8, 2}, {"pcr_pid", 8, 2}};
constexpr Place kStream[] = {{"stream_type", 0, 1},
                             {"elementary_pid", 1, 2},
                             {"elementary_PID", 1, 2},
                             {"es_info_length", 3, 2},
                             {"ES_info_length", 3, 2}};
constexpr Place kNit[] = {{"network_id", 3, 2}, {"bouquet_id", 3, 2}};
constexpr Place kMultiplex[] = {{"stream_id", 0, 2}, {"network_id", 2, 2}};
constexpr Place kSdt[] = {{"transport_stream_id", 3, 2}, {"original_network_id", 8, 2}};
constexpr Place kService[] = {{"service_id", 0, 2},
                              {"EIT_schedule_flag", 2, 1},
                              {"EIT_present_following_flag", 2, 1},
                              {"running_status", 3, 1},
                              {"free_CA_mode", 3, 1}};
constexpr Place kEit[] = {{"service_id", 3, 2},
                          {"transport_stream_id", 8, 2},
                          {"original_network_id", 10, 2},
                          {"segment_last_section_number", 12, 1},
                          {"last_table_id", 13, 1}};
constexpr Place kEvent[] = {{"event_id", 0, 2},      {"start_time", 2, 5},
                            {"duration", 7, 3},      {"running_status", 10, 1},
                            {"free_CA_mode", 10, 1}, {"descriptors_length", 10, 2}};
constexpr Place kTime[] = {{"UTC_time", 3, 5}};
constexpr Place kAit[] = {{"application_type", 3, 2}, {"common_descriptors_length", 8, 2}};
constexpr Place kApplication[] = {{"application_identifer", 0, 6},
                                  {"application_control_code", 6, 1},
                                  {"application_descriptors_loop_length", 7, 2}};
constexpr Place kInt[] = {{"action_type", 3, 1},
                          {"platform_id_hash", 4, 1},
                          {"platform_id", 8, 3},
                          {"processing_order", 11, 1},
                          {"platform_descriptor_loop_length", 12, 2}};
constexpr Place kMgt[] = {{"protocol_version", 8, 1}, {"tables_defined", 9, 2}};
constexpr Place kGuided[] = {{"table_type", 0, 2},
                             {"table_type_PID", 2, 2},
                             {"table_type_version_number", 4, 1},
                             {"number_bytes", 5, 4},
                             {"table_type_descriptors_length", 9, 2}};
constexpr Place kVct[] = {{"protocol_version", 8, 1}, {"num_channels_in_section", 9, 1}};
constexpr Place kChannel[] = {
    {"short_name", 0, 14},      {"major_channel_number", 14, 2}, {"minor_channel_number", 15, 2},
    {"modulation_mode", 17, 1}, {"carrier_frequency", 18, 4},    {"channel_TSID", 22, 2},
    {"program_number", 24, 2},  {"ETM_location", 26, 1},         {"access_controlled", 26, 1},
    {"hidden", 26, 1},          {"hide_guide", 26, 1},           {"service_type", 27, 1},
    {"source_id", 28, 2},       {"descriptors_length", 30, 2}};
constexpr Place kSystemTime[] = {{"protocol_version", 8, 1}, {"system_time", 9, 4},
                                 {"GPS_UTC_offset", 13, 1},  {"daylight_savings", 14, 2},
                                 {"DS_status", 14, 1},       {"DS_day_of_month", 14, 1},
                                 {"DS_hour", 15, 1}};
constexpr Place kMessage[] = {{"protocol_version", 8, 1}, {"ETM_id", 9, 4}};

using Own = Layout::Own;
constexpr Layout kLayouts[] = {
    {0x00, 0x00, kPat, Own::none, 0, "program_infos", 8, 4, kProgram},
    {0x01, 0x01, {}, Own::to_the_end, 8},
    {0x02, 0x02, kPmt, Own::counted, 10, "stream_infos", 0, 5, kStream},
    {0x40, 0x41, kNit, Own::counted, 8, "stream_infos", 2, 6, kMultiplex},
    {0x42, 0x42, kSdt, Own::none, 0, "service_infos", 11, 5, kService},
    {0x46, 0x46, kSdt, Own::none, 0, "service_infos", 11, 5, kService},
    {0x4A, 0x4A, kNit, Own::counted, 8, "infos", 2, 6, kMultiplex},
    {0x4C, 0x4C, kInt, Own::counted, 12},
    {0x4E, 0x6F, kEit, Own::none, 0, "event_infos", 14, 12, kEvent},
    {0x70, 0x70, kTime},
    {0x73, 0x73, kTime, Own::counted, 8},
    {0x74, 0x74, kAit, Own::counted, 8, "application_infos", 2, 9, kApplication},
    {0xC7, 0xC7, kMgt, Own::counted_after_rows, 0, "tables", 11, 11, kGuided},
    {0xC8, 0xC9, kVct, Own::counted_after_rows, 0, "channels", 10, 32, kChannel},
    {0xCC, 0xCC, kMessage},
    {0xCD, 0xCD, kSystemTime, Own::to_the_end, 16},
};

// Places the fields of one section.
class Placer {
 public:
  Placer(Bytes bytes, bool has_crc) : bytes_(bytes), end_(bytes.size() - (has_crc ? 4 : 0)) {}

  void place(Field& section, const Layout& layout) {
    fields(section, layout.fields, 0);
    size_t at = layout.own_at;
    if (layout.own == Own::to_the_end) descriptors(section, at, end_);
    if (layout.own == Own::counted) at = counted_descriptors(section, at);
    if (!layout.rows) return;
    at += layout.rows_at;
    if (Field* const list = item(section, layout.rows)) {
      for (Field& row : list->items) {
        if (at + layout.row_header > end_) return;
        const size_t begin = at;
        fields(row, layout.row_fields, at);
        at = layout.row_header == 4 ? at + 4 : counted_descriptors(row, at + layout.row_header - 2);
        row.span = {begin, at - begin};
      }
      if (layout.own == Own::counted_after_rows) counted_descriptors(section, at);
    }
  }

 private:
  static Field* item(Field& of, const char* name) {
    const auto at =
        std::find_if(of.items.begin(), of.items.end(), [&](const Field& field) { return field.is(name); });
    return at == of.items.end() ? nullptr : &*at;
  }

  void fields(Field& of, std::span<const Place> places, size_t at) {
    for (const Place& place : places)
      if (Field* const field = item(of, place.name)) field->span = {at + place.offset, place.size};
  }

  // Those after their length; gives where they end.
  size_t counted_descriptors(Field& of, size_t at) {
    if (at + 2 > end_) return end_;
    // Of twelve bits, or ten: then those before them are set, as all reserved ones.
    const size_t stated = (bytes_[at] & 0x0Fu) << 8 | bytes_[at + 1];
    const size_t length = at + 2 + stated > end_ ? stated & 0x3FF : stated;
    const size_t end = std::min(at + 2 + length, end_);
    descriptors(of, at + 2, end);
    return end;
  }

  void descriptors(Field& of, size_t at, size_t end) {
    Field* const list = item(of, "descriptors");
    if (!list) return;
    list->span = {at, end - std::min(at, end)};
    for (Field& descriptor : list->items) {
      if (at + 2 > end) return;
      const size_t size = size_t{2} + bytes_[at + 1];
      if (at + size > end || descriptor["descriptor_id"].value != std::to_string(bytes_[at]) ||
          descriptor["descriptor_length"].value != std::to_string(bytes_[at + 1]))
        return;
      descriptor.span = {at, size};
      fields(descriptor, kDescriptor, at);
      at += size;
    }
  }

  Bytes bytes_;
  size_t end_;
};

}  // namespace

void place_bytes(Field& section, Bytes bytes) {
  constexpr int kTimeOffset = 0x73;
  const bool is_long = bytes[1] & 0x80;
  const bool has_crc = is_long || bytes[0] == kTimeOffset;
  if (bytes.size() < (is_long ? 12 : 7)) return;
  for (Field& field : section.items) {
    for (const Place& place : kHeader)
      if (field.is(place.name) && (is_long || place.offset < 3)) field.span = {place.offset, place.size};
    if (field.is("crc32") && has_crc) field.span = {bytes.size() - 4, 4};
  }
  for (const Layout& layout : kLayouts)
    if (bytes[0] >= layout.first_id && bytes[0] <= layout.last_id)
      Placer(bytes, has_crc).place(section, layout);
}

}  // namespace quillon::app::html
