// The command `watch` from the outside: the events of made streams, and the file of metrics.

#include "tests/app/program.h"
#include "tests/support/packets.h"
#include "tests/support/sample.h"

#include <cctype>
#include <map>
#include <set>
#include <sstream>
#include <vector>

using namespace quillon::test;

namespace {

constexpr int kClockPid = 0x1F0;
constexpr int kMapPid = 0x200;
constexpr int kNetwork = 0x2114;
constexpr int kTransportStream = 0x0451;
// A name in UTF-8 that turns the direction of what follows.
constexpr const char* kSteering = "\x15Two\xE2\x80\xAE";

uint64_t u(int value) {
  return static_cast<uint64_t>(value);
}

// A stream whose packets count on, and whose clock goes on as it is told to.
class Stream {
 public:
  // With a clock it begins at 0.1 seconds, once two of it were sent.
  explicit Stream(bool has_clock = true) {
    if (has_clock) wait(0).wait(1);
  }

  Stream& section(int pid, const Bytes& section) {
    const Bytes made = packets({section}, {.pid = pid, .counter = counters_[pid]});
    counters_[pid] += static_cast<int>(made.size() / kPacketSize);
    return add(made);
  }
  // A packet of a PID that carries no sections.
  Stream& payload(int pid, int skipped = 0, int error = 0, int scrambling = 0) {
    counters_[pid] += skipped;
    return add(packet(
        {.pid = pid, .counter = counters_[pid]++ & 0x0F, .error = error, .scrambling = scrambling}, {}));
  }
  // Tenths of a second.
  Stream& wait(int tenths) {
    for (int i = 0; i < (tenths == 0 ? 1 : tenths); ++i) {
      Bytes clock = packet({.pid = kClockPid, .field = 183, .control = 2}, {});
      const Bytes field =
          bits({{8, 0x10, "PCR_flag"}, {33, ticks_ / 300, "base"}, {15, 63 << 9, "extension"}});
      std::copy(field.begin(), field.end(), clock.begin() + 5);
      add(clock);
      ticks_ += 2'700'000;
    }
    return *this;
  }
  Stream& add(const Bytes& more) {
    bytes.insert(bytes.end(), more.begin(), more.end());
    return *this;
  }

  Bytes bytes;

