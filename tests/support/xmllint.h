#pragma once

// Another reader's verdict on documents.

#include <optional>
#include <string>
#include <vector>

namespace quillon::test {

// What xmllint has against each of the documents, all of them read by one process; "" for one that it takes.
// None if there is no xmllint.
std::optional<std::vector<std::string>> verdicts_of_xmllint(const std::vector<std::string>& documents);

// A test for what xmllint must take. Without it there is nothing to look at, and the test goes on.
void expect_taken_by_xmllint(const std::vector<std::string>& documents);

}  // namespace quillon::test
