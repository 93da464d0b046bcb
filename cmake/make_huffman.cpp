// Makes the decoding trees of ATSC text: make_huffman FOLDER OUT.cpp

#include "make_source.h"

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include <quillon/fields/internal/huffman_tables.h>

namespace {

using namespace quillon::detail;

constexpr int kFree = -1;

// As in HuffmanNode, with places that nothing has been found for yet.
struct Node {
  int next[2] = {kFree, kFree};
};
using Tree = std::vector<Node>;

// 0 to 127.
int number_of(std::string_view text) {
  int number = -1;
  const auto [end, result] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (result != std::errc() || end != text.data() + text.size() || number < 0 || number > 127)
    throw std::runtime_error("\"" + std::string(text) + "\" is not a number from 0 to 127");
  return number;
}

void add(Tree& tree, std::string_view code, int symbol) {
  if (code.empty() || code.find_first_not_of("01") != std::string_view::npos)
    throw std::runtime_error("\"" + std::string(code) + "\" is not a code of bits");
  size_t at = 0;
  for (size_t i = 0; i < code.size(); ++i) {
    if (at == tree.size()) {
      if (at == huffman_leaf) throw std::runtime_error("the context has too many codes");
      tree.emplace_back();
    }
    int& next = tree[at].next[code[i] - '0'];
    const bool last = i + 1 == code.size();
    if (last ? next != kFree : next >= huffman_leaf)
      throw std::runtime_error("of " + std::string(code) +
                               " and another code of the context one begins the other");
    if (last)
      next = huffman_leaf + symbol;
    else if (next == kFree)
      next = static_cast<int>(tree.size());
    at = static_cast<size_t>(next);
  }
}

void add_line(std::vector<Tree>& trees, std::string_view line) {
  const size_t code = line.find('\t') + 1;
  const size_t symbol = line.find('\t', code) + 1;
  if (code == 0 || symbol == 0) throw std::runtime_error("fewer than three columns");
  add(trees[static_cast<size_t>(number_of(line.substr(0, code - 1)))], line.substr(code, symbol - code - 1),
      number_of(line.substr(symbol)));
}

// The trees of all contexts.
std::vector<Tree> trees_of(const std::filesystem::path& file) {
  std::ifstream in(file);
  if (!in) throw std::runtime_error(file.string() + ": can't be opened");
  std::string line;
  if (!std::getline(in, line) || line != "context\tcode\tsymbol")
    throw std::runtime_error(file.string() + ": the heading of the columns is missing");
  std::vector<Tree> trees(huffman_contexts);
  int number = 1;
  try {
    while (std::getline(in, line)) {
      ++number;
      add_line(trees, line);
    }
  } catch (const std::exception& e) {
    throw std::runtime_error(file.string() + ", line " + std::to_string(number) + ": " + e.what());
  }
  if (in.bad()) throw std::runtime_error(file.string() + ": can't be read");
  // Codes of which none begins another have a Kraft sum of 1 just if no place in their tree is free.
  const auto has_free_place = [](const Node& node) { return node.next[0] == kFree || node.next[1] == kFree; };
  for (size_t context = 0; context < trees.size(); ++context)
    if (trees[context].empty() || std::ranges::any_of(trees[context], has_free_place))
      throw std::runtime_error(file.string() + ": the codes of context " + std::to_string(context) +
                               " are not complete");
  return trees;
}

std::string tables_from(const std::filesystem::path& folder) {
  std::string nodes;
  std::string tables;
  for (const std::string list : huffman_lists) {
    nodes += "constexpr HuffmanNode " + list + "_nodes[] = {\n";
    tables += "    {" + list + "_nodes, {";
    size_t first = 0;
    for (const Tree& tree : trees_of(folder / (list + ".tsv"))) {
      tables += std::to_string(first) + ", ";
      first += tree.size();
      for (const Node& node : tree)
        nodes += "{{" + std::to_string(node.next[0]) + ", " + std::to_string(node.next[1]) + "}}, ";
      nodes += "\n";
    }
    nodes += "};\n\n";
    tables += "}},\n";
  }
  return "// Made from data/atsc_text; changes belong there.\n\n"
         "#include <quillon/fields/internal/huffman_tables.h>\n\n"
         "namespace quillon::detail {\n\nnamespace {\n\n" +
         nodes + "}  // namespace\n\nconstinit const HuffmanTable huffman_tables[] = {\n" + tables +
         "};\n\n}  // namespace quillon::detail\n";
}

}  // namespace

int main(int argc, char** argv) {
  return make_source(argc, argv, tables_from);
}
