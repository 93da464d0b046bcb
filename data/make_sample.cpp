// Writes the bundled streams to the folder of the data: make_sample data

#include "data/sample/samples.h"

#include <filesystem>
#include <fstream>

namespace {

bool write(const std::filesystem::path& file, const quillon::test::Bytes& stream) {
  std::ofstream out(file, std::ios::binary);
  out.write(reinterpret_cast<const char*>(stream.data()), static_cast<std::streamsize>(stream.size()));
  return static_cast<bool>(out.flush());
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) return 2;
  const std::filesystem::path data = argv[1];
  return write(data / "sample.ts", quillon::sample::dvb_sample()) ? 0 : 1;
}