 private:
  std::map<int, int> counters_;
  uint64_t ticks_ = 0;
};

Bytes association(int version = 1) {
  return long_section(0x00, bits({{16, 7, "program_number"}, {3, 7, "reserved"}, {13, kMapPid, "map_PID"}}),
                      {.extension = kTransportStream, .version = version});
}

Bytes map_of(const std::vector<int>& pids, int version = 1) {
  Bytes body = bits({{3, 7, "reserved"}, {13, 0x300, "PCR_PID"}, {4, 15, "reserved"}, {12, 0, "length"}});
  for (const int pid : pids)
    body = joined({body, bits({{8, 0x1B, "stream_type"},
                               {3, 7, "reserved"},
                               {13, u(pid), "elementary_PID"},
                               {4, 15, "reserved"},
                               {12, 0, "length"}})});
  return long_section(0x02, body, {.extension = 7, .version = version});
}

struct Description {
  std::string name;
  int version = 1;
  int running_status = 4;
  int scrambled = 0;
  int service_id = 7;
};

Bytes description(const Description& d) {
  const Bytes service =
      descriptor(0x48, joined({bits({{8, 0x01, "service_type"}}), counted("Provider"), counted(d.name)}));
  const Bytes body = joined({bits({{16, kNetwork, "original_network_id"},
                                   {8, 0xFF, "reserved"},
                                   {16, u(d.service_id), "service_id"},
                                   {8, 0xFC, "no events"},
                                   {3, u(d.running_status), "running_status"},
                                   {1, u(d.scrambled), "free_CA_mode"},
                                   {12, service.size(), "length"}}),
                             service});
  return long_section(0x42, body, {.extension = kTransportStream, .version = d.version});
}

Bytes bouquet(int extension, int version = 1) {
  return long_section(0x4A, Bytes{0xF0, 0x00, 0xF0, 0x00}, {.extension = extension, .version = version});
}

// Samples by name and labels. Whatever the text format does not allow is said.
std::map<std::string, double> samples_of(const std::string& metrics) {
  std::map<std::string, double> out;
  std::set<std::string> families;
  std::string family;
  std::istringstream lines(metrics);
  const auto is_name = [](const std::string& name) {
    return !name.empty() && !std::isdigit(static_cast<unsigned char>(name[0])) &&
           name.find_first_not_of("abcdefghijklmnopqrstuvwxyz0123456789_") == name.npos;
  };
  for (std::string line; std::getline(lines, line);) {
    if (line.starts_with("# HELP ")) {
      family = line.substr(7, line.find(' ', 7) - 7);
      EXPECT_TRUE(family.starts_with("quillon_") && is_name(family)) << line;
      EXPECT_TRUE(families.insert(family).second) << "twice: " << line;
      EXPECT_TRUE(std::getline(lines, line));
      const bool is_counter = family.ends_with("_total");
      EXPECT_EQ(line, "# TYPE " + family + (is_counter ? " counter" : " gauge"));
      continue;
    }
    const size_t begin = line.find('{');
    EXPECT_EQ(line.substr(0, begin), family) << line;
    size_t at = begin;
    std::set<std::string> labels;
    while (at < line.size() && line[at] != '}') {
      const size_t equals = line.find("=\"", at);
      if (equals == line.npos) break;
      const std::string label = line.substr(at + 1, equals - at - 1);
      EXPECT_TRUE(is_name(label) && labels.insert(label).second) << line;
      for (at = equals + 2; at < line.size() && line[at] != '"'; ++at)
        if (line[at] == '\\') {
          EXPECT_NE(std::string("\\\"n").find(line[++at]), std::string::npos) << line;
        }
      ++at;
      EXPECT_TRUE(at < line.size() && (line[at] == ',' || line[at] == '}')) << line;
    }
    const std::string sample = line.substr(0, at + 1);
    std::istringstream number(line.substr(std::min(at + 1, line.size())));
    number.imbue(std::locale::classic());
    double value = 0;
    EXPECT_TRUE(number >> value && number.peek() == EOF) << line;
    EXPECT_TRUE(out.emplace(sample, value).second) << "twice: " << line;
  }
  EXPECT_TRUE(metrics.ends_with('\n'));
  return out;
}

}  // namespace

class Watch : public Program {
 protected:
  std::string watch(const Stream& stream, const std::string& options = {}) {
    const Result result = run("watch " + options + " " + file("s.ts", stream.bytes));
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(result.messages, "");
    return result.out;
  }

  std::map<std::string, double> metrics(const Stream& stream, const std::string& options = {}) {
    watch(stream, "--metrics m.prom " + options);
    return samples_of(whole(folder_ / "m.prom"));
  }
};

TEST_F(Watch, TellsWhatBecomesOfTables) {
  Stream stream;
  stream.section(0x11, bouquet(1)).wait(10).section(0x11, bouquet(1)).section(0x11, bouquet(1, 4)).wait(1);
  stream.section(0x11, long_section(0x4A, Bytes{0xF0, 0x03, 0x47, 0x01, 'A', 0xF0, 0x00},
                                    {.extension = 1, .version = 4}));
  stream.section(0x11, long_section(0x4A, Bytes{0xF0, 0x00, 0xF0, 0x00},
                                    {.extension = 2, .version = 9, .current_next = 0}));
  stream.section(0x12, long_section(0x4F, Bytes{0x00, 0x05, 0x21, 0x14, 0x00, 0x4F}, {.extension = 0x99}));
  stream.section(0x14, short_section(0x70, Bytes{0xC0, 0x79, 0x12, 0x45, 0x00})).wait(10);
  stream.section(0x14, short_section(0x70, Bytes{0xC0, 0x79, 0x12, 0x45, 0x01})).wait(330);
  EXPECT_EQ(
      watch(stream),
      "0.100 s  PID 0x0011  BAT (table 0x4A), extension 0x0001: new, version 1\n"
      "1.100 s  PID 0x0011  BAT (table 0x4A), extension 0x0001: version 1 -> 4\n"
      "1.200 s  PID 0x0011  BAT (table 0x4A), extension 0x0001: changed within version 4\n"
      "1.200 s  PID 0x0011  BAT (table 0x4A), extension 0x0002, next: new, version 9\n"
      "1.200 s  PID 0x0012  EIT (table 0x4F), extension 0x0099, transport stream 0x0005, network 0x2114: "
      "new, version 3\n"
      "1.200 s  PID 0x0014  TDT (table 0x70): new\n"
      "31.300 s  PID 0x0011  BAT (table 0x4A), extension 0x0001: gone, version 4\n"
      "31.300 s  PID 0x0011  BAT (table 0x4A), extension 0x0002, next: gone, version 9\n");
}

