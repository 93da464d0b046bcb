#include "apps/quillon/describe.h"
#include "apps/quillon/html/page.h"
#include "apps/quillon/text.h"

#include <algorithm>
#include <cmath>
#include <map>

namespace quillon::app::html {

namespace {

constexpr double kWidth = 1000;
constexpr double kHeight = 300;
constexpr size_t kMostSlices = 120;
constexpr size_t kMostLayers = 24;

// A band of the picture: a PID, or all others of a kind.
struct Layer {
  Carries carries;
  std::string title;
  std::vector<size_t> columns;  // in the slices
  std::vector<double> values;
  double mean = 0;
  double peak = 0;
};

// 1, 2 or 5 times a power of ten: about `count` of them make `range`.
double step_for(double range, double count) {
  const double rough = range / count;
  const double power = std::pow(10, std::floor(std::log10(rough)));
  for (const double factor : {1.0, 2.0, 5.0})
    if (rough <= factor * power) return factor * power;
  return 10 * power;
}

std::vector<Layer> layers_of(const Page& page) {
  std::vector<Layer> layers;
  std::map<Carries, Layer> others;
  for (size_t i = 0; i < page.pids.size(); ++i) {
    const PidContent& pid = page.pids[i];
    if (i < kMostLayers) {
      layers.push_back(
          {pid.carries, pid_text(pid.pid) + " " + (pid.text.empty() ? pid.brief : pid.text), {i}, {}});
    } else {
      Layer& layer = others[pid.carries];
      layer.carries = pid.carries;
      layer.columns.push_back(i);
    }
  }
  for (auto& [carries, layer] : others) {
    layer.title = std::string(title_of(carries)) + ", " + grouped(layer.columns.size()) + " further PIDs";
    layers.push_back(std::move(layer));
  }
  std::stable_sort(layers.begin(), layers.end(),
                   [](const Layer& a, const Layer& b) { return a.carries < b.carries; });
  return layers;
}

void write_legend(Page& page, const std::vector<Layer>& layers) {
  page.out.begin("ul", {{"class", "legend"}});
  for (const Carries carries : kCarries) {
    if (std::none_of(layers.begin(), layers.end(), [&](const Layer& l) { return l.carries == carries; }))
      continue;
    page.out.begin("li")
        .element("i", {{"class", std::string("swatch ") + class_of(carries)}}, "")
        .text(title_of(carries))
        .end();
  }
  page.out.end();
}

}  // namespace

void write_rates(Page& page) {
  if (page.pids.empty()) return;
  std::vector<int> pids;
  for (const PidContent& pid : page.pids) pids.push_back(pid.pid);
  const std::vector<RateRecord::Slice> slices = page.record.rates.slices(pids, kMostSlices);
  // By the clock in Mbit/s; without one the share of the slice's packets, over all packets.
  const bool has_clock = page.has_clock() && slices.back().end > slices.front().begin;
  const auto value_of = [&](const RateRecord::Slice& slice, uint64_t packets) {
    const auto count = static_cast<double>(packets);
    return has_clock ? count * TsPacket::size * 8 / 1e6 / (slice.end - slice.begin)
                     : count * 100 / static_cast<double>(slice.packets);
  };
  std::vector<double> begins;
  double end = 0;
  double top = 0;
  for (const RateRecord::Slice& slice : slices) {
    begins.push_back(has_clock ? slice.begin : end);
    end = has_clock ? slice.end : end + static_cast<double>(slice.packets);
    top = std::max(top, value_of(slice, slice.packets));
  }
  std::vector<Layer> layers = layers_of(page);
  for (Layer& layer : layers) {
    for (const RateRecord::Slice& slice : slices) {
      uint64_t packets = 0;
      for (const size_t column : layer.columns) packets += slice.of_pids[column];
      layer.values.push_back(value_of(slice, packets));
      layer.peak = std::max(layer.peak, layer.values.back());
    }
    uint64_t packets = 0;
    for (const size_t column : layer.columns) packets += page.pids[column].packets;
    layer.mean = has_clock ? page.input.statistics.bit_rate() / 1e6 * static_cast<double>(packets) /
                                 static_cast<double>(page.input.statistics.packets())
                           : 100.0 * static_cast<double>(packets) /
                                 static_cast<double>(page.input.statistics.packets());
  }
  const char* const unit = has_clock ? "Mbit/s" : "%";
  const double range = end - begins.front();
  const auto x = [&](double at) { return decimal((at - begins.front()) / range * kWidth, 1); };
  const auto y = [&](double at) { return decimal(kHeight - at / top * kHeight, 1); };

  const Part part(page, "rates", "Rate over time");
  Markup& out = page.out;
  const std::string id = page.id("rates");
  out.begin("figure", {{"class", "rates"}})
      .begin("figcaption")
      .text(has_clock ? "Mbit/s by PID over seconds of the stream's clock, stacked."
                      : "Share of each PID in the packets, in percent over packets: there is no clock.")
      .end();
  write_legend(page, layers);
  out.begin("div", {{"class", "zoom"}, {"data-for", id + "-picture"}, {"hidden", ""}}).end();
  out.begin("div", {{"class", "scroll picture"},
                    {"id", id + "-picture"},
                    {"role", "region"},
                    {"aria-label", "Rate over time, picture"},
                    {"tabindex", 0}})
      .begin("svg", {{"role", "img"}, {"aria-labelledby", id + "-t " + id + "-d"}, {"class", "zoomed"}});
  out.element("title", {{"id", id + "-t"}}, "Rate of each PID over time");
  std::string words = "At most " + decimal(top, 2) + " " + unit + " in all.";
  for (const Layer& layer : layers)
    words += " " + layer.title + ": mean " + decimal(layer.mean, 2) + ", at most " + decimal(layer.peak, 2) +
             " " + unit + ".";
  out.element("desc", {{"id", id + "-d"}}, words);

  out.begin("svg", {{"viewBox", "0 0 1000 300"}, {"preserveAspectRatio", "none"}, {"class", "plot"}});
  std::vector<double> base(slices.size());
  for (const Layer& layer : layers) {
    std::string path = "M" + x(begins.front()) + " " + y(base.front());
    for (size_t i = 0; i < slices.size(); ++i)
      path += "V" + y(base[i] + layer.values[i]) + "H" + x(i + 1 < begins.size() ? begins[i + 1] : end);
    for (size_t i = slices.size(); i-- > 0;) path += "V" + y(base[i]) + "H" + x(begins[i]);
    for (size_t i = 0; i < slices.size(); ++i) base[i] += layer.values[i];
    out.begin("path", {{"class", class_of(layer.carries)}, {"d", path + "Z"}})
        .element("title", layer.title + ": mean " + decimal(layer.mean, 3) + " " + unit)
        .end();
  }
  out.end();
  const double y_step = step_for(top, 5);
  for (double at = y_step; at < top; at += y_step) {
    const std::string place = decimal(100 - at / top * 100, 2) + "%";
    out.begin("svg", {{"class", "y"}, {"y", place}, {"overflow", "visible"}})
        .element("line", {{"x2", "100%"}}, "")
        .element("text", {{"x", 4}, {"y", -4}}, decimal(at, 3) + " " + unit)
        .end();
  }
  out.end();
  out.begin("div", {{"class", "axis zoomed"}, {"aria-hidden", "true"}});
  const double x_step = step_for(range, 8);
  for (double at = std::ceil(begins.front() / x_step) * x_step; at <= end; at += x_step)
    out.element("span", {{"style", "left:" + decimal((at - begins.front()) / range * 100, 2) + "%"}},
                has_clock ? decimal(at, 3) + " s" : grouped(static_cast<uint64_t>(at)));
  out.end().end();

  {
    Table table(page, "Rate by PID", {"PID", "#Mean", "#Peak"}, "");
    for (const Layer& layer : layers)
      Table::Row(table)
          .cell_of([&](Markup& cell) {
            cell.element("i", {{"class", std::string("swatch ") + class_of(layer.carries)}}, "")
                .name(layer.title);
          })
          .cell(decimal(layer.mean, 3) + " " + unit)
          .cell(decimal(layer.peak, 3) + " " + unit);
  }
  out.end();
}

}  // namespace quillon::app::html
