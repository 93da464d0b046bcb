// A document's file: whole or not at all.

#include "tests/support/faces.h"
#include "tests/xml/nodes.h"

#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

using namespace quillon;
using namespace quillon::test;
using quillon::xml::Document;
namespace fs = std::filesystem;

namespace {

std::string content(const fs::path& file) {
  std::ifstream in(file, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(in), {});
}

mode_t mode_of(const fs::path& file) {
  struct stat status;
  return ::stat(file.c_str(), &status) == 0 ? status.st_mode & 07777 : 0;
}

class DocumentFile : public testing::Test {
 protected:
  DocumentFile() {
    std::string name = (fs::temp_directory_path() / "quillon-file-XXXXXX").string();
    folder = mkdtemp(name.data());
    document.create_root("d");
  }
  ~DocumentFile() override { fs::remove_all(folder); }

  size_t files() const {
    return static_cast<size_t>(std::distance(fs::directory_iterator(folder), fs::directory_iterator()));
  }
  std::string refusal(const fs::path& file) {
    return failure([&] { document.to_file(file); });
  }

  // Runs in a process of its own; what it returns, at most some hundred characters.
  template <class Action>
  static std::string in_child(Action action) {
    int pipe_ends[2];
    EXPECT_EQ(pipe(pipe_ends), 0);
    const pid_t child = fork();
    if (child == 0) {
      const std::string said = action();
      [[maybe_unused]] const ssize_t written = write(pipe_ends[1], said.data(), said.size());
      _exit(0);
    }
    close(pipe_ends[1]);
    std::string out;
    char block[512];
    for (ssize_t got; (got = read(pipe_ends[0], block, sizeof block)) > 0;)
      out.append(block, static_cast<size_t>(got));
    close(pipe_ends[0]);
    waitpid(child, nullptr, 0);
    return out;
  }

  fs::path folder;
  Document document;
};

}  // namespace

TEST_F(DocumentFile, IsMadeWithTheUsualMode) {
  const mode_t mask = umask(027);
  document.to_file(folder / "new.xml");
  umask(mask);
  EXPECT_EQ(content(folder / "new.xml"), document.to_text());
  EXPECT_EQ(mode_of(folder / "new.xml"), 0640u);
  EXPECT_EQ(files(), 1u);
}

TEST_F(DocumentFile, TakesTheModeOfTheOneBefore) {
  const fs::path file = folder / "old.xml";
  for (const mode_t mode : {0600u, 0664u, 0444u}) {
    std::ofstream(folder / "made") << std::string(100000, 'x');
    fs::rename(folder / "made", file);
    ASSERT_EQ(chmod(file.c_str(), mode), 0);
    document.to_file(file);
    EXPECT_EQ(content(file), document.to_text());
    EXPECT_EQ(mode_of(file), mode);
  }
  EXPECT_EQ(files(), 1u);
}

TEST_F(DocumentFile, IsWhereALinkLeads) {
  fs::create_directory(folder / "sub");
  fs::create_directory(folder / "links");
  std::ofstream(folder / "sub/target.xml") << "old";
  fs::create_symlink("../sub/target.xml", folder / "links/one");
  fs::create_symlink("links/one", folder / "two");
  fs::create_symlink("sub/not yet.xml", folder / "dangling");
  document.to_file(folder / "two");
  document.to_file(folder / "dangling");
  EXPECT_TRUE(fs::is_symlink(folder / "links/one"));
  EXPECT_TRUE(fs::is_symlink(folder / "two"));
  EXPECT_TRUE(fs::is_symlink(folder / "dangling"));
  EXPECT_EQ(content(folder / "sub/target.xml"), document.to_text());
  EXPECT_EQ(content(folder / "sub/not yet.xml"), document.to_text());
  fs::create_symlink("loop", folder / "loop");
  EXPECT_EQ(refusal(folder / "loop"),
            "-1: can't write " + (folder / "loop").string() + ": " + std::strerror(ELOOP));
}

TEST_F(DocumentFile, IsNamedByAPathWithoutAFolder) {
  const std::string said = in_child([&] {
    fs::current_path(folder);
    const std::string written = failure([&] { document.to_file("plain.xml"); });
    return written + failure([&] { Document::from_file("plain.xml"); });
  });
  EXPECT_EQ(said, "nothingnothing");
  EXPECT_EQ(content(folder / "plain.xml"), document.to_text());
}

TEST_F(DocumentFile, TakesALongName) {
  const fs::path file = folder / std::string(255, 'n');
  document.to_file(file);
  EXPECT_EQ(content(file), document.to_text());
}