TEST_F(Watch, TellsTablesAsJson) {
  Stream stream;
  stream.section(0x11, bouquet(1)).section(0x11, bouquet(1, 4)).wait(310);
  const std::string table =
      R"("pid":17,"table":"bat","table_id":74,"current_next_indicator":1,"sections":1,"extension":1,)";
  EXPECT_EQ(watch(stream, "--json"),
            R"({"event":"table_new","time":0.1,"packet":3,)" + table + "\"version\":1}\n" +
                R"({"event":"table_changed","time":0.1,"packet":4,)" + table +
                "\"version\":4,\"old_version\":1}\n" + R"({"event":"table_gone","time":30.2,"packet":305,)" +
                table + "\"version\":4}\n");
}

TEST_F(Watch, SaysWhereWithoutAClock) {
  Stream stream(false);
  for (int i = 0; i < 1199; ++i) stream.payload(0x1FFF);
  stream.section(0x11, bouquet(1));
  EXPECT_EQ(watch(stream), "packet 1,200  PID 0x0011  BAT (table 0x4A), extension 0x0001: new, version 1\n");
  file("s.bin", joined({association(), bouquet(1)}));
  EXPECT_EQ(run("watch s.bin").out,
            "section 1  PAT (table 0x00), extension 0x0451: new, version 1\n"
            "section 2  BAT (table 0x4A), extension 0x0001: new, version 1\n"
            "section 2  service 7: new\n");
  EXPECT_EQ(run("watch --json --table 0x4A s.bin").out,
            R"({"event":"table_new","packet":2,"table":"bat","table_id":74,"current_next_indicator":1,)"
            R"("sections":1,"extension":1,"version":1})"
            "\n");
}

TEST_F(Watch, TellsWhatBecomesOfServices) {
  Stream stream;
  stream.section(0x00, association()).section(kMapPid, map_of({0x301, 0x302})).wait(1);
  stream.section(0x11, description({.name = "One"})).wait(1);
  stream.section(0x11, description({.name = kSteering, .version = 2})).wait(1);
  stream.section(0x11, description({.name = kSteering, .version = 3, .running_status = 1, .scrambled = 1}));
  stream.wait(1).section(kMapPid, map_of({0x301, 0x303}, 2)).wait(1);
  stream.section(0x00, long_section(0x00, {}, {.extension = kTransportStream, .version = 2}));
  stream.section(0x11, description({.name = "Else", .version = 4, .service_id = 8})).wait(1);
  const std::string text = watch(stream, "--table 0 --table 2 --table 0x42");
  std::istringstream lines(text);
  std::string services;
  for (std::string line; std::getline(lines, line);)
    if (line.find("  service ") != line.npos) services += line + "\n";
  EXPECT_EQ(services,
            "0.200 s  service 7 \"One\": new, digital television service, running, streams 0x0301 0x0302\n"
            "0.300 s  service 7 \"One\": renamed to \"Two\\u202E\"\n"
            "0.400 s  service 7 \"Two\\u202E\": changed: status running -> not running, scrambled no -> yes\n"
            "0.500 s  service 7 \"Two\\u202E\": changed: streams 0x0301 0x0302 -> 0x0301 0x0303\n"
            "0.600 s  service 7 \"Two\\u202E\": changed: PID of its map 0x0200 -> unknown, PID of its clock "
            "0x0300 -> unknown, streams 0x0301 0x0303 -> none\n"
            "0.600 s  service 7 \"Two\\u202E\": gone\n"
            "0.700 s  service 8 \"Else\": new, digital television service, running\n");

  const std::string json = watch(stream, "--json");
  const std::string ids =
      R"("service_id":7,"actual":1,"transport_stream_id":1105,"original_network_id":8468,)";
  const std::string two = "\"name\":\"Two\xE2\x80\xAE\"";
  EXPECT_EQ(count(json, R"({"event":"service_new","time":0.2,"packet":6,)" + ids +
                            R"("name":"One","provider":"Provider","service_type":1,)"
                            R"("service_type_meaning":"digital television service","running_status":4,)"
                            R"("running_status_meaning":"running","free_ca_mode":0,"map_pid":512,)"
                            R"("pcr_pid":768,"streams":[769,770],"ca":[]})"
                            "\n"),
            1)
      << json;
  EXPECT_EQ(count(json, R"({"event":"service_renamed","time":0.3,"packet":8,)" + ids + two +
                            R"(,"old_name":"One"})" + "\n"),
            1)
      << json;
  EXPECT_EQ(count(json, R"({"event":"service_changed","time":0.4,"packet":10,)" + ids + two +
                            R"(,"changes":[{"part":"running_status","old":4,"new":1},)" +
                            R"({"part":"free_ca_mode","old":0,"new":1}]})" + "\n"),
            1)
      << json;
  EXPECT_EQ(count(json, R"("changes":[{"part":"streams","old":[769,770],"new":[769,771]}]})"), 1) << json;
  EXPECT_EQ(count(json, R"({"event":"service_gone")"), 1) << json;
}

