#include "apps/quillon/begin_program.h"
#include "apps/quillon/commands.h"
#include "apps/quillon/names.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <iostream>
#include <map>
#include <new>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <quillon/fields/dvb_text.h>
#include <quillon/version.h>

namespace {

using quillon::Reading;
using quillon::Standard;
using quillon::app::Options;

// What `report` and `xml` have in common.
void add_input_options(CLI::App& command, Options& options, std::string& standard) {
  command
      .add_option("FILE", options.input, "a transport stream, or a chain of sections; - is standard input")
      ->required();
  command.add_option("--pid", options.pids, "only this PID, whatever it carries (repeatable)")
      ->check(CLI::Range(0, 0x1FFF))
      ->allow_extra_args(false);
  command
      .add_option("--table", options.tables, "only this table id, on whatever PID it is sent (repeatable)")
      ->check(CLI::Range(0, 0xFF))
      ->allow_extra_args(false);
  command.add_flag("--all", options.all, "show a section each time it is sent");
  command.add_option("--standard", standard, "what table id 2 and the user range mean: dvb, atsc, or auto")
      ->check(CLI::IsMember({"dvb", "atsc", "auto"}))
      ->capture_default_str();
  command
      .add_option("--reading", options.reading,
                  "kept: fields as documents have always had them; standard: as the standards in force say")
      ->transform(CLI::Transformer(
          std::map<std::string, Reading>{{"kept", Reading::kept}, {"standard", Reading::standard}}))
      ->default_str("kept");
  command
      .add_option(
          "--text-table", options.text_table,
          "in the standard reading, the table of texts that select none: N for ISO 8859-N, 0 as they should")
      ->check(CLI::Range(0, 15))
      ->capture_default_str();
}

}  // namespace

int main(int argc, char** argv) {
  std::ios::sync_with_stdio(false);  // nothing else writes to them
  CLI::App app("quillon: the tables of an MPEG-2 transport stream", "quillon");
  app.set_version_flag("--version", std::string("quillon ") + quillon::version());
  app.require_subcommand(1);
  app.allow_windows_style_options(false);  // a path may begin with a slash
  app.footer("Numbers may be hexadecimal (0x12). Exit codes: 0 ok, 1 bad input, 2 usage.");

  Options options;
  std::string standard = "auto";
  std::string output;

  CLI::App* const report = app.add_subcommand("report", "Print each distinct section as a text report");
  add_input_options(*report, options, standard);
  report->add_flag("--full", options.full, "add all fields of each table, with those that reports leave out");

  CLI::App* const json = app.add_subcommand("json", "Print each distinct section as a line of JSON");
  add_input_options(*json, options, standard);

  CLI::App* const xml = app.add_subcommand("xml", "Write the same sections as one XML document");
  add_input_options(*xml, options, standard);
  xml->add_option("-o,--output", output, "the file to write; standard output otherwise");

  CLI::App* const load = app.add_subcommand("load", "Load such a document back and print its report");
  load->add_option("FILE", options.input, "an XML document; - is standard input")->required();

  std::string kind;
  std::optional<std::string> id;
  CLI::App* const names = app.add_subcommand("names", "Print the registered name of a DVB identifier");
  names
      ->add_option(
          "KIND", kind,
          "network, original-network, bouquet, ca-system, data-broadcast, mhp-organisation or private-data")
      ->required();
  names->add_option("ID", id, "the identifier; all, if it is left out");

  try {
    std::vector<std::string> arguments = quillon::app::begin_program(argc, argv);
    std::reverse(arguments.begin(), arguments.end());  // as the parser takes them
    app.parse(std::move(arguments));
  } catch (const CLI::ParseError& e) {
    return app.exit(e) == 0 ? quillon::app::exit_ok : quillon::app::exit_usage;
  }
  if (!quillon::set_default_text_table(options.text_table)) {
    std::cerr << "quillon: there is no ISO 8859-" << options.text_table << std::endl;
    return quillon::app::exit_usage;
  }
  if (standard != "auto") options.standard = standard == "atsc" ? Standard::atsc : Standard::dvb;

  try {
    if (*report) return quillon::app::report(options);
    if (*json) return quillon::app::json(options);
    if (*xml) return quillon::app::save_xml(options, output);
    if (*names) return quillon::app::names(kind, id);
    return quillon::app::load_xml(options.input);
  } catch (const std::bad_alloc&) {
    std::cerr << "quillon: out of memory" << std::endl;
    return quillon::app::exit_bad_input;
  } catch (const std::exception& e) {
    std::cerr << "quillon: " << e.what() << std::endl;
    return quillon::app::exit_bad_input;
  }
}
