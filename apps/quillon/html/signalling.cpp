#include "apps/quillon/html/field_tree.h"
#include "apps/quillon/html/page.h"
#include "apps/quillon/parse.h"
#include "apps/quillon/text.h"

#include <map>
#include <set>
#include <string_view>
#include <utility>

#include <quillon/stream/table_collector.h>

namespace quillon::app::html {

namespace {

// Of each section of the tables the newest that was kept, as fields, by table and section number.
std::map<std::pair<TableId, int>, Field> newest_of(const Page& page, std::initializer_list<int> table_ids) {
  std::map<std::pair<TableId, int>, Field> out;
  for (const int table_id : table_ids)
    for (const KeptSection* const kept : page.record.sample.of_table(table_id)) {
      if (!kept->crc_ok) continue;
      const ParsedTable parsed = parse(kept->bytes, page.input.standard, Reading::standard);
      const StreamSection section = kept->view();
      if (parsed.table) out[{TableId::of(section), section.section_number()}] = FieldTree::of(*parsed.table);
    }
  return out;
}

const Field& descriptor_of(const Field& of, std::string_view name) {
  return of["descriptors"][name];
}

// "9018 UK Digital Terrestrial Television"
std::string with_meaning(const Field& field) {
  return field.meaning.empty() ? field.value : field.value + " " + field.meaning;
}

// "frequency" of a name in the stream's own terms, as people write it.
std::string words_of(std::string_view name) {
  std::string out(name);
  for (char& c : out)
    if (c == '_') c = ' ';
  return out;
}

// "modulation type QPSK, FEC inner 3/4": the coded fields of a delivery system, and its other numbers.
std::string tuning_of(const Field& delivery) {
  std::string out;
  for (const Field& field : delivery.items) {
    if (field.is("descriptor_id") || field.is("descriptor_length") || field.is("frequency") ||
        field.is("centre_frequency") || field.shape == Field::Shape::list)
      continue;
    if (!out.empty()) out += ", ";
    out += words_of(field.name) + " " + (field.meaning.empty() ? field.value : field.meaning);
    if (field.is("symbol_rate")) out += " Msymbol/s";
    if (field.is("orbital_position")) out += "°";
  }
  return out;
}

std::string frequency_of(const Field& delivery) {
  // Units of 10 Hz, of terrestrial systems.
  if (const std::string& value = delivery["centre_frequency"].value; !value.empty())
    return decimal(std::stod(value) / 1e5, 5) + " MHz";
  const std::string& value = delivery["frequency"].value;
  if (value.empty()) return {};
  return value + (delivery.is("satellite_delivery_system_descriptor") ? " GHz" : " MHz");
}

const char* system_of(const Field& delivery) {
  if (delivery.is("satellite_delivery_system_descriptor")) return "Satellite";
  if (delivery.is("cable_delivery_system_descriptor")) return "Cable";
  if (delivery.is("terrestrial_delivery_system_descriptor")) return "Terrestrial";
  return nullptr;
}

std::string service_count(const Field& multiplex) {
  const Field& list = descriptor_of(multiplex, "service_list_descriptor")["servicelist"];
  return list.items.empty() ? std::string() : grouped(list.items.size());
}

using Rows = std::vector<const Field*>;

// Sections by their network, or bouquet.
std::map<std::string, Rows> by(const std::map<std::pair<TableId, int>, Field>& sections, const char* id) {
  std::map<std::string, Rows> out;
  for (const auto& [key, section] : sections) out[with_meaning(section[id])].push_back(&section);
  return out;
}

std::string name_of(const Rows& sections, const char* descriptor, const char* field) {
  for (const Field* section : sections)
    if (const Field& name = descriptor_of(*section, descriptor)[field]; !name.value.empty())
      return name.value;
  return {};
}

void write_title(Markup& out, const std::string& id, const std::string& name) {
  out.begin("h3").name(name.empty() ? id : name);
  if (!name.empty()) out.text(" ").begin("small").name(id).end();
  out.end();
}

std::string text_of_hex(std::string_view digits) {
  if (digits.find_first_not_of("0123456789abcdef") != std::string_view::npos) return {};
  std::string out;
  for (size_t at = 0; at + 2 <= digits.size(); at += 2)
    out += static_cast<char>(std::stoi(std::string(digits.substr(at, 2)), nullptr, 16));
  return out;
}

// The texts and addresses of a record that people look for, wherever they are in it.
void gather_locations(const Field& field, std::vector<std::string>& out) {
  constexpr const char* kSimpleLocation = "21";  // a descriptor of a path alone
  if (field["descriptor_id"].value == kSimpleLocation) {
    const std::string path = text_of_hex(field["private_data"].value);
    out.empty() ? out.push_back(path) : void(out.back() += path);
  }
  for (const Field& item : field.items) {
    const bool is_location = item.is("URL_base") || item.is("URL_extension") || item.is("initial_path") ||
                             item.is("initial_class") || item.is("URL") || item.is("url") ||
                             item.is("base_directory") || item.is("physical_root");
    if (is_location && !item.value.empty()) out.push_back(item.value);
    if (is_location && item.value.empty() && !item["value"].value.empty()) out.push_back(item["value"].value);
    gather_locations(item, out);
  }
}

std::string joined(const std::vector<std::string>& parts, const char* separator) {
  std::string out;
  for (const std::string& part : parts) out.append(out.empty() ? "" : separator).append(part);
  return out;
}

// All that a list of descriptors says, in a line each.
void write_descriptors(Markup& out, const Field& of) {
  const Field& list = of["descriptors"];
  if (list.items.empty()) return;
  out.begin("ul", {{"class", "plain"}});
  for (const Field& descriptor : list.items) {
    out.begin("li").element("b", words_of(descriptor.name));
    const auto write = [&out](const auto& self, const Field& field) -> void {
      for (const Field& item : field.items) {
        if (item.is("descriptor_id") || item.is("descriptor_length")) continue;
        if (!item.items.empty())
          self(self, item);
        else if (item.shape != Field::Shape::list)
          out.text(" ").element("span", words_of(item.name) + ":").text(" ").name(with_meaning(item));
      }
    };
    write(write, descriptor);
    out.end();
  }
  out.end();
}

}  // namespace

void write_networks(Page& page) {
  const auto sections = newest_of(page, {0x40, 0x41});
  if (sections.empty()) return;
  const Part part(page, "networks", "Networks and tuning");
  for (const auto& [id, rows] : by(sections, "network_id")) {
    write_title(page.out, "network " + id, name_of(rows, "network_name_descriptor", "network_name"));
    Table table(page, "Transport streams of network " + id,
                {"#Transport stream", "Original network", "System", "#Frequency", "Parameters", "#Services"});
    for (const Field* section : rows)
      for (const Field& multiplex : (*section)["stream_infos"].items) {
        const Field* delivery = nullptr;
        for (const Field& descriptor : multiplex["descriptors"].items)
          if (!delivery && system_of(descriptor)) delivery = &descriptor;
        Table::Row(table)
            .cell(multiplex["stream_id"].value)
            .cell(with_meaning(multiplex["network_id"]))
            .cell(delivery ? system_of(*delivery) : "")
            .cell(delivery ? frequency_of(*delivery) : "")
            .cell(delivery ? tuning_of(*delivery) : "")
            .cell(service_count(multiplex));
      }
  }
}

void write_bouquets(Page& page) {
  const auto sections = newest_of(page, {0x4A});
  if (sections.empty()) return;
  const Part part(page, "bouquets", "Bouquets");
  for (const auto& [id, rows] : by(sections, "bouquet_id")) {
    write_title(page.out, "bouquet " + id, name_of(rows, "bouquet_name_descriptor", "bouquet_name"));
    Table table(page, "Transport streams of bouquet " + id,
                {"#Transport stream", "Original network", "#Services", "#Descriptors"});
    for (const Field* section : rows)
      for (const Field& multiplex : (*section)["infos"].items)
        Table::Row(table)
            .cell(multiplex["stream_id"].value)
            .cell(with_meaning(multiplex["network_id"]))
            .cell(service_count(multiplex))
            .cell(multiplex["descriptors"].value);
  }
}

void write_times(Page& page) {
  const auto dates = newest_of(page, {0x70});
  const auto offsets = newest_of(page, {0x73});
  const auto systems = newest_of(page, {0xCD});
  if (dates.empty() && offsets.empty() && systems.empty()) return;
  const Part part(page, "times", "Time and offsets");
  {
    Table table(page, "Time that the stream states last", {"Table", "Time", "Further"});
    for (const auto& [key, section] : dates)
      Table::Row(table).cell("TDT").cell(section["UTC_time"].value).cell("");
    for (const auto& [key, section] : offsets)
      Table::Row(table).cell("TOT").cell(section["UTC_time"].value).cell("");
    for (const auto& [key, section] : systems)
      Table::Row(table)
          .cell("STT")
          .cell(section["system_time"].meaning)
          .cell("GPS ahead of UTC by " + section["GPS_UTC_offset"].value + " s, daylight saving " +
                (section["DS_status"].value == "1" ? "on" : "off"));
  }
  std::vector<const Field*> regions;
  for (const auto& [key, section] : offsets)
    for (const Field& descriptor : section["descriptors"].items)
      for (const Field& region : descriptor["localtime"].items) regions.push_back(&region);
  if (regions.empty()) return;
  const auto offset_text = [](const Field& region, const char* name) {
    const bool is_behind = region["local_time_offset_polarity"].value == "1";
    const Field& offset = region[name];
    const auto two = [](const std::string& number) { return number.size() < 2 ? "0" + number : number; };
    return (is_behind ? "−" : "+") + two(offset["hour"].value) + ":" + two(offset["minute"].value);
  };
  Table table(page, "Local time offsets",
              {"Country", "#Region", "#Offset", "Time of change", "#Next offset"});
  for (const Field* region : regions)
    Table::Row(table)
        .name((*region)["country_code"].value)
        .cell((*region)["country_region_id"].value)
        .cell(offset_text(*region, "local_time_offset"))
        .cell((*region)["time_of_change"].value)
        .cell(offset_text(*region, "next_time_offset"));
}

void write_applications(Page& page) {
  const auto sections = newest_of(page, {0x74});
  if (sections.empty()) return;
  const Part part(page, "applications", "Applications");
  Table table(page, "Applications of the application information tables",
              {"PID", "Application", "Name", "Type", "Control", "Location"});
  constexpr const char* kControls[] = {"", "autostart", "present",  "destroy",           "kill",
                                       "", "remote",    "disabled", "playback autostart"};
  for (const auto& [key, section] : sections)
    for (const Field& application : section["application_infos"].items) {
      std::vector<std::string> names;
      application.each("application_name_info",
                       [&](const Field& name) { names.push_back(name["application_name"].value); });
      std::vector<std::string> locations;
      gather_locations(application, locations);
      const std::string& code = application["application_control_code"].value;
      const bool is_known = code.size() == 1 && code[0] < '9';
      Table::Row(table)
          .cell(pid_text(key.first.pid))
          .cell(with_meaning(application["application_identifer"]["organisation_id"]) + ", " +
                application["application_identifer"]["application_id"].value)
          .name(joined(names, ", "))
          .cell(with_meaning(section["application_type"]))
          .cell(is_known ? kControls[code[0] - '0'] : code)
          .name(joined(locations, " "));
    }
}

void write_notifications(Page& page) {
  const auto sections = newest_of(page, {0x4C});
  if (sections.empty()) return;
  const Part part(page, "notifications", "IP/MAC notification");
  for (const auto& [key, section] : sections) {
    page.out.element("h3", "Platform " + with_meaning(section["platform_id"]));
    write_descriptors(page.out, section);
    Table table(page, "Targets of platform " + section["platform_id"].value,
                {"#Pair", "Target", "Operation"});
    int count = 0;
    for (const Field& pair : section["targetoperationaldescriptors"].items)
      Table::Row(table)
          .cell(std::to_string(++count))
          .cell_of([&](Markup& out) { write_descriptors(out, pair["targetdescriptorloop"]); })
          .cell_of([&](Markup& out) { write_descriptors(out, pair["operationaldescriptorloop"]); });
  }
}

void write_ratings(Page& page) {
  const auto sections = newest_of(page, {0xCA});
  if (sections.empty()) return;
  const Part part(page, "ratings", "Ratings");
  // A text is its decoded segments, wherever they are.
  const auto text_of = [](const Field& of) {
    std::string out;
    of.each("decoded_text", [&](const Field& text) { out += text.value; });
    return out;
  };
  for (const auto& [key, section] : sections) {
    page.out.begin("h3")
        .name("Region " + std::to_string(key.first.extension & 0xFF) + " " +
              text_of(section["rating_region_name_text"]))
        .end();
    Table table(page, "Ratings of region " + std::to_string(key.first.extension & 0xFF),
                {"Dimension", "Values"});
    for (const Field& dimension : section["dimensions"].items) {
      std::vector<std::string> values;
      for (const Field& value : dimension["values"].items) {
        const std::string text = text_of(value["rating_value_text"]);
        if (!text.empty()) values.push_back(text_of(value["abbrev_rating_value_text"]) + " (" + text + ")");
      }
      Table::Row(table).name(text_of(dimension["dimension_name_text"])).name(joined(values, ", "));
    }
  }
}

}  // namespace quillon::app::html
