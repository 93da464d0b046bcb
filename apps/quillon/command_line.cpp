#include "apps/quillon/command_line.h"

#include "apps/quillon/command_rows.h"
#include "apps/quillon/times.h"

#include <algorithm>
#include <sstream>

#include <quillon/fields/dvb_text.h>
#include <quillon/version.h>

namespace quillon::app {

namespace {

constexpr size_t kColumns = 80;

// Appends a text in lines, all indented, the first from `column` on.
void wrap(std::string& out, std::string_view text, size_t indent, size_t column) {
  std::istringstream words{std::string(text)};
  bool is_first = true;
  for (std::string word; words >> word; is_first = false) {
    if (!is_first && column + 1 + word.size() > kColumns) {
      out.append("\n").append(indent, ' ');
      column = indent;
    } else if (!is_first) {
      out += ' ';
      ++column;
    }
    out += word;
    column += word.size();
  }
  out += '\n';
}

void paragraph(std::string& out, std::string_view text) {
  wrap(out, text, 0, 0);
  out += '\n';
}

// What is listed, and what is said of it.
void entry(std::string& out, const std::string& name, std::string_view text, size_t column) {
  out.append("  ").append(name);
  const size_t width = name.size() + 2;
  if (width + 2 > column)
    out.append("\n").append(column, ' ');
  else
    out.append(column - width, ' ');
  wrap(out, text, column, column);
}

std::string program_help() {
  std::string out = "quillon: what an MPEG-2 transport stream says of itself, table by table\n\n";
  out += "Usage: quillon COMMAND INPUT...\n\nCommands:\n";
  for (const CommandRow& row : command_rows()) entry(out, row.name, row.brief, 13);
  out += "\nOptions:\n";
  entry(out, "--help", "this, and after a command its options", 13);
  entry(out, "--version", "the version", 13);
  out += '\n';
  paragraph(out, kInputText);
  out += std::string(kExitText) + '\n';
  return out;
}

const CommandRow* find_command(std::string_view name) {
  const auto rows = command_rows();
  const auto found =
      std::find_if(rows.begin(), rows.end(), [name](const CommandRow& row) { return row.name == name; });
  return found == rows.end() ? nullptr : &*found;
}

bool reads_inputs(const CommandRow& command) {
  return std::string_view(command.operands).starts_with("INPUT");
}

constexpr const char* kHint = "--help tells what there is";

Order parsed(std::vector<std::string> arguments) {
  Order order;
  if (arguments.empty() || !(arguments.front().starts_with('-') || find_command(arguments.front()))) {
    order.mistake = (arguments.empty() ? "no command is given" : "there is no command " + arguments.front()) +
                    std::string("; quillon ") + kHint;
    return order;
  }
  Options& options = order.options;
  CLI::App app("", "quillon");
  app.require_subcommand(1);
  app.allow_windows_style_options(false);  // a path may begin with a slash
  app.set_version_flag("--version", "");
  for (const CommandRow& row : command_rows()) {
    CLI::App* const command = app.add_subcommand(row.name);
    command->callback([&order, &row] { order.run = row.run; });
    if (std::string_view(row.operands).starts_with("KIND")) {
      command->add_option("KIND", options.kind)->required();
      command->add_option("ID", options.id);
    } else {
      command->add_option("INPUT", options.inputs)->required();
    }
    for (const OptionRow& option : option_rows()) {
      if (!(option.commands & row.bit)) continue;
      CLI::Option* const added = option.add(*command, option, options);
      if (option.value) added->type_name(option.value);
      if (!option.choices) continue;
      std::istringstream words{option.choices};
      added->check(CLI::IsMember(std::vector<std::string>{std::istream_iterator<std::string>(words), {}}));
    }
  }
  std::reverse(arguments.begin(), arguments.end());  // as the parser takes them
  try {
    app.parse(std::move(arguments));
  } catch (const CLI::CallForHelp&) {
    const auto chosen = app.get_subcommands();
    order.text = help_text(chosen.empty() ? "" : chosen.front()->get_name());
  } catch (const CLI::CallForVersion&) {
    order.text = std::string("quillon ") + version() + '\n';
  } catch (const CLI::ParseError& e) {
    const auto chosen = app.get_subcommands();
    order.mistake = std::string(e.what()) + "; quillon " +
                    (chosen.empty() ? "" : chosen.front()->get_name() + " ") + kHint;
  }
  if (!order.text.empty() || !order.mistake.empty()) order.run = nullptr;
  return order;
}

}  // namespace

Order parse_command_line(std::vector<std::string> arguments) {
  Order order = parsed(std::move(arguments));
  if (!order.run) return order;
  Options& options = order.options;
  if (!set_default_text_table(options.text_table))
    order.mistake = "there is no ISO 8859-" + std::to_string(options.text_table);
  if (std::count(options.inputs.begin(), options.inputs.end(), "-") > 1)
    order.mistake = "standard input can be read once, and - is given twice";
  for (const auto& [text, time] :
       {std::pair(&options.from, &options.begin), std::pair(&options.to, &options.end)}) {
    if (text->empty()) continue;
    *time = time_of(*text, options.local_time);
    if (!*time) order.mistake = *text + " is no time; give it as 2026-11-22T20:15";
  }
  return order;
}

std::string help_text(std::string_view command) {
  const CommandRow* const row = find_command(command);
  if (!row) return program_help();
  std::string out;
  paragraph(out, "Usage: quillon " + std::string(row->name) + " [OPTION]... " + row->operands);
  paragraph(out, std::string(row->brief) + ". " + row->text);
  if (reads_inputs(*row)) paragraph(out, kInputText);
  out += "Options:\n";
  for (const OptionRow& option : option_rows()) {
    if (!(option.commands & row->bit)) continue;
    std::string name(option.short_name());
    if (!name.empty()) name += ", ";
    name += option.long_name();
    if (option.value) name.append(" ").append(option.value);
    std::string text = option.text;
    if (option.choices) text.append(" (").append(option.choices).append(")");
    entry(out, name, text, 23);
  }
  entry(out, "--help", "this", 23);
  out += '\n';
  wrap(out, "Numbers may be hexadecimal (0x12). " + std::string(kExitText), 0, 0);
  return out;
}

}  // namespace quillon::app