TEST_F(Watch, WaitsForTheNameOfAServiceNoLongerThanTwoSeconds) {
  Stream stream;
  for (int i = 0; i < 29; ++i) stream.section(0x00, association()).wait(1);
  stream.section(0x11, description({.name = "Late"})).wait(1);
  const std::string out = watch(stream);
  EXPECT_EQ(count(out, "service 7"), 2) << out;
  EXPECT_EQ(count(out, "\n2.100 s  service 7: new\n"), 1) << out;
  EXPECT_EQ(count(out, "\n3.000 s  service 7 \"Late\": changed: name \"\" -> \"Late\", "), 1) << out;
  const std::string json = watch(stream, "--json");
  EXPECT_EQ(count(json, R"("changes":[{"part":"name","old":"","new":"Late"},)"), 1) << json;
}

TEST_F(Watch, CountsErrorsOnceASecondAPid) {
  Stream stream;
  stream.payload(0x300).payload(0x301).payload(0x300, 5);
  for (int i = 0; i < 7; ++i) stream.payload(0x300, 3);
  stream.payload(0x301, 1).wait(5).payload(0x300, 2).wait(10).payload(0x300).wait(20).payload(0x300, 1);
  EXPECT_EQ(watch(stream),
            "0.100 s  PID 0x0300  continuity error\n"
            "0.100 s  PID 0x0301  continuity error\n"
            "1.100 s  PID 0x0300  8 continuity errors\n"
            "3.600 s  PID 0x0300  continuity error\n");
  EXPECT_EQ(run("watch --json --pid 0x301 s.ts").out,
            R"({"event":"continuity_error","time":0.1,"packet":13,"pid":769,"count":1})"
            "\n");
}

TEST_F(Watch, CountsDamageOfEachKind) {
  Stream stream;
  stream.payload(0x300).payload(0x300, 0, 1).payload(0x300).payload(0x300, 0, 1);
  Bytes wrong = bouquet(1);
  wrong.back() ^= 1;
  stream.wait(1).section(0x11, wrong).section(0x11, wrong).section(0x11, bouquet(2)).wait(1);
  stream.payload(0x301).payload(0x301, 0, 0, 2).payload(0x301, 0, 0, 2).wait(1).payload(0x301).wait(1);
  stream.add(Bytes(100, 0x11));
  for (int i = 0; i < 20; ++i) stream.payload(0x302);
  const Result result = run("watch " + file("s.ts", stream.bytes));
  EXPECT_EQ(result.code, 0);
  EXPECT_EQ(result.messages, "s.ts: skipped 100 bytes that are no packets of 188 bytes\n");
  EXPECT_EQ(result.out,
            "0.100 s  PID 0x0300  packet marked as damaged\n"
            "0.100 s  PID 0x0300  continuity error\n"
            "0.200 s  PID 0x0011  section with a wrong CRC\n"
            "0.200 s  PID 0x0011  BAT (table 0x4A), extension 0x0002: new, version 1\n"
            "0.300 s  PID 0x0301  scrambling begins\n"
            "0.400 s  PID 0x0301  scrambling ends\n"
            "0.500 s  loss of synchronization\n"
            "0.500 s  PID 0x0011  section with a wrong CRC\n"
            "0.500 s  PID 0x0300  packet marked as damaged\n");
}

