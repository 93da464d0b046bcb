// Makes the static rows of the identifier registries: make_registries FOLDER OUT.cpp

#include "make_source.h"

#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

#include <quillon/platform/code_page.h>
#include <quillon/report/internal/registry_file.h>
#include <quillon/report/internal/registry_rows.h>
#include <quillon/sections/error.h>

namespace {

using quillon::detail::RegistryLine;

// The name in Windows-1252 as a string literal.
std::string literal(const RegistryLine& line, const std::string& file) {
  std::string narrow;
  quillon::wide_string again;
  quillon::platform::encode(1252, line.name, narrow);
  quillon::platform::decode(1252, narrow, again);
  if (again != line.name) {
    const std::string text =
        file + ", line " + std::to_string(line.number) + ": the name has a character that Windows-1252 lacks";
    throw quillon::error(text.c_str());
  }
  std::string out = "\"";
  for (const char c : narrow) {
    const auto byte = static_cast<unsigned char>(c);
    char octal[8];
    std::snprintf(octal, sizeof octal, "\\%03o", byte);
    const bool plain = byte >= 0x20 && byte <= 0x7E && c != '"' && c != '\\' && c != '?';
    out += plain ? std::string(1, c) : octal;
  }
  return out + "\"";
}

std::string array_of(const quillon::detail::RegistryList& list, const std::filesystem::path& folder) {
  const std::filesystem::path file = folder / (std::string(list.name) + ".tsv");
  std::string out = std::string("constexpr registry_row ") + list.name + "[] = {\n";
  const std::vector<RegistryLine> lines = quillon::detail::read_registry_file(file, list.largest_id);
  for (auto line = lines.begin(); line != lines.end();) {
    // Lines of the same range are several registrations of each id, and are side by side.
    std::vector<std::string> names;
    const RegistryLine& head = *line;
    for (; line != lines.end() && line->first == head.first && line->last == head.last; ++line)
      names.push_back(literal(*line, file.string()));
    for (uint64_t id = head.first; id <= head.last; ++id)
      for (const std::string& name : names) {
        char key[24];
        std::snprintf(key, sizeof key, "    {int(0x%Xu), ", static_cast<unsigned>(id));
        out += key + name + "},\n";
      }
  }
  return out + "};\n\n";
}

std::string rows_from(const std::filesystem::path& folder) {
  std::string text =
      "// Made from data/registries; changes belong there.\n\n"
      "#include <quillon/report/internal/registry_rows.h>\n\n"
      "namespace quillon::detail {\n\nnamespace {\n\n";
  std::string names;
  for (const quillon::detail::RegistryList& list : quillon::detail::registry_lists) {
    text += array_of(list, folder);
    names += std::string("    ") + list.name + ",\n";
  }
  return text + "}  // namespace\n\nconstinit const std::span<const registry_row> registry_rows[] = {\n" +
         names + "};\n\n}  // namespace quillon::detail\n";
}

}  // namespace

int main(int argc, char** argv) {
  return make_source(argc, argv, rows_from);
}
