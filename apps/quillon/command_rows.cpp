#include "apps/quillon/command_rows.h"

#include "apps/quillon/text.h"

#include <charconv>
#include <iterator>
#include <optional>
#include <string>

namespace quillon::app {

namespace {

enum Bit : unsigned {
  kSummary = 1u << 0,
  kServices = 1u << 1,
  kPids = 1u << 2,
  kEpg = 1u << 3,
  kTables = 1u << 4,
  kShow = 1u << 5,
  kJson = 1u << 6,
  kReport = 1u << 7,
  kXml = 1u << 8,
  kLoad = 1u << 9,
  kSections = 1u << 10,
  kWatch = 1u << 11,
  kNames = 1u << 12,
  kHtml = 1u << 13,
};
constexpr unsigned kViews = kSummary | kServices | kPids | kEpg | kTables;
constexpr unsigned kEach = kShow | kJson | kReport | kXml | kSections;
constexpr unsigned kStreams = kViews | kEach | kWatch | kHtml;

constexpr CommandRow kCommands[] = {
    {"summary", "INPUT...", "Tell what a stream is, at a glance",
     "Duration and rate, the standard, services with their streams, languages and conditional access, PIDs "
     "with what they carry, tables with their versions, and what was damaged, skipped or refused.",
     summary, kSummary},
    {"services", "INPUT...", "List the services, with their streams",
     "Services of DVB, virtual channels of ATSC, or programs, those of other transport streams too.",
     services, kServices},
    {"pids", "INPUT...", "List the PIDs, with packets, rates and contents",
     "Rates are by the clock of the stream (PCR); where there is none, the share in all packets is all there "
     "is.",
     pids, kPids},
    {"epg", "INPUT...", "List the events of each service",
     "Of present/following and schedule tables, in ATSC of EITs with the texts of their ETTs; in order of "
     "time.",
     epg, kEpg},
    {"tables", "INPUT...", "List the tables, with versions and how often they come",
     "A line a table: where it is, its ids, its version, its sections, and the smallest, mean and largest "
     "interval between two times that it was sent.",
     tables, kTables},
    {"show", "INPUT...", "Print each distinct section as a tree of fields",
     "Every field with its name, coded ones with what they mean; texts are in quotation marks, in which "
     "control characters are escaped.",
     show, kShow},
    {"json", "INPUT...", "Print each distinct section as a line of JSON",
     "An object a line: input (if there are several), pid, packet (from 1), time (seconds by the stream's "
     "clock), arrival (of live inputs), table, and every field. Bytes are hexadecimal, times as in ISO 8601, "
     "null what is not defined; a coded number is followed by its meaning.",
     json, kJson},
    {"report", "INPUT...", "Print each distinct section as a text report",
     "The report that objects of the library give, for tools that rely on it. It leaves many fields out: "
     "show and json have them all.",
     report, kReport},
    {"xml", "INPUT...", "Write the same sections as one XML document",
     "A document that load reads back. A file is written under another name first, so that it is whole or as "
     "it was.",
     save_xml, kXml},
    {"load", "FILE...", "Load such documents back and print their reports", "The counterpart of xml.",
     load_xml, kLoad},
    {"sections", "INPUT...", "Write each distinct section, as it was sent",
     "A chain of bare sections, one after the other, which every command reads as an input.", sections,
     kSections},
    {"html", "INPUT...", "Make a page of a stream, to look at and to send",
     "One file for any browser, which fetches nothing: rates over time and shares by service, services, the "
     "schedule as a time line, networks, applications, tables with how often they come, what is damaged, and "
     "every section field by field with its bytes. Of a large input sections are sampled, which the page "
     "says.",
     html_page, kHtml},
    {"watch", "INPUT...", "Tell what changes, as it happens",
     "A line an event: tables that are new, changed or gone; services that are new, gone, renamed or "
     "changed; errors of continuity, CRCs, transport and synchronization, and where scrambling begins and "
     "ends, a PID once a second with its count. It ends with its input, or at a signal.\n\n"
     "Times are seconds by the stream's clock (PCR). Where a live input has none, or it stands still, they "
     "go on by the clock on the wall; where a file has none, the packet is told, no table is ever gone, and "
     "10,000 packets (500 sections of a chain) count as a second. Of each kind 500 events are told in a "
     "second, of more only the count.\n\n"
     "With --json an object a line: event, input (if there are several), time (where it is known), packet "
     "(from 1), arrival (of live inputs), and what it is about. Events are table_new, table_changed, "
     "table_gone, service_new, service_changed, service_renamed, service_gone, continuity_error, crc_error, "
     "transport_error, sync_loss, scrambling_begins, scrambling_ends, and events_omitted.\n\n"
     "The file of --metrics is written once a second while a live input is read, and at the end. It has "
     "series of 1,000 PIDs and 1,000 tables at most, none of EIT schedules and ETTs.",
     watch, kWatch},
    {"names", "KIND [ID]", "Print the registered name of a DVB identifier",
     "KIND is network, original-network, bouquet, ca-system, data-broadcast, mhp-organisation or "
     "private-data; without an ID all names of the kind are printed.",
     names, kNames},
};

CLI::Validator number(int64_t first, int64_t last) {
  const auto take = [first, last](std::string& text) -> std::string {
    const std::optional<int64_t> value = number_from(text);
    if (!value) return text + " is no number";
    if (*value < first || *value > last)
      return text + " is not from " + std::to_string(first) + " to " + std::to_string(last);
    text = std::to_string(*value);
    return {};
  };
  return {take, "", ""};
}

// A length of time that a clock can measure.
CLI::Validator seconds() {
  const auto take = [](std::string& text) -> std::string {
    double value = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, result] = std::from_chars(text.data(), end, value);
    const bool is_one = result == std::errc() && stop == end && value > 0 && value < 1e9;
    return is_one ? "" : text + " is no number of seconds";
  };
  return {take, "", ""};
}

CLI::Option* numbers(CLI::App& command, const OptionRow& row, std::vector<int>& values, int last) {
  return command.add_option(row.names, values)->transform(number(0, last))->allow_extra_args(false);
}

const OptionRow kOptions[] = {
    {"--pid", "PID", "only this PID, whatever it carries (repeatable)", nullptr, kStreams,
     [](CLI::App& c, const OptionRow& row, Options& o) { return numbers(c, row, o.choice.pids, 0x1FFF); }},
    {"--table", "ID", "only this table id, on whatever PID it is sent (repeatable)", nullptr, kStreams,
     [](CLI::App& c, const OptionRow& row, Options& o) { return numbers(c, row, o.choice.tables, 0xFF); }},
    {"--service", "SERVICE",
     "only what tells of this service: its name, its program number, or its channel as 7.1 (repeatable)",
     nullptr, kStreams,
     [](CLI::App& c, const OptionRow& row, Options& o) {
       return c.add_option(row.names, o.choice.services)->allow_extra_args(false);
     }},
    {"--extension", "ID", "only this table id extension (repeatable)", nullptr, kStreams,
     [](CLI::App& c, const OptionRow& row, Options& o) {
       return numbers(c, row, o.choice.extensions, 0xFFFF);
     }},
    {"--version", "NUMBER", "only this version (repeatable)", nullptr, kStreams,
     [](CLI::App& c, const OptionRow& row, Options& o) { return numbers(c, row, o.choice.versions, 31); }},
    {"--only-current", nullptr, "no sections that are announced for later", nullptr, kStreams,
     [](CLI::App& c, const OptionRow& row, Options& o) {
       return c.add_flag(row.names, o.choice.only_current);
     }},
    {"--all", nullptr, "a section each time it is sent", nullptr, kEach,
     [](CLI::App& c, const OptionRow& row, Options& o) { return c.add_flag(row.names, o.all); }},
    {"--hex", nullptr, "the bytes of each section after its fields", nullptr, kReport | kShow,
     [](CLI::App& c, const OptionRow& row, Options& o) { return c.add_flag(row.names, o.hex); }},
    {"--now", nullptr, "only what is on at the time of the stream, and what follows", nullptr, kEpg,
     [](CLI::App& c, const OptionRow& row, Options& o) { return c.add_flag(row.names, o.now); }},
    {"--from", "TIME", "only what ends after a time: 2026-11-22T20:15, or 2026-11-22", nullptr, kEpg,
     [](CLI::App& c, const OptionRow& row, Options& o) { return c.add_option(row.names, o.from); }},
    {"--to", "TIME", "only what begins before a time", nullptr, kEpg,
     [](CLI::App& c, const OptionRow& row, Options& o) { return c.add_option(row.names, o.to); }},
    {"--local", nullptr, "times in the zone of this machine, here and in --from and --to; else UTC", nullptr,
     kEpg, [](CLI::App& c, const OptionRow& row, Options& o) { return c.add_flag(row.names, o.local_time); }},
    {"--json", nullptr, "an event as a line of JSON", nullptr, kWatch,
     [](CLI::App& c, const OptionRow& row, Options& o) { return c.add_flag(row.names, o.json); }},
    {"--metrics", "FILE", "keep a file of metrics in the text format of Prometheus, replaced whole", nullptr,
     kWatch,
     [](CLI::App& c, const OptionRow& row, Options& o) { return c.add_option(row.names, o.metrics); }},
    {"-o,--output", "FILE", "the file to write; - is standard output, as without it", nullptr,
     kXml | kSections | kHtml,
     [](CLI::App& c, const OptionRow& row, Options& o) { return c.add_option(row.names, o.output); }},
    {"--follow", nullptr, "wait for more at the end of a file", nullptr, kStreams,
     [](CLI::App& c, const OptionRow& row, Options& o) { return c.add_flag(row.names, o.follow); }},
    {"--seconds", "NUMBER", "read for so long, and no longer", nullptr, kStreams,
     [](CLI::App& c, const OptionRow& row, Options& o) {
       return c.add_option(row.names, o.seconds)->check(seconds());
     }},
    {"--standard", "NAME", "what table id 2 and the user range mean; auto by default", "dvb atsc auto",
     kStreams,
     [](CLI::App& c, const OptionRow& row, Options& o) {
       return c.add_option_function<std::string>(row.names, [&o](const std::string& name) {
         if (name != "auto") o.standard = name == "atsc" ? Standard::atsc : Standard::dvb;
       });
     }},
    {"--reading", "NAME",
     "kept: fields as documents have always had them, the default of report, xml and load; standard: as the "
     "standards in force say, the default of all others",
     "kept standard", (kEach & ~kSections) | kLoad,
     [](CLI::App& c, const OptionRow& row, Options& o) {
       return c.add_option_function<std::string>(row.names, [&o](const std::string& name) {
         o.reading = name == "kept" ? Reading::kept : Reading::standard;
       });
     }},
    {"--text-table", "NUMBER",
     "in the standard reading, the table of texts that select none: N for ISO 8859-N, 0 as they should",
     nullptr, kStreams & ~kSections,
     [](CLI::App& c, const OptionRow& row, Options& o) {
       return c.add_option(row.names, o.text_table)->transform(number(0, 15));
     }},
    {"--verbose", nullptr, "a message each time, not one a kind of trouble with a count", nullptr,
     kStreams | kLoad,
     [](CLI::App& c, const OptionRow& row, Options& o) { return c.add_flag(row.names, o.verbose); }},
};

}  // namespace

const char* const kInputText =
    "INPUT is a file, a pipe or a device, - for standard input, or what comes to an address: "
    "udp://GROUP:PORT or rtp://GROUP:PORT. Transport packets of 188, 192, 204 or 208 bytes are found with "
    "whatever is between them; chains of bare sections are read too. What is read is shown as it comes.";
const char* const kExitText = "Exit codes: 0 ok, 1 bad input or output, 2 wrong use.";

std::string_view OptionRow::long_name() const {
  const std::string_view all = names;
  return all.substr(all.find("--"));
}

std::string_view OptionRow::short_name() const {
  const std::string_view all = names;
  return all.starts_with("--") ? std::string_view() : all.substr(0, 2);
}

std::span<const CommandRow> command_rows() {
  return kCommands;
}

std::span<const OptionRow> option_rows() {
  return kOptions;
}

}  // namespace quillon::app