TEST_F(Watch, IsNotFlooded) {
  Stream stream;
  for (int i = 0; i < 2000; ++i) stream.section(0x11, bouquet(i));
  stream.wait(11).section(0x11, bouquet(3000));
  const std::string out = watch(stream);
  EXPECT_EQ(count(out, ": new, version 1\n"), 501);
  EXPECT_EQ(count(out, "\n1.000 s  1,500 more new tables, too many to tell each\n"), 1);
  const std::string json = watch(stream, "--json");
  EXPECT_EQ(count(json, "{\"event\":\"table_new\""), 501);
  EXPECT_EQ(count(json, "{\"event\":\"events_omitted\",\"time\":1,"), 1);
  EXPECT_EQ(count(json, "\"omitted\":\"table_new\",\"count\":1500}\n"), 1);

  Stream errors;
  for (int pid = 0x400; pid < 0x800; ++pid) errors.payload(pid).payload(pid, 1).payload(pid, 1);
  const std::string lines = watch(errors);
  EXPECT_EQ(count(lines, "  continuity error\n"), 500);
  EXPECT_EQ(count(lines, "\n0.100 s  1,548 more continuity errors, too many to tell each\n"), 1);
}

TEST_F(Watch, NamesTheInputIfThereAreSeveral) {
  Stream stream;
  file("a.ts", stream.section(0x11, bouquet(1)).bytes);
  file("b.ts", stream.section(0x11, bouquet(2)).bytes);
  const std::string one = "0.100 s  PID 0x0011  BAT (table 0x4A), extension 0x0001: new, version 1\n";
  const std::string two = "0.100 s  PID 0x0011  BAT (table 0x4A), extension 0x0002: new, version 1\n";
  EXPECT_EQ(run("watch a.ts b.ts").out, "a.ts: " + one + "b.ts: " + one + "b.ts: " + two);
  EXPECT_EQ(count(run("watch --json a.ts b.ts").out, R"({"event":"table_new","input":"b.ts","time":)"), 2);
  const Result missing = run("watch none.ts a.ts");
  EXPECT_EQ(missing.code, 1);
  EXPECT_EQ(missing.out, "a.ts: " + one);
}

TEST_F(Watch, NarrowsToAService) {
  Stream stream;
  stream.section(0x00, association()).section(0x11, description({.name = "One"}));
  stream.section(kMapPid, map_of({0x301})).section(0x11, bouquet(1));
  stream.payload(0x301).payload(0x301, 1).payload(0x302).payload(0x302, 1);
  EXPECT_EQ(watch(stream, "--service one"),
            "0.100 s  PID 0x0200  PMT (table 0x02), extension 0x0007: new, version 1\n"
            "0.100 s  service 7 \"One\": new, digital television service, running, streams 0x0301\n"
            "0.100 s  PID 0x0301  continuity error\n");
}

