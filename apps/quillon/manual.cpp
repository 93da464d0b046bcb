#include "apps/quillon/command_line.h"
#include "apps/quillon/command_rows.h"

#include <string>
#include <string_view>

#include <quillon/version.h>

namespace quillon::app {

namespace {

// Text of a manual: no line begins a request, no minus is a hyphen.
std::string roff(std::string_view text) {
  std::string out;
  for (const char c : text) {
    if (c == '\\')
      out += "\\e";
    else if (c == '-')
      out += "\\-";
    else
      out += c;
  }
  return out.starts_with('.') || out.starts_with('\'') ? "\\&" + out : out;
}

// In single quotes, for a shell or a completion that reads as one.
std::string shell_quoted(std::string_view text) {
  std::string out = "'";
  for (const char c : text) c == '\'' ? out += "'\\''" : out += c;
  return out + "'";
}

template <class Each>
void for_each_option(const CommandRow& command, Each each) {
  for (const OptionRow& option : option_rows())
    if (option.commands & command.bit) each(option);
}

bool names_file(const OptionRow& option) {
  return option.value && std::string_view(option.value) == "FILE";
}

bool takes_files(const CommandRow& command) {
  return std::string_view(command.operands).ends_with("...");
}

}  // namespace

std::string manual_page() {
  std::string out = R"(.TH QUILLON 1 "" "quillon )" + std::string(version()) + "\" \"User Commands\"\n";
  out += ".SH NAME\nquillon \\- what an MPEG\\-2 transport stream says of itself, table by table\n";
  out += ".SH SYNOPSIS\n";
  for (const CommandRow& row : command_rows())
    out += (&row == &command_rows().front() ? "" : ".br\n") + std::string(".B quillon ") + row.name +
           "\n.RI [ OPTION ]...\\&\n.I " + roff(row.operands) + "\\&\n";
  out += ".SH DESCRIPTION\n" + roff(kInputText) + "\n.SH COMMANDS\n";
  for (const CommandRow& row : command_rows()) {
    out += std::string(".TP\n.B ") + row.name + '\n' + roff(row.brief) + ". " + roff(row.text) + "\n";
    std::string names;
    for_each_option(
        row, [&](const OptionRow& o) { names.append(names.empty() ? "" : ", ").append(o.long_name()); });
    if (!names.empty()) out += ".IP\nOptions: " + roff(names) + ".\n";
  }
  out += ".SH OPTIONS\n";
  for (const OptionRow& option : option_rows()) {
    out += ".TP\n.B " + roff(option.names);
    if (option.value) out += std::string(" \\fI") + option.value + "\\fR";
    out += '\n' + roff(option.text);
    if (option.choices) out += std::string(": ") + option.choices;
    out += '\n';
  }
  out += "Numbers may be hexadecimal (0x12).\n.SH EXIT STATUS\n" + roff(kExitText) +
         "\n.SH ENVIRONMENT\n.TP\n.B NO_COLOR\nIf it is set, show writes no colours to a terminal.\n"
         ".SH EXAMPLES\n.nf\nquillon summary capture.ts\nquillon epg \\-\\-now udp://239.1.2.3:5000 "
         "\\-\\-seconds 10\n"
         "quillon json \\-\\-table 0x42 capture.ts | jq .services\n.fi\n";
  return out;
}

std::string bash_completion() {
  std::string commands;
  std::string cases;
  for (const CommandRow& row : command_rows()) {
    commands += std::string(commands.empty() ? "" : " ") + row.name;
    std::string options;
    for_each_option(row, [&](const OptionRow& o) { options.append(o.long_name()).append(" "); });
    cases += std::string("    ") + row.name + ") options=" + shell_quoted(options + "--help") + " ;;\n";
  }
  std::string values;
  for (const OptionRow& option : option_rows()) {
    std::string names(option.long_name());
    if (!option.short_name().empty()) names.append("|").append(option.short_name());
    if (option.choices)
      values += "    " + names + ") COMPREPLY=($(compgen -W " + shell_quoted(option.choices) +
                " -- \"$word\")); return ;;\n";
    else if (names_file(option))
      values += "    " + names + ") COMPREPLY=($(compgen -f -- \"$word\")); return ;;\n";
    else if (option.value)
      values += "    " + names + ") return ;;\n";
  }
  return "_quillon() {\n"
         "  local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD-1]} options=\n"
         "  COMPREPLY=()\n"
         "  if [ \"$COMP_CWORD\" -eq 1 ]; then\n"
         "    COMPREPLY=($(compgen -W " +
         shell_quoted(commands + " --help --version") +
         " -- \"$word\"))\n"
         "    return\n"
         "  fi\n"
         "  case $before in\n" +
         values +
         "  esac\n"
         "  case ${COMP_WORDS[1]} in\n" +
         cases +
         "  esac\n"
         "  case $word in\n"
         "    -*) COMPREPLY=($(compgen -W \"$options\" -- \"$word\")) ;;\n"
         "    *) COMPREPLY=($(compgen -f -- \"$word\")) ;;\n"
         "  esac\n"
         "}\n"
         "complete -o filenames -F _quillon quillon\n";
}

std::string zsh_completion() {
  // What is said of an option ends at a bracket, and of a command at a colon.
  const auto plain = [](std::string_view text) {
    std::string out;
    for (const char c : text) {
      if (c == '[' || c == ']' || c == ':') out += '\\';
      out += c;
    }
    return out;
  };
  std::string commands;
  std::string cases;
  for (const CommandRow& row : command_rows()) {
    commands += "    " + shell_quoted(std::string(row.name) + ":" + row.brief) + "\n";
    cases += std::string("    ") + row.name + ")\n      _arguments";
    for_each_option(row, [&](const OptionRow& o) {
      std::string value;
      if (o.choices)
        value = ":" + std::string(o.value) + ":(" + o.choices + ")";
      else if (o.value)
        value = ":" + std::string(o.value) + ":" + (names_file(o) ? "_files" : "");
      cases += " \\\n        " +
               shell_quoted("*" + std::string(o.long_name()) + "[" + plain(o.text) + "]" + value);
    });
    cases += takes_files(row) ? " \\\n        '*:input:_files'\n" : "\n";
    cases += "      ;;\n";
  }
  return "#compdef quillon\n_quillon() {\n  local -a commands=(\n" + commands +
         "  )\n  if (( CURRENT == 2 )); then\n    _describe command commands\n    return\n  fi\n"
         "  local command=$words[2]\n  shift words\n  (( CURRENT-- ))\n  case $command in\n" +
         cases + "  esac\n}\n_quillon \"$@\"\n";
}

std::string fish_completion() {
  std::string out;
  for (const CommandRow& row : command_rows()) {
    out += std::string("complete -c quillon -n __fish_use_subcommand ") + (takes_files(row) ? "" : "-f ") +
           "-a " + row.name + " -d " + shell_quoted(row.brief) + "\n";
    for_each_option(row, [&](const OptionRow& o) {
      out += std::string("complete -c quillon -n '__fish_seen_subcommand_from ") + row.name + "' -l " +
             std::string(o.long_name().substr(2));
      if (!o.short_name().empty()) out.append(" -s ").append(o.short_name().substr(1));
      if (o.choices)
        out += std::string(" -x -a ") + shell_quoted(o.choices);
      else if (names_file(o))
        out += " -r";
      else if (o.value)
        out += " -x";
      out += " -d " + shell_quoted(o.text) + "\n";
    });
  }
  return out;
}

}  // namespace quillon::app
