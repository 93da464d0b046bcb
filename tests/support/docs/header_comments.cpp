#include "tests/support/docs/header_comments.h"

#include <algorithm>
#include <cctype>
#include <fstream>
#include <regex>
#include <set>
#include <vector>

namespace quillon::test {

namespace fs = std::filesystem;

std::string lower_case(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return text;
}

namespace {

// Paragraphs are set apart by empty lines. A layout of fields, which is indented, and what is for readers of
// the source are left out.
void add_line(std::string& comment, const std::string& line) {
  if (line.starts_with("  ") || line.starts_with(" Quirk:")) return;
  if (line.empty())
    comment += comment.empty() ? "" : "\n";
  else
    comment += (comment.empty() || comment.ends_with('\n') ? "" : " ") + line.substr(1);
}

void read(const fs::path& file, const std::string& name, std::map<std::string, HeaderComment>& out) {
  static const std::regex comment_line("^ *//(.*)$");
  static const std::regex class_line(R"(^( *)(?:class|struct) (?:QUILLON_API )?(\w+)[^;]*$)");
  static const std::regex accessor(R"(\bget_(\w+)(?:\(|\)).*?[;}](?: +// (.*))?$)");
  static const std::regex layout_line("^ {3,}(\\w+) +(\\d+)(?: .*)?$");
  struct Open {
    std::string name;
    size_t indent;
  };
  std::vector<Open> open;
  std::ifstream in(file);
  std::string comment;
  std::map<std::string, int> widths;
  for (std::string line; std::getline(in, line);) {
    std::smatch match;
    if (std::regex_match(line, match, comment_line)) {
      const std::string text = match[1];
      if (std::regex_match(text, match, layout_line)) widths[lower_case(match[1])] = std::stoi(match[2]);
      add_line(comment, text);
      continue;
    }
    if (std::regex_match(line, match, class_line)) {
      const std::string around = open.empty() ? "" : open.back().name + "::";
      open.push_back({around + match[2].str(), static_cast<size_t>(match[1].length())});
      out[open.back().name] = {
          name, line.find("QUILLON_API") != line.npos, comment.substr(0, comment.find('\n')), {}, widths};
    } else if (!open.empty() && line == std::string(open.back().indent, ' ') + "};") {
      open.pop_back();
    } else if (!open.empty() && std::regex_search(line, match, accessor)) {
      if (match[2].matched) comment = match[2];
      if (!comment.empty()) out[open.back().name].fields.emplace(lower_case(match[1]), comment);
    }
    comment.clear();
    widths.clear();
  }
}

}  // namespace

std::map<std::string, HeaderComment> header_comments(const fs::path& top) {
  std::map<std::string, HeaderComment> out;
  const std::set<std::string> not_public = {"internal", "posix", "windows", "tree", "msxml"};
  for (const auto& entry : fs::recursive_directory_iterator(top / "quillon"))
    if (entry.path().extension() == ".h" &&
        !not_public.contains(entry.path().parent_path().filename().string()))
      read(entry.path(), fs::relative(entry.path(), top).generic_string(), out);
  return out;
}

}  // namespace quillon::test