TEST_F(Watch, KeepsAFileOfMetrics) {
  Stream stream;
  stream.section(0x00, association()).section(kMapPid, map_of({0x301})).section(0x11, bouquet(1, 9));
  stream.section(0x11, description({.name = "One"}))
      .payload(0x301)
      .payload(0x301, 4, 0, 2)
      .payload(0x301, 0, 1);
  Bytes wrong = bouquet(1);
  wrong.back() ^= 1;
  stream.section(0x11, wrong).section(0x12, long_section(0x50, Bytes{0, 5, 0x21, 0x14, 0, 0x50})).wait(10);
  const std::map<std::string, double> samples = metrics(stream);
  const auto value = [&samples](const std::string& name, const std::string& labels = {}) {
    const auto place =
        samples.find("quillon_" + name + "{input=\"s.ts\"" + (labels.empty() ? "" : "," + labels) + "}");
    EXPECT_NE(place, samples.end()) << name << " " << labels;
    return place == samples.end() ? -1 : place->second;
  };
  EXPECT_EQ(value("up"), 0);
  EXPECT_EQ(value("packets_total"), 21);
  EXPECT_EQ(value("read_bytes_total"), 21 * 188);
  EXPECT_EQ(value("sync_losses_total"), 0);
  EXPECT_EQ(value("services", "transport_stream=\"actual\""), 1);
  EXPECT_EQ(value("services", "transport_stream=\"other\""), 0);
  EXPECT_EQ(value("pid_packets_total", "pid=\"0x0301\""), 3);
  EXPECT_EQ(value("pid_continuity_errors_total", "pid=\"0x0301\""), 1);
  EXPECT_EQ(value("pid_transport_errors_total", "pid=\"0x0301\""), 1);
  EXPECT_EQ(value("pid_scrambled_packets_total", "pid=\"0x0301\""), 1);
  EXPECT_EQ(value("pid_crc_errors_total", "pid=\"0x0011\""), 1);
  EXPECT_EQ(value("pid_crc_errors_total", "pid=\"0x0301\""), 0);
  EXPECT_NEAR(value("pid_bit_rate", "pid=\"0x0301\""), value("bit_rate") * 3 / 21, 0.01);
  const std::string bat = R"(table="BAT",table_id="0x4A",pid="0x0011",extension="0x0001")";
  EXPECT_EQ(value("table_version", bat), 9);
  EXPECT_EQ(value("table_age_seconds", bat), 1);
  EXPECT_EQ(value("sections_without_series_total"), 1);
  EXPECT_GT(value("last_arrival_timestamp_seconds"), 1.7e9);

  const std::map<std::string, double> narrow = metrics(stream, "--pid 0x11");
  EXPECT_EQ(narrow.count(R"(quillon_pid_packets_total{input="s.ts",pid="0x0011"})"), 1u);
  EXPECT_EQ(narrow.count(R"(quillon_pid_packets_total{input="s.ts",pid="0x0301"})"), 0u);
}

TEST_F(Watch, BoundsTheSeriesOfMetrics) {
  Stream stream;
  for (int i = 0; i < 1200; ++i) stream.payload(0x400 + i).section(0x11, bouquet(i));
  const std::map<std::string, double> samples = metrics(stream);
  std::map<std::string, int> counts;
  for (const auto& [name, value] : samples) ++counts[name.substr(0, name.find('{'))];
  EXPECT_EQ(counts["quillon_pid_packets_total"], 1000);
  EXPECT_EQ(counts["quillon_table_version"], 1000);
  EXPECT_EQ(samples.at("quillon_pids_without_series{input=\"s.ts\"}"), 202);
  EXPECT_EQ(samples.at("quillon_sections_without_series_total{input=\"s.ts\"}"), 200);
}

TEST_F(Watch, SaysOnceThatMetricsCannotBeWritten) {
  file("s.ts", sample_stream());
  const Result result = run("watch --metrics none/m.prom s.ts s.ts");
  EXPECT_EQ(result.code, 0);
  EXPECT_EQ(count(result.out, "CAT (table 0x01)"), 2);
  EXPECT_EQ(count(result.messages, "\n"), 1);
  EXPECT_TRUE(result.messages.starts_with("can't write none/m.prom: ")) << result.messages;
  EXPECT_TRUE(result.messages.ends_with("; watching goes on without it\n")) << result.messages;
}

TEST_F(Watch, RefusesMetricsInItsInput) {
  file("s.ts", sample_stream());
  const Result result = run("watch --metrics ./s.ts s.ts");
  EXPECT_EQ(result.code, 1);
  EXPECT_EQ(result.messages, "./s.ts: is the input; name another file with --metrics\n");
  EXPECT_EQ(whole(folder_ / "s.ts").size(), sample_stream().size());
  const Result output = run("watch --metrics - s.ts");
  EXPECT_EQ(output.code, 1);
  EXPECT_EQ(output.messages, "--metrics: standard output is for events; name a file\n");
}
