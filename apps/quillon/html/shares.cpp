#include "apps/quillon/describe.h"
#include "apps/quillon/html/page.h"
#include "apps/quillon/text.h"

#include <algorithm>
#include <span>

namespace quillon::app::html {

namespace {

// In percent of the picture.
struct Box {
  double x = 0;
  double y = 0;
  double width = 100;
  double height = 100;
};

// Boxes in a box, with areas in proportion to values in falling order, each as square as rows allow: a row
// along the shorter side takes values as long as that makes its worst box no longer.
std::vector<Box> boxes_of(std::span<const double> values, Box room, double aspect) {
  double left = 0;
  for (const double value : values) left += value;
  std::vector<Box> out;
  while (!values.empty()) {
    const bool is_column = room.width * aspect >= room.height;
    const double side = is_column ? room.height : room.width * aspect;
    const double area = room.width * aspect * room.height / left;  // of one
    const auto worst = [&](double sum, double smallest) {
      const double thickness = sum * area / side;
      const auto length = [&](double value) { return value * area / thickness; };
      const double first = length(values.front());
      const double last = length(smallest);
      return std::max({first / thickness, thickness / first, last / thickness, thickness / last});
    };
    size_t count = 1;
    double sum = values.front();
    while (count < values.size() &&
           worst(sum + values[count], values[count]) <= worst(sum, values[count - 1]))
      sum += values[count++];
    const double part = sum / left;
    double done = 0;
    for (size_t i = 0; i < count; ++i) {
      const double share = values[i] / sum;
      out.push_back(is_column
                        ? Box{room.x, room.y + done * room.height, room.width * part, share * room.height}
                        : Box{room.x + done * room.width, room.y, share * room.width, room.height * part});
      done += share;
    }
    if (is_column) {
      room.x += room.width * part;
      room.width *= 1 - part;
    } else {
      room.y += room.height * part;
      room.height *= 1 - part;
    }
    left -= sum;
    values = values.subspan(count);
  }
  return out;
}

struct Owner {
  std::string name;
  uint64_t packets = 0;
  std::vector<const PidContent*> pids;
};

std::vector<Owner> owners_of(const Page& page) {
  std::vector<Owner> owners;
  for (const PidContent& pid : page.pids) {
    auto at = std::find_if(owners.begin(), owners.end(), [&](const Owner& o) { return o.name == pid.owner; });
    if (at == owners.end()) at = owners.insert(at, {pid.owner, 0, {}});
    at->packets += pid.packets;
    at->pids.push_back(&pid);
  }
  std::stable_sort(owners.begin(), owners.end(),
                   [](const Owner& a, const Owner& b) { return a.packets > b.packets; });
  return owners;
}

std::string percent(double value) {
  return decimal(value, 2) + "%";
}

// How much wider the picture is than high, as it is mostly seen.
constexpr double kAspect = 2.4;

}  // namespace

void write_shares(Page& page) {
  if (page.pids.empty()) return;
  const Part part(page, "shares", "Shares");
  const uint64_t all = page.input.statistics.packets();
  std::vector<Owner> owners = owners_of(page);
  constexpr size_t most = 300;
  const bool is_cut = owners.size() > most;
  if (is_cut) owners.resize(most);
  std::vector<double> values;
  std::string words;
  for (const Owner& owner : owners) {
    values.push_back(static_cast<double>(owner.packets));
    words += owner.name + " " + share_text(owner.packets, all) + ". ";
  }
  const std::string id = page.id("shares");
  Markup& out = page.out;
  out.begin("figure", {{"class", "shares"}})
      .element("figcaption", "Packets by service, and by stream in each.")
      .begin("svg", {{"class", "treemap"}, {"role", "img"}, {"aria-labelledby", id + "-t " + id + "-d"}})
      .element("title", {{"id", id + "-t"}}, "Shares of services and streams in the packets")
      .element("desc", {{"id", id + "-d"}}, words);
  const std::vector<Box> boxes = boxes_of(values, {}, kAspect);
  const auto begin_box = [&](const Box& box) {
    out.begin("svg", {{"x", percent(box.x)},
                      {"y", percent(box.y)},
                      {"width", percent(box.width)},
                      {"height", percent(box.height)}});
  };
  for (size_t i = 0; i < owners.size(); ++i) {
    const Owner& owner = owners[i];
    begin_box(boxes[i]);
    std::vector<double> of_pids;
    for (const PidContent* pid : owner.pids) of_pids.push_back(static_cast<double>(pid->packets));
    const std::vector<Box> inner = boxes_of(of_pids, {}, kAspect * boxes[i].width / boxes[i].height);
    const auto has_room = [&](const Box& box, double width, double height) {
      return box.width * boxes[i].width / 100 > width && box.height * boxes[i].height / 100 > height;
    };
    for (size_t j = 0; j < owner.pids.size(); ++j) {
      const PidContent& pid = *owner.pids[j];
      begin_box(inner[j]);
      out.begin("rect", {{"class", class_of(pid.carries)}, {"width", "100%"}, {"height", "100%"}})
          .element("title", owner.name + ", " + pid_text(pid.pid) + " " + pid.brief + ": " +
                                share_text(pid.packets, all))
          .end();
      // The name of the owner is in its first box. A letter takes about three quarters of a percent.
      const auto letters = static_cast<size_t>(inner[j].width * boxes[i].width / 100 / 0.75);
      const bool is_first = j == 0;
      if (has_room(inner[j], 7, is_first ? 14 : 8)) {
        if (is_first)
          out.element("text", {{"class", "owner"}, {"x", 6}, {"y", 17}}, shortened(owner.name, letters));
        const int line = is_first ? 34 : 17;
        out.element("text", {{"x", 6}, {"y", line}}, shortened(pid.brief, letters));
        if (has_room(inner[j], 7, is_first ? 19 : 13))
          out.element("text", {{"x", 6}, {"y", line + 16}},
                      pid_text(pid.pid) + "  " + share_text(pid.packets, all));
      } else if (is_first && has_room(inner[j], 5, 5)) {
        out.element("text", {{"class", "owner"}, {"x", 6}, {"y", 17}}, shortened(owner.name, letters));
      }
      out.end();
    }
    out.element("rect", {{"class", "frame"}, {"width", "100%"}, {"height", "100%"}}, "").end();
  }
  out.end();
  {
    Table table(page, "Shares of services and streams", {"Service", "Stream", "PID", "#Packets", "#Share"});
    size_t rows = 0;
    for (const Owner& owner : owners) {
      for (const PidContent* pid : owner.pids) {
        if (rows++ == most) break;
        Table::Row(table)
            .name(owner.name)
            .cell_of([&](Markup& cell) {
              cell.element("i", {{"class", std::string("swatch ") + class_of(pid->carries)}}, "")
                  .name(pid->brief);
            })
            .cell(pid_text(pid->pid))
            .cell(grouped(pid->packets))
            .cell(share_text(pid->packets, all));
      }
    }
  }
  out.end();
  if (is_cut || page.pids.size() > most)
    out.element("p", {{"class", "note"}}, "Services and streams with smaller shares are left out.");
}

}  // namespace quillon::app::html
