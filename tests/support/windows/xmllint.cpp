#include "tests/support/xmllint.h"

namespace quillon::test {

std::optional<std::vector<std::string>> verdicts_of_xmllint(const std::vector<std::string>&) {
  return std::nullopt;
}

}  // namespace quillon::test
