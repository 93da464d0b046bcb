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
  const bool is_written = write(data / "sample.ts", quillon::sample::dvb_sample()) &&
                          write(data / "sample-atsc.ts", quillon::sample::atsc_sample(data / "atsc_text"));
  return is_written ? 0 : 1;
}
