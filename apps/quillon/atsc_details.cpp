#include "apps/quillon/atsc_details.h"

#include "apps/quillon/details.h"

#include <chrono>
#include <cstdio>

#include <quillon/atsc/cvct.h>
#include <quillon/atsc/dccsct.h>
#include <quillon/atsc/dcct.h>
#include <quillon/atsc/eit_atsc.h>
#include <quillon/atsc/ett.h>
#include <quillon/atsc/mgt.h>
#include <quillon/atsc/pmt_atsc.h>
#include <quillon/atsc/rrt.h>
#include <quillon/atsc/stt.h>
#include <quillon/atsc/tvct.h>

namespace quillon::app {

namespace {

// "2018-02-12 18:00:00"; GPS time counts on where UTC has leap seconds.
std::string date(int gps_seconds, int leap_seconds = 0) {
  using namespace std::chrono;
  const int64_t elapsed = int64_t{static_cast<uint32_t>(gps_seconds)} - leap_seconds;
  const sys_seconds time = sys_days(1980y / January / 6) + seconds(elapsed);
  const auto day = floor<days>(time);
  const year_month_day ymd(day);
  const hh_mm_ss clock(time - day);
  char out[64];
  std::snprintf(out, sizeof out, "%04d-%02u-%02u %02d:%02d:%02d", static_cast<int>(ymd.year()),
                static_cast<unsigned>(ymd.month()), static_cast<unsigned>(ymd.day()),
                static_cast<int>(clock.hours().count()), static_cast<int>(clock.minutes().count()),
                static_cast<int>(clock.seconds().count()));
  return out;
}

// Fields of the cable channels alone.
void print_more(Details&, const AtscTVCT::Channel&) {}
void print_more(Details& out, const AtscCVCT::Channel& channel) {
  out.line("path_select", channel.path_select);
  out.line("out_of_band", yes_no(channel.out_of_band));
}

template <class Table>
std::string channel_details(const Table& vct) {
  Details out;
  for (const auto& row : vct.channels) {
    out.line("channel " + channel_number(row.major_channel_number, row.minor_channel_number) + " " +
             shown(row.short_name));
    const Details::Level level(out);
    out.line("program_number", row.program_number);
    out.line("source_id", hex4(row.source_id));
    out.line("channel_TSID", hex4(row.channel_TSID));
    out.line("modulation_mode", coded(row.modulation_mode, row.get_modulation_mode_text()));
    out.line("carrier_frequency", std::to_string(static_cast<uint32_t>(row.carrier_frequency)) + " Hz");
    out.line("service_type", coded(row.service_type, row.get_service_type_text()));
    out.line("ETM_location", coded(row.ETM_location, row.get_ETM_location_text()));
    out.line("access_controlled", yes_no(row.access_controlled));
    out.line("hidden", yes_no(row.hidden));
    out.line("hide_guide", yes_no(row.hide_guide));
    print_more(out, row);
    out.descriptors(row);
  }
  out.descriptors(vct);
  return out.take();
}

}  // namespace

std::string details_of(const PmtATSC& pmt) {
  Details out;
  out.descriptors(pmt);
  for (const PmtATSC::ElementaryStream& row : pmt.get_pmt_stream_info()) {
    out.line("elementary_PID", hex4(row.elementary_PID));
    const Details::Level level(out);
    out.line("stream_type", coded(row.stream_type, row.get_stream_type_cstr()));
    out.descriptors(row);
  }
  return out.take();
}

std::string details_of(const AtscMGT& mgt) {
  Details out;
  for (const AtscMGT::Table& row : mgt.tables) {
    const std::string text = shown(row.get_table_type_text());
    out.line("table_type", hex4(row.table_type) + (text.empty() ? "" : ", " + text));
    const Details::Level level(out);
    out.line("table_type_PID", hex4(row.table_type_PID));
    out.line("table_type_version_number", row.table_type_version_number);
    out.line("number_bytes", row.number_bytes);
    out.descriptors(row);
  }
  out.descriptors(mgt);
  return out.take();
}

std::string details_of(const AtscTVCT& vct) {
  return channel_details(vct);
}

std::string details_of(const AtscCVCT& vct) {
  Details out;
  out.line("protocol_version", vct.protocol_version);
  out.line("num_channels_in_section", vct.num_channels_in_section);
  return out.take() + channel_details(vct);
}

std::string details_of(const AtscEIT& eit) {
  Details out;
  for (const AtscEIT::Event& row : eit.events) {
    out.line("event_id", hex4(row.event_id));
    const Details::Level level(out);
    out.line("start_time", date(row.start_time) + " GPS");
    out.line("length_in_seconds", row.length_in_seconds);
    out.line("ETM_location", coded(row.ETM_location, row.get_ETM_location_text()));
    out.line("title_length", row.title_length);
    out.strings("title_text", row.title_text);
    out.descriptors(row);
  }
  return out.take();
}

std::string details_of(const AtscETT& ett) {
  Details out;
  out.line("protocol_version", ett.protocol_version);
  out.line("ETM_id", hex(static_cast<uint32_t>(ett.ETM_id), 8));
  const auto id = static_cast<uint32_t>(ett.ETM_id);
  const Details::Level level(out);
  out.line("source_id", hex4(static_cast<int>(id >> 16)));
  // The low two bits tell the id of an event from that of a channel.
  if ((id & 3) == 2) out.line("event_id", hex4(static_cast<int>(id >> 2 & 0x3FFF)));
  out.strings("extended_text_message", ett.extended_text_message);
  return out.take();
}

std::string details_of(const AtscSTT& stt) {
  Details out;
  out.line("system_time", date(stt.system_time, stt.GPS_UTC_offset) + " UTC");
  out.line("daylight_savings", yes_no(stt.daylight_savings >> 15));
  out.line("DS_day_of_month", stt.daylight_savings >> 8 & 0x1F);
  out.line("DS_hour", stt.daylight_savings & 0xFF);
  out.descriptors(stt);
  return out.take();
}

std::string details_of(const AtscRRT& rrt) {
  Details out;
  out.line("protocol_version", rrt.protocol_version);
  out.line("rating_region_name_length", rrt.rating_region_name_length);
  out.line("dimensions_defined", rrt.dimensions_defined);
  for (const AtscRRT::Dimension& row : rrt.dimensions) {
    out.line("dimension_name_length", row.dimension_name_length);
    const Details::Level level(out);
    out.line("graduated_scale", yes_no(row.graduated_scale));
    out.line("values_defined", row.values_defined);
    for (const auto& value : row.values)
      out.line("abbrev_rating_value_length",
               std::to_string(value.abbrev_rating_value_length) +
                   ", rating_value_length: " + std::to_string(value.rating_value_length));
  }
  out.descriptors(rrt);
  return out.take();
}

std::string details_of(const AtscDCCT& dcct) {
  Details out;
  out.line("protocol_version", dcct.protocol_version);
  out.line("dcc_test_count", dcct.dcc_test_count);
  for (const AtscDCCT::DCCTest& row : dcct.tests) {
    out.line("dcc_context",
             coded(row.dcc_context, row.dcc_context ? "channel redirect" : "temporary retune"));
    const Details::Level level(out);
    out.line("from", channel_number(row.dcc_from_major_channel_number, row.dcc_from_minor_channel_number));
    out.line("to", channel_number(row.dcc_to_major_channel_number, row.dcc_to_minor_channel_number));
    out.line("dcc_start_time", date(row.dcc_start_time) + " GPS");
    out.line("dcc_end_time", date(row.dcc_end_time) + " GPS");
    for (const auto& term : row.terms) {
      out.line("dcc_selection_type", hex(static_cast<unsigned>(term.dcc_selection_type), 2));
      const Details::Level inner(out);
      out.descriptors(term);
    }
    out.descriptors(row);
  }
  out.descriptors(dcct);
  return out.take();
}

std::string details_of(const AtscDCCSCT& dccsct) {
  Details out;
  out.line("protocol_version", dccsct.protocol_version);
  out.line("updates_defined", dccsct.updates_defined);
  for (const AtscDCCSCT::Update& row : dccsct.updates) {
    out.line("update_type", coded(row.update_type, row.get_update_type_text()));
    const Details::Level level(out);
    if (row.update_type == 1) out.line("genre_category_code", row.genre_category_code);
    if (row.update_type == 2) out.line("dcc_state_location_code", row.dcc_state_location_code);
    if (row.update_type == 3) {
      out.line("state_code", row.state_code);
      out.line("dcc_county_location_code", row.dcc_county_location_code);
    }
    out.descriptors(row);
  }
  out.descriptors(dccsct);
  return out.take();
}

}  // namespace quillon::app
