// Writes what is installed beside the program, to a folder: make_manual FOLDER

#include "apps/quillon/command_line.h"

#include <filesystem>
#include <fstream>

using namespace quillon::app;

namespace {

bool write(const std::filesystem::path& file, const std::string& text) {
  std::ofstream out(file, std::ios::binary);
  out << text;
  return static_cast<bool>(out.flush());
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) return 2;
  const std::filesystem::path folder = argv[1];
  const bool written =
      write(folder / "quillon.1", manual_page()) && write(folder / "quillon", bash_completion()) &&
      write(folder / "_quillon", zsh_completion()) && write(folder / "quillon.fish", fish_completion());
  return written ? 0 : 1;
}
