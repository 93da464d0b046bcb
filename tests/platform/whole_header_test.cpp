// The header that holds everything.

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <set>
#include <string>

namespace fs = std::filesystem;

namespace {

// The library's headers that a header includes, through others too; as "quillon/sections/pat.h".
void collect(const fs::path& top, const std::string& header, std::set<std::string>& found) {
  if (!found.insert(header).second) return;
  std::ifstream file(top / header);
  EXPECT_TRUE(file) << header;
  const std::string begin = "#include <quillon/";
  for (std::string line; std::getline(file, line);)
    if (line.starts_with(begin)) collect(top, line.substr(10, line.find('>') - 10), found);
}

}  // namespace

TEST(WholeHeader, IncludesEachPublicHeader) {
  const char* const data = std::getenv("QUILLON_DATA");
  if (!data) GTEST_SKIP() << "QUILLON_DATA is not set";
  const fs::path top = fs::path(data).parent_path();
  std::set<std::string> included;
  collect(top, "quillon/quillon.h", included);

  const std::set<std::string> inner = {"internal", "posix", "windows", "tree", "msxml"};
  std::set<std::string> there;
  for (auto at = fs::recursive_directory_iterator(top / "quillon"); at != fs::recursive_directory_iterator();
       ++at)
    if (at->is_directory() && inner.contains(at->path().filename().string()))
      at.disable_recursion_pending();
    else if (at->path().extension() == ".h")
      there.insert(at->path().lexically_relative(top).generic_string());
  EXPECT_GT(there.size(), 100u);
  EXPECT_EQ(included, there);
}
