#pragma once

// Everything.

#include <quillon/platform/api.h>

#if __cplusplus >= 202002L  // what follows would bury the one message of that header
#include <quillon/appsignal/ait.h>
#include <quillon/appsignal/ait_classes.h>
#include <quillon/appsignal/dsmcc.h>
#include <quillon/appsignal/int.h>
#include <quillon/appsignal/int_classes.h>
#include <quillon/atsc/atsc_classes.h>
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
#include <quillon/demux/sources.h>
#include <quillon/descriptors/dvb_classes.h>
#include <quillon/descriptors/event/extended_text.h>
#include <quillon/faces/field_sink.h>
#include <quillon/fields/dvb_text.h>
#include <quillon/platform/debug_output.h>
#include <quillon/platform/utf8.h>
#include <quillon/report/dump.h>
#include <quillon/report/registries.h>
#include <quillon/sections/crc.h>
#include <quillon/sections/log.h>
#include <quillon/sections/pat.h>
#include <quillon/sections/section_size.h>
#include <quillon/stream/any_table.h>
#include <quillon/stream/packet_reader.h>
#include <quillon/stream/schedule_collector.h>
#include <quillon/stream/section_reader.h>
#include <quillon/stream/service_directory.h>
#include <quillon/stream/service_id.h>
#include <quillon/stream/stream_statistics.h>
#include <quillon/stream/table_collector.h>
#include <quillon/stream/table_id.h>
#include <quillon/stream/table_kinds.h>
#include <quillon/tables/bat.h>
#include <quillon/tables/cat.h>
#include <quillon/tables/eit.h>
#include <quillon/tables/nit.h>
#include <quillon/tables/pmt.h>
#include <quillon/tables/rst.h>
#include <quillon/tables/sdt.h>
#include <quillon/tables/tdt.h>
#include <quillon/tables/tot.h>
#include <quillon/version.h>
#include <quillon/xml/document.h>

#if !defined(_WIN32)  // where it is the system's own, whose headers define much else
#include <quillon/xml/attributes.h>
#include <quillon/xml/dom.h>
#endif

#endif
