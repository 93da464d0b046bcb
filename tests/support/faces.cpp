#include "tests/support/faces.h"

namespace quillon::test {

std::string plain(const xml::Document& document) {
  const std::string text = document.to_text();
  std::string out;
  std::istringstream lines(text);
  std::string line;
  while (std::getline(lines, line)) {
    if (line.rfind("<?xml", 0) == 0) continue;
    const size_t start = line.find_first_not_of(' ');
    if (start != std::string::npos) out += line.substr(start);
  }
  return out;
}

}  // namespace quillon::test
