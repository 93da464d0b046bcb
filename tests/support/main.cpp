#include "tests/support/cases.h"
#include "tests/support/packets.h"
#include "tests/support/table_cases.h"

#include <cctype>
#include <clocale>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iostream>
#include <set>
#include <stdexcept>
#include <string_view>

namespace {

namespace fs = std::filesystem;
using namespace quillon::test;

// A case's name as that of a file: letters and digits, all else a dash.
std::string file_name_of(const std::string& name) {
  std::string out;
  for (const char c : name)
    if (std::isalnum(static_cast<unsigned char>(c)))
      out += c;
    else if (!out.empty() && out.back() != '-')
      out += '-';
  while (!out.empty() && out.back() == '-') out.pop_back();
  return out;
}

template <class Content>
void write_file(const fs::path& file, const Content& content) {
  std::ofstream out(file, std::ios::binary | std::ios::trunc);
  out.write(reinterpret_cast<const char*>(content.data()), static_cast<std::streamsize>(content.size()));
  out.close();
  if (!out) throw fs::filesystem_error("cannot write", file, std::make_error_code(std::errc::io_error));
}

// The first corpus of the fuzz targets: a file a case.
void write_corpus(const fs::path& folder) {
  std::set<fs::path> written;
  const auto write = [&](const char* target, const std::string& name, const auto& content) {
    const fs::path file = folder / target / name;
    if (!written.insert(file).second) throw std::runtime_error("two cases for " + file.string());
    write_file(file, content);
  };
  for (const char* target : {"descriptor", "section", "document", "stream"})
    fs::create_directories(folder / target);
  for (const DescriptorCase& c : Cases::all()) write("descriptor", file_name_of(c.name), c.bytes);
  for (const TableCase& c : TableCases::all()) {
    write("section", file_name_of(c.name), c.section);
    write("document", file_name_of(c.name) + ".xml", document_of(c));
    // After two bytes of choices: none.
    write("stream", file_name_of(c.name), joined({Bytes(2), packets({c.section})}));
  }
}

}  // namespace

int main(int argc, char** argv) {
  std::setlocale(LC_ALL, "");
  std::setlocale(LC_CTYPE, "C");  // the letters of reports
#if defined(LC_MESSAGES)
  std::setlocale(LC_MESSAGES, "C");  // the words of the system, as in the program, which sets no locale
#endif
  if (argc == 3 && std::string_view(argv[1]) == "--write-corpus") {
    try {
      write_corpus(argv[2]);
      return 0;
    } catch (const std::exception& e) {
      std::cerr << e.what() << '\n';
      return 1;
    }
  }
  testing::InitGoogleTest(&argc, argv);
  return RUN_ALL_TESTS();
}
