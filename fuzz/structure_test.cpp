// The mutations keep lengths right: a descriptor or row that crosses over from one recorded section to
// another leaves a table that parses, and so do most single changes.

#include "fuzz/structure.h"

#include "fuzz/tables.h"

#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <vector>

using namespace quillon::fuzz;

namespace {

bool parses(const Bytes& section) {
  const auto classes = elements_for(section[0]);
  if (classes.empty()) return false;
  const auto table = quillon::AnyTable::for_element(classes.front());
  table->set_tolerant(true);
  try {
    table->Parse(section.data(), section.size(), false);
    return true;
  } catch (const quillon::error&) {
    return false;
  }
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) return 2;
  std::vector<Bytes> sections;
  for (const auto& entry : std::filesystem::directory_iterator(argv[1])) {
    std::ifstream in(entry.path(), std::ios::binary);
    const std::vector<char> bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    const Bytes section(bytes.begin(), bytes.end());
    // Those whose loops have lengths of their own.
    const Structure structure = structure_of(section);
    if (!structure.loops.empty() && !structure.loops[0].lengths.empty()) sections.push_back(section);
  }

  int spliced = 0, grown = 0, mutated = 0, whole = 0, wrong = 0;
  constexpr uint32_t kSeeds = 500;
  for (const Bytes& section : sections)
    for (uint32_t seed = 1; seed <= kSeeds; ++seed) {
      for (const Bytes& other : sections) {
        Bytes made = section;
        splice(made, other, seed);
        grown += made.size() > section.size();
        repair(made);
        ++spliced;
        if (!parses(made)) ++wrong;
      }
      Bytes made = section;
      mutate_structure(made, seed);
      repair(made);
      ++mutated;
      whole += parses(made);
    }
  std::cout << spliced << " spliced, " << grown << " of them longer, " << wrong << " refused; " << mutated
            << " mutated, " << whole << " accepted\n";
  return sections.size() >= 5 && wrong == 0 && grown > spliced / 2 && whole > mutated / 2 ? 0 : 1;
}
