// A document's file: whole or not at all.

#include "tests/support/faces.h"
#include "tests/xml/nodes.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include <quillon/platform/windows/windows.h>

using namespace quillon;
using namespace quillon::test;
using quillon::xml::Document;
namespace fs = std::filesystem;

namespace {

std::string content(const fs::path& file) {
  std::ifstream in(file, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(in), {});
}

class DocumentFile : public testing::Test {
 protected:
  DocumentFile()
      : folder(fs::temp_directory_path() / ("quillon-file-" + std::to_string(GetCurrentProcessId()))) {
    fs::create_directories(folder);
    document.create_root("d");
  }
  ~DocumentFile() override { fs::remove_all(folder); }

  size_t files() const {
    return static_cast<size_t>(std::distance(fs::directory_iterator(folder), fs::directory_iterator()));
  }
  std::string refusal(const fs::path& file) {
    return failure([&] { document.to_file(file); });
  }

  fs::path folder;
  Document document;
};

}  // namespace

TEST_F(DocumentFile, TakesThePlaceOfTheOneBefore) {
  const fs::path file = folder / "old.xml";
  std::ofstream(file) << std::string(100000, 'x');
  document.to_file(file);
  EXPECT_EQ(content(file), document.to_text());
  EXPECT_EQ(Document::from_file(file).to_text(), document.to_text());
  EXPECT_EQ(files(), 1u);
}

TEST_F(DocumentFile, IsAsItWasWhileSomebodyHasIt) {
  const fs::path file = folder / "old.xml";
  std::ofstream(file) << "old";
  const HANDLE held =
      CreateFileW(file.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr);
  ASSERT_NE(held, INVALID_HANDLE_VALUE);
  const std::string said = refusal(file);
  CloseHandle(held);
  const std::string begin = "-1: can't write " + file.string() + ": ";
  EXPECT_EQ(said.substr(0, begin.size()), begin);
  EXPECT_EQ(content(file), "old");
  EXPECT_EQ(files(), 1u);
}

TEST_F(DocumentFile, IsNamedInAnyScript) {
  const fs::path file = folder / u8"Träger α 日本.xml";
  document.to_file(file);
  EXPECT_EQ(Document::from_file(file).to_text(), document.to_text());
  const std::string missing = failure([&] { Document::from_file(folder / u8"β.xml"); });
  EXPECT_NE(missing.find("β.xml: No such file or directory"), std::string::npos) << missing;
}

TEST_F(DocumentFile, GoesToADeviceDirectly) {
  EXPECT_EQ(refusal("NUL"), "nothing");
  EXPECT_EQ(failure([] { Document::from_file("NUL"); }).substr(0, 22), "-1: NUL: malformed XML");
}

TEST_F(DocumentFile, IsReadInPieces) {
  const fs::path file = folder / "long.xml";
  void* const root = document.root();
  for (size_t i = 0; i < 3000; ++i)
    set_attribute(document, document.append_element(root, "e"), "x", std::u16string(i % 97, u'\u20AC'));
  document.to_file(file);
  EXPECT_GT(fs::file_size(file), 5u * 65536);
  EXPECT_EQ(Document::from_file(file).to_text(), document.to_text());
}