TEST_F(DocumentFile, IsAsItWasWhenTheNewOneDoesNotFit) {
  set_attribute(document, document.root(), "a", std::u16string(100000, u'x'));
  const fs::path file = folder / "old.xml";
  std::ofstream(file) << "old";
  const auto limited = [&](const fs::path& target) {
    return in_child([&] {
      std::signal(SIGXFSZ, SIG_IGN);
      const rlimit limit = {4096, 4096};
      setrlimit(RLIMIT_FSIZE, &limit);
      return refusal(target);
    });
  };
  EXPECT_EQ(limited(file), "-1: can't write " + file.string() + ": " + std::strerror(EFBIG));
  EXPECT_EQ(content(file), "old");
  EXPECT_EQ(limited(folder / "new.xml"),
            "-1: can't write " + (folder / "new.xml").string() + ": " + std::strerror(EFBIG));
  EXPECT_EQ(files(), 1u);
}

TEST_F(DocumentFile, IsAsItWasWhenItsFolderIsClosed) {
  const fs::path file = folder / "old.xml";
  std::ofstream(file) << "old";
  ASSERT_EQ(chmod(file.c_str(), 0666), 0);
  ASSERT_EQ(chmod(folder.c_str(), 0555), 0);
  const std::string said = in_child([&] {
    // A superuser is let in everywhere.
    if (geteuid() == 0 && setuid(65534) != 0) return std::string("still a superuser");
    return refusal(file);
  });
  EXPECT_EQ(said, "-1: can't write " + file.string() + ": " + std::strerror(EACCES));
  ASSERT_EQ(chmod(folder.c_str(), 0755), 0);
  EXPECT_EQ(content(file), "old");
  EXPECT_EQ(files(), 1u);
}

TEST_F(DocumentFile, GoesToADeviceDirectly) {
  EXPECT_EQ(refusal("/dev/full"), std::string("-1: can't write /dev/full: ") + std::strerror(ENOSPC));
  EXPECT_EQ(refusal("/dev/null"), "nothing");
  struct stat status;
  ASSERT_EQ(::stat("/dev/null", &status), 0);
  EXPECT_TRUE(S_ISCHR(status.st_mode));
}

TEST_F(DocumentFile, GoesToAPipeDirectly) {
  const fs::path pipe = folder / "pipe";
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  std::string got;
  std::thread reader([&] { got = content(pipe); });
  document.to_file(pipe);
  reader.join();
  EXPECT_EQ(got, document.to_text());
  EXPECT_TRUE(fs::is_fifo(pipe));
  EXPECT_EQ(files(), 1u);
  std::thread writer([&] { std::ofstream(pipe) << document.to_text(); });
  EXPECT_EQ(Document::from_file(pipe).to_text(), document.to_text());
  writer.join();
}

TEST_F(DocumentFile, GoesToAnOpenFileDirectly) {
  // Standard output may be a file with something in it.
  const fs::path file = folder / "log";
  std::ofstream(file) << "before\n";
  const std::string said = in_child([&] {
    dup2(open(file.c_str(), O_WRONLY | O_APPEND), STDOUT_FILENO);
    const std::string first = refusal("/dev/stdout");
    return first + refusal("/dev/fd/1");
  });
  EXPECT_EQ(said, "nothingnothing");
  EXPECT_EQ(content(file), "before\n" + document.to_text() + document.to_text());
}

TEST_F(DocumentFile, EndsAtOnceInWhatIsNoDocument) {
  EXPECT_EQ(failure([] { Document::from_file("/dev/zero"); }),
            "-1: /dev/zero: malformed XML, line 1, column 1: not well-formed (invalid token)");
  EXPECT_EQ(failure([] { Document::from_file("/dev/null"); }),
            "-1: /dev/null: malformed XML, line 1, column 1: no element found");
  EXPECT_EQ(failure([] { Document::from_file(""); }),
            std::string("-1: can't read : ") + std::strerror(ENOENT));
}

TEST_F(DocumentFile, IsReadInPieces) {
  // Tokens lie across the pieces, and one is longer than several.
  const fs::path file = folder / "long.xml";
  void* const root = document.root();
  for (size_t i = 0; i < 3000; ++i)
    set_attribute(document, document.append_element(root, "e"), "x", std::u16string(i % 97, u'\u20AC'));
  set_attribute(document, document.append_element(root, "long"), "x", std::u16string(3000000, u'y'));
  document.to_file(file);
  EXPECT_EQ(Document::from_file(file).to_text(), document.to_text());
  std::ofstream(file, std::ios::app) << "<more/>";
  const std::string said = failure([&] { Document::from_file(file); });
  EXPECT_EQ(said,
            "-1: " + file.string() + ": malformed XML, line 3005, column 1: junk after document element");
  for (const size_t size : {65536u, 131072u, 65535u, 65537u}) {
    std::ofstream(file, std::ios::binary) << "<a>" << std::string(size - 7, ' ') << "</a>";
    EXPECT_EQ(failure([&] { Document::from_file(file); }), "nothing") << size;
  }
}
