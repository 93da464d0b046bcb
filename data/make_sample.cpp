// Writes the bundled stream: make_sample data/sample.ts

#include "tests/support/sample.h"

#include <fstream>

int main(int argc, char** argv) {
  if (argc != 2) return 2;
  const quillon::test::Bytes stream = quillon::test::sample_stream();
  std::ofstream out(argv[1], std::ios::binary);
  out.write(reinterpret_cast<const char*>(stream.data()), static_cast<std::streamsize>(stream.size()));
  return out ? 0 : 1;
}
